#include "views/virtuallistview.h"

#include <QCoreApplication>
#include <QLayout>
#include <QPaintEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>

namespace ravelin {

VirtualListView::VirtualListView(QWidget *parent)
    : QListView(parent)
{
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    // The scrolling area around brings rows into sight, for the keyboard only.
    setAutoScroll(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    setStyleSheet(QStringLiteral("QListView { background: transparent; border: none; }"));
}

void VirtualListView::setModel(QAbstractItemModel *model)
{
    if (QAbstractItemModel *old = this->model())
        disconnect(old, nullptr, this, nullptr);
    QListView::setModel(model);
    if (model) {
        connect(model, &QAbstractItemModel::rowsRemoved, this, &VirtualListView::rowsRemoved);
        connect(model, &QAbstractItemModel::layoutChanged, this, &VirtualListView::layoutChanged);
        connect(model, &QAbstractItemModel::rowsMoved, this, &VirtualListView::layoutChanged);
    }
    reset();
}

void VirtualListView::setEstimatedRowHeight(int height)
{
    m_estimate = std::max(1, height);
    reset();
}

QModelIndex VirtualListView::rowIndex(int row) const
{
    return model() && row >= 0 ? model()->index(row, 0, rootIndex()) : QModelIndex();
}

int VirtualListView::heightForWidth(int) const
{
    // What the rows take as far as they are known; the rest at their estimate.
    return m_heights.total();
}

QSize VirtualListView::sizeHint() const
{
    return {width() > 0 ? width() : 360, m_heights.total()};
}

QSize VirtualListView::minimumSizeHint() const
{
    return {100, 0};
}

void VirtualListView::remeasure()
{
    m_heights.dropAll();
    viewport()->update();
    schedulePrepare();
}

QRect VirtualListView::sight() const
{
    const QRect all = viewport()->rect();
    if (!isVisible())
        return {};
    if (m_area && m_area->viewport()->isAncestorOf(viewport())) {
        const QRect shown = m_area->viewport()->rect();
        return all.intersected(QRect(viewport()->mapFrom(m_area->viewport(), shown.topLeft()), shown.size()));
    }
    return viewport()->visibleRegion().boundingRect();
}

QRect VirtualListView::visualRect(const QModelIndex &index) const
{
    if (!index.isValid() || index.model() != model() || index.parent() != rootIndex() || index.column() != 0
        || index.row() >= m_heights.count())
        return {};
    return {0, m_heights.top(index.row()), viewport()->width(), m_heights.height(index.row())};
}

QModelIndex VirtualListView::indexAt(const QPoint &point) const
{
    if (point.x() < 0 || point.x() >= viewport()->width())
        return {};
    return rowIndex(m_heights.rowAt(point.y()));
}

bool VirtualListView::revealIfPartlyHidden(const QModelIndex &index)
{
    const QRect shown = sight();
    const QRect row = visualRect(index);
    if (!index.isValid() || shown.isEmpty() || shown.contains(row) || row.height() > shown.height())
        return false;
    scrollTo(index, EnsureVisible);
    return true;
}

void VirtualListView::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    if (!index.isValid() || index.row() >= m_heights.count())
        return;
    followScrollArea();
    // The rows around it are measured first: from one screen above it to one below.
    const int screen = m_area ? m_area->viewport()->height() : std::max(1, sight().height());
    const int row = index.row();
    int above = 0;
    for (int r = row - 1; r >= 0 && above < screen; --r) {
        measure(r);
        above += m_heights.height(r);
    }
    measure(row);
    int below = 0;
    for (int r = row + 1; r < m_heights.count() && below < screen; ++r) {
        measure(r);
        below += m_heights.height(r);
    }
    applyGeometry(0);
    if (!m_area || !m_area->widget())
        return;
    const QRect rect = visualRect(index);
    const QPoint top = viewport()->mapTo(m_area->widget(), rect.topLeft());
    QScrollBar *bar = m_area->verticalScrollBar();
    const int visible = m_area->viewport()->height();
    switch (hint) {
    case PositionAtTop: bar->setValue(top.y()); break;
    case PositionAtBottom: bar->setValue(top.y() + rect.height() - visible); break;
    case PositionAtCenter: bar->setValue(top.y() + rect.height() / 2 - visible / 2); break;
    case EnsureVisible:
        if (top.y() < bar->value())
            bar->setValue(top.y());
        else if (top.y() + rect.height() > bar->value() + visible)
            bar->setValue(std::min(top.y(), top.y() + rect.height() - visible));
        break;
    }
    prepareSight(false);
}

QModelIndex VirtualListView::moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers)
{
    const int count = m_heights.count();
    if (count == 0)
        return {};
    const int current = currentIndex().isValid() ? currentIndex().row() : -1;
    const int page = std::max(1, sight().height());
    int row = current;
    switch (cursorAction) {
    case MoveUp:
    case MovePrevious: row = current < 0 ? 0 : current - 1; break;
    case MoveDown:
    case MoveNext: row = current + 1; break;
    case MoveHome: row = 0; break;
    case MoveEnd: row = count - 1; break;
    case MovePageUp: row = current < 0 ? 0 : m_heights.rowAt(std::max(0, m_heights.top(current) - page)); break;
    case MovePageDown: {
        const int target = current < 0 ? page : m_heights.top(current) + page;
        row = target >= m_heights.total() ? count - 1 : m_heights.rowAt(target);
        break;
    }
    case MoveLeft:
    case MoveRight: row = current; break;
    }
    return rowIndex(std::clamp(row, 0, count - 1));
}

void VirtualListView::setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command)
{
    if (!selectionModel() || m_heights.count() == 0)
        return;
    const QRect rows = rect.normalized();
    const int first = m_heights.rowAt(std::max(0, rows.top()));
    int last = m_heights.rowAt(rows.bottom());
    if (last < 0)
        last = m_heights.count() - 1;
    if (first < 0 || rows.top() >= m_heights.total()) {
        selectionModel()->select(QItemSelection(), command);
        return;
    }
    selectionModel()->select(QItemSelection(rowIndex(first), rowIndex(last)), command);
}

QRegion VirtualListView::visualRegionForSelection(const QItemSelection &selection) const
{
    QRegion region;
    for (const QItemSelectionRange &range : selection) {
        if (range.parent() != rootIndex() || range.top() >= m_heights.count())
            continue;
        const int top = m_heights.top(range.top());
        const int bottom = m_heights.top(std::min(range.bottom(), m_heights.count() - 1) + 1);
        region += QRect(0, top, viewport()->width(), bottom - top);
    }
    return region;
}

void VirtualListView::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight, const QList<int> &roles)
{
    const bool paintOnly = !roles.isEmpty()
        && std::all_of(roles.cbegin(), roles.cend(), [this](int role) { return m_paintOnlyRoles.contains(role); });
    if (!paintOnly && topLeft.parent() == rootIndex()) {
        for (int row = topLeft.row(); row <= bottomRight.row() && row < m_heights.count(); ++row)
            m_heights.dropMeasurement(row);
        schedulePrepare();
    }
    // Past the list view, whose own layout measures every row.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QAbstractItemView::dataChanged(topLeft, bottomRight, roles);
}

void VirtualListView::rowsInserted(const QModelIndex &parent, int start, int end)
{
    // Past the list view, whose own layout measures every row.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QAbstractItemView::rowsInserted(parent, start, end);
    if (parent != rootIndex())
        return;
    m_heights.insertRows(start, end - start + 1);
    updateGeometry();
    viewport()->update();
    schedulePrepare();
}

void VirtualListView::rowsAboutToBeRemoved(const QModelIndex &parent, int start, int end)
{
    // Past the list view, whose own layout measures every row.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QAbstractItemView::rowsAboutToBeRemoved(parent, start, end);
}

void VirtualListView::rowsRemoved(const QModelIndex &parent, int first, int last)
{
    if (parent != rootIndex())
        return;
    m_heights.removeRows(first, last - first + 1);
    updateGeometry();
    viewport()->update();
    schedulePrepare();
}

void VirtualListView::layoutChanged()
{
    m_heights.reset(model() ? model()->rowCount(rootIndex()) : 0, m_estimate);
    updateGeometry();
    viewport()->update();
    schedulePrepare();
}

void VirtualListView::reset()
{
    QListView::reset();
    layoutChanged();
}

void VirtualListView::doItemsLayout()
{
    // Not the list view's layout: rows are measured as they come into sight.
    // Past the list view, whose own layout measures every row.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QAbstractItemView::doItemsLayout();
}

void VirtualListView::updateGeometries()
{
    // Past the list view, whose own layout measures every row.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QAbstractItemView::updateGeometries();
    updateGeometry();
}

QSize VirtualListView::viewportSizeHint() const
{
    return {viewport()->width(), m_heights.total()};
}

void VirtualListView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QListView::currentChanged(current, previous);
    // Moved by the keyboard: the scrolling area around brings the row into sight.
    if (current.isValid() && hasFocus())
        scrollTo(current);
}

void VirtualListView::resizeEvent(QResizeEvent *event)
{
    // Past the list view, whose own layout measures every row.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QAbstractItemView::resizeEvent(event);
    // Texts wrap differently at another width.
    if (event->size().width() != m_width) {
        m_width = event->size().width();
        m_heights.dropAll();
    }
    schedulePrepare();
}

void VirtualListView::showEvent(QShowEvent *event)
{
    QListView::showEvent(event);
    followScrollArea();
    schedulePrepare();
}

void VirtualListView::followScrollArea()
{
    QScrollArea *area = nullptr;
    for (QWidget *ancestor = parentWidget(); ancestor && !area; ancestor = ancestor->parentWidget()) {
        auto *candidate = qobject_cast<QScrollArea *>(ancestor);
        if (candidate && candidate->widget() && candidate->widget()->isAncestorOf(this))
            area = candidate;
    }
    if (area == m_area)
        return;
    if (m_area)
        disconnect(m_area->verticalScrollBar(), nullptr, this, nullptr);
    m_area = area;
    if (m_area) {
        m_lastScrollValue = m_area->verticalScrollBar()->value();
        connect(m_area->verticalScrollBar(), &QScrollBar::valueChanged, this, &VirtualListView::scrolled);
    }
}

void VirtualListView::scrolled(int value)
{
    if (value == m_lastScrollValue)
        return;
    m_scrollingUp = value < m_lastScrollValue;
    m_lastScrollValue = value;
    prepareSight(false);
}

void VirtualListView::schedulePrepare()
{
    if (m_preparePending)
        return;
    m_preparePending = true;
    QTimer::singleShot(0, this, [this] {
        m_preparePending = false;
        prepareSight(false);
    });
}

int VirtualListView::measure(int row)
{
    if (m_heights.isMeasured(row))
        return 0;
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = QRect(0, 0, viewport()->width(), 0);
    const QModelIndex index = rowIndex(row);
    return m_heights.setMeasured(row, std::max(1, itemDelegateForIndex(index)->sizeHint(option, index).height()));
}

void VirtualListView::prepareSight(bool painting)
{
    if (!painting)
        followScrollArea();
    QRect seen = sight();
    if (!model() || m_heights.count() == 0 || seen.isEmpty()) {
        reportRowsInSight(-1, -1);
        return;
    }
    const int screen = seen.height();
    const int totalBefore = m_heights.total();
    int shift = 0;
    if (!painting && m_scrollingUp) {
        // One screen ahead above: rows measured there move what is in sight,
        // and the area moves with them.
        const int first = m_heights.rowAt(std::clamp(seen.top(), 0, m_heights.total() - 1));
        for (int row = first - 1; row >= 0 && m_heights.top(row + 1) > seen.top() - screen; --row)
            shift += measure(row);
        if (shift != 0) {
            applyGeometry(shift);
            seen = sight();
        }
    }
    const int ahead = m_scrollingUp ? 0 : screen;
    int row = m_heights.rowAt(std::clamp(seen.top(), 0, std::max(0, m_heights.total() - 1)));
    for (; row >= 0 && row < m_heights.count() && m_heights.top(row) <= seen.bottom() + ahead; ++row)
        measure(row);
    if (m_heights.total() != totalBefore + shift) {
        if (!painting) {
            applyGeometry(0);
        } else if (!m_geometryPending) {
            // Not while painting: the new height is taken right after.
            m_geometryPending = true;
            QTimer::singleShot(0, this, [this] {
                m_geometryPending = false;
                applyGeometry(0);
            });
        }
    }
    const int top = std::max(0, seen.top() - (m_scrollingUp ? screen : 0));
    const int bottom = seen.bottom() + ahead;
    const int first = m_heights.rowAt(std::min(top, m_heights.total() - 1));
    const int last = bottom >= m_heights.total() ? m_heights.count() - 1 : m_heights.rowAt(bottom);
    reportRowsInSight(first, last);
}

void VirtualListView::applyGeometry(int shift)
{
    updateGeometry();
    if (!m_area || !m_area->widget())
        return;
    // The scrolling area takes the list's new height now rather than after the
    // posted layout requests, so that the move below lands where it should.
    QCoreApplication::sendPostedEvents(m_area->widget(), QEvent::LayoutRequest);
    QEvent request(QEvent::LayoutRequest);
    QCoreApplication::sendEvent(m_area, &request);
    if (shift != 0) {
        QScrollBar *bar = m_area->verticalScrollBar();
        m_lastScrollValue = bar->value() + shift;
        bar->setValue(bar->value() + shift);
        m_lastScrollValue = bar->value();
    }
}

void VirtualListView::reportRowsInSight(int first, int last)
{
    if (m_rowsInSight == std::pair(first, last))
        return;
    m_rowsInSight = {first, last};
    emit rowsInSightChanged(first, last);
}

void VirtualListView::paintEvent(QPaintEvent *event)
{
    prepareSight(true);
    if (!model() || m_heights.count() == 0)
        return;
    QPainter painter(viewport());
    const QRect area = event->rect();
    const QModelIndex current = currentIndex();
    const bool focus = (hasFocus() || viewport()->hasFocus()) && current.isValid();
    int row = m_heights.rowAt(std::max(0, area.top()));
    for (; row >= 0 && row < m_heights.count() && m_heights.top(row) <= area.bottom(); ++row) {
        const QModelIndex index = rowIndex(row);
        QStyleOptionViewItem option;
        initViewItemOption(&option);
        option.rect = visualRect(index);
        if (selectionModel() && selectionModel()->isSelected(index))
            option.state |= QStyle::State_Selected;
        if (focus && current == index)
            option.state |= QStyle::State_HasFocus;
        itemDelegateForIndex(index)->paint(&painter, option, index);
    }
}

} // namespace ravelin
