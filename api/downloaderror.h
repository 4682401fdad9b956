#pragma once

#include "api/managererrors.h"

#include <QNetworkReply>
#include <QString>

#include <optional>

namespace ravelin {

// Failure of a picture download: a manager error, or the transport error itself.
class DownloadError
{
public:
    explicit DownloadError(ManagerErrors error)
        : m_managerError(error)
    { }
    DownloadError(QNetworkReply::NetworkError transportError, QString description)
        : m_transportError(transportError)
        , m_description(std::move(description))
    { }

    [[nodiscard]] std::optional<ManagerErrors> managerError() const { return m_managerError; }
    [[nodiscard]] QNetworkReply::NetworkError transportError() const { return m_transportError; }
    [[nodiscard]] QString localizedDescription() const
    {
        return m_managerError ? m_managerError->localizedDescription() : m_description;
    }

private:
    std::optional<ManagerErrors> m_managerError;
    QNetworkReply::NetworkError m_transportError = QNetworkReply::NoError;
    QString m_description;
};

} // namespace ravelin
