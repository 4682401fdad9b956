#pragma once

#include <QByteArray>

namespace ravelin {

// The answer to one request.
struct DemoResponse
{
    int status = 200;
    QByteArray body;
    QByteArray contentType = "application/json";
};

} // namespace ravelin
