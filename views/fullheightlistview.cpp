#include "views/fullheightlistview.h"

#include <QAbstractItemModel>
#include <QResizeEvent>
#include <QScrollArea>
#include <QStyledItemDelegate>

namespace ravelin {

FullHeightListView::FullHeightListView(QWidget *parent)
    : QListView(parent)
{
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setUniformItemSizes(false);
    setWordWrap(true);
    setResizeMode(QListView::Adjust);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    setStyleSheet(QStringLiteral("QListView { background: transparent; border: none; }"));
}

void FullHeightListView::setModel(QAbstractItemModel *model)
{
    QListView::setModel(model);
    if (!model)
        return;
    connect(model, &QAbstractItemModel::modelReset, this, &FullHeightListView::updateGeometry);
    connect(model, &QAbstractItemModel::layoutChanged, this, &FullHeightListView::updateGeometry);
    connect(model, &QAbstractItemModel::rowsInserted, this, &FullHeightListView::updateGeometry);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &FullHeightListView::updateGeometry);
    updateGeometry();
}

int FullHeightListView::heightForWidth(int width) const
{
    const QAbstractItemModel *model = this->model();
    if (!model)
        return 0;
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = QRect(0, 0, width, 0);
    int height = 0;
    for (int row = 0; row < model->rowCount(rootIndex()); ++row) {
        const QModelIndex index = model->index(row, 0, rootIndex());
        height += itemDelegateForIndex(index)->sizeHint(option, index).height();
    }
    return height;
}

QSize FullHeightListView::sizeHint() const
{
    const int width = this->width() > 0 ? this->width() : 360;
    return {width, heightForWidth(width)};
}

QSize FullHeightListView::minimumSizeHint() const
{
    return {100, 0};
}

void FullHeightListView::remeasure()
{
    scheduleDelayedItemsLayout();
    updateGeometry();
    viewport()->update();
}

void FullHeightListView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QListView::currentChanged(current, previous);
    if (!current.isValid() || !hasFocus())
        return;
    // Moved by the keyboard: the scrolling area around brings the row into sight.
    for (QWidget *ancestor = parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
        auto *area = qobject_cast<QScrollArea *>(ancestor);
        if (!area || !area->widget() || !area->widget()->isAncestorOf(this))
            continue;
        const QRect row = visualRect(current);
        const QPoint middle = viewport()->mapTo(area->widget(), row.center());
        area->ensureVisible(middle.x(), middle.y(), 0, row.height() / 2 + 8);
        return;
    }
}

void FullHeightListView::resizeEvent(QResizeEvent *event)
{
    QListView::resizeEvent(event);
    // Texts wrap differently at another width.
    if (event->oldSize().width() != event->size().width())
        updateGeometry();
}

} // namespace ravelin
