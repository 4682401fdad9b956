#include "demo/app/switchablenetworkaccess.h"

#include "demo/app/offlinereply.h"

namespace ravelin {

SwitchableNetworkAccess::SwitchableNetworkAccess(QObject *parent)
    : QNetworkAccessManager(parent)
{ }

void SwitchableNetworkAccess::setOffline(bool offline)
{
    if (m_offline == offline)
        return;
    m_offline = offline;
    emit offlineChanged(offline);
}

QNetworkReply *SwitchableNetworkAccess::createRequest(Operation operation, const QNetworkRequest &request,
                                                      QIODevice *outgoingData)
{
    emit requestMade(request.url());
    if (m_offline)
        return new OfflineReply(operation, request, this);
    return QNetworkAccessManager::createRequest(operation, request, outgoingData);
}

} // namespace ravelin
