#include "tasks/dashboardvm.h"

#include "api/apiqueue.h"
#include "api/debuglog.h"
#include "api/fatalerror.h"
#include "api/networkmanager.h"
#include "items/itemsresponse.h"
#include "tasks/tasksresponse.h"
#include "tasks/tasksupdateresponse.h"

namespace ravelin {

namespace {

const QString tasksFailure = QStringLiteral("We got a failure trying to get the tasks. The error we got was: ");

qint64 millisecondsOf(const QDateTime &date)
{
    if (!date.isValid())
        fatalError(QStringLiteral("A filter date cannot be sent as milliseconds"), "DashboardVM");
    return date.toMSecsSinceEpoch();
}

} // namespace

DashboardVM::DashboardVM(NetworkManager *networkManager, UsersData users, Clock clock, QObject *parent)
    : QObject(parent)
    , m_filterData(TaskFilterData::makeDefault(clock))
    , m_taskList(m_filterData)
    , m_networkManager(networkManager)
    , m_users(std::move(users))
{
}

TasksQueryParams DashboardVM::queryParams() const
{
    const TaskFilterConfiguration filter = m_filterData->filteringConfig;
    const SortConfiguration sort = m_filterData->sortingConfig;
    return TasksQueryParams{millisecondsOf(filter.dateStart), millisecondsOf(filter.dateEnd), filter.selectedPriority,
                            filter.selectedCategory,          sort.sortKey,                 sort.sortOrder};
}

void DashboardVM::fetchTasks(FetchCompletion completion)
{
    const Router route = Router::getAllTasks(m_users.currentUser.id, queryParams());
    m_networkManager->request<TasksResponse>(route, ApiQueue::shared(), this,
                                             [this, completion](const Result<TasksResponse> &result) {
                                                 if (!result.isSuccess()) {
                                                     debugLog(tasksFailure + result.error().localizedDescription());
                                                     completion(false, result.error());
                                                     return;
                                                 }
                                                 m_taskList.tasks = result.value().data;
                                                 invalidateSections();
                                                 debugLog(QStringLiteral("Fetched %1 tasks").arg(m_taskList.tasks.size()));
                                                 emit tasksChanged();
                                                 completion(true, std::nullopt);
                                             });
}

void DashboardVM::fetchItems(const TaskPtr &task, std::function<void(bool)> completion)
{
    m_networkManager->request<ItemsResponse>(
        Router::getItems(task->id), ApiQueue::shared(), this, [task, completion](const Result<ItemsResponse> &result) {
            if (!result.isSuccess()) {
                debugLog(QStringLiteral("We got a failure trying to get the items. The error we got was: ")
                         + result.error().localizedDescription());
                completion(false);
                return;
            }
            task->itemList.items = result.value().data;
            debugLog(QStringLiteral("Fetched %1 items").arg(task->itemList.items.size()));
            completion(true);
        });
}

void DashboardVM::updateTaskStatus(const TaskPtr &task, qint64 statusId,
                                   std::function<void(std::optional<TaskStatus>)> completion)
{
    const Router route = Router::updateTaskStatus(task->id, statusId, m_users.currentUser.id);
    m_networkManager->request<TasksUpdateResponse>(route, ApiQueue::shared(), this,
                                                   [this, completion](const Result<TasksUpdateResponse> &result) {
                                                       if (!result.isSuccess()) {
                                                           // The task-list wording is used for this operation too.
                                                           debugLog(tasksFailure + result.error().localizedDescription());
                                                           completion(std::nullopt);
                                                           return;
                                                       }
                                                       const TaskPtr &changed = result.value().task;
                                                       m_taskList.updateTask(*changed);
                                                       invalidateSections();
                                                       emit tasksChanged();
                                                       completion(changed->currentStatus);
                                                   });
}

QList<TaskSection> DashboardVM::makeSections(const TaskList &list)
{
    // Bucket by status in one pass over the sorted tasks; the buckets are already
    // in status order, and each keeps the sorted order of its tasks.
    const QList<TaskStatus> &statuses = TaskStatuses::allCases();
    QList<QList<TaskPtr>> buckets(statuses.size());
    for (const TaskPtr &task : list.sortedTasks())
        buckets[statuses.indexOf(task->currentStatus)].append(task);

    QList<TaskSection> sections;
    for (int i = 0; i < statuses.size(); ++i) {
        if (!buckets.at(i).isEmpty())
            sections.append(TaskSection{statuses.at(i), std::move(buckets[i])});
    }
    return sections;
}

const QList<TaskSection> &DashboardVM::sections() const
{
    const SortConfiguration sort = m_filterData->sortingConfig;
    if (!m_sectionsSortedBy || !(*m_sectionsSortedBy == sort)) {
        m_sections = makeSections(m_taskList);
        m_sectionsSortedBy = sort;
    }
    return m_sections;
}

void DashboardVM::invalidateSections()
{
    m_sectionsSortedBy.reset();
}

QList<int> DashboardVM::statusCounts() const
{
    const QList<TaskStatus> &statuses = TaskStatuses::allCases();
    QList<int> counts(statuses.size(), 0);
    for (const TaskPtr &task : m_taskList.tasks)
        ++counts[statuses.indexOf(task->currentStatus)];
    return counts;
}

std::optional<qint64> DashboardVM::nextStatusId(TaskStatus current)
{
    switch (current) {
    case TaskStatus::assigned:
    case TaskStatus::acknowledged: {
        // The next status in declaration order (wrapping round), as its one-based id.
        const QList<TaskStatus> &all = TaskStatuses::allCases();
        return (all.indexOf(current) + 1) % all.size() + 1;
    }
    case TaskStatus::blocked:
        return TaskStatuses::serverId(TaskStatus::in_progress);
    case TaskStatus::in_progress:
        return TaskStatuses::serverId(TaskStatus::complete);
    case TaskStatus::unassigned:
    case TaskStatus::complete:
        break;
    }
    return std::nullopt;
}

NetworkManager *DashboardVM::networkManager() const
{
    return m_networkManager;
}

} // namespace ravelin
