#include "items/itemtableview.h"

#include "items/itemlistmodel.h"
#include "items/itemstexts.h"
#include "items/itemtableviewcell.h"
#include "views/textscale.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QVariantAnimation>

#include <algorithm>
#include <cmath>

namespace ravelin {

ItemTableView::ItemTableView(QWidget *parent)
    : VirtualListView(parent)
{
    setObjectName(QStringLiteral("tableView"));
    setAccessibleName(tr("Checklist"));
    setSelectionMode(QAbstractItemView::NoSelection);

    m_painter = new ItemTableViewCell(this);
    setItemDelegate(m_painter);
    // Most items have a short name and a line of details.
    setEstimatedRowHeight(TextScale::scaled(ItemTableViewCell::minHeight));

    m_swipeAnimation = new QVariantAnimation(this);
    m_swipeAnimation->setDuration(180);
    m_swipeAnimation->setEasingCurve(QEasingCurve::OutCubic);
    connect(m_swipeAnimation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant &value) { setSwipeOffset(m_painter->swipedIndex(), value.toReal()); });
    connect(m_swipeAnimation, &QVariantAnimation::finished, this, [this] {
        if (m_painter->swipeOffset() <= 0)
            setSwipeOffset({}, 0);
    });
}

void ItemTableView::setItemModel(ItemListModel *model)
{
    m_model = model;
    setModel(model);
    connect(model, &QAbstractItemModel::modelReset, this, [this] { setSwipeOffset({}, 0); });
}

void ItemTableView::setEditing(bool editing)
{
    if (m_editing == editing)
        return;
    m_editing = editing;
    closeSwipe(false);
    m_painter->setEditing(editing);
    setSelectionMode(editing ? QAbstractItemView::MultiSelection : QAbstractItemView::NoSelection);
    clearSelection();
    // Rows are measured again: the selection mark takes room from the texts.
    remeasure();
}

int ItemTableView::swipedRow() const
{
    const QModelIndex swiped = m_painter->swipedIndex();
    return swiped.isValid() && m_painter->swipeOffset() > 0 ? swiped.row() : -1;
}

qreal ItemTableView::fullSwipe() const
{
    return 2 * ItemTableViewCell::scaledSwipeActionWidth();
}

void ItemTableView::openSwipe(int row)
{
    if (!m_model || row < 0 || row >= m_model->rowCount() || m_editing)
        return;
    const QModelIndex index = m_model->index(row);
    if (!index.data(TaskItemsModel::HasSwipeActionsRole).toBool())
        return;
    if (m_painter->swipedIndex() != index)
        closeSwipe(false);
    setSwipeOffset(index, m_painter->swipeOffset());
    animateSwipe(fullSwipe());
}

void ItemTableView::closeSwipe(bool animated)
{
    if (!m_painter->swipedIndex().isValid())
        return;
    m_swipeAnimation->stop();
    if (animated)
        animateSwipe(0);
    else
        setSwipeOffset({}, 0);
}

void ItemTableView::animateSwipe(qreal to)
{
    m_swipeAnimation->stop();
    m_swipeAnimation->setStartValue(m_painter->swipeOffset());
    m_swipeAnimation->setEndValue(to);
    m_swipeAnimation->start();
}

void ItemTableView::setSwipeOffset(const QModelIndex &index, qreal offset)
{
    const QModelIndex before = m_painter->swipedIndex();
    m_painter->setSwipe(index, std::clamp<qreal>(offset, 0, fullSwipe()));
    for (const QModelIndex &changed : {before, index}) {
        if (changed.isValid() && changed.model() == model())
            viewport()->update(visualRect(changed));
    }
}

QRect ItemTableView::rowRect(int row) const
{
    return m_model ? visualRect(m_model->index(row)) : QRect();
}

void ItemTableView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        VirtualListView::mousePressEvent(event);
        return;
    }
    const QPoint position = event->position().toPoint();
    m_pressIndex = indexAt(position);
    m_pressPosition = position;
    m_pressing = m_pressIndex.isValid();
    m_swiping = false;
    m_offsetAtPress = m_painter->swipedIndex() == m_pressIndex ? m_painter->swipeOffset() : 0;
    if (m_pressing) // the keyboard goes on from here; selecting is the tap's business
        selectionModel()->setCurrentIndex(m_pressIndex, QItemSelectionModel::NoUpdate);
    event->accept();
}

void ItemTableView::mouseMoveEvent(QMouseEvent *event)
{
    event->accept();
    if (!m_pressing)
        return;
    const QPoint delta = event->position().toPoint() - m_pressPosition;
    if (!m_swiping) {
        // Mostly sideways on a row that has actions: the row follows the finger.
        const bool sideways = std::abs(delta.x()) > tapSlop && std::abs(delta.x()) > 2 * std::abs(delta.y());
        if (sideways && !m_editing && m_pressIndex.data(TaskItemsModel::HasSwipeActionsRole).toBool()) {
            m_swiping = true;
            if (m_painter->swipedIndex() != m_pressIndex)
                closeSwipe(false);
            m_swipeAnimation->stop();
        } else if (delta.manhattanLength() > tapSlop) {
            // A scroll, not a tap.
            m_pressing = false;
            return;
        }
    }
    if (m_swiping)
        setSwipeOffset(m_pressIndex, m_offsetAtPress - delta.x());
}

void ItemTableView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        VirtualListView::mouseReleaseEvent(event);
        return;
    }
    event->accept();
    const QPersistentModelIndex pressed = m_pressIndex;
    const bool wasPressing = m_pressing;
    const bool wasSwiping = std::exchange(m_swiping, false);
    m_pressing = false;
    m_pressIndex = QPersistentModelIndex();
    if (wasSwiping) {
        // Past half way it stays open, else it closes.
        animateSwipe(m_painter->swipeOffset() > fullSwipe() / 2 ? fullSwipe() : 0);
        return;
    }
    const QPoint position = event->position().toPoint();
    if (!wasPressing || !pressed.isValid() || (position - m_pressPosition).manhattanLength() > tapSlop
        || indexAt(position) != pressed)
        return;

    // With a row swiped open, a tap either picks one of its actions or closes it.
    if (swipedRow() >= 0) {
        const int row = swipedRow();
        if (pressed.row() == row) {
            const QList<ItemStatus> actions = ItemsTexts::swipeActions(*m_model->item(row));
            const QList<QRect> rects = ItemTableViewCell::swipeActionRects(visualRect(pressed), actions.size());
            for (qsizetype i = 0; i < rects.size(); ++i) {
                if (rects.at(i).contains(position)) {
                    closeSwipe(false);
                    emit swipeActionChosen(row, actions.at(i));
                    return;
                }
            }
        }
        closeSwipe();
        return;
    }
    if (revealIfPartlyHidden(pressed))
        return;
    tap(pressed.row());
}

void ItemTableView::mouseDoubleClickEvent(QMouseEvent *event)
{
    // A second quick tap is a tap of its own.
    mousePressEvent(event);
}

void ItemTableView::tap(int row)
{
    if (!m_model || row < 0 || row >= m_model->rowCount())
        return;
    if (!m_editing) {
        emit rowTapped(row);
        return;
    }
    const QModelIndex index = m_model->index(row);
    const bool selected = !selectionModel()->isSelected(index);
    selectionModel()->select(index, selected ? QItemSelectionModel::Select : QItemSelectionModel::Deselect);
    emit rowSelectionToggled(row, selected);
}

void ItemTableView::keyPressEvent(QKeyEvent *event)
{
    const QModelIndex current = currentIndex();
    if (current.isValid()
        && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space)) {
        tap(current.row());
        event->accept();
        return;
    }
    if (event->key() == Qt::Key_Escape && swipedRow() >= 0) {
        closeSwipe();
        event->accept();
        return;
    }
    VirtualListView::keyPressEvent(event);
}

void ItemTableView::contextMenuEvent(QContextMenuEvent *event)
{
    const QModelIndex index = indexAt(event->pos());
    if (!m_model || !index.isValid() || m_editing)
        return;
    const QList<ItemStatus> actions = ItemsTexts::swipeActions(*m_model->item(index.row()));
    if (actions.isEmpty())
        return;
    QMenu menu(this);
    for (const ItemStatus status : actions) {
        QAction *action = menu.addAction(ItemStatuses::text(status));
        action->setData(int(status));
    }
    if (QAction *chosen = menu.exec(event->globalPos()))
        emit swipeActionChosen(index.row(), ItemStatus(chosen->data().toInt()));
}

} // namespace ravelin
