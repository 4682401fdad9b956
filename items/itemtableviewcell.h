#pragma once

#include "items/itemstatus.h"

#include <QPersistentModelIndex>
#include <QStyledItemDelegate>

namespace ravelin {

// Paints the rows of a task's items list: an inset card with the two-layer
// shadow, the item's name and details, and on the right its status image
// ("ok", "nok" or "open") with the "CustomQRCode" image beside it for items
// with a QR code (overhanging the status image's box by 12.5 points). In
// multiple-selection mode a selection mark leads the row. One painter serves
// every row; rows cost nothing while out of sight.
//
// A row that is swiped open shows its two actions (the statuses' texts) in the
// room it leaves on the right; swipeOffset() says how far.
class ItemTableViewCell : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static inline const QString reuseIdentifier = QStringLiteral("ItemTableViewCell");
    static constexpr int minHeight = 75;
    static constexpr qreal cornerRadius = 10;
    // The card sits inside the row with this gap on every side.
    static constexpr int cardInset = 2;
    static constexpr QSizeF accessorySize{37.5, 25};
    static constexpr int imageSide = 25;
    static constexpr int swipeActionWidth = 96;
    // The width of a swipe action at the worker's text size.
    [[nodiscard]] static int scaledSwipeActionWidth();

    explicit ItemTableViewCell(QObject *parent = nullptr);

    // Multiple-selection mode: the selection mark shows, the row's own
    // disclosure does not.
    [[nodiscard]] bool isEditing() const { return m_editing; }
    void setEditing(bool editing) { m_editing = editing; }

    // The row swiped open and how far (0 to the width of its actions).
    [[nodiscard]] QModelIndex swipedIndex() const { return m_swiped; }
    [[nodiscard]] qreal swipeOffset() const { return m_swipeOffset; }
    void setSwipe(const QModelIndex &index, qreal offset);

    // Where the parts of a row go, for a row rectangle.
    [[nodiscard]] static QRect cardFrame(const QRect &rowRect);
    [[nodiscard]] static QRectF accessoryRect(const QRect &rowRect);
    // The swipe actions' buttons in the room a fully swiped row leaves, in the
    // order of `statuses`.
    [[nodiscard]] static QList<QRect> swipeActionRects(const QRect &rowRect, qsizetype actions);
    // The height a row needs for its texts at a width (never below minHeight,
    // which grows with the worker's text size).
    [[nodiscard]] static int rowHeight(const QString &title, const QString &details, const QFont &font, int width,
                                       bool editing);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    bool m_editing = false;
    QPersistentModelIndex m_swiped;
    qreal m_swipeOffset = 0;
};

} // namespace ravelin
