#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>
#include <utility>
#include <variant>

namespace ravelin {

// What a route sends besides its path: a JSON object body, already encoded body
// bytes (absent when encoding failed), query items, or nothing.
struct JsonBodyParameters
{
    QJsonObject object;
};

struct EncodedBodyParameters
{
    std::optional<QByteArray> bytes;
};

struct QueryParameters
{
    QList<std::pair<QString, QString>> items;
};

using RequestParameters = std::variant<std::monostate, JsonBodyParameters, EncodedBodyParameters, QueryParameters>;

} // namespace ravelin
