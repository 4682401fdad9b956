#pragma once

#include <QByteArray>
#include <QString>
#include <QUrlQuery>

namespace ravelin {

// What the demo API needs of one HTTP request.
struct DemoRequest
{
    QByteArray method; // "GET", "PUT", "POST", ...
    QString path; // decoded, without the query
    QUrlQuery query;
    QByteArray authorization; // the "Authorization" header, empty when absent
    QByteArray body;
};

} // namespace ravelin
