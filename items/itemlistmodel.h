#pragma once

#include "items/itemstatus.h"
#include "items/taskitemsmodel.h"

#include <QSortFilterProxyModel>

namespace ravelin {

// The rows of a task's items screen: the task's items that pass its status
// filter, in server order, so that a row number is always a position in the
// task's `filteredItems`. A filter over one TaskItemsModel: a new answer
// changes rows one by one, and choosing another status removes and inserts
// rows; nothing resets but another task. The roles are TaskItemsModel's.
class ItemListModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit ItemListModel(QObject *parent = nullptr);

    [[nodiscard]] TaskItemsModel *taskItems() const { return m_items; }
    [[nodiscard]] TaskPtr task() const { return m_items->task(); }
    // Shows the task's filtered items; the views reset.
    void setTask(const TaskPtr &task);
    // Takes the task's items and its filter again.
    void reload();
    [[nodiscard]] ItemStatus statusFilter() const { return m_status; }

    [[nodiscard]] ItemPtr item(int row) const;
    [[nodiscard]] QModelIndex index(int row, int column = 0, const QModelIndex &parent = {}) const override;

protected:
    [[nodiscard]] bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    TaskItemsModel *m_items = nullptr;
    ItemStatus m_status = ItemStatus::all;
};

} // namespace ravelin
