#include "items/itemsupdateresponse.h"

namespace ravelin {

namespace ItemsUpdateResponseCodingKey {

const QList<ItemsUpdateResponseCodingKeys> &allCases()
{
    using K = ItemsUpdateResponseCodingKeys;
    static const QList<K> cases{K::success,      K::taskId, K::data,          K::items,      K::updated,
                                K::itemStatusId, K::id,     K::updaterUserId, K::dateUpdated};
    return cases;
}

QString stringValue(ItemsUpdateResponseCodingKeys key)
{
    using K = ItemsUpdateResponseCodingKeys;
    switch (key) {
    case K::success: return QStringLiteral("success");
    case K::taskId: return QStringLiteral("task_id");
    case K::data: return QStringLiteral("data");
    case K::items: return QStringLiteral("items");
    case K::updated: return QStringLiteral("updated");
    case K::itemStatusId: return QStringLiteral("item_status_id");
    case K::id: return QStringLiteral("id");
    case K::updaterUserId: return QStringLiteral("updater_user_id");
    case K::dateUpdated: return QStringLiteral("date_updated");
    }
    return {};
}

} // namespace ItemsUpdateResponseCodingKey

ItemsUpdateResponse ItemsUpdateResponse::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    ItemsUpdateResponse r;
    r.success = o.boolean("success");
    return r;
}

} // namespace ravelin
