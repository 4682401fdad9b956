#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace ravelin {

// The answer to a request made while the host's network is switched off: a
// reply that fails at once, as a phone without a connection does. It has no
// status and no body; errorOccurred() and finished() come once, queued, so the
// caller connects to them first as it does with a real reply. abort() before
// then ends it as cancelled; after it does nothing.
class OfflineReply : public QNetworkReply
{
    Q_OBJECT

public:
    static constexpr NetworkError failure = NetworkSessionFailedError;

    OfflineReply(QNetworkAccessManager::Operation operation, const QNetworkRequest &request, QObject *parent = nullptr);

    void abort() override;
    [[nodiscard]] bool isSequential() const override { return true; }
    [[nodiscard]] qint64 bytesAvailable() const override { return 0; }

protected:
    qint64 readData(char *data, qint64 maxSize) override;

private:
    void fail(NetworkError error, const QString &reason);
};

} // namespace ravelin
