#include "api/user.h"

namespace ravelin {

User User::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    User u;
    u.id = o.int64("id");
    u.name = o.string("name");
    u.icon = o.stringIfPresent("icon");
    u.color = ColorCodable::decode(o.value("color"));
    return u;
}

QJsonObject User::encode() const
{
    QJsonObject o{
        {QStringLiteral("id"), id}, {QStringLiteral("name"), name}, {QStringLiteral("color"), color.encode()}};
    if (icon)
        o.insert(QStringLiteral("icon"), *icon);
    return o;
}

} // namespace ravelin
