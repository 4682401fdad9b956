#pragma once

#include <QString>

#include <functional>

namespace ravelin {

// Diagnostic lines, never shown to the user. Every line of the library goes
// through one sink; the default sink writes to the Qt debug output and tests
// install their own to read the lines back. Safe to call from any thread.
using LogSink = std::function<void(const QString &line)>;

void debugLog(const QString &line);

// A line written as a label and a value, two items separated by one space
// (for example "Route response: " and the status code).
void debugLog(const QString &label, const QString &value);

// Installs a sink and returns the previous one. An empty sink restores the default.
LogSink setLogSink(LogSink sink);

} // namespace ravelin
