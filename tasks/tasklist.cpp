#include "tasks/tasklist.h"

#include "api/fatalerror.h"

#include <algorithm>
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
{
}

void TaskList::updateTask(const Task &task)
{
    for (const TaskPtr &stored : std::as_const(tasks)) {
        if (stored->id != task.id)
            continue;
        stored->currentStatus = task.currentStatus;
        stored->updaterUserId = task.updaterUserId;
        stored->isUpdated = task.isUpdated;
        stored->dateUpdated = task.dateUpdated;
        return;
    }
}

bool TaskList::comesBefore(const SortConfiguration &config, const Task &a, const Task &b)
{
    const bool ascending = config.sortOrder == SortOrder::ascending;
    switch (config.sortKey) {
    case SortKey::name: {
        const QString ka = nameKey(a.name);
        const QString kb = nameKey(b.name);
        return ascending ? lessByCodePoint(ka, kb) : lessByCodePoint(kb, ka);
    }
    case SortKey::priority: {
        const int ra = TaskPriorities::sortRank(a.priority);
        const int rb = TaskPriorities::sortRank(b.priority);
        return ascending ? rb < ra : ra < rb;
    }
    case SortKey::date: {
        const qint64 da = a.dateCreated.toMSecsSinceEpoch();
        const qint64 db = b.dateCreated.toMSecsSinceEpoch();
        return ascending ? da < db : da > db;
    }
    }
    return false;
}

QList<TaskPtr> TaskList::sortedTasks(const QList<TaskPtr> &tasksToSort) const
{
    if (!filterData)
        fatalError(QStringLiteral("The task list has no filter data to sort by"), "TaskList");
    const SortConfiguration config = filterData->sortingConfig;
    QList<TaskPtr> out = tasksToSort;
    if (config.sortKey != SortKey::name) {
        std::stable_sort(out.begin(), out.end(),
                         [&config](const TaskPtr &a, const TaskPtr &b) { return comesBefore(config, *a, *b); });
        return out;
    }

    // Names: lower-case each name once instead of on every comparison.
    struct Keyed
    {
        QString key;
        TaskPtr task;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(std::size_t(out.size()));
    for (const TaskPtr &t : std::as_const(out))
        keyed.push_back({nameKey(t->name), t});
    const bool ascending = config.sortOrder == SortOrder::ascending;
    std::stable_sort(keyed.begin(), keyed.end(), [ascending](const Keyed &a, const Keyed &b) {
        return ascending ? lessByCodePoint(a.key, b.key) : lessByCodePoint(b.key, a.key);
    });
    for (qsizetype i = 0; i < out.size(); ++i)
        out[i] = std::move(keyed[std::size_t(i)].task);
    return out;
}

} // namespace ravelin
