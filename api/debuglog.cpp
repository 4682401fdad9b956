#include "api/debuglog.h"

namespace ravelin {

Q_LOGGING_CATEGORY(lcApi, "ravelin.api")
Q_LOGGING_CATEGORY(lcHost, "ravelin.host")
Q_LOGGING_CATEGORY(lcTasks, "ravelin.tasks")
Q_LOGGING_CATEGORY(lcItems, "ravelin.items")
Q_LOGGING_CATEGORY(lcComments, "ravelin.comments")

void debugLog(LogCategory category, const QString &line)
{
    qCDebug(category).noquote() << line;
}

void debugLog(LogCategory category, const QString &label, const QString &value)
{
    debugLog(category, label + QLatin1Char(' ') + value);
}

} // namespace ravelin
