#include "api/json.h"
#include "host/notificationcenter.h"
#include "host/taskupdateevent.h"

#include <QObject>
#include <QStringList>
#include <QTest>

#include <QVariant>
#include <memory>

using namespace ravelin;

namespace {

// A handler that notes its tag and the object it was given.
NotificationCenter::Handler note(QStringList &calls, const QString &tag)
{
    return [&calls, tag](const QVariant &object) { calls << (object.isValid() ? tag + ":" + object.toString() : tag); };
}

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

class tst_NotificationCenter : public QObject
{
    Q_OBJECT

private slots:
    void deliversToObserversOfTheNameInRegistrationOrder();
    void removingObservers();
    void destroyedObserverIsForgotten();
    void changesDuringDelivery();
    void defaultCenterIsOneObject();
    void decodes();
    void decodingErrors_data();
    void decodingErrors();
    void typeTextsAndAlert_data();
    void typeTextsAndAlert();
    void isCurrentAsset();
};

void tst_NotificationCenter::deliversToObserversOfTheNameInRegistrationOrder()
{
    NotificationCenter center;
    QObject first;
    QObject second;
    QObject other;
    QStringList calls;
    center.addObserver(&second, "A", note(calls, "second"));
    center.addObserver(&other, "B", note(calls, "other"));
    center.addObserver(&first, "A", note(calls, "first"));
    // The same observer may register twice for one name; each handler is called.
    center.addObserver(&second, "A", note(calls, "second again"));

    center.post("A", qint64(7));
    center.post("C");
    center.post("B");
    QCOMPARE(calls, (QStringList{"second:7", "first:7", "second again:7", "other"}));

    // The object arrives unchanged.
    QVariant received;
    center.addObserver(&other, "D", [&received](const QVariant &object) { received = object; });
    center.post("D", QVariant(false));
    QCOMPARE(received.metaType(), QMetaType::fromType<bool>());
    QCOMPARE(received, QVariant(false));
}

void tst_NotificationCenter::removingObservers()
{
    NotificationCenter center;
    QObject observer;
    QObject bystander;
    QStringList calls;
    center.addObserver(&observer, "A", note(calls, "A"));
    center.addObserver(&observer, "A", note(calls, "A again"));
    center.addObserver(&observer, "B", note(calls, "B"));
    center.addObserver(&bystander, "A", note(calls, "bystander"));

    // One name: every handler of the observer for that name goes, the others stay.
    center.removeObserver(&observer, "A");
    center.post("A");
    center.post("B");
    QCOMPARE(calls, (QStringList{"bystander", "B"}));
    QVERIFY(!center.hasObserver(&observer, "A"));
    QVERIFY(center.hasObserver(&observer, "B"));

    // The whole observer.
    center.removeObserver(&observer);
    QCOMPARE(center.observerCount("A"), 1);
    QCOMPARE(center.observerCount("B"), 0);
}

void tst_NotificationCenter::destroyedObserverIsForgotten()
{
    NotificationCenter center;
    QStringList calls;
    auto observer = std::make_unique<QObject>();
    center.addObserver(observer.get(), NotificationNames::taskEvent, note(calls, "task"));
    center.addObserver(observer.get(), NotificationNames::emergencyUpdate, note(calls, "emergency"));
    observer.reset();
    QCOMPARE(center.observerCount(NotificationNames::taskEvent), 0);
    QCOMPARE(center.observerCount(NotificationNames::emergencyUpdate), 0);
    center.post(NotificationNames::taskEvent);
    center.post(NotificationNames::emergencyUpdate, true);
    QVERIFY(calls.isEmpty());
}

// A handler may remove, delete or add observers of the notification being delivered.
void tst_NotificationCenter::changesDuringDelivery()
{
    NotificationCenter center;
    QObject first;
    QObject removed;
    QObject late;
    auto *doomed = new QObject;
    QStringList calls;
    center.addObserver(&first, "A", [&](const QVariant &) {
        center.removeObserver(&removed);
        delete doomed;
        doomed = nullptr;
        if (!center.hasObserver(&late, "A"))
            center.addObserver(&late, "A", note(calls, "late"));
    });
    center.addObserver(&removed, "A", note(calls, "removed"));
    center.addObserver(doomed, "A", note(calls, "doomed"));

    // Removed and deleted observers are skipped; an added one waits for the next post.
    center.post("A");
    QVERIFY(calls.isEmpty());
    QCOMPARE(center.observerCount("A"), 2);
    center.post("A");
    QCOMPARE(calls, QStringList{"late"});
}

void tst_NotificationCenter::defaultCenterIsOneObject()
{
    NotificationCenter &center = NotificationCenter::defaultCenter();
    QCOMPARE(&NotificationCenter::defaultCenter(), &center);
    QObject observer;
    QStringList calls;
    center.addObserver(&observer, NotificationNames::emergencyUpdate, note(calls, "emergency"));
    // A centre of its own shares no observers with it.
    NotificationCenter().post(NotificationNames::emergencyUpdate, true);
    NotificationCenter::defaultCenter().post(NotificationNames::emergencyUpdate, true);
    QCOMPARE(calls, QStringList{"emergency:true"});
    center.removeObserver(&observer);
}

void tst_NotificationCenter::decodes()
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

void tst_NotificationCenter::decodingErrors_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("asset key missing") << QByteArray(R"({"id":7,"name":"Pump check"})");
    QTest::newRow("id missing") << QByteArray(R"({"name":"Pump check","asset_id":1})");
    QTest::newRow("name null") << QByteArray(R"({"id":7,"name":null,"asset_id":1})");
    QTest::newRow("asset as text") << QByteArray(R"({"id":7,"name":"x","asset_id":"1"})");
}

void tst_NotificationCenter::decodingErrors()
{
    QFETCH(QByteArray, body);
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decodeEvent(body));
}

void tst_NotificationCenter::typeTextsAndAlert_data()
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

void tst_NotificationCenter::typeTextsAndAlert()
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

void tst_NotificationCenter::isCurrentAsset()
{
    TaskUpdateEvent event;
    QVERIFY(!event.isCurrentAsset(0)); // no asset named
    event.assetId = 0;
    QVERIFY(event.isCurrentAsset(0));
    event.assetId = 12;
    QVERIFY(event.isCurrentAsset(12));
    QVERIFY(!event.isCurrentAsset(13));
}

QTEST_GUILESS_MAIN(tst_NotificationCenter)
#include "tst_notificationcenter.moc"
