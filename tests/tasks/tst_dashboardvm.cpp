#include "api/apiqueue.h"
#include "api/settings.h"
#include "support/apiharness.h"
#include "support/fatalerrortrap.h"
#include "support/fixtures.h"
#include "support/logcapture.h"
#include "tasks/dashboardvm.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimeZone>
#include <QUrlQuery>

using namespace ravelin;
using namespace ravelin::test;

namespace {

constexpr int timeoutMs = 10000;

QStringList sectionHeaders(const QList<TaskSection> &sections)
{
    QStringList out;
    for (const TaskSection &s : sections) {
        QStringList names;
        for (const TaskPtr &t : s.tasks)
            names.append(t->name);
        out.append(TaskStatuses::rawValue(*s.status) + QLatin1Char(':') + names.join(QLatin1Char(',')));
    }
    return out;
}

} // namespace

class TestDashboardVM : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void defaultQuery();
    void changedFilterQuery();
    void sectionsForMixedStatuses_data();
    void sectionsForMixedStatuses();
    void sectionsFollowTheSortChoice();
    void failedFetchKeepsTasks();
    void statusChangeMergesIntoList();
    void nextStatusIds_data();
    void nextStatusIds();
    void fetchItemsFillsTheTask();
    void invalidFilterDateStops();
    void destroyedWhileFetching();

private:
    bool fetch();
    std::unique_ptr<ApiHarness> m_api;
    std::unique_ptr<DashboardVM> m_vm;
};

void TestDashboardVM::init()
{
    Settings::setCurrent(Settings::fromReceived(Settings{{}, {}, {{3, "Pumps"}, {1, "Meters"}}}));
    m_api = std::make_unique<ApiHarness>();
    UsersData users;
    users.currentUser.id = 7;
    m_vm = std::make_unique<DashboardVM>(&m_api->manager, users, fixedClock(m_api->now));
}

void TestDashboardVM::cleanup()
{
    m_vm.reset();
    m_api.reset();
    Settings::setCurrent(Settings::defaults());
}

bool TestDashboardVM::fetch()
{
    std::optional<bool> ok;
    m_vm->fetchTasks([&](bool success, std::optional<ManagerErrors>) { ok = success; });
    return QTest::qWaitFor([&] { return ok.has_value(); }, timeoutMs) && *ok;
}

void TestDashboardVM::defaultQuery()
{
    m_api->server.on("GET", "/api/tasks/assigned-user/7", CannedResponse{200, answer(QJsonArray{})});
    LogCapture log;
    QVERIFY(fetch());
    const RecordedRequest r = m_api->server.requests().first();
    QCOMPARE(r.path, QStringLiteral("/api/tasks/assigned-user/7"));

    // Sixty calendar days back to one day ahead, in local time.
    const QDateTime now = toDateTime(m_api->now).toLocalTime();
    QStringList items;
    for (const auto &[name, value] : r.query)
        items.append(name + QLatin1Char('=') + value);
    const QStringList expected{QStringLiteral("dateStart=%1").arg(now.addDays(-60).toMSecsSinceEpoch()),
                               QStringLiteral("dateEnd=%1").arg(now.addDays(1).toMSecsSinceEpoch()),
                               QStringLiteral("orderBy=date_created"), QStringLiteral("sortBy=DESC")};
    QCOMPARE(items, expected);
    QVERIFY(m_vm->sections().isEmpty());
    QVERIFY(log.lines().contains(QStringLiteral("Fetched 0 tasks")));
}

void TestDashboardVM::changedFilterQuery()
{
    m_api->server.on("GET", "/api/tasks/assigned-user/7", CannedResponse{200, answer(QJsonArray{})});
    TaskFilterData &filter = *m_vm->filterData();
    filter.filteringConfig.selectedPriority = TaskPriority::high;
    filter.filteringConfig.selectedCategory = Settings::current().taskCategory.at(2); // {3, "Pumps"}
    filter.filteringConfig.dateStart = QDateTime::fromMSecsSinceEpoch(1000, QTimeZone::utc());
    filter.filteringConfig.dateEnd = QDateTime::fromMSecsSinceEpoch(2000, QTimeZone::utc());
    filter.sortingConfig = SortConfiguration{SortKey::priority, SortOrder::ascending};
    QVERIFY(fetch());
    const RecordedRequest r = m_api->server.requests().first();
    QCOMPARE(r.queryValue("dateStart"), QStringLiteral("1000"));
    QCOMPARE(r.queryValue("dateEnd"), QStringLiteral("2000"));
    QCOMPARE(r.queryValue("priority"), QStringLiteral("1"));
    QCOMPARE(r.queryValue("task_category_id"), QStringLiteral("3"));
    QCOMPARE(r.queryValue("orderBy"), QStringLiteral("priority"));
    QCOMPARE(r.queryValue("sortBy"), QStringLiteral("ASC"));
}

void TestDashboardVM::sectionsForMixedStatuses_data()
{
    QTest::addColumn<QJsonArray>("tasks");
    QTest::addColumn<QStringList>("sections");
    QTest::newRow("statuses in declaration order, newest first within")
        << QJsonArray{taskJson(1, "Meter A", 6, 2, "2026-11-01T08:00:00.000Z"),
                      taskJson(2, "Pump B", 2, 2, "2026-11-03T08:00:00.000Z"),
                      taskJson(3, "Valve C", 4, 2, "2026-11-02T08:00:00.000Z"),
                      taskJson(4, "Hydrant D", 2, 2, "2026-11-04T08:00:00.000Z"),
                      taskJson(5, "Tank E", 1, 2, "2026-11-05T08:00:00.000Z")}
        << QStringList{"Unassigned:Tank E", "Assigned:Hydrant D,Pump B", "In Progress:Valve C", "Completed:Meter A"};
    QTest::newRow("one status, one section") << QJsonArray{taskJson(1, "A", 4, 2, "2026-11-01T08:00:00.000Z"),
                                                           taskJson(2, "B", 4, 2, "2026-11-02T08:00:00.000Z")}
                                             << QStringList{"In Progress:B,A"};
    QTest::newRow("no tasks, no sections") << QJsonArray{} << QStringList{};
}

void TestDashboardVM::sectionsForMixedStatuses()
{
    QFETCH(QJsonArray, tasks);
    QFETCH(QStringList, sections);
    m_api->server.on("GET", "/api/tasks/assigned-user/7", CannedResponse{200, answer(tasks)});
    QVERIFY(fetch());
    QCOMPARE(sectionHeaders(m_vm->sections()), sections);
    // Server order is what the list keeps; sorting happens only for sections.
    QCOMPARE(m_vm->taskList().tasks.size(), tasks.size());
    if (!tasks.isEmpty())
        QCOMPARE(m_vm->taskList().tasks.first()->id, tasks.first().toObject().value("id").toInteger());
}

void TestDashboardVM::sectionsFollowTheSortChoice()
{
    m_api->server.on("GET", "/api/tasks/assigned-user/7",
                     CannedResponse{200,
                                    answer(QJsonArray{taskJson(1, "beta", 2, 3), taskJson(2, "Alpha", 2, 0),
                                                      taskJson(3, "alpha", 2, 1)})});
    QVERIFY(fetch());
    // A new choice is applied off the main thread; the sections follow when it is in.
    QSignalSpy arranged(m_vm.get(), &DashboardVM::sectionsChanged);
    const auto sortedBy = [&](SortKey key, SortOrder order) {
        m_vm->filterData()->sortingConfig = SortConfiguration{key, order};
        m_vm->invalidateSections();
        return arranged.wait(timeoutMs) ? sectionHeaders(m_vm->sections()) : QStringList{"not arranged"};
    };
    QCOMPARE(sortedBy(SortKey::name, SortOrder::ascending), QStringList{"Assigned:Alpha,alpha,beta"});
    QCOMPARE(sortedBy(SortKey::priority, SortOrder::descending), QStringList{"Assigned:Alpha,alpha,beta"});
    QCOMPARE(sortedBy(SortKey::priority, SortOrder::ascending), QStringList{"Assigned:beta,alpha,Alpha"});
}

void TestDashboardVM::failedFetchKeepsTasks()
{
    m_api->server.on("GET", "/api/tasks/assigned-user/7", CannedResponse{200, answer(QJsonArray{taskJson(1, "A", 2)})});
    QVERIFY(fetch());
    m_api->server.on("GET", "/api/tasks/assigned-user/7", CannedResponse{500, {}});
    LogCapture log;
    QVERIFY(!fetch());
    QCOMPARE(m_vm->taskList().tasks.size(), 1);
    QCOMPARE(log.linesStartingWith(QStringLiteral("We got a failure trying to get the tasks. The error we got was: "))
                 .size(),
             1);
}

void TestDashboardVM::statusChangeMergesIntoList()
{
    m_api->server.on("GET", "/api/tasks/assigned-user/7",
                     CannedResponse{200, answer(QJsonArray{taskJson(5, "Pump", 2), taskJson(6, "Valve", 2)})});
    QVERIFY(fetch());
    QJsonObject changed = taskJson(5, "Renamed on server", 3);
    changed["updaterUserId"] = 7;
    changed["dateUpdated"] = "2026-11-20T09:00:00.000Z";
    m_api->server.on("PUT", "/api/task/5", CannedResponse{200, answer(changed)});
    m_api->server.on("PUT", "/api/task/99", CannedResponse{200, answer(taskJson(99, "Gone", 4))});

    const TaskPtr pump = m_vm->taskList().tasks.first();
    std::optional<std::optional<TaskStatus>> status;
    m_vm->updateTaskStatus(pump, 3, [&](std::optional<TaskStatus> s) { status = s; });
    QTRY_VERIFY_WITH_TIMEOUT(status.has_value(), timeoutMs);
    QCOMPARE(*status, TaskStatus::acknowledged);
    QCOMPARE(pump->currentStatus, TaskStatus::acknowledged);
    QCOMPARE(pump->updaterUserId, 7);
    QCOMPARE(pump->name, QStringLiteral("Pump")); // only status, updater, flag and update date are taken
    // The task moves to its new section once the list is arranged again.
    QTRY_COMPARE_WITH_TIMEOUT(sectionHeaders(m_vm->sections()), (QStringList{"Assigned:Valve", "Acknowledged:Pump"}),
                              timeoutMs);

    // A task no longer in the list still reports the answer's status.
    auto gone = std::make_shared<Task>();
    gone->id = 99;
    status.reset();
    m_vm->updateTaskStatus(gone, 4, [&](std::optional<TaskStatus> s) { status = s; });
    QTRY_VERIFY_WITH_TIMEOUT(status.has_value(), timeoutMs);
    QCOMPARE(*status, TaskStatus::in_progress);
    QCOMPARE(m_vm->taskList().tasks.size(), 2);
}

void TestDashboardVM::nextStatusIds_data()
{
    QTest::addColumn<TaskStatus>("current");
    QTest::addColumn<qint64>("next"); // 0: no prompt
    QTest::newRow("assigned acknowledges") << TaskStatus::assigned << qint64(3);
    QTest::newRow("acknowledged starts") << TaskStatus::acknowledged << qint64(4);
    QTest::newRow("blocked goes back to in progress") << TaskStatus::blocked << qint64(4);
    QTest::newRow("in progress completes") << TaskStatus::in_progress << qint64(6);
    QTest::newRow("unassigned") << TaskStatus::unassigned << qint64(0);
    QTest::newRow("completed") << TaskStatus::complete << qint64(0);
}

void TestDashboardVM::nextStatusIds()
{
    QFETCH(TaskStatus, current);
    QFETCH(qint64, next);
    QCOMPARE(DashboardVM::nextStatusId(current).value_or(0), next);
}

void TestDashboardVM::fetchItemsFillsTheTask()
{
    m_api->server.on("GET", "/api/items/taskId/5",
                     CannedResponse{200, answer(QJsonArray{itemJson(1, 5, "Seal", 3), itemJson(2, 5, "Gauge", 1)})});
    auto task = std::make_shared<Task>();
    task->id = 5;
    LogCapture log;
    std::optional<bool> ok;
    m_vm->fetchItems(task, [&](bool success) { ok = success; });
    QTRY_VERIFY_WITH_TIMEOUT(ok.has_value(), timeoutMs);
    QVERIFY(*ok);
    QCOMPARE(task->itemList.items.size(), 2);
    QVERIFY(log.lines().contains(QStringLiteral("Fetched 2 items")));
}

void TestDashboardVM::invalidFilterDateStops()
{
    m_vm->filterData()->filteringConfig.dateStart = QDateTime();
    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)m_vm->queryParams());
}

void TestDashboardVM::destroyedWhileFetching()
{
    m_api->server.on("GET", "/api/tasks/assigned-user/7", [](const RecordedRequest &) {
        QThread::msleep(100);
        return CannedResponse{200, answer(QJsonArray{taskJson(1, "A", 2)})};
    });
    bool called = false;
    m_vm->fetchTasks([&](bool, std::optional<ManagerErrors>) { called = true; });
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requestCount(), 1, timeoutMs);
    m_vm.reset();
    // A later fetch answered: the earlier answer has come and gone.
    UsersData users;
    users.currentUser.id = 7;
    m_vm = std::make_unique<DashboardVM>(&m_api->manager, users, fixedClock(m_api->now));
    QVERIFY(fetch());
    ApiQueue::shared().waitForDone();
    QCoreApplication::processEvents();
    QVERIFY(!called);
}

QTEST_GUILESS_MAIN(TestDashboardVM)
#include "tst_dashboardvm.moc"
