#pragma once

#include "api/clock.h"
#include "api/managererrors.h"
#include "api/pendingresults.h"
#include "api/tasksqueryparams.h"
#include "api/usersdata.h"
#include "filter/taskfilterdata.h"
#include "tasks/tasklist.h"
#include "tasks/taskstatus.h"

#include <QList>
#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>

namespace ravelin {

class NetworkManager;
class OutboxSender;

// One dashboard section: the tasks of one status, in sorted order.
struct TaskSection
{
    std::optional<TaskStatus> status;
    QList<TaskPtr> tasks;
};

// Tasks as the dashboard shows them: sorted, grouped into sections and counted
// per status. Made on the api queue, where the answer is decoded.
struct ArrangedTasks
{
    // The tasks in server order.
    QList<TaskPtr> tasks;
    QList<TaskSection> sections;
    // Number of tasks per status, in status order (the overall chart).
    QList<int> statusCounts;
};

// The data behind the dashboard: the shared filter and sort choices, the task
// list, the network manager and the users of the session. Fetches the current
// user's tasks, fetches one task's items before it is opened, and sends status
// changes. Completions run once, on the main thread, and never after the view
// model is gone.
class DashboardVM : public QObject
{
    Q_OBJECT

public:
    DashboardVM(NetworkManager *networkManager, UsersData users, const Clock &clock, QObject *parent = nullptr);

    [[nodiscard]] TaskFilterDataPtr filterData() const { return m_filterData; }
    [[nodiscard]] TaskList &taskList() { return m_taskList; }
    [[nodiscard]] const TaskList &taskList() const { return m_taskList; }
    [[nodiscard]] NetworkManager *networkManager() const;
    [[nodiscard]] const UsersData &users() const { return m_users; }

    // When the last fetch was answered from the offline cache: when the server
    // had given that answer. None when it came from the server.
    [[nodiscard]] std::optional<TimePoint> cachedAt() const { return m_cachedAt; }

    using FetchCompletion = std::function<void(bool success, std::optional<ManagerErrors> error)>;
    void fetchTasks(FetchCompletion completion);
    void fetchItems(const TaskPtr &task, std::function<void(bool success)> completion);
    void updateTaskStatus(const TaskPtr &task, qint64 statusId,
                          std::function<void(std::optional<TaskStatus>)> completion);

    // The tasks sorted by the chosen key and order and grouped by status, in
    // status order; with the fetched tasks, they are made on the api queue as the
    // answer is decoded. After a status change, or when invalidateSections()
    // was called for a new sort choice, they are made again there and
    // sectionsChanged() tells when they are in.
    [[nodiscard]] const QList<TaskSection> &sections() const { return m_arranged.sections; }
    // Number of tasks per status, in status order (the overall chart).
    [[nodiscard]] const QList<int> &statusCounts() const { return m_arranged.statusCounts; }
    // Sorts and groups the tasks again, on the api queue.
    void invalidateSections();
    // Takes arranged tasks as the current list and sections, as a fetch does
    // with its answer.
    void takeTasks(const ArrangedTasks &arranged);

    // The query of the next fetch: the filter's dates in milliseconds since 1970
    // (an invalid date stops the process), priority, category, key and order.
    [[nodiscard]] TasksQueryParams queryParams() const;

    // The status id a dashboard prompt sends for a task in the given status:
    // assigned -> 3 (acknowledge), acknowledged -> 4 (start), blocked -> 4
    // (unblock), in progress -> 6 (complete); nothing for the other statuses.
    [[nodiscard]] static std::optional<qint64> nextStatusId(TaskStatus current);

    // Sorts, groups and counts tasks for the dashboard. `statuses` are the
    // tasks' statuses in the same order (taken on the main thread when the tasks
    // are shared); without them the tasks' own are read. Runs on any thread.
    [[nodiscard]] static ArrangedTasks arrange(QList<TaskPtr> tasks, const SortConfiguration &sort,
                                               const QList<TaskStatus> &statuses = {});

signals:
    void tasksChanged();
    void sectionsChanged();

private:
    void publish(ArrangedTasks arranged);
    void queueTaskStatus(OutboxSender &outbox, const TaskPtr &task, qint64 statusId,
                         std::function<void(std::optional<TaskStatus>)> completion);

    TaskFilterDataPtr m_filterData;
    TaskList m_taskList;
    QPointer<NetworkManager> m_networkManager;
    UsersData m_users;
    ArrangedTasks m_arranged;
    std::optional<TimePoint> m_cachedAt;
    // Sections made for an older state of the list are dropped when they arrive.
    quint64 m_generation = 0;
};

} // namespace ravelin
