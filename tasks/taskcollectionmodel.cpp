#include "tasks/taskcollectionmodel.h"

#include "tasks/dashboardtexts.h"

namespace ravelin {

TaskCollectionModel::TaskCollectionModel(QObject *parent)
    : QAbstractListModel(parent)
{ }

void TaskCollectionModel::setTasks(const QList<TaskPtr> &tasks)
{
    beginResetModel();
    m_tasks = tasks;
    endResetModel();
}

int TaskCollectionModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_tasks.size());
}

QVariant TaskCollectionModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Task &task = *m_tasks.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole: return task.name;
    case TaskRole: return QVariant::fromValue(m_tasks.at(index.row()));
    case IdentifierRole: return DashboardTexts::taskNameIdentifier(task.currentStatus);
    case Qt::AccessibleDescriptionRole: return DashboardTexts::cardDescription(task);
    case StatusRole: return TaskStatuses::rawValue(task.currentStatus);
    case CategoryRole: return task.taskCategory.name;
    case PriorityRole: return TaskPriorities::rawValue(task.priority);
    case ProgressRole: return int(task.progress.total);
    case ShowsAcknowledgeRole: return DashboardTexts::showsAcknowledgeButton(task);
    case SyncMarkRole: return QVariant::fromValue(syncMark(task.id));
    default: return {};
    }
}

Qt::ItemFlags TaskCollectionModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

void TaskCollectionModel::setSyncMarks(const SyncMarks &marks)
{
    const QList<int> rows = PendingResults::changedRows(m_marks, marks, m_tasks);
    m_marks = marks;
    for (const int row : rows) {
        const QModelIndex changed = index(row);
        emit dataChanged(changed, changed, {SyncMarkRole});
    }
}

QHash<int, QByteArray> TaskCollectionModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(TaskRole, "task");
    names.insert(IdentifierRole, "identifier");
    names.insert(StatusRole, "status");
    names.insert(CategoryRole, "category");
    names.insert(PriorityRole, "priority");
    names.insert(ProgressRole, "progress");
    names.insert(ShowsAcknowledgeRole, "showsAcknowledge");
    names.insert(SyncMarkRole, "syncMark");
    return names;
}

} // namespace ravelin
