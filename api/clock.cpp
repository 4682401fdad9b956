#include "api/clock.h"

#include <QTimeZone>

namespace ravelin {

using namespace std::chrono;

Clock systemClock()
{
    return [] { return system_clock::now(); };
}

Clock fixedClock(TimePoint moment)
{
    return [moment] { return moment; };
}

QDateTime toDateTime(TimePoint moment)
{
    const auto ms = duration_cast<milliseconds>(moment.time_since_epoch()).count();
    return QDateTime::fromMSecsSinceEpoch(ms, QTimeZone::utc());
}

TimePoint toTimePoint(const QDateTime &moment)
{
    return TimePoint(duration_cast<system_clock::duration>(milliseconds(moment.toMSecsSinceEpoch())));
}

double millisecondsSince1970(TimePoint moment)
{
    return duration<double, std::milli>(moment.time_since_epoch()).count();
}

} // namespace ravelin
