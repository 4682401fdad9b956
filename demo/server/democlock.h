#pragma once

#include <QDateTime>

#include <functional>

namespace ravelin {

// Where the demo deployment reads "now" (update dates, comment dates, seeding).
using DemoClock = std::function<QDateTime()>;

// The system clock, in UTC.
[[nodiscard]] inline DemoClock systemDemoClock()
{
    return [] { return QDateTime::currentDateTimeUtc(); };
}

} // namespace ravelin
