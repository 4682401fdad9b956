#include "comments/elapsedtime.h"

namespace ravelin {

QString elapsedTimeText(const QDateTime &date, const QDateTime &now)
{
    const qint64 s = (now.toMSecsSinceEpoch() - date.toMSecsSinceEpoch()) / 1000;
    struct Unit
    {
        qint64 seconds;
        const char *name;
    };
    static constexpr Unit units[] = {{2419200, "month"}, {604800, "week"}, {86400, "day"}, {3600, "hour"}, {60, "min"}};
    qint64 n = s;
    QString unit = QStringLiteral("second");
    for (const Unit &u : units) {
        if (s >= u.seconds) {
            n = s / u.seconds;
            unit = QString::fromLatin1(u.name);
            break;
        }
    }
    return QString::number(n) + QLatin1Char(' ') + unit + (n == 1 ? QString() : QStringLiteral("s"))
        + QStringLiteral(" ago");
}

} // namespace ravelin
