#include "items/itempayload.h"

#include "items/itempayloadcodingkeys.h"

#include <QJsonValue>

namespace ravelin {

namespace {
QJsonValue orNull(const std::optional<QString> &value)
{
    return value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null);
}
} // namespace

QJsonObject ItemPayload::encode() const
{
    using ItemPayloadCodingKey::stringValue;
    return QJsonObject{
        {stringValue(ItemPayloadCodingKeys::id), id},
        {stringValue(ItemPayloadCodingKeys::itemStatusId), itemStatusId},
        {stringValue(ItemPayloadCodingKeys::text), orNull(text)},
        {stringValue(ItemPayloadCodingKeys::mediaPath), orNull(mediaPath)},
    };
}

} // namespace ravelin
