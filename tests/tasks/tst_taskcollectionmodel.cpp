#include "tasks/taskcollectionmodel.h"

#include <QAbstractItemModelTester>
#include <QTest>

using namespace ravelin;

namespace {

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

class TestTaskCollectionModel : public QObject
{
    Q_OBJECT

private slots:
    void rolesOfACard_data();
    void rolesOfACard();
    void resetsKeepTheModelConsistent();
};

void TestTaskCollectionModel::rolesOfACard_data()
{
    QTest::addColumn<TaskStatus>("status");
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<bool>("acknowledge");
    QTest::newRow("assigned") << TaskStatus::assigned << "task_assigned" << true;
    QTest::newRow("in progress") << TaskStatus::in_progress << "task_in_progress" << false;
    QTest::newRow("completed") << TaskStatus::complete << "task_complete" << false;
}

void TestTaskCollectionModel::rolesOfACard()
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

void TestTaskCollectionModel::resetsKeepTheModelConsistent()
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

QTEST_GUILESS_MAIN(TestTaskCollectionModel)
#include "tst_taskcollectionmodel.moc"
