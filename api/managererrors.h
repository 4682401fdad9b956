#pragma once

#include <QString>

#include <optional>

namespace ravelin {

// The error of every failure that the network manager creates.
class ManagerErrors
{
public:
    enum class Kind {
        invalidStatusCode, // an HTTP status outside 200-299 other than 401 and 404
        invalidResponse, // the answer is not an HTTP response
        invalidParsing, // the body does not decode, or picture bytes are no picture
        invalidToken, // HTTP 401
        sessionExpired, // declared for hosts; the manager does not raise it
        apiRouteError, // HTTP 404, a transport error, or no stored session
    };

    explicit ManagerErrors(Kind kind, int statusCode = 0)
        : m_kind(kind)
        , m_statusCode(kind == Kind::invalidStatusCode ? statusCode : 0)
    { }
    [[nodiscard]] static ManagerErrors invalidStatusCode(int code)
    {
        return ManagerErrors(Kind::invalidStatusCode, code);
    }

    [[nodiscard]] Kind kind() const { return m_kind; }
    // The status code carried by invalidStatusCode; 0 for the other kinds.
    [[nodiscard]] int statusCode() const { return m_statusCode; }
    // The platform's generic text for an error without a description of its own.
    [[nodiscard]] QString localizedDescription() const;

    // The error kind for an HTTP status, or nothing for 200-299.
    [[nodiscard]] static std::optional<ManagerErrors> fromStatusCode(int status);

    friend bool operator==(const ManagerErrors &, const ManagerErrors &) = default;

private:
    Kind m_kind;
    int m_statusCode = 0;
};

} // namespace ravelin
