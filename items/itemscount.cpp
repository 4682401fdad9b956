#include "items/itemscount.h"

#include <array>

namespace ravelin {

ItemsCount ItemsCount::decode(const json::Value &value)
{
    // Many of these come with every task: both keys are read in one walk.
    static constexpr std::array<std::string_view, 2> keys{"itemStatusId", "count"};
    std::array<std::optional<json::Value>, 2> v;
    value.toObject().read(keys, v);
    ItemsCount c;
    c.itemStatusId = json::Object::required(v[0], keys[0]).toInt64();
    c.count = json::Object::required(v[1], keys[1]).toInt64();
    return c;
}

QJsonObject ItemsCount::encode() const
{
    return QJsonObject{{QStringLiteral("itemStatusId"), itemStatusId}, {QStringLiteral("count"), count}};
}

} // namespace ravelin
