#include "comments/taskscommentsresponse.h"

namespace ravelin {

TasksCommentsResponse TasksCommentsResponse::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    TasksCommentsResponse r;
    r.success = o.boolean("success");
    r.data = o.value("data").toArray().map<CommentPtr>(&Comment::decode);
    return r;
}

} // namespace ravelin
