#include "comments/elapsedtime.h"

#include <QCoreApplication>

#include <iterator>

namespace ravelin {

namespace {

// One unit of elapsed time: its length and the text for one and for more.
struct Unit
{
    qint64 seconds;
    const char *one;
    const char *many;
};

constexpr Unit units[] = {
    {2419200, QT_TRANSLATE_NOOP("ElapsedTime", "%1 month ago"), QT_TRANSLATE_NOOP("ElapsedTime", "%1 months ago")},
    {604800, QT_TRANSLATE_NOOP("ElapsedTime", "%1 week ago"), QT_TRANSLATE_NOOP("ElapsedTime", "%1 weeks ago")},
    {86400, QT_TRANSLATE_NOOP("ElapsedTime", "%1 day ago"), QT_TRANSLATE_NOOP("ElapsedTime", "%1 days ago")},
    {3600, QT_TRANSLATE_NOOP("ElapsedTime", "%1 hour ago"), QT_TRANSLATE_NOOP("ElapsedTime", "%1 hours ago")},
    {60, QT_TRANSLATE_NOOP("ElapsedTime", "%1 min ago"), QT_TRANSLATE_NOOP("ElapsedTime", "%1 mins ago")},
    {1, QT_TRANSLATE_NOOP("ElapsedTime", "%1 second ago"), QT_TRANSLATE_NOOP("ElapsedTime", "%1 seconds ago")},
};

} // namespace

QString elapsedTimeText(const QDateTime &date, const QDateTime &now)
{
    const qint64 s = (now.toMSecsSinceEpoch() - date.toMSecsSinceEpoch()) / 1000;
    // The largest unit that fits; anything under a minute (or in the future)
    // counts in seconds.
    const Unit *unit = &units[std::size(units) - 1];
    for (const Unit &u : units) {
        if (s >= u.seconds) {
            unit = &u;
            break;
        }
    }
    const qint64 n = unit->seconds == 1 ? s : s / unit->seconds;
    return QCoreApplication::translate("ElapsedTime", n == 1 ? unit->one : unit->many).arg(n);
}

} // namespace ravelin
