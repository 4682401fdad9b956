#include "items/itemlist.h"

#include <QJsonArray>

namespace ravelin {

QList<ItemPtr> ItemList::filteredItems() const
{
    if (filterData.status == ItemStatus::all)
        return items;
    // Statuses are compared by their texts.
    const QString wanted = ItemStatuses::rawValue(filterData.status);
    QList<ItemPtr> out;
    for (const ItemPtr &item : items) {
        if (ItemStatuses::rawValue(item->status) == wanted)
            out.append(item);
    }
    return out;
}

ItemList ItemList::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    ItemList list;
    list.items = o.value("items").toArray().map<ItemPtr>(&Item::decode);
    list.filterData = ItemFilterData::decode(o.value("filterData"));
    return list;
}

QJsonObject ItemList::encode() const
{
    QJsonArray encodedItems;
    for (const ItemPtr &item : items)
        encodedItems.append(item->encode());
    return QJsonObject{{QStringLiteral("items"), encodedItems}, {QStringLiteral("filterData"), filterData.encode()}};
}

} // namespace ravelin
