#include "items/itemstatus.h"
#include "support/fatalerrortrap.h"

#include <QTest>

using namespace ravelin;
using ravelin::test::FatalErrorRaised;
using ravelin::test::FatalErrorTrap;

class TestItemStatus : public QObject
{
    Q_OBJECT

private slots:
    void positions_data();
    void positions();
    void fromText_data();
    void fromText();
    void outOfRangeStopsTheProcess_data();
    void outOfRangeStopsTheProcess();
};

void TestItemStatus::positions_data()
{
    QTest::addColumn<int>("serverId");
    QTest::addColumn<int>("segment");
    QTest::addColumn<QString>("text");
    QTest::newRow("ok") << 1 << 0 << "Completed";
    QTest::newRow("nok") << 2 << 1 << "Incidents";
    QTest::newRow("open") << 3 << 2 << "Open";
    QTest::newRow("all") << 4 << 3 << "All";
}

void TestItemStatus::positions()
{
    QFETCH(int, serverId);
    QFETCH(int, segment);
    const ItemStatus status = ItemStatuses::fromServerId(serverId);
    QTEST(ItemStatuses::rawValue(status), "text");
    QCOMPARE(ItemStatuses::fromSegmentIndex(segment), status);
    QCOMPARE(ItemStatuses::serverId(status), serverId);
    QCOMPARE(ItemStatuses::segmentIndex(status), segment);
}

void TestItemStatus::fromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::newRow("Completed") << "Completed" << true;
    QTest::newRow("Incidents") << "Incidents" << true;
    QTest::newRow("case name") << "ok" << false;
    QTest::newRow("lower case") << "open" << false;
    QTest::newRow("singular") << "Incident" << false;
}

void TestItemStatus::fromText()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    const auto status = ItemStatuses::fromRawValue(text);
    QCOMPARE(status.has_value(), valid);
    if (status)
        QCOMPARE(ItemStatuses::rawValue(*status), text);
}

void TestItemStatus::outOfRangeStopsTheProcess_data()
{
    QTest::addColumn<bool>("bySegment");
    QTest::addColumn<qint64>("value");
    QTest::newRow("server id 0") << false << qint64(0);
    QTest::newRow("server id 5") << false << qint64(5);
    QTest::newRow("segment -1") << true << qint64(-1);
    QTest::newRow("segment 4") << true << qint64(4);
}

void TestItemStatus::outOfRangeStopsTheProcess()
{
    QFETCH(bool, bySegment);
    QFETCH(qint64, value);
    FatalErrorTrap trap;
    if (bySegment)
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)ItemStatuses::fromSegmentIndex(value));
    else
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)ItemStatuses::fromServerId(value));
}

QTEST_GUILESS_MAIN(TestItemStatus)
#include "tst_itemstatus.moc"
