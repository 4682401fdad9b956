#include "items/itempayloadcodingkeys.h"

namespace ravelin::ItemPayloadCodingKey {

const QList<ItemPayloadCodingKeys> &allCases()
{
    using K = ItemPayloadCodingKeys;
    static const QList<K> cases{K::taskId, K::userUpdaterId, K::id, K::itemStatusId, K::items, K::text, K::mediaPath};
    return cases;
}

QString stringValue(ItemPayloadCodingKeys key)
{
    switch (key) {
    case ItemPayloadCodingKeys::taskId: return QStringLiteral("task_id");
    case ItemPayloadCodingKeys::userUpdaterId: return QStringLiteral("updater_user_id");
    case ItemPayloadCodingKeys::id: return QStringLiteral("id");
    case ItemPayloadCodingKeys::itemStatusId: return QStringLiteral("item_status_id");
    case ItemPayloadCodingKeys::items: return QStringLiteral("items");
    case ItemPayloadCodingKeys::text: return QStringLiteral("text");
    case ItemPayloadCodingKeys::mediaPath: return QStringLiteral("media_path");
    }
    return {};
}

} // namespace ravelin::ItemPayloadCodingKey
