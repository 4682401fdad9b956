#include "support/apiharness.h"
#include "support/faultserver.h"
#include "support/logcapture.h"
#include "support/testpicker.h"

#include <QTest>
#include <QThread>

using namespace ravelin;
using namespace std::chrono;
using test::FaultServer;
using test::settingsBody;

namespace {

enum class Call { request, regeneration, download };

// Only a stalled answer is meant to run into the time-out; every other answer,
// dripped ones too, gets time enough on a slow machine.
constexpr auto stallTimeout = milliseconds(300);
constexpr auto ampleTimeout = seconds(20);

const QString settingsPath = QStringLiteral("/api/settings-constants");
const QString tokenPath = QStringLiteral("/api/regenerate-token");
const QString picturePath = QStringLiteral("/files/p/a.png");

QByteArray largeSettingsBody()
{
    QByteArray categories;
    for (int i = 1; i <= 200000; ++i)
        categories += (i > 1 ? "," : "") + QByteArray(R"({"id":)") + QByteArray::number(i) + R"(,"name":"Category )"
            + QByteArray::number(i) + "\"}";
    return R"({"success":true,"data":{"itemStatus":[],"taskStatus":[],"taskCategory":[)" + categories + "]}}";
}

FaultServer::Script fault(FaultServer::Behaviour behaviour, int status, QByteArray body,
                          QByteArray contentType = "application/json")
{
    return FaultServer::Script{behaviour, status, std::move(body), std::move(contentType), {}};
}

FaultServer::Script redirectTo(const QByteArray &location)
{
    return FaultServer::Script{FaultServer::Behaviour::answer, 302, {}, "text/plain", {{"Location", location}}};
}

} // namespace

Q_DECLARE_METATYPE(Call)
Q_DECLARE_METATYPE(ravelin::test::FaultServer::Script)

// Every request against a misbehaving server completes exactly once, on the main
// thread, with the error kind of the fault. Transport errors are checked before
// the HTTP status, wherever a reply is mapped: the call itself, the token
// regeneration before it, and a picture download.
class TestNetworkFaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void faultyAnswer_data();
    void faultyAnswer();

private:
    std::unique_ptr<FaultServer> m_server;
};

void TestNetworkFaults::initTestCase()
{
    m_server = std::make_unique<FaultServer>();
    QVERIFY(m_server->listen());
}

void TestNetworkFaults::faultyAnswer_data()
{
    using B = FaultServer::Behaviour;
    QTest::addColumn<Call>("call");
    QTest::addColumn<FaultServer::Script>("script");
    QTest::addColumn<QString>("outcome");
    QTest::addColumn<bool>("transportLine"); // "ERROR FOR REQUEST " logged

    const QByteArray elsewhere = "https://" + m_server->baseUrl().toUtf8() + "/api/elsewhere";
    const QByteArray loop = "https://" + m_server->baseUrl().toUtf8() + settingsPath.toUtf8();
    const QByteArray plainHttp = "http://" + m_server->baseUrl().toUtf8() + "/api/elsewhere";
    const QByteArray nested = QByteArray(100000, '[') + QByteArray(100000, ']');
    const QByteArray token = R"({"success":true,"data":"fresh"})";

    QTest::newRow("2xx closed mid-body") << Call::request << fault(B::closeMidBody, 200, settingsBody)
                                         << "apiRouteError" << true;
    QTest::newRow("2xx stalled mid-body past the time-out")
        << Call::request << fault(B::stallMidBody, 200, settingsBody) << "apiRouteError" << true;
    QTest::newRow("stalled before the headers")
        << Call::request << fault(B::stallBeforeHeaders, 200, settingsBody) << "apiRouteError" << true;
    QTest::newRow("reset before the headers")
        << Call::request << fault(B::resetBeforeHeaders, 200, settingsBody) << "apiRouteError" << true;
    QTest::newRow("dripped one byte at a time")
        << Call::request << fault(B::drip, 200, settingsBody) << "success" << false;
    QTest::newRow("deeply nested 200") << Call::request << fault(B::answer, 200, nested) << "invalidParsing" << false;
    QTest::newRow("very large 200") << Call::request << fault(B::answer, 200, largeSettingsBody()) << "success"
                                    << false;
    QTest::newRow("JSON as text/html") << Call::request << fault(B::answer, 200, settingsBody, "text/html") << "success"
                                       << false;
    QTest::newRow("redirect to the answer") << Call::request << redirectTo(elsewhere) << "success" << false;
    QTest::newRow("redirect loop") << Call::request << redirectTo(loop) << "apiRouteError" << true;
    QTest::newRow("redirect to plain http") << Call::request << redirectTo(plainHttp) << "apiRouteError" << true;

    QTest::newRow("token closed mid-body")
        << Call::regeneration << fault(B::closeMidBody, 200, token) << "apiRouteError" << true;
    QTest::newRow("token garbage") << Call::regeneration << fault(B::answer, 200, "{\"data\":") << "invalidParsing"
                                   << false;
    QTest::newRow("token dripped") << Call::regeneration << fault(B::drip, 200, token) << "success" << false;

    QTest::newRow("picture closed mid-body")
        << Call::download << fault(B::closeMidBody, 200, test::jpeg(), "image/jpeg") << "transport error" << true;
    QTest::newRow("picture dripped") << Call::download << fault(B::drip, 200, test::jpeg(), "image/jpeg") << "success"
                                     << false;
}

void TestNetworkFaults::faultyAnswer()
{
    QFETCH(Call, call);
    QFETCH(FaultServer::Script, script);
    QFETCH(QString, outcome);
    QFETCH(bool, transportLine);

    // A stale token sends the regeneration first; a fresh one goes straight to the call.
    test::ApiHarness api;
    const TimePoint stamped = call == Call::regeneration ? api.now - hours(5) : api.now - seconds(60);
    api.store.store(APIData{m_server->baseUrl(), QStringLiteral("tok"), toDateTime(stamped)});
    const QString faultyPath = call == Call::regeneration ? tokenPath
        : call == Call::download                          ? picturePath
                                                          : settingsPath;
    m_server->script(settingsPath, fault(FaultServer::Behaviour::answer, 200, settingsBody));
    m_server->script(QStringLiteral("/api/elsewhere"), fault(FaultServer::Behaviour::answer, 200, settingsBody));
    m_server->script(faultyPath, script);
    const bool stalls = script.behaviour == FaultServer::Behaviour::stallBeforeHeaders
        || script.behaviour == FaultServer::Behaviour::stallMidBody;
    api.manager.setTransferTimeout(stalls ? stallTimeout : ampleTimeout);
    test::LogCapture log;

    QVERIFY(api.call(call == Call::download));
    // Whatever is still under way settles before the completions are read again.
    ApiQueue::shared().waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(api.completions.size(), 1);
    QCOMPARE(api.completions.first().thread, QThread::currentThread());
    QCOMPARE(api.completions.first().outcome, outcome);
    QCOMPARE(log.count(QStringLiteral("ERROR FOR REQUEST ")), transportLine ? 1 : 0);
    QCOMPARE(api.host.sessionExpiredCalls, call == Call::regeneration && outcome != QLatin1String("success") ? 1 : 0);
}

QTEST_GUILESS_MAIN(TestNetworkFaults)
#include "tst_networkfaults.moc"
