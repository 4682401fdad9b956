#include "support/testserver.h"

#include <QTest>

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
    server.on("PUT", "/api/task/7", CannedResponse{201, R"({"success":true})", "application/json"});

    const auto send = [&](const QByteArray &method, const QString &pathAndQuery, const QByteArray &body = {}) {
        const auto answer = ravelin::test::exchange(server.baseUrl(), server.certificatePem(), method, pathAndQuery,
                                                    body, {{"X-Probe", "probe-value"}});
        return std::pair(answer.status, answer.body);
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
