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
    void textsMatchExactly();
};

// Texts and ids round-trip; which id is which status is checked where the
// server's tasks are shown (tst_dashboardvc, tst_dashboardvm).
void TestTaskStatus::statusServerIds()
{
    QCOMPARE(TaskStatuses::allCases().size(), 6);
    for (const TaskStatus status : TaskStatuses::allCases()) {
        QCOMPARE(TaskStatuses::fromServerId(TaskStatuses::serverId(status)), status);
        QCOMPARE(TaskStatuses::fromRawValue(TaskStatuses::rawValue(status)), std::optional(status));
    }
    FatalErrorTrap trap;
    // The last one would be id 1 if cut down to 32 bits.
    for (qint64 outOfRange : {qint64(0), qint64(7), (qint64(1) << 32) + 1})
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)TaskStatuses::fromServerId(outOfRange));
}

// The wire values are checked in the query (tst_router), the ranks in sorting (tst_tasklist).
void TestTaskStatus::priorityWireValuesAndRanks()
{
    QCOMPARE(TaskPriorities::allCases().size(), 5);
    for (const TaskPriority priority : TaskPriorities::allCases()) {
        QCOMPARE(TaskPriorities::fromWireValue(TaskPriorities::wireValue(priority)), priority);
        QCOMPARE(TaskPriorities::fromRawValue(TaskPriorities::rawValue(priority)), std::optional(priority));
    }
    FatalErrorTrap trap;
    for (qint64 outOfRange : {qint64(-1), qint64(5)})
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)TaskPriorities::fromWireValue(outOfRange));
}

void TestTaskStatus::textsMatchExactly()
{
    // The case name is not the text; case and blanks count.
    for (const char *text : {"Complete", "in progress", "Blocked ", "high", ""}) {
        QVERIFY2(!TaskStatuses::fromRawValue(QString::fromLatin1(text)), text);
        QVERIFY2(!TaskPriorities::fromRawValue(QString::fromLatin1(text)), text);
    }
}

QTEST_GUILESS_MAIN(TestTaskStatus)
#include "tst_taskstatus.moc"
