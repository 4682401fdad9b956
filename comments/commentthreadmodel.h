#pragma once

#include "api/clock.h"
#include "comments/commentcelldetail.h"
#include "comments/thumbnailcache.h"

#include <QAbstractListModel>
#include <QColor>
#include <QHash>
#include <QPointer>
#include <QRandomGenerator>

#include <optional>

namespace ravelin {

class CommentsVM;

// A task's comment thread as the rows of a list: a header row for every local
// calendar day (oldest day first) followed by that day's comments (oldest
// first). The rows are taken from the view model again with reload(), row by
// row: a day or a comment (known by its author, time, text and items) that
// is new is inserted, one that is gone removed, one whose contents changed a
// dataChanged on its row. Only another view model resets the rows.
//
// Thumbnails of the comments' first pictures are loaded for the rows in sight
// (setRowsInSight()), never for reading a row's data, through one bounded
// cache: once per picture while it is kept, and again for a picture that
// failed when its row comes back into sight. A row never shows another
// comment's picture.
class CommentThreadModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum class RowKind { dayHeader, comment };
    Q_ENUM(RowKind)

    enum Role {
        KindRole = Qt::UserRole + 1, // RowKind
        // "commentCell" for a comment, "dayHeader" for a day.
        IdentifierRole,
        // The author's (the sending asset's) name.
        AuthorRole,
        // The author's icon name ("list_pin_" + the wire name).
        AuthorIconRole,
        // The comment's initials and the colour they are drawn on when no icon is found.
        InitialsRole,
        InitialsColorRole,
        // The elapsed time since the comment was sent; whether it shows (today only).
        TimeTextRole,
        ShowsTimeRole,
        // The details line as its fragments (QList<DetailFragment>); none when absent.
        DetailsRole,
        // Whether the comment has a picture, its thumbnail once loaded (QImage),
        // and whether loading it failed.
        HasPictureRole,
        ThumbnailRole,
        PictureFailedRole,
        // "commentImgThumb_" + the comment's text: how automation finds the picture.
        PictureIdentifierRole,
        // How the comment stands with the server (SyncMark): waiting in the outbox or refused.
        SyncMarkRole,
    };
    Q_ENUM(Role)

    explicit CommentThreadModel(Clock clock, QObject *parent = nullptr);
    ~CommentThreadModel() override;

    void setViewModel(CommentsVM *viewModel);
    // Takes the view model's grouped comments, row by row.
    void reload();

    // The rows in sight (plus what is worth loading ahead): their pictures are
    // asked for. -1, -1 for none.
    void setRowsInSight(int first, int last);
    [[nodiscard]] ThumbnailCache *thumbnails() const { return m_thumbnails; }

    // The day section and the row in it of a comment row; nothing for a header row.
    [[nodiscard]] std::optional<std::pair<int, int>> commentPosition(int row) const;
    // The row of the last comment, or -1.
    [[nodiscard]] int lastCommentRow() const;
    [[nodiscard]] bool isEmpty() const { return m_rows.isEmpty(); }

    // For the initials' colours (random unless the tests fix them).
    void setRandomGenerator(const QRandomGenerator &generator) { m_random = generator; }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    // "AR" for "Ann Rivers", "D" for "Dispatch".
    [[nodiscard]] static QString initials(const QString &name);

private:
    struct Row
    {
        int section = 0;
        int row = -1; // -1: the day's header
        QDateTime day; // the start of the day, for a header
        CommentCellDetail detail;
        // Who the row is across answers: the day, or the comment's author, time and text.
        QString key;
    };

    [[nodiscard]] QList<Row> takeRows() const;
    void updateRows(const QList<Row> &rows);
    [[nodiscard]] static bool sameContents(const Row &a, const Row &b);
    [[nodiscard]] std::optional<QString> picturePath(int row) const;
    void thumbnailChanged(const QString &path);
    [[nodiscard]] QColor initialsColor(const QString &key) const;

    Clock m_clock;
    QPointer<CommentsVM> m_viewModel;
    QList<Row> m_rows;
    ThumbnailCache *m_thumbnails = nullptr;
    std::pair<int, int> m_inSight{-1, -1};
    mutable QRandomGenerator m_random{QRandomGenerator::securelySeeded()};
    mutable QHash<QString, QColor> m_initialsColors;
};

} // namespace ravelin

Q_DECLARE_METATYPE(QList<ravelin::DetailFragment>)
