#pragma once

#include "filter/sortconfiguration.h"
#include "filter/taskfilterdata.h"
#include "tasks/task.h"

#include <QList>

#include <memory>
#include <vector>

namespace ravelin {

// The dashboard's tasks, in server order, and the shared filter and sort choices.
class TaskList
{
public:
    explicit TaskList(std::shared_ptr<TaskFilterData> filterData);

    QList<TaskPtr> tasks;
    std::shared_ptr<TaskFilterData> filterData;

    // Merges a changed task into the list: the first stored task with the same id
    // takes over its status, updater, updated flag and update date; nothing else
    // changes. An unknown id changes nothing. True when a task was changed.
    bool updateTask(const Task &task);

    // The given tasks (by default the list's own) ordered by
    // filterData->sortingConfig. The sort is stable: tasks with equal keys keep
    // their incoming order.
    [[nodiscard]] QList<TaskPtr> sortedTasks(const QList<TaskPtr> &tasksToSort) const;
    [[nodiscard]] QList<TaskPtr> sortedTasks() const { return sortedTasks(tasks); }
    // Any tasks ordered by a given choice (stable), on any thread.
    [[nodiscard]] static QList<TaskPtr> sorted(const QList<TaskPtr> &tasks, const SortConfiguration &config);
    // The same order as positions in `tasks`: names compare lower-cased,
    // priorities by rank ("ascending" puts the least important first), dates
    // by creation.
    [[nodiscard]] static std::vector<int> sortedOrder(const QList<TaskPtr> &tasks, const SortConfiguration &config);
};

} // namespace ravelin
