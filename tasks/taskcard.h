#pragma once

#include "tasks/task.h"

#include <QPersistentModelIndex>
#include <QStyledItemDelegate>

namespace ravelin {

class TaskCollectionViewCellDelegate;

// Paints the dashboard's task cards: a rounded, shadowed card with the task's
// priority chip, the small chart of its item progress, its name (two lines at
// most), its category and, for assigned tasks, the acknowledge button. One
// instance paints every card of every strip, so a card costs nothing while it
// is not on screen.
//
// The acknowledge button is painted too: the strip that shows the card asks
// acknowledgeTapRect() whether a press hit it, shows the pressed look through
// setPressedIndex(), and reports the tap through didTapAcknowledge().
class TaskCollectionViewCell : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static inline const QString reuseIdentifier = QStringLiteral("TaskCollectionViewCell");
    static constexpr int cardWidth = 184;
    static constexpr int cardHeight = 164;
    static constexpr qreal cornerRadius = 14;
    // Room around the card for its shadow, and the gap to the next card.
    static constexpr int shadowMargin = 6;
    static constexpr int cardSpacing = 4;
    // The first card lines up with the section header's text.
    static constexpr int leadingInset = 10;
    // Every card takes the same room in its strip: this at the designed text
    // size, itemSize() at the worker's (the whole card grows with the text).
    static constexpr QSize designItemSize{cardWidth + 2 * shadowMargin + cardSpacing, cardHeight + 2 * shadowMargin};
    [[nodiscard]] static QSize itemSize();

    explicit TaskCollectionViewCell(QObject *parent = nullptr);

    [[nodiscard]] TaskCollectionViewCellDelegate *delegate() const { return m_delegate; }
    void setDelegate(TaskCollectionViewCellDelegate *delegate) { m_delegate = delegate; }

    // Where the card and its parts are drawn in an item's rectangle, at the
    // worker's text size.
    [[nodiscard]] static QRect cardFrame(const QRect &itemRect);
    [[nodiscard]] static QRect acknowledgeButtonRect(const QRect &itemRect);
    // Where a tap counts as one on the acknowledge button: the button grown to
    // a finger's size inside the card.
    [[nodiscard]] static QRect acknowledgeTapRect(const QRect &itemRect);
    [[nodiscard]] static QRect chartRect(const QRect &itemRect);

    // The card whose acknowledge button is held down (none: an invalid index).
    [[nodiscard]] QModelIndex pressedIndex() const { return m_pressed; }
    void setPressedIndex(const QModelIndex &index) { m_pressed = index; }

    // The acknowledge button of the card at `index` was tapped: hands the card's
    // task to the delegate; does nothing without a task or a delegate.
    void didTapAcknowledge(const QModelIndex &index) const;

    // The task's name on at most two lines, the second one elided.
    [[nodiscard]] static QString twoLineName(const QString &name, const QFont &font, int width);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    TaskCollectionViewCellDelegate *m_delegate = nullptr;
    QPersistentModelIndex m_pressed;
};

} // namespace ravelin
