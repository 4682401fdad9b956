#pragma once

#include "items/itemstatus.h"

#include "views/virtuallistview.h"

#include <QPersistentModelIndex>

class QVariantAnimation;

namespace ravelin {

class ItemListModel;
class ItemTableViewCell;

// The items list of a task's screen: painted rows over the screen's
// ItemListModel inside the screen's scrolling area (the list itself never
// scrolls), measured only as they come into sight.
//
// Outside multiple-selection mode a tap on a row reports the row; an open item
// swiped to the left (by finger or mouse) reveals its two actions, which a
// context menu also offers. In multiple-selection mode a tap selects or
// deselects the row. Enter or Space acts on the current row.
class ItemTableView : public VirtualListView
{
    Q_OBJECT

public:
    // A press that moves further than this is a drag, not a tap.
    static constexpr int tapSlop = 8;

    explicit ItemTableView(QWidget *parent = nullptr);

    [[nodiscard]] ItemListModel *itemModel() const { return m_model; }
    void setItemModel(ItemListModel *model);
    [[nodiscard]] ItemTableViewCell *cellPainter() const { return m_painter; }

    // Multiple-selection mode (the table's editing mode).
    [[nodiscard]] bool isEditing() const { return m_editing; }
    void setEditing(bool editing);

    // The row swiped open, if any; closing it needs no animation.
    [[nodiscard]] int swipedRow() const;
    void openSwipe(int row);
    void closeSwipe(bool animated = true);

    // Where a row is, in the list's viewport.
    [[nodiscard]] QRect rowRect(int row) const;

signals:
    void rowTapped(int row);
    void swipeActionChosen(int row, ravelin::ItemStatus status);
    // In multiple-selection mode: a row was selected or deselected.
    void rowSelectionToggled(int row, bool selected);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void tap(int row);
    void setSwipeOffset(const QModelIndex &index, qreal offset);
    void animateSwipe(qreal to);
    [[nodiscard]] qreal fullSwipe() const;

    ItemListModel *m_model = nullptr;
    ItemTableViewCell *m_painter = nullptr;
    QVariantAnimation *m_swipeAnimation = nullptr;
    bool m_editing = false;
    // The press under way.
    QPersistentModelIndex m_pressIndex;
    QPoint m_pressPosition;
    qreal m_offsetAtPress = 0;
    bool m_pressing = false;
    bool m_swiping = false;
};

} // namespace ravelin
