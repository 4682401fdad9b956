#include "tasks/task.h"

#include "api/datecoding.h"
#include "api/fatalerror.h"

#include <QVarLengthArray>

#include <array>
#include <cstdint>
#include <string_view>

#include <cmath>
#include <limits>

namespace ravelin {

namespace {

float toFloat(const json::Value &value)
{
    const double d = value.toDouble();
    if (std::isfinite(d) && std::fabs(d) > double(std::numeric_limits<float>::max()))
        throw json::DecodingError(json::DecodingError::Kind::dataCorrupted,
                                  QStringLiteral("Parsed JSON number <%1> does not fit in Float.").arg(d));
    return float(d);
}

// The task's category: the first of the session's categories with that id, else
// the first category of all (normally "All").
const QList<TaskCategoryDefinition> &categoriesOf(const json::Options &options)
{
    return options.taskCategories ? *options.taskCategories : Settings::current().taskCategory;
}

TaskCategoryDefinition lookUpCategory(qint64 id, const json::Options &options)
{
    const QList<TaskCategoryDefinition> &categories = categoriesOf(options);
    if (categories.isEmpty())
        fatalError(QStringLiteral("There are no task categories to look category %1 up in").arg(id), "Task");
    for (const TaskCategoryDefinition &c : categories) {
        if (c.id == id)
            return c;
    }
    return categories.first();
}

} // namespace

namespace {

// The members of a task, in the order the server writes them.
namespace TaskKey {
enum Key : std::size_t {
    id,
    name,
    description,
    latitude,
    longitude,
    ownerId,
    ownerAssetName,
    assignedUserId,
    updaterUserId,
    dateScheduled,
    dateCreated,
    dateUpdated,
    taskStatusId,
    taskCategoryId,
    priority,
    itemsCount,
    updated,
    keyCount
};
} // namespace TaskKey

constexpr std::array<std::string_view, TaskKey::keyCount> keys{
    "id",          "name",           "description",    "latitude",       "longitude",
    "ownerId",     "ownerAssetName", "assignedUserId", "updaterUserId",  "dateScheduled",
    "dateCreated", "dateUpdated",    "taskStatusId",   "taskCategoryId", "priority",
    "itemsCount",  "updated",
};

std::optional<json::Value> presentAndNotNull(const std::optional<json::Value> &value)
{
    return value && !value->isNull() ? value : std::nullopt;
}

// The members every task has (some may be null).
constexpr std::uint64_t requiredKeys = [] {
    std::uint64_t mask = 0;
    for (const TaskKey::Key key :
         {TaskKey::id, TaskKey::name, TaskKey::description, TaskKey::latitude, TaskKey::longitude, TaskKey::ownerId,
          TaskKey::assignedUserId, TaskKey::updaterUserId, TaskKey::dateScheduled, TaskKey::dateCreated,
          TaskKey::taskStatusId, TaskKey::taskCategoryId, TaskKey::priority})
        mask |= std::uint64_t(1) << key;
    return mask;
}();

// Reads a task in the order of the decoding below: the first failure in that
// order is the one reported.
void decodeByKey(const json::Object &o, Task &task)
{
    namespace K = TaskKey;
    std::array<std::optional<json::Value>, K::keyCount> v;
    o.read(keys, v);
    const auto required = [&v](K::Key key) -> const json::Value & { return json::Object::required(v[key], keys[key]); };
    const auto nullable = [&](K::Key key) { return presentAndNotNull(required(key)); };

    task.id = required(K::id).toInt64();
    task.name = required(K::name).toString();
    task.description = required(K::description).toString();
    task.latitude = toFloat(required(K::latitude));
    task.longitude = toFloat(required(K::longitude));
    task.ownerId = required(K::ownerId).toInt64();
    if (const auto owner = presentAndNotNull(v[K::ownerAssetName]))
        task.ownerAssetName = owner->toString();
    if (const auto user = nullable(K::assignedUserId))
        task.assignedUserId = user->toInt64();
    if (const auto user = nullable(K::updaterUserId))
        task.updaterUserId = user->toInt64();
    if (const auto date = nullable(K::dateScheduled))
        task.dateScheduled = date->toDate();
    task.dateCreated = required(K::dateCreated).toDate();
    if (const auto date = presentAndNotNull(v[K::dateUpdated]))
        task.dateUpdated = date->toDate();
    task.currentStatus = TaskStatuses::fromServerId(required(K::taskStatusId).toInt64());
    task.taskCategory = lookUpCategory(required(K::taskCategoryId).toInt64(), o.options());
    task.priority = TaskPriorities::fromWireValue(required(K::priority).toInt64());
    if (const auto counts = presentAndNotNull(v[K::itemsCount])) {
        // A task carries one entry per item status; keep them off the heap.
        QVarLengthArray<ItemsCount, 8> list;
        for (const json::Value entry : counts->toArray())
            list.append(ItemsCount::decode(entry));
        task.progress
            = TaskProgress::fromCounts(std::span<const ItemsCount>(list.constData(), std::size_t(list.size())));
    }
    if (const auto flag = presentAndNotNull(v[K::updated]))
        task.isUpdated = flag->toBool();
}

// Reads a well-formed task with its members as they come, and tells whether it
// was one. Anything else (a missing or repeated key, a value that fails or that
// would stop the process) is left to decodeByKey, which reports the first
// failure in its reading order.
bool decodeInOrder(const json::Object &o, Task &task)
{
    namespace K = TaskKey;
    qint64 status = 0;
    qint64 category = 0;
    qint64 priority = 0;
    QVarLengthArray<ItemsCount, 8> counts;
    bool hasCounts = false;
    const std::uint64_t seen = o.forEachMember(keys, [&](std::size_t slot, const json::Value &v) {
        switch (K::Key(slot)) {
        case K::id: task.id = v.toInt64(); break;
        case K::name: task.name = v.toString(); break;
        case K::description: task.description = v.toString(); break;
        case K::latitude: task.latitude = toFloat(v); break;
        case K::longitude: task.longitude = toFloat(v); break;
        case K::ownerId: task.ownerId = v.toInt64(); break;
        case K::ownerAssetName:
            if (!v.isNull())
                task.ownerAssetName = v.toString();
            break;
        case K::assignedUserId:
            if (!v.isNull())
                task.assignedUserId = v.toInt64();
            break;
        case K::updaterUserId:
            if (!v.isNull())
                task.updaterUserId = v.toInt64();
            break;
        case K::dateScheduled:
            if (!v.isNull())
                task.dateScheduled = v.toDate();
            break;
        case K::dateCreated: task.dateCreated = v.toDate(); break;
        case K::dateUpdated:
            if (!v.isNull())
                task.dateUpdated = v.toDate();
            break;
        case K::taskStatusId: status = v.toInt64(); break;
        case K::taskCategoryId: category = v.toInt64(); break;
        case K::priority: priority = v.toInt64(); break;
        case K::itemsCount:
            hasCounts = !v.isNull();
            if (hasCounts) {
                for (const json::Value entry : v.toArray())
                    counts.append(ItemsCount::decode(entry));
            }
            break;
        case K::updated:
            if (!v.isNull())
                task.isUpdated = v.toBool();
            break;
        case K::keyCount: break;
        }
    });
    if ((seen & requiredKeys) != requiredKeys || status < 1 || status > TaskStatuses::allCases().size() || priority < 0
        || priority >= TaskPriorities::allCases().size() || categoriesOf(o.options()).isEmpty())
        return false;
    task.currentStatus = TaskStatuses::fromServerId(status);
    task.taskCategory = lookUpCategory(category, o.options());
    task.priority = TaskPriorities::fromWireValue(priority);
    if (hasCounts) {
        const auto progress = TaskProgress::fromCountsInRange(
            std::span<const ItemsCount>(counts.constData(), std::size_t(counts.size())));
        if (!progress)
            return false;
        task.progress = *progress;
    }
    return true;
}

} // namespace

TaskPtr Task::decode(const json::Value &value)
{
    auto task = std::make_shared<Task>();
    decode(value, *task);
    return task;
}

void Task::decode(const json::Value &value, Task &task)
{
    const json::Object o = value.toObject();
    try {
        if (decodeInOrder(o, task))
            return;
    } catch (const json::DecodingError &) {
        // Told below, in reading order.
    }
    task = Task();
    decodeByKey(o, task);
}

QJsonObject Task::encode() const
{
    QJsonObject out{
        {QStringLiteral("id"), id},
        {QStringLiteral("priority"), TaskPriorities::rawValue(priority)},
        {QStringLiteral("name"), name},
        {QStringLiteral("description"), description},
        {QStringLiteral("currentStatus"), TaskStatuses::rawValue(currentStatus)},
        {QStringLiteral("ownerAssetName"), ownerAssetName},
        {QStringLiteral("ownerId"), ownerId},
        {QStringLiteral("taskCategory"), taskCategory.encode()},
        {QStringLiteral("dateCreated"), formatServerDate(dateCreated)},
        {QStringLiteral("progress"), progress.encode()},
        {QStringLiteral("itemList"), itemList.encode()},
        {QStringLiteral("isUpdated"), isUpdated},
    };
    if (latitude)
        out.insert(QStringLiteral("latitude"), double(*latitude));
    if (longitude)
        out.insert(QStringLiteral("longitude"), double(*longitude));
    if (assignedUserId)
        out.insert(QStringLiteral("assignedUserId"), *assignedUserId);
    if (updaterUserId)
        out.insert(QStringLiteral("updaterUserId"), *updaterUserId);
    if (dateScheduled)
        out.insert(QStringLiteral("dateScheduled"), formatServerDate(*dateScheduled));
    if (dateUpdated)
        out.insert(QStringLiteral("dateUpdated"), formatServerDate(*dateUpdated));
    return out;
}

} // namespace ravelin
