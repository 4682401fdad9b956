#include "api/apiqueue.h"
#include "filter/taskfilterdata.h"
#include "support/apiharness.h"
#include "support/fatalerrortrap.h"
#include "support/fixtures.h"
#include "support/logcapture.h"
#include "tasks/dashboardtexts.h"
#include "tasks/dashboardvm.h"
#include "tasks/taskcollectionmodel.h"
#include "tasks/tasklist.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>
#include <QTimeZone>

using namespace ravelin;
using namespace ravelin::test;

namespace {

QStringList sectionHeaders(const QList<TaskSection> &sections)
{
    return mapped(sections, [](const TaskSection &s) {
        const QStringList names = mapped(s.tasks, [](const TaskPtr &t) { return t->name; });
        return TaskStatuses::rawValue(*s.status) + QLatin1Char(':') + names.join(QLatin1Char(','));
    });
}

struct Row
{
    QString name;
    TaskPriority priority = TaskPriority::medium;
    qint64 createdMinutes = 0; // minutes after a fixed moment
};

// A list sorted by the given choice, holding tasks with ids 1, 2, 3, ... in server order.
TaskList makeList(const QList<Row> &rows, SortKey key = SortKey::date, SortOrder order = SortOrder::descending)
{
    auto data = std::make_shared<TaskFilterData>();
    data->sortingConfig = SortConfiguration{key, order};
    TaskList list(data);
    for (const Row &row : rows) {
        auto task = std::make_shared<Task>();
        task->id = list.tasks.size() + 1;
        task->name = row.name;
        task->priority = row.priority;
        task->dateCreated = QDateTime(QDate(2026, 1, 10), QTime(9, 0), Qt::UTC).addSecs(row.createdMinutes * 60);
        list.tasks.append(task);
    }
    return list;
}

QList<qint64> ids(const QList<TaskPtr> &tasks)
{
    return mapped(tasks, [](const TaskPtr &t) { return t->id; });
}

TaskPtr makeTask(qint64 id, TaskStatus status, TaskPriority priority, qint64 progress)
{
    auto task = std::make_shared<Task>();
    task->id = id;
    task->name = QStringLiteral("Task %1").arg(id);
    task->currentStatus = status;
    task->priority = priority;
    task->taskCategory = {4, QStringLiteral("Safety")};
    task->progress.total = progress;
    return task;
}

} // namespace

class TestDashboardVM : public ViewModelTest<DashboardVM>
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { closeViewModel(); }
    void queryFollowsTheFilter();
    void sectionsForMixedStatuses_data();
    void sectionsForMixedStatuses();
    void sectionsFollowTheSortChoiceAndOutliveAFailedFetch();
    void statusChangeMergesIntoList();
    void nextStatusIds_data();
    void nextStatusIds();
    void fetchItemsFillsTheTask();
    void invalidFilterDateStops();
    void destroyedWhileFetching();

    void sortedTasks_data();
    void sortedTasks();
    void sortsTheGivenTasksByTheSharedChoice();
    void updateTaskCopiesOnlyTheChangedFields();
    void rolesOfACard_data();
    void rolesOfACard();
    void resetsKeepTheModelConsistent();

private:
    bool fetch()
    {
        return reported([this](auto done) { m_vm->fetchTasks(done); }) == true;
    }
};

void TestDashboardVM::init()
{
    startHarness({{3, "Pumps"}, {1, "Meters"}});
    m_vm = std::make_unique<DashboardVM>(&m_api->manager, m_api->users, fixedClock(m_api->now));
}

void TestDashboardVM::queryFollowsTheFilter()
{
    // The default filter's window and the query's wire form: tst_taskfilterdata defaults, tst_apidata queryItems.
    m_api->server.on("GET", "/api/tasks/assigned-user/7", CannedResponse{200, answer(QJsonArray{})});
    QCOMPARE(m_vm->filterData()->filteringConfig.dateStart, toDateTime(m_api->now).toLocalTime().addDays(-60));
    TaskFilterData &filter = *m_vm->filterData();
    filter.filteringConfig.selectedPriority = TaskPriority::high;
    filter.filteringConfig.selectedCategory = Settings::current().taskCategory.at(2); // {3, "Pumps"}
    filter.filteringConfig.dateStart = QDateTime::fromMSecsSinceEpoch(1000, QTimeZone::utc());
    filter.filteringConfig.dateEnd = QDateTime::fromMSecsSinceEpoch(2000, QTimeZone::utc());
    filter.sortingConfig = SortConfiguration{SortKey::priority, SortOrder::ascending};
    LogCapture log;
    QVERIFY(fetch());
    const RecordedRequest r = m_api->server.requests().first();
    QCOMPARE(r.path, QStringLiteral("/api/tasks/assigned-user/7"));
    QCOMPARE(mapped(r.query, [](const auto &item) { return item.first + QLatin1Char('=') + item.second; }),
             (QStringList{"dateStart=1000", "dateEnd=2000", "priority=1", "task_category_id=3", "orderBy=priority",
                          "sortBy=ASC"}));
    QVERIFY(log.lines().contains(QStringLiteral("Fetched 0 tasks")));
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

void TestDashboardVM::sectionsFollowTheSortChoiceAndOutliveAFailedFetch()
{
    m_api->server.on("GET", "/api/tasks/assigned-user/7",
                     CannedResponse{200,
                                    answer(QJsonArray{taskJson(1, "beta", 2, 3), taskJson(2, "Alpha", 2, 0),
                                                      taskJson(3, "alpha", 2, 1)})});
    QVERIFY(fetch());
    // A new choice is applied off the main thread; the sections follow when it is in (the orders themselves:
    // sortedTasks).
    QSignalSpy arranged(m_vm.get(), &DashboardVM::sectionsChanged);
    const auto sortedBy = [&](SortKey key, SortOrder order) {
        m_vm->filterData()->sortingConfig = SortConfiguration{key, order};
        m_vm->invalidateSections();
        return arranged.wait(timeoutMs) ? sectionHeaders(m_vm->sections()) : QStringList{"not arranged"};
    };
    QCOMPARE(sortedBy(SortKey::name, SortOrder::ascending), QStringList{"Assigned:Alpha,alpha,beta"});
    QCOMPARE(sortedBy(SortKey::priority, SortOrder::ascending), QStringList{"Assigned:beta,alpha,Alpha"});

    // A failed fetch keeps the tasks and their sections.
    m_api->server.on("GET", "/api/tasks/assigned-user/7", CannedResponse{500, {}});
    LogCapture log;
    QVERIFY(!fetch());
    QCOMPARE(m_vm->taskList().tasks.size(), 3);
    QCOMPARE(sectionHeaders(m_vm->sections()), QStringList{"Assigned:beta,alpha,Alpha"});
    QCOMPARE(log.count(LogCapture::failedFetch(QStringLiteral("tasks"))), 1);
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
    QCOMPARE(pump->updaterUserId, 7); // which fields are taken: updateTaskCopiesOnlyTheChangedFields
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
    QTest::addColumn<qint64>("next"); // 0: none
    QTest::addColumn<bool>("prompts"); // asked before the task opens, with `next` as the new status
    QTest::newRow("assigned acknowledges") << TaskStatus::assigned << qint64(3) << true;
    QTest::newRow("acknowledged starts") << TaskStatus::acknowledged << qint64(4) << true;
    QTest::newRow("blocked goes back to in progress") << TaskStatus::blocked << qint64(4) << true;
    QTest::newRow("in progress completes") << TaskStatus::in_progress << qint64(6) << false;
    QTest::newRow("unassigned") << TaskStatus::unassigned << qint64(0) << false;
    QTest::newRow("completed") << TaskStatus::complete << qint64(0) << false;
}

void TestDashboardVM::nextStatusIds()
{
    QFETCH(TaskStatus, current);
    QFETCH(qint64, next);
    QFETCH(bool, prompts);
    QCOMPARE(DashboardVM::nextStatusId(current).value_or(0), next);
    QCOMPARE(DashboardTexts::promptsBeforeOpening(current), prompts);
    Task task;
    task.currentStatus = current;
    const std::optional<StatusPrompt> prompt = DashboardTexts::statusPrompt(task);
    QCOMPARE(prompt ? prompt->newStatusId : 0, prompts ? next : 0);
}

void TestDashboardVM::fetchItemsFillsTheTask()
{
    m_api->server.on("GET", "/api/items/taskId/5",
                     CannedResponse{200, answer(QJsonArray{itemJson(1, 5, "Seal", 3), itemJson(2, 5, "Gauge", 1)})});
    auto task = std::make_shared<Task>();
    task->id = 5;
    LogCapture log;
    QCOMPARE(reported([&](auto done) { m_vm->fetchItems(task, done); }), true);
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
    m_vm = std::make_unique<DashboardVM>(&m_api->manager, m_api->users, fixedClock(m_api->now));
    QVERIFY(fetch());
    ApiQueue::shared().waitForDone();
    QCoreApplication::processEvents();
    QVERIFY(!called);
}

void TestDashboardVM::sortedTasks_data()
{
    QTest::addColumn<QList<Row>>("rows");
    QTest::addColumn<SortKey>("key");
    QTest::addColumn<SortOrder>("order");
    QTest::addColumn<QList<qint64>>("expected");

    const auto row = [](const char *name, const QList<Row> &rows, SortKey key, SortOrder order,
                        const QList<qint64> &expected) { QTest::newRow(name) << rows << key << order << expected; };
    const QList<Row> names{{"beta"}, {"Alpha"}, {"gamma"}, {"alpha"}};
    row("name ascending, case-insensitive, ties keep order", names, SortKey::name, SortOrder::ascending, {2, 4, 1, 3});
    row("name descending, ties keep order", names, SortKey::name, SortOrder::descending, {3, 1, 2, 4});
    row("name is not natural order", {{"task 10"}, {"task 9"}, {"Task 1"}}, SortKey::name, SortOrder::ascending,
        {3, 1, 2});
    row("name by code point, not locale", {{"zebra"}, {"Émile"}, {"eve"}}, SortKey::name, SortOrder::ascending,
        {3, 1, 2});
    row("name outside the basic plane after the private use area",
        {{QString::fromUtf8("\xF0\x9F\x9A\x80")}, {QString(QChar(0xE000))}}, SortKey::name, SortOrder::ascending,
        {2, 1});

    const auto H = TaskPriority::highest, Hi = TaskPriority::high, M = TaskPriority::medium, L = TaskPriority::low,
               A = TaskPriority::all;
    const QList<Row> priorities{{"a", M}, {"b", H}, {"c", A}, {"d", L}, {"e", H}, {"f", Hi}};
    row("priority descending: highest first", priorities, SortKey::priority, SortOrder::descending, {2, 5, 6, 1, 4, 3});
    row("priority ascending: least important first", priorities, SortKey::priority, SortOrder::ascending,
        {3, 4, 1, 6, 2, 5});

    const QList<Row> dates{{"a", M, 30}, {"b", M, 10}, {"c", M, 30}, {"d", M, 20}};
    row("date ascending, ties keep order", dates, SortKey::date, SortOrder::ascending, {2, 4, 1, 3});
    row("date descending, ties keep order", dates, SortKey::date, SortOrder::descending, {1, 3, 4, 2});
}

void TestDashboardVM::sortedTasks()
{
    QFETCH(QList<Row>, rows);
    QFETCH(SortKey, key);
    QFETCH(SortOrder, order);
    QTEST(ids(makeList(rows, key, order).sortedTasks()), "expected");
}

void TestDashboardVM::sortsTheGivenTasksByTheSharedChoice()
{
    TaskList list = makeList({{"b"}, {"a", TaskPriority::medium, 5}}, SortKey::name, SortOrder::ascending);
    const QList<TaskPtr> others = makeList({{"z"}, {"y"}, {"x"}}).tasks;
    QCOMPARE(ids(list.sortedTasks(others)), (QList<qint64>{3, 2, 1}));
    QCOMPARE(ids(list.tasks), (QList<qint64>{1, 2}));
    // The sorted list holds the same task objects.
    QCOMPARE(list.sortedTasks().first().get(), list.tasks.at(1).get());
    // A choice applied to the shared filter data is used by the next sort.
    list.filterData->sortingConfig = SortConfiguration{SortKey::date, SortOrder::ascending};
    QCOMPARE(ids(list.sortedTasks()), (QList<qint64>{1, 2}));
}

void TestDashboardVM::updateTaskCopiesOnlyTheChangedFields()
{
    TaskList list = makeList({{"first"}, {"second", TaskPriority::high}, {"same id"}});
    list.tasks.at(2)->id = 2;
    const TaskPtr stored = list.tasks.at(1);
    stored->progress = TaskProgress{50, 1, 1, 0};
    stored->ownerAssetName = "Ann";
    const QDateTime created = stored->dateCreated;

    Task changed;
    changed.id = 2;
    changed.name = "renamed";
    changed.priority = TaskPriority::low;
    changed.currentStatus = TaskStatus::acknowledged;
    changed.updaterUserId = 11;
    changed.isUpdated = true;
    changed.dateUpdated = QDateTime(QDate(2026, 2, 1), QTime(12, 0), Qt::UTC);
    changed.dateCreated = QDateTime(QDate(2020, 1, 1), QTime(0, 0), Qt::UTC);
    list.updateTask(changed);

    QCOMPARE(stored->currentStatus, TaskStatus::acknowledged);
    QCOMPARE(stored->updaterUserId, std::optional<qint64>(11));
    QVERIFY(stored->isUpdated);
    QCOMPARE(stored->dateUpdated, changed.dateUpdated);
    QCOMPARE(stored->name, "second");
    QCOMPARE(stored->priority, TaskPriority::high);
    QCOMPARE(stored->progress, (TaskProgress{50, 1, 1, 0}));
    QCOMPARE(stored->ownerAssetName, "Ann");
    QCOMPARE(stored->dateCreated, created);
    // Only the first task with the id takes the change; an unknown id changes nothing.
    QCOMPARE(list.tasks.at(0)->currentStatus, TaskStatus::unassigned);
    QCOMPARE(list.tasks.at(2)->currentStatus, TaskStatus::unassigned);
    changed.id = 99;
    changed.currentStatus = TaskStatus::complete;
    list.updateTask(changed);
    QCOMPARE(list.tasks.size(), 3);
    QCOMPARE(stored->currentStatus, TaskStatus::acknowledged);
    QVERIFY(!list.tasks.at(0)->isUpdated);
}

void TestDashboardVM::rolesOfACard_data()
{
    QTest::addColumn<TaskStatus>("status");
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<bool>("acknowledge");
    QTest::newRow("assigned") << TaskStatus::assigned << "task_assigned" << true;
    QTest::newRow("in progress") << TaskStatus::in_progress << "task_in_progress" << false;
    QTest::newRow("completed") << TaskStatus::complete << "task_complete" << false;
}

void TestDashboardVM::rolesOfACard()
{
    QFETCH(TaskStatus, status);
    QFETCH(QString, identifier);
    TaskCollectionModel model;
    const TaskPtr task = makeTask(3, status, TaskPriority::high, 40);
    model.setTasks({task});
    const QModelIndex card = model.index(0);
    QCOMPARE(card.data().toString(), QStringLiteral("Task 3"));
    QCOMPARE(card.data(TaskCollectionModel::TaskRole).value<TaskPtr>(), task);
    // A screen reader hears the task's name, then its status, priority, category
    // and progress; UI automation finds the card by its identifier.
    QCOMPARE(card.data(Qt::AccessibleTextRole).toString(), QStringLiteral("Task 3"));
    QCOMPARE(card.data(Qt::AccessibleDescriptionRole).toString(),
             QStringLiteral("%1, High priority, Safety, 40% done").arg(TaskStatuses::rawValue(status)));
    QCOMPARE(card.data(TaskCollectionModel::IdentifierRole).toString(), identifier);
    QTEST(card.data(TaskCollectionModel::ShowsAcknowledgeRole).toBool(), "acknowledge");
    QCOMPARE((QStringList{card.data(TaskCollectionModel::CategoryRole).toString(),
                          card.data(TaskCollectionModel::PriorityRole).toString(),
                          card.data(TaskCollectionModel::ProgressRole).toString()}),
             (QStringList{"Safety", "High", "40"}));
    // The task is shared, not copied: a change shows at once.
    task->currentStatus = TaskStatus::blocked;
    QCOMPARE(card.data(TaskCollectionModel::IdentifierRole).toString(), QStringLiteral("task_blocked"));
}

void TestDashboardVM::resetsKeepTheModelConsistent()
{
    TaskCollectionModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QList<TaskPtr> tasks;
    for (int id = 1; id <= 1000; ++id)
        tasks.append(makeTask(id, TaskStatus::assigned, TaskPriority::low, id % 101));
    model.setTasks(tasks);
    QCOMPARE(model.rowCount(), 1000);
    QCOMPARE(model.task(999)->id, 1000);
    QVERIFY(!model.task(1000));
    QVERIFY(!model.index(1000).isValid());
    QVERIFY(!model.index(0).data(1000).isValid());
    model.setTasks({});
    QCOMPARE(model.rowCount(), 0);
    model.setTasks(tasks.mid(10, 3));
    QCOMPARE(model.index(0).data().toString(), QStringLiteral("Task 11"));
}

QTEST_GUILESS_MAIN(TestDashboardVM)
#include "tst_dashboardvm.moc"
