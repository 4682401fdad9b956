#pragma once

#include "api/apiqueue.h"
#include "api/clock.h"
#include "api/debuglog.h"
#include "api/downloaderror.h"
#include "api/guardedpointer.h"
#include "api/json.h"
#include "api/managererrors.h"
#include "api/networkmanagerdelegate.h"
#include "api/offlinestore.h"
#include "api/result.h"
#include "api/router.h"
#include "api/trustpolicy.h"

#include <QImage>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QNetworkAccessManager;
class QRandomGenerator;

namespace ravelin {

class OutboxSender;
class RavelinNavVCDelegate;
class SessionStore;

// The library's only REST client. Before every call it checks the stored token
// and regenerates a stale one, sends the request the router builds, maps the
// HTTP status, decodes the answer on the api queue and hands the result to the
// completion on the main thread. A completion is tied to a context object: when
// the context is gone before the answer arrives, the completion is not called.
//
// The server's certificate is checked as the trust policy says; by default
// every certificate is accepted.
class NetworkManager : public QObject
{
    Q_OBJECT

public:
    template<class T>
    using Completion = std::function<void(const Result<T> &)>;

    NetworkManager(QNetworkAccessManager *network, SessionStore *store, Clock clock, QObject *parent = nullptr);
    ~NetworkManager() override;

    // The navigation host, not owned: null once it is destroyed.
    [[nodiscard]] NetworkManagerDelegate *delegate() const { return m_delegate; }
    void setDelegate(NetworkManagerDelegate *delegate);

    [[nodiscard]] SessionStore *sessionStore() const { return m_store; }
    [[nodiscard]] const Clock &clock() const { return m_clock; }

    // How long a transfer may go without receiving or sending anything before it
    // is given up as a transport error (default: the routes' 60 s time-out).
    [[nodiscard]] std::chrono::milliseconds transferTimeout() const { return m_transferTimeout; }
    void setTransferTimeout(std::chrono::milliseconds timeout) { m_transferTimeout = timeout; }

    // Which server certificates are accepted (default: any). Applies to the
    // requests sent from then on.
    [[nodiscard]] const TrustPolicy &trustPolicy() const { return m_trustPolicy; }
    void setTrustPolicy(TrustPolicy policy) { m_trustPolicy = std::move(policy); }

    // Told, on the main thread, of every successful answer to a read of the
    // settings, the tasks, a task's items or a task's comments, as inflated bytes,
    // before the caller's completion: the offline cache keeps them. None by default.
    using AnswerObserver = std::function<void(const Router &route, const QByteArray &body)>;
    void setAnswerObserver(AnswerObserver observer) { m_answerObserver = std::move(observer); }

    // Without a connection (a transport error or a time-out), a read of the
    // settings, the tasks, a task's items or a task's comments is answered from
    // what this reader kept, when it kept something; and a token that cannot be
    // renewed for want of a connection no longer ends the session. None by
    // default: every failure is the caller's.
    using CacheReader = std::function<std::optional<OfflineStore::CachedAnswer>(const Router &route)>;
    void setCacheReader(CacheReader reader) { m_cacheReader = std::move(reader); }
    // When the last answer to this route came from the cache: when the server had
    // given it. None once the server answers the route again.
    [[nodiscard]] std::optional<TimePoint> cachedAnswerTime(const Router &route) const;

    // The outbox that keeps the worker's results when the host turned the
    // offline store on (not owned); none otherwise.
    [[nodiscard]] OutboxSender *outbox() const;
    void setOutbox(OutboxSender *outbox);

    // Sends a route and decodes the answer as T (T::decode(const json::Value &)).
    template<class T>
    void request(const Router &route, ApiQueue &queue, const QObject *context, Completion<T> completion);

    // The same, and then `prepare` turns the decoded answer into what the caller
    // shows, still on the api queue: work that grows with the answer (sorting,
    // grouping, counting) is done there, never on the main thread.
    template<class T, class Prepared>
    void request(const Router &route, ApiQueue &queue, const QObject *context, std::function<Prepared(T &&)> prepare,
                 Completion<Prepared> completion);

    // An answer as it arrived: the HTTP status (none when the transfer itself
    // failed or the answer is not HTTP) and the inflated body, whatever the status.
    struct RouteAnswer
    {
        std::optional<int> status;
        QByteArray body;
    };
    // Sends a route with the same session and token handling as request(), for
    // callers that tell a refusal (4xx, with the server's reason in the body) from
    // a failure worth retrying. Fails only without a session or when the token
    // cannot be regenerated.
    void send(const Router &route, const QObject *context,
              const std::function<void(const Result<RouteAnswer> &)> &completion);

    // Fetches a picture through getFile.
    void downloadImage(const QString &path, bool isThumb, const QObject *context,
                       const std::function<void(const Result<QImage, DownloadError> &)> &completion);

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

    // Decodes an answer body as every request does: a decoding failure is logged
    // ("Could not translate the data to the requested type. Reason: ...") and
    // becomes invalidParsing. Ids outside their declared range stop the process.
    template<class T>
    [[nodiscard]] static Result<T> decodeBody(const QByteArray &body, const json::Options &options);

private:
    struct RawReply
    {
        std::optional<int> status; // set when the answer is an HTTP response
        // Set when the transfer itself failed (refused, closed or reset connection,
        // TLS, time-out), even after an HTTP status arrived; not for the errors Qt
        // derives from an error status, which `status` stands for.
        std::optional<QNetworkReply::NetworkError> transportError;
        QString errorString;
        QByteArray body;
        // The body's Content-Encoding; bodies are inflated where they are decoded.
        QByteArray contentEncoding;
    };
    using DecodeJob = std::function<std::function<void()>(const QByteArray &body, const json::Options &options)>;
    using Failure = std::function<void(ManagerErrors)>;

    void perform(const Router &route, ApiQueue &queue, const QObject *context, DecodeJob decode, Failure fail);
    // Checks the session and the token, then runs `proceed` (or fails).
    // A token that cannot be renewed without a connection fails through
    // `offline` when given, and ends the session only without a cache.
    void withFreshSession(std::function<void()> proceed, Failure fail, Failure offline = {});
    // Answers a cached read from the cache; false when nothing is kept.
    bool answerFromCache(const Router &route, ApiQueue &queue, const QPointer<QObject> &guard, const DecodeJob &decode);
    void sendRaw(const Router &route, std::function<void(const RawReply &)> handler);
    void notifySessionExpired() const;
    [[nodiscard]] RavelinNavVCDelegate *hostDelegate() const;

    QNetworkAccessManager *m_network = nullptr;
    SessionStore *m_store = nullptr;
    Clock m_clock;
    std::chrono::milliseconds m_transferTimeout = std::chrono::seconds(Router::requestTimeoutSeconds);
    TrustPolicy m_trustPolicy;
    GuardedPointer<NetworkManagerDelegate> m_delegate;
    AnswerObserver m_answerObserver;
    CacheReader m_cacheReader;
    QHash<QString, TimePoint> m_cachedAnswerTimes; // by route path
    QPointer<OutboxSender> m_outbox;
    QList<QPointer<QNetworkReply>> m_replies;
};

template<class T>
Result<T> NetworkManager::decodeBody(const QByteArray &body, const json::Options &options)
{
    try {
        return Result<T>::success(json::decode<T>(body, options));
    } catch (const json::DecodingError &error) {
        debugLog(lcApi,
                 QStringLiteral("Could not translate the data to the requested type. Reason: ")
                     + error.localizedDescription());
        return Result<T>::failure(ManagerErrors(ManagerErrors::Kind::invalidParsing));
    }
}

template<class T, class Prepared>
void NetworkManager::request(const Router &route, ApiQueue &queue, const QObject *context,
                             std::function<Prepared(T &&)> prepare, Completion<Prepared> completion)
{
    perform(
        route, queue, context,
        [prepare, completion](const QByteArray &body, const json::Options &options) -> std::function<void()> {
            Result<T> decoded = decodeBody<T>(body, options);
            auto result = std::make_shared<Result<Prepared>>(
                decoded.isSuccess() ? Result<Prepared>::success(prepare(std::move(decoded).value()))
                                    : Result<Prepared>::failure(decoded.error()));
            return [completion, result] { completion(*result); };
        },
        [completion](ManagerErrors error) { completion(Result<Prepared>::failure(error)); });
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
