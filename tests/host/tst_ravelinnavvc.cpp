#include "api/json.h"
#include "host/navigationbar.h"
#include "host/notificationcenter.h"
#include "host/ravelineventvc.h"
#include "host/taskupdateevent.h"
#include "items/itemsupdateresponse.h"
#include "support/fatalerrortrap.h"
#include "support/fixtures.h"
#include "support/hostfixture.h"
#include "support/logcapture.h"
#include "tasks/dashboardvm.h"

#include <QObject>
#include <QVariant>

using namespace ravelin;
using namespace ravelin::test;

namespace {

constexpr int timeoutMs = 10000;

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

class TestRavelinNavVC : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_api.reset(); }
    void storesSessionDataOnLoad();
    void keepsStoredSessionWithoutNetworkData();
    void settingsFailureKeepsSettings();
    void destroyedHostDelegateIsNotCalled();
    void notificationsDefaultToTheProcessCentre();
    void missingInputsStop_data();
    void missingInputsStop();
    void eventForShownTaskReturnsToDashboard();
    void emergencyColoursTheBar();

    void deliversToObserversOfTheNameInRegistrationOrder();
    void removingObservers();
    void changesDuringDelivery();
    void defaultCenterIsOneObject();
    void decodesAndNamesItsAsset();
    void decodingErrors_data();
    void decodingErrors();
    void typeTextsAndAlert_data();
    void typeTextsAndAlert();

private:
    std::unique_ptr<RavelinNavVC> makeHost(bool withNetworkData = true, Screen *root = nullptr);
    std::unique_ptr<ApiHarness> m_api;
    NotificationCenter m_center;
};

void TestRavelinNavVC::init()
{
    m_api = std::make_unique<ApiHarness>();
    m_api->server.on("GET", "/api/tasks/assigned-user/7",
                     CannedResponse{200, answer(QJsonArray{taskJson(1, "Meter", 4)})});
    m_api->server.on("GET", "/api/settings-constants",
                     CannedResponse{200,
                                    answer(QJsonObject{{"item_status", QJsonArray{}},
                                                       {"task_status", QJsonArray{}},
                                                       {"task_category",
                                                        QJsonArray{QJsonObject{{"id", 5}, {"name", "Pumps"}},
                                                                   QJsonObject{{"id", 2}, {"name", "Meters"}},
                                                                   QJsonObject{{"id", 9}, {"name", "Valves"}}}}})});
}

std::unique_ptr<RavelinNavVC> TestRavelinNavVC::makeHost(bool withNetworkData, Screen *root)
{
    return ravelin::test::makeHost(
        *m_api, m_center,
        HostOptions{.root = root, .networkData = withNetworkData, .shown = false, .size = {390, 780}});
}

void TestRavelinNavVC::storesSessionDataOnLoad()
{
    auto host = makeHost();
    host->loadViewIfNeeded();
    const QJsonObject stored = QJsonDocument::fromJson(m_api->settings.value("quorApiData").toByteArray()).object();
    QCOMPARE(stored.value("baseURL").toString(), m_api->server.baseUrl());
    QCOMPARE(stored.value("tokenString").toString(), QStringLiteral("host-token"));
    QCOMPARE(m_api->store.load()->timestamp, toDateTime(m_api->now - std::chrono::seconds(30)));
    // That the manager's requests carry the stored token: tst_networkmanager everyRouteOnTheWire.
    // The answered settings become the current ones (their order: tst_apidata keepsCategoriesSortedBehindAll).
    QTRY_COMPARE_WITH_TIMEOUT(Settings::current().taskCategory.size(), 4, timeoutMs);
}

void TestRavelinNavVC::keepsStoredSessionWithoutNetworkData()
{
    auto host = makeHost(false);
    host->loadViewIfNeeded();
    // The harness's earlier session stays; the manager's requests carry it: tst_networkmanager.
    QCOMPARE(m_api->store.load()->tokenString, QStringLiteral("tok"));
}

void TestRavelinNavVC::settingsFailureKeepsSettings()
{
    m_api->server.on("GET", "/api/settings-constants", CannedResponse{500, {}});
    Settings before = Settings::defaults();
    before.taskStatus = {{1, "Unassigned"}};
    Settings::setCurrent(before);
    LogCapture log;
    auto host = makeHost();
    host->loadViewIfNeeded();
    const QString line = LogCapture::failedFetch(QStringLiteral("settings and constants"));
    QTRY_COMPARE_WITH_TIMEOUT(log.count(line), 1, timeoutMs);
    QCOMPARE(Settings::current(), before);
}

void TestRavelinNavVC::destroyedHostDelegateIsNotCalled()
{
    auto host = makeHost();
    auto delegate = std::make_unique<FakeHost>();
    host->setVcDelegate(delegate.get());
    host->loadViewIfNeeded();
    delegate.reset();
    QCOMPARE(host->vcDelegate(), nullptr);
    host->didSwipe(true);

    // An expired session reaches the host's delegate through the manager: nobody is told.
    m_api->settings.clear();
    std::optional<Result<ItemsUpdateResponse>> result;
    host->networkManager()->request<ItemsUpdateResponse>(Router::getItems(1), ApiQueue::shared(), this,
                                                         [&](const auto &r) { result = r; });
    QTRY_VERIFY_WITH_TIMEOUT(result.has_value(), timeoutMs);
    QCOMPARE(result->error(), ManagerErrors(ManagerErrors::Kind::apiRouteError));
}

void TestRavelinNavVC::notificationsDefaultToTheProcessCentre()
{
    RavelinNavVC host(RavelinNavVC::Environment{&m_api->settings, &m_api->network, nullptr, fixedClock(m_api->now)});
    QCOMPARE(host.notificationCenter(), &NotificationCenter::defaultCenter());
}

void TestRavelinNavVC::missingInputsStop_data()
{
    QTest::addColumn<bool>("withUser");
    QTest::addColumn<bool>("withAssets");
    QTest::addColumn<bool>("dashboardRoot");
    QTest::newRow("no user id") << false << true << true;
    QTest::newRow("no assets") << true << false << true;
    QTest::newRow("root is not the dashboard") << true << true << false;
}

void TestRavelinNavVC::missingInputsStop()
{
    QFETCH(bool, withUser);
    QFETCH(bool, withAssets);
    QFETCH(bool, dashboardRoot);
    auto host = makeHost(true, dashboardRoot ? nullptr : new TaskScreen(1));
    if (!withUser)
        host->currentUserId.reset();
    if (!withAssets)
        host->assetsList.reset();
    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, host->loadViewIfNeeded());
}

void TestRavelinNavVC::eventForShownTaskReturnsToDashboard()
{
    // The texts of each kind of event are checked in typeTextsAndAlert.
    auto host = makeHost();
    host->show();
    host->push(new TaskScreen(7));
    host->push(new TaskScreen(7));
    QCOMPARE(host->screens().size(), 3);

    // An event about another task is ignored.
    m_center.post(NotificationNames::taskEvent,
                  taskEvent(8, QStringLiteral("Pump station 8"), TaskUpdateEventType::kDeleted));
    QVERIFY(!AlertPresenter::visibleAlert(host.get()));

    m_center.post(NotificationNames::taskEvent,
                  taskEvent(7, QStringLiteral("Pump station 7"), TaskUpdateEventType::kUnassigned));
    AlertView *alert = AlertPresenter::visibleAlert(host.get());
    QVERIFY(alert);
    QCOMPARE(alert->message(), QStringLiteral("Pump station 7\nTask unassigned from you."));
    QVERIFY(alert->actionTitles().isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(host->screens().size(), 1, timeoutMs);
    QCOMPARE(host->topScreen(), static_cast<Screen *>(host->dashboard()));
}

void TestRavelinNavVC::emergencyColoursTheBar()
{
    auto host = makeHost();
    host->show();
    const QColor standard = host->standardBarColor();
    QCOMPARE(host->navigationBar()->barColor(), standard);
    m_center.post(NotificationNames::emergencyUpdate, true);
    const QColor emergency = host->navigationBar()->barColor();
    QVERIFY(emergency != standard && emergency.red() > 200 && emergency.green() < 110);
    m_center.post(NotificationNames::emergencyUpdate, QStringLiteral("false")); // not a bool: ignored
    QCOMPARE(host->navigationBar()->barColor(), emergency);
    m_center.post(NotificationNames::emergencyUpdate, false);
    QCOMPARE(host->navigationBar()->barColor(), standard);

    // A screen observes only while it is visible: a pushed screen takes over.
    auto *screen = new TaskScreen(3);
    host->push(screen);
    QVERIFY(!m_center.hasObserver(host->dashboard(), NotificationNames::emergencyUpdate));
    QVERIFY(m_center.hasObserver(screen, NotificationNames::emergencyUpdate));
}

void TestRavelinNavVC::deliversToObserversOfTheNameInRegistrationOrder()
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

void TestRavelinNavVC::removingObservers()
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

    // A destroyed observer is forgotten.
    auto destroyed = std::make_unique<QObject>();
    center.addObserver(destroyed.get(), NotificationNames::taskEvent, note(calls, "task"));
    center.addObserver(destroyed.get(), NotificationNames::emergencyUpdate, note(calls, "emergency"));
    destroyed.reset();
    QCOMPARE(center.observerCount(NotificationNames::taskEvent), 0);
    QCOMPARE(center.observerCount(NotificationNames::emergencyUpdate), 0);
    center.post(NotificationNames::taskEvent);
    center.post(NotificationNames::emergencyUpdate, true);
    QCOMPARE(calls, (QStringList{"bystander", "B"}));
}

// A handler may remove, delete or add observers of the notification being delivered.
void TestRavelinNavVC::changesDuringDelivery()
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

void TestRavelinNavVC::defaultCenterIsOneObject()
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

void TestRavelinNavVC::decodesAndNamesItsAsset()
{
    // The type is never read from the JSON.
    const TaskUpdateEventPtr event = decodeEvent(R"({"id":7,"name":"Pump check","asset_id":12,"type":"task-deleted"})");
    QCOMPARE(event->id, 7);
    QCOMPARE(event->name, "Pump check");
    QCOMPARE(event->assetId, std::optional<qint64>(12));
    QCOMPARE(event->type, TaskUpdateEventType::kNone);
    QVERIFY(event->isCurrentAsset(12));
    QVERIFY(!event->isCurrentAsset(13));
    const TaskUpdateEventPtr noAsset = decodeEvent(R"({"id":7,"name":"Pump check","asset_id":null})");
    QCOMPARE(noAsset->assetId, std::nullopt);
    QVERIFY(!noAsset->isCurrentAsset(0));
    QVERIFY(decodeEvent(R"({"id":7,"name":"Pump check","asset_id":0})")->isCurrentAsset(0));
}

void TestRavelinNavVC::decodingErrors_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("asset key missing") << QByteArray(R"({"id":7,"name":"Pump check"})");
    QTest::newRow("id missing") << QByteArray(R"({"name":"Pump check","asset_id":1})");
    QTest::newRow("name null") << QByteArray(R"({"id":7,"name":null,"asset_id":1})");
    QTest::newRow("asset as text") << QByteArray(R"({"id":7,"name":"x","asset_id":"1"})");
}

void TestRavelinNavVC::decodingErrors()
{
    QFETCH(QByteArray, body);
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decodeEvent(body));
}

void TestRavelinNavVC::typeTextsAndAlert_data()
{
    QTest::addColumn<TaskUpdateEventType>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("body");
    QTest::newRow("assigned") << TaskUpdateEventType::kAssigned << QStringLiteral("task-assigned")
                              << "Task newly assigned to you.";
    QTest::newRow("unassigned") << TaskUpdateEventType::kUnassigned << QStringLiteral("task-unassigned")
                                << "Task unassigned from you.";
    QTest::newRow("deleted") << TaskUpdateEventType::kDeleted << QStringLiteral("task-deleted") << "Task deleted.";
    QTest::newRow("never set") << TaskUpdateEventType::kNone << QStringLiteral("") << "Task .";
}

void TestRavelinNavVC::typeTextsAndAlert()
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

QTEST_MAIN(TestRavelinNavVC)
#include "tst_ravelinnavvc.moc"
