#include "views/viewgeometry.h"

#include <QTest>

using namespace ravelin;

class tst_ViewGeometry : public QObject
{
    Q_OBJECT

private slots:
    void roundedBorder_data();
    void roundedBorder();
    void cellFrameAndHeight();
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

QTEST_GUILESS_MAIN(tst_ViewGeometry)
#include "tst_viewgeometry.moc"
