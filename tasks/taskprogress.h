#pragma once

#include "items/itemscount.h"

#include <QJsonObject>
#include <QList>

#include <optional>
#include <span>

namespace ravelin {

// A task's item counts summarised for its progress ring.
struct TaskProgress
{
    // Despite the name: the percentage (0..100) of items that are no longer open.
    qint64 total = 0;
    qint64 open = 0;
    qint64 ok = 0;
    qint64 nok = 0;

    // ok, nok and open are the counts of the first entry with the item status ids
    // 1, 2 and 3; every entry counts towards the sum. An overflowing sum stops the
    // process.
    [[nodiscard]] static TaskProgress fromCounts(std::span<const ItemsCount> counts);
    // The same, or nothing where fromCounts stops the process.
    [[nodiscard]] static std::optional<TaskProgress> fromCountsInRange(std::span<const ItemsCount> counts);
    [[nodiscard]] static TaskProgress fromCounts(const QList<ItemsCount> &counts)
    {
        return fromCounts(std::span<const ItemsCount>(counts.constData(), std::size_t(counts.size())));
    }

    // Keys "total", "open", "ok", "nok".
    [[nodiscard]] QJsonObject encode() const;
    friend bool operator==(const TaskProgress &, const TaskProgress &) = default;
};

} // namespace ravelin
