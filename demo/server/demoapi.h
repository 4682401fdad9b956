#pragma once

#include "demo/server/democlock.h"
#include "demo/server/demodata.h"
#include "demo/server/demorequest.h"
#include "demo/server/demoresponse.h"

#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <mutex>
#include <optional>

namespace ravelin {

// The REST API of the demo deployment, apart from any transport: it answers
// one request at a time from its data set and keeps every change (task
// statuses, item results, comments, uploaded pictures, issued tokens) for as
// long as it lives. Safe to call from several threads.
//
// Routes ("/api/..." ones need "Authorization: Bearer <token>" with a token
// issued here, else 401):
//   GET  /api/settings-constants
//   GET  /api/regenerate-token
//   GET  /api/tasks/assigned-user/{id}?dateStart=&dateEnd=[&priority=][&task_category_id=][&orderBy=][&sortBy=]
//   GET  /api/items/taskId/{id}
//   PUT  /api/task/{id}
//   PUT  /api/item/status
//   GET  /api/task/{id}/comments
//   POST /api/comment
//   POST /api/demo/sign-in      {"userId":N}, no token needed
//   POST /api/demo/upload?fileName=<name>   picture bytes
//   GET  /files/{path}, /files/thumbnails/thumb_{path}   no token needed
class DemoApi
{
public:
    DemoApi(DemoData data, DemoClock clock);

    [[nodiscard]] DemoResponse handle(const DemoRequest &request);

    // Issues a token for a user who may sign in, as the sign-in route does.
    [[nodiscard]] std::optional<QString> signIn(qint64 userId);
    [[nodiscard]] QList<DemoUser> users() const;

private:
    // Everything below runs with m_mutex held.
    [[nodiscard]] DemoResponse route(const DemoRequest &request);
    [[nodiscard]] DemoResponse settingsConstants() const;
    [[nodiscard]] DemoResponse regenerateToken(qint64 userId);
    [[nodiscard]] DemoResponse tasksOf(qint64 userId, const QUrlQuery &query) const;
    [[nodiscard]] DemoResponse itemsOf(qint64 taskId) const;
    [[nodiscard]] DemoResponse updateTask(qint64 taskId, const QJsonObject &body);
    [[nodiscard]] DemoResponse updateItems(const QJsonObject &body);
    [[nodiscard]] DemoResponse commentsOf(qint64 taskId) const;
    [[nodiscard]] DemoResponse postComment(const QJsonObject &body);
    [[nodiscard]] DemoResponse signInRoute(const QJsonObject &body);
    [[nodiscard]] DemoResponse upload(const QUrlQuery &query, const QByteArray &bytes);
    [[nodiscard]] DemoResponse file(const QString &path);
    [[nodiscard]] std::optional<qint64> tokenUser(const QByteArray &authorization) const;
    [[nodiscard]] QString issueToken(qint64 userId);
    [[nodiscard]] QJsonObject taskJson(const DemoTask &task) const;

    mutable std::mutex m_mutex;
    DemoData m_data;
    DemoClock m_clock;
    QHash<QString, qint64> m_tokens; // token -> user
};

} // namespace ravelin
