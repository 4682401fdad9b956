#pragma once

#include "api/json.h"

#include <QList>
#include <QString>

namespace ravelin {

// The keys the item status update answer may carry. Only "success" is kept; the
// echoed data is not stored.
enum class ItemsUpdateResponseCodingKeys {
    success,
    taskId,
    data,
    items,
    updated,
    itemStatusId,
    id,
    updaterUserId,
    dateUpdated
};

namespace ItemsUpdateResponseCodingKey {
[[nodiscard]] const QList<ItemsUpdateResponseCodingKeys> &allCases();
[[nodiscard]] QString stringValue(ItemsUpdateResponseCodingKeys key);
} // namespace ItemsUpdateResponseCodingKey

// Answer of "api/item/status".
class ItemsUpdateResponse
{
public:
    bool success = false;

    [[nodiscard]] static ItemsUpdateResponse decode(const json::Value &value);
};

} // namespace ravelin
