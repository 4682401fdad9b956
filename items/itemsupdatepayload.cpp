#include "items/itemsupdatepayload.h"

#include "items/itempayloadcodingkeys.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace ravelin {

ItemsUpdatePayload ItemsUpdatePayload::make(qint64 taskId, qint64 updaterUserId, const QList<ItemPtr> &items,
                                            ItemStatus status, const QString &note,
                                            const std::optional<QString> &mediaPath)
{
    ItemsUpdatePayload payload;
    payload.taskId = taskId;
    payload.updaterUserId = updaterUserId;
    payload.items.reserve(items.size());
    const qint64 statusId = ItemStatuses::serverId(status);
    const std::optional<QString> text = note.isEmpty() ? std::nullopt : std::optional(note);
    for (const ItemPtr &item : items)
        payload.items.append(ItemPayload{item->id, statusId, text, mediaPath});
    return payload;
}

QJsonObject ItemsUpdatePayload::encode() const
{
    using ItemPayloadCodingKey::stringValue;
    QJsonArray encodedItems;
    for (const ItemPayload &item : items)
        encodedItems.append(item.encode());
    return QJsonObject{
        {stringValue(ItemPayloadCodingKeys::taskId), taskId},
        {stringValue(ItemPayloadCodingKeys::userUpdaterId), updaterUserId},
        {stringValue(ItemPayloadCodingKeys::items), encodedItems},
    };
}

QByteArray ItemsUpdatePayload::toJson() const
{
    return QJsonDocument(encode()).toJson(QJsonDocument::Compact);
}

} // namespace ravelin
