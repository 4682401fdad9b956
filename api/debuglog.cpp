#include "api/debuglog.h"

#include <QDebug>

#include <mutex>

namespace ravelin {

namespace {
std::mutex s_mutex;
LogSink s_sink;
} // namespace

void debugLog(const QString &line)
{
    std::lock_guard lock(s_mutex);
    if (s_sink)
        s_sink(line);
    else
        qDebug().noquote() << line;
}

void debugLog(const QString &label, const QString &value)
{
    debugLog(label + QLatin1Char(' ') + value);
}

LogSink setLogSink(LogSink sink)
{
    std::lock_guard lock(s_mutex);
    return std::exchange(s_sink, std::move(sink));
}

} // namespace ravelin
