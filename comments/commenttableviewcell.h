#pragma once

#include "comments/commentcelldetail.h"

#include <QStyledItemDelegate>

namespace ravelin {

// Paints the rows of a comment thread: a day's header (the time since the
// day's start, in a pill), or a comment: the author's round icon, then a card
// with the author's name, the time (today's comments only), the details line
// (each named item, or "Task Marked as Blocked", after its status icon in the
// line's colour), the text and the first picture's thumbnail in a box of a
// fixed size (a placeholder while it loads). A row's height never depends on
// its picture. One painter serves every row.
class CommentTableViewCell : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static inline const QString reuseIdentifier = QStringLiteral("CommentTableViewCell");
    static constexpr int minHeight = 85;
    static constexpr int headerHeight = 36;
    static constexpr int avatarSide = 36;
    static constexpr QSize thumbnailBox{200, 150};

    // Where the parts of a comment row go.
    struct Layout
    {
        QRect avatar;
        QRect card;
        QRect author;
        QRect time;
        QRect details;
        QRect text;
        QRect picture; // empty without a picture
        int height = minHeight;
    };

    explicit CommentTableViewCell(QObject *parent = nullptr);

    [[nodiscard]] static Layout layout(const QStyleOptionViewItem &option, const QModelIndex &index);

    // The details line's icon box: a square as wide as the thin system font of
    // size 12 is high (its point size), placed against the baseline by that
    // font's descender and cap height: y = descender + cap height + (descender -
    // size / 2) + 2, rounded outward. Upward from the baseline is positive.
    [[nodiscard]] static QRectF detailIconBounds();
    // The icon of a fragment, recoloured with the fragment's colour.
    [[nodiscard]] static QImage detailIcon(const DetailFragment &fragment, qreal devicePixelRatio = 1.0);
    // The fragment's colour: the named colour (or its stand-in) at the fragment's alpha.
    [[nodiscard]] static QColor fragmentColor(const DetailFragment &fragment);
    // The author's picture: the host's image of that name, else the host's
    // "list_pin_people_01.png"; nothing when the host has neither.
    [[nodiscard]] static QImage authorIcon(const QString &iconName);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    void paintHeader(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
    void paintComment(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
    // The ring around the row that has the keyboard focus.
    static void paintFocusRing(QPainter *painter, const QRectF &rect, qreal radius);
};

} // namespace ravelin
