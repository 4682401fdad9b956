#include "api/clock.h"
#include "api/settings.h"
#include "filter/filtervm.h"
#include "filter/sortconfiguration.h"
#include "filter/taskfilterdata.h"
#include "support/fatalerrortrap.h"

#include <QJsonDocument>
#include <QTest>

#include <ctime>

using namespace ravelin;
using ravelin::test::FatalErrorRaised;
using ravelin::test::FatalErrorTrap;

namespace {

QDateTime utc(int y, int m, int d, int h, int min = 0)
{
    return QDateTime(QDate(y, m, d), QTime(h, min), Qt::UTC);
}

// The shared choices of a dashboard opened on 1 March 2026: all priorities and
// categories, newest first.
std::shared_ptr<TaskFilterData> sharedData()
{
    return TaskFilterData::makeDefault(fixedClock(toTimePoint(utc(2026, 3, 1, 9))), Settings::defaults());
}

} // namespace

class TestTaskFilterData : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void defaults_data();
    void defaults();
    void defaultCategoryIsTheSessionsFirst();
    void configurationsSurviveTheirJsonForm();
    void editsReachTheSharedChoicesOnlyWhenApplied();
    void segmentPositionsAndTitles();
};

void TestTaskFilterData::initTestCase()
{
    // Day arithmetic is done in the local calendar; fix the zone so that the
    // windows below cross a change of daylight saving time.
    qputenv("TZ", "Europe/Berlin");
    tzset();
}

void TestTaskFilterData::defaults_data()
{
    QTest::addColumn<QDateTime>("now");
    QTest::addColumn<QDateTime>("start");
    QTest::addColumn<QDateTime>("end");
    // Summer time began on 29 March 2026: 60 calendar days before 14:00 CEST is
    // 14:00 CET, one hour less than 60 × 24 hours.
    QTest::newRow("across the spring change") << utc(2026, 5, 10, 12) << utc(2026, 3, 11, 13) << utc(2026, 5, 11, 12);
    QTest::newRow("no change") << utc(2026, 7, 31, 22, 30) << utc(2026, 6, 1, 22, 30) << utc(2026, 8, 1, 22, 30);
    // The day before the autumn change: tomorrow at the same local time is 25 hours away.
    QTest::newRow("end across the autumn change")
        << utc(2026, 10, 24, 10) << utc(2026, 8, 25, 10) << utc(2026, 10, 25, 11);
}

void TestTaskFilterData::defaults()
{
    QFETCH(QDateTime, now);
    const auto data = TaskFilterData::makeDefault(fixedClock(toTimePoint(now)), Settings::defaults());
    QTEST(data->filteringConfig.dateStart, "start");
    QTEST(data->filteringConfig.dateEnd, "end");
    QCOMPARE(data->filteringConfig.selectedPriority, TaskPriority::all);
    QCOMPARE(data->filteringConfig.selectedCategory, (TaskCategoryDefinition{0, "All"}));
    QCOMPARE(data->sortingConfig.sortKey, SortKey::date);
    QCOMPARE(data->sortingConfig.sortOrder, SortOrder::descending);
}

void TestTaskFilterData::defaultCategoryIsTheSessionsFirst()
{
    const Clock clock = fixedClock(toTimePoint(utc(2026, 5, 10, 12)));
    Settings settings;
    settings.taskCategory = {{4, "Pumps"}, {0, "All"}};
    QCOMPARE(TaskFilterData::makeDefault(clock, settings)->filteringConfig.selectedCategory,
             (TaskCategoryDefinition{4, "Pumps"}));

    const Settings previous = Settings::current();
    Settings::setCurrent(Settings::fromReceived(settings));
    const auto fromSession = TaskFilterData::makeDefault(clock);
    Settings::setCurrent(previous);
    QCOMPARE(fromSession->filteringConfig.selectedCategory, (TaskCategoryDefinition{0, "All"}));

    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)TaskFilterData::makeDefault(clock, Settings{}));
}

void TestTaskFilterData::configurationsSurviveTheirJsonForm()
{
    TaskFilterConfiguration filter;
    filter.selectedPriority = TaskPriority::medium;
    filter.selectedCategory = {3, "Valves"};
    filter.dateStart = QDateTime(QDate(2026, 1, 1), QTime(8, 30, 0, 250), Qt::UTC);
    filter.dateEnd = QDateTime(QDate(2026, 2, 1), QTime(8, 30), Qt::UTC);
    const QJsonObject encodedFilter = filter.encode();
    QCOMPARE(encodedFilter["selectedPriority"].toString(), "Medium");
    const auto decodedFilter = json::decode<TaskFilterConfiguration>(QJsonDocument(encodedFilter).toJson());
    QCOMPARE(decodedFilter, filter);

    const SortConfiguration sort{SortKey::priority, SortOrder::ascending};
    QCOMPARE(sort.encode(), (QJsonObject{{"sortKey", "Priority"}, {"sortOrder", "Ascending"}}));
    QCOMPARE(json::decode<SortConfiguration>(QJsonDocument(sort.encode()).toJson()), sort);
    QVERIFY_THROWS_EXCEPTION(
        json::DecodingError,
        (void)json::decode<SortConfiguration>(R"({"sortKey":"priority","sortOrder":"Ascending"})"));
}

void TestTaskFilterData::editsReachTheSharedChoicesOnlyWhenApplied()
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

void TestTaskFilterData::segmentPositionsAndTitles()
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

QTEST_GUILESS_MAIN(TestTaskFilterData)
#include "tst_taskfilterdata.moc"
