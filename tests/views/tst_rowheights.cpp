#include "views/rowheights.h"

#include <QTest>

using namespace ravelin;

// Rows measured, in order: (row, height).
using Measurements = QList<std::pair<int, int>>;

class TestRowHeights : public QObject
{
    Q_OBJECT

private slots:
    void positionsFollowMeasurements_data();
    void positionsFollowMeasurements();
    void rowsComeAndGo();
};

void TestRowHeights::positionsFollowMeasurements_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<Measurements>("measured");

    QTest::newRow("none measured") << 5 << Measurements{};
    QTest::newRow("one taller") << 5 << Measurements{{2, 30}};
    QTest::newRow("several, one twice") << 37 << Measurements{{0, 3}, {36, 50}, {17, 11}, {17, 25}};
}

void TestRowHeights::positionsFollowMeasurements()
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

void TestRowHeights::rowsComeAndGo()
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

QTEST_APPLESS_MAIN(TestRowHeights)
#include "tst_rowheights.moc"
