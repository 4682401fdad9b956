#include "api/fatalerror.h"

#include <QDebug>

#include <cstdlib>
#include <mutex>

namespace ravelin {

namespace {
std::mutex s_mutex;

FatalErrorHandler &installedHandler()
{
    static FatalErrorHandler handler;
    return handler;
}
} // namespace

void fatalError(const QString &message, const char *source)
{
    FatalErrorHandler handler;
    {
        std::lock_guard lock(s_mutex);
        handler = installedHandler();
    }
    if (handler)
        handler(message, source);
    qCritical().noquote() << "Fatal error:" << message << (source ? source : "");
    std::abort();
}

FatalErrorHandler setFatalErrorHandler(FatalErrorHandler handler)
{
    std::lock_guard lock(s_mutex);
    return std::exchange(installedHandler(), std::move(handler));
}

} // namespace ravelin
