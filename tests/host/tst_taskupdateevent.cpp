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
    void decodes();
    void decodingErrors_data();
    void decodingErrors();
    void typeTextsAndAlert_data();
    void typeTextsAndAlert();
    void isCurrentAsset();
};

void TestTaskUpdateEvent::decodes()
{
    // The type is never read from the JSON.
    const TaskUpdateEventPtr event = decodeEvent(R"({"id":7,"name":"Pump check","asset_id":12,"type":"task-deleted"})");
    QCOMPARE(event->id, 7);
    QCOMPARE(event->name, "Pump check");
    QCOMPARE(event->assetId, std::optional<qint64>(12));
    QCOMPARE(event->type, TaskUpdateEventType::kNone);
    QCOMPARE(decodeEvent(R"({"id":7,"name":"Pump check","asset_id":null})")->assetId, std::nullopt);
    // The host posts the event inside a QVariant.
    QCOMPARE(QVariant::fromValue(event).value<TaskUpdateEventPtr>().get(), event.get());
}

void TestTaskUpdateEvent::decodingErrors_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("asset key missing") << QByteArray(R"({"id":7,"name":"Pump check"})");
    QTest::newRow("id missing") << QByteArray(R"({"name":"Pump check","asset_id":1})");
    QTest::newRow("name null") << QByteArray(R"({"id":7,"name":null,"asset_id":1})");
    QTest::newRow("asset as text") << QByteArray(R"({"id":7,"name":"x","asset_id":"1"})");
}

void TestTaskUpdateEvent::decodingErrors()
{
    QFETCH(QByteArray, body);
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decodeEvent(body));
}

void TestTaskUpdateEvent::typeTextsAndAlert_data()
{
    QTest::addColumn<TaskUpdateEventType>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("body");
    QTest::newRow("assigned") << TaskUpdateEventType::kAssigned << "task-assigned"
                              << "Task newly assigned to you.";
    QTest::newRow("unassigned") << TaskUpdateEventType::kUnassigned << "task-unassigned"
                                << "Task unassigned from you.";
    QTest::newRow("deleted") << TaskUpdateEventType::kDeleted << "task-deleted"
                             << "Task deleted.";
    QTest::newRow("never set") << TaskUpdateEventType::kNone << ""
                               << "Task .";
}

void TestTaskUpdateEvent::typeTextsAndAlert()
{
    QFETCH(TaskUpdateEventType, type);
    QFETCH(QString, text);
    QCOMPARE(TaskUpdateEventTypes::rawValue(type), text);
    QCOMPARE(TaskUpdateEventTypes::fromRawValue(text), std::optional(type));
    // Texts match exactly; no other kind of event has one.
    if (!text.isEmpty())
        QVERIFY(!TaskUpdateEventTypes::fromRawValue(text.toUpper()));
    QVERIFY(!TaskUpdateEventTypes::fromRawValue(QStringLiteral("task-updated")));

    TaskUpdateEvent event;
    event.name = "Pump check";
    event.type = type;
    const auto message = event.getAlertMessage();
    QCOMPARE(message.title, "Task Event Update");
    QCOMPARE(message.subtitle, "Pump check");
    QTEST(message.body, "body");
}

void TestTaskUpdateEvent::isCurrentAsset()
{
    TaskUpdateEvent event;
    QVERIFY(!event.isCurrentAsset(0)); // no asset named
    event.assetId = 0;
    QVERIFY(event.isCurrentAsset(0));
    event.assetId = 12;
    QVERIFY(event.isCurrentAsset(12));
    QVERIFY(!event.isCurrentAsset(13));
}

QTEST_GUILESS_MAIN(TestTaskUpdateEvent)
#include "tst_taskupdateevent.moc"
