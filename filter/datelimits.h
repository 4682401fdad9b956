#pragma once

#include <QDateTime>

namespace ravelin {

// The bounds of the filter screen's two date pickers, so that a window cannot
// be entered backwards: the start never after the end, the end never before the
// start nor after tomorrow.
struct DateLimits
{
    QDateTime startMaximum;
    QDateTime endMinimum;
    QDateTime endMaximum;

    friend bool operator==(const DateLimits &, const DateLimits &) = default;
};

} // namespace ravelin
