#pragma once

#include "api/json.h"
#include "comments/comment.h"

#include <QList>

namespace ravelin {

// Answer of "api/task/<id>/comments".
struct TasksCommentsResponse
{
    bool success = false;
    QList<CommentPtr> data;

    [[nodiscard]] static TasksCommentsResponse decode(const json::Value &value);
};

} // namespace ravelin
