#include "tasks/taskprogress.h"

#include "api/fatalerror.h"
#include "items/itemstatus.h"

#include <QtNumeric>

#include <limits>

namespace ravelin {

namespace {

qint64 firstCount(std::span<const ItemsCount> counts, ItemStatus status)
{
    const qint64 id = ItemStatuses::serverId(status);
    for (const ItemsCount &c : counts) {
        if (c.itemStatusId == id)
            return c.count;
    }
    return 0;
}

} // namespace

TaskProgress TaskProgress::fromCounts(std::span<const ItemsCount> counts)
{
    const auto p = fromCountsInRange(counts);
    if (!p)
        fatalError(QStringLiteral("Arithmetic overflow in the task's item counts"), "TaskProgress");
    return *p;
}

std::optional<TaskProgress> TaskProgress::fromCountsInRange(std::span<const ItemsCount> counts)
{
    TaskProgress p;
    qint64 sum = 0;
    for (const ItemsCount &c : counts) {
        if (qAddOverflow(sum, c.count, &sum))
            return std::nullopt;
    }
    p.ok = firstCount(counts, ItemStatus::ok);
    p.nok = firstCount(counts, ItemStatus::nok);
    p.open = firstCount(counts, ItemStatus::open);
    if (sum != 0) {
        qint64 done = 0;
        qint64 scaled = 0;
        if (qSubOverflow(sum, p.open, &done) || qMulOverflow(done, qint64(100), &scaled)
            || (scaled == std::numeric_limits<qint64>::min() && sum == -1))
            return std::nullopt;
        p.total = scaled / sum;
    }
    return p;
}

QJsonObject TaskProgress::encode() const
{
    return QJsonObject{{QStringLiteral("total"), total},
                       {QStringLiteral("open"), open},
                       {QStringLiteral("ok"), ok},
                       {QStringLiteral("nok"), nok}};
}

} // namespace ravelin
