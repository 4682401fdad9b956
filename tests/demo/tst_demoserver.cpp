#include "demo/server/demodata.h"
#include "demo/server/demoserver.h"

#include <QBuffer>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QSslError>
#include <QTest>
#include <QUrlQuery>

#include <memory>
#include <optional>

using ravelin::DemoClock;
using ravelin::DemoData;
using ravelin::DemoServer;

namespace {

constexpr int kReplyTimeoutMs = 15000;
const QDateTime kNow(QDate(2026, 3, 14), QTime(12, 0, 0), Qt::UTC);
// Wide enough for every seeded task.
const QString kWholeWindow = QStringLiteral("dateStart=0&dateEnd=4102444800000");

struct Reply
{
    bool finished = false;
    int status = 0;
    QByteArray body;
    QByteArray contentType;

    [[nodiscard]] QJsonObject json() const { return QJsonDocument::fromJson(body).object(); }
    [[nodiscard]] QJsonValue data() const { return json().value("data"); }
};

// Talks to the demo server over HTTPS and trusts exactly the server's own certificate.
class Client
{
public:
    explicit Client(const DemoServer &server)
        : m_base(QStringLiteral("https://") + server.baseUrl())
        , m_certificate(server.certificatePem())
    {
    }

    Reply send(const QByteArray &method, const QString &pathAndQuery, const QByteArray &body = {},
               std::optional<QByteArray> authorization = std::nullopt)
    {
        QNetworkRequest request(QUrl(m_base + pathAndQuery));
        request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json");
        const QByteArray header = authorization.value_or(m_token.isEmpty() ? QByteArray() : "Bearer " + m_token);
        if (!header.isEmpty())
            request.setRawHeader("Authorization", header);
        std::unique_ptr<QNetworkReply> reply(m_manager.sendCustomRequest(request, method, body));
        reply->ignoreSslErrors({QSslError(QSslError::SelfSignedCertificate, m_certificate)});
        QSignalSpy finished(reply.get(), &QNetworkReply::finished);
        Reply out;
        out.finished = reply->isFinished() || finished.wait(kReplyTimeoutMs);
        out.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        out.body = reply->readAll();
        out.contentType = reply->header(QNetworkRequest::ContentTypeHeader).toByteArray();
        return out;
    }

    Reply get(const QString &pathAndQuery) { return send("GET", pathAndQuery); }

    Reply sendJson(const QByteArray &method, const QString &path, const QJsonObject &body)
    {
        return send(method, path, QJsonDocument(body).toJson());
    }

    void setToken(const QByteArray &token) { m_token = token; }
    [[nodiscard]] QByteArray token() const { return m_token; }

private:
    QNetworkAccessManager m_manager;
    QString m_base;
    QSslCertificate m_certificate;
    QByteArray m_token;
};

QByteArray pngOf(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QJsonObject findById(const QJsonArray &array, qint64 id)
{
    for (const QJsonValue &value : array) {
        if (value.toObject().value("id").toInteger() == id)
            return value.toObject();
    }
    return {};
}

// Counts per item status 1..3 in a task's "itemsCount".
std::array<qint64, 3> countsOf(const QJsonObject &task)
{
    std::array<qint64, 3> counts{0, 0, 0};
    for (const QJsonValue &entry : task.value("itemsCount").toArray()) {
        const qint64 status = entry.toObject().value("itemStatusId").toInteger();
        if (status >= 1 && status <= 3)
            counts.at(static_cast<size_t>(status - 1)) += entry.toObject().value("count").toInteger();
    }
    return counts;
}

qint64 dateMs(const QJsonValue &value)
{
    return QDateTime::fromString(value.toString(), QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzzt")).toMSecsSinceEpoch();
}

} // namespace

class TestDemoServer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void signIn_data();
    void signIn();
    void apiRoutesNeedAnIssuedToken_data();
    void apiRoutesNeedAnIssuedToken();
    void regeneratedTokenBecomesValid();
    void settingsUseSnakeCaseKeys();
    void tasksBelongToTheAskingUser_data();
    void tasksBelongToTheAskingUser();
    void taskQueryFilters_data();
    void taskQueryFilters();
    void taskQueryOrdering_data();
    void taskQueryOrdering();
    void badTaskQueries_data();
    void badTaskQueries();
    void itemsCountMatchesItems();
    void statusChangeSticks();
    void statusChangeRejectsBadInput_data();
    void statusChangeRejectsBadInput();
    void itemUpdateSticksAndRecountsItems();
    void itemUpdateRejectsForeignItems();
    void postedCommentAppears_data();
    void postedCommentAppears();
    void uploadThenDownload();
    void uploadRejectsBadInput_data();
    void uploadRejectsBadInput();
    void seededPicturesHaveThumbnails();
    void unknownFilesAre404();
    void stateSurvivesRestart();
    void secondServerCannotTakeABoundPort();

private:
    [[nodiscard]] QJsonArray tasksOf(qint64 userId, const QString &query = kWholeWindow);
    [[nodiscard]] QJsonArray itemsOf(qint64 taskId);
    [[nodiscard]] QJsonArray commentsOf(qint64 taskId);

    std::unique_ptr<DemoServer> m_server;
    std::unique_ptr<Client> m_client;
};

void TestDemoServer::init()
{
    const DemoClock clock = [] { return kNow; };
    m_server = std::make_unique<DemoServer>(DemoData::seeded(kNow), clock);
    QVERIFY(m_server->start());
    m_client = std::make_unique<Client>(*m_server);
    const Reply signIn = m_client->send("POST", "/api/demo/sign-in", R"({"userId":1})");
    QVERIFY(signIn.finished);
    QCOMPARE(signIn.status, 200);
    m_client->setToken(signIn.data().toObject().value("token").toString().toUtf8());
}

void TestDemoServer::cleanup()
{
    m_client.reset();
    m_server.reset();
}

QJsonArray TestDemoServer::tasksOf(qint64 userId, const QString &query)
{
    const Reply reply = m_client->get(QStringLiteral("/api/tasks/assigned-user/%1?%2").arg(userId).arg(query));
    if (!reply.finished || reply.status != 200 || !reply.json().value("success").toBool())
        return {};
    return reply.data().toArray();
}

QJsonArray TestDemoServer::itemsOf(qint64 taskId)
{
    const Reply reply = m_client->get(QStringLiteral("/api/items/taskId/%1").arg(taskId));
    return reply.status == 200 ? reply.data().toArray() : QJsonArray();
}

QJsonArray TestDemoServer::commentsOf(qint64 taskId)
{
    const Reply reply = m_client->get(QStringLiteral("/api/task/%1/comments").arg(taskId));
    return reply.status == 200 ? reply.data().toArray() : QJsonArray();
}

void TestDemoServer::signIn_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");

    QTest::newRow("Ann") << QByteArray(R"({"userId":1})") << 200;
    QTest::newRow("Bo") << QByteArray(R"({"userId":2})") << 200;
    QTest::newRow("Chris") << QByteArray(R"({"userId":3})") << 200;
    QTest::newRow("dispatch desk cannot sign in") << QByteArray(R"({"userId":4})") << 401;
    QTest::newRow("unknown user") << QByteArray(R"({"userId":99})") << 401;
    QTest::newRow("no user id") << QByteArray(R"({"user":1})") << 400;
    QTest::newRow("not JSON") << QByteArray("userId=1") << 400;
}

void TestDemoServer::signIn()
{
    QFETCH(QByteArray, body);
    QFETCH(int, status);

    // No token is needed, and a stale one does not matter.
    const Reply reply = m_client->send("POST", "/api/demo/sign-in", body, QByteArray("Bearer stale"));
    QVERIFY(reply.finished);
    QCOMPARE(reply.status, status);
    QCOMPARE(reply.json().value("success").toBool(), status == 200);
    if (status != 200)
        return;

    const QJsonObject data = reply.data().toObject();
    const qint64 userId = QJsonDocument::fromJson(body).object().value("userId").toInteger();
    QCOMPARE(data.value("userId").toInteger(), userId);
    const QString token = data.value("token").toString();
    QVERIFY(token.size() >= 16);

    const QJsonArray assets = data.value("assets").toArray();
    QVERIFY(assets.size() >= 3);
    QStringList names;
    for (const QJsonValue &asset : assets) {
        QVERIFY(!asset.toObject().value("icon").toString().isEmpty());
        names.append(asset.toObject().value("name").toString());
    }
    QVERIFY(names.contains("Ann Rivers"));
    QVERIFY(names.contains("Bo Lindqvist"));
    QVERIFY(names.contains("Chris Okafor"));

    // The token opens the API.
    const Reply settings =
        m_client->send("GET", "/api/settings-constants", {}, QByteArray("Bearer ") + token.toUtf8());
    QCOMPARE(settings.status, 200);
}

void TestDemoServer::apiRoutesNeedAnIssuedToken_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("body");

    const QByteArray comment = R"({"text":"x","task_id":101,"user_id":1,"item_id":null,"date_created":0,"is_incident":false,"media_path":null})";
    QTest::newRow("settings") << QByteArray("GET") << QStringLiteral("/api/settings-constants") << QByteArray();
    QTest::newRow("regenerate") << QByteArray("GET") << QStringLiteral("/api/regenerate-token") << QByteArray();
    QTest::newRow("tasks") << QByteArray("GET") << QStringLiteral("/api/tasks/assigned-user/1?") + kWholeWindow
                           << QByteArray();
    QTest::newRow("items") << QByteArray("GET") << QStringLiteral("/api/items/taskId/101") << QByteArray();
    QTest::newRow("task status") << QByteArray("PUT") << QStringLiteral("/api/task/101")
                                 << QByteArray(R"({"task_status_id":4,"updater_user_id":1,"assigned_user_id":1})");
    QTest::newRow("item status") << QByteArray("PUT") << QStringLiteral("/api/item/status")
                                 << QByteArray(R"({"task_id":101,"updater_user_id":1,"items":[]})");
    QTest::newRow("comments") << QByteArray("GET") << QStringLiteral("/api/task/101/comments") << QByteArray();
    QTest::newRow("post comment") << QByteArray("POST") << QStringLiteral("/api/comment") << comment;
    QTest::newRow("upload") << QByteArray("POST") << QStringLiteral("/api/demo/upload?fileName=a.jpg")
                            << pngOf(QImage(4, 4, QImage::Format_RGB32));
    QTest::newRow("unknown API route") << QByteArray("GET") << QStringLiteral("/api/nothing") << QByteArray();
}

void TestDemoServer::apiRoutesNeedAnIssuedToken()
{
    QFETCH(QByteArray, method);
    QFETCH(QString, path);
    QFETCH(QByteArray, body);

    const QList<QByteArray> refused{"", "Bearer", "Bearer not-a-token", "Basic dXNlcjpwYXNz"};
    for (const QByteArray &authorization : refused) {
        const Reply reply = m_client->send(method, path, body, authorization);
        QVERIFY(reply.finished);
        QCOMPARE(reply.status, 401);
        QCOMPARE(reply.json().value("success").toBool(true), false);
    }
    // The same request with the signed-in user's token is not refused.
    const Reply accepted = m_client->send(method, path, body);
    QVERIFY(accepted.finished);
    QVERIFY2(accepted.status != 401, qPrintable(QString::number(accepted.status)));
}

void TestDemoServer::regeneratedTokenBecomesValid()
{
    const Reply reply = m_client->get("/api/regenerate-token");
    QCOMPARE(reply.status, 200);
    QVERIFY(reply.json().value("success").toBool());
    const QByteArray fresh = reply.data().toString().toUtf8();
    QVERIFY(!fresh.isEmpty());

    const Reply before = m_client->send("GET", "/api/settings-constants", {}, "Bearer " + fresh + "x");
    QCOMPARE(before.status, 401);
    m_client->setToken(fresh);
    QCOMPARE(m_client->get("/api/settings-constants").status, 200);

    const Reply again = m_client->get("/api/regenerate-token");
    QCOMPARE(again.status, 200);
    QVERIFY(again.data().toString().toUtf8() != fresh);
}

void TestDemoServer::settingsUseSnakeCaseKeys()
{
    const Reply reply = m_client->get("/api/settings-constants");
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.contentType, QByteArray("application/json"));
    const QJsonObject data = reply.data().toObject();
    QCOMPARE(data.keys(), (QStringList{"item_status", "task_category", "task_status"}));

    const auto names = [&data](const char *key) {
        QStringList out;
        qint64 expectedId = 1;
        for (const QJsonValue &value : data.value(key).toArray()) {
            if (value.toObject().value("id").toInteger() != expectedId++)
                return QStringList{"ids out of order"};
            out.append(value.toObject().value("name").toString());
        }
        return out;
    };
    QCOMPARE(names("task_status"),
             (QStringList{"Unassigned", "Assigned", "Acknowledged", "In Progress", "Blocked", "Completed"}));
    QCOMPARE(names("item_status"), (QStringList{"Completed", "Incidents", "Open", "All"}));
    QVERIFY(data.value("task_category").toArray().size() >= 3);
}

void TestDemoServer::tasksBelongToTheAskingUser_data()
{
    QTest::addColumn<qint64>("userId");
    QTest::newRow("Ann") << qint64(1);
    QTest::newRow("Bo") << qint64(2);
    QTest::newRow("Chris") << qint64(3);
}

void TestDemoServer::tasksBelongToTheAskingUser()
{
    QFETCH(qint64, userId);
    const QJsonArray tasks = tasksOf(userId);
    QVERIFY(tasks.size() >= 5);
    QSet<qint64> statuses;
    const QStringList keys{"id", "name", "description", "latitude", "longitude", "ownerId", "ownerAssetName",
                           "assignedUserId", "updaterUserId", "dateScheduled", "dateCreated", "taskStatusId",
                           "taskCategoryId", "priority", "itemsCount", "updated"};
    for (const QJsonValue &value : tasks) {
        const QJsonObject task = value.toObject();
        for (const QString &key : keys)
            QVERIFY2(task.contains(key), qPrintable(key));
        QCOMPARE(task.value("assignedUserId").toInteger(), userId);
        QCOMPARE(task.value("updated").toBool(true), false);
        QVERIFY(task.value("priority").toInteger() >= 0 && task.value("priority").toInteger() <= 3);
        QVERIFY(dateMs(task.value("dateCreated")) <= kNow.toMSecsSinceEpoch());
        QVERIFY(task.value("dateCreated").toString().endsWith("+0000"));
        statuses.insert(task.value("taskStatusId").toInteger());
    }
    QCOMPARE(statuses, (QSet<qint64>{1, 2, 3, 4, 5, 6}));
}

void TestDemoServer::taskQueryFilters_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("key");
    QTest::addColumn<qint64>("value");

    for (qint64 priority = 0; priority <= 3; ++priority)
        QTest::addRow("priority %lld", priority) << QStringLiteral("priority") << QStringLiteral("priority") << priority;
    for (qint64 category = 1; category <= 5; ++category)
        QTest::addRow("category %lld", category)
            << QStringLiteral("task_category_id") << QStringLiteral("taskCategoryId") << category;
    QTest::newRow("priority all") << QStringLiteral("priority") << QString() << qint64(4);
}

void TestDemoServer::taskQueryFilters()
{
    QFETCH(QString, filter);
    QFETCH(QString, key);
    QFETCH(qint64, value);

    const QJsonArray all = tasksOf(1);
    QVERIFY(!all.isEmpty());
    QSet<qint64> expected;
    for (const QJsonValue &task : all) {
        if (key.isEmpty() || task.toObject().value(key).toInteger() == value)
            expected.insert(task.toObject().value("id").toInteger());
    }

    const QJsonArray filtered = tasksOf(1, kWholeWindow + QStringLiteral("&%1=%2").arg(filter).arg(value));
    QSet<qint64> received;
    for (const QJsonValue &task : filtered)
        received.insert(task.toObject().value("id").toInteger());
    QCOMPARE(received, expected);
}

void TestDemoServer::taskQueryOrdering_data()
{
    QTest::addColumn<QString>("orderBy");
    QTest::addColumn<QString>("sortBy");

    for (const char *key : {"name", "priority", "date_created"}) {
        for (const char *direction : {"ASC", "DESC"})
            QTest::addRow("%s %s", key, direction) << QString::fromLatin1(key) << QString::fromLatin1(direction);
    }
}

void TestDemoServer::taskQueryOrdering()
{
    QFETCH(QString, orderBy);
    QFETCH(QString, sortBy);

    const QJsonArray tasks = tasksOf(2, kWholeWindow + QStringLiteral("&orderBy=%1&sortBy=%2").arg(orderBy, sortBy));
    QCOMPARE(tasks.size(), tasksOf(2).size());
    QVERIFY(tasks.size() >= 5);

    const bool ascending = sortBy == "ASC";
    bool sawDifference = false;
    for (qsizetype i = 1; i < tasks.size(); ++i) {
        const QJsonObject a = tasks.at(i - 1).toObject();
        const QJsonObject b = tasks.at(i).toObject();
        int order = 0;
        if (orderBy == "name")
            order = a.value("name").toString().compare(b.value("name").toString(), Qt::CaseInsensitive);
        else if (orderBy == "priority")
            order = int(a.value("priority").toInteger() - b.value("priority").toInteger());
        else
            order = dateMs(a.value("dateCreated")) < dateMs(b.value("dateCreated")) ? -1
                    : dateMs(a.value("dateCreated")) > dateMs(b.value("dateCreated")) ? 1 : 0;
        QVERIFY2(ascending ? order <= 0 : order >= 0, qPrintable(QStringLiteral("position %1").arg(i)));
        sawDifference = sawDifference || order != 0;
    }
    QVERIFY(sawDifference);
}

void TestDemoServer::badTaskQueries_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<int>("status");

    QTest::newRow("no dates") << QStringLiteral("orderBy=name") << 400;
    QTest::newRow("no end") << QStringLiteral("dateStart=0") << 400;
    QTest::newRow("date not a number") << QStringLiteral("dateStart=yesterday&dateEnd=1") << 400;
    QTest::newRow("priority 5") << kWholeWindow + QStringLiteral("&priority=5") << 400;
    QTest::newRow("priority -1") << kWholeWindow + QStringLiteral("&priority=-1") << 400;
    QTest::newRow("unknown order") << kWholeWindow + QStringLiteral("&orderBy=colour") << 400;
    QTest::newRow("unknown direction") << kWholeWindow + QStringLiteral("&sortBy=UP") << 400;
    QTest::newRow("empty window") << QStringLiteral("dateStart=10&dateEnd=5") << 200;
}

void TestDemoServer::badTaskQueries()
{
    QFETCH(QString, query);
    QFETCH(int, status);
    const Reply reply = m_client->get(QStringLiteral("/api/tasks/assigned-user/1?") + query);
    QCOMPARE(reply.status, status);
    QCOMPARE(reply.json().value("success").toBool(), status == 200);
    if (status == 200)
        QVERIFY(reply.data().toArray().isEmpty());
}

void TestDemoServer::itemsCountMatchesItems()
{
    const QJsonArray tasks = tasksOf(3);
    QVERIFY(!tasks.isEmpty());
    bool sawQrCode = false;
    bool sawNoQrCode = false;
    for (const QJsonValue &value : tasks) {
        const QJsonObject task = value.toObject();
        const QJsonArray items = itemsOf(task.value("id").toInteger());
        QVERIFY(!items.isEmpty());
        std::array<qint64, 3> counted{0, 0, 0};
        for (const QJsonValue &itemValue : items) {
            const QJsonObject item = itemValue.toObject();
            QCOMPARE(item.value("taskId").toInteger(), task.value("id").toInteger());
            QVERIFY(item.value("isAudit").isString());
            const qint64 status = item.value("itemStatusId").toInteger();
            QVERIFY(status >= 1 && status <= 3);
            ++counted.at(static_cast<size_t>(status - 1));
            sawQrCode = sawQrCode || item.contains("qrCode");
            sawNoQrCode = sawNoQrCode || !item.contains("qrCode");
        }
        QCOMPARE(countsOf(task), counted);
    }
    QVERIFY(sawQrCode);
    QVERIFY(sawNoQrCode);
}

void TestDemoServer::statusChangeSticks()
{
    const QJsonObject before = tasksOf(1).at(0).toObject();
    const qint64 taskId = before.value("id").toInteger();
    const qint64 newStatus = before.value("taskStatusId").toInteger() == 5 ? 4 : 5;

    const Reply reply = m_client->sendJson(
        "PUT", QStringLiteral("/api/task/%1").arg(taskId),
        {{"task_status_id", newStatus}, {"updater_user_id", 1}, {"assigned_user_id", 1}});
    QCOMPARE(reply.status, 200);
    const QJsonObject answered = reply.data().toObject();
    QCOMPARE(answered.value("id").toInteger(), taskId);
    QCOMPARE(answered.value("taskStatusId").toInteger(), newStatus);
    QCOMPARE(answered.value("updaterUserId").toInteger(), 1);
    QCOMPARE(dateMs(answered.value("dateUpdated")), kNow.toMSecsSinceEpoch());

    const QJsonObject after = findById(tasksOf(1), taskId);
    QCOMPARE(after.value("taskStatusId").toInteger(), newStatus);
    QCOMPARE(after.value("updaterUserId").toInteger(), 1);
    QCOMPARE(after.value("name"), before.value("name"));
    QCOMPARE(countsOf(after), countsOf(before));
}

void TestDemoServer::statusChangeRejectsBadInput_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");

    QTest::newRow("status 0") << QStringLiteral("/api/task/101")
                              << QByteArray(R"({"task_status_id":0,"updater_user_id":1})") << 400;
    QTest::newRow("status 7") << QStringLiteral("/api/task/101")
                              << QByteArray(R"({"task_status_id":7,"updater_user_id":1})") << 400;
    QTest::newRow("unknown updater") << QStringLiteral("/api/task/101")
                                     << QByteArray(R"({"task_status_id":4,"updater_user_id":42})") << 400;
    QTest::newRow("unknown task") << QStringLiteral("/api/task/99999")
                                  << QByteArray(R"({"task_status_id":4,"updater_user_id":1})") << 404;
    QTest::newRow("not JSON") << QStringLiteral("/api/task/101") << QByteArray("status=4") << 400;
}

void TestDemoServer::statusChangeRejectsBadInput()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, body);
    QFETCH(int, status);

    const QJsonObject before = findById(tasksOf(1), 101);
    QVERIFY(!before.isEmpty());
    const Reply reply = m_client->send("PUT", path, body);
    QCOMPARE(reply.status, status);
    QCOMPARE(findById(tasksOf(1), 101), before);
}

void TestDemoServer::itemUpdateSticksAndRecountsItems()
{
    // A task of Ann's with at least two open items.
    qint64 taskId = 0;
    QList<qint64> open;
    QJsonObject taskBefore;
    for (const QJsonValue &value : tasksOf(1)) {
        open.clear();
        for (const QJsonValue &item : itemsOf(value.toObject().value("id").toInteger())) {
            if (item.toObject().value("itemStatusId").toInteger() == 3)
                open.append(item.toObject().value("id").toInteger());
        }
        if (open.size() >= 2) {
            taskBefore = value.toObject();
            taskId = taskBefore.value("id").toInteger();
            break;
        }
    }
    QVERIFY(taskId != 0);
    const qsizetype commentsBefore = commentsOf(taskId).size();

    const QJsonArray payloadItems{
        QJsonObject{{"id", open.at(0)}, {"item_status_id", 2}, {"text", "Valve seized"}, {"media_path", "uploads/v.jpg"}},
        QJsonObject{{"id", open.at(1)}, {"item_status_id", 2}, {"text", "Valve seized"}, {"media_path", "uploads/v.jpg"}},
    };
    const Reply reply = m_client->sendJson(
        "PUT", "/api/item/status", {{"task_id", taskId}, {"updater_user_id", 1}, {"items", payloadItems}});
    QCOMPARE(reply.status, 200);
    QVERIFY(reply.json().value("success").toBool());
    const QJsonObject echo = reply.data().toObject();
    QCOMPARE(echo.value("task_id").toInteger(), taskId);
    QCOMPARE(echo.value("items").toArray().size(), 2);
    QCOMPARE(echo.value("items").toArray().at(0).toObject().value("item_status_id").toInteger(), 2);

    for (const QJsonValue &item : itemsOf(taskId)) {
        const QJsonObject object = item.toObject();
        if (object.value("id").toInteger() == open.at(0) || object.value("id").toInteger() == open.at(1)) {
            QCOMPARE(object.value("itemStatusId").toInteger(), 2);
            QCOMPARE(dateMs(object.value("dateUpdated")), kNow.toMSecsSinceEpoch());
        }
    }

    std::array<qint64, 3> expected = countsOf(taskBefore);
    expected[1] += 2;
    expected[2] -= 2;
    QCOMPARE(countsOf(findById(tasksOf(1), taskId)), expected);

    // The note and the picture became incident comments naming each item.
    const QJsonArray comments = commentsOf(taskId);
    QCOMPARE(comments.size(), commentsBefore + 2);
    QSet<qint64> named;
    for (qsizetype i = commentsBefore; i < comments.size(); ++i) {
        const QJsonObject comment = comments.at(i).toObject();
        QCOMPARE(comment.value("text").toString(), QStringLiteral("Valve seized"));
        QCOMPARE(comment.value("isIncident").toString(), QStringLiteral("1"));
        QCOMPARE(comment.value("userId").toInteger(), 1);
        QCOMPARE(comment.value("media").toArray().at(0).toObject().value("path").toString(),
                 QStringLiteral("uploads/v.jpg"));
        named.insert(comment.value("itemId").toInteger());
    }
    QCOMPARE(named, (QSet<qint64>{open.at(0), open.at(1)}));

    // Completing one of them again without a note adds no comment.
    const Reply plain = m_client->sendJson(
        "PUT", "/api/item/status",
        {{"task_id", taskId},
         {"updater_user_id", 1},
         {"items", QJsonArray{QJsonObject{{"id", open.at(0)}, {"item_status_id", 1}, {"text", QJsonValue::Null},
                                          {"media_path", QJsonValue::Null}}}}});
    QCOMPARE(plain.status, 200);
    QCOMPARE(commentsOf(taskId).size(), commentsBefore + 2);
    expected[0] += 1;
    expected[1] -= 1;
    QCOMPARE(countsOf(findById(tasksOf(1), taskId)), expected);
}

void TestDemoServer::itemUpdateRejectsForeignItems()
{
    const qint64 foreignItem = itemsOf(102).at(0).toObject().value("id").toInteger();
    const QJsonArray before = itemsOf(101);
    const Reply reply = m_client->sendJson(
        "PUT", "/api/item/status",
        {{"task_id", 101},
         {"updater_user_id", 1},
         {"items", QJsonArray{QJsonObject{{"id", before.at(0).toObject().value("id")}, {"item_status_id", 1}},
                              QJsonObject{{"id", foreignItem}, {"item_status_id", 1}}}}});
    QCOMPARE(reply.status, 400);
    QCOMPARE(itemsOf(101), before);
}

void TestDemoServer::postedCommentAppears_data()
{
    QTest::addColumn<QJsonValue>("text");
    QTest::addColumn<QJsonValue>("itemIndex");
    QTest::addColumn<bool>("incident");
    QTest::addColumn<QJsonValue>("mediaPath");

    QTest::newRow("plain text") << QJsonValue("Arrived on site") << QJsonValue(QJsonValue::Null) << false
                                << QJsonValue(QJsonValue::Null);
    QTest::newRow("incident on an item") << QJsonValue("Seal broken") << QJsonValue(0) << true
                                         << QJsonValue(QJsonValue::Null);
    QTest::newRow("picture, single space text") << QJsonValue(" ") << QJsonValue(QJsonValue::Null) << false
                                                << QJsonValue("uploads/1_1700000000000.0_photo_3.jpg");
    QTest::newRow("null text") << QJsonValue(QJsonValue::Null) << QJsonValue(1) << false
                               << QJsonValue(QJsonValue::Null);
}

void TestDemoServer::postedCommentAppears()
{
    QFETCH(QJsonValue, text);
    QFETCH(QJsonValue, itemIndex);
    QFETCH(bool, incident);
    QFETCH(QJsonValue, mediaPath);

    const qint64 taskId = 102;
    const QJsonArray items = itemsOf(taskId);
    const QJsonValue itemId =
        itemIndex.isNull() ? QJsonValue(QJsonValue::Null) : items.at(itemIndex.toInt()).toObject().value("id");
    const qsizetype before = commentsOf(taskId).size();
    const qint64 created = kNow.toMSecsSinceEpoch() + 1234;

    const Reply reply = m_client->sendJson("POST", "/api/comment",
                                           {{"text", text},
                                            {"task_id", taskId},
                                            {"user_id", 2},
                                            {"item_id", itemId},
                                            {"date_created", created},
                                            {"is_incident", incident},
                                            {"media_path", mediaPath}});
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.json(), (QJsonObject{{"success", true}}));

    const QJsonArray comments = commentsOf(taskId);
    QCOMPARE(comments.size(), before + 1);
    const QJsonObject comment = comments.last().toObject();
    QCOMPARE(comment.value("text"), text);
    QCOMPARE(comment.value("userId").toInteger(), 2);
    QCOMPARE(comment.value("itemId"), itemId);
    QCOMPARE(comment.value("isIncident").toString(), incident ? QStringLiteral("1") : QStringLiteral("0"));
    QCOMPARE(dateMs(comment.value("dateCreated")), created);
    QCOMPARE(comment.value("assetName").toString(), QStringLiteral("Bo Lindqvist"));
    QCOMPARE(comment.value("assetIcon").toString(), QStringLiteral("people_02"));
    const QJsonArray media = comment.value("media").toArray();
    QCOMPARE(media.size(), mediaPath.isNull() ? 0 : 1);
    if (!mediaPath.isNull())
        QCOMPARE(media.at(0).toObject().value("path"), mediaPath);
}

void TestDemoServer::uploadThenDownload()
{
    QImage picture(320, 240, QImage::Format_RGB32);
    picture.fill(QColor(30, 140, 200));
    const Reply upload = m_client->send("POST", "/api/demo/upload?fileName=site-photo.jpg", pngOf(picture));
    QCOMPARE(upload.status, 200);
    QCOMPARE(upload.data().toObject().value("path").toString(), QStringLiteral("uploads/site-photo.jpg"));

    const Reply full = m_client->get("/files/uploads/site-photo.jpg");
    QCOMPARE(full.status, 200);
    QCOMPARE(full.contentType, QByteArray("image/jpeg"));
    const QImage downloaded = QImage::fromData(full.body, "JPG");
    QCOMPARE(downloaded.size(), QSize(320, 240));
    const QColor centre = downloaded.pixelColor(160, 120);
    QVERIFY(qAbs(centre.red() - 30) < 12 && qAbs(centre.green() - 140) < 12 && qAbs(centre.blue() - 200) < 12);

    const Reply thumbnail = m_client->get("/files/thumbnails/thumb_uploads/site-photo.jpg");
    QCOMPARE(thumbnail.status, 200);
    QCOMPARE(thumbnail.contentType, QByteArray("image/jpeg"));
    QCOMPARE(QImage::fromData(thumbnail.body, "JPG").size(), QSize(160, 120));

    // A JPEG upload is kept byte for byte.
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(picture.scaled(64, 48).save(&buffer, "JPG"));
    QCOMPARE(m_client->send("POST", "/api/demo/upload?fileName=small.jpg", jpeg).status, 200);
    QCOMPARE(m_client->get("/files/uploads/small.jpg").body, jpeg);
}

void TestDemoServer::uploadRejectsBadInput_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QByteArray>("body");

    const QByteArray png = pngOf(QImage(8, 8, QImage::Format_RGB32));
    QTest::newRow("not a picture") << QStringLiteral("fileName=a.jpg") << QByteArray("hello");
    QTest::newRow("empty body") << QStringLiteral("fileName=a.jpg") << QByteArray();
    QTest::newRow("no file name") << QString() << png;
    QTest::newRow("path in the name") << QStringLiteral("fileName=..%2Fa.jpg") << png;
    QTest::newRow("folder in the name") << QStringLiteral("fileName=x%2Fa.jpg") << png;
}

void TestDemoServer::uploadRejectsBadInput()
{
    QFETCH(QString, query);
    QFETCH(QByteArray, body);
    const Reply reply = m_client->send("POST", QStringLiteral("/api/demo/upload?") + query, body);
    QCOMPARE(reply.status, 400);
    QCOMPARE(reply.json().value("success").toBool(true), false);
}

void TestDemoServer::seededPicturesHaveThumbnails()
{
    int pictures = 0;
    for (qint64 userId = 1; userId <= 3; ++userId) {
        for (const QJsonValue &task : tasksOf(userId)) {
            for (const QJsonValue &comment : commentsOf(task.toObject().value("id").toInteger())) {
                for (const QJsonValue &media : comment.toObject().value("media").toArray()) {
                    const QString path = media.toObject().value("path").toString();
                    const Reply full = m_client->get(QStringLiteral("/files/") + path);
                    QCOMPARE(full.status, 200);
                    QCOMPARE(QImage::fromData(full.body, "JPG").size(), QSize(800, 600));
                    const Reply thumbnail = m_client->get(QStringLiteral("/files/thumbnails/thumb_") + path);
                    QCOMPARE(thumbnail.status, 200);
                    QCOMPARE(QImage::fromData(thumbnail.body, "JPG").size(), QSize(160, 120));
                    ++pictures;
                }
            }
        }
    }
    QVERIFY(pictures >= 3);
}

void TestDemoServer::unknownFilesAre404()
{
    for (const QString &path : {QStringLiteral("/files/nothing.jpg"), QStringLiteral("/files/thumbnails/thumb_nothing.jpg"),
                                QStringLiteral("/files/uploads/")}) {
        const Reply reply = m_client->get(path);
        QVERIFY(reply.finished);
        QCOMPARE(reply.status, 404);
        QVERIFY(reply.body.isEmpty());
    }
}

void TestDemoServer::stateSurvivesRestart()
{
    const Reply changed = m_client->sendJson("PUT", "/api/task/101", {{"task_status_id", 6}, {"updater_user_id", 1}});
    QCOMPARE(changed.status, 200);
    const QByteArray tokenBefore = m_client->token();

    m_server->stop();
    QVERIFY(!m_server->isRunning());
    QCOMPARE(m_server->port(), quint16(0));
    QVERIFY(m_server->start());
    QVERIFY(m_server->isRunning());
    QVERIFY(m_server->port() != 0);
    QCOMPARE(m_server->baseUrl(), QStringLiteral("127.0.0.1:%1").arg(m_server->port()));

    // The token issued before the restart still opens the API, and the change stuck.
    m_client = std::make_unique<Client>(*m_server);
    QCOMPARE(m_client->get("/api/settings-constants").status, 401);
    m_client->setToken(tokenBefore);
    QCOMPARE(findById(tasksOf(1), 101).value("taskStatusId").toInteger(), 6);

    // Tokens issued in-process work the same way.
    const std::optional<QString> token = m_server->signIn(2);
    QVERIFY(token);
    QCOMPARE(m_server->signIn(4), std::nullopt);
    QCOMPARE(m_server->signIn(99), std::nullopt);
    m_client->setToken(token->toUtf8());
    QCOMPARE(m_client->get("/api/settings-constants").status, 200);
}

void TestDemoServer::secondServerCannotTakeABoundPort()
{
    DemoServer second(DemoData::constantsOnly(), [] { return kNow; });
    QVERIFY(!second.start(m_server->port()));
    QVERIFY(!second.isRunning());
    QCOMPARE(second.port(), quint16(0));
    QVERIFY(!m_server->start()); // already running

    // The running server still answers, and the second one can use a port of its own.
    QCOMPARE(m_client->get("/api/settings-constants").status, 200);
    QVERIFY(second.start());
    QVERIFY(second.port() != m_server->port());
}

QTEST_GUILESS_MAIN(TestDemoServer)
#include "tst_demoserver.moc"
