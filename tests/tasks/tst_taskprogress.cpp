#include "support/fatalerrortrap.h"
#include "tasks/taskprogress.h"

#include <QTest>

#include <limits>

using namespace ravelin;
using ravelin::test::FatalErrorRaised;
using ravelin::test::FatalErrorTrap;

class TestTaskProgress : public QObject
{
    Q_OBJECT

private slots:
    void fromCounts_data();
    void fromCounts();
    void overflowingSumStopsTheProcess();
};

void TestTaskProgress::fromCounts_data()
{
    QTest::addColumn<QList<ItemsCount>>("counts");
    QTest::addColumn<TaskProgress>("expected");
    // expected: total, open, ok, nok
    QTest::newRow("no entries") << QList<ItemsCount>{} << TaskProgress{0, 0, 0, 0};
    QTest::newRow("open first") << QList<ItemsCount>{{3, 4}, {2, 1}, {1, 3}} << TaskProgress{50, 4, 3, 1};
    QTest::newRow("only open") << QList<ItemsCount>{{3, 7}} << TaskProgress{0, 7, 0, 0};
    QTest::newRow("nothing open") << QList<ItemsCount>{{1, 2}, {2, 5}} << TaskProgress{100, 0, 2, 5};
    QTest::newRow("percentage truncates") << QList<ItemsCount>{{1, 199}, {3, 1}} << TaskProgress{99, 1, 199, 0};
    // Only the first entry per status is kept, but every entry counts in the sum.
    QTest::newRow("duplicates") << QList<ItemsCount>{{1, 2}, {3, 2}, {1, 4}, {3, 4}} << TaskProgress{83, 2, 2, 0};
    // Ids of no kept status (4 is "all", 9 is unknown) still count in the sum.
    QTest::newRow("other ids") << QList<ItemsCount>{{3, 1}, {4, 1}, {9, 2}} << TaskProgress{75, 1, 0, 0};
}

void TestTaskProgress::fromCounts()
{
    QFETCH(QList<ItemsCount>, counts);
    QFETCH(TaskProgress, expected);
    QCOMPARE(TaskProgress::fromCounts(counts), expected);
}

void TestTaskProgress::overflowingSumStopsTheProcess()
{
    constexpr qint64 max = std::numeric_limits<qint64>::max();
    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)TaskProgress::fromCounts({{1, max}, {3, 1}}));
    // The sum fits, the percentage arithmetic does not.
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)TaskProgress::fromCounts({{1, max / 10}}));
}

QTEST_GUILESS_MAIN(TestTaskProgress)
#include "tst_taskprogress.moc"
