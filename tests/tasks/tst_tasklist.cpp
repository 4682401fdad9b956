#include "filter/taskfilterdata.h"
#include "tasks/tasklist.h"

#include <QTest>

using namespace ravelin;

namespace {

struct Row
{
    QString name;
    TaskPriority priority;
    qint64 createdMinutes; // minutes after a fixed moment
};

TaskPtr makeTask(qint64 id, const Row &row)
{
    auto task = std::make_shared<Task>();
    task->id = id;
    task->name = row.name;
    task->priority = row.priority;
    task->dateCreated = QDateTime(QDate(2026, 1, 10), QTime(9, 0), Qt::UTC).addSecs(row.createdMinutes * 60);
    return task;
}

// Tasks with ids 1, 2, 3, ... in server order.
QList<TaskPtr> makeTasks(const QList<Row> &rows)
{
    QList<TaskPtr> tasks;
    for (const Row &row : rows)
        tasks.append(makeTask(tasks.size() + 1, row));
    return tasks;
}

QList<qint64> ids(const QList<TaskPtr> &tasks)
{
    QList<qint64> out;
    for (const TaskPtr &t : tasks)
        out.append(t->id);
    return out;
}

std::shared_ptr<TaskFilterData> filterData(SortKey key, SortOrder order)
{
    auto data = std::make_shared<TaskFilterData>();
    data->sortingConfig = SortConfiguration{key, order};
    return data;
}

} // namespace

Q_DECLARE_METATYPE(Row)

class TestTaskList : public QObject
{
    Q_OBJECT

private slots:
    void sortedTasks_data();
    void sortedTasks();
    void sortsTheGivenTasksAndLeavesTheListAlone();
    void followsTheSharedFilterData();
    void updateTaskCopiesOnlyTheChangedFields();
    void updateTaskWithUnknownIdChangesNothing();
    void updateTaskChangesOnlyTheFirstMatch();
};

void TestTaskList::sortedTasks_data()
{
    QTest::addColumn<QList<Row>>("rows");
    QTest::addColumn<SortKey>("key");
    QTest::addColumn<SortOrder>("order");
    QTest::addColumn<QList<qint64>>("expected");

    const auto H = TaskPriority::highest, Hi = TaskPriority::high, M = TaskPriority::medium, L = TaskPriority::low,
               A = TaskPriority::all;
    const QList<Row> names{{"beta", M, 0}, {"Alpha", M, 0}, {"gamma", M, 0}, {"alpha", M, 0}};
    QTest::newRow("name ascending, case-insensitive, ties keep order")
        << names << SortKey::name << SortOrder::ascending << QList<qint64>{2, 4, 1, 3};
    QTest::newRow("name descending, ties keep order")
        << names << SortKey::name << SortOrder::descending << QList<qint64>{3, 1, 2, 4};
    QTest::newRow("name is not natural order")
        << QList<Row>{{"task 10", M, 0}, {"task 9", M, 0}, {"Task 1", M, 0}} << SortKey::name << SortOrder::ascending
        << QList<qint64>{3, 1, 2};
    QTest::newRow("name by code point, not locale")
        << QList<Row>{{"zebra", M, 0}, {"Émile", M, 0}, {"eve", M, 0}} << SortKey::name << SortOrder::ascending
        << QList<qint64>{3, 1, 2};
    QTest::newRow("name outside the basic plane after the private use area")
        << QList<Row>{{QString::fromUtf8("\xF0\x9F\x9A\x80"), M, 0}, {QString(QChar(0xE000)), M, 0}}
        << SortKey::name << SortOrder::ascending << QList<qint64>{2, 1};

    const QList<Row> priorities{{"a", M, 0}, {"b", H, 0}, {"c", A, 0}, {"d", L, 0}, {"e", H, 0}, {"f", Hi, 0}};
    QTest::newRow("priority descending: highest first")
        << priorities << SortKey::priority << SortOrder::descending << QList<qint64>{2, 5, 6, 1, 4, 3};
    QTest::newRow("priority ascending: least important first")
        << priorities << SortKey::priority << SortOrder::ascending << QList<qint64>{3, 4, 1, 6, 2, 5};

    const QList<Row> dates{{"a", M, 30}, {"b", M, 10}, {"c", M, 30}, {"d", M, 20}};
    QTest::newRow("date ascending, ties keep order")
        << dates << SortKey::date << SortOrder::ascending << QList<qint64>{2, 4, 1, 3};
    QTest::newRow("date descending, ties keep order")
        << dates << SortKey::date << SortOrder::descending << QList<qint64>{1, 3, 4, 2};
    QTest::newRow("empty") << QList<Row>{} << SortKey::date << SortOrder::descending << QList<qint64>{};
}

void TestTaskList::sortedTasks()
{
    QFETCH(QList<Row>, rows);
    QFETCH(SortKey, key);
    QFETCH(SortOrder, order);
    QFETCH(QList<qint64>, expected);
    TaskList list(filterData(key, order));
    list.tasks = makeTasks(rows);
    QCOMPARE(ids(list.sortedTasks()), expected);
}

void TestTaskList::sortsTheGivenTasksAndLeavesTheListAlone()
{
    TaskList list(filterData(SortKey::name, SortOrder::ascending));
    list.tasks = makeTasks({{"b", TaskPriority::low, 0}, {"a", TaskPriority::low, 0}});
    const QList<TaskPtr> others = makeTasks({{"z", TaskPriority::low, 0}, {"y", TaskPriority::low, 0}, {"x", TaskPriority::low, 0}});
    QCOMPARE(ids(list.sortedTasks(others)), (QList<qint64>{3, 2, 1}));
    QCOMPARE(ids(list.tasks), (QList<qint64>{1, 2}));
    // The sorted list holds the same task objects.
    QCOMPARE(list.sortedTasks().first().get(), list.tasks.at(1).get());
}

void TestTaskList::followsTheSharedFilterData()
{
    auto shared = filterData(SortKey::date, SortOrder::ascending);
    TaskList list(shared);
    list.tasks = makeTasks({{"a", TaskPriority::low, 0}, {"b", TaskPriority::low, 5}});
    QCOMPARE(ids(list.sortedTasks()), (QList<qint64>{1, 2}));
    shared->sortingConfig.sortOrder = SortOrder::descending;
    QCOMPARE(ids(list.sortedTasks()), (QList<qint64>{2, 1}));
}

void TestTaskList::updateTaskCopiesOnlyTheChangedFields()
{
    TaskList list(filterData(SortKey::date, SortOrder::descending));
    list.tasks = makeTasks({{"first", TaskPriority::low, 0}, {"second", TaskPriority::high, 0}});
    TaskPtr stored = list.tasks.at(1);
    stored->currentStatus = TaskStatus::assigned;
    stored->progress = TaskProgress{50, 1, 1, 0};
    stored->ownerAssetName = "Ann";

    Task changed;
    changed.id = 2;
    changed.name = "renamed";
    changed.priority = TaskPriority::low;
    changed.currentStatus = TaskStatus::acknowledged;
    changed.updaterUserId = 11;
    changed.isUpdated = true;
    changed.dateUpdated = QDateTime(QDate(2026, 2, 1), QTime(12, 0), Qt::UTC);
    changed.progress = TaskProgress{};
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
    QCOMPARE(stored->dateCreated, makeTask(2, {"", TaskPriority::low, 0})->dateCreated);
    QCOMPARE(list.tasks.at(0)->currentStatus, TaskStatus::unassigned);
}

void TestTaskList::updateTaskWithUnknownIdChangesNothing()
{
    TaskList list(filterData(SortKey::date, SortOrder::descending));
    list.tasks = makeTasks({{"a", TaskPriority::low, 0}});
    Task changed;
    changed.id = 99;
    changed.currentStatus = TaskStatus::complete;
    changed.isUpdated = true;
    list.updateTask(changed);
    QCOMPARE(list.tasks.size(), 1);
    QCOMPARE(list.tasks.first()->currentStatus, TaskStatus::unassigned);
    QVERIFY(!list.tasks.first()->isUpdated);
}

void TestTaskList::updateTaskChangesOnlyTheFirstMatch()
{
    TaskList list(filterData(SortKey::date, SortOrder::descending));
    list.tasks = {makeTask(5, {"a", TaskPriority::low, 0}), makeTask(5, {"b", TaskPriority::low, 0})};
    Task changed;
    changed.id = 5;
    changed.currentStatus = TaskStatus::blocked;
    list.updateTask(changed);
    QCOMPARE(list.tasks.at(0)->currentStatus, TaskStatus::blocked);
    QCOMPARE(list.tasks.at(1)->currentStatus, TaskStatus::unassigned);
}

QTEST_GUILESS_MAIN(TestTaskList)
#include "tst_tasklist.moc"
