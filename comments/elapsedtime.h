#pragma once

#include <QDateTime>
#include <QString>

namespace ravelin {

// The time from a date to now as a short text: "0 seconds ago", "1 min ago",
// "3 hours ago", "2 days ago", "1 week ago", "2 months ago" (a month counts 28 days).
[[nodiscard]] QString elapsedTimeText(const QDateTime &date, const QDateTime &now);

} // namespace ravelin
