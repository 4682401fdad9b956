#include "tasks/tasksresponse.h"

namespace ravelin {

TasksResponse TasksResponse::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    TasksResponse r;
    r.success = o.boolean("success");
    r.data = o.value("data").toArray().map<TaskPtr>(&Task::decode);
    return r;
}

} // namespace ravelin
