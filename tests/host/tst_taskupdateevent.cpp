#include "api/json.h"
#include "host/taskupdateevent.h"

#include <QTest>
#include <QVariant>

using namespace ravelin;

namespace {

struct EventRoot
{
    TaskUpdateEventPtr event;
    static EventRoot decode(const json::Value &value) { return {TaskUpdateEvent::decode(value)}; }
};

TaskUpdateEventPtr decodeEvent(const QByteArray &body)
{
    const json::Options options{json::KeyDecoding::convertFromSnakeCase, json::DateDecoding::serverFormat, nullptr};
    return json::decode<EventRoot>(body, options).event;
}

} // namespace

class TestTaskUpdateEvent : public QObject
{
    Q_OBJECT

private slots:
    void decodes_data();
    void decodes();
    void decodingErrors_data();
    void decodingErrors();
    void typeTexts_data();
    void typeTexts();
    void alertMessage_data();
    void alertMessage();
    void isCurrentAsset_data();
    void isCurrentAsset();
    void travelsInAVariant();
};

void TestTaskUpdateEvent::decodes_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("hasAsset");
    QTest::addColumn<qint64>("asset");
    QTest::newRow("with asset") << QByteArray(R"({"id":7,"name":"Pump check","asset_id":12})") << true << qint64(12);
    QTest::newRow("null asset") << QByteArray(R"({"id":7,"name":"Pump check","asset_id":null})") << false << qint64(0);
    QTest::newRow("type in the JSON is not read")
        << QByteArray(R"({"id":7,"name":"Pump check","asset_id":3,"type":"task-deleted"})") << true << qint64(3);
}

void TestTaskUpdateEvent::decodes()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, hasAsset);
    QFETCH(qint64, asset);
    const TaskUpdateEventPtr event = decodeEvent(body);
    QCOMPARE(event->id, 7);
    QCOMPARE(event->name, "Pump check");
    QCOMPARE(event->assetId.has_value(), hasAsset);
    if (hasAsset)
        QCOMPARE(*event->assetId, asset);
    QCOMPARE(event->type, TaskUpdateEventType::kNone);
}

void TestTaskUpdateEvent::decodingErrors_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("asset key missing") << QByteArray(R"({"id":7,"name":"Pump check"})");
    QTest::newRow("id missing") << QByteArray(R"({"name":"Pump check","asset_id":1})");
    QTest::newRow("name missing") << QByteArray(R"({"id":7,"asset_id":1})");
    QTest::newRow("name null") << QByteArray(R"({"id":7,"name":null,"asset_id":1})");
    QTest::newRow("asset as text") << QByteArray(R"({"id":7,"name":"x","asset_id":"1"})");
}

void TestTaskUpdateEvent::decodingErrors()
{
    QFETCH(QByteArray, body);
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decodeEvent(body));
}

void TestTaskUpdateEvent::typeTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<TaskUpdateEventType>("type");
    QTest::newRow("assigned") << "task-assigned" << true << TaskUpdateEventType::kAssigned;
    QTest::newRow("unassigned") << "task-unassigned" << true << TaskUpdateEventType::kUnassigned;
    QTest::newRow("deleted") << "task-deleted" << true << TaskUpdateEventType::kDeleted;
    QTest::newRow("empty") << "" << true << TaskUpdateEventType::kNone;
    QTest::newRow("other") << "task-updated" << false << TaskUpdateEventType::kNone;
    QTest::newRow("upper case") << "TASK-ASSIGNED" << false << TaskUpdateEventType::kNone;
}

void TestTaskUpdateEvent::typeTexts()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    QFETCH(TaskUpdateEventType, type);
    const auto parsed = TaskUpdateEventTypes::fromRawValue(text);
    QCOMPARE(parsed.has_value(), valid);
    if (valid) {
        QCOMPARE(*parsed, type);
        QCOMPARE(TaskUpdateEventTypes::rawValue(type), text);
    }
}

void TestTaskUpdateEvent::alertMessage_data()
{
    QTest::addColumn<TaskUpdateEventType>("type");
    QTest::addColumn<QString>("body");
    QTest::newRow("assigned") << TaskUpdateEventType::kAssigned << "Task newly assigned to you.";
    QTest::newRow("unassigned") << TaskUpdateEventType::kUnassigned << "Task unassigned from you.";
    QTest::newRow("deleted") << TaskUpdateEventType::kDeleted << "Task deleted.";
    QTest::newRow("never set") << TaskUpdateEventType::kNone << "Task .";
}

void TestTaskUpdateEvent::alertMessage()
{
    QFETCH(TaskUpdateEventType, type);
    TaskUpdateEvent event;
    event.id = 7;
    event.name = "Pump check";
    event.type = type;
    const auto message = event.getAlertMessage();
    QCOMPARE(message.title, "Task Event Update");
    QCOMPARE(message.subtitle, "Pump check");
    QTEST(message.body, "body");
}

void TestTaskUpdateEvent::isCurrentAsset_data()
{
    QTest::addColumn<bool>("hasAsset");
    QTest::addColumn<qint64>("asset");
    QTest::addColumn<qint64>("asked");
    QTest::addColumn<bool>("expected");
    QTest::newRow("same") << true << qint64(12) << qint64(12) << true;
    QTest::newRow("other") << true << qint64(12) << qint64(13) << false;
    QTest::newRow("no asset, asked 0") << false << qint64(0) << qint64(0) << false;
    QTest::newRow("asset 0, asked 0") << true << qint64(0) << qint64(0) << true;
}

void TestTaskUpdateEvent::isCurrentAsset()
{
    QFETCH(bool, hasAsset);
    QFETCH(qint64, asset);
    QFETCH(qint64, asked);
    TaskUpdateEvent event;
    if (hasAsset)
        event.assetId = asset;
    QTEST(event.isCurrentAsset(asked), "expected");
}

void TestTaskUpdateEvent::travelsInAVariant()
{
    auto event = std::make_shared<TaskUpdateEvent>();
    event->id = 7;
    event->type = TaskUpdateEventType::kDeleted;
    const QVariant object = QVariant::fromValue(event);
    QVERIFY(object.canConvert<TaskUpdateEventPtr>());
    const auto back = object.value<TaskUpdateEventPtr>();
    QCOMPARE(back.get(), event.get());
    QVERIFY(!QVariant(true).canConvert<TaskUpdateEventPtr>());
}

QTEST_GUILESS_MAIN(TestTaskUpdateEvent)
#include "tst_taskupdateevent.moc"
