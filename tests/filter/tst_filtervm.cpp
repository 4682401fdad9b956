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
    void editsReachTheSharedChoicesOnlyWhenApplied();
    void segmentPositionsAndTitles();
};

void TestFilterVM::editsReachTheSharedChoicesOnlyWhenApplied()
{
    const auto shared = sharedData();
    const TaskFilterData before = *shared;
    {
        FilterVM vm(shared);
        QCOMPARE(vm.filterData().get(), shared.get());
        vm.changedFilterConfig().selectedPriority = TaskPriority::high;
        vm.changedSortConfig().sortKey = SortKey::name;
        // Leaving the screen without applying discards the edits.
    }
    QCOMPARE(shared->filteringConfig, before.filteringConfig);
    QCOMPARE(shared->sortingConfig, before.sortingConfig);

    FilterVM vm(shared);
    QCOMPARE(vm.changedFilterConfig(), before.filteringConfig);
    QCOMPARE(vm.changedSortConfig(), before.sortingConfig);
    vm.changedSortConfig().sortOrder = SortOrder::ascending;
    vm.applyChanges();
    QCOMPARE(shared->filteringConfig, before.filteringConfig);
    QCOMPARE(shared->sortingConfig, (SortConfiguration{SortKey::date, SortOrder::ascending}));

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

void TestFilterVM::segmentPositionsAndTitles()
{
    // Segments in the order of their titles: priorities Highest..Low then All,
    // keys Name, Priority, Date, orders Ascending, Descending.
    const FilterVM vm(sharedData());
    const QList<TaskPriority> priorities{TaskPriority::highest, TaskPriority::high, TaskPriority::medium,
                                         TaskPriority::low, TaskPriority::all};
    for (int i = 0; i < priorities.size(); ++i) {
        QCOMPARE(FilterVM::priorityAt(i), priorities.at(i));
        QCOMPARE(FilterVM::priorityIndex(priorities.at(i)), i);
    }
    QCOMPARE(vm.sortingKeys(), (QList<SortKey>{SortKey::name, SortKey::priority, SortKey::date}));
    QCOMPARE(vm.sortingTypes(), (QList<SortOrder>{SortOrder::ascending, SortOrder::descending}));
    for (int i = 0; i < 3; ++i)
        QCOMPARE(vm.sortKeyIndex(vm.sortKeyAt(i)), i);
    for (int i = 0; i < 2; ++i)
        QCOMPARE(vm.sortOrderIndex(vm.sortOrderAt(i)), i);

    // -1: no segment selected.
    FatalErrorTrap trap;
    for (int index : {-1, 5})
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)FilterVM::priorityAt(index));
    for (int index : {-1, 3})
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)vm.sortKeyAt(index));
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)vm.sortOrderAt(2));
}

QTEST_GUILESS_MAIN(TestFilterVM)
#include "tst_filtervm.moc"
