#pragma once

#include "api/json.h"

#include <QJsonObject>

namespace ravelin {

// One entry of a task's per-status item counts ("itemsCount" inside a task).
struct ItemsCount
{
    qint64 itemStatusId = 0;
    qint64 count = 0;

    [[nodiscard]] static ItemsCount decode(const json::Value &value);
    [[nodiscard]] QJsonObject encode() const;
    friend bool operator==(const ItemsCount &, const ItemsCount &) = default;
};

} // namespace ravelin
