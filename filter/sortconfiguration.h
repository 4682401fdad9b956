#pragma once

#include "api/json.h"
#include "filter/sortkey.h"

#include <QJsonObject>

namespace ravelin {

// How the task list is ordered; keys "sortKey" and "sortOrder" (their texts).
struct SortConfiguration
{
    SortKey sortKey = SortKey::date;
    SortOrder sortOrder = SortOrder::descending;

    [[nodiscard]] static SortConfiguration decode(const json::Value &value);
    [[nodiscard]] QJsonObject encode() const;
    friend bool operator==(const SortConfiguration &, const SortConfiguration &) = default;
};

} // namespace ravelin
