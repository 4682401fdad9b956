#pragma once

#include "api/apiqueue.h"
#include "api/clock.h"
#include "api/debuglog.h"
#include "api/downloaderror.h"
#include "api/json.h"
#include "api/managererrors.h"
#include "api/result.h"
#include "api/router.h"

#include <QImage>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

class QNetworkAccessManager;
class QRandomGenerator;

namespace ravelin {

class NetworkManagerDelegate;
class RavelinNavVCDelegate;
class SessionStore;

// The library's only REST client. Before every call it checks the stored token
// and regenerates a stale one, sends the request the router builds, maps the
// HTTP status, decodes the answer on the api queue and hands the result to the
// completion on the main thread. A completion is tied to a context object: when
// the context is gone before the answer arrives, the completion is not called.
//
// The server's certificate is not verified: every certificate is accepted.
class NetworkManager : public QObject
{
    Q_OBJECT

public:
    template<class T>
    using Completion = std::function<void(const Result<T> &)>;

    NetworkManager(QNetworkAccessManager *network, SessionStore *store, Clock clock, QObject *parent = nullptr);
    ~NetworkManager() override;

    [[nodiscard]] NetworkManagerDelegate *delegate() const { return m_delegate; }
    void setDelegate(NetworkManagerDelegate *delegate);

    [[nodiscard]] SessionStore *sessionStore() const { return m_store; }
    [[nodiscard]] const Clock &clock() const { return m_clock; }

    // Sends a route and decodes the answer as T (T::decode(const json::Value &)).
    template<class T>
    void request(const Router &route, ApiQueue &queue, const QObject *context, Completion<T> completion);

    // Fetches a picture through getFile.
    void downloadImage(const QString &path, bool isThumb, const QObject *context,
                       std::function<void(const Result<QImage, DownloadError> &)> completion);

    // Posts a comment on a task. With a picture, the host stores it first and the
    // comment carries the path the host returned, whatever the host's success flag.
    void postComment(qint64 taskId, qint64 userId, const QString &text, const std::optional<QImage> &image,
                     bool isIncident, const QObject *context, std::function<void(bool)> completion);

    // Asks the host application to store a picture (see RavelinNavVCDelegate::uploadImage).
    // Without a host delegate the upload fails at once with no path.
    void uploadImage(const QImage &image, const QString &fileName, const QObject *context,
                     std::function<void(bool, std::optional<QString>)> completion);

    // "<user id>_<milliseconds since 1970, shortest decimal form>_photo_<digit>.jpg"
    [[nodiscard]] static QString photoFileName(qint64 userId, double millisecondsSince1970, int digit);
    // A photo file name for now, with a random digit.
    [[nodiscard]] QString makePhotoFileName(qint64 userId) const;

    // The decoder settings of every answer: keys converted from snake case, server dates.
    [[nodiscard]] static json::Options decodingOptions();

private:
    struct RawReply
    {
        std::optional<int> status; // set when the answer is an HTTP response
        QNetworkReply::NetworkError error = QNetworkReply::NoError;
        QString errorString;
        QByteArray body;
    };
    using DecodeJob = std::function<std::function<void()>(const QByteArray &body, const json::Options &options)>;
    using Failure = std::function<void(ManagerErrors)>;

    void perform(const Router &route, ApiQueue &queue, const QObject *context, DecodeJob decode, Failure fail);
    // Checks the session and the token, then runs `proceed` (or fails).
    void withFreshSession(std::function<void()> proceed, Failure fail);
    void sendRaw(const Router &route, std::function<void(const RawReply &)> handler);
    void notifySessionExpired() const;
    [[nodiscard]] RavelinNavVCDelegate *hostDelegate() const;

    template<class T>
    static Result<T> decodeBody(const QByteArray &body, const json::Options &options);

    QNetworkAccessManager *m_network = nullptr;
    SessionStore *m_store = nullptr;
    Clock m_clock;
    NetworkManagerDelegate *m_delegate = nullptr;
    QList<QPointer<QNetworkReply>> m_replies;
};

template<class T>
Result<T> NetworkManager::decodeBody(const QByteArray &body, const json::Options &options)
{
    try {
        return Result<T>::success(json::decode<T>(body, options));
    } catch (const json::DecodingError &error) {
        debugLog(QStringLiteral("Could not translate the data to the requested type. Reason: ")
                 + error.localizedDescription());
        return Result<T>::failure(ManagerErrors(ManagerErrors::Kind::invalidParsing));
    }
}

template<class T>
void NetworkManager::request(const Router &route, ApiQueue &queue, const QObject *context, Completion<T> completion)
{
    perform(
        route, queue, context,
        [completion](const QByteArray &body, const json::Options &options) -> std::function<void()> {
            auto result = std::make_shared<Result<T>>(decodeBody<T>(body, options));
            return [completion, result] { completion(*result); };
        },
        [completion](ManagerErrors error) { completion(Result<T>::failure(error)); });
}

} // namespace ravelin
