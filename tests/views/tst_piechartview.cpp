#include "tasks/piechartview.h"

#include "resources/namedcolors.h"
#include "support/shots.h"

#include <QSignalSpy>
#include <QTest>
#include <QtMath>

using namespace ravelin;
using namespace ravelin::test;

Q_DECLARE_METATYPE(QList<SliceAngles>)

namespace {

// The colour drawn on the ring's middle line at the given QPainter angle, for a
// ring in a square inset by 4 with the given thickness.
QColor ringColorAt(const QImage &image, qreal side, qreal thickness, qreal degrees)
{
    const QRectF outer(4, 4, side - 8, side - 8);
    const qreal radius = outer.width() / 2.0 - thickness / 2.0;
    const qreal radians = qDegreesToRadians(degrees);
    const QPointF point(outer.center().x() + radius * std::cos(radians),
                        outer.center().y() - radius * std::sin(radians));
    return image.pixelColor(point.toPoint());
}

bool close(const QColor &a, const QColor &b)
{
    return qAbs(a.red() - b.red()) <= 3 && qAbs(a.green() - b.green()) <= 3 && qAbs(a.blue() - b.blue()) <= 3
        && a.alpha() == 255;
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
    void drawsSlicesClockwiseFromTwelveOnAClearBackground();
    void progressRingFillsFromTwelve();
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
    QFETCH(QList<SliceAngles>, expected);
    QCOMPARE(ChartPainter::sliceAngles(values, gap), expected);
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

void tst_PieChartView::drawsSlicesClockwiseFromTwelveOnAClearBackground()
{
    // The chart sits on a magenta parent, which must show through wherever the
    // chart draws nothing.
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
    const qreal thickness = 192 * 0.16;
    QVERIFY(close(ringColorAt(image, 200, thickness, 45), colors.at(0))); // first quarter, 12 to 3 o'clock
    QVERIFY(close(ringColorAt(image, 200, thickness, -45), colors.at(1))); // second quarter, 3 to 6
    QVERIFY(close(ringColorAt(image, 200, thickness, 180), colors.at(2))); // the half on the left
    QCOMPARE(image.pixelColor(130, 130), backdropColor); // the hole
}

void tst_PieChartView::progressRingFillsFromTwelve()
{
    PieChartView chart;
    chart.resize(120, 120);
    chart.updateChartTaskProgress(25, QString());
    const QImage image = grabShot(chart, QStringLiteral("piechart-progress"));
    const QColor green = *NamedColors::color(ColorNames::customGreen);
    QVERIFY(close(ringColorAt(image, 120, 112 * 0.12, 45), green));
    QVERIFY(!close(ringColorAt(image, 120, 112 * 0.12, 180), green));
}

QTEST_MAIN(tst_PieChartView)
#include "tst_piechartview.moc"
