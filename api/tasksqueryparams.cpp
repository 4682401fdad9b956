#include "api/tasksqueryparams.h"

namespace ravelin {

namespace {

QString orderByValue(SortKey key)
{
    switch (key) {
    case SortKey::name: return QStringLiteral("name");
    case SortKey::priority: return QStringLiteral("priority");
    case SortKey::date: return QStringLiteral("date_created");
    }
    return {};
}

} // namespace

QList<std::pair<QString, QString>> TasksQueryParams::queryItems() const
{
    QList<std::pair<QString, QString>> items;
    items.append({QStringLiteral("dateStart"), QString::number(dateStart)});
    items.append({QStringLiteral("dateEnd"), QString::number(dateEnd)});
    if (TaskPriorities::rawValue(priority) != QLatin1String("All"))
        items.append({QStringLiteral("priority"), QString::number(TaskPriorities::wireValue(priority))});
    if (taskCategory.name != QLatin1String("All"))
        items.append({QStringLiteral("task_category_id"), QString::number(taskCategory.id)});
    items.append({QStringLiteral("orderBy"), orderByValue(orderBy)});
    items.append(
        {QStringLiteral("sortBy"),
         SortOrders::rawValue(sortBy) == QLatin1String("Ascending") ? QStringLiteral("ASC") : QStringLiteral("DESC")});
    return items;
}

QJsonObject TasksQueryParams::encode() const
{
    return QJsonObject{{QStringLiteral("dateStart"), dateStart},
                       {QStringLiteral("dateEnd"), dateEnd},
                       {QStringLiteral("priority"), TaskPriorities::rawValue(priority)},
                       {QStringLiteral("taskCategory"), taskCategory.encode()},
                       {QStringLiteral("orderBy"), SortKeys::rawValue(orderBy)},
                       {QStringLiteral("sortBy"), SortOrders::rawValue(sortBy)}};
}

} // namespace ravelin
