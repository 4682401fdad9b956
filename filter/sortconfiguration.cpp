#include "filter/sortconfiguration.h"

namespace ravelin {

namespace {
[[noreturn]] void invalidText(const char *type, const QString &text)
{
    throw json::DecodingError(
        json::DecodingError::Kind::dataCorrupted,
        QStringLiteral("Cannot initialize %1 from invalid String value %2").arg(QLatin1String(type), text));
}
} // namespace

SortConfiguration SortConfiguration::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    SortConfiguration c;
    const QString key = o.string("sortKey");
    if (const auto k = SortKeys::fromRawValue(key))
        c.sortKey = *k;
    else
        invalidText("SortKey", key);
    const QString order = o.string("sortOrder");
    if (const auto s = SortOrders::fromRawValue(order))
        c.sortOrder = *s;
    else
        invalidText("SortOrder", order);
    return c;
}

QJsonObject SortConfiguration::encode() const
{
    return QJsonObject{{QStringLiteral("sortKey"), SortKeys::rawValue(sortKey)},
                       {QStringLiteral("sortOrder"), SortOrders::rawValue(sortOrder)}};
}

} // namespace ravelin
