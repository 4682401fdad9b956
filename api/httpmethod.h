#pragma once

#include <QByteArray>

namespace ravelin {

// An HTTP method by its raw text. Only GET, PUT and POST are used by the routes.
struct HTTPMethod
{
    QByteArray rawValue;

    static HTTPMethod get() { return {"GET"}; }
    static HTTPMethod post() { return {"POST"}; }
    static HTTPMethod put() { return {"PUT"}; }
    static HTTPMethod delete_() { return {"DELETE"}; }
    static HTTPMethod patch() { return {"PATCH"}; }
    static HTTPMethod head() { return {"HEAD"}; }
    static HTTPMethod options() { return {"OPTIONS"}; }
    static HTTPMethod trace() { return {"TRACE"}; }
    static HTTPMethod connect() { return {"CONNECT"}; }

    friend bool operator==(const HTTPMethod &, const HTTPMethod &) = default;
};

} // namespace ravelin
