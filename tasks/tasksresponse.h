#pragma once

#include "api/json.h"
#include "tasks/task.h"

#include <QList>

namespace ravelin {

// Answer of "api/tasks/assigned-user/<id>": keys "success" and "data".
struct TasksResponse
{
    bool success = false;
    QList<TaskPtr> data;

    [[nodiscard]] static TasksResponse decode(const json::Value &value);
};

} // namespace ravelin
