#pragma once

namespace ravelin {

class TaskFilterData;

// What the filter screen tells the screen that opened it (the dashboard).
class FilterVCDelegate
{
public:
    virtual ~FilterVCDelegate() = default;

    // The worker applied new choices, now in `filterData`: they become the task
    // list's choices and the tasks are fetched again.
    virtual void filterApplied(const TaskFilterData &filterData) = 0;
};

} // namespace ravelin
