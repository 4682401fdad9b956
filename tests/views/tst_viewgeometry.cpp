#include "views/viewgeometry.h"

#include <QTest>

using namespace ravelin;

class tst_ViewGeometry : public QObject
{
    Q_OBJECT

private slots:
    void roundedBorder_data();
    void roundedBorder();
    void cellFrame_data();
    void cellFrame();
    void fittedCellHeight_data();
    void fittedCellHeight();
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

void tst_ViewGeometry::cellFrame_data()
{
    QTest::addColumn<QRect>("given");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("fitted cell 320 x 100") << QRect(0, 0, 320, 100) << QRect(2, 2, 316, 96);
    QTest::newRow("second row") << QRect(0, 100, 320, 100) << QRect(2, 102, 316, 96);
    QTest::newRow("item row 75 high") << QRect(0, 0, 390, 75) << QRect(2, 2, 386, 71);
}

void tst_ViewGeometry::cellFrame()
{
    QFETCH(QRect, given);
    QFETCH(QRect, expected);
    QCOMPARE(ViewGeometry::cellFrame(given), expected);
    QCOMPARE(ViewGeometry::cellFrame(QRectF(given)), QRectF(expected));
}

void tst_ViewGeometry::fittedCellHeight_data()
{
    QTest::addColumn<qreal>("laidOut");
    QTest::addColumn<qreal>("minHeight");
    QTest::addColumn<qreal>("expected");
    QTest::newRow("60 below the default minimum") << 60.0 << 100.0 << 100.0;
    QTest::newRow("taller than the minimum") << 140.5 << 100.0 << 140.5;
    QTest::newRow("item cell minimum 75") << 44.0 << 75.0 << 75.0;
}

void tst_ViewGeometry::fittedCellHeight()
{
    QFETCH(qreal, laidOut);
    QFETCH(qreal, minHeight);
    QFETCH(qreal, expected);
    QCOMPARE(ViewGeometry::fittedCellHeight(laidOut, minHeight), expected);
}

QTEST_GUILESS_MAIN(tst_ViewGeometry)
#include "tst_viewgeometry.moc"
