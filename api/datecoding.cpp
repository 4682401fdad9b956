#include "api/datecoding.h"

#include <QTimeZone>

namespace ravelin {

namespace {

bool digits(std::string_view text, std::size_t at, std::size_t count, int &value)
{
    if (at + count > text.size())
        return false;
    int v = 0;
    for (std::size_t i = at; i < at + count; ++i) {
        const char c = text[i];
        if (c < '0' || c > '9')
            return false;
        v = v * 10 + (c - '0');
    }
    value = v;
    return true;
}

bool isLeap(int year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int daysInMonth(int year, int month)
{
    static constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeap(year) ? 29 : days[month - 1];
}

} // namespace

std::optional<qint64> parseServerDateMSecs(std::string_view s)
{
    // yyyy-MM-ddTHH:mm:ss.SSS is 23 characters, the zone follows.
    int year, month, day, hour, minute, second, millis;
    if (s.size() < 24 || s[4] != '-' || s[7] != '-' || s[10] != 'T' || s[13] != ':' || s[16] != ':' || s[19] != '.')
        return std::nullopt;
    if (!digits(s, 0, 4, year) || !digits(s, 5, 2, month) || !digits(s, 8, 2, day) || !digits(s, 11, 2, hour)
        || !digits(s, 14, 2, minute) || !digits(s, 17, 2, second) || !digits(s, 20, 3, millis))
        return std::nullopt;
    if (month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month) || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;

    int offsetMinutes = 0;
    const std::string_view zone = s.substr(23);
    if (zone != "Z") {
        if (zone[0] != '+' && zone[0] != '-')
            return std::nullopt;
        int zh = 0, zm = 0;
        if (!digits(zone, 1, 2, zh))
            return std::nullopt;
        if (zone.size() == 5) {
            if (!digits(zone, 3, 2, zm))
                return std::nullopt;
        } else if (zone.size() == 6) {
            if (zone[3] != ':' || !digits(zone, 4, 2, zm))
                return std::nullopt;
        } else if (zone.size() != 3) {
            return std::nullopt;
        }
        if (zh > 23 || zm > 59)
            return std::nullopt;
        offsetMinutes = (zh * 60 + zm) * (zone[0] == '-' ? -1 : 1);
    }

    const qint64 days = daysFromCivil(year, unsigned(month), unsigned(day));
    const qint64 seconds = days * 86400 + hour * 3600 + minute * 60 + second - qint64(offsetMinutes) * 60;
    return seconds * 1000 + millis;
}

std::optional<QDateTime> parseServerDate(std::string_view text)
{
    const auto ms = parseServerDateMSecs(text);
    if (!ms)
        return std::nullopt;
    return QDateTime::fromMSecsSinceEpoch(*ms, QTimeZone::utc());
}

QString formatServerDate(const QDateTime &moment)
{
    return moment.toUTC().toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz")) + QStringLiteral("+0000");
}

} // namespace ravelin
