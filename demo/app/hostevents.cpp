#include "demo/app/hostevents.h"

#include "host/notificationcenter.h"

#include <QVariant>

namespace ravelin::hostevents {

TaskUpdateEventPtr makeTaskEvent(qint64 taskId, const QString &taskName, const QString &kind,
                                 std::optional<qint64> assetId)
{
    const auto type = TaskUpdateEventTypes::fromRawValue(kind);
    if (!type || *type == TaskUpdateEventType::kNone)
        return nullptr;
    auto event = std::make_shared<TaskUpdateEvent>();
    event->id = taskId;
    event->name = taskName;
    event->assetId = assetId;
    event->type = *type;
    return event;
}

void postTaskEvent(NotificationCenter &center, const TaskUpdateEventPtr &event)
{
    if (!event)
        return;
    center.post(NotificationNames::taskEvent, QVariant::fromValue(event));
}

void postEmergency(NotificationCenter &center, bool inForce)
{
    center.post(NotificationNames::emergencyUpdate, QVariant(inForce));
}

QStringList taskEventKinds()
{
    return {TaskUpdateEventTypes::rawValue(TaskUpdateEventType::kAssigned),
            TaskUpdateEventTypes::rawValue(TaskUpdateEventType::kUnassigned),
            TaskUpdateEventTypes::rawValue(TaskUpdateEventType::kDeleted)};
}

} // namespace ravelin::hostevents
