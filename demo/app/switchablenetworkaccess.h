#pragma once

#include <QNetworkAccessManager>

namespace ravelin {

// The host's network: every request of the host and of the library goes
// through it. Switched off, it sends nothing and every request fails at once
// with a transport error (an OfflineReply), whatever server it was meant for;
// switched on, it is a plain QNetworkAccessManager.
class SwitchableNetworkAccess : public QNetworkAccessManager
{
    Q_OBJECT

public:
    explicit SwitchableNetworkAccess(QObject *parent = nullptr);

    [[nodiscard]] bool isOffline() const { return m_offline; }
    void setOffline(bool offline);

signals:
    void offlineChanged(bool offline);
    // Every request as it is made, sent or not.
    void requestMade(const QUrl &url);

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoingData = nullptr) override;

private:
    bool m_offline = false;
};

} // namespace ravelin
