#include "tasks/piechartview.h"

#include "resources/namedcolors.h"
#include "shots.h"

#include <QFontInfo>
#include <QHBoxLayout>
#include <QSignalSpy>
#include <QTest>
#include <QtMath>

using namespace ravelin;
using namespace ravelin::test;

Q_DECLARE_METATYPE(QList<SliceAngles>)

namespace {

const QStringList statusNames{QStringLiteral("Unassigned"), QStringLiteral("Assigned"), QStringLiteral("Acknowledged"),
                              QStringLiteral("In Progress"), QStringLiteral("Blocked"), QStringLiteral("Completed")};

QList<QColor> statusColors()
{
    QList<QColor> colors;
    for (const QString &name : {ColorNames::customGray, ColorNames::customRed, ColorNames::customOrange,
                                ColorNames::customYellow, ColorNames::customBlue, ColorNames::customGreen})
        colors.append(*NamedColors::color(name));
    return colors;
}

// The colour drawn on the ring's middle line at the given QPainter angle.
QColor ringColorAt(const QImage &image, const QRectF &outer, qreal thickness, qreal degrees)
{
    const qreal radius = outer.width() / 2.0 - thickness / 2.0;
    const qreal radians = qDegreesToRadians(degrees);
    const QPointF point(outer.center().x() + radius * std::cos(radians), outer.center().y() - radius * std::sin(radians));
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
    void taskStatusChartKeepsSlicesAndTitle();
    void missingColoursAndNamesAreFilledIn();
    void progressIsClampedAndCentred_data();
    void progressIsClampedAndCentred();
    void itemsChartShowsTheTotalProgress();
    void chartFontIsLightAtSizeNine();
    void drawsSlicesClockwiseFromTwelveOnAClearBackground();
    void progressRingFillsFromTwelve();
    void render();
};

void tst_PieChartView::sliceAngles_data()
{
    QTest::addColumn<QList<qreal>>("values");
    QTest::addColumn<qreal>("gap");
    QTest::addColumn<QList<SliceAngles>>("expected");

    QTest::newRow("quarter, quarter, half")
        << QList<qreal>{1, 1, 2} << 0.0
        << QList<SliceAngles>{{0, 90, -90, 45}, {1, 0, -90, -45}, {2, -90, -180, -180}};
    QTest::newRow("zeros get no slice")
        << QList<qreal>{0, 3, 0, 1} << 0.0 << QList<SliceAngles>{{1, 90, -270, -45}, {3, -180, -90, -225}};
    QTest::newRow("one value fills the circle") << QList<qreal>{0, 5} << 4.0 << QList<SliceAngles>{{1, 90, -360, -90}};
    QTest::newRow("gaps shorten and centre")
        << QList<qreal>{1, 1} << 4.0 << QList<SliceAngles>{{0, 88, -176, 0}, {1, -92, -176, -180}};
    QTest::newRow("nothing to show") << QList<qreal>{0, 0, 0} << 2.0 << QList<SliceAngles>{};
    QTest::newRow("negative values are ignored") << QList<qreal>{-4, 2, 2} << 0.0
                                                 << QList<SliceAngles>{{1, 90, -180, 0}, {2, -90, -180, -180}};
    QTest::newRow("no values") << QList<qreal>{} << 0.0 << QList<SliceAngles>{};
}

void tst_PieChartView::sliceAngles()
{
    QFETCH(QList<qreal>, values);
    QFETCH(qreal, gap);
    QFETCH(QList<SliceAngles>, expected);

    const QList<SliceAngles> angles = PieChartView::sliceAngles(values, gap);
    QCOMPARE(angles.size(), expected.size());
    for (qsizetype i = 0; i < angles.size(); ++i) {
        QCOMPARE(angles.at(i).index, expected.at(i).index);
        QCOMPARE(angles.at(i).startAngle, expected.at(i).startAngle);
        QCOMPARE(angles.at(i).spanAngle, expected.at(i).spanAngle);
        QCOMPARE(angles.at(i).midAngle, expected.at(i).midAngle);
    }
}

void tst_PieChartView::taskStatusChartKeepsSlicesAndTitle()
{
    PieChartView chart;
    QSignalSpy changed(&chart, &PieChartView::chartChanged);
    const QList<int> counts{0, 3, 1, 2, 0, 4};
    chart.updateChartForTaskStatus(statusNames, counts, statusColors(), QStringLiteral("Tasks"));

    QCOMPARE(changed.count(), 1);
    QCOMPARE(chart.kind(), PieChartView::Kind::taskStatus);
    QCOMPARE(chart.centerText(), QStringLiteral("Tasks"));
    QCOMPARE(chart.slices().size(), 6);
    for (qsizetype i = 0; i < 6; ++i) {
        QCOMPARE(chart.slices().at(i).name, statusNames.at(i));
        QCOMPARE(chart.slices().at(i).value, counts.at(i));
        QCOMPARE(chart.slices().at(i).color, statusColors().at(i));
    }
}

void tst_PieChartView::missingColoursAndNamesAreFilledIn()
{
    PieChartView chart;
    chart.updateChartForTaskStatus({QStringLiteral("Only")}, {1, 2}, {QColor(Qt::red)}, QStringLiteral("Tasks"));
    QCOMPARE(chart.slices().size(), 2);
    QCOMPARE(chart.slices().at(1).name, QString());
    QVERIFY(chart.slices().at(1).color.isValid());
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

void tst_PieChartView::itemsChartShowsTheTotalProgress()
{
    PieChartView chart;
    chart.updateChartForItemsProgress({QStringLiteral("Completed"), QStringLiteral("Open"), QStringLiteral("Incidents")},
                                      {5, 3, 2}, {Qt::green, Qt::gray, Qt::red}, 70, true);
    QCOMPARE(chart.kind(), PieChartView::Kind::itemsProgress);
    QCOMPARE(chart.centerText(), QStringLiteral("70%"));
    QCOMPARE(chart.slices().size(), 3);
    QVERIFY(chart.slicesLabelled());

    chart.updateChartForItemsProgress({}, {1}, {Qt::green}, 100, false);
    QVERIFY(!chart.slicesLabelled());
}

void tst_PieChartView::chartFontIsLightAtSizeNine()
{
    const QFont font = PieChartView::chartFont();
    QCOMPARE(font.pointSize(), 9);
    QCOMPARE(font.families().constFirst(), QStringLiteral("HelveticaNeue-Light"));
    QCOMPARE(font.weight(), QFont::Light);
    // Whatever is installed, the font resolves to a real face.
    QVERIFY(!QFontInfo(font).family().isEmpty());
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
    const QImage image = backdrop.grab().toImage();

    QCOMPARE(image.pixelColor(2, 2), backdropColor);
    // Ring geometry as the chart lays it out: a square inset by 4, ring 16% thick.
    const QRectF outer(4, 4, 192, 192);
    const qreal thickness = 192 * 0.16;
    QVERIFY(close(ringColorAt(image, outer, thickness, 45), colors.at(0)));  // first quarter, 12 to 3 o'clock
    QVERIFY(close(ringColorAt(image, outer, thickness, -45), colors.at(1))); // second quarter, 3 to 6
    QVERIFY(close(ringColorAt(image, outer, thickness, 180), colors.at(2))); // the half on the left
    QCOMPARE(image.pixelColor(outer.center().toPoint() + QPoint(30, 30)), backdropColor); // the hole
}

void tst_PieChartView::progressRingFillsFromTwelve()
{
    PieChartView chart;
    chart.resize(120, 120);
    chart.updateChartTaskProgress(25, QString());
    const QImage image = chart.grab().toImage();
    const QRectF outer(4, 4, 112, 112);
    const qreal thickness = 112 * 0.12;
    const QColor green = *NamedColors::color(ColorNames::customGreen);
    QVERIFY(close(ringColorAt(image, outer, thickness, 45), green));
    QVERIFY(!close(ringColorAt(image, outer, thickness, 180), green));
}

void tst_PieChartView::render()
{
    QWidget card;
    card.resize(390, 200);
    card.setAutoFillBackground(true);
    QPalette palette = card.palette();
    palette.setColor(QPalette::Window, NamedColors::color(ColorNames::viewBackground, QColor(Qt::white)));
    card.setPalette(palette);
    auto *layout = new QHBoxLayout(&card);

    auto *status = new PieChartView(&card);
    status->setLegendVisible(true);
    status->updateChartForTaskStatus(statusNames, {2, 3, 1, 4, 1, 6}, statusColors(), QStringLiteral("Tasks"));
    layout->addWidget(status, 2);

    auto *items = new PieChartView(&card);
    items->updateChartForItemsProgress({QStringLiteral("Completed"), QStringLiteral("Open"), QStringLiteral("Incidents")},
                                       {5, 3, 2},
                                       {*NamedColors::color(ColorNames::customGreen), *NamedColors::color(ColorNames::customGray),
                                        *NamedColors::color(ColorNames::customRed)},
                                       70, true);
    layout->addWidget(items, 1);
    card.show();
    QVERIFY(QTest::qWaitForWindowExposed(&card));
    QVERIFY(!grabShot(card, QStringLiteral("piechart")).isNull());

    PieChartView progress;
    progress.resize(120, 120);
    progress.updateChartTaskProgress(64, QStringLiteral("Progress"));
    QVERIFY(!grabShot(progress, QStringLiteral("piechart-progress")).isNull());
}

QTEST_MAIN(tst_PieChartView)
#include "tst_piechartview.moc"
