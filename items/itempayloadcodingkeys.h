#pragma once

#include <QList>
#include <QString>

namespace ravelin {

// The wire keys of the item update body, shared by ItemsUpdatePayload and ItemPayload.
enum class ItemPayloadCodingKeys { taskId, userUpdaterId, id, itemStatusId, items, text, mediaPath };

namespace ItemPayloadCodingKey {
[[nodiscard]] const QList<ItemPayloadCodingKeys> &allCases();
[[nodiscard]] QString stringValue(ItemPayloadCodingKeys key);
} // namespace ItemPayloadCodingKey

} // namespace ravelin
