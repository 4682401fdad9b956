#include "demo/app/offlinereply.h"

#include <QTimer>

namespace ravelin {

OfflineReply::OfflineReply(QNetworkAccessManager::Operation operation, const QNetworkRequest &request, QObject *parent)
    : QNetworkReply(parent)
{
    setOperation(operation);
    setRequest(request);
    setUrl(request.url());
    // Open and empty, as a failed reply of the network layer is.
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    QTimer::singleShot(0, this, [this] {
        fail(failure, QStringLiteral("The network is off: %1 was not sent").arg(url().toDisplayString()));
    });
}

void OfflineReply::abort()
{
    fail(OperationCanceledError, QStringLiteral("Operation canceled"));
    close();
}

qint64 OfflineReply::readData(char *, qint64)
{
    return -1;
}

void OfflineReply::fail(NetworkError error, const QString &reason)
{
    if (isFinished())
        return;
    setError(error, reason);
    setFinished(true);
    emit errorOccurred(error);
    emit finished();
}

} // namespace ravelin
