#include "filter/filtervm.h"
#include "support/fatalerrortrap.h"

#include <QTest>

using namespace ravelin;
using ravelin::test::FatalErrorRaised;
using ravelin::test::FatalErrorTrap;

namespace {

std::shared_ptr<TaskFilterData> sharedData()
{
    auto data = std::make_shared<TaskFilterData>();
    data->filteringConfig.selectedPriority = TaskPriority::all;
    data->filteringConfig.selectedCategory = {0, "All"};
    data->filteringConfig.dateStart = QDateTime(QDate(2026, 1, 1), QTime(9, 0), Qt::UTC);
    data->filteringConfig.dateEnd = QDateTime(QDate(2026, 3, 2), QTime(9, 0), Qt::UTC);
    data->sortingConfig = SortConfiguration{SortKey::date, SortOrder::descending};
    return data;
}

} // namespace

class TestFilterVM : public QObject
{
    Q_OBJECT

private slots:
    void startsWithCopiesOfTheSharedChoices();
    void editsStayLocalUntilApplied();
    void applyingOnlyTheSortOrder();
    void applyingEverything();
    void segmentPositions_data();
    void segmentPositions();
    void segmentOutsideTheControlStopsTheProcess_data();
    void segmentOutsideTheControlStopsTheProcess();
};

void TestFilterVM::startsWithCopiesOfTheSharedChoices()
{
    const auto shared = sharedData();
    const FilterVM vm(shared);
    QCOMPARE(vm.sortingKeys(), (QList<SortKey>{SortKey::name, SortKey::priority, SortKey::date}));
    QCOMPARE(vm.sortingTypes(), (QList<SortOrder>{SortOrder::ascending, SortOrder::descending}));
    QCOMPARE(vm.changedFilterConfig(), shared->filteringConfig);
    QCOMPARE(vm.changedSortConfig(), shared->sortingConfig);
    QCOMPARE(vm.filterData().get(), shared.get());
}

void TestFilterVM::editsStayLocalUntilApplied()
{
    const auto shared = sharedData();
    const TaskFilterData before = *shared;
    {
        FilterVM vm(shared);
        vm.changedFilterConfig().selectedPriority = TaskPriority::high;
        vm.changedSortConfig().sortKey = SortKey::name;
        // Leaving the screen without applying discards the edits.
    }
    QCOMPARE(shared->filteringConfig, before.filteringConfig);
    QCOMPARE(shared->sortingConfig, before.sortingConfig);
}

void TestFilterVM::applyingOnlyTheSortOrder()
{
    const auto shared = sharedData();
    const TaskFilterData before = *shared;
    FilterVM vm(shared);
    vm.changedSortConfig().sortOrder = SortOrder::ascending;
    vm.applyChanges();
    QCOMPARE(shared->filteringConfig, before.filteringConfig);
    QCOMPARE(shared->sortingConfig.sortKey, before.sortingConfig.sortKey);
    QCOMPARE(shared->sortingConfig.sortOrder, SortOrder::ascending);
}

void TestFilterVM::applyingEverything()
{
    const auto shared = sharedData();
    FilterVM vm(shared);
    TaskFilterConfiguration wanted;
    wanted.selectedPriority = TaskPriority::low;
    wanted.selectedCategory = {4, "Pumps"};
    wanted.dateStart = QDateTime(QDate(2025, 12, 1), QTime(0, 0), Qt::UTC);
    wanted.dateEnd = QDateTime(QDate(2025, 12, 24), QTime(0, 0), Qt::UTC);
    vm.changedFilterConfig() = wanted;
    vm.changedSortConfig() = SortConfiguration{SortKey::priority, SortOrder::ascending};

    // A change made to the shared object after the visit began is overwritten.
    shared->filteringConfig.selectedPriority = TaskPriority::medium;
    vm.applyChanges();
    QCOMPARE(shared->filteringConfig, wanted);
    QCOMPARE(shared->sortingConfig, (SortConfiguration{SortKey::priority, SortOrder::ascending}));
}

void TestFilterVM::segmentPositions_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("priority");
    QTest::addColumn<QString>("sortKey");   // empty: no such segment
    QTest::addColumn<QString>("sortOrder"); // empty: no such segment
    QTest::newRow("0") << 0 << "Highest" << "Name" << "Ascending";
    QTest::newRow("1") << 1 << "High" << "Priority" << "Descending";
    QTest::newRow("2") << 2 << "Medium" << "Date" << "";
    QTest::newRow("3") << 3 << "Low" << "" << "";
    QTest::newRow("4") << 4 << "All" << "" << "";
}

void TestFilterVM::segmentPositions()
{
    QFETCH(int, index);
    QFETCH(QString, priority);
    QFETCH(QString, sortKey);
    QFETCH(QString, sortOrder);
    const FilterVM vm(sharedData());
    const TaskPriority p = FilterVM::priorityAt(index);
    QCOMPARE(TaskPriorities::rawValue(p), priority);
    QCOMPARE(FilterVM::priorityIndex(p), index);
    if (!sortKey.isEmpty()) {
        QCOMPARE(SortKeys::rawValue(vm.sortKeyAt(index)), sortKey);
        QCOMPARE(vm.sortKeyIndex(vm.sortKeyAt(index)), index);
    }
    if (!sortOrder.isEmpty()) {
        QCOMPARE(SortOrders::rawValue(vm.sortOrderAt(index)), sortOrder);
        QCOMPARE(vm.sortOrderIndex(vm.sortOrderAt(index)), index);
    }
}

void TestFilterVM::segmentOutsideTheControlStopsTheProcess_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<int>("index");
    QTest::newRow("priority none selected") << "priority" << -1;
    QTest::newRow("priority 5") << "priority" << 5;
    QTest::newRow("sort key 3") << "key" << 3;
    QTest::newRow("sort key none selected") << "key" << -1;
    QTest::newRow("sort order 2") << "order" << 2;
}

void TestFilterVM::segmentOutsideTheControlStopsTheProcess()
{
    QFETCH(QString, control);
    QFETCH(int, index);
    const FilterVM vm(sharedData());
    FatalErrorTrap trap;
    if (control == "priority")
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)FilterVM::priorityAt(index));
    else if (control == "key")
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)vm.sortKeyAt(index));
    else
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)vm.sortOrderAt(index));
}

QTEST_GUILESS_MAIN(TestFilterVM)
#include "tst_filtervm.moc"
