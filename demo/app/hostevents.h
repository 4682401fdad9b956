#pragma once

#include "host/taskupdateevent.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace ravelin {

class NotificationCenter;

// What the host tells the library while it is on screen: task update events
// and the emergency flag, posted on the notification centre the library was
// given.
namespace hostevents {

// The event for a task, with its type made from the kind's text ("task-assigned",
// "task-unassigned", "task-deleted"); nothing for any other text. The asset is
// the signed-in user when known.
[[nodiscard]] TaskUpdateEventPtr makeTaskEvent(qint64 taskId, const QString &taskName, const QString &kind,
                                               std::optional<qint64> assetId = std::nullopt);

// Posts the event as the object of "TaskEventNotification".
void postTaskEvent(NotificationCenter &center, const TaskUpdateEventPtr &event);

// Posts the flag as the object of "EmergencyUpdateEvent".
void postEmergency(NotificationCenter &center, bool inForce);

// The three kinds the host's menu offers, in menu order.
[[nodiscard]] QStringList taskEventKinds();

} // namespace hostevents

} // namespace ravelin
