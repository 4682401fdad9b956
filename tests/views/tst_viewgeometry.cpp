#include "resources/namedcolors.h"
#include "views/rowheights.h"
#include "views/viewgeometry.h"

#include <QTest>

using namespace ravelin;

// Rows measured, in order: (row, height).
using Measurements = QList<std::pair<int, int>>;

class tst_ViewGeometry : public QObject
{
    Q_OBJECT

private slots:
    void roundedBorder_data();
    void roundedBorder();
    void cellFrameAndHeight();
    void positionsFollowMeasurements_data();
    void positionsFollowMeasurements();
    void rowsComeAndGo();
    void cleanup();
    void everyAssetHasBothVariants();
    void unknownNameGivesNothingOrTheFallback();
    void appearanceSelectsTheVariant();
};

void tst_ViewGeometry::roundedBorder_data()
{
    QTest::addColumn<QRectF>("bounds");
    QTest::addColumn<qreal>("cornerRadius");
    QTest::addColumn<qreal>("borderWidth");
    QTest::addColumn<QRectF>("expectedRect");
    QTest::addColumn<qreal>("expectedRadius");

    QTest::newRow("width 4, radius 10") << QRectF(0, 0, 200, 100) << 10.0 << 4.0 << QRectF(2, 2, 196, 96) << 8.0;
    QTest::newRow("no border") << QRectF(0, 0, 200, 100) << 10.0 << 0.0 << QRectF(0, 0, 200, 100) << 10.0;
    QTest::newRow("hairline") << QRectF(0, 0, 50, 50) << 6.0 << 1.0 << QRectF(0.5, 0.5, 49, 49) << 5.5;
    QTest::newRow("offset bounds") << QRectF(10, 20, 100, 40) << 12.0 << 6.0 << QRectF(13, 23, 94, 34) << 9.0;
    QTest::newRow("border wider than the corner") << QRectF(0, 0, 80, 40) << 1.0 << 8.0 << QRectF(4, 4, 72, 32) << 0.0;
}

void tst_ViewGeometry::roundedBorder()
{
    QFETCH(QRectF, bounds);
    QFETCH(qreal, cornerRadius);
    QFETCH(qreal, borderWidth);
    QFETCH(QRectF, expectedRect);
    QFETCH(qreal, expectedRadius);
    QCOMPARE(ViewGeometry::roundedBorder(bounds, cornerRadius, borderWidth),
             (RoundedBorder{expectedRect, expectedRadius, borderWidth}));
}

void tst_ViewGeometry::cellFrameAndHeight()
{
    // A 2-pixel gap on every side, at any position.
    QCOMPARE(ViewGeometry::cellFrame(QRect(0, 0, 320, 100)), QRect(2, 2, 316, 96));
    QCOMPARE(ViewGeometry::cellFrame(QRect(0, 100, 390, 75)), QRect(2, 102, 386, 71));
    QCOMPARE(ViewGeometry::cellFrame(QRectF(0, 100, 390, 75)), QRectF(2, 102, 386, 71));
    // Never lower than the minimum.
    QCOMPARE(ViewGeometry::fittedCellHeight(60, 100), 100.0);
    QCOMPARE(ViewGeometry::fittedCellHeight(140.5, 100), 140.5);
    QCOMPARE(ViewGeometry::fittedCellHeight(44, 75), 75.0);
}

void tst_ViewGeometry::positionsFollowMeasurements_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<Measurements>("measured");

    QTest::newRow("none measured") << 5 << Measurements{};
    QTest::newRow("one taller") << 5 << Measurements{{2, 30}};
    QTest::newRow("several, one twice") << 37 << Measurements{{0, 3}, {36, 50}, {17, 11}, {17, 25}};
}

void tst_ViewGeometry::positionsFollowMeasurements()
{
    QFETCH(int, count);
    QFETCH(Measurements, measured);
    RowHeights heights;
    heights.reset(count, 10);
    QList<int> expected(count, 10);
    for (const auto &[row, height] : measured) {
        QCOMPARE(heights.setMeasured(row, height), height - expected.at(row));
        expected[row] = height;
    }
    // Every row's top, and the row at each of its first and last pixels.
    int top = 0;
    for (int row = 0; row < count; ++row) {
        QCOMPARE(heights.top(row), top);
        QCOMPARE(heights.rowAt(top), row);
        QCOMPARE(heights.rowAt(top + expected.at(row) - 1), row);
        top += expected.at(row);
    }
    QCOMPARE(heights.total(), top);
    QCOMPARE(heights.rowAt(top), -1);
    QCOMPARE(heights.rowAt(-1), -1);
}

void tst_ViewGeometry::rowsComeAndGo()
{
    RowHeights heights;
    heights.reset(4, 10);
    heights.setMeasured(1, 40);
    heights.setMeasured(3, 20);
    heights.insertRows(1, 2); // two new rows at the estimate before the tall one
    QCOMPARE(heights.count(), 6);
    QCOMPARE(heights.top(3), 30);
    QVERIFY(heights.isMeasured(3) && !heights.isMeasured(1));
    heights.removeRows(0, 3);
    QCOMPARE(heights.total(), 40 + 10 + 20);
    QCOMPARE(heights.measuredCount(), 2);
    // A dropped measurement keeps counting with its last height.
    heights.dropAll();
    QCOMPARE(heights.measuredCount(), 0);
    QCOMPARE(heights.total(), 70);
}

void tst_ViewGeometry::cleanup()
{
    NamedColors::setAppearance(Appearance::light);
}

void tst_ViewGeometry::everyAssetHasBothVariants()
{
    for (const QString &name : NamedColors::names()) {
        const std::optional<QColor> light = NamedColors::color(name, Appearance::light);
        const std::optional<QColor> dark = NamedColors::color(name, Appearance::dark);
        QVERIFY2(light && light->isValid() && light->alpha() == 255, qPrintable(name));
        QVERIFY2(dark && dark->isValid(), qPrintable(name));
        QVERIFY(NamedColors::contains(name));
    }
}

void tst_ViewGeometry::unknownNameGivesNothingOrTheFallback()
{
    QVERIFY(!NamedColors::color(QStringLiteral("CustomPurple")).has_value());
    QVERIFY(!NamedColors::color(QStringLiteral("label_text")).has_value()); // names are case-sensitive
    QVERIFY(!NamedColors::contains(QStringLiteral("CustomPurple")));

    const QColor fallback(1, 2, 3);
    QCOMPARE(NamedColors::color(QStringLiteral("CustomPurple"), fallback), fallback);
    QCOMPARE(NamedColors::color(ColorNames::customRed, fallback), *NamedColors::color(ColorNames::customRed));
    QVERIFY(NamedColors::color(ColorNames::customRed, fallback) != fallback);
}

void tst_ViewGeometry::appearanceSelectsTheVariant()
{
    const QColor lightBackground = *NamedColors::color(ColorNames::viewBackground, Appearance::light);
    const QColor darkBackground = *NamedColors::color(ColorNames::viewBackground, Appearance::dark);
    // Backgrounds and text swap brightness between the two appearances.
    QVERIFY(lightBackground.lightnessF() > 0.9);
    QVERIFY(darkBackground.lightnessF() < 0.2);
    QVERIFY(NamedColors::color(ColorNames::labelText, Appearance::light)->lightnessF() < 0.3);
    QVERIFY(NamedColors::color(ColorNames::labelText, Appearance::dark)->lightnessF() > 0.8);

    QCOMPARE(*NamedColors::color(ColorNames::viewBackground), lightBackground);
    NamedColors::setAppearance(Appearance::dark);
    QCOMPARE(*NamedColors::color(ColorNames::viewBackground), darkBackground);
}

QTEST_GUILESS_MAIN(tst_ViewGeometry)
#include "tst_viewgeometry.moc"
