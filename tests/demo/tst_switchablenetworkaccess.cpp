#include "demo/app/offlinereply.h"
#include "demo/app/switchablenetworkaccess.h"
#include "demo/server/demodata.h"
#include "demo/server/demoserver.h"

#include <QBuffer>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QSslError>
#include <QTest>

#include <memory>

using namespace ravelin;

namespace {

constexpr int kTimeoutMs = 15000;

} // namespace

class TestSwitchableNetworkAccess : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { m_server.reset(); }

    void offlineRequestFailsAtOnce_data();
    void offlineRequestFailsAtOnce();
    void switchRoutesRequests();

private:
    // Sends a GET to the demo server, trusting exactly its certificate.
    std::unique_ptr<QNetworkReply> get(SwitchableNetworkAccess &network, const QString &path);

    std::unique_ptr<DemoServer> m_server;
};

void TestSwitchableNetworkAccess::initTestCase()
{
    const DemoClock clock = systemDemoClock();
    m_server = std::make_unique<DemoServer>(DemoData::seeded(clock()), clock);
    QVERIFY(m_server->start(0));
}

std::unique_ptr<QNetworkReply> TestSwitchableNetworkAccess::get(SwitchableNetworkAccess &network, const QString &path)
{
    std::unique_ptr<QNetworkReply> reply(
        network.get(QNetworkRequest(QUrl(QStringLiteral("https://%1%2").arg(m_server->baseUrl(), path)))));
    reply->ignoreSslErrors({QSslError(QSslError::SelfSignedCertificate, QSslCertificate(m_server->certificatePem()))});
    return reply;
}

void TestSwitchableNetworkAccess::offlineRequestFailsAtOnce_data()
{
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<bool>("abortFirst");
    QTest::addColumn<int>("error");

    // Every verb takes the same way; a GET through get(): switchRoutesRequests.
    QTest::newRow("custom verb with a body")
        << QByteArray("PATCH") << false << int(QNetworkReply::NetworkSessionFailedError);
    QTest::newRow("aborted before it failed")
        << QByteArray("GET") << true << int(QNetworkReply::OperationCanceledError);
}

void TestSwitchableNetworkAccess::offlineRequestFailsAtOnce()
{
    QFETCH(QByteArray, verb);
    QFETCH(bool, abortFirst);
    QFETCH(int, error);

    SwitchableNetworkAccess network;
    network.setOffline(true);
    QByteArray body("{\"status\": 3}");
    QBuffer outgoing(&body);
    outgoing.open(QIODevice::ReadOnly);
    const QUrl url(QStringLiteral("https://%1/api/tasks").arg(m_server->baseUrl()));
    std::unique_ptr<QNetworkReply> reply(network.sendCustomRequest(QNetworkRequest(url), verb, &outgoing));
    QVERIFY(qobject_cast<OfflineReply *>(reply.get()));
    QSignalSpy finished(reply.get(), &QNetworkReply::finished);
    QSignalSpy failed(reply.get(), &QNetworkReply::errorOccurred);
    // Queued: the caller connects first, as to a reply of the network layer.
    QVERIFY(!reply->isFinished());
    if (abortFirst)
        reply->abort();
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, kTimeoutMs);
    reply->abort(); // harmless once finished
    QTest::qWait(20);

    QCOMPARE(finished.size(), 1);
    QCOMPARE(failed.size(), 1);
    QCOMPARE(failed.constFirst().constFirst().value<QNetworkReply::NetworkError>(), QNetworkReply::NetworkError(error));
    QCOMPARE(int(reply->error()), error);
    QVERIFY(!reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid());
    QCOMPARE(reply->readAll(), QByteArray());
    QCOMPARE(reply->url(), url);
}

void TestSwitchableNetworkAccess::switchRoutesRequests()
{
    SwitchableNetworkAccess network;
    QSignalSpy switched(&network, &SwitchableNetworkAccess::offlineChanged);
    for (const bool offline : {false, true, false}) {
        network.setOffline(offline);
        const std::unique_ptr<QNetworkReply> reply = get(network, QStringLiteral("/api/settings-constants"));
        QSignalSpy finished(reply.get(), &QNetworkReply::finished);
        QVERIFY(finished.wait(kTimeoutMs));
        const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
        // Online the server answers (it wants a token); offline nothing reaches it.
        QCOMPARE(status.isValid(), !offline);
        QCOMPARE(reply->error() == QNetworkReply::NetworkSessionFailedError, offline);
    }
    QCOMPARE(switched.size(), 2);
}

QTEST_MAIN(TestSwitchableNetworkAccess)
#include "tst_switchablenetworkaccess.moc"
