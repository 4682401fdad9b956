#include "api/trustpolicy.h"
#include "demo/common/selfsignedcertificate.h"
#include "support/apiharness.h"
#include "support/logcapture.h"
#include "support/testpicker.h"

#include <QTest>

using namespace ravelin;

namespace {

enum class Trust { any, systemStore, serverCertificate, otherCertificate, bothCertificates, serverKey, otherKey };
enum class Call { request, download };

} // namespace

Q_DECLARE_METATYPE(Trust)
Q_DECLARE_METATYPE(Call)

// The loopback server presents a certificate made for it; a second one, made
// by the test, stands for any other server's.
class TestTrustPolicy : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void publicKeyDigestIsTheStandardPin();
    void serverChecked_data();
    void serverChecked();

private:
    std::optional<SelfSignedCertificate> m_other;
};

void TestTrustPolicy::initTestCase()
{
    // Of another subject: OpenSSL looks an authority up by its name.
    m_other = SelfSignedCertificate::create(std::chrono::system_clock::now(), "Another authority");
}

// The pin a host computes with OpenSSL (SHA-256 of the SubjectPublicKeyInfo).
void TestTrustPolicy::publicKeyDigestIsTheStandardPin()
{
    const QByteArray pin = TrustPolicy::publicKeyDigest(QSslCertificate(m_other->certificatePem()));
    QCOMPARE(pin, m_other->publicKeySha256());
}

void TestTrustPolicy::serverChecked_data()
{
    QTest::addColumn<Trust>("trust");
    QTest::addColumn<Call>("call");
    QTest::addColumn<bool>("hostFirst"); // the host's own request on the same manager first, checking nothing
    QTest::addColumn<bool>("accepted");

    QTest::newRow("any certificate") << Trust::any << Call::request << false << true;
    QTest::newRow("system trust store") << Trust::systemStore << Call::request << false << false;
    QTest::newRow("the server's certificate") << Trust::serverCertificate << Call::request << false << true;
    QTest::newRow("another certificate") << Trust::otherCertificate << Call::request << false << false;
    QTest::newRow("either certificate") << Trust::bothCertificates << Call::request << false << true;
    QTest::newRow("the server's key pinned") << Trust::serverKey << Call::request << false << true;
    QTest::newRow("another key pinned") << Trust::otherKey << Call::request << false << false;
    QTest::newRow("picture, the server's certificate") << Trust::serverCertificate << Call::download << false << true;
    QTest::newRow("picture, another certificate") << Trust::otherCertificate << Call::download << false << false;
    QTest::newRow("picture, another key pinned") << Trust::otherKey << Call::download << false << false;
    QTest::newRow("another certificate, the host first") << Trust::otherCertificate << Call::request << true << false;
    QTest::newRow("another key pinned, the host first") << Trust::otherKey << Call::request << true << false;
}

void TestTrustPolicy::serverChecked()
{
    QFETCH(Trust, trust);
    QFETCH(Call, call);
    QFETCH(bool, hostFirst);
    QFETCH(bool, accepted);

    test::ApiHarness api;
    api.server.on("GET", QStringLiteral("/api/settings-constants"), test::CannedResponse{200, test::settingsBody});
    api.server.on("GET", QStringLiteral("/files/p/a.png"), test::CannedResponse{200, test::jpeg(), "image/jpeg"});
    const QSslCertificate server = QSslCertificate(api.server.certificatePem());
    const QSslCertificate other = QSslCertificate(m_other->certificatePem());
    const std::map<Trust, TrustPolicy> policies{
        {Trust::any, TrustPolicy()},
        {Trust::systemStore, TrustPolicy::systemTrustStore()},
        {Trust::serverCertificate, TrustPolicy::certificateAuthorities({server})},
        {Trust::otherCertificate, TrustPolicy::certificateAuthorities({other})},
        {Trust::bothCertificates, TrustPolicy::certificateAuthorities({other, server})},
        {Trust::serverKey, TrustPolicy::pinnedPublicKeys({TrustPolicy::publicKeyDigest(server)})},
        {Trust::otherKey, TrustPolicy::pinnedPublicKeys({TrustPolicy::publicKeyDigest(other)})},
    };
    if (hostFirst) {
        QNetworkReply *reply = api.network.get(
            QNetworkRequest(QUrl(QStringLiteral("https://%1/api/settings-constants").arg(api.server.baseUrl()))));
        reply->ignoreSslErrors();
        QTRY_VERIFY_WITH_TIMEOUT(reply->isFinished(), 30000);
        QCOMPARE(reply->error(), QNetworkReply::NoError);
        reply->deleteLater();
        api.server.clearRequests();
    }
    api.manager.setTrustPolicy(policies.at(trust));
    test::LogCapture log;

    QVERIFY(api.call(call == Call::download));

    // A refused server is a transport error, which a picture download passes on as it is.
    const QString refused
        = call == Call::download ? QStringLiteral("transport error") : QStringLiteral("apiRouteError");
    QCOMPARE(api.completions.size(), 1);
    QCOMPARE(api.completions.first().outcome, accepted ? QStringLiteral("success") : refused);
    QCOMPARE(api.server.requestCount(), accepted ? 1 : 0);
    QCOMPARE(log.count(QStringLiteral("ERROR FOR REQUEST ")), accepted ? 0 : 1);
}

QTEST_GUILESS_MAIN(TestTrustPolicy)
#include "tst_trustpolicy.moc"
