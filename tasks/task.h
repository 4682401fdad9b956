#pragma once

#include "api/json.h"
#include "api/settings.h"
#include "items/itemlist.h"
#include "tasks/taskpriority.h"
#include "tasks/taskprogress.h"
#include "tasks/taskstatus.h"

#include <QDateTime>
#include <QJsonObject>
#include <QMetaType>
#include <QString>

#include <memory>
#include <optional>

namespace ravelin {

class Task;
using TaskPtr = std::shared_ptr<Task>;

// A task assigned to the current user. One shared object: the dashboard's list,
// the items screen, the block screen and the comments screen all hold the same
// instance and see each other's changes.
class Task
{
public:
    qint64 id = 0;
    TaskPriority priority = TaskPriority::highest;
    QString name;
    QString description;
    std::optional<float> latitude;
    std::optional<float> longitude;
    TaskStatus currentStatus = TaskStatus::unassigned;
    QString ownerAssetName = QStringLiteral("Unknown");
    qint64 ownerId = 0;
    std::optional<qint64> assignedUserId;
    std::optional<qint64> updaterUserId;
    std::optional<QDateTime> dateScheduled;
    TaskCategoryDefinition taskCategory;
    QDateTime dateCreated;
    std::optional<QDateTime> dateUpdated;
    TaskProgress progress;
    ItemList itemList;
    // Set when someone else changed the task since it was last seen.
    bool isUpdated = false;

    // Reads the server's task object: "id", "name", "description", "latitude",
    // "longitude", "ownerId", "ownerAssetName" (optional), "assignedUserId",
    // "updaterUserId", "dateScheduled" (present, may be null), "dateCreated",
    // "dateUpdated" (optional), "taskStatusId" (1..6), "taskCategoryId",
    // "priority" (0..4), "itemsCount" (optional, gives the progress) and
    // "updated" (optional, gives isUpdated). A status or priority outside its
    // range, or no task category to look the id up in, stops the process.
    [[nodiscard]] static TaskPtr decode(const json::Value &value);
    // The same into a task that already exists (tasks of one answer share one
    // allocation, see TasksResponse).
    static void decode(const json::Value &value, Task &task);

    // The local form, under the fields' own names ("currentStatus", "isUpdated",
    // "progress", "itemList", texts for status and priority); not the server's
    // form and not meant to be decoded again.
    [[nodiscard]] QJsonObject encode() const;
};

} // namespace ravelin

Q_DECLARE_METATYPE(ravelin::TaskPtr)
