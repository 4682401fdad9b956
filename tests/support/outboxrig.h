#pragma once

// A process's outbox against a loopback HTTPS server, as the outbox kill test's
// child and the outbox benchmark run it (the offline dashboard benchmark takes
// its network manager and store): a session signed in a minute ago, the
// network manager, the SQLite store in a folder and the sender over them. Its
// host stores pictures with a PUT to "/upload/<file name>" and hands back
// "uploads/<file name>". Header only: the benchmarks build without the tests.

#include "api/networkmanager.h"
#include "api/outboxsender.h"
#include "api/sessionstore.h"
#include "api/sqliteofflinestore.h"
#include "host/ravelinnavvcdelegate.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSettings>

#include <functional>

namespace ravelin::test {

class OutboxRig
    : public NetworkManagerDelegate
    , public RavelinNavVCDelegate
{
public:
    OutboxRig(const QString &folder, QString baseUrl)
        : m_baseUrl(std::move(baseUrl))
        , m_settings(QDir(folder).filePath(QStringLiteral("session.ini")), QSettings::IniFormat)
        , m_session(&m_settings)
        , m_signedIn((m_session.store(APIData{m_baseUrl, QStringLiteral("tok"),
                                              toDateTime(std::chrono::system_clock::now() - std::chrono::seconds(60))}),
                      true))
        , manager(&m_network, &m_session, systemClock())
        , store(QDir(folder).filePath(QStringLiteral("store")))
        , sender(&store, &manager)
    {
        manager.setDelegate(this);
    }

    // What an upload sends: the picture as the camera's JPEG, or a stand-in.
    bool encodesPictures = true;
    // Told "upload <file name>" and "uploaded <file name>".
    std::function<void(const QString &)> say = [](const QString &) {};

    [[nodiscard]] RavelinNavVCDelegate *hostDelegate() const override { return const_cast<OutboxRig *>(this); }
    void didSwipe(bool) override { }
    void sessionExpired() override { }
    void uploadImage(const QImage &image, const QString &fileName, UploadCompletion completion) override
    {
        say(QStringLiteral("upload ") + fileName);
        QByteArray jpeg("jpeg");
        if (encodesPictures) {
            jpeg.clear();
            QBuffer buffer(&jpeg);
            buffer.open(QIODevice::WriteOnly);
            image.save(&buffer, "JPEG", 85);
        }
        QNetworkReply *reply = m_network.put(
            QNetworkRequest(QUrl(QStringLiteral("https://%1/upload/%2").arg(m_baseUrl, fileName))), jpeg);
        QObject::connect(reply, &QNetworkReply::sslErrors, reply, [reply] { reply->ignoreSslErrors(); });
        QObject::connect(reply, &QNetworkReply::finished, reply, [this, reply, fileName, completion] {
            reply->deleteLater();
            const bool ok = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() == 200;
            say(QStringLiteral("uploaded ") + fileName);
            completion(ok, QStringLiteral("uploads/") + fileName);
        });
    }

private:
    QString m_baseUrl;
    QSettings m_settings;
    SessionStore m_session;
    bool m_signedIn; // the session is stored before the network manager reads it
    QNetworkAccessManager m_network;

public:
    NetworkManager manager;
    SqliteOfflineStore store;
    OutboxSender sender;
};

} // namespace ravelin::test
