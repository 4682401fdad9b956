#pragma once

#include <QString>

#include <functional>

namespace ravelin {

// Programming errors (a missing host input, an id outside its declared range, a
// payload of the wrong kind) stop the process through this one function. The
// handler is replaceable so that tests can observe those paths: a test handler
// throws, and the default handler logs the message and aborts. If a handler
// returns, the process aborts anyway.
using FatalErrorHandler = std::function<void(const QString &message, const char *source)>;

[[noreturn]] void fatalError(const QString &message, const char *source = nullptr);

// Installs a handler and returns the previous one. An empty handler restores the default.
FatalErrorHandler setFatalErrorHandler(FatalErrorHandler handler);

} // namespace ravelin
