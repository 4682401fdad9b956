#include "api/networkmanager.h"
#include "api/settings.h"
#include "host/navigationbar.h"
#include "host/notificationcenter.h"
#include "host/ravelineventvc.h"
#include "host/ravelinnavvc.h"
#include "host/taskupdateevent.h"
#include "items/itemsupdateresponse.h"
#include "support/apiharness.h"
#include "support/fatalerrortrap.h"
#include "support/fixtures.h"
#include "support/hostfixture.h"
#include "support/logcapture.h"
#include "tasks/dashboardvc.h"
#include "tasks/dashboardvm.h"
#include "views/alertpresenter.h"
#include "views/alertview.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QTimeZone>

using namespace ravelin;
using namespace ravelin::test;

namespace {

constexpr int timeoutMs = 10000;

// A screen that shows one task, as the items and comments screens do.
class TaskScreen : public RavelinEventVC
{
public:
    explicit TaskScreen(qint64 taskId)
    {
        setTaskID(taskId);
        setTitle(QStringLiteral("Task %1").arg(taskId));
    }
};

QVariant eventObject(qint64 id, TaskUpdateEventType type)
{
    auto event = std::make_shared<TaskUpdateEvent>();
    event->id = id;
    event->name = QStringLiteral("Pump station %1").arg(id);
    event->type = type;
    return QVariant::fromValue(event);
}

} // namespace

class TestRavelinNavVC : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void storesSessionDataOnLoad();
    void keepsStoredSessionWithoutNetworkData();
    void settingsFailureKeepsSettings();
    void wiresItselfAsDelegate();
    void didSwipeReachesTheHost();
    void destroyedHostDelegateIsNotCalled();
    void notificationsDefaultToTheProcessCentre();
    void missingInputsStop_data();
    void missingInputsStop();
    void rootMustBeTheDashboard();
    void eventForShownTaskReturnsToDashboard();
    void emergencyColoursTheBar();

private:
    std::unique_ptr<RavelinNavVC> makeHost(bool withNetworkData = true);
    std::unique_ptr<ApiHarness> m_api;
    NotificationCenter m_center;
};

void TestRavelinNavVC::init()
{
    Settings::setCurrent(Settings::defaults());
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

void TestRavelinNavVC::cleanup()
{
    m_api.reset();
    Settings::setCurrent(Settings::defaults());
}

std::unique_ptr<RavelinNavVC> TestRavelinNavVC::makeHost(bool withNetworkData)
{
    return ravelin::test::makeHost(*m_api, m_center,
                                   HostOptions{.networkData = withNetworkData, .shown = false, .size = {390, 780}});
}

void TestRavelinNavVC::storesSessionDataOnLoad()
{
    auto host = makeHost();
    host->loadViewIfNeeded();
    const QJsonObject stored = QJsonDocument::fromJson(m_api->settings.value("quorApiData").toByteArray()).object();
    QCOMPARE(stored.value("baseURL").toString(), m_api->server.baseUrl());
    QCOMPARE(stored.value("tokenString").toString(), QStringLiteral("host-token"));
    QCOMPARE(m_api->store.load()->timestamp, toDateTime(m_api->now - std::chrono::seconds(30)));
    // The session's requests carry the host's token.
    QTRY_VERIFY_WITH_TIMEOUT(!m_api->server.requests(QStringLiteral("/api/settings-constants")).isEmpty(), timeoutMs);
    QCOMPARE(m_api->server.requests(QStringLiteral("/api/settings-constants")).first().header("Authorization"),
             QByteArray("Bearer host-token"));
    // The answered settings become the current ones (their order: tst_apidata keepsCategoriesSortedBehindAll).
    QTRY_COMPARE_WITH_TIMEOUT(Settings::current().taskCategory.size(), 4, timeoutMs);
}

void TestRavelinNavVC::keepsStoredSessionWithoutNetworkData()
{
    auto host = makeHost(false);
    host->loadViewIfNeeded();
    QCOMPARE(m_api->store.load()->tokenString, QStringLiteral("tok")); // the harness's earlier session
    QTRY_VERIFY_WITH_TIMEOUT(!m_api->server.requests(QStringLiteral("/api/settings-constants")).isEmpty(), timeoutMs);
    QCOMPARE(m_api->server.requests().first().header("Authorization"), QByteArray("Bearer tok"));
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
    const QString line
        = QStringLiteral("We got a failure trying to get the settings and constants. The error we got was: ");
    QTRY_COMPARE_WITH_TIMEOUT(log.linesStartingWith(line).size(), 1, timeoutMs);
    QCOMPARE(Settings::current(), before);
}

void TestRavelinNavVC::wiresItselfAsDelegate()
{
    auto host = makeHost();
    host->loadViewIfNeeded();
    QVERIFY(host->networkManager());
    QCOMPARE(host->networkManager()->delegate(), static_cast<NetworkManagerDelegate *>(host.get()));
    QCOMPARE(host->dashboard()->vcDelegate(), static_cast<DashboardVCDelegate *>(host.get()));
    QCOMPARE(host->dashboard()->viewModel()->users().currentUser.name, QStringLiteral("Ann Rivers"));
    QCOMPARE(host->dashboard()->viewModel()->networkManager(), host->networkManager());
}

void TestRavelinNavVC::didSwipeReachesTheHost()
{
    auto host = makeHost();
    host->loadViewIfNeeded();
    host->dashboard()->vcDelegate()->didSwipe(true);
    host->dashboard()->vcDelegate()->didSwipe(false);
    QCOMPARE(m_api->host.swipes, (QList<bool>{true, false}));
    host->setVcDelegate(nullptr);
    host->didSwipe(true); // dropped silently
    QCOMPARE(m_api->host.swipes.size(), 2);
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
    QTest::newRow("no user id") << false << true;
    QTest::newRow("no assets") << true << false;
}

void TestRavelinNavVC::missingInputsStop()
{
    QFETCH(bool, withUser);
    QFETCH(bool, withAssets);
    auto host = makeHost();
    if (!withUser)
        host->currentUserId.reset();
    if (!withAssets)
        host->assetsList.reset();
    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, host->loadViewIfNeeded());
}

void TestRavelinNavVC::rootMustBeTheDashboard()
{
    RavelinNavVC host(RavelinNavVC::Environment{&m_api->settings, &m_api->network, &m_center, fixedClock(m_api->now)},
                      new TaskScreen(1));
    host.currentUserId = 7;
    host.assetsList = QMap<qint64, QStringList>{};
    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, host.loadViewIfNeeded());
}

void TestRavelinNavVC::eventForShownTaskReturnsToDashboard()
{
    // The texts of each kind of event are checked in tst_notificationcenter typeTextsAndAlert.
    auto host = makeHost();
    host->show();
    host->push(new TaskScreen(7));
    host->push(new TaskScreen(7));
    QCOMPARE(host->screens().size(), 3);

    // An event about another task is ignored.
    m_center.post(NotificationNames::taskEvent, eventObject(8, TaskUpdateEventType::kDeleted));
    QVERIFY(!AlertPresenter::visibleAlert(host.get()));

    m_center.post(NotificationNames::taskEvent, eventObject(7, TaskUpdateEventType::kUnassigned));
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
    QCOMPARE(host->navigationBar()->barColor(), QColor(255, 59, 48));
    m_center.post(NotificationNames::emergencyUpdate, QStringLiteral("true")); // not a bool: ignored
    QCOMPARE(host->navigationBar()->barColor(), QColor(255, 59, 48));
    m_center.post(NotificationNames::emergencyUpdate, false);
    QCOMPARE(host->navigationBar()->barColor(), standard);

    // A screen observes only while it is visible: a pushed screen takes over.
    auto *screen = new TaskScreen(3);
    host->push(screen);
    QVERIFY(!m_center.hasObserver(host->dashboard(), NotificationNames::emergencyUpdate));
    QVERIFY(m_center.hasObserver(screen, NotificationNames::emergencyUpdate));
}

QTEST_MAIN(TestRavelinNavVC)
#include "tst_ravelinnavvc.moc"
