#pragma once

#include "api/colorcodable.h"
#include "api/json.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace ravelin {

// A user (asset) that the session may show.
struct User
{
    qint64 id = 0;
    QString name;
    std::optional<QString> icon; // icon name or path, as the host supplied it
    ColorCodable color;

    [[nodiscard]] static User decode(const json::Value &value);
    [[nodiscard]] QJsonObject encode() const;

    friend bool operator==(const User &, const User &) = default;
};

} // namespace ravelin
