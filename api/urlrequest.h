#pragma once

#include <QByteArray>
#include <QNetworkRequest>
#include <QUrl>

namespace ravelin {

// A finished request: URL, headers and time-out in the QNetworkRequest, plus the
// method and the body that QNetworkAccessManager takes separately.
struct UrlRequest
{
    QNetworkRequest request;
    QByteArray method;
    QByteArray body;

    [[nodiscard]] QUrl url() const { return request.url(); }
};

} // namespace ravelin
