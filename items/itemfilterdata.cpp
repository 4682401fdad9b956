#include "items/itemfilterdata.h"

namespace ravelin {

ItemFilterData ItemFilterData::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    const QString text = o.string("status");
    const auto status = ItemStatuses::fromRawValue(text);
    if (!status)
        throw json::DecodingError(
            json::DecodingError::Kind::dataCorrupted,
            QStringLiteral("Cannot initialize ItemStatus from invalid String value %1").arg(text));
    ItemFilterData d;
    d.status = *status;
    return d;
}

QJsonObject ItemFilterData::encode() const
{
    return QJsonObject{{QStringLiteral("status"), ItemStatuses::rawValue(status)}};
}

} // namespace ravelin
