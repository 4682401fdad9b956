#include "items/itemscount.h"

namespace ravelin {

ItemsCount ItemsCount::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    ItemsCount c;
    c.itemStatusId = o.int64("itemStatusId");
    c.count = o.int64("count");
    return c;
}

QJsonObject ItemsCount::encode() const
{
    return QJsonObject{{QStringLiteral("itemStatusId"), itemStatusId}, {QStringLiteral("count"), count}};
}

} // namespace ravelin
