#pragma once

#include "api/settings.h"
#include "filter/sortkey.h"
#include "tasks/taskpriority.h"

#include <QJsonObject>
#include <QList>
#include <QString>

#include <utility>

namespace ravelin {

// The task-list filter sent to the server with "api/tasks/assigned-user/".
struct TasksQueryParams
{
    qint64 dateStart = 0; // milliseconds since 1970
    qint64 dateEnd = 0;
    TaskPriority priority = TaskPriority::all;
    TaskCategoryDefinition taskCategory;
    SortKey orderBy = SortKey::date;
    SortOrder sortBy = SortOrder::descending;

    // The query items, in this order: dateStart, dateEnd, priority (left out for
    // "All"), task_category_id (left out for the category named "All"), orderBy, sortBy.
    [[nodiscard]] QList<std::pair<QString, QString>> queryItems() const;

    // The record under its own field names.
    [[nodiscard]] QJsonObject encode() const;

    friend bool operator==(const TasksQueryParams &, const TasksQueryParams &) = default;
};

} // namespace ravelin
