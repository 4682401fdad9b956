#include "demo/common/qrsymbol.h"
#include "items/qrcodereader.h"
#include "items/qrframedecoder.h"
#include "support/fixtures.h"

#include <QSignalSpy>
#include <QTest>
#include <QTransform>

#include <ZXing/BitMatrix.h>
#include <ZXing/MultiFormatWriter.h>

using namespace ravelin;

namespace {

const QSize hd(1280, 720);

// A Code 128 barcode: a barcode, but not a QR code.
QImage code128(const QString &text)
{
    const ZXing::BitMatrix bits
        = ZXing::MultiFormatWriter(ZXing::BarcodeFormat::Code128).encode(text.toStdWString(), 400, 120);
    QImage picture(hd, QImage::Format_Grayscale8);
    picture.fill(128);
    for (int y = 0; y < bits.height(); ++y)
        for (int x = 0; x < bits.width(); ++x)
            picture.setPixel(400 + x, 300 + y, bits.get(x, y) ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
    return picture;
}

} // namespace

class TestQrCodeReader : public QObject
{
    Q_OBJECT

private slots:
    void read_data();
    void read();
    void aspectFillCoversTheView();
    void decoderDropsFramesWhileBusy();
};

void TestQrCodeReader::read_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QRect>("firstAround");

    QTest::newRow("one code") << QrSymbol::scene(hd, {{"CP-1001", {500, 200}}}) << QStringList{"CP-1001"}
                              << QRect(500 + 24, 200 + 24, 21 * 6, 21 * 6);
    QTest::newRow("turned on its side")
        << QrSymbol::scene(hd, {{"CP-1001", {500, 200}}}).transformed(QTransform().rotate(90)) << QStringList{"CP-1001"}
        << QRect();
    QTest::newRow("two codes") << QrSymbol::scene(hd, {{"CP-1", {100, 100}}, {"CP-2", {900, 400}}})
                               << QStringList{"CP-1", "CP-2"} << QRect();
    QTest::newRow("text beyond ASCII") << QrSymbol::scene(hd, {{"Pumpe Süd 3", {500, 200}}})
                                       << QStringList{"Pumpe Süd 3"} << QRect();
    QTest::newRow("a Code 128 barcode") << code128("CP-2") << QStringList{} << QRect();
    QTest::newRow("no picture") << QImage() << QStringList{} << QRect();
}

void TestQrCodeReader::read()
{
    QFETCH(QImage, picture);
    QFETCH(QRect, firstAround);
    const QList<QrDetection> found = QrCodeReader::read(picture);
    QStringList read = test::mapped(found, [](const QrDetection &code) { return code.text; });
    read.sort();
    QTEST(read, "texts");
    if (firstAround.isValid()) {
        // The corners sit on the code's modules, give or take a module.
        const QRectF bounds = found.first().bounds();
        QVERIFY2(qAbs(bounds.left() - firstAround.left()) <= 6 && qAbs(bounds.top() - firstAround.top()) <= 6,
                 qPrintable(QStringLiteral("at %1,%2").arg(bounds.left()).arg(bounds.top())));
        QVERIFY(qAbs(bounds.width() - firstAround.width()) <= 12);
    }
}

void TestQrCodeReader::aspectFillCoversTheView()
{
    // A landscape frame in a portrait view: scaled to the view's height, the
    // sides cut off evenly.
    const QRectF whole = QrCodeReader::aspectFill(QRectF(0, 0, 1280, 720), QSizeF(1280, 720), QSizeF(390, 800));
    QVERIFY(whole.contains(QRectF(0, 0, 390, 800)));
    QCOMPARE(whole.height(), 800.0);
    QCOMPARE(whole.center(), QPointF(195, 400));
    QVERIFY(QrCodeReader::aspectFill(QRectF(0, 0, 10, 10), QSizeF(), QSizeF(390, 800)).isNull());
}

void TestQrCodeReader::decoderDropsFramesWhileBusy()
{
    QrFrameDecoder decoder;
    QSignalSpy decoded(&decoder, &QrFrameDecoder::decoded);
    const QImage frame = QrSymbol::scene(QSize(2560, 1440), {{"CP-1", {1200, 600}}});
    QVERIFY(decoder.submit(frame));
    // Frames coming while one is read are dropped, not queued.
    QVERIFY(!decoder.submit(frame));
    QVERIFY(!decoder.submit(frame));
    QCOMPARE(decoder.dropped(), 2);
    QTRY_COMPARE_WITH_TIMEOUT(decoded.size(), 1, 10000);
    const auto codes = decoded.first().at(0).value<QList<QrDetection>>();
    QCOMPARE(codes.size(), 1);
    QCOMPARE(codes.first().text, QStringLiteral("CP-1"));
    QCOMPARE(decoded.first().at(1).toSize(), QSize(2560, 1440));
    QVERIFY(!decoder.isBusy());
    QVERIFY(decoder.submit(frame));
    QTRY_COMPARE_WITH_TIMEOUT(decoded.size(), 2, 10000);
}

QTEST_GUILESS_MAIN(TestQrCodeReader)
#include "tst_qrcodereader.moc"
