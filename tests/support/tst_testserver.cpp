#include "support/testserver.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using ravelin::test::CannedResponse;
using ravelin::test::RecordedRequest;
using ravelin::test::TestServer;

namespace {

constexpr int kReplyTimeoutMs = 15000;

struct Answer
{
    bool finished = false;
    int status = 0;
    QByteArray body;
    QByteArray contentType;
};

// One request over HTTPS; the server's self-signed certificate is accepted.
Answer send(QNetworkAccessManager &manager, const QByteArray &method, const QUrl &url,
            const QList<std::pair<QByteArray, QByteArray>> &headers = {}, const QByteArray &body = {})
{
    QNetworkRequest request(url);
    for (const auto &[name, value] : headers)
        request.setRawHeader(name, value);
    std::unique_ptr<QNetworkReply> reply(manager.sendCustomRequest(request, method, body));
    QObject::connect(reply.get(), &QNetworkReply::sslErrors, reply.get(),
                     [raw = reply.get()](const QList<QSslError> &) { raw->ignoreSslErrors(); });
    QSignalSpy finished(reply.get(), &QNetworkReply::finished);
    Answer answer;
    answer.finished = reply->isFinished() || finished.wait(kReplyTimeoutMs);
    answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    answer.body = reply->readAll();
    answer.contentType = reply->header(QNetworkRequest::ContentTypeHeader).toByteArray();
    return answer;
}

QUrl urlOf(const TestServer &server, const QString &pathAndQuery)
{
    return QUrl(QStringLiteral("https://") + server.baseUrl() + pathAndQuery);
}

using QueryItems = QList<std::pair<QString, QString>>;

} // namespace

class TestTestServer : public QObject
{
    Q_OBJECT

private slots:
    void listensOnLoopback();
    void recordsRequests_data();
    void recordsRequests();
    void recordsHeadersCaseInsensitively();
    void answersWithCannedResponse();
    void laterRegistrationReplacesEarlier();
    void handlerSeesTheRequest();
    void prefixRoutesComeAfterExactRoutes_data();
    void prefixRoutesComeAfterExactRoutes();
    void unmatchedRequestGets404();
    void filtersAndClearsRequests();
    void stopsWhileItsClientLives();

private:
    QNetworkAccessManager m_manager;
};

void TestTestServer::listensOnLoopback()
{
    TestServer first;
    TestServer second;
    QVERIFY(first.port() > 0);
    QVERIFY(second.port() > 0);
    QVERIFY(first.port() != second.port());
    QCOMPARE(first.baseUrl(), QStringLiteral("127.0.0.1:%1").arg(first.port()));
}

void TestTestServer::recordsRequests_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("pathAndQuery");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QueryItems>("query");

    QTest::newRow("GET with query")
        << QByteArray("GET") << QStringLiteral("/api/tasks/assigned-user/7?dateStart=100&dateEnd=200&orderBy=name")
        << QByteArray() << QStringLiteral("/api/tasks/assigned-user/7")
        << QueryItems{{"dateStart", "100"}, {"dateEnd", "200"}, {"orderBy", "name"}};
    QTest::newRow("encoded query, repeated name")
        << QByteArray("GET") << QStringLiteral("/files/x?name=a%20b&sign=%2B1&name=second")
        << QByteArray() << QStringLiteral("/files/x")
        << QueryItems{{"name", "a b"}, {"sign", "+1"}, {"name", "second"}};
    QTest::newRow("PUT with body")
        << QByteArray("PUT") << QStringLiteral("/api/task/7") << QByteArray(R"({"task_status_id":3})")
        << QStringLiteral("/api/task/7") << QueryItems{};
    QTest::newRow("POST with body")
        << QByteArray("POST") << QStringLiteral("/api/comment") << QByteArray(R"({"text":"hello"})")
        << QStringLiteral("/api/comment") << QueryItems{};
    QTest::newRow("DELETE") << QByteArray("DELETE") << QStringLiteral("/api/item/3") << QByteArray()
                            << QStringLiteral("/api/item/3") << QueryItems{};
    QTest::newRow("PATCH with body and query")
        << QByteArray("PATCH") << QStringLiteral("/api/item/3?force=1") << QByteArray("patch-body")
        << QStringLiteral("/api/item/3") << QueryItems{{"force", "1"}};
}

void TestTestServer::recordsRequests()
{
    QFETCH(QByteArray, method);
    QFETCH(QString, pathAndQuery);
    QFETCH(QByteArray, body);
    QFETCH(QString, path);
    QFETCH(QueryItems, query);

    TestServer server;
    const Answer answer = send(m_manager, method, urlOf(server, pathAndQuery),
                               {{"X-Probe", "probe-value"}, {"Content-Type", "application/json"}}, body);
    QVERIFY(answer.finished);

    const QList<RecordedRequest> received = server.requests();
    QCOMPARE(received.size(), 1);
    const RecordedRequest &request = received.first();
    QCOMPARE(request.method, method);
    QCOMPARE(request.path, path);
    QCOMPARE(request.query, query);
    QCOMPARE(request.body, body);
    QCOMPARE(request.header("X-Probe"), QByteArray("probe-value"));
    QCOMPARE(request.header("Content-Type"), QByteArray("application/json"));
    QCOMPARE(server.requestCount(), 1);
}

void TestTestServer::recordsHeadersCaseInsensitively()
{
    TestServer server;
    QVERIFY(send(m_manager, "GET", urlOf(server, "/h?x=1"), {{"Authorization", "Bearer abc"}}).finished);
    QCOMPARE(server.requestCount(), 1);
    const RecordedRequest request = server.requests().first();
    QVERIFY(request.hasHeader("authorization"));
    QVERIFY(request.hasHeader("AUTHORIZATION"));
    QCOMPARE(request.header("authorization"), QByteArray("Bearer abc"));
    QVERIFY(!request.hasHeader("X-Absent"));
    QVERIFY(request.header("X-Absent").isEmpty());
    QCOMPARE(request.queryValue("x"), std::optional<QString>("1"));
    QCOMPARE(request.queryValue("y"), std::nullopt);
}

void TestTestServer::answersWithCannedResponse()
{
    TestServer server;
    server.on("GET", "/api/settings-constants", CannedResponse{201, R"({"success":true})", "application/json"});
    server.on("GET", "/files/a.jpg", CannedResponse{200, QByteArray("\xff\xd8\x00\x01", 4), "image/jpeg"});

    const Answer json = send(m_manager, "GET", urlOf(server, "/api/settings-constants"));
    QVERIFY(json.finished);
    QCOMPARE(json.status, 201);
    QCOMPARE(json.body, QByteArray(R"({"success":true})"));
    QCOMPARE(json.contentType, QByteArray("application/json"));

    const Answer picture = send(m_manager, "GET", urlOf(server, "/files/a.jpg"));
    QVERIFY(picture.finished);
    QCOMPARE(picture.status, 200);
    QCOMPARE(picture.body, QByteArray("\xff\xd8\x00\x01", 4));
    QCOMPARE(picture.contentType, QByteArray("image/jpeg"));

    // Same path, another method: not matched.
    const Answer other = send(m_manager, "PUT", urlOf(server, "/files/a.jpg"), {}, "x");
    QVERIFY(other.finished);
    QCOMPARE(other.status, 404);
}

void TestTestServer::laterRegistrationReplacesEarlier()
{
    TestServer server;
    server.on("GET", "/x", CannedResponse{200, "first"});
    server.on("GET", "/x", CannedResponse{202, "second"});
    const Answer answer = send(m_manager, "GET", urlOf(server, "/x"));
    QVERIFY(answer.finished);
    QCOMPARE(answer.status, 202);
    QCOMPARE(answer.body, QByteArray("second"));
}

void TestTestServer::handlerSeesTheRequest()
{
    TestServer server;
    server.on("POST", "/echo", [](const RecordedRequest &request) {
        return CannedResponse{200, request.body + "|" + request.queryValue("n").value_or("-").toUtf8(),
                              "text/plain"};
    });
    const Answer answer = send(m_manager, "POST", urlOf(server, "/echo?n=5"), {}, "payload");
    QVERIFY(answer.finished);
    QCOMPARE(answer.body, QByteArray("payload|5"));
    QCOMPARE(answer.contentType, QByteArray("text/plain"));
}

void TestTestServer::prefixRoutesComeAfterExactRoutes_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("exact wins") << QStringLiteral("/files/exact.jpg") << QByteArray("exact");
    QTest::newRow("short prefix") << QStringLiteral("/files/a.jpg") << QByteArray("files:/files/a.jpg");
    QTest::newRow("longest prefix")
        << QStringLiteral("/files/thumbnails/thumb_a.jpg") << QByteArray("thumbs:/files/thumbnails/thumb_a.jpg");
    QTest::newRow("no prefix") << QStringLiteral("/other") << QByteArray();
}

void TestTestServer::prefixRoutesComeAfterExactRoutes()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, expected);

    TestServer server;
    const auto answerWith = [](const QByteArray &label) {
        return [label](const RecordedRequest &request) {
            return CannedResponse{200, label + ":" + request.path.toUtf8(), "text/plain"};
        };
    };
    server.onPrefix("GET", "/files/thumbnails/", answerWith("thumbs"));
    server.onPrefix("GET", "/files/", answerWith("old"));
    server.onPrefix("GET", "/files/", answerWith("files"));
    server.on("GET", "/files/exact.jpg", CannedResponse{200, "exact", "text/plain"});

    const Answer answer = send(m_manager, "GET", urlOf(server, path));
    QVERIFY(answer.finished);
    QCOMPARE(answer.status, expected.isEmpty() ? 404 : 200);
    QCOMPARE(answer.body, expected);
}

void TestTestServer::unmatchedRequestGets404()
{
    TestServer server;
    server.on("GET", "/known", CannedResponse{200, "known"});
    const Answer answer = send(m_manager, "GET", urlOf(server, "/unknown"));
    QVERIFY(answer.finished);
    QCOMPARE(answer.status, 404);
    QVERIFY(answer.body.isEmpty());
    QCOMPARE(server.requestCount(), 1);
    QCOMPARE(server.requests().first().path, QStringLiteral("/unknown"));
}

void TestTestServer::filtersAndClearsRequests()
{
    TestServer server;
    QVERIFY(send(m_manager, "GET", urlOf(server, "/a")).finished);
    QVERIFY(send(m_manager, "GET", urlOf(server, "/b?q=1")).finished);
    QVERIFY(send(m_manager, "PUT", urlOf(server, "/a"), {}, "2").finished);

    QCOMPARE(server.requestCount(), 3);
    const QList<RecordedRequest> onA = server.requests("/a");
    QCOMPARE(onA.size(), 2);
    QCOMPARE(onA.at(0).method, QByteArray("GET"));
    QCOMPARE(onA.at(1).method, QByteArray("PUT"));
    QCOMPARE(server.requests("/b").size(), 1);
    QVERIFY(server.requests("/c").isEmpty());

    server.clearRequests();
    QCOMPARE(server.requestCount(), 0);
    QVERIFY(server.requests().isEmpty());
    QVERIFY(send(m_manager, "GET", urlOf(server, "/c")).finished);
    QCOMPARE(server.requests().size(), 1);
    QCOMPARE(server.requests().first().path, QStringLiteral("/c"));
}

void TestTestServer::stopsWhileItsClientLives()
{
    // The client lives on after the server; the server must stop when it goes
    // (a hang here ends in the test time-out) and refuse connections afterwards.
    QNetworkAccessManager manager;
    auto server = std::make_unique<TestServer>();
    server->on("GET", "/keep", CannedResponse{200, "alive"});
    const QUrl url = urlOf(*server, "/keep");
    const Answer answer = send(manager, "GET", url);
    QVERIFY(answer.finished);
    QCOMPARE(answer.body, QByteArray("alive"));

    server.reset();
    const Answer afterStop = send(manager, "GET", url);
    QVERIFY(afterStop.finished);
    QCOMPARE(afterStop.status, 0);
    QVERIFY(afterStop.body.isEmpty());
}

QTEST_GUILESS_MAIN(TestTestServer)
#include "tst_testserver.moc"
