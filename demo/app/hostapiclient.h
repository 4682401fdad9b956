#pragma once

#include "api/result.h"
#include "demo/app/signinanswer.h"
#include "demo/app/uploadanswer.h"

#include <QByteArray>
#include <QImage>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>
#include <QUrlQuery>

#include <functional>

class QNetworkAccessManager;
class QNetworkReply;
class QNetworkRequest;

namespace ravelin {

// The demo host's own calls to the deployment, over HTTPS: the sign-in and the
// picture upload. The library makes every other request itself.
//
// The loopback deployment has a self-signed certificate; when the client knows
// it, exactly that certificate is accepted, otherwise (a server the host was
// pointed at) every certificate is, as the library does.
class HostApiClient : public QObject
{
    Q_OBJECT

public:
    static constexpr int timeoutMs = 15000;

    // `baseUrl` is the API host without scheme ("127.0.0.1:8443").
    HostApiClient(QNetworkAccessManager *network, QString baseUrl, QObject *parent = nullptr);

    [[nodiscard]] QString baseUrl() const { return m_baseUrl; }
    // The one certificate to trust, in PEM form; empty accepts any.
    void setTrustedCertificate(const QByteArray &pem);

    using SignInCompletion = std::function<void(const Result<SignInAnswer, QString> &)>;
    using UploadCompletion = std::function<void(const Result<UploadAnswer, QString> &)>;

    // POST /api/demo/sign-in {"userId": N}. The completion runs on the main
    // thread, unless `context` is gone by then.
    void signIn(qint64 userId, QObject *context, SignInCompletion completion);

    // POST /api/demo/upload?fileName=<name> with the picture as JPEG bytes and
    // the session's bearer token.
    void uploadPicture(const QImage &picture, const QString &fileName, const QString &token, QObject *context,
                       UploadCompletion completion);

    // "https://" + base URL + "/files/" + path: where a stored picture is served.
    [[nodiscard]] QUrl fileUrl(const QString &path) const;

    // Trusts the server's certificate on a reply made elsewhere (the same rule as above).
    void acceptCertificate(QNetworkReply *reply) const;

    // The picture as JPEG bytes (quality 85); empty for a null picture.
    [[nodiscard]] static QByteArray jpegBytes(const QImage &picture);

private:
    // The query's values are already percent-encoded.
    [[nodiscard]] QNetworkRequest request(const QString &path, const QUrlQuery &query = {}) const;
    // Runs `handle` with the reply's status and body once it finished (or timed out).
    void finish(QNetworkReply *reply, QObject *context,
                std::function<void(int status, const QByteArray &body, const QString &error)> handle);

    QPointer<QNetworkAccessManager> m_network;
    QString m_baseUrl;
    QByteArray m_trustedPem;
};

} // namespace ravelin
