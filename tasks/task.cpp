#include "tasks/task.h"

#include "api/datecoding.h"
#include "api/fatalerror.h"

#include <QVarLengthArray>

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
    const QList<TaskCategoryDefinition> &categories =
        options.taskCategories ? *options.taskCategories : Settings::current().taskCategory;
    if (categories.isEmpty())
        fatalError(QStringLiteral("There are no task categories to look category %1 up in").arg(id), "Task");
    for (const TaskCategoryDefinition &c : categories) {
        if (c.id == id)
            return c;
    }
    return categories.first();
}

} // namespace

TaskPtr Task::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    auto task = std::make_shared<Task>();
    task->id = o.int64("id");
    task->name = o.string("name");
    task->description = o.string("description");
    task->latitude = toFloat(o.value("latitude"));
    task->longitude = toFloat(o.value("longitude"));
    task->ownerId = o.int64("ownerId");
    if (auto owner = o.stringIfPresent("ownerAssetName"))
        task->ownerAssetName = std::move(*owner);
    task->assignedUserId = o.nullableInt64("assignedUserId");
    task->updaterUserId = o.nullableInt64("updaterUserId");
    task->dateScheduled = o.nullableDate("dateScheduled");
    task->dateCreated = o.date("dateCreated");
    task->dateUpdated = o.dateIfPresent("dateUpdated");
    task->currentStatus = TaskStatuses::fromServerId(o.int64("taskStatusId"));
    task->taskCategory = lookUpCategory(o.int64("taskCategoryId"), o.options());
    task->priority = TaskPriorities::fromWireValue(o.int64("priority"));
    if (const auto counts = o.find("itemsCount"); counts && !counts->isNull()) {
        // A task carries one entry per item status; keep them off the heap.
        QVarLengthArray<ItemsCount, 8> list;
        for (const json::Value entry : counts->toArray())
            list.append(ItemsCount::decode(entry));
        task->progress = TaskProgress::fromCounts(std::span<const ItemsCount>(list.constData(), std::size_t(list.size())));
    }
    if (const auto updated = o.booleanIfPresent("updated"))
        task->isUpdated = *updated;
    return task;
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
