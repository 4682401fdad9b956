#include "tasks/task.h"

#include "api/datecoding.h"
#include "api/fatalerror.h"

#include <QVarLengthArray>

#include <array>
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
TaskCategoryDefinition lookUpCategory(qint64 id, const json::Options &options)
{
    const QList<TaskCategoryDefinition> &categories
        = options.taskCategories ? *options.taskCategories : Settings::current().taskCategory;
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
