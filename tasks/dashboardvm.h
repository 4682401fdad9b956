#pragma once

#include "api/clock.h"
#include "api/managererrors.h"
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

// One dashboard section: the tasks of one status, in sorted order.
struct TaskSection
{
    std::optional<TaskStatus> status;
    QList<TaskPtr> tasks;
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
    DashboardVM(NetworkManager *networkManager, UsersData users, Clock clock, QObject *parent = nullptr);

    [[nodiscard]] TaskFilterDataPtr filterData() const { return m_filterData; }
    [[nodiscard]] TaskList &taskList() { return m_taskList; }
    [[nodiscard]] const TaskList &taskList() const { return m_taskList; }
    [[nodiscard]] NetworkManager *networkManager() const;
    [[nodiscard]] const UsersData &users() const { return m_users; }

    using FetchCompletion = std::function<void(bool success, std::optional<ManagerErrors> error)>;
    void fetchTasks(FetchCompletion completion);
    void fetchItems(const TaskPtr &task, std::function<void(bool success)> completion);
    void updateTaskStatus(const TaskPtr &task, qint64 statusId, std::function<void(std::optional<TaskStatus>)> completion);

    // The tasks sorted by the chosen key and order and grouped by status, in
    // status order. Computed once per change of the list or of the sort choice.
    [[nodiscard]] const QList<TaskSection> &sections() const;
    // Number of tasks per status, in status order (the overall chart).
    [[nodiscard]] QList<int> statusCounts() const;
    // Drops the cached sections after the tasks were changed from outside.
    void invalidateSections();

    // The query of the next fetch: the filter's dates in milliseconds since 1970
    // (an invalid date stops the process), priority, category, key and order.
    [[nodiscard]] TasksQueryParams queryParams() const;

    // The status id a dashboard prompt sends for a task in the given status:
    // assigned -> 3 (acknowledge), acknowledged -> 4 (start), blocked -> 4
    // (unblock), in progress -> 6 (complete); nothing for the other statuses.
    [[nodiscard]] static std::optional<qint64> nextStatusId(TaskStatus current);

    // Sections for any list of tasks (sorted with `list`'s sort choice).
    [[nodiscard]] static QList<TaskSection> makeSections(const TaskList &list);

signals:
    void tasksChanged();

private:
    TaskFilterDataPtr m_filterData;
    TaskList m_taskList;
    QPointer<NetworkManager> m_networkManager;
    UsersData m_users;
    mutable QList<TaskSection> m_sections;
    mutable std::optional<SortConfiguration> m_sectionsSortedBy;
};

} // namespace ravelin
