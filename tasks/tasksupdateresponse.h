#pragma once

#include "api/json.h"
#include "tasks/task.h"

namespace ravelin {

// Answer of a task status change ("api/task/<id>"): "success" and the changed
// task under "data".
class TasksUpdateResponse
{
public:
    bool success = false;
    TaskPtr task;

    [[nodiscard]] static TasksUpdateResponse decode(const json::Value &value);
};

} // namespace ravelin
