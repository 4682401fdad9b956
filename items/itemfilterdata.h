#pragma once

#include "api/json.h"
#include "items/itemstatus.h"

#include <QJsonObject>

namespace ravelin {

// The status a task's item list is filtered by; coded under "status" as its text.
class ItemFilterData
{
public:
    ItemStatus status = ItemStatus::all;

    [[nodiscard]] static ItemFilterData decode(const json::Value &value);
    [[nodiscard]] QJsonObject encode() const;
};

} // namespace ravelin
