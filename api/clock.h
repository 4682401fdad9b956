#pragma once

#include <QDateTime>

#include <chrono>
#include <functional>

namespace ravelin {

// The source of "now" wherever time matters (token age, comment time stamps,
// filter defaults, file names). Injected so that tests can fix the time.
using TimePoint = std::chrono::system_clock::time_point;
using Clock = std::function<TimePoint()>;

[[nodiscard]] Clock systemClock();

// A clock that always answers the given moment.
[[nodiscard]] Clock fixedClock(TimePoint moment);

[[nodiscard]] QDateTime toDateTime(TimePoint moment);
[[nodiscard]] TimePoint toTimePoint(const QDateTime &moment);

// Milliseconds since 1970 as a floating-point number, with the sub-millisecond part.
[[nodiscard]] double millisecondsSince1970(TimePoint moment);

} // namespace ravelin
