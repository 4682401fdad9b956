#include "host/taskupdateevent.h"

#include <QCoreApplication>

namespace ravelin {

namespace TaskUpdateEventTypes {

const QList<TaskUpdateEventType> &allCases()
{
    using T = TaskUpdateEventType;
    static const QList<T> cases{T::kAssigned, T::kUnassigned, T::kDeleted, T::kNone};
    return cases;
}

QString rawValue(TaskUpdateEventType type)
{
    switch (type) {
    case TaskUpdateEventType::kAssigned: return QStringLiteral("task-assigned");
    case TaskUpdateEventType::kUnassigned: return QStringLiteral("task-unassigned");
    case TaskUpdateEventType::kDeleted: return QStringLiteral("task-deleted");
    case TaskUpdateEventType::kNone: return QString();
    }
    return {};
}

std::optional<TaskUpdateEventType> fromRawValue(const QString &text)
{
    for (TaskUpdateEventType t : allCases()) {
        if (rawValue(t) == text)
            return t;
    }
    return std::nullopt;
}

QString alertText(TaskUpdateEventType type)
{
    switch (type) {
    case TaskUpdateEventType::kAssigned: return QCoreApplication::translate("TaskUpdateEvent", "newly assigned to you");
    case TaskUpdateEventType::kUnassigned: return QCoreApplication::translate("TaskUpdateEvent", "unassigned from you");
    case TaskUpdateEventType::kDeleted: return QCoreApplication::translate("TaskUpdateEvent", "deleted");
    case TaskUpdateEventType::kNone: return QString();
    }
    return {};
}

} // namespace TaskUpdateEventTypes

TaskUpdateEventPtr TaskUpdateEvent::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    auto event = std::make_shared<TaskUpdateEvent>();
    event->id = o.int64("id");
    event->name = o.string("name");
    event->assetId = o.nullableInt64("asset_id");
    return event;
}

TaskUpdateEvent::AlertMessage TaskUpdateEvent::getAlertMessage() const
{
    return AlertMessage{
        QCoreApplication::translate("TaskUpdateEvent", "Task Event Update"), name,
        QCoreApplication::translate("TaskUpdateEvent", "Task %1.").arg(TaskUpdateEventTypes::alertText(type))};
}

bool TaskUpdateEvent::isCurrentAsset(qint64 assetIdToCheck) const
{
    return assetId && *assetId == assetIdToCheck;
}

} // namespace ravelin
