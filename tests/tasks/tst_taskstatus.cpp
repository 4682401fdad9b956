#include "support/fatalerrortrap.h"
#include "tasks/taskpriority.h"
#include "tasks/taskstatus.h"

#include <QTest>

using namespace ravelin;
using ravelin::test::FatalErrorRaised;
using ravelin::test::FatalErrorTrap;

// TaskStatus and TaskPriority: texts, wire ids and ranks.
class TestTaskStatus : public QObject
{
    Q_OBJECT

private slots:
    void statusServerIds_data();
    void statusServerIds();
    void statusFromText_data();
    void statusFromText();
    void statusOutOfRangeStopsTheProcess_data();
    void statusOutOfRangeStopsTheProcess();
    void priorityWireValuesAndRanks_data();
    void priorityWireValuesAndRanks();
    void priorityFromText_data();
    void priorityFromText();
    void priorityOutOfRangeStopsTheProcess_data();
    void priorityOutOfRangeStopsTheProcess();
};

void TestTaskStatus::statusServerIds_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("text");
    const QStringList texts{"Unassigned", "Assigned", "Acknowledged", "In Progress", "Blocked", "Completed"};
    for (int id = 1; id <= texts.size(); ++id)
        QTest::addRow("%d", id) << id << texts.at(id - 1);
}

void TestTaskStatus::statusServerIds()
{
    QFETCH(int, id);
    QFETCH(QString, text);
    const TaskStatus status = TaskStatuses::fromServerId(id);
    QCOMPARE(TaskStatuses::rawValue(status), text);
    QCOMPARE(TaskStatuses::serverId(status), id);
    QCOMPARE(TaskStatuses::allCases().at(id - 1), status);
}

void TestTaskStatus::statusFromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::newRow("In Progress") << "In Progress" << true;
    QTest::newRow("Completed") << "Completed" << true;
    QTest::newRow("case name is not the text") << "Complete" << false;
    QTest::newRow("lower case") << "in progress" << false;
    QTest::newRow("trailing space") << "Blocked " << false;
    QTest::newRow("empty") << "" << false;
}

void TestTaskStatus::statusFromText()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    const auto status = TaskStatuses::fromRawValue(text);
    QCOMPARE(status.has_value(), valid);
    if (status)
        QCOMPARE(TaskStatuses::rawValue(*status), text);
}

void TestTaskStatus::statusOutOfRangeStopsTheProcess_data()
{
    QTest::addColumn<qint64>("id");
    QTest::newRow("0") << qint64(0);
    QTest::newRow("7") << qint64(7);
    QTest::newRow("-1") << qint64(-1);
    QTest::newRow("huge") << (qint64(1) << 40);
}

void TestTaskStatus::statusOutOfRangeStopsTheProcess()
{
    QFETCH(qint64, id);
    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)TaskStatuses::fromServerId(id));
}

void TestTaskStatus::priorityWireValuesAndRanks_data()
{
    QTest::addColumn<int>("wire");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("rank");
    const QStringList texts{"Highest", "High", "Medium", "Low", "All"};
    for (int wire = 0; wire < texts.size(); ++wire)
        QTest::addRow("%d", wire) << wire << texts.at(wire) << wire + 1;
}

void TestTaskStatus::priorityWireValuesAndRanks()
{
    QFETCH(int, wire);
    const TaskPriority priority = TaskPriorities::fromWireValue(wire);
    QTEST(TaskPriorities::rawValue(priority), "text");
    QTEST(TaskPriorities::sortRank(priority), "rank");
    QCOMPARE(TaskPriorities::wireValue(priority), wire);
}

void TestTaskStatus::priorityFromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::newRow("Highest") << "Highest" << true;
    QTest::newRow("All") << "All" << true;
    QTest::newRow("lower case") << "high" << false;
    QTest::newRow("empty") << "" << false;
}

void TestTaskStatus::priorityFromText()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    const auto priority = TaskPriorities::fromRawValue(text);
    QCOMPARE(priority.has_value(), valid);
    if (priority)
        QCOMPARE(TaskPriorities::rawValue(*priority), text);
}

void TestTaskStatus::priorityOutOfRangeStopsTheProcess_data()
{
    QTest::addColumn<qint64>("wire");
    QTest::newRow("-1") << qint64(-1);
    QTest::newRow("5") << qint64(5);
}

void TestTaskStatus::priorityOutOfRangeStopsTheProcess()
{
    QFETCH(qint64, wire);
    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)TaskPriorities::fromWireValue(wire));
}

QTEST_GUILESS_MAIN(TestTaskStatus)
#include "tst_taskstatus.moc"
