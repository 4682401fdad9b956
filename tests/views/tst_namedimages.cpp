#include "resources/namedimages.h"

#include <QSet>
#include <QTest>

using namespace ravelin;

namespace {

// What an image covers: pixels with any opacity, the fully opaque ones and
// their colours, and the strongest opacity.
struct Coverage
{
    int opaque = 0;
    int solid = 0;
    QSet<QRgb> solidColours;
    int strongestAlpha = 0;
};

Coverage coverage(const QImage &source)
{
    const QImage image = source.convertToFormat(QImage::Format_ARGB32);
    Coverage result;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            result.opaque += qAlpha(pixel) > 0 ? 1 : 0;
            result.strongestAlpha = std::max(result.strongestAlpha, qAlpha(pixel));
            if (qAlpha(pixel) == 255) {
                ++result.solid;
                result.solidColours.insert(pixel);
            }
        }
    }
    return result;
}

} // namespace

class tst_NamedImages : public QObject
{
    Q_OBJECT

private slots:
    void everyImageRenders();
    void lookupByName();
    void filledWithColorKeepsTheShape();
    void recolouredImagesAndIconsTakeTheColour();
};

void tst_NamedImages::everyImageRenders()
{
    QVERIFY(NamedImages::names().size() >= 16);
    for (const QString &name : NamedImages::names()) {
        QVERIFY(NamedImages::contains(name));
        QVERIFY(NamedImages::defaultSize(name).isValid());
        const QImage image = NamedImages::image(name, QSize(25, 25));
        QCOMPARE(image.size(), QSize(25, 25));
        // Something is drawn, and the image is not a filled square.
        const int opaque = coverage(image).opaque;
        QVERIFY2(opaque > 20 && opaque < 25 * 25, qPrintable(name + QLatin1Char(' ') + QString::number(opaque)));
        QVERIFY(!NamedImages::pixmap(name, QSize(25, 25)).isNull() && !NamedImages::icon(name).isNull());
        const QImage sharp = NamedImages::image(name, QSize(25, 25), 2.0);
        QCOMPARE(sharp.size(), QSize(50, 50));
        QCOMPARE(sharp.devicePixelRatio(), 2.0);
    }
}

void tst_NamedImages::lookupByName()
{
    const QString unknown = QStringLiteral("list_pin_truck");
    QVERIFY(!NamedImages::contains(unknown));
    QVERIFY(NamedImages::image(unknown).isNull());
    QVERIFY(NamedImages::image(unknown, QSize(25, 25), QColor(Qt::red)).isNull());
    QVERIFY(NamedImages::pixmap(unknown, QSize(25, 25)).isNull());
    QVERIFY(NamedImages::icon(unknown).isNull());
    QVERIFY(NamedImages::image(QString()).isNull());
    QVERIFY(NamedImages::image(QStringLiteral("../ok")).isNull());

    // A file extension is ignored.
    QVERIFY(NamedImages::contains(QStringLiteral("list_pin_people_01.png")));
    QCOMPARE(NamedImages::image(QStringLiteral("list_pin_people_01.png"), QSize(30, 30)),
             NamedImages::image(QStringLiteral("list_pin_people_01"), QSize(30, 30)));
}

void tst_NamedImages::filledWithColorKeepsTheShape()
{
    QImage source(4, 1, QImage::Format_ARGB32);
    source.setPixel(0, 0, qRgba(0, 0, 0, 0));
    source.setPixel(1, 0, qRgba(10, 200, 30, 255));
    source.setPixel(2, 0, qRgba(255, 255, 255, 128));
    source.setPixel(3, 0, qRgba(90, 90, 90, 255));

    const QImage filled
        = NamedImages::filledWithColor(source, QColor(200, 40, 40)).convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(filled.size(), source.size());
    QCOMPARE(qAlpha(filled.pixel(0, 0)), 0);
    QCOMPARE(filled.pixel(1, 0), qRgba(200, 40, 40, 255));
    QCOMPARE(filled.pixel(3, 0), qRgba(200, 40, 40, 255));
    const QRgb half = filled.pixel(2, 0);
    QVERIFY(qAbs(qAlpha(half) - 128) <= 1 && qAbs(qRed(half) - 200) <= 2 && qAbs(qGreen(half) - 40) <= 2);

    // The colour's own alpha scales the coverage.
    QColor translucent(200, 40, 40);
    translucent.setAlphaF(0.8f);
    const QImage faded = NamedImages::filledWithColor(source, translucent).convertToFormat(QImage::Format_ARGB32);
    QVERIFY(qAbs(qAlpha(faded.pixel(1, 0)) - 204) <= 1);
    QVERIFY(NamedImages::filledWithColor(QImage(), Qt::red).isNull());
}

void tst_NamedImages::recolouredImagesAndIconsTakeTheColour()
{
    const QColor green(47, 158, 110);
    const Coverage recoloured = coverage(NamedImages::image(QStringLiteral("nok"), QSize(24, 24), green));
    QCOMPARE(recoloured.opaque, coverage(NamedImages::image(QStringLiteral("nok"), QSize(24, 24))).opaque);
    QCOMPARE(recoloured.solidColours, QSet<QRgb>{green.rgb()});

    const QIcon icon = NamedImages::icon(QStringLiteral("paperplane"), QColor(Qt::blue));
    const QImage image = icon.pixmap(QSize(30, 30)).toImage();
    QCOMPARE(image.size(), QSize(30, 30));
    QCOMPARE(coverage(image).solidColours, QSet<QRgb>{qRgb(0, 0, 255)});
    QVERIFY(coverage(image).solid > 10);
    // Disabled icons fade.
    const int strongest = coverage(icon.pixmap(QSize(30, 30), QIcon::Disabled).toImage()).strongestAlpha;
    QVERIFY(strongest > 0 && strongest < 128);
}

QTEST_MAIN(tst_NamedImages)
#include "tst_namedimages.moc"
