#include "filter/taskfilterdata.h"
#include "tasks/taskcollectionmodel.h"
#include "tasks/tasklist.h"

#include <QAbstractItemModelTester>
#include <QTest>

using namespace ravelin;

namespace {

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
    QList<qint64> out;
    for (const TaskPtr &t : tasks)
        out.append(t->id);
    return out;
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

class TestTaskList : public QObject
{
    Q_OBJECT

private slots:
    void sortedTasks_data();
    void sortedTasks();
    void sortsTheGivenTasksByTheSharedChoice();
    void updateTaskCopiesOnlyTheChangedFields();
    void rolesOfACard_data();
    void rolesOfACard();
    void resetsKeepTheModelConsistent();
};

void TestTaskList::sortedTasks_data()
{
    QTest::addColumn<QList<Row>>("rows");
    QTest::addColumn<SortKey>("key");
    QTest::addColumn<SortOrder>("order");
    QTest::addColumn<QList<qint64>>("expected");

    const QList<Row> names{{"beta"}, {"Alpha"}, {"gamma"}, {"alpha"}};
    QTest::newRow("name ascending, case-insensitive, ties keep order")
        << names << SortKey::name << SortOrder::ascending << QList<qint64>{2, 4, 1, 3};
    QTest::newRow("name descending, ties keep order")
        << names << SortKey::name << SortOrder::descending << QList<qint64>{3, 1, 2, 4};
    QTest::newRow("name is not natural order") << QList<Row>{{"task 10"}, {"task 9"}, {"Task 1"}} << SortKey::name
                                               << SortOrder::ascending << QList<qint64>{3, 1, 2};
    QTest::newRow("name by code point, not locale")
        << QList<Row>{{"zebra"}, {"Émile"}, {"eve"}} << SortKey::name << SortOrder::ascending << QList<qint64>{3, 1, 2};
    QTest::newRow("name outside the basic plane after the private use area")
        << QList<Row>{{QString::fromUtf8("\xF0\x9F\x9A\x80")}, {QString(QChar(0xE000))}} << SortKey::name
        << SortOrder::ascending << QList<qint64>{2, 1};

    const auto H = TaskPriority::highest, Hi = TaskPriority::high, M = TaskPriority::medium, L = TaskPriority::low,
               A = TaskPriority::all;
    const QList<Row> priorities{{"a", M}, {"b", H}, {"c", A}, {"d", L}, {"e", H}, {"f", Hi}};
    QTest::newRow("priority descending: highest first")
        << priorities << SortKey::priority << SortOrder::descending << QList<qint64>{2, 5, 6, 1, 4, 3};
    QTest::newRow("priority ascending: least important first")
        << priorities << SortKey::priority << SortOrder::ascending << QList<qint64>{3, 4, 1, 6, 2, 5};

    const QList<Row> dates{{"a", M, 30}, {"b", M, 10}, {"c", M, 30}, {"d", M, 20}};
    QTest::newRow("date ascending, ties keep order")
        << dates << SortKey::date << SortOrder::ascending << QList<qint64>{2, 4, 1, 3};
    QTest::newRow("date descending, ties keep order")
        << dates << SortKey::date << SortOrder::descending << QList<qint64>{1, 3, 4, 2};
}

void TestTaskList::sortedTasks()
{
    QFETCH(QList<Row>, rows);
    QFETCH(SortKey, key);
    QFETCH(SortOrder, order);
    QTEST(ids(makeList(rows, key, order).sortedTasks()), "expected");
}

void TestTaskList::sortsTheGivenTasksByTheSharedChoice()
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

void TestTaskList::updateTaskCopiesOnlyTheChangedFields()
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

void TestTaskList::rolesOfACard_data()
{
    QTest::addColumn<TaskStatus>("status");
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<bool>("acknowledge");
    QTest::newRow("assigned") << TaskStatus::assigned << "task_assigned" << true;
    QTest::newRow("in progress") << TaskStatus::in_progress << "task_in_progress" << false;
    QTest::newRow("completed") << TaskStatus::complete << "task_complete" << false;
}

void TestTaskList::rolesOfACard()
{
    QFETCH(TaskStatus, status);
    QFETCH(QString, identifier);
    QFETCH(bool, acknowledge);
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
    QCOMPARE(card.data(TaskCollectionModel::ShowsAcknowledgeRole).toBool(), acknowledge);
    QCOMPARE((QStringList{card.data(TaskCollectionModel::CategoryRole).toString(),
                          card.data(TaskCollectionModel::PriorityRole).toString(),
                          card.data(TaskCollectionModel::ProgressRole).toString()}),
             (QStringList{"Safety", "High", "40"}));
    // The task is shared, not copied: a change shows at once.
    task->currentStatus = TaskStatus::blocked;
    QCOMPARE(card.data(TaskCollectionModel::IdentifierRole).toString(), QStringLiteral("task_blocked"));
}

void TestTaskList::resetsKeepTheModelConsistent()
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

QTEST_GUILESS_MAIN(TestTaskList)
#include "tst_tasklist.moc"
