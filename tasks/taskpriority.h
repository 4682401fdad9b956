#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace ravelin {

// Priority of a task. The text is the display text; the wire value is the
// zero-based position in allCases, the sort rank the one-based position.
// `all` is not a real priority: it is the filter's "no restriction" value.
enum class TaskPriority { highest, high, medium, low, all };

namespace TaskPriorities {
[[nodiscard]] const QList<TaskPriority> &allCases();
[[nodiscard]] QString rawValue(TaskPriority priority);
// The text shown to the worker, in the application's language.
[[nodiscard]] QString text(TaskPriority value);
[[nodiscard]] std::optional<TaskPriority> fromRawValue(const QString &text);
// Wire value 0..4; any other value stops the process.
[[nodiscard]] TaskPriority fromWireValue(qint64 value);
[[nodiscard]] int wireValue(TaskPriority priority);
[[nodiscard]] int sortRank(TaskPriority priority);
} // namespace TaskPriorities

} // namespace ravelin
