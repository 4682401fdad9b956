// ravelin-fuzz-seeds OUTDIR: writes the seed corpora of the decoding entry points
// into OUTDIR/<entry>/, from the demo deployment's real answers (read through
// its API in-process) plus a few edits of them that must keep being rejected or
// stopping the process. A file's name starts with the outcome it must keep.

#include "api/apidata.h"
#include "demo/server/demoapi.h"
#include "demo/server/demodata.h"
#include "fuzz/decodeentry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <cstdio>

using namespace ravelin;
using ravelin::fuzz::DecodeEntry;

namespace {

const QDateTime seedNow = QDateTime::fromMSecsSinceEpoch(1795169730123, Qt::UTC);

class SeedWriter
{
public:
    explicit SeedWriter(QDir root)
        : m_root(std::move(root))
    { }

    bool write(DecodeEntry entry, const QString &name, const QByteArray &bytes)
    {
        const QString folder = fuzz::entryName(entry);
        if (!m_root.mkpath(folder))
            return false;
        QFile file(m_root.filePath(folder + QLatin1Char('/') + name));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
            return false;
        ++m_count;
        return true;
    }

    [[nodiscard]] int count() const { return m_count; }

private:
    QDir m_root;
    int m_count = 0;
};

class DemoSession
{
public:
    DemoSession()
        : m_api(DemoData::seeded(seedNow), [] { return seedNow; })
    { }

    bool signIn(qint64 userId)
    {
        const auto token = m_api.signIn(userId);
        if (token)
            m_token = *token;
        return token.has_value();
    }

    [[nodiscard]] QString token() const { return m_token; }

    QByteArray call(const QByteArray &method, const QString &path, const QJsonObject &body = {},
                    const QUrlQuery &query = {})
    {
        const QByteArray bytes = body.isEmpty() ? QByteArray() : QJsonDocument(body).toJson(QJsonDocument::Compact);
        const DemoResponse response
            = m_api.handle(DemoRequest{method, path, query, "Bearer " + m_token.toUtf8(), bytes});
        if (response.status != 200)
            std::fprintf(stderr, "%s %s answered %d\n", method.constData(), qPrintable(path), response.status);
        return response.body;
    }

    QByteArray tasksOf(qint64 userId)
    {
        QUrlQuery query;
        query.addQueryItem(QStringLiteral("dateStart"), QStringLiteral("0"));
        query.addQueryItem(QStringLiteral("dateEnd"), QString::number(seedNow.toMSecsSinceEpoch()));
        return call("GET", QStringLiteral("/api/tasks/assigned-user/%1").arg(userId), {}, query);
    }

private:
    DemoApi m_api;
    QString m_token;
};

QJsonObject firstTaskOf(const QByteArray &answer)
{
    return QJsonDocument::fromJson(answer).object().value(QLatin1String("data")).toArray().first().toObject();
}

QByteArray answerWith(const QJsonValue &data)
{
    return QJsonDocument(QJsonObject{{"success", true}, {"data", data}}).toJson(QJsonDocument::Compact);
}

// Every server date in an answer ("2026-11-20T10:15:30.123+0000").
QStringList datesIn(const QByteArray &answer)
{
    static const QRegularExpression date(QStringLiteral(R"re("(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}[^"]*)")re"));
    QStringList out;
    for (auto it = date.globalMatch(QString::fromUtf8(answer)); it.hasNext();)
        out.append(it.next().captured(1));
    out.removeDuplicates();
    return out;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: ravelin-fuzz-seeds OUTDIR\n");
        return 2;
    }
    SeedWriter out{QDir(QString::fromLocal8Bit(argv[1]))};
    DemoSession demo;
    bool ok = true;

    // One worker's session: the answers of every route the library decodes.
    if (!demo.signIn(1)) {
        std::fprintf(stderr, "The demo deployment refused to sign worker 1 in\n");
        return 1;
    }
    ok &= out.write(DecodeEntry::settingsAnswer, QStringLiteral("decoded-settings.json"),
                    demo.call("GET", QStringLiteral("/api/settings-constants")));
    ok &= out.write(DecodeEntry::tokenAnswer, QStringLiteral("decoded-token.json"),
                    demo.call("GET", QStringLiteral("/api/regenerate-token")));

    QStringList dates;
    QList<qint64> taskIds;
    for (qint64 worker : {1, 2, 3}) {
        const QByteArray tasks = demo.tasksOf(worker);
        ok &= out.write(DecodeEntry::tasksAnswer, QStringLiteral("decoded-worker-%1.json").arg(worker), tasks);
        dates += datesIn(tasks);
        for (const QJsonValue &task : QJsonDocument::fromJson(tasks).object().value(QLatin1String("data")).toArray())
            taskIds.append(task.toObject().value(QLatin1String("id")).toInteger());
    }
    // Items and comment threads of a few tasks: with and without QR codes, media
    // and items named, and one empty thread.
    int itemSeeds = 0;
    int commentSeeds = 0;
    bool emptyThread = false;
    for (const qint64 id : std::as_const(taskIds)) {
        const QByteArray items = demo.call("GET", QStringLiteral("/api/items/taskId/%1").arg(id));
        const QByteArray comments = demo.call("GET", QStringLiteral("/api/task/%1/comments").arg(id));
        const bool empty = QJsonDocument::fromJson(comments).object().value(QLatin1String("data")).toArray().isEmpty();
        if (itemSeeds < 6) {
            ok &= out.write(DecodeEntry::itemsAnswer, QStringLiteral("decoded-task-%1.json").arg(id), items);
            ++itemSeeds;
        }
        if ((empty && !emptyThread) || (!empty && commentSeeds < 6)) {
            ok &= out.write(DecodeEntry::commentsAnswer, QStringLiteral("decoded-task-%1.json").arg(id), comments);
            if (empty)
                emptyThread = true;
            else
                ++commentSeeds;
            dates += datesIn(comments);
        }
        dates += datesIn(items);
    }

    const QByteArray tasks = demo.tasksOf(1);
    const QJsonObject task = firstTaskOf(tasks);
    const qint64 taskId = task.value(QLatin1String("id")).toInteger();
    ok &= out.write(DecodeEntry::taskUpdateAnswer, QStringLiteral("decoded-acknowledged.json"),
                    demo.call("PUT", QStringLiteral("/api/task/%1").arg(taskId),
                              QJsonObject{{"task_status_id", 3}, {"updater_user_id", 1}}));
    const QJsonArray items
        = QJsonDocument::fromJson(demo.call("GET", QStringLiteral("/api/items/taskId/%1").arg(taskId)))
              .object()
              .value(QLatin1String("data"))
              .toArray();
    QJsonArray changes;
    for (const QJsonValue &item : items)
        changes.append(QJsonObject{{"id", item.toObject().value(QLatin1String("id"))},
                                   {"item_status_id", 2},
                                   {"text", "Cracked seal"},
                                   {"media_path", QJsonValue::Null}});
    ok &= out.write(DecodeEntry::itemsUpdateAnswer, QStringLiteral("decoded-reported.json"),
                    demo.call("PUT", QStringLiteral("/api/item/status"),
                              QJsonObject{{"task_id", taskId}, {"updater_user_id", 1}, {"items", changes}}));

    // The session data as the library stores it.
    const APIData session{QStringLiteral("127.0.0.1:8443"), demo.token(), seedNow};
    ok &= out.write(DecodeEntry::storedSession, QStringLiteral("decoded-session.json"), session.encode());
    ok &= out.write(DecodeEntry::storedSession, QStringLiteral("decoded-path-prefix.json"),
                    APIData{QStringLiteral("api.example.org/ravelin/v2"), QStringLiteral("t"), QDateTime()}.encode());

    // Dates as the deployment writes them, and the other zone forms of the server's format.
    dates.removeDuplicates();
    for (qsizetype i = 0; i < dates.size() && i < 8; ++i)
        ok &= out.write(DecodeEntry::serverDate, QStringLiteral("decoded-wire-%1.txt").arg(i), dates.at(i).toUtf8());
    const QString first = dates.value(0).left(23);
    const QList<std::pair<QString, QString>> zones{
        {"z", "Z"}, {"colon", "+05:30"}, {"hours", "-08"}, {"west", "-0330"}};
    for (const auto &[name, zone] : zones)
        ok &= out.write(DecodeEntry::serverDate, QStringLiteral("decoded-zone-%1.txt").arg(name),
                        (first + zone).toUtf8());
    ok &= out.write(DecodeEntry::serverDate, QStringLiteral("rejected-no-fraction.txt"), "2026-11-20T10:15:30+0000");
    ok &= out.write(DecodeEntry::serverDate, QStringLiteral("rejected-february-30.txt"), "2026-02-30T10:15:30.000Z");

    // Edits that must keep failing: ids outside their range stop the process,
    // broken shapes are rejected.
    const auto taskWith = [&task](const QString &key, const QJsonValue &value) {
        QJsonObject edited = task;
        edited.insert(key, value);
        return answerWith(QJsonArray{edited});
    };
    ok &= out.write(DecodeEntry::tasksAnswer, QStringLiteral("stopped-status-0.json"), taskWith("taskStatusId", 0));
    ok &= out.write(DecodeEntry::tasksAnswer, QStringLiteral("stopped-status-7.json"), taskWith("taskStatusId", 7));
    ok &= out.write(DecodeEntry::tasksAnswer, QStringLiteral("stopped-priority-5.json"), taskWith("priority", 5));
    ok &= out.write(DecodeEntry::tasksAnswer, QStringLiteral("stopped-count-overflow.json"),
                    taskWith("itemsCount",
                             QJsonArray{QJsonObject{{"itemStatusId", 1}, {"count", 9.2e18}},
                                        QJsonObject{{"itemStatusId", 3}, {"count", 9.2e18}}}));
    ok &= out.write(DecodeEntry::tasksAnswer, QStringLiteral("rejected-truncated.json"), tasks.left(tasks.size() / 2));
    ok &= out.write(DecodeEntry::tasksAnswer, QStringLiteral("rejected-nested.json"),
                    QByteArray(2000, '[') + QByteArray(2000, ']'));
    ok &= out.write(DecodeEntry::taskUpdateAnswer, QStringLiteral("stopped-priority-minus-1.json"),
                    QJsonDocument(QJsonObject{{"success", true},
                                              {"data",
                                               [&] {
                                                   QJsonObject edited = task;
                                                   edited.insert("priority", -1);
                                                   return edited;
                                               }()}})
                        .toJson(QJsonDocument::Compact));
    QJsonObject item = items.first().toObject();
    item.insert("itemStatusId", 5);
    ok &= out.write(DecodeEntry::itemsAnswer, QStringLiteral("stopped-item-status-5.json"),
                    answerWith(QJsonArray{item}));
    item.insert("itemStatusId", 1);
    item.insert("isAudit", false);
    ok &= out.write(DecodeEntry::itemsAnswer, QStringLiteral("rejected-audit-flag-as-boolean.json"),
                    answerWith(QJsonArray{item}));
    ok &= out.write(DecodeEntry::storedSession, QStringLiteral("rejected-date-string.json"),
                    R"({"baseURL":"h","tokenString":"t","timestamp":"2026-11-20T10:15:30.123Z"})");

    std::printf("Wrote %d seed files\n", out.count());
    return ok ? 0 : 1;
}
