#include "api/contentencoding.h"

#include <QTest>

#include <zlib.h>

using namespace ravelin;

namespace {

// The text compressed with the given zlib window bits (31: gzip, 15: zlib, -15: raw).
QByteArray compressed(const QByteArray &text, int windowBits)
{
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY);
    QByteArray out(int(deflateBound(&stream, uLong(text.size()))) + 32, Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.constData()));
    stream.avail_in = uInt(text.size());
    stream.next_out = reinterpret_cast<Bytef *>(out.data());
    stream.avail_out = uInt(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(qsizetype(stream.total_out));
    deflateEnd(&stream);
    return out;
}

} // namespace

class TestContentEncoding : public QObject
{
    Q_OBJECT

private slots:
    void decodes_data();
    void decodes();
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
    QTest::addColumn<qsizetype>("limit");
    QTest::addColumn<QByteArray>("expected"); // empty: refused

    const qsizetype noLimit = ContentEncoding::maximumInflatedSize;
    QTest::newRow("plain") << small << QByteArray() << noLimit << small;
    QTest::newRow("identity") << small << QByteArray("identity") << noLimit << small;
    QTest::newRow("gzip, large") << compressed(large, 31) << QByteArray("gzip") << noLimit << large;
    QTest::newRow("gzip, any case") << compressed(small, 31) << QByteArray(" GZip ") << noLimit << small;
    QTest::newRow("deflate as zlib") << compressed(large, 15) << QByteArray("deflate") << noLimit << large;
    QTest::newRow("deflate raw") << compressed(small, -15) << QByteArray("deflate") << noLimit << small;
    QTest::newRow("cut off") << compressed(large, 31).left(500) << QByteArray("gzip") << noLimit << QByteArray();
    QTest::newRow("not compressed at all") << small << QByteArray("gzip") << noLimit << QByteArray();
    QTest::newRow("unknown encoding") << small << QByteArray("br") << noLimit << QByteArray();
    QTest::newRow("inflates past the limit")
        << compressed(large, 31) << QByteArray("gzip") << qsizetype(64 * 1024) << QByteArray();
}

void TestContentEncoding::decodes()
{
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, encoding);
    QFETCH(qsizetype, limit);
    QFETCH(QByteArray, expected);
    const std::optional<QByteArray> decoded = ContentEncoding::decode(body, encoding, limit);
    QCOMPARE(decoded.has_value(), !expected.isEmpty());
    if (!decoded)
        return;
    QCOMPARE(*decoded, expected);
    // Inflated bodies leave room for the JSON reader to read ahead.
    if (!encoding.trimmed().isEmpty() && encoding != "identity")
        QVERIFY(decoded->capacity() - decoded->size() >= ContentEncoding::readPadding);
}

QTEST_GUILESS_MAIN(TestContentEncoding)
#include "tst_contentencoding.moc"
