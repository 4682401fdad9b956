#include "api/networkmanager.h"

#include "api/contentencoding.h"
#include "api/networkmanagerdelegate.h"
#include "api/outboxsender.h"
#include "api/sessionstore.h"
#include "api/settings.h"
#include "comments/posttaskscommentresponse.h"
#include "comments/taskcommentpayload.h"
#include "host/ravelinnavvcdelegate.h"

#include <QNetworkAccessManager>
#include <QRandomGenerator>
#include <QTimer>

#include <charconv>

namespace ravelin {

namespace {

// Runs `work` on the main thread unless the guarded object is gone by then.
void deliverOnMainThread(const QPointer<QObject> &guard, std::function<void()> work)
{
    ApiQueue::deliverToMainThread([guard, work = std::move(work)] {
        if (guard)
            work();
    });
}

// The answers a screen can open from without a connection.
bool isCachedRoute(const Router &route)
{
    switch (route.routeCase()) {
    case Router::Case::getAllTasks:
    case Router::Case::getItems:
    case Router::Case::getTaskComments:
    case Router::Case::getSettingsAndConstants: return true;
    case Router::Case::updateTaskStatus:
    case Router::Case::updateItemsStatus:
    case Router::Case::postComment:
    case Router::Case::getFile:
    case Router::Case::getToken: break;
    }
    return false;
}

void logUninflatable(const QByteArray &encoding)
{
    debugLog(
        lcApi,
        QStringLiteral("Could not translate the data to the requested type. Reason: the answer does not inflate as ")
            + QString::fromLatin1(encoding));
}

// Qt reports an HTTP error status (4xx, 5xx) as a reply error of its own (content,
// protocol, server and proxy-authentication errors), and a redirect status
// without a target as a redirect to an unknown protocol; those answers are mapped
// by their status. Every error of the network layer is a transport error,
// whatever status arrived before it (a connection closed in the middle of a 2xx
// body, a time-out, a redirect loop).
bool isTransportError(const QNetworkReply &reply, std::optional<int> status)
{
    const QNetworkReply::NetworkError error = reply.error();
    if (error == QNetworkReply::NoError)
        return false;
    if (!status)
        return true;
    if (*status >= 300 && *status < 400 && !reply.hasRawHeader("Location"))
        return false;
    if (*status < 400)
        return true;
    return error <= QNetworkReply::UnknownNetworkError;
}

} // namespace

NetworkManager::NetworkManager(QNetworkAccessManager *network, SessionStore *store, Clock clock, QObject *parent)
    : QObject(parent)
    , m_network(network)
    , m_store(store)
    , m_clock(std::move(clock))
{ }

NetworkManager::~NetworkManager()
{
    // Answers still under way are dropped: nothing may call back into this object.
    for (const QPointer<QNetworkReply> &reply : std::as_const(m_replies)) {
        if (!reply)
            continue;
        disconnect(reply, nullptr, this, nullptr);
        reply->abort();
        reply->deleteLater();
    }
}

void NetworkManager::setDelegate(NetworkManagerDelegate *delegate)
{
    m_delegate = delegate;
}

json::Options NetworkManager::decodingOptions()
{
    return json::Options{json::KeyDecoding::convertFromSnakeCase, json::DateDecoding::serverFormat, nullptr};
}

RavelinNavVCDelegate *NetworkManager::hostDelegate() const
{
    return m_delegate ? m_delegate->hostDelegate() : nullptr;
}

void NetworkManager::notifySessionExpired() const
{
    if (RavelinNavVCDelegate *host = hostDelegate())
        host->sessionExpired();
}

void NetworkManager::perform(const Router &route, ApiQueue &queue, const QObject *context, DecodeJob decode,
                             Failure fail)
{
    const QPointer<QObject> guard(const_cast<QObject *>(context ? context : this));
    Failure guardedFail = [guard, fail = std::move(fail)](ManagerErrors error) {
        if (guard)
            fail(error);
    };
    ApiQueue *apiQueue = &queue;

    // Without a connection, a kept answer stands in for the server's.
    Failure offline;
    if (m_cacheReader && isCachedRoute(route)) {
        offline = [this, route, apiQueue, guard, decode, guardedFail](ManagerErrors error) {
            if (!answerFromCache(route, *apiQueue, guard, decode))
                guardedFail(error);
        };
    }

    withFreshSession(
        [this, route, apiQueue, guard, decode = std::move(decode), guardedFail, offline] {
            sendRaw(route, [this, route, apiQueue, guard, decode, guardedFail, offline](const RawReply &reply) {
                if (reply.transportError) {
                    debugLog(lcApi, QStringLiteral("ERROR FOR REQUEST ") + reply.errorString);
                    (offline ? offline : guardedFail)(ManagerErrors(ManagerErrors::Kind::apiRouteError));
                    return;
                }
                m_cachedAnswerTimes.remove(route.path());
                if (!reply.status) {
                    guardedFail(ManagerErrors(ManagerErrors::Kind::invalidResponse));
                    return;
                }
                if (const auto error = ManagerErrors::fromStatusCode(*reply.status)) {
                    guardedFail(*error);
                    return;
                }
                // A Qt reply always carries a data object (possibly empty), so the
                // "2xx without data" case never arises here: every 2xx is decoded.
                // Answers are decoded on the api queue, where task decoding looks
                // categories up in the queue's copy of the settings (the latest
                // set or received before this answer).
                const AnswerObserver observer = isCachedRoute(route) ? m_answerObserver : AnswerObserver();
                const QPointer<QObject> manager(this);
                apiQueue->async([body = reply.body, encoding = reply.contentEncoding, guard, decode, guardedFail,
                                 observer, route, manager] {
                    const std::optional<QByteArray> inflated = ContentEncoding::decode(body, encoding);
                    if (!inflated) {
                        logUninflatable(encoding);
                        deliverOnMainThread(
                            guard, [guardedFail] { guardedFail(ManagerErrors(ManagerErrors::Kind::invalidParsing)); });
                        return;
                    }
                    if (observer)
                        deliverOnMainThread(manager, [observer, route, body = *inflated] { observer(route, body); });
                    json::Options options = decodingOptions();
                    options.taskCategories = &Settings::queueCategories();
                    deliverOnMainThread(guard, decode(*inflated, options));
                });
            });
        },
        guardedFail, offline);
}

bool NetworkManager::answerFromCache(const Router &route, ApiQueue &queue, const QPointer<QObject> &guard,
                                     const DecodeJob &decode)
{
    std::optional<OfflineStore::CachedAnswer> cached = m_cacheReader(route);
    if (!cached)
        return false;
    debugLog(lcApi, QStringLiteral("Answered from the offline cache: ") + route.path());
    m_cachedAnswerTimes.insert(route.path(), cached->fetchedAt);
    queue.async([body = std::move(cached->body), guard, decode] {
        json::Options options = decodingOptions();
        options.taskCategories = &Settings::queueCategories();
        deliverOnMainThread(guard, decode(body, options));
    });
    return true;
}

std::optional<TimePoint> NetworkManager::cachedAnswerTime(const Router &route) const
{
    const auto found = m_cachedAnswerTimes.constFind(route.path());
    return found == m_cachedAnswerTimes.cend() ? std::nullopt : std::optional(*found);
}

OutboxSender *NetworkManager::outbox() const
{
    return m_outbox;
}

void NetworkManager::setOutbox(OutboxSender *outbox)
{
    m_outbox = outbox;
}

void NetworkManager::withFreshSession(std::function<void()> proceed, Failure fail, Failure offline)
{
    auto session = m_store->load();
    if (!session) {
        notifySessionExpired();
        QTimer::singleShot(0, this,
                           [fail = std::move(fail)] { fail(ManagerErrors(ManagerErrors::Kind::apiRouteError)); });
        return;
    }
    if (session->isTokenFresh(m_clock())) {
        proceed();
        return;
    }

    sendRaw(Router::getToken(),
            [this, session = *session, proceed = std::move(proceed), fail = std::move(fail),
             offline = std::move(offline)](const RawReply &reply) mutable {
                std::optional<ManagerErrors> error;
                std::optional<TokenResponse> token;
                if (reply.transportError) {
                    debugLog(lcApi, QStringLiteral("ERROR FOR REQUEST ") + reply.errorString);
                    error = ManagerErrors(ManagerErrors::Kind::apiRouteError);
                } else if (!reply.status) {
                    error = ManagerErrors(ManagerErrors::Kind::invalidResponse);
                } else if (const auto statusError = ManagerErrors::fromStatusCode(*reply.status)) {
                    error = statusError;
                } else if (const auto body = ContentEncoding::decode(reply.body, reply.contentEncoding); !body) {
                    logUninflatable(reply.contentEncoding);
                    error = ManagerErrors(ManagerErrors::Kind::invalidParsing);
                } else {
                    const Result<TokenResponse> decoded = decodeBody<TokenResponse>(*body, decodingOptions());
                    if (decoded.isSuccess())
                        token = decoded.value();
                    else
                        error = decoded.error();
                }

                if (!token && reply.transportError && m_cacheReader) {
                    // No connection says nothing about the session: it is kept.
                    (offline ? offline : fail)(*error);
                    return;
                }
                if (!token) {
                    notifySessionExpired();
                    fail(*error);
                    return;
                }
                session.tokenString = token->data;
                session.timestamp = toDateTime(m_clock());
                debugLog(lcApi, QStringLiteral("Current token"), token->data);
                m_store->store(session);
                proceed(); // the requested call goes out once, with the new token
            });
}

void NetworkManager::sendRaw(const Router &route, std::function<void(const RawReply &)> handler)
{
    UrlRequest request = route.urlRequest(*m_store);
    if (request.url().isValid())
        debugLog(lcApi, QStringLiteral("Calling route: ") + request.url().toString());
    request.request.setTransferTimeout(int(m_transferTimeout.count()));

    // Asked for here, compressed answers are left to the api queue to inflate.
    QNetworkRequest compressed = request.request;
    compressed.setRawHeader("Accept-Encoding", ContentEncoding::accepted.toByteArray());
    m_trustPolicy.prepare(compressed);
    QNetworkReply *reply = m_network->sendCustomRequest(compressed, request.method, request.body);
    m_replies.append(reply);
    m_trustPolicy.watch(reply);
    connect(reply, &QNetworkReply::finished, this, [this, reply, policy = m_trustPolicy, handler = std::move(handler)] {
        m_replies.removeAll(reply);
        reply->deleteLater();
        RawReply raw;
        const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
        if (status.isValid())
            raw.status = status.toInt();
        if (isTransportError(*reply, raw.status))
            raw.transportError = reply->error();
        raw.errorString = reply->errorString();
        // A server the trust policy refuses is a transport failure, whatever it answered.
        if (const std::optional<QString> refused = policy.refusal(*reply)) {
            raw.transportError = QNetworkReply::SslHandshakeFailedError;
            raw.errorString = *refused;
            handler(raw);
            return;
        }
        if (reply->isOpen()) // an aborted transfer (time-out) has nothing left to read
            raw.body = reply->readAll();
        raw.contentEncoding = reply->rawHeader("Content-Encoding");
        handler(raw);
    });
}

void NetworkManager::send(const Router &route, const QObject *context,
                          const std::function<void(const Result<RouteAnswer> &)> &completion)
{
    const QPointer<QObject> guard(const_cast<QObject *>(context ? context : this));
    withFreshSession(
        [this, route, guard, completion] {
            sendRaw(route, [guard, completion](const RawReply &reply) {
                if (!guard)
                    return;
                RouteAnswer answer;
                if (reply.transportError) {
                    debugLog(lcApi, QStringLiteral("ERROR FOR REQUEST ") + reply.errorString);
                } else {
                    answer.status = reply.status;
                    answer.body = ContentEncoding::decode(reply.body, reply.contentEncoding).value_or(QByteArray());
                }
                completion(Result<RouteAnswer>::success(std::move(answer)));
            });
        },
        [guard, completion](ManagerErrors error) {
            if (guard)
                completion(Result<RouteAnswer>::failure(error));
        });
}

void NetworkManager::downloadImage(const QString &path, bool isThumb, const QObject *context,
                                   const std::function<void(const Result<QImage, DownloadError> &)> &completion)
{
    using ImageResult = Result<QImage, DownloadError>;
    const QPointer<QObject> guard(const_cast<QObject *>(context ? context : this));
    const Router route = Router::getFile(path, isThumb);

    withFreshSession(
        [this, route, guard, completion] {
            sendRaw(route, [guard, completion](const RawReply &reply) {
                if (!guard)
                    return;
                if (reply.transportError) {
                    debugLog(lcApi, QStringLiteral("ERROR FOR REQUEST ") + reply.errorString);
                    completion(ImageResult::failure(DownloadError(*reply.transportError, reply.errorString)));
                    return;
                }
                if (!reply.status) {
                    completion(
                        ImageResult::failure(DownloadError(ManagerErrors(ManagerErrors::Kind::invalidResponse))));
                    return;
                }
                debugLog(lcApi, QStringLiteral("Route response: "), QString::number(*reply.status));
                if (const auto error = ManagerErrors::fromStatusCode(*reply.status)) {
                    completion(ImageResult::failure(DownloadError(*error)));
                    return;
                }
                ApiQueue::shared().async([body = reply.body, encoding = reply.contentEncoding, guard, completion] {
                    const std::optional<QByteArray> inflated = ContentEncoding::decode(body, encoding);
                    if (!inflated)
                        logUninflatable(encoding);
                    QImage image = inflated ? QImage::fromData(*inflated) : QImage();
                    if (image.isNull()) {
                        debugLog(lcApi,
                                 QStringLiteral("Could not translate the data to the requested type. Reason: QImage"));
                    }
                    deliverOnMainThread(guard, [image = std::move(image), completion] {
                        if (image.isNull())
                            completion(ImageResult::failure(
                                DownloadError(ManagerErrors(ManagerErrors::Kind::invalidParsing))));
                        else
                            completion(ImageResult::success(image));
                    });
                });
            });
        },
        [guard, completion](ManagerErrors error) {
            if (guard)
                completion(ImageResult::failure(DownloadError(error)));
        });
}

void NetworkManager::uploadImage(const QImage &image, const QString &fileName, const QObject *context,
                                 std::function<void(bool, std::optional<QString>)> completion)
{
    const QPointer<QObject> guard(const_cast<QObject *>(context ? context : this));
    RavelinNavVCDelegate *host = hostDelegate();
    if (!host) {
        QTimer::singleShot(0, this, [guard, completion = std::move(completion)] {
            if (guard)
                completion(false, std::nullopt);
        });
        return;
    }
    host->uploadImage(image, fileName,
                      [guard, completion = std::move(completion)](bool success, std::optional<QString> path) {
                          if (guard)
                              completion(success, std::move(path));
                      });
}

void NetworkManager::postComment(qint64 taskId, qint64 userId, const QString &text, const std::optional<QImage> &image,
                                 bool isIncident, const QObject *context, std::function<void(bool)> completion)
{
    const QPointer<QObject> guard(const_cast<QObject *>(context ? context : this));
    auto post = [this, guard, taskId, userId, text, isIncident,
                 completion = std::move(completion)](std::optional<QString> mediaPath) {
        if (!guard)
            return;
        const TaskCommentPayload payload(text, taskId, userId, std::nullopt, isIncident, std::move(mediaPath),
                                         m_clock());
        request<PostTasksCommentResponse>(
            Router::postComment(payload), ApiQueue::shared(), guard.data(),
            [completion](const Result<PostTasksCommentResponse> &result) {
                if (!result.isSuccess()) {
                    debugLog(lcApi,
                             QStringLiteral("We got a failure trying to post the comments. The error we got was: ")
                                 + result.error().localizedDescription());
                    completion(false);
                    return;
                }
                debugLog(lcApi,
                         QStringLiteral("Posted comments ")
                             + (result.value().success ? QStringLiteral("true") : QStringLiteral("false")));
                completion(true);
            });
    };

    if (!image) {
        post(std::nullopt);
        return;
    }
    // The comment goes out with whatever path the host returned, even after a failed upload.
    uploadImage(*image, makePhotoFileName(userId), this,
                [post](bool, std::optional<QString> path) { post(std::move(path)); });
}

QString NetworkManager::photoFileName(qint64 userId, double millisecondsSince1970, int digit)
{
    char buffer[64];
    const auto [end, ec]
        = std::to_chars(buffer, buffer + sizeof buffer, millisecondsSince1970, std::chars_format::fixed);
    QString millis = ec == std::errc() ? QString::fromLatin1(buffer, end - buffer) : QStringLiteral("0");
    if (!millis.contains(QLatin1Char('.')))
        millis += QStringLiteral(".0");
    return QString::number(userId) + QLatin1Char('_') + millis + QStringLiteral("_photo_") + QString::number(digit)
        + QStringLiteral(".jpg");
}

QString NetworkManager::makePhotoFileName(qint64 userId) const
{
    return photoFileName(userId, millisecondsSince1970(m_clock()), int(QRandomGenerator::global()->bounded(10)));
}

} // namespace ravelin
