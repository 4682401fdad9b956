#include "demo/server/demodata.h"
#include "demo/server/demoserver.h"
#include "support/testserver.h"

#include <QBuffer>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <optional>

using ravelin::DemoData;
using ravelin::DemoServer;

namespace {

const QDateTime kNow(QDate(2026, 3, 14), QTime(12, 0, 0), Qt::UTC);
// Wide enough for every seeded task.
const QString kWholeWindow = QStringLiteral("dateStart=0&dateEnd=4102444800000");

struct Reply : ravelin::test::Exchange
{
    [[nodiscard]] QJsonObject json() const { return QJsonDocument::fromJson(body).object(); }
    [[nodiscard]] QJsonValue data() const { return json().value("data"); }
};

QByteArray encoded(const QImage &image, const char *format = "PNG")
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QByteArray encoded(const QJsonObject &object)
{
    return QJsonDocument(object).toJson();
}

QJsonObject findById(const QJsonArray &array, qint64 id)
{
    for (const QJsonValue &value : array) {
        if (value["id"].toInteger() == id)
            return value.toObject();
    }
    return {};
}

// Counts per item status 1..3 in a task's "itemsCount".
std::array<qint64, 3> countsOf(const QJsonValue &task)
{
    std::array<qint64, 3> counts{0, 0, 0};
    for (const QJsonValue &entry : task["itemsCount"].toArray()) {
        const qint64 status = entry["itemStatusId"].toInteger();
        if (status >= 1 && status <= 3)
            counts.at(static_cast<size_t>(status - 1)) += entry["count"].toInteger();
    }
    return counts;
}

} // namespace

class TestDemoServer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_server.reset(); }

    void tokensAndStateSurviveRestart();
    void rejectedRequestsChangeNothing_data();
    void rejectedRequestsChangeNothing();
    void tasksOfTheAskingUser();
    void taskQueries_data();
    void taskQueries();
    void itemUpdateSticksAndRecountsItems();
    void pictures();

private:
    // Over HTTPS, trusting exactly the server's certificate; with the signed-in user's token unless told otherwise.
    Reply send(const QByteArray &method, const QString &pathAndQuery, const QByteArray &body = {},
               const std::optional<QByteArray> &authorization = std::nullopt);
    Reply get(const QString &pathAndQuery) { return send("GET", pathAndQuery); }
    // The "data" array of a successful answer, else empty.
    [[nodiscard]] QJsonArray dataOf(const QString &pathAndQuery);
    [[nodiscard]] QJsonArray tasksOf(qint64 userId, const QString &query = kWholeWindow)
    {
        return dataOf(QStringLiteral("/api/tasks/assigned-user/%1?%2").arg(userId).arg(query));
    }
    [[nodiscard]] QJsonArray itemsOf(qint64 taskId)
    {
        return dataOf(QStringLiteral("/api/items/taskId/%1").arg(taskId));
    }
    [[nodiscard]] QJsonArray commentsOf(qint64 taskId)
    {
        return dataOf(QStringLiteral("/api/task/%1/comments").arg(taskId));
    }

    std::unique_ptr<DemoServer> m_server;
    QByteArray m_token;
};

void TestDemoServer::init()
{
    m_server = std::make_unique<DemoServer>(DemoData::seeded(kNow), [] { return kNow; });
    QVERIFY(m_server->start());
    m_token = m_server->signIn(1).value_or(QString()).toUtf8();
}

Reply TestDemoServer::send(const QByteArray &method, const QString &pathAndQuery, const QByteArray &body,
                           const std::optional<QByteArray> &authorization)
{
    QList<std::pair<QByteArray, QByteArray>> headers{{"Content-Type", "application/json"}};
    if (const QByteArray header = authorization.value_or("Bearer " + m_token); !header.isEmpty())
        headers.append({"Authorization", header});
    return {
        ravelin::test::exchange(m_server->baseUrl(), m_server->certificatePem(), method, pathAndQuery, body, headers)};
}

QJsonArray TestDemoServer::dataOf(const QString &pathAndQuery)
{
    const Reply reply = get(pathAndQuery);
    return reply.status == 200 && reply.json().value("success").toBool() ? reply.data().toArray() : QJsonArray();
}

void TestDemoServer::tokensAndStateSurviveRestart()
{
    // Signing in over HTTP and the token it hands out opening the API: tst_demohost, whose signIn() waits for the
    // worker's tasks.
    // A stale token does not stand in the way of signing in.
    QCOMPARE(send("POST", "/api/demo/sign-in", R"({"userId":2})", QByteArray("Bearer stale")).status, 200);

    // Only field workers get a token; a regenerated one opens the API, a changed one does not.
    QVERIFY(m_server->signIn(3));
    QCOMPARE(m_server->signIn(4), std::nullopt);
    QCOMPARE(m_server->signIn(99), std::nullopt);
    const QByteArray regenerated = get("/api/regenerate-token").data().toString().toUtf8();
    QVERIFY(!regenerated.isEmpty() && regenerated != m_token);
    QCOMPARE(send("GET", "/api/settings-constants", {}, "Bearer " + regenerated).status, 200);
    QCOMPARE(send("GET", "/api/settings-constants", {}, "Bearer " + regenerated + "x").status, 401);

    // A restart keeps the tokens issued and what changed.
    QCOMPARE(send("PUT", "/api/task/101", R"({"task_status_id":6,"updater_user_id":1})").status, 200);
    m_server->stop();
    QVERIFY(!m_server->isRunning());
    QCOMPARE(m_server->port(), quint16(0));
    QVERIFY(m_server->start());
    QVERIFY(m_server->isRunning());
    QCOMPARE(m_server->baseUrl(), QStringLiteral("127.0.0.1:%1").arg(m_server->port()));
    QCOMPARE(send("GET", "/api/settings-constants", {}, "Bearer " + regenerated).status, 200);
    QCOMPARE(findById(tasksOf(1), 101).value("taskStatusId").toInteger(), 6);
}

void TestDemoServer::rejectedRequestsChangeNothing_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");
    QTest::addColumn<std::optional<QByteArray>>("authorization"); // none: the signed-in user's token

    const auto row = [](const char *name, const char *method, const QString &path, const QByteArray &body, int status,
                        std::optional<QByteArray> authorization = std::nullopt) {
        QTest::newRow(name) << QByteArray(method) << path << body << status << authorization;
    };
    // Every "/api/" route but signing in needs a token the server issued.
    row("no token", "GET", "/api/settings-constants", {}, 401, QByteArray());
    row("unknown token", "POST", "/api/demo/upload?fileName=a.jpg", encoded(QImage(4, 4, QImage::Format_RGB32)), 401,
        "Bearer not-a-token");

    const QString tasks = QStringLiteral("/api/tasks/assigned-user/1?");
    row("tasks: no end", "GET", tasks + "dateStart=0", {}, 400);
    row("tasks: priority 5", "GET", tasks + kWholeWindow + "&priority=5", {}, 400);

    row("task status 7", "PUT", "/api/task/101", R"({"task_status_id":7,"updater_user_id":1})", 400);
    row("task status: unknown task", "PUT", "/api/task/99999", R"({"task_status_id":4,"updater_user_id":1})", 404);

    // An item of task 101 and one of task 102: none of them changes.
    const DemoData data = DemoData::seeded(kNow);
    const QJsonArray items{QJsonObject{{"id", data.itemsOf(101).first().id}, {"item_status_id", 1}},
                           QJsonObject{{"id", data.itemsOf(102).first().id}, {"item_status_id", 1}}};
    row("items: one of another task", "PUT", "/api/item/status",
        encoded(QJsonObject{{"task_id", 101}, {"updater_user_id", 1}, {"items", items}}), 400);

    const QByteArray png = encoded(QImage(8, 8, QImage::Format_RGB32));
    row("upload: path in the name", "POST", "/api/demo/upload?fileName=..%2Fa.jpg", png, 400);

    row("unknown API route", "GET", "/api/nothing", {}, 404);
    row("unknown file", "GET", "/files/nothing.jpg", {}, 404);
}

void TestDemoServer::rejectedRequestsChangeNothing()
{
    QFETCH(QByteArray, method);
    QFETCH(QString, path);
    QFETCH(QByteArray, body);
    QFETCH(int, status);
    QFETCH(std::optional<QByteArray>, authorization);

    const auto state = [this] { return QJsonArray{tasksOf(1), itemsOf(101), commentsOf(101)}; };
    const QJsonArray before = state();
    QVERIFY(!before.at(0).toArray().isEmpty());
    const Reply reply = send(method, path, body, authorization);
    QCOMPARE(reply.status, status);
    if (path.startsWith("/files/")) {
        QVERIFY(reply.body.isEmpty());
    } else {
        QCOMPARE(reply.json().value("success").toBool(true), false);
        QVERIFY(!reply.json().value("message").toString().isEmpty());
    }
    QCOMPARE(state(), before);
}

void TestDemoServer::tasksOfTheAskingUser()
{
    const qint64 userId = 3;
    QSet<qint64> expected;
    for (const ravelin::DemoTask &task : DemoData::seeded(kNow).tasks) {
        if (task.assignedUserId == userId)
            expected.insert(task.id);
    }
    QVERIFY(expected.size() >= 5);
    QSet<qint64> received;
    for (const QJsonValue &task : tasksOf(userId)) {
        received.insert(task["id"].toInteger());
        // "itemsCount" agrees with the task's items.
        std::array<qint64, 3> counted{0, 0, 0};
        for (const QJsonValue &item : itemsOf(task["id"].toInteger()))
            ++counted.at(static_cast<size_t>(item["itemStatusId"].toInteger() - 1));
        QCOMPARE(countsOf(task), counted);
    }
    QCOMPARE(received, expected);

    // A window that holds nothing is an empty answer, not an error.
    const Reply empty = get("/api/tasks/assigned-user/3?dateStart=10&dateEnd=5");
    QCOMPARE(empty.status, 200);
    QCOMPARE(empty.json(), (QJsonObject{{"success", true}, {"data", QJsonArray()}}));
}

void TestDemoServer::taskQueries_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("filterKey"); // empty: every task of the user
    QTest::addColumn<qint64>("filterValue");
    QTest::addColumn<QString>("orderBy");
    QTest::addColumn<QString>("sortBy");

    const auto row = [](const char *name, const QString &query, const QString &key, qint64 value,
                        const QString &orderBy = "date_created", const QString &sortBy = "DESC") {
        QTest::newRow(name) << query << key << value << orderBy << sortBy;
    };
    row("newest first by default", QString(), QString(), 0);
    row("priority 0", "&priority=0", "priority", 0);
    row("priority all", "&priority=4", QString(), 0);
    row("category 5", "&task_category_id=5", "taskCategoryId", 5);
    row("name ASC", "&orderBy=name&sortBy=ASC", QString(), 0, "name", "ASC");
    row("priority DESC", "&orderBy=priority&sortBy=DESC", QString(), 0, "priority", "DESC");
}

void TestDemoServer::taskQueries()
{
    QFETCH(QString, query);
    QFETCH(QString, filterKey);
    QFETCH(qint64, filterValue);
    QFETCH(QString, orderBy);
    QFETCH(QString, sortBy);

    QSet<qint64> expected;
    for (const QJsonValue &task : tasksOf(2)) {
        if (filterKey.isEmpty() || task[filterKey].toInteger() == filterValue)
            expected.insert(task["id"].toInteger());
    }
    QVERIFY(!expected.isEmpty());
    const QJsonArray tasks = tasksOf(2, kWholeWindow + query);
    QSet<qint64> received;
    for (const QJsonValue &task : tasks)
        received.insert(task["id"].toInteger());
    QCOMPARE(received, expected);

    bool sawDifference = false;
    for (qsizetype i = 1; i < tasks.size(); ++i) {
        const QJsonValue a = tasks.at(i - 1);
        const QJsonValue b = tasks.at(i);
        // Dates in the server's form, all in UTC, sort as text.
        const int order = orderBy == "name" ? a["name"].toString().compare(b["name"].toString(), Qt::CaseInsensitive)
            : orderBy == "priority"         ? int(a["priority"].toInteger() - b["priority"].toInteger())
                                            : a["dateCreated"].toString().compare(b["dateCreated"].toString());
        QVERIFY2(sortBy == "ASC" ? order <= 0 : order >= 0, qPrintable(QStringLiteral("position %1").arg(i)));
        sawDifference = sawDifference || order != 0;
    }
    QVERIFY(sawDifference || !filterKey.isEmpty());
}

void TestDemoServer::itemUpdateSticksAndRecountsItems()
{
    // A task of Ann's with at least two open items.
    const DemoData data = DemoData::seeded(kNow);
    const auto task = std::find_if(data.tasks.cbegin(), data.tasks.cend(), [&data](const ravelin::DemoTask &t) {
        return t.assignedUserId == 1 && data.itemCounts(t.id)[2] >= 2;
    });
    QVERIFY(task != data.tasks.cend());
    QList<qint64> open;
    for (const ravelin::DemoItem &item : data.itemsOf(task->id)) {
        if (item.itemStatusId == 3 && open.size() < 2)
            open.append(item.id);
    }
    const QJsonObject taskBefore = findById(tasksOf(1), task->id);
    const qsizetype commentsBefore = commentsOf(task->id).size();
    const auto update = [&](int status, const QJsonValue &text, const QJsonValue &mediaPath, const QList<qint64> &ids) {
        QJsonArray items;
        for (qint64 id : ids)
            items.append(
                QJsonObject{{"id", id}, {"item_status_id", status}, {"text", text}, {"media_path", mediaPath}});
        return send("PUT", "/api/item/status",
                    encoded(QJsonObject{{"task_id", task->id}, {"updater_user_id", 1}, {"items", items}}));
    };

    QCOMPARE(update(2, "Valve seized", "uploads/v.jpg", open).status, 200);
    for (qint64 id : open)
        QCOMPARE(findById(itemsOf(task->id), id).value("itemStatusId").toInteger(), 2);
    std::array<qint64, 3> expected = countsOf(taskBefore);
    expected[1] += 2;
    expected[2] -= 2;
    QCOMPARE(countsOf(findById(tasksOf(1), task->id)), expected);

    // The note and the picture became incident comments naming each item.
    const QJsonArray comments = commentsOf(task->id);
    QCOMPARE(comments.size(), commentsBefore + 2);
    for (qsizetype i = 0; i < 2; ++i) {
        const QJsonValue comment = comments.at(commentsBefore + i);
        QCOMPARE(comment["isIncident"].toString(), QStringLiteral("1"));
        QCOMPARE(comment["media"][0]["path"].toString(), QStringLiteral("uploads/v.jpg"));
        QCOMPARE(comment["itemId"].toInteger(), open.at(i));
    }

    // Completing one of them again without a note adds no comment.
    QCOMPARE(update(1, QJsonValue::Null, QJsonValue::Null, {open.at(0)}).status, 200);
    QCOMPARE(commentsOf(task->id).size(), commentsBefore + 2);
    expected[0] += 1;
    expected[1] -= 1;
    QCOMPARE(countsOf(findById(tasksOf(1), task->id)), expected);
}

void TestDemoServer::pictures()
{
    // An upload in another format is stored as JPEG and gets a thumbnail; a JPEG upload is kept byte for byte.
    QImage picture(320, 240, QImage::Format_RGB32);
    picture.fill(QColor(30, 140, 200));
    const Reply upload = send("POST", "/api/demo/upload?fileName=site-photo.jpg", encoded(picture));
    QCOMPARE(upload.data()["path"].toString(), QStringLiteral("uploads/site-photo.jpg"));
    const Reply full = get("/files/uploads/site-photo.jpg");
    QCOMPARE(full.contentType, QByteArray("image/jpeg"));
    QCOMPARE(QImage::fromData(full.body, "JPG").size(), picture.size());
    QVERIFY(!QImage::fromData(get("/files/thumbnails/thumb_uploads/site-photo.jpg").body, "JPG").isNull());

    const QByteArray jpeg = encoded(picture.scaled(64, 48), "JPG");
    QCOMPARE(send("POST", "/api/demo/upload?fileName=small.jpg", jpeg).status, 200);
    QCOMPARE(get("/files/uploads/small.jpg").body, jpeg);
}

QTEST_GUILESS_MAIN(TestDemoServer)
#include "tst_demoserver.moc"
