#pragma once

#include <QDateTime>
#include <QString>

#include <optional>
#include <string_view>

namespace ravelin {

// The server's date form, "yyyy-MM-dd'T'HH:mm:ss.SSSZ": a calendar date and
// time with exactly three fraction digits and a zone written as "Z", "+HHMM",
// "+HH:MM" or "+HH". A hand-written parser: the task list carries two or three
// dates per task and the general Qt parsers cost far more per date.
[[nodiscard]] std::optional<qint64> parseServerDateMSecs(std::string_view text);
[[nodiscard]] std::optional<QDateTime> parseServerDate(std::string_view text);

// Writes a moment in the server's form, in UTC ("2026-11-20T10:15:30.123+0000").
[[nodiscard]] QString formatServerDate(const QDateTime &moment);

// Days since 1970-01-01 of a proleptic Gregorian date.
[[nodiscard]] constexpr qint64 daysFromCivil(qint64 y, unsigned m, unsigned d)
{
    y -= m <= 2;
    const qint64 era = (y >= 0 ? y : y - 399) / 400;
    const auto yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<qint64>(doe) - 719468;
}

} // namespace ravelin
