#include "resources/namedimages.h"

#include <QDir>
#include <QPainter>
#include <QTest>

using namespace ravelin;

namespace {

int opaquePixels(const QImage &image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
    }
    return count;
}

} // namespace

class tst_NamedImages : public QObject
{
    Q_OBJECT

private slots:
    void everyImageRenders_data();
    void everyImageRenders();
    void unknownNameGivesNullResults();
    void extensionIsIgnored();
    void devicePixelRatioScalesThePixels();
    void filledWithColorKeepsTheShape();
    void recolouredImageTakesTheColour();
    void colouredIconRendersInItsColour();
    void contactSheet();
};

void tst_NamedImages::everyImageRenders_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"ok", "nok", "open", "paperplane", "paperclip", "CustomQRCode", "list_pin_people_01",
                             "filter", "refresh", "back", "comments", "qrscan", "camera", "close", "multiselect",
                             "block"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void tst_NamedImages::everyImageRenders()
{
    QFETCH(QString, name);
    QVERIFY(NamedImages::contains(name));
    QVERIFY(NamedImages::names().contains(name));
    QVERIFY(NamedImages::defaultSize(name).isValid());

    const QImage image = NamedImages::image(name, QSize(25, 25));
    QCOMPARE(image.size(), QSize(25, 25));
    const int opaque = opaquePixels(image);
    // Something is drawn, and the image is not a filled square.
    QVERIFY2(opaque > 20, qPrintable(QString::number(opaque)));
    QVERIFY2(opaque < 25 * 25, qPrintable(QString::number(opaque)));
    QVERIFY(!NamedImages::pixmap(name, QSize(25, 25)).isNull());
    QVERIFY(!NamedImages::icon(name).isNull());
}

void tst_NamedImages::unknownNameGivesNullResults()
{
    QVERIFY(!NamedImages::contains(QStringLiteral("list_pin_truck")));
    QVERIFY(NamedImages::image(QStringLiteral("list_pin_truck")).isNull());
    QVERIFY(NamedImages::image(QStringLiteral("list_pin_truck"), QSize(25, 25), QColor(Qt::red)).isNull());
    QVERIFY(NamedImages::pixmap(QStringLiteral("list_pin_truck"), QSize(25, 25)).isNull());
    QVERIFY(NamedImages::icon(QStringLiteral("list_pin_truck")).isNull());
    QVERIFY(NamedImages::image(QString()).isNull());
    QVERIFY(NamedImages::image(QStringLiteral("../ok")).isNull());
}

void tst_NamedImages::extensionIsIgnored()
{
    QVERIFY(NamedImages::contains(QStringLiteral("list_pin_people_01.png")));
    QCOMPARE(NamedImages::image(QStringLiteral("list_pin_people_01.png"), QSize(30, 30)),
             NamedImages::image(QStringLiteral("list_pin_people_01"), QSize(30, 30)));
}

void tst_NamedImages::devicePixelRatioScalesThePixels()
{
    const QImage image = NamedImages::image(QStringLiteral("ok"), QSize(25, 25), 2.0);
    QCOMPARE(image.size(), QSize(50, 50));
    QCOMPARE(image.devicePixelRatio(), 2.0);
}

void tst_NamedImages::filledWithColorKeepsTheShape()
{
    QImage source(4, 1, QImage::Format_ARGB32);
    source.setPixel(0, 0, qRgba(0, 0, 0, 0));
    source.setPixel(1, 0, qRgba(10, 200, 30, 255));
    source.setPixel(2, 0, qRgba(255, 255, 255, 128));
    source.setPixel(3, 0, qRgba(90, 90, 90, 255));

    const QImage filled = NamedImages::filledWithColor(source, QColor(200, 40, 40)).convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(filled.size(), source.size());
    QCOMPARE(qAlpha(filled.pixel(0, 0)), 0);
    QCOMPARE(filled.pixel(1, 0), qRgba(200, 40, 40, 255));
    QCOMPARE(filled.pixel(3, 0), qRgba(200, 40, 40, 255));
    const QRgb half = filled.pixel(2, 0);
    QVERIFY(qAbs(qAlpha(half) - 128) <= 1);
    QVERIFY(qAbs(qRed(half) - 200) <= 2);
    QVERIFY(qAbs(qGreen(half) - 40) <= 2);

    // The colour's own alpha scales the coverage.
    QColor translucent(200, 40, 40);
    translucent.setAlphaF(0.8f);
    const QImage faded = NamedImages::filledWithColor(source, translucent).convertToFormat(QImage::Format_ARGB32);
    QVERIFY(qAbs(qAlpha(faded.pixel(1, 0)) - 204) <= 1);

    QVERIFY(NamedImages::filledWithColor(QImage(), Qt::red).isNull());
}

void tst_NamedImages::recolouredImageTakesTheColour()
{
    const QColor green(47, 158, 110);
    const QImage original = NamedImages::image(QStringLiteral("nok"), QSize(24, 24));
    const QImage recoloured =
        NamedImages::image(QStringLiteral("nok"), QSize(24, 24), green).convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(opaquePixels(recoloured), opaquePixels(original));
    for (int y = 0; y < recoloured.height(); ++y) {
        for (int x = 0; x < recoloured.width(); ++x) {
            const QRgb pixel = recoloured.pixel(x, y);
            if (qAlpha(pixel) != 255)
                continue;
            QCOMPARE(qRed(pixel), green.red());
            QCOMPARE(qGreen(pixel), green.green());
            QCOMPARE(qBlue(pixel), green.blue());
        }
    }
}

void tst_NamedImages::colouredIconRendersInItsColour()
{
    const QIcon icon = NamedImages::icon(QStringLiteral("paperplane"), QColor(Qt::blue));
    const QImage image = icon.pixmap(QSize(30, 30)).toImage().convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(image.size(), QSize(30, 30));
    int blue = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (qAlpha(pixel) == 255) {
                QCOMPARE(pixel, qRgb(0, 0, 255));
                ++blue;
            }
        }
    }
    QVERIFY(blue > 10);

    const QImage disabled =
        icon.pixmap(QSize(30, 30), QIcon::Disabled).toImage().convertToFormat(QImage::Format_ARGB32);
    int strongest = 0;
    for (int y = 0; y < disabled.height(); ++y) {
        for (int x = 0; x < disabled.width(); ++x)
            strongest = std::max(strongest, qAlpha(disabled.pixel(x, y)));
    }
    QVERIFY(strongest > 0);
    QVERIFY(strongest < 128);
}

void tst_NamedImages::contactSheet()
{
    // Every image on one sheet, as drawn and in one colour, for looking at them.
    const QStringList names = NamedImages::names();
    const int cell = 56;
    QImage sheet(cell * names.size(), cell * 2, QImage::Format_ARGB32_Premultiplied);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    for (qsizetype index = 0; index < names.size(); ++index) {
        const int x = static_cast<int>(index) * cell + 8;
        painter.drawImage(x, 8, NamedImages::image(names.at(index), QSize(40, 40)));
        painter.drawImage(x, cell + 8, NamedImages::image(names.at(index), QSize(40, 40), QColor(0x25, 0x63, 0xC4)));
    }
    painter.end();
    QVERIFY(QDir().mkpath(QStringLiteral("/tmp/ravelin-shots")));
    QVERIFY(sheet.save(QStringLiteral("/tmp/ravelin-shots/namedimages.png")));
}

QTEST_MAIN(tst_NamedImages)
#include "tst_namedimages.moc"
