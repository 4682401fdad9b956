#include "api/apidata.h"
#include "api/sessionstore.h"
#include "support/logcapture.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

using namespace ravelin;
using namespace std::chrono;

class TestApiData : public QObject
{
    Q_OBJECT

private slots:
    void tokenFreshness_data();
    void tokenFreshness();
    void encodesKeysAndReadsBackIdentically();
    void sessionStoreRoundTrip();
    void sessionStoreMissingOrUnreadable_data();
    void sessionStoreMissingOrUnreadable();

private:
    QTemporaryDir m_dir;
};

void TestApiData::tokenFreshness_data()
{
    QTest::addColumn<qint64>("ageMs");
    QTest::addColumn<bool>("fresh");
    QTest::newRow("same instant") << qint64(0) << false;
    QTest::newRow("0.4 s truncates to 0") << qint64(400) << false;
    QTest::newRow("1 s") << qint64(1000) << true;
    QTest::newRow("14399.9 s") << qint64(14399900) << true;
    QTest::newRow("14400 s") << qint64(14400000) << false;
    QTest::newRow("stamped in the future") << qint64(-5000) << true;
    QTest::newRow("0.4 s in the future") << qint64(-400) << false;
}

void TestApiData::tokenFreshness()
{
    QFETCH(qint64, ageMs);
    QFETCH(bool, fresh);
    const TimePoint now = TimePoint(milliseconds(1795169730123));
    APIData data{QStringLiteral("h"), QStringLiteral("t"), toDateTime(now - milliseconds(ageMs))};
    QCOMPARE(data.isTokenFresh(now), fresh);
}

void TestApiData::encodesKeysAndReadsBackIdentically()
{
    const APIData data{QStringLiteral("api.example.org/v2"), QStringLiteral("tok"),
                       QDateTime::fromMSecsSinceEpoch(1795169730123, QTimeZone::utc())};
    const QByteArray bytes = data.encode();
    QVERIFY(bytes.contains("\"baseURL\":\"api.example.org/v2\""));
    QVERIFY(bytes.contains("\"tokenString\":\"tok\""));
    // Seconds since 2001-01-01: 1795169730.123 - 978307200
    QVERIFY(bytes.contains("\"timestamp\":816862530.123"));
    QCOMPARE(APIData::fromStoredBytes(bytes), data);
}

void TestApiData::sessionStoreRoundTrip()
{
    QSettings settings(m_dir.filePath(QStringLiteral("roundtrip.ini")), QSettings::IniFormat);
    SessionStore store(&settings);
    const APIData data{QStringLiteral("127.0.0.1:8443"), QStringLiteral("abc"),
                       QDateTime::fromMSecsSinceEpoch(1700000000500, QTimeZone::utc())};
    store.store(data);
    QCOMPARE(store.load(), data);

    // Another store over the same file sees the synchronised bytes.
    QSettings other(m_dir.filePath(QStringLiteral("roundtrip.ini")), QSettings::IniFormat);
    QCOMPARE(SessionStore(&other).load(), data);
    QCOMPARE(other.value(QStringLiteral("quorApiData")).toByteArray(), data.encode());
}

void TestApiData::sessionStoreMissingOrUnreadable_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("logLine");
    QTest::newRow("missing") << QVariant() << "Couldnt find key";
    QTest::newRow("not JSON") << QVariant(QByteArray("garbage")) << "Couldnt decode object";
    QTest::newRow("key missing in object")
        << QVariant(QByteArray(R"({"baseURL":"h","timestamp":1})")) << "Couldnt decode object";
}

void TestApiData::sessionStoreMissingOrUnreadable()
{
    QFETCH(QVariant, stored);
    QFETCH(QString, logLine);
    QSettings settings(m_dir.filePath(QString::fromLatin1(QTest::currentDataTag()) + QStringLiteral(".ini")),
                       QSettings::IniFormat);
    if (stored.isValid())
        settings.setValue(QStringLiteral("quorApiData"), stored);
    test::LogCapture log;
    QCOMPARE(SessionStore(&settings).load(), std::nullopt);
    QCOMPARE(log.lines(), QStringList{logLine});
}

QTEST_GUILESS_MAIN(TestApiData)
#include "tst_apidata.moc"
