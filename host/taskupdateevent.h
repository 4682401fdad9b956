#pragma once

#include "api/json.h"

#include <QList>
#include <QMetaType>
#include <QString>

#include <memory>
#include <optional>

namespace ravelin {

// What happened to a task, as the host application reports it.
enum class TaskUpdateEventType { kAssigned, kUnassigned, kDeleted, kNone };

namespace TaskUpdateEventTypes {
[[nodiscard]] const QList<TaskUpdateEventType> &allCases();
// "task-assigned", "task-unassigned", "task-deleted", and "" for kNone.
[[nodiscard]] QString rawValue(TaskUpdateEventType type);
// Exact match of one of the four texts (the empty text gives kNone).
[[nodiscard]] std::optional<TaskUpdateEventType> fromRawValue(const QString &text);
// The words the event alert uses for the type ("newly assigned to you", ...).
[[nodiscard]] QString alertText(TaskUpdateEventType type);
} // namespace TaskUpdateEventTypes

class TaskUpdateEvent;
using TaskUpdateEventPtr = std::shared_ptr<TaskUpdateEvent>;

// A task was assigned to the user, taken away from the user or deleted. The host
// posts it as the object of the "TaskEventNotification" notification.
class TaskUpdateEvent
{
public:
    struct AlertMessage
    {
        QString title;
        QString subtitle;
        QString body;
        friend bool operator==(const AlertMessage &, const AlertMessage &) = default;
    };

    qint64 id = 0;
    QString name;
    std::optional<qint64> assetId;
    // Never read from JSON: the sender sets it from its own event kind.
    TaskUpdateEventType type = TaskUpdateEventType::kNone;

    // Keys "id", "name" and "asset_id" (the key must be present, the value may be null).
    [[nodiscard]] static TaskUpdateEventPtr decode(const json::Value &value);

    // Title "Task Event Update", the task's name as subtitle and
    // "Task " + the type's words + "." as body.
    [[nodiscard]] AlertMessage getAlertMessage() const;

    // True exactly when the event names an asset and it is the given one.
    [[nodiscard]] bool isCurrentAsset(qint64 assetIdToCheck) const;
};

} // namespace ravelin

Q_DECLARE_METATYPE(std::shared_ptr<ravelin::TaskUpdateEvent>)
