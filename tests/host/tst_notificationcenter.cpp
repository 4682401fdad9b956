#include "host/notificationcenter.h"

#include <QObject>
#include <QStringList>
#include <QTest>

#include <memory>

using namespace ravelin;

class tst_NotificationCenter : public QObject
{
    Q_OBJECT

private slots:
    void deliversToObserversOfTheNameInRegistrationOrder();
    void deliversTheObjectUnchanged_data();
    void deliversTheObjectUnchanged();
    void removingOneNameKeepsTheOthers();
    void removingTheObserverRemovesAllItsNames();
    void destroyedObserverIsForgotten();
    void observerRemovedDuringDeliveryIsSkipped();
    void observerAddedDuringDeliveryWaitsForTheNextPost();
    void observerDeletedByAnEarlierHandlerIsSkipped();
    void sameObserverMayRegisterTwice();
    void separateCentresDoNotShareObservers();
    void defaultCenterIsOneObject();
    void hostNotificationNames();
};

void tst_NotificationCenter::deliversToObserversOfTheNameInRegistrationOrder()
{
    NotificationCenter center;
    QObject first;
    QObject second;
    QObject other;
    QStringList calls;
    center.addObserver(&second, QStringLiteral("A"), [&calls](const QVariant &) { calls << QStringLiteral("second"); });
    center.addObserver(&other, QStringLiteral("B"), [&calls](const QVariant &) { calls << QStringLiteral("other"); });
    center.addObserver(&first, QStringLiteral("A"), [&calls](const QVariant &) { calls << QStringLiteral("first"); });

    center.post(QStringLiteral("A"));
    QCOMPARE(calls, QStringList({QStringLiteral("second"), QStringLiteral("first")}));

    calls.clear();
    center.post(QStringLiteral("C"));
    QVERIFY(calls.isEmpty());
}

void tst_NotificationCenter::deliversTheObjectUnchanged_data()
{
    QTest::addColumn<QVariant>("object");
    QTest::newRow("true") << QVariant(true);
    QTest::newRow("false") << QVariant(false);
    QTest::newRow("number") << QVariant(qint64(7));
    QTest::newRow("text") << QVariant(QStringLiteral("task-deleted"));
    QTest::newRow("none") << QVariant();
}

void tst_NotificationCenter::deliversTheObjectUnchanged()
{
    QFETCH(QVariant, object);
    NotificationCenter center;
    QObject observer;
    QVariantList received;
    center.addObserver(&observer, NotificationNames::emergencyUpdate, [&received](const QVariant &value) { received << value; });
    center.post(NotificationNames::emergencyUpdate, object);
    QCOMPARE(received.size(), 1);
    QCOMPARE(received.constFirst(), object);
    QCOMPARE(received.constFirst().metaType(), object.metaType());
}

void tst_NotificationCenter::removingOneNameKeepsTheOthers()
{
    NotificationCenter center;
    QObject observer;
    int a = 0;
    int b = 0;
    center.addObserver(&observer, QStringLiteral("A"), [&a](const QVariant &) { ++a; });
    center.addObserver(&observer, QStringLiteral("B"), [&b](const QVariant &) { ++b; });

    center.removeObserver(&observer, QStringLiteral("A"));
    center.post(QStringLiteral("A"));
    center.post(QStringLiteral("B"));
    QCOMPARE(a, 0);
    QCOMPARE(b, 1);
    QVERIFY(!center.hasObserver(&observer, QStringLiteral("A")));
    QVERIFY(center.hasObserver(&observer, QStringLiteral("B")));
}

void tst_NotificationCenter::removingTheObserverRemovesAllItsNames()
{
    NotificationCenter center;
    QObject observer;
    QObject bystander;
    int observed = 0;
    int bystanderCalls = 0;
    center.addObserver(&observer, QStringLiteral("A"), [&observed](const QVariant &) { ++observed; });
    center.addObserver(&observer, QStringLiteral("B"), [&observed](const QVariant &) { ++observed; });
    center.addObserver(&bystander, QStringLiteral("A"), [&bystanderCalls](const QVariant &) { ++bystanderCalls; });

    center.removeObserver(&observer);
    center.post(QStringLiteral("A"));
    center.post(QStringLiteral("B"));
    QCOMPARE(observed, 0);
    QCOMPARE(bystanderCalls, 1);
    QCOMPARE(center.observerCount(QStringLiteral("A")), 1);
    QCOMPARE(center.observerCount(QStringLiteral("B")), 0);
}

void tst_NotificationCenter::destroyedObserverIsForgotten()
{
    NotificationCenter center;
    int calls = 0;
    auto observer = std::make_unique<QObject>();
    center.addObserver(observer.get(), NotificationNames::taskEvent, [&calls](const QVariant &) { ++calls; });
    center.addObserver(observer.get(), NotificationNames::emergencyUpdate, [&calls](const QVariant &) { ++calls; });
    QCOMPARE(center.observerCount(NotificationNames::taskEvent), 1);

    observer.reset();
    QCOMPARE(center.observerCount(NotificationNames::taskEvent), 0);
    QCOMPARE(center.observerCount(NotificationNames::emergencyUpdate), 0);
    center.post(NotificationNames::taskEvent);
    center.post(NotificationNames::emergencyUpdate, true);
    QCOMPARE(calls, 0);
}

void tst_NotificationCenter::observerRemovedDuringDeliveryIsSkipped()
{
    NotificationCenter center;
    QObject first;
    QObject second;
    int secondCalls = 0;
    center.addObserver(&first, QStringLiteral("A"), [&](const QVariant &) { center.removeObserver(&second); });
    center.addObserver(&second, QStringLiteral("A"), [&secondCalls](const QVariant &) { ++secondCalls; });

    center.post(QStringLiteral("A"));
    QCOMPARE(secondCalls, 0);
}

void tst_NotificationCenter::observerAddedDuringDeliveryWaitsForTheNextPost()
{
    NotificationCenter center;
    QObject first;
    QObject late;
    int lateCalls = 0;
    bool added = false;
    center.addObserver(&first, QStringLiteral("A"), [&](const QVariant &) {
        if (added)
            return;
        added = true;
        center.addObserver(&late, QStringLiteral("A"), [&lateCalls](const QVariant &) { ++lateCalls; });
    });

    center.post(QStringLiteral("A"));
    QCOMPARE(lateCalls, 0);
    center.post(QStringLiteral("A"));
    QCOMPARE(lateCalls, 1);
}

void tst_NotificationCenter::observerDeletedByAnEarlierHandlerIsSkipped()
{
    NotificationCenter center;
    QObject first;
    auto *doomed = new QObject;
    int doomedCalls = 0;
    center.addObserver(&first, QStringLiteral("A"), [&doomed](const QVariant &) {
        delete doomed;
        doomed = nullptr;
    });
    center.addObserver(doomed, QStringLiteral("A"), [&doomedCalls](const QVariant &) { ++doomedCalls; });

    center.post(QStringLiteral("A"));
    QCOMPARE(doomedCalls, 0);
    QVERIFY(doomed == nullptr);
    QCOMPARE(center.observerCount(QStringLiteral("A")), 1);
}

void tst_NotificationCenter::sameObserverMayRegisterTwice()
{
    NotificationCenter center;
    QObject observer;
    QStringList calls;
    center.addObserver(&observer, QStringLiteral("A"), [&calls](const QVariant &) { calls << QStringLiteral("one"); });
    center.addObserver(&observer, QStringLiteral("A"), [&calls](const QVariant &) { calls << QStringLiteral("two"); });
    center.post(QStringLiteral("A"));
    QCOMPARE(calls, QStringList({QStringLiteral("one"), QStringLiteral("two")}));

    center.removeObserver(&observer, QStringLiteral("A"));
    calls.clear();
    center.post(QStringLiteral("A"));
    QVERIFY(calls.isEmpty());
}

void tst_NotificationCenter::separateCentresDoNotShareObservers()
{
    NotificationCenter one;
    NotificationCenter two;
    QObject observer;
    int calls = 0;
    one.addObserver(&observer, QStringLiteral("A"), [&calls](const QVariant &) { ++calls; });
    two.post(QStringLiteral("A"));
    QCOMPARE(calls, 0);
    one.post(QStringLiteral("A"));
    QCOMPARE(calls, 1);
}

void tst_NotificationCenter::defaultCenterIsOneObject()
{
    NotificationCenter &first = NotificationCenter::defaultCenter();
    NotificationCenter &second = NotificationCenter::defaultCenter();
    QCOMPARE(&first, &second);

    QObject observer;
    bool received = false;
    first.addObserver(&observer, NotificationNames::emergencyUpdate, [&received](const QVariant &object) { received = object.toBool(); });
    second.post(NotificationNames::emergencyUpdate, true);
    QVERIFY(received);
    first.removeObserver(&observer);
}

void tst_NotificationCenter::hostNotificationNames()
{
    QCOMPARE(NotificationNames::taskEvent, QStringLiteral("TaskEventNotification"));
    QCOMPARE(NotificationNames::emergencyUpdate, QStringLiteral("EmergencyUpdateEvent"));
}

QTEST_GUILESS_MAIN(tst_NotificationCenter)
#include "tst_notificationcenter.moc"
