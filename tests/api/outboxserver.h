#pragma once

#include "api/datecoding.h"
#include "support/testserver.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QThread>
#include <QTimeZone>

#include <algorithm>
#include <mutex>

namespace ravelin::test {

// The results' side of the API on the loopback test server: task status
// changes, item updates, comments and the comment threads they make, with what
// each received in order. Tasks can be made to refuse a kind of request, and
// requests to fail or to lose their answer.
class OutboxServer
{
public:
    struct Received
    {
        QString kind; // "status", "items", "comment", "upload"
        qint64 taskId = 0;
        QJsonObject body;
    };

    explicit OutboxServer(TestServer &server)
    {
        server.onPrefix("PUT", QStringLiteral("/api/task/"), [this](const RecordedRequest &r) {
            return take(QStringLiteral("status"), r.path.section(QLatin1Char('/'), 3, 3).toLongLong(), r.body);
        });
        server.on("PUT", QStringLiteral("/api/item/status"), [this](const RecordedRequest &r) {
            const QJsonObject body = QJsonDocument::fromJson(r.body).object();
            return take(QStringLiteral("items"), body.value(QLatin1String("task_id")).toInteger(), r.body);
        });
        server.on("POST", QStringLiteral("/api/comment"), [this](const RecordedRequest &r) {
            const QJsonObject body = QJsonDocument::fromJson(r.body).object();
            return take(QStringLiteral("comment"), body.value(QLatin1String("task_id")).toInteger(), r.body);
        });
        server.onPrefix("PUT", QStringLiteral("/upload/"), [this](const RecordedRequest &r) {
            const QString name = r.path.mid(8);
            CannedResponse answer
                = take(QStringLiteral("upload"), 0, QJsonDocument(QJsonObject{{"name", name}}).toJson());
            if (answer.status == 200)
                answer.body = R"({"success":true,"path":"uploads/)" + name.toUtf8() + R"("})";
            return answer;
        });
        server.onPrefix("GET", QStringLiteral("/api/task/"), [this](const RecordedRequest &r) {
            return thread(r.path.section(QLatin1Char('/'), 3, 3).toLongLong());
        });
    }

    [[nodiscard]] QList<Received> received() const
    {
        std::lock_guard lock(m_mutex);
        return m_received;
    }
    [[nodiscard]] QList<Received> received(const QString &kind) const
    {
        QList<Received> matching;
        std::ranges::copy_if(received(), std::back_inserter(matching),
                             [&kind](const Received &r) { return r.kind == kind; });
        return matching;
    }
    [[nodiscard]] int threadReads() const
    {
        std::lock_guard lock(m_mutex);
        return m_threadReads;
    }

    // Answers 404 with a reason to this kind of request on the task.
    void refuse(const QString &kind, qint64 taskId)
    {
        std::lock_guard lock(m_mutex);
        m_refusals.insert(kind + QString::number(taskId));
    }
    void acceptAll()
    {
        std::lock_guard lock(m_mutex);
        m_refusals.clear();
    }
    // The next requests answer 503 without taking anything.
    void failNext(int count)
    {
        std::lock_guard lock(m_mutex);
        m_failures = count;
    }
    // The next comment is taken, and its answer arrives only after `stallMs`.
    void loseNextAnswer(int stallMs)
    {
        std::lock_guard lock(m_mutex);
        m_stallMs = stallMs;
    }
    // Adds a comment to a thread as if an earlier post had reached the server.
    void seedComment(qint64 taskId, const QByteArray &body) { take(QStringLiteral("comment"), taskId, body); }

private:
    CannedResponse take(const QString &kind, qint64 taskId, const QByteArray &body)
    {
        int stall = 0;
        {
            std::lock_guard lock(m_mutex);
            if (m_failures > 0) {
                --m_failures;
                return CannedResponse{503, R"({"success":false,"message":"Try again later"})"};
            }
            if (m_refusals.contains(kind + QString::number(taskId)))
                return CannedResponse{404, R"({"success":false,"message":"Task not found"})"};
            m_received.append({kind, taskId, QJsonDocument::fromJson(body).object()});
            if (kind == QLatin1String("comment"))
                std::swap(stall, m_stallMs);
        }
        if (stall > 0)
            QThread::msleep(stall);
        return CannedResponse{200, R"({"success":true,"data":true})"};
    }

    CannedResponse thread(qint64 taskId)
    {
        QJsonArray comments;
        std::lock_guard lock(m_mutex);
        ++m_threadReads;
        for (const Received &r : std::as_const(m_received)) {
            if (r.kind != QLatin1String("comment") || r.taskId != taskId)
                continue;
            const qint64 ms = r.body.value(QLatin1String("date_created")).toInteger();
            comments.append(
                QJsonObject{{"text", r.body.value(QLatin1String("text"))},
                            {"userId", r.body.value(QLatin1String("user_id"))},
                            {"dateCreated", formatServerDate(QDateTime::fromMSecsSinceEpoch(ms, QTimeZone::utc()))},
                            {"itemId", QJsonValue::Null},
                            {"isIncident", r.body.value(QLatin1String("is_incident")).toBool() ? "1" : "0"},
                            {"assetName", "Van 3"},
                            {"assetIcon", "van"}});
        }
        return CannedResponse{
            200, QJsonDocument(QJsonObject{{"success", true}, {"data", comments}}).toJson(QJsonDocument::Compact)};
    }

    mutable std::mutex m_mutex;
    QList<Received> m_received;
    QSet<QString> m_refusals;
    int m_failures = 0;
    int m_stallMs = 0;
    int m_threadReads = 0;
};

} // namespace ravelin::test
