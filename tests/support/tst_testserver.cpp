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

// A smoke test: every network test of the library runs against this server.
class TestTestServer : public QObject
{
    Q_OBJECT

private slots:
    void recordsRequestsAndAnswers();
};

void TestTestServer::recordsRequestsAndAnswers()
{
    TestServer server;
    QCOMPARE(server.baseUrl(), QStringLiteral("127.0.0.1:%1").arg(server.port()));
    server.on("PUT", "/api/task/7", CannedResponse{201, R"({"success":true})", "application/json"});

    QNetworkAccessManager manager;
    const auto send = [&](const QByteArray &method, const QString &pathAndQuery, const QByteArray &body = {}) {
        QNetworkRequest request(QUrl(QStringLiteral("https://") + server.baseUrl() + pathAndQuery));
        request.setRawHeader("X-Probe", "probe-value");
        std::unique_ptr<QNetworkReply> reply(manager.sendCustomRequest(request, method, body));
        QObject::connect(reply.get(), &QNetworkReply::sslErrors, reply.get(),
                         [raw = reply.get()] { raw->ignoreSslErrors(); });
        QSignalSpy finished(reply.get(), &QNetworkReply::finished);
        if (!reply->isFinished())
            finished.wait(15000);
        return std::pair(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), reply->readAll());
    };
    QCOMPARE(send("PUT", "/api/task/7?name=a%20b&sign=%2B1&name=second", R"({"task_status_id":3})"),
             std::pair(201, QByteArray(R"({"success":true})")));
    // Anything unmatched, here the same path with another method, gets 404 with an empty body.
    QCOMPARE(send("GET", "/api/task/7"), std::pair(404, QByteArray()));

    const QList<RecordedRequest> received = server.requests();
    QCOMPARE(received.size(), 2);
    const RecordedRequest &put = received.first();
    QCOMPARE(put.method, QByteArray("PUT"));
    QCOMPARE(put.path, QStringLiteral("/api/task/7"));
    QCOMPARE(put.query, (QList<std::pair<QString, QString>>{{"name", "a b"}, {"sign", "+1"}, {"name", "second"}}));
    QCOMPARE(put.body, QByteArray(R"({"task_status_id":3})"));
    QCOMPARE(put.header("x-probe"), QByteArray("probe-value"));
    QCOMPARE(received.at(1).method, QByteArray("GET"));
}

QTEST_GUILESS_MAIN(TestTestServer)
#include "tst_testserver.moc"
