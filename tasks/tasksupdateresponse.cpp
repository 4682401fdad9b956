#include "tasks/tasksupdateresponse.h"

namespace ravelin {

TasksUpdateResponse TasksUpdateResponse::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    TasksUpdateResponse r;
    r.success = o.boolean("success");
    r.task = Task::decode(o.value("data"));
    return r;
}

} // namespace ravelin
