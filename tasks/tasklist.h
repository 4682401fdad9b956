#pragma once

#include "filter/sortconfiguration.h"
#include "filter/taskfilterdata.h"
#include "tasks/task.h"

#include <QList>

#include <memory>

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
    // changes. An unknown id changes nothing.
    void updateTask(const Task &task);

    // The given tasks (by default the list's own) ordered by
    // filterData->sortingConfig. The sort is stable: tasks with equal keys keep
    // their incoming order.
    [[nodiscard]] QList<TaskPtr> sortedTasks(const QList<TaskPtr> &tasksToSort) const;
    [[nodiscard]] QList<TaskPtr> sortedTasks() const { return sortedTasks(tasks); }

    // The strict comes-before test for one sort choice: names compare
    // lower-cased, priorities by rank ("ascending" puts the least important
    // first), dates by creation.
    [[nodiscard]] static bool comesBefore(const SortConfiguration &config, const Task &a, const Task &b);
};

} // namespace ravelin
