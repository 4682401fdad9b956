#pragma once

#include "api/httpmethod.h"
#include "api/requestparameters.h"
#include "api/tasksqueryparams.h"
#include "api/urlrequest.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <type_traits>

namespace ravelin {

class SessionStore;
class ItemsUpdatePayload;
class TaskCommentPayload;

// Every call the library makes to the REST server, and how one call becomes a
// finished request. The server host and the token come from the stored session.
class Router
{
public:
    enum class Case {
        getAllTasks,
        getItems,
        updateTaskStatus,
        updateItemsStatus,
        getTaskComments,
        postComment,
        getFile,
        getToken,
        getSettingsAndConstants,
    };

    static constexpr int requestTimeoutSeconds = 60;

    [[nodiscard]] static Router getAllTasks(qint64 assignedUserId, const TasksQueryParams &queryParams);
    [[nodiscard]] static Router getItems(qint64 taskId);
    [[nodiscard]] static Router updateTaskStatus(qint64 id, qint64 status, qint64 updaterUserId);
    // The body is the payload's plain JSON encoding.
    template<class Payload>
    [[nodiscard]] static Router updateItemsStatus(const Payload &payload)
    {
        static_assert(std::is_same_v<Payload, ItemsUpdatePayload>, "updateItemsStatus takes an ItemsUpdatePayload");
        return withEncodedBody(Case::updateItemsStatus, payload.toJson());
    }
    [[nodiscard]] static Router getTaskComments(qint64 taskId);
    [[nodiscard]] static Router postComment(const TaskCommentPayload &payload);
    [[nodiscard]] static Router getFile(const QString &path, bool isThumb);
    [[nodiscard]] static Router getToken();
    [[nodiscard]] static Router getSettingsAndConstants();

    [[nodiscard]] Case routeCase() const { return m_case; }
    [[nodiscard]] HTTPMethod method() const;
    [[nodiscard]] QString path() const;
    [[nodiscard]] RequestParameters parameters() const;

    // The finished request: "https://" + base URL + "/" + path, the bearer token,
    // "Accept-Type" and "Content-Type" set to "application/json", 60 s time-out,
    // and the parameters. Without a usable stored session the process stops: the
    // network manager checks for the session before it asks for a request.
    [[nodiscard]] UrlRequest urlRequest(const SessionStore &store) const;

private:
    explicit Router(Case c)
        : m_case(c)
    { }
    [[nodiscard]] static Router withEncodedBody(Case c, std::optional<QByteArray> body);

    Case m_case;
    qint64 m_id = 0; // assigned user id, task id
    qint64 m_status = 0;
    qint64 m_updaterUserId = 0;
    TasksQueryParams m_queryParams;
    std::optional<QByteArray> m_encodedBody;
    QString m_filePath;
    bool m_isThumb = false;
};

} // namespace ravelin
