#include "tasks/tasksresponse.h"

#include <vector>

namespace ravelin {

TasksResponse TasksResponse::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    TasksResponse r;
    r.success = o.boolean("success");
    // The tasks of one answer are made in one allocation and handed out as
    // shared pointers into it: one allocation instead of one per task. The block
    // lives as long as any of its tasks does.
    const json::Array data = o.value("data").toArray();
    auto block = std::make_shared<std::vector<Task>>(std::size_t(data.size()));
    r.data.reserve(data.size());
    std::size_t index = 0;
    for (const json::Value element : data) {
        Task &task = (*block)[index++];
        Task::decode(element, task);
        r.data.append(TaskPtr(block, &task));
    }
    return r;
}

} // namespace ravelin
