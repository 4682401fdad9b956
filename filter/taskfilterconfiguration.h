#pragma once

#include "api/json.h"
#include "api/settings.h"
#include "tasks/taskpriority.h"

#include <QDateTime>
#include <QJsonObject>

namespace ravelin {

// What the task list is narrowed to: one priority or `all`, one category or the
// entry named "All", and a date window. Keys "selectedPriority" (its text),
// "selectedCategory", "dateStart", "dateEnd".
struct TaskFilterConfiguration
{
    TaskPriority selectedPriority = TaskPriority::all;
    TaskCategoryDefinition selectedCategory;
    QDateTime dateStart;
    QDateTime dateEnd;

    [[nodiscard]] static TaskFilterConfiguration decode(const json::Value &value);
    [[nodiscard]] QJsonObject encode() const;
    friend bool operator==(const TaskFilterConfiguration &, const TaskFilterConfiguration &) = default;
};

} // namespace ravelin
