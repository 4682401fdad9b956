#pragma once

#include "api/clock.h"
#include "comments/commentcelldetail.h"

#include <QAbstractListModel>
#include <QColor>
#include <QHash>
#include <QImage>
#include <QPointer>
#include <QRandomGenerator>
#include <QSet>

#include <memory>
#include <optional>

namespace ravelin {

class CommentTableViewCellVM;
class CommentsVM;

// A task's comment thread as the rows of a list: a header row for every local
// calendar day (oldest day first) followed by that day's comments (oldest
// first). The rows are taken from the view model again with reload().
//
// Thumbnails of the comments' first pictures are loaded when a row first asks
// for its picture, once per picture for the life of the model; a row never
// shows another comment's picture.
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
    };
    Q_ENUM(Role)

    explicit CommentThreadModel(Clock clock, QObject *parent = nullptr);
    ~CommentThreadModel() override;

    void setViewModel(CommentsVM *viewModel);
    // Takes the view model's grouped comments; the views reset.
    void reload();

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

signals:
    // A picture arrived or could not be had.
    void thumbnailChanged(const QString &path);

private:
    struct Row
    {
        int section = 0;
        int row = -1; // -1: the day's header
        QDateTime day; // the start of the day, for a header
        CommentCellDetail detail;
    };

    void loadThumbnail(int rowIndex, const QString &path) const;
    void thumbnailArrived(const QString &path, std::optional<QImage> picture);
    [[nodiscard]] QColor initialsColor(const QString &key) const;

    Clock m_clock;
    QPointer<CommentsVM> m_viewModel;
    QList<Row> m_rows;
    mutable QRandomGenerator m_random{QRandomGenerator::securelySeeded()};
    mutable QHash<QString, QColor> m_initialsColors;
    mutable QHash<QString, QImage> m_thumbnails;
    mutable QSet<QString> m_failed;
    // Thumbnail requests under way, each with the cell view model that runs it.
    mutable QHash<QString, std::shared_ptr<CommentTableViewCellVM>> m_loading;
};

} // namespace ravelin

Q_DECLARE_METATYPE(QList<ravelin::DetailFragment>)
