#pragma once

#include "api/json.h"

namespace ravelin {

// Answer of "api/comment".
struct PostTasksCommentResponse
{
    bool success = false;

    [[nodiscard]] static PostTasksCommentResponse decode(const json::Value &value)
    {
        return PostTasksCommentResponse{value.toObject().boolean("success")};
    }
};

} // namespace ravelin
