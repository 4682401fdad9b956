#include "tasks/piechartview.h"

#include "resources/namedcolors.h"
#include "resources/namedimages.h"
#include "support/shots.h"

#include <QSet>
#include <QSignalSpy>
#include <QTest>

using namespace ravelin;
using namespace ravelin::test;

Q_DECLARE_METATYPE(QList<SliceAngles>)

namespace {

bool close(const QColor &a, const QColor &b)
{
    return qAbs(a.red() - b.red()) <= 3 && qAbs(a.green() - b.green()) <= 3 && qAbs(a.blue() - b.blue()) <= 3
        && a.alpha() == 255;
}

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

class tst_PieChartView : public QObject
{
    Q_OBJECT

private slots:
    void sliceAngles_data();
    void sliceAngles();
    void chartsKeepTheirSlicesAndCentreText();
    void progressIsClampedAndCentred_data();
    void progressIsClampedAndCentred();
    void drawsTheSliceColoursOnAClearBackground();
    void everyImageRenders();
    void lookupByName();
    void filledWithColorKeepsTheShape();
    void recolouredIconsTakeTheColour();
};

void tst_PieChartView::sliceAngles_data()
{
    QTest::addColumn<QList<qreal>>("values");
    QTest::addColumn<qreal>("gap");
    QTest::addColumn<QList<SliceAngles>>("expected");

    QTest::newRow("quarter, quarter, half")
        << QList<qreal>{1, 1, 2} << 0.0 << QList<SliceAngles>{{0, 90, -90, 45}, {1, 0, -90, -45}, {2, -90, -180, -180}};
    QTest::newRow("zeros get no slice") << QList<qreal>{0, 3, 0, 1} << 0.0
                                        << QList<SliceAngles>{{1, 90, -270, -45}, {3, -180, -90, -225}};
    QTest::newRow("one value fills the circle") << QList<qreal>{0, 5} << 4.0 << QList<SliceAngles>{{1, 90, -360, -90}};
    QTest::newRow("gaps shorten and centre")
        << QList<qreal>{1, 1} << 4.0 << QList<SliceAngles>{{0, 88, -176, 0}, {1, -92, -176, -180}};
    QTest::newRow("nothing to show") << QList<qreal>{0, 0, 0} << 2.0 << QList<SliceAngles>{};
    QTest::newRow("negative values are ignored")
        << QList<qreal>{-4, 2, 2} << 0.0 << QList<SliceAngles>{{1, 90, -180, 0}, {2, -90, -180, -180}};
}

void tst_PieChartView::sliceAngles()
{
    QFETCH(QList<qreal>, values);
    QFETCH(qreal, gap);
    QTEST(ChartPainter::sliceAngles(values, gap), "expected");
}

void tst_PieChartView::chartsKeepTheirSlicesAndCentreText()
{
    PieChartView chart;
    QSignalSpy changed(&chart, &PieChartView::chartChanged);
    const QColor gray = *NamedColors::color(ColorNames::customGray);
    const QColor red = *NamedColors::color(ColorNames::customRed);
    chart.updateChartForTaskStatus({QStringLiteral("Unassigned"), QStringLiteral("Assigned")}, {0, 3}, {gray, red},
                                   QStringLiteral("Tasks"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(chart.kind(), PieChartView::Kind::taskStatus);
    QCOMPARE(chart.centerText(), QStringLiteral("Tasks"));
    QCOMPARE(chart.slices(),
             (QList<ChartSlice>{{QStringLiteral("Unassigned"), 0, gray}, {QStringLiteral("Assigned"), 3, red}}));

    // Missing names and colours are filled in.
    chart.updateChartForTaskStatus({QStringLiteral("Only")}, {1, 2}, {QColor(Qt::red)}, QStringLiteral("Tasks"));
    QCOMPARE(chart.slices().size(), 2);
    QCOMPARE(chart.slices().at(1).name, QString());
    QVERIFY(chart.slices().at(1).color.isValid());

    chart.updateChartForItemsProgress(
        {QStringLiteral("Completed"), QStringLiteral("Open"), QStringLiteral("Incidents")}, {5, 3, 2},
        {Qt::green, Qt::gray, Qt::red}, 70, true);
    QCOMPARE(chart.kind(), PieChartView::Kind::itemsProgress);
    QCOMPARE(chart.centerText(), QStringLiteral("70%"));
    QCOMPARE(chart.slices().size(), 3);
    QVERIFY(chart.slicesLabelled());
    chart.updateChartForItemsProgress({}, {1}, {Qt::green}, 100, false);
    QVERIFY(!chart.slicesLabelled());
}

void tst_PieChartView::progressIsClampedAndCentred_data()
{
    QTest::addColumn<int>("percentage");
    QTest::addColumn<int>("shown");
    QTest::newRow("inside") << 42 << 42;
    QTest::newRow("below zero") << -5 << 0;
    QTest::newRow("above hundred") << 130 << 100;
}

void tst_PieChartView::progressIsClampedAndCentred()
{
    QFETCH(int, percentage);
    QFETCH(int, shown);
    PieChartView chart;
    chart.updateChartTaskProgress(percentage, QStringLiteral("Progress"));
    QCOMPARE(chart.kind(), PieChartView::Kind::taskProgress);
    QCOMPARE(chart.percentage(), shown);
    QCOMPARE(chart.centerText(), QString::number(shown) + QStringLiteral("%\nProgress"));
}

void tst_PieChartView::drawsTheSliceColoursOnAClearBackground()
{
    // Where the slices go: sliceAngles. The chart sits on a magenta parent, which
    // shows through wherever the chart draws nothing.
    const QColor backdropColor(255, 0, 255);
    QWidget backdrop;
    backdrop.resize(200, 200);
    backdrop.setAutoFillBackground(true);
    QPalette palette = backdrop.palette();
    palette.setColor(QPalette::Window, backdropColor);
    backdrop.setPalette(palette);
    auto *chart = new PieChartView(&backdrop);
    chart->setGeometry(0, 0, 200, 200);
    const QList<QColor> colors{QColor(200, 0, 0), QColor(0, 150, 0), QColor(0, 0, 200)};
    chart->updateChartForItemsProgress({}, {1, 1, 2}, colors, 50, false);
    const QImage image = grabShot(backdrop, QStringLiteral("piechart"));
    QCOMPARE(image.pixelColor(2, 2), backdropColor);
    QCOMPARE(image.pixelColor(130, 130), backdropColor); // the hole
    const QSet<QRgb> drawn = coverage(image).solidColours;
    for (const QColor &color : colors)
        QVERIFY2(std::any_of(drawn.cbegin(), drawn.cend(), [&color](QRgb rgb) { return close(QColor(rgb), color); }),
                 qPrintable(color.name()));
}

void tst_PieChartView::everyImageRenders()
{
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

void tst_PieChartView::lookupByName()
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

void tst_PieChartView::filledWithColorKeepsTheShape()
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

// A recoloured icon draws its image through filledWithColor, whose pixels are
// checked in filledWithColorKeepsTheShape.
void tst_PieChartView::recolouredIconsTakeTheColour()
{
    const QIcon icon = NamedImages::icon(QStringLiteral("paperplane"), QColor(Qt::blue));
    const QImage image = icon.pixmap(QSize(30, 30)).toImage();
    QCOMPARE(image.size(), QSize(30, 30));
    QCOMPARE(coverage(image).solidColours, QSet<QRgb>{qRgb(0, 0, 255)});
    QVERIFY(coverage(image).solid > 10);
    // Disabled icons fade.
    const int strongest = coverage(icon.pixmap(QSize(30, 30), QIcon::Disabled).toImage()).strongestAlpha;
    QVERIFY(strongest > 0 && strongest < 128);
}

QTEST_MAIN(tst_PieChartView)
#include "tst_piechartview.moc"
