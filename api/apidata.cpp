#include "api/apidata.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace ravelin {

namespace {
constexpr qint64 referenceDateMSecsSince1970 = 978307200000; // 2001-01-01 00:00 UTC
constexpr qint64 freshnessLimitSeconds = 14400;
} // namespace

bool APIData::isTokenFresh(TimePoint now) const
{
    const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(now - toTimePoint(timestamp)).count();
    return elapsed != 0 && elapsed < freshnessLimitSeconds;
}

QByteArray APIData::encode() const
{
    const double seconds = double(timestamp.toMSecsSinceEpoch() - referenceDateMSecsSince1970) / 1000.0;
    // QJsonObject orders keys alphabetically, which is also the declared order here.
    const QJsonObject o{{QStringLiteral("baseURL"), baseURL},
                        {QStringLiteral("tokenString"), tokenString},
                        {QStringLiteral("timestamp"), seconds}};
    return QJsonDocument(o).toJson(QJsonDocument::Compact);
}

APIData APIData::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    APIData d;
    d.baseURL = o.string("baseURL");
    d.tokenString = o.string("tokenString");
    d.timestamp = o.date("timestamp");
    return d;
}

std::optional<APIData> APIData::fromStoredBytes(const QByteArray &bytes)
{
    try {
        return json::decode<APIData>(
            bytes, json::Options{json::KeyDecoding::useDefaultKeys, json::DateDecoding::secondsSinceReferenceDate});
    } catch (const json::DecodingError &) {
        return std::nullopt;
    }
}

} // namespace ravelin
