#pragma once

#include "api/json.h"
#include "items/item.h"

#include <QList>

namespace ravelin {

// Answer of "api/items/taskId/<id>": keys "success" and "data".
struct ItemsResponse
{
    bool success = false;
    QList<ItemPtr> data;

    [[nodiscard]] static ItemsResponse decode(const json::Value &value);
};

} // namespace ravelin
