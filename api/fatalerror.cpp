#include "api/fatalerror.h"

#include <QDebug>

#include <cstdlib>
#include <mutex>

namespace ravelin {

namespace {
std::mutex s_mutex;
FatalErrorHandler s_handler;
} // namespace

void fatalError(const QString &message, const char *source)
{
    FatalErrorHandler handler;
    {
        std::lock_guard lock(s_mutex);
        handler = s_handler;
    }
    if (handler)
        handler(message, source);
    qCritical().noquote() << "Fatal error:" << message << (source ? source : "");
    std::abort();
}

FatalErrorHandler setFatalErrorHandler(FatalErrorHandler handler)
{
    std::lock_guard lock(s_mutex);
    return std::exchange(s_handler, std::move(handler));
}

} // namespace ravelin
