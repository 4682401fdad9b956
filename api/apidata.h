#pragma once

#include "api/clock.h"
#include "api/json.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

namespace ravelin {

// The session data: where the server is and which token to send.
struct APIData
{
    QString baseURL; // host and optional path prefix, no scheme, no trailing slash
    QString tokenString;
    QDateTime timestamp; // when the token was obtained

    // Fresh while the whole seconds elapsed since `timestamp` (truncated toward
    // zero) are non-zero and below four hours. A token stamped in the same second
    // is stale; a time stamp in the future counts as fresh.
    [[nodiscard]] bool isTokenFresh(TimePoint now) const;

    // JSON with the keys baseURL, tokenString, timestamp; the time stamp is a
    // number of seconds since 2001-01-01 00:00 UTC.
    [[nodiscard]] QByteArray encode() const;
    [[nodiscard]] static APIData decode(const json::Value &value);
    // The bytes stored under the session key, read back with a plain decoder.
    [[nodiscard]] static std::optional<APIData> fromStoredBytes(const QByteArray &bytes);

    friend bool operator==(const APIData &, const APIData &) = default;
};

} // namespace ravelin
