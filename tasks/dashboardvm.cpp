#include "tasks/dashboardvm.h"

#include "api/apiqueue.h"
#include "api/debuglog.h"
#include "api/fatalerror.h"
#include "api/networkmanager.h"
#include "api/outboxsender.h"
#include "items/itemsresponse.h"
#include "tasks/tasksresponse.h"
#include "tasks/tasksupdateresponse.h"

#include <QTimer>

#include <vector>

namespace ravelin {

namespace {

constexpr QLatin1StringView tasksFailure("We got a failure trying to get the tasks. The error we got was: ");

qint64 millisecondsOf(const QDateTime &date)
{
    if (!date.isValid())
        fatalError(QStringLiteral("A filter date cannot be sent as milliseconds"), "DashboardVM");
    return date.toMSecsSinceEpoch();
}

} // namespace

DashboardVM::DashboardVM(NetworkManager *networkManager, UsersData users, const Clock &clock, QObject *parent)
    : QObject(parent)
    , m_filterData(TaskFilterData::makeDefault(clock))
    , m_taskList(m_filterData)
    , m_networkManager(networkManager)
    , m_users(std::move(users))
{ }

TasksQueryParams DashboardVM::queryParams() const
{
    const TaskFilterConfiguration filter = m_filterData->filteringConfig;
    const SortConfiguration sort = m_filterData->sortingConfig;
    return TasksQueryParams{millisecondsOf(filter.dateStart),
                            millisecondsOf(filter.dateEnd),
                            filter.selectedPriority,
                            filter.selectedCategory,
                            sort.sortKey,
                            sort.sortOrder};
}

void DashboardVM::fetchTasks(FetchCompletion completion)
{
    const Router route = Router::getAllTasks(m_users.currentUser.id, queryParams());
    const SortConfiguration sort = m_filterData->sortingConfig;
    const quint64 generation = ++m_generation;
    const OutboxSender *outbox = m_networkManager->outbox();
    m_networkManager->request<TasksResponse, ArrangedTasks>(
        route, ApiQueue::shared(), this,
        [sort, pending = outbox ? outbox->pending() : PendingResults()](TasksResponse &&response) {
            pending.applyTo(response.data);
            return arrange(std::move(response.data), sort);
        },
        [this, completion = std::move(completion), generation, route](const Result<ArrangedTasks> &result) {
            m_cachedAt = m_networkManager ? m_networkManager->cachedAnswerTime(route) : std::nullopt;
            if (!result.isSuccess()) {
                debugLog(lcTasks, tasksFailure + result.error().localizedDescription());
                completion(false, result.error());
                return;
            }
            // A newer fetch or status change may already have published; this
            // answer's list is still what the worker asked for last.
            if (generation == m_generation) {
                takeTasks(result.value());
            } else {
                m_taskList.tasks = result.value().tasks;
                invalidateSections();
            }
            debugLog(lcTasks, QStringLiteral("Fetched %1 tasks").arg(m_taskList.tasks.size()));
            emit tasksChanged();
            completion(true, std::nullopt);
        });
}

void DashboardVM::fetchItems(const TaskPtr &task, std::function<void(bool)> completion)
{
    m_networkManager->request<ItemsResponse>(
        Router::getItems(task->id), ApiQueue::shared(), this,
        [this, task, completion = std::move(completion)](const Result<ItemsResponse> &result) {
            if (!result.isSuccess()) {
                debugLog(lcTasks,
                         QStringLiteral("We got a failure trying to get the items. The error we got was: ")
                             + result.error().localizedDescription());
                completion(false);
                return;
            }
            task->itemList.items = result.value().data;
            if (const OutboxSender *outbox = m_networkManager ? m_networkManager->outbox() : nullptr)
                outbox->pending().applyTo(task->itemList.items);
            debugLog(lcTasks, QStringLiteral("Fetched %1 items").arg(task->itemList.items.size()));
            completion(true);
        });
}

void DashboardVM::updateTaskStatus(const TaskPtr &task, qint64 statusId,
                                   std::function<void(std::optional<TaskStatus>)> completion)
{
    if (OutboxSender *outbox = m_networkManager->outbox()) {
        queueTaskStatus(*outbox, task, statusId, std::move(completion));
        return;
    }
    const Router route = Router::updateTaskStatus(task->id, statusId, m_users.currentUser.id);
    m_networkManager->request<TasksUpdateResponse>(
        route, ApiQueue::shared(), this,
        [this, completion = std::move(completion)](const Result<TasksUpdateResponse> &result) {
            if (!result.isSuccess()) {
                // The task-list wording is used for this operation too.
                debugLog(lcTasks, tasksFailure + result.error().localizedDescription());
                completion(std::nullopt);
                return;
            }
            const TaskPtr &changed = result.value().task;
            if (m_taskList.updateTask(*changed))
                invalidateSections();
            emit tasksChanged();
            completion(changed->currentStatus);
        });
}

void DashboardVM::queueTaskStatus(OutboxSender &outbox, const TaskPtr &task, qint64 statusId,
                                  std::function<void(std::optional<TaskStatus>)> completion)
{
    // A block queues its own status change with its incident comment.
    const bool queued = outbox.pending().taskStatusId(task->id) == statusId
        || outbox.add(OutboxEntry::taskStatus(m_users.currentUser.id, task->id, statusId, m_networkManager->clock()()))
               .has_value();
    std::optional<TaskStatus> status;
    if (queued) {
        // Saved, the change shows at once; the card is marked until the server has it.
        Task changed = *task;
        changed.currentStatus = TaskStatuses::fromServerId(statusId);
        changed.updaterUserId = m_users.currentUser.id;
        if (m_taskList.updateTask(changed))
            invalidateSections();
        status = changed.currentStatus;
    }
    QTimer::singleShot(0, this, [this, completion = std::move(completion), status] {
        if (status)
            emit tasksChanged();
        completion(status);
    });
}

ArrangedTasks DashboardVM::arrange(QList<TaskPtr> tasks, const SortConfiguration &sort,
                                   const QList<TaskStatus> &statuses)
{
    const QList<TaskStatus> &all = TaskStatuses::allCases();
    // Where each task goes is decided from the statuses of the list as it was
    // handed over (given, or the tasks' own when nobody else sees them yet).
    const bool given = statuses.size() == tasks.size();
    ArrangedTasks out;
    out.statusCounts = QList<int>(all.size(), 0);
    std::vector<qsizetype> bucketOf(std::size_t(tasks.size()));
    for (qsizetype i = 0; i < tasks.size(); ++i) {
        const qsizetype bucket = all.indexOf(given ? statuses.at(i) : tasks.at(i)->currentStatus);
        bucketOf[std::size_t(i)] = bucket;
        ++out.statusCounts[bucket];
    }
    // Fill the buckets in sorted order; they are already in status order, and
    // each keeps the sorted order of its tasks.
    QList<QList<TaskPtr>> buckets(all.size());
    for (qsizetype i = 0; i < all.size(); ++i)
        buckets[i].reserve(out.statusCounts.at(i));
    for (const int index : TaskList::sortedOrder(tasks, sort))
        buckets[bucketOf[std::size_t(index)]].append(tasks.at(index));
    for (qsizetype i = 0; i < all.size(); ++i) {
        if (!buckets.at(i).isEmpty())
            out.sections.append(TaskSection{all.at(i), std::move(buckets[i])});
    }
    out.tasks = std::move(tasks);
    return out;
}

void DashboardVM::invalidateSections()
{
    // The tasks are shared with the screens, so their statuses are read here on
    // the main thread; the rest of what sorting reads never changes after decoding.
    QList<TaskStatus> statuses;
    statuses.reserve(m_taskList.tasks.size());
    for (const TaskPtr &task : std::as_const(m_taskList.tasks))
        statuses.append(task->currentStatus);
    const quint64 generation = ++m_generation;
    const SortConfiguration sort = m_filterData->sortingConfig;
    const QPointer<DashboardVM> self(this);
    ApiQueue::shared().async([self, generation, sort, tasks = m_taskList.tasks, statuses = std::move(statuses)] {
        auto arranged = std::make_shared<ArrangedTasks>(arrange(tasks, sort, statuses));
        ApiQueue::deliverToMainThread([self, generation, arranged] {
            if (self && generation == self->m_generation)
                self->publish(std::move(*arranged));
        });
    });
}

void DashboardVM::takeTasks(const ArrangedTasks &arranged)
{
    m_taskList.tasks = arranged.tasks;
    ++m_generation;
    publish(arranged);
}

void DashboardVM::publish(ArrangedTasks arranged)
{
    arranged.tasks.clear(); // the list itself lives in taskList
    m_arranged = std::move(arranged);
    emit sectionsChanged();
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
    case TaskStatus::blocked: return TaskStatuses::serverId(TaskStatus::in_progress);
    case TaskStatus::in_progress: return TaskStatuses::serverId(TaskStatus::complete);
    case TaskStatus::unassigned:
    case TaskStatus::complete: break;
    }
    return std::nullopt;
}

NetworkManager *DashboardVM::networkManager() const
{
    return m_networkManager;
}

} // namespace ravelin
