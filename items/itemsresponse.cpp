#include "items/itemsresponse.h"

namespace ravelin {

ItemsResponse ItemsResponse::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    ItemsResponse r;
    r.success = o.boolean("success");
    r.data = o.value("data").toArray().map<ItemPtr>(&Item::decode);
    return r;
}

} // namespace ravelin
