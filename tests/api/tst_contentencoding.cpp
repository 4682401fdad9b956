#include "api/contentencoding.h"
#include "support/apiharness.h"
#include "support/gzipstreams.h"
#include "support/logcapture.h"

#include <QTest>

using namespace ravelin;
using test::settingsBody;

namespace {

// A gzip member whose trailer claims another inflated size (4 GiB - 1).
QByteArray withLyingTrailer(QByteArray gzip)
{
    gzip.replace(gzip.size() - 4, 4, QByteArray(4, '\xff'));
    return gzip;
}

// Bytes flipped in the middle of the compressed data.
QByteArray corrupted(QByteArray gzip)
{
    for (qsizetype i = gzip.size() / 2; i < gzip.size() / 2 + 16; ++i)
        gzip[i] = char(~gzip.at(i));
    return gzip;
}

} // namespace

class TestContentEncoding : public QObject
{
    Q_OBJECT

private slots:
    void decodes_data();
    void decodes();
    void answerThroughNetworkManager_data();
    void answerThroughNetworkManager();
};

void TestContentEncoding::decodes_data()
{
    // A large, repetitive answer (it inflates far beyond the first guess) and a small one.
    QByteArray large = "{\"success\":true,\"data\":[";
    for (int i = 0; i < 20000; ++i)
        large += "{\"id\":" + QByteArray::number(i) + ",\"name\":\"Pump maintenance – Northfield\"},";
    large += "{}]}";
    const QByteArray small = R"({"success":true,"data":"t0ken"})";

    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<qsizetype>("limit"); // 0: the limit for the body's size
    QTest::addColumn<QByteArray>("expected"); // empty: refused

    QTest::newRow("plain") << small << QByteArray() << qsizetype(0) << small;
    QTest::newRow("identity") << small << QByteArray("identity") << qsizetype(0) << small;
    QTest::newRow("gzip, large") << test::compressed(large, 31) << QByteArray("gzip") << qsizetype(0) << large;
    QTest::newRow("gzip, any case") << test::compressed(small, 31) << QByteArray(" GZip ") << qsizetype(0) << small;
    QTest::newRow("deflate as zlib") << test::compressed(large, 15) << QByteArray("deflate") << qsizetype(0) << large;
    QTest::newRow("deflate raw") << test::compressed(small, -15) << QByteArray("deflate") << qsizetype(0) << small;
    QTest::newRow("cut off") << test::compressed(large, 31).left(500) << QByteArray("gzip") << qsizetype(0)
                             << QByteArray();
    QTest::newRow("not compressed at all") << small << QByteArray("gzip") << qsizetype(0) << QByteArray();
    QTest::newRow("unknown encoding") << small << QByteArray("br") << qsizetype(0) << QByteArray();
    QTest::newRow("inflates past the given limit")
        << test::compressed(large, 31) << QByteArray("gzip") << qsizetype(64 * 1024) << QByteArray();
    QTest::newRow("trailer claims 4 GiB")
        << withLyingTrailer(test::compressed(small, 31)) << QByteArray("gzip") << qsizetype(0) << QByteArray();
    QTest::newRow("bomb, 64 MiB from 64 KB")
        << test::gzipBomb(64) << QByteArray("gzip") << qsizetype(0) << QByteArray();
}

void TestContentEncoding::decodes()
{
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, encoding);
    QFETCH(qsizetype, limit);
    QFETCH(QByteArray, expected);
    const std::optional<QByteArray> decoded
        = limit ? ContentEncoding::decode(body, encoding, limit) : ContentEncoding::decode(body, encoding);
    QCOMPARE(decoded.has_value(), !expected.isEmpty());
    if (!decoded)
        return;
    QCOMPARE(*decoded, expected);
    // Inflated bodies leave room for the JSON reader to read ahead.
    if (!encoding.trimmed().isEmpty() && encoding != "identity")
        QVERIFY(decoded->capacity() - decoded->size() >= ContentEncoding::readPadding);
}

// Compressed answers end to end: the loopback server sends the body with its
// Content-Encoding, the network manager inflates and decodes it on the api queue.
void TestContentEncoding::answerThroughNetworkManager_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<bool>("decoded"); // else invalidParsing, and why in the log

    QTest::newRow("compressed by the server") << settingsBody << QByteArray() << true;
    QTest::newRow("corrupt stream") << corrupted(test::gzip(settingsBody.repeated(50))) << QByteArray("gzip") << false;
    QTest::newRow("bomb, 1 GiB from 1 MB") << test::gzipBomb(1024) << QByteArray("gzip") << false;
}

void TestContentEncoding::answerThroughNetworkManager()
{
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, encoding);
    QFETCH(bool, decoded);

    test::ApiHarness api;
    // A body sent as it is goes as JSON, which the server compresses itself.
    api.server.on("GET", QStringLiteral("/api/settings-constants"),
                  test::CannedResponse{200, body, encoding.isEmpty() ? "application/json" : "application/octet-stream",
                                       encoding});
    test::LogCapture log;
    const auto result = api.answer();

    QCOMPARE(result.isSuccess(), decoded);
    QVERIFY(api.server.requests().constFirst().header("Accept-Encoding").contains("gzip"));
    if (decoded) {
        QCOMPARE(result.value().data.taskCategory.constFirst().name, QStringLiteral("Pumps"));
        return;
    }
    QCOMPARE(result.error(), ManagerErrors(ManagerErrors::Kind::invalidParsing));
    QCOMPARE(log.count(QStringLiteral("Could not translate the data to the requested type. Reason: "
                                      "the answer does not inflate as gzip")),
             1);
}

QTEST_GUILESS_MAIN(TestContentEncoding)
#include "tst_contentencoding.moc"
