#pragma once

#include <QLoggingCategory>
#include <QString>

namespace ravelin {

// The library's logging categories, one per subsystem. Their lines are
// diagnostics, never shown to the worker; a host filters them like any Qt
// category, e.g. QT_LOGGING_RULES="ravelin.*.debug=false" or "ravelin.api.debug=true".
Q_DECLARE_LOGGING_CATEGORY(lcApi) // "ravelin.api": session, routes, the network manager
Q_DECLARE_LOGGING_CATEGORY(lcHost) // "ravelin.host": the navigation host and screens
Q_DECLARE_LOGGING_CATEGORY(lcTasks) // "ravelin.tasks": the dashboard
Q_DECLARE_LOGGING_CATEGORY(lcItems) // "ravelin.items": items, item actions, the QR scanner
Q_DECLARE_LOGGING_CATEGORY(lcComments) // "ravelin.comments": the comment thread

using LogCategory = const QLoggingCategory &(*)();

// A debug line of a subsystem, written as it stands (no quotes added). Safe to
// call from any thread.
void debugLog(LogCategory category, const QString &line);

// A line written as a label and a value, two items separated by one space
// (for example "Route response: " and the status code).
void debugLog(LogCategory category, const QString &label, const QString &value);

} // namespace ravelin
