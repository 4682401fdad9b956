#include "api/networkmanager.h"

#include "api/networkmanagerdelegate.h"
#include "api/sessionstore.h"
#include "api/settings.h"
#include "comments/posttaskscommentresponse.h"
#include "comments/taskcommentpayload.h"
#include "host/ravelinnavvcdelegate.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QRandomGenerator>
#include <QTimer>

#include <charconv>

namespace ravelin {

namespace {

// Runs `work` on the main thread unless the guarded object is gone by then.
void deliverOnMainThread(const QPointer<QObject> &guard, std::function<void()> work)
{
    QCoreApplication *app = QCoreApplication::instance();
    if (!app)
        return;
    QMetaObject::invokeMethod(
        app,
        [guard, work = std::move(work)] {
            if (guard)
                work();
        },
        Qt::QueuedConnection);
}

} // namespace

NetworkManager::NetworkManager(QNetworkAccessManager *network, SessionStore *store, Clock clock, QObject *parent)
    : QObject(parent)
    , m_network(network)
    , m_store(store)
    , m_clock(std::move(clock))
{
}

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

void NetworkManager::perform(const Router &route, ApiQueue &queue, const QObject *context, DecodeJob decode, Failure fail)
{
    const QPointer<QObject> guard(const_cast<QObject *>(context ? context : this));
    Failure guardedFail = [guard, fail = std::move(fail)](ManagerErrors error) {
        if (guard)
            fail(error);
    };
    ApiQueue *apiQueue = &queue;

    withFreshSession(
        [this, route, apiQueue, guard, decode = std::move(decode), guardedFail] {
            sendRaw(route, [apiQueue, guard, decode, guardedFail](const RawReply &reply) {
                if (!reply.status) {
                    if (reply.error != QNetworkReply::NoError) {
                        debugLog(QStringLiteral("ERROR FOR REQUEST ") + reply.errorString);
                        guardedFail(ManagerErrors(ManagerErrors::Kind::apiRouteError));
                    } else {
                        guardedFail(ManagerErrors(ManagerErrors::Kind::invalidResponse));
                    }
                    return;
                }
                if (const auto error = ManagerErrors::fromStatusCode(*reply.status)) {
                    guardedFail(*error);
                    return;
                }
                // A Qt reply always carries a data object (possibly empty), so the
                // "2xx without data" case never arises here: every 2xx is decoded.
                // Answers are decoded on the api queue; the categories that task
                // decoding looks up are taken now, on the main thread where the
                // settings live, as late as possible so that a settings answer
                // that arrived meanwhile is used.
                auto categories = std::make_shared<const QList<TaskCategoryDefinition>>(Settings::current().taskCategory);
                apiQueue->async([body = reply.body, guard, decode, categories] {
                    json::Options options = decodingOptions();
                    options.taskCategories = categories.get();
                    deliverOnMainThread(guard, decode(body, options));
                });
            });
        },
        guardedFail);
}

void NetworkManager::withFreshSession(std::function<void()> proceed, Failure fail)
{
    auto session = m_store->load();
    if (!session) {
        notifySessionExpired();
        QTimer::singleShot(0, this, [fail] { fail(ManagerErrors(ManagerErrors::Kind::apiRouteError)); });
        return;
    }
    if (session->isTokenFresh(m_clock())) {
        proceed();
        return;
    }

    sendRaw(Router::getToken(), [this, session = *session, proceed, fail](const RawReply &reply) mutable {
        std::optional<ManagerErrors> error;
        std::optional<TokenResponse> token;
        if (!reply.status) {
            if (reply.error != QNetworkReply::NoError)
                debugLog(QStringLiteral("ERROR FOR REQUEST ") + reply.errorString);
            error = ManagerErrors(reply.error != QNetworkReply::NoError ? ManagerErrors::Kind::apiRouteError
                                                                        : ManagerErrors::Kind::invalidResponse);
        } else if (const auto statusError = ManagerErrors::fromStatusCode(*reply.status)) {
            error = statusError;
        } else {
            const Result<TokenResponse> decoded = decodeBody<TokenResponse>(reply.body, decodingOptions());
            if (decoded.isSuccess())
                token = decoded.value();
            else
                error = decoded.error();
        }

        if (!token) {
            notifySessionExpired();
            fail(*error);
            return;
        }
        session.tokenString = token->data;
        session.timestamp = toDateTime(m_clock());
        debugLog(QStringLiteral("Current token"), token->data);
        m_store->store(session);
        proceed(); // the requested call goes out once, with the new token
    });
}

void NetworkManager::sendRaw(const Router &route, std::function<void(const RawReply &)> handler)
{
    const UrlRequest request = route.urlRequest(*m_store);
    if (request.url().isValid())
        debugLog(QStringLiteral("Calling route: ") + request.url().toString());

    QNetworkReply *reply = m_network->sendCustomRequest(request.request, request.method, request.body);
    m_replies.append(reply);
    // Every certificate the server presents is accepted.
    connect(reply, &QNetworkReply::sslErrors, reply, [reply](const QList<QSslError> &) { reply->ignoreSslErrors(); });
    connect(reply, &QNetworkReply::finished, this, [this, reply, handler = std::move(handler)] {
        m_replies.removeAll(reply);
        reply->deleteLater();
        RawReply raw;
        const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
        if (status.isValid())
            raw.status = status.toInt();
        raw.error = reply->error();
        raw.errorString = reply->errorString();
        raw.body = reply->readAll();
        handler(raw);
    });
}

void NetworkManager::downloadImage(const QString &path, bool isThumb, const QObject *context,
                                   std::function<void(const Result<QImage, DownloadError> &)> completion)
{
    using ImageResult = Result<QImage, DownloadError>;
    const QPointer<QObject> guard(const_cast<QObject *>(context ? context : this));
    const Router route = Router::getFile(path, isThumb);

    withFreshSession(
        [this, route, guard, completion] {
            sendRaw(route, [guard, completion](const RawReply &reply) {
                if (!guard)
                    return;
                if (!reply.status) {
                    if (reply.error != QNetworkReply::NoError) {
                        debugLog(QStringLiteral("ERROR FOR REQUEST ") + reply.errorString);
                        completion(ImageResult::failure(DownloadError(reply.error, reply.errorString)));
                    } else {
                        completion(ImageResult::failure(DownloadError(ManagerErrors(ManagerErrors::Kind::invalidResponse))));
                    }
                    return;
                }
                debugLog(QStringLiteral("Route response: "), QString::number(*reply.status));
                if (const auto error = ManagerErrors::fromStatusCode(*reply.status)) {
                    completion(ImageResult::failure(DownloadError(*error)));
                    return;
                }
                ApiQueue::shared().async([body = reply.body, guard, completion] {
                    QImage image = QImage::fromData(body);
                    if (image.isNull()) {
                        debugLog(QStringLiteral("Could not translate the data to the requested type. Reason: QImage"));
                    }
                    deliverOnMainThread(guard, [image = std::move(image), completion] {
                        if (image.isNull())
                            completion(ImageResult::failure(DownloadError(ManagerErrors(ManagerErrors::Kind::invalidParsing))));
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
        QTimer::singleShot(0, this, [guard, completion] {
            if (guard)
                completion(false, std::nullopt);
        });
        return;
    }
    host->uploadImage(image, fileName, [guard, completion](bool success, std::optional<QString> path) {
        if (guard)
            completion(success, std::move(path));
    });
}

void NetworkManager::postComment(qint64 taskId, qint64 userId, const QString &text, const std::optional<QImage> &image,
                                 bool isIncident, const QObject *context, std::function<void(bool)> completion)
{
    const QPointer<QObject> guard(const_cast<QObject *>(context ? context : this));
    auto post = [this, guard, taskId, userId, text, isIncident, completion](std::optional<QString> mediaPath) {
        if (!guard)
            return;
        const TaskCommentPayload payload(text, taskId, userId, std::nullopt, isIncident, std::move(mediaPath), m_clock());
        request<PostTasksCommentResponse>(
            Router::postComment(payload), ApiQueue::shared(), guard.data(),
            [completion](const Result<PostTasksCommentResponse> &result) {
                if (!result.isSuccess()) {
                    debugLog(QStringLiteral("We got a failure trying to post the comments. The error we got was: ")
                             + result.error().localizedDescription());
                    completion(false);
                    return;
                }
                debugLog(QStringLiteral("Posted comments ")
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
    const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, millisecondsSince1970, std::chars_format::fixed);
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
