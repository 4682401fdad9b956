#include "api/router.h"

#include "api/debuglog.h"
#include "api/fatalerror.h"
#include "api/sessionstore.h"
#include "comments/taskcommentpayload.h"

#include <QJsonDocument>
#include <QUrlQuery>

namespace ravelin {

Router Router::getAllTasks(qint64 assignedUserId, const TasksQueryParams &queryParams)
{
    Router r(Case::getAllTasks);
    r.m_id = assignedUserId;
    r.m_queryParams = queryParams;
    return r;
}

Router Router::getItems(qint64 taskId)
{
    Router r(Case::getItems);
    r.m_id = taskId;
    return r;
}

Router Router::updateTaskStatus(qint64 id, qint64 status, qint64 updaterUserId)
{
    Router r(Case::updateTaskStatus);
    r.m_id = id;
    r.m_status = status;
    r.m_updaterUserId = updaterUserId;
    return r;
}

Router Router::getTaskComments(qint64 taskId)
{
    Router r(Case::getTaskComments);
    r.m_id = taskId;
    return r;
}

Router Router::postComment(const TaskCommentPayload &payload)
{
    return withEncodedBody(Case::postComment, payload.toJson());
}

Router Router::getFile(const QString &path, bool isThumb)
{
    Router r(Case::getFile);
    r.m_filePath = path;
    r.m_isThumb = isThumb;
    return r;
}

Router Router::getToken()
{
    return Router(Case::getToken);
}

Router Router::getSettingsAndConstants()
{
    return Router(Case::getSettingsAndConstants);
}

Router Router::withEncodedBody(Case c, std::optional<QByteArray> body)
{
    Router r(c);
    r.m_encodedBody = std::move(body);
    return r;
}

HTTPMethod Router::method() const
{
    switch (m_case) {
    case Case::updateTaskStatus:
    case Case::updateItemsStatus: return HTTPMethod::put();
    case Case::postComment: return HTTPMethod::post();
    case Case::getAllTasks:
    case Case::getItems:
    case Case::getTaskComments:
    case Case::getFile:
    case Case::getToken:
    case Case::getSettingsAndConstants: break;
    }
    return HTTPMethod::get();
}

QString Router::path() const
{
    // The server's paths are uneven on purpose (api/tasks vs api/task, api/items vs api/item).
    switch (m_case) {
    case Case::getAllTasks: return QStringLiteral("api/tasks/assigned-user/") + QString::number(m_id);
    case Case::getItems: return QStringLiteral("api/items/taskId/") + QString::number(m_id);
    case Case::updateTaskStatus: return QStringLiteral("api/task/") + QString::number(m_id);
    case Case::updateItemsStatus: return QStringLiteral("api/item/status");
    case Case::getTaskComments:
        return QStringLiteral("api/task/") + QString::number(m_id) + QStringLiteral("/comments");
    case Case::postComment: return QStringLiteral("api/comment");
    case Case::getFile:
        return m_isThumb ? QStringLiteral("files/thumbnails/thumb_") + m_filePath
                         : QStringLiteral("files/") + m_filePath;
    case Case::getToken: return QStringLiteral("api/regenerate-token");
    case Case::getSettingsAndConstants: return QStringLiteral("api/settings-constants");
    }
    return {};
}

RequestParameters Router::parameters() const
{
    switch (m_case) {
    case Case::getAllTasks: return QueryParameters{m_queryParams.queryItems()};
    case Case::updateTaskStatus:
        // The assignee repeats the updater: the route has no separate assignee.
        return JsonBodyParameters{QJsonObject{{QStringLiteral("task_status_id"), m_status},
                                              {QStringLiteral("updater_user_id"), m_updaterUserId},
                                              {QStringLiteral("assigned_user_id"), m_updaterUserId}}};
    case Case::updateItemsStatus:
    case Case::postComment: return EncodedBodyParameters{m_encodedBody};
    case Case::getItems:
    case Case::getTaskComments:
    case Case::getFile:
    case Case::getToken:
    case Case::getSettingsAndConstants: break;
    }
    return std::monostate{};
}

UrlRequest Router::urlRequest(const SessionStore &store) const
{
    const auto session = store.load();
    const QString base = session ? QStringLiteral("https://") + session->baseURL + QLatin1Char('/') : QString();
    QUrl url(base, QUrl::StrictMode);
    if (base.isEmpty() || !url.isValid() || url.host().isEmpty())
        fatalError(QStringLiteral("A request cannot be made without a session base URL"), "Router");

    QString urlPath = url.path();
    if (!urlPath.endsWith(QLatin1Char('/')))
        urlPath += QLatin1Char('/');
    url.setPath(urlPath + path());

    UrlRequest result;
    result.request.setUrl(url);
    result.request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::PreferNetwork);
    result.request.setTransferTimeout(requestTimeoutSeconds * 1000);
    result.method = method().rawValue;

    if (const auto again = store.load())
        result.request.setRawHeader("Authorization", "Bearer " + again->tokenString.toUtf8());
    // "Accept-Type" rather than "Accept": the server expects this name.
    result.request.setRawHeader("Accept-Type", "application/json");
    result.request.setRawHeader("Content-Type", "application/json");

    const RequestParameters params = parameters();
    if (const auto *json = std::get_if<JsonBodyParameters>(&params)) {
        result.body = QJsonDocument(json->object).toJson(QJsonDocument::Indented);
        if (result.body.isEmpty())
            debugLog(lcApi, QStringLiteral("Router: Failed to parse the body into a request"));
    } else if (const auto *encoded = std::get_if<EncodedBodyParameters>(&params)) {
        if (encoded->bytes)
            result.body = *encoded->bytes;
    } else if (const auto *query = std::get_if<QueryParameters>(&params)) {
        QUrlQuery urlQuery;
        for (const auto &[name, value] : query->items)
            urlQuery.addQueryItem(name, value);
        QUrl withQuery = url;
        withQuery.setQuery(urlQuery);
        if (withQuery.isValid())
            result.request.setUrl(withQuery);
    }
    return result;
}

} // namespace ravelin
