#include "items/itemlistmodel.h"

namespace ravelin {

ItemListModel::ItemListModel(QObject *parent)
    : QSortFilterProxyModel(parent)
    , m_items(new TaskItemsModel(this))
{
    setSourceModel(m_items);
}

void ItemListModel::setTask(const TaskPtr &task)
{
    m_status = task ? task->itemList.filterData.status : ItemStatus::all;
    m_items->setTask(task);
}

void ItemListModel::reload()
{
    const TaskPtr task = m_items->task();
    if (!task)
        return;
    m_items->update(task->itemList.items);
    if (task->itemList.filterData.status != m_status) {
        m_status = task->itemList.filterData.status;
        invalidateRowsFilter();
    }
}

ItemPtr ItemListModel::item(int row) const
{
    return m_items->item(mapToSource(index(row)).row());
}

QModelIndex ItemListModel::index(int row, int column, const QModelIndex &parent) const
{
    return QSortFilterProxyModel::index(row, column, parent);
}

bool ItemListModel::filterAcceptsRow(int sourceRow, const QModelIndex &) const
{
    return m_status == ItemStatus::all || m_items->item(sourceRow)->status == m_status;
}

} // namespace ravelin
