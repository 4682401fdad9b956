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
    void statusServerIds();
    void priorityWireValuesAndRanks();
    void textsMatchExactly_data();
    void textsMatchExactly();
};

void TestTaskStatus::statusServerIds()
{
    const QStringList texts{"Unassigned", "Assigned", "Acknowledged", "In Progress", "Blocked", "Completed"};
    for (int id = 1; id <= texts.size(); ++id) {
        const TaskStatus status = TaskStatuses::fromServerId(id);
        QCOMPARE(TaskStatuses::rawValue(status), texts.at(id - 1));
        QCOMPARE(TaskStatuses::serverId(status), id);
        QCOMPARE(TaskStatuses::allCases().at(id - 1), status);
        QCOMPARE(TaskStatuses::fromRawValue(texts.at(id - 1)), std::optional(status));
    }
    FatalErrorTrap trap;
    // The last one would be id 1 if cut down to 32 bits.
    for (qint64 outOfRange : {qint64(0), qint64(7), (qint64(1) << 32) + 1})
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)TaskStatuses::fromServerId(outOfRange));
}

void TestTaskStatus::priorityWireValuesAndRanks()
{
    const QStringList texts{"Highest", "High", "Medium", "Low", "All"};
    for (int wire = 0; wire < texts.size(); ++wire) {
        const TaskPriority priority = TaskPriorities::fromWireValue(wire);
        QCOMPARE(TaskPriorities::rawValue(priority), texts.at(wire));
        QCOMPARE(TaskPriorities::sortRank(priority), wire + 1);
        QCOMPARE(TaskPriorities::wireValue(priority), wire);
        QCOMPARE(TaskPriorities::fromRawValue(texts.at(wire)), std::optional(priority));
    }
    FatalErrorTrap trap;
    for (qint64 outOfRange : {qint64(-1), qint64(5)})
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)TaskPriorities::fromWireValue(outOfRange));
}

void TestTaskStatus::textsMatchExactly_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("case name is not the text") << "Complete";
    QTest::newRow("lower case") << "in progress";
    QTest::newRow("trailing space") << "Blocked ";
    QTest::newRow("lower case priority") << "high";
    QTest::newRow("empty") << "";
}

void TestTaskStatus::textsMatchExactly()
{
    QFETCH(QString, text);
    QVERIFY(!TaskStatuses::fromRawValue(text));
    QVERIFY(!TaskPriorities::fromRawValue(text));
}

QTEST_GUILESS_MAIN(TestTaskStatus)
#include "tst_taskstatus.moc"
