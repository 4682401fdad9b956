#pragma once

#include "api/json.h"
#include "items/item.h"
#include "items/itemfilterdata.h"

#include <QJsonObject>
#include <QList>

namespace ravelin {

// The checklist of one task: its items in server order and the status filter.
// A task owns exactly one; it starts empty with the filter on `all`.
class ItemList
{
public:
    QList<ItemPtr> items;
    ItemFilterData filterData;

    // The rows the items screen shows, computed on every call: every item when the
    // filter is `all`, otherwise the items with the filter's status, in order.
    // Row numbers of the items screen are positions in this list.
    [[nodiscard]] QList<ItemPtr> filteredItems() const;

    // Keys "items" and "filterData".
    [[nodiscard]] static ItemList decode(const json::Value &value);
    [[nodiscard]] QJsonObject encode() const;
};

} // namespace ravelin
