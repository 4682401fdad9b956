#include "demo/app/hostapiclient.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslCertificate>
#include <QSslError>
#include <QTimer>
#include <QUrlQuery>

namespace ravelin {

namespace {

// The answer's body decoded as T, or the reason it could not be.
template<class T>
Result<T, QString> decodeAnswer(int status, const QByteArray &body, const QString &transportError)
{
    if (!transportError.isEmpty() && status == 0)
        return Result<T, QString>::failure(transportError);
    try {
        return Result<T, QString>::success(json::decode<T>(body));
    } catch (const json::DecodingError &error) {
        if (status >= 200 && status < 300)
            return Result<T, QString>::failure(QStringLiteral("Unexpected answer: %1").arg(error.debugDescription()));
        // A refusal explains itself in its envelope's message.
        return Result<T, QString>::failure(QStringLiteral("HTTP %1: %2").arg(status).arg(error.debugDescription()));
    }
}

} // namespace

HostApiClient::HostApiClient(QNetworkAccessManager *network, QString baseUrl, QObject *parent)
    : QObject(parent)
    , m_network(network)
    , m_baseUrl(std::move(baseUrl))
{ }

void HostApiClient::setTrustedCertificate(const QByteArray &pem)
{
    m_trustedPem = pem;
}

QNetworkRequest HostApiClient::request(const QString &path, const QUrlQuery &query) const
{
    QUrl url(QStringLiteral("https://") + m_baseUrl + path);
    if (!query.isEmpty())
        url.setQuery(query.query(QUrl::FullyEncoded), QUrl::StrictMode);
    QNetworkRequest request(url);
    request.setTransferTimeout(timeoutMs);
    return request;
}

QUrl HostApiClient::fileUrl(const QString &path) const
{
    return QUrl(QStringLiteral("https://") + m_baseUrl + QStringLiteral("/files/") + path);
}

void HostApiClient::acceptCertificate(QNetworkReply *reply) const
{
    if (m_trustedPem.isEmpty()) {
        connect(reply, &QNetworkReply::sslErrors, reply,
                [reply](const QList<QSslError> &) { reply->ignoreSslErrors(); });
        return;
    }
    const QList<QSslCertificate> trusted = QSslCertificate::fromData(m_trustedPem, QSsl::Pem);
    QList<QSslError> expected;
    for (const QSslCertificate &certificate : trusted)
        expected.append(QSslError(QSslError::SelfSignedCertificate, certificate));
    reply->ignoreSslErrors(expected);
}

void HostApiClient::finish(QNetworkReply *reply, QObject *context,
                           std::function<void(int, const QByteArray &, const QString &)> handle)
{
    acceptCertificate(reply);
    // The reply goes with the answer, or with the context when that goes first.
    if (context)
        connect(context, &QObject::destroyed, reply, &QNetworkReply::abort);
    connect(reply, &QNetworkReply::finished, context ? context : this, [reply, handle = std::move(handle)] {
        reply->deleteLater();
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const QString error = reply->error() == QNetworkReply::NoError ? QString() : reply->errorString();
        handle(status, reply->readAll(), error);
    });
}

void HostApiClient::signIn(qint64 userId, QObject *context, SignInCompletion completion)
{
    if (!m_network) {
        completion(Result<SignInAnswer, QString>::failure(QStringLiteral("No network access")));
        return;
    }
    QNetworkRequest signInRequest = request(QStringLiteral("/api/demo/sign-in"));
    signInRequest.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    const QByteArray body = QJsonDocument(QJsonObject{{"userId", userId}}).toJson(QJsonDocument::Compact);
    QNetworkReply *reply = m_network->post(signInRequest, body);
    finish(reply, context,
           [completion = std::move(completion)](int status, const QByteArray &bytes, const QString &error) {
               completion(decodeAnswer<SignInAnswer>(status, bytes, error));
           });
}

void HostApiClient::uploadPicture(const QImage &picture, const QString &fileName, const QString &token,
                                  QObject *context, UploadCompletion completion)
{
    const QByteArray jpeg = jpegBytes(picture);
    if (!m_network || jpeg.isEmpty()) {
        completion(Result<UploadAnswer, QString>::failure(m_network ? QStringLiteral("The picture could not be encoded")
                                                                    : QStringLiteral("No network access")));
        return;
    }
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("fileName"), QString::fromLatin1(QUrl::toPercentEncoding(fileName)));
    QNetworkRequest uploadRequest = request(QStringLiteral("/api/demo/upload"), query);
    uploadRequest.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("image/jpeg"));
    uploadRequest.setRawHeader("Authorization", "Bearer " + token.toUtf8());
    QNetworkReply *reply = m_network->post(uploadRequest, jpeg);
    finish(reply, context,
           [completion = std::move(completion)](int status, const QByteArray &bytes, const QString &error) {
               completion(decodeAnswer<UploadAnswer>(status, bytes, error));
           });
}

QByteArray HostApiClient::jpegBytes(const QImage &picture)
{
    if (picture.isNull())
        return {};
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!picture.convertToFormat(QImage::Format_RGB32).save(&buffer, "JPG", 85))
        return {};
    return bytes;
}

} // namespace ravelin
