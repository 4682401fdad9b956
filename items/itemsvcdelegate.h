#pragma once

#include "tasks/taskstatus.h"

#include <QtGlobal>

namespace ravelin {

// How a task's items screen reports a change of the task's status (completed,
// or marked as blocked); the dashboard sends the change.
class ItemsVCDelegate
{
public:
    virtual ~ItemsVCDelegate() = default;
    virtual void didChangeTaskStatus(TaskStatus status, qint64 taskId) = 0;
};

} // namespace ravelin
