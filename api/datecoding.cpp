#include "api/datecoding.h"

#include <QTimeZone>

namespace ravelin {

namespace {

// A character, or two, as a number; a character that is not a digit is noted
// in `notDigits`.
Q_ALWAYS_INLINE int oneDigit(char c, unsigned &notDigits)
{
    const unsigned d = unsigned(static_cast<unsigned char>(c)) - unsigned('0');
    notDigits |= unsigned(d > 9);
    return int(d);
}

Q_ALWAYS_INLINE int twoDigits(const char *p, unsigned &notDigits)
{
    return oneDigit(p[0], notDigits) * 10 + oneDigit(p[1], notDigits);
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
    if (s.size() < 24 || s[4] != '-' || s[7] != '-' || s[10] != 'T' || s[13] != ':' || s[16] != ':' || s[19] != '.')
        return std::nullopt;
    // The digits are read without a check each; one check at the end tells
    // whether every one of them was a digit.
    const char *p = s.data();
    unsigned notDigits = 0;
    const int year = twoDigits(p, notDigits) * 100 + twoDigits(p + 2, notDigits);
    const int month = twoDigits(p + 5, notDigits);
    const int day = twoDigits(p + 8, notDigits);
    const int hour = twoDigits(p + 11, notDigits);
    const int minute = twoDigits(p + 14, notDigits);
    const int second = twoDigits(p + 17, notDigits);
    const int millis = oneDigit(p[20], notDigits) * 100 + twoDigits(p + 21, notDigits);
    if (notDigits || month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month) || hour > 23 || minute > 59
        || second > 59)
        return std::nullopt;

    // "Z", or an offset: "+HH", "+HHMM" or "+HH:MM".
    int offsetMinutes = 0;
    const std::string_view zone = s.substr(23);
    if (zone != "Z") {
        const char *z = zone.data();
        int zm = 0;
        if (zone[0] != '+' && zone[0] != '-')
            return std::nullopt;
        if (zone.size() == 5)
            zm = twoDigits(z + 3, notDigits);
        else if (zone.size() == 6 && zone[3] == ':')
            zm = twoDigits(z + 4, notDigits);
        else if (zone.size() != 3)
            return std::nullopt;
        const int zh = twoDigits(z + 1, notDigits);
        if (notDigits || zh > 23 || zm > 59)
            return std::nullopt;
        offsetMinutes = (zh * 60 + zm) * (zone[0] == '-' ? -1 : 1);
    }

    const qint64 days = daysFromCivil(year, unsigned(month), unsigned(day));
    const qint64 seconds
        = days * 86400 + qint64(hour) * 3600 + qint64(minute) * 60 + second - qint64(offsetMinutes) * 60;
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
