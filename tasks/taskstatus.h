#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace ravelin {

// Status of a task. The text is the display text (note that `complete` reads
// "Completed"); the wire id (`taskStatusId`) is the one-based position in allCases.
enum class TaskStatus { unassigned, assigned, acknowledged, in_progress, blocked, complete };

namespace TaskStatuses {
[[nodiscard]] const QList<TaskStatus> &allCases();
[[nodiscard]] QString rawValue(TaskStatus status);
// The text shown to the worker, in the application's language.
[[nodiscard]] QString text(TaskStatus value);
// Exact, case-sensitive match of one of the six texts.
[[nodiscard]] std::optional<TaskStatus> fromRawValue(const QString &text);
// Wire id 1..6; any other id stops the process.
[[nodiscard]] TaskStatus fromServerId(qint64 id);
[[nodiscard]] int serverId(TaskStatus status);
} // namespace TaskStatuses

} // namespace ravelin
