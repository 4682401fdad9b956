#include "tasks/tasklist.h"

#include "api/fatalerror.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <vector>

namespace ravelin {

namespace {

// Lower-cased names compare by Unicode code point (UTF-16 units are reordered so
// that characters outside the basic plane sort after U+FFFF), not by locale.
QString nameKey(const QString &name)
{
    return name.toLower().normalized(QString::NormalizationForm_C);
}

bool lessByCodePoint(QStringView a, QStringView b)
{
    const qsizetype n = std::min(a.size(), b.size());
    for (qsizetype i = 0; i < n; ++i) {
        char16_t ca = a[i].unicode();
        char16_t cb = b[i].unicode();
        if (ca == cb)
            continue;
        if (ca >= 0xD800 && cb >= 0xD800) {
            ca = char16_t(ca >= 0xE000 ? ca - 0x800 : ca + 0x2000);
            cb = char16_t(cb >= 0xE000 ? cb - 0x800 : cb + 0x2000);
        }
        return ca < cb;
    }
    return a.size() < b.size();
}

} // namespace

TaskList::TaskList(std::shared_ptr<TaskFilterData> filterData)
    : filterData(std::move(filterData))
{ }

bool TaskList::updateTask(const Task &task)
{
    for (const TaskPtr &stored : std::as_const(tasks)) {
        if (stored->id != task.id)
            continue;
        stored->currentStatus = task.currentStatus;
        stored->updaterUserId = task.updaterUserId;
        stored->isUpdated = task.isUpdated;
        stored->dateUpdated = task.dateUpdated;
        return true;
    }
    return false;
}

QList<TaskPtr> TaskList::sortedTasks(const QList<TaskPtr> &tasksToSort) const
{
    if (!filterData)
        fatalError(QStringLiteral("The task list has no filter data to sort by"), "TaskList");
    return sorted(tasksToSort, filterData->sortingConfig);
}

QList<TaskPtr> TaskList::sorted(const QList<TaskPtr> &tasks, const SortConfiguration &config)
{
    QList<TaskPtr> out;
    out.reserve(tasks.size());
    for (const int index : sortedOrder(tasks, config))
        out.append(tasks.at(index));
    return out;
}

std::vector<int> TaskList::sortedOrder(const QList<TaskPtr> &tasks, const SortConfiguration &config)
{
    // Each task's key is taken once; the sort moves positions, not tasks.
    std::vector<int> order(std::size_t(tasks.size()));
    std::iota(order.begin(), order.end(), 0);
    const bool ascending = config.sortOrder == SortOrder::ascending;
    const auto sortBy = [&](const auto &keys, auto less) {
        std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
            return ascending ? less(keys[std::size_t(a)], keys[std::size_t(b)])
                             : less(keys[std::size_t(b)], keys[std::size_t(a)]);
        });
    };
    switch (config.sortKey) {
    case SortKey::name: {
        // Lower-cased once per task instead of on every comparison.
        std::vector<QString> keys;
        keys.reserve(order.size());
        for (const TaskPtr &t : tasks)
            keys.push_back(nameKey(t->name));
        sortBy(keys, [](const QString &a, const QString &b) { return lessByCodePoint(a, b); });
        break;
    }
    case SortKey::priority: {
        // "Ascending" puts the least important first: the highest rank.
        std::vector<int> keys;
        keys.reserve(order.size());
        for (const TaskPtr &t : tasks)
            keys.push_back(-TaskPriorities::sortRank(t->priority));
        sortBy(keys, std::less<>());
        break;
    }
    case SortKey::date: {
        std::vector<qint64> keys;
        keys.reserve(order.size());
        for (const TaskPtr &t : tasks)
            keys.push_back(t->dateCreated.toMSecsSinceEpoch());
        sortBy(keys, std::less<>());
        break;
    }
    }
    return order;
}

} // namespace ravelin
