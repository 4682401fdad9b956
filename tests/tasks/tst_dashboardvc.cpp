#include "host/taskupdateevent.h"
#include "support/fatalerrortrap.h"
#include "support/logcapture.h"
#include "support/screentest.h"
#include "support/shots.h"
#include "tasks/dashboardheaderview.h"
#include "tasks/dashboardtexts.h"
#include "tasks/dashboardvm.h"
#include "tasks/taskcard.h"

#include <QLabel>
#include <QScrollBar>
#include <QScroller>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>

using namespace ravelin;
using namespace ravelin::test;

namespace {

// The dashboard with its transitions recorded: the destinations are plain
// screens, and the task handed to each is kept.
class RecordingDashboard : public DashboardVC
{
public:
    QStringList segues;
    QList<TaskPtr> senders;

protected:
    Screen *makeDestination(const QString &identifier) override
    {
        segues.append(identifier);
        return new Screen;
    }
    void prepare(const QString &identifier, Screen *destination, const std::any &sender) override
    {
        DashboardVC::prepare(identifier, destination, sender);
        if (const auto *task = std::any_cast<TaskPtr>(&sender))
            senders.append(*task);
    }
};

// Taps the middle of a card, brought into sight first.
void tap(TaskTableViewCell *row, int item)
{
    const QModelIndex index = row->model()->index(item, 0);
    row->scrollTo(index);
    QTest::mouseClick(row->viewport(), Qt::LeftButton, {},
                      TaskCollectionViewCell::cardFrame(row->visualRect(index)).center());
}

} // namespace

class TestDashboardVC : public ScreenTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup()
    {
        closeHost();
        m_log.reset();
    }

    // The screen over the loopback server.
    void sectionHeaders();
    void emptyMessageOnceRefreshStops();
    void statusChanges_data();
    void statusChanges();
    void itemsFailureAlert();
    void fetchFailureAlert();
    void taskEventAlertThenRefresh();
    void panelButtonAndSwipes();
    void dragsOverCardsScrollAndPull();
    void wheelAndTapsAsOnAPhone();
    void missingViewModelStops();
    void closingWhileFetching();
    void alertAnsweredAfterTheDashboardIsGone();

private:
    // Serves the tasks, shows a host (m_host) and waits for the two fetches of
    // the first appearance to be shown; its dashboard, nullptr when that does not happen.
    RecordingDashboard *loaded(const QJsonArray &tasks);

    std::unique_ptr<LogCapture> m_log;
};

void TestDashboardVC::init()
{
    startHarness({{3, "Pumps"}, {1, "Meters"}});
    serveTasks({});
    m_log = std::make_unique<LogCapture>();
}

RecordingDashboard *TestDashboardVC::loaded(const QJsonArray &tasks)
{
    serveTasks(tasks);
    m_host = makeHost(*m_api, m_center, HostOptions{.root = new RecordingDashboard});
    auto *dashboard = static_cast<RecordingDashboard *>(m_host->dashboard());
    // Both fetches answered, the rows laid out and the indicator band closed.
    const auto ready = [&] {
        const QList<TaskTableViewCell *> rows = dashboard->rows();
        return m_log->count(QStringLiteral("Fetched ")) >= 2 && !dashboard->refreshControl()->isRefreshing()
            && dashboard->refreshControl()->indicatorBand() == 0
            && std::all_of(rows.begin(), rows.end(), [](const QWidget *row) { return row->isVisible(); });
    };
    return QTest::qWaitFor(ready, timeoutMs) ? dashboard : nullptr;
}

// The screen -----------------------------------------------------------------

void TestDashboardVC::sectionHeaders()
{
    // One row per section, in the order and with the tasks of tst_dashboardvm sectionsForMixedStatuses; what a
    // card reads and the overall chart: tst_accessibility listItemsCarryNamesAndIdentifiers and chartsReadAsText;
    // the header and the empty message taking turns: emptyMessageOnceRefreshStops.
    const QJsonArray counts{QJsonObject{{"itemStatusId", 1}, {"count", 3}},
                            QJsonObject{{"itemStatusId", 2}, {"count", 1}},
                            QJsonObject{{"itemStatusId", 3}, {"count", 4}}};
    RecordingDashboard *dashboard = loaded({taskJson(1, "Valve A", 4, 1, "2026-11-01T08:00:00.000Z", 3, counts),
                                            taskJson(2, "Valve B", 4, 2, "2026-11-02T08:00:00.000Z", 3),
                                            taskJson(3, "Meter C", 2, 0, "2026-11-03T08:00:00.000Z", 1),
                                            taskJson(4, "Tank D", 6, 3, "2026-11-04T08:00:00.000Z", 99)});
    QVERIFY(dashboard);
    grabShot(*m_host, QStringLiteral("dashboard"));
    QCOMPARE(mapped(dashboard->sectionHeaderLabels(), [](const QLabel *label) { return label->text(); }),
             (QStringList{"ASSIGNED (1 task)", "IN PROGRESS (2 task)", "COMPLETED (1 task)"}));
}

void TestDashboardVC::emptyMessageOnceRefreshStops()
{
    // The answer waits until the test lets it go.
    auto release = std::make_shared<std::atomic<bool>>(false);
    m_api->server.on("GET", tasksPath, heldAnswer(release, CannedResponse{200, answer(QJsonArray{})}));
    auto host = makeHost(*m_api, m_center);
    DashboardVC *dashboard = host->dashboard();
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requestCount(tasksPath), 2, timeoutMs);
    QVERIFY(dashboard->refreshControl()->isRefreshing());
    QVERIFY(dashboard->emptyMessageLabel()->isHidden());

    release->store(true);
    QTRY_COMPARE_WITH_TIMEOUT(m_log->count(QStringLiteral("Fetched 0 tasks")), 2, timeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(!dashboard->refreshControl()->isRefreshing(), timeoutMs);
    QVERIFY(dashboard->rows().isEmpty());
    QVERIFY(dashboard->headerView()->isHidden());
    QVERIFY(dashboard->emptyMessageLabel()->isVisible());
    QCOMPARE(dashboard->emptyMessageLabel()->text(), QStringLiteral("No item matching filter description"));
    grabShot(*host, QStringLiteral("dashboard-empty"));

    // Tasks again: the header comes back and the message goes.
    serveTasks({taskJson(1, "Valve A", 4)});
    dashboard->pullToRefresh();
    QTRY_COMPARE_WITH_TIMEOUT(dashboard->rows().size(), 1, timeoutMs);
    QVERIFY(dashboard->headerView()->isVisible());
    QVERIFY(dashboard->emptyMessageLabel()->isHidden());
}

void TestDashboardVC::statusChanges_data()
{
    // Which status asks and which it sends: tst_dashboardvm nextStatusIds.
    QTest::addColumn<int>("statusId");
    QTest::addColumn<bool>("onButton"); // the card's acknowledge button, else the card's middle
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("sentId"); // 0: nothing sent
    QTest::addColumn<bool>("opens");
    QTest::newRow("acknowledge on the button, then refresh") << 2 << true << "Yes"
                                                             << "Acknowledge task `Pump`" << 3 << false;
    QTest::newRow("start, then open") << 3 << false << "Yes"
                                      << "Start task `Pump`" << 4 << true;
    QTest::newRow("declined") << 2 << false << "No"
                              << "Acknowledge task `Pump`" << 0 << false;
}

void TestDashboardVC::statusChanges()
{
    QFETCH(int, statusId);
    QFETCH(bool, onButton);
    QFETCH(QString, reply);
    QFETCH(QString, title);
    QFETCH(int, sentId);
    QFETCH(bool, opens);
    const QString taskPath = QStringLiteral("/api/task/8");
    QJsonObject changed = taskJson(8, "Pump", sentId > 0 ? sentId : statusId, 2, "2026-11-01T08:00:00.000Z", 3);
    changed["updaterUserId"] = 7;
    m_api->server.on("PUT", taskPath, CannedResponse{200, answer(changed)});
    m_api->server.on("GET", "/api/items/taskId/8", CannedResponse{200, answer(QJsonArray{itemJson(1, 8, "Seal", 3)})});
    RecordingDashboard *dashboard = loaded({taskJson(8, "Pump", statusId, 2, "2026-11-01T08:00:00.000Z", 3)});
    QVERIFY(dashboard);
    TaskTableViewCell *row = dashboard->rows().first();
    const TaskPtr task = row->tasks().first();
    const int fetches = m_api->server.requestCount(tasksPath);
    if (onButton) {
        // Held down, the painted button looks pressed; let go on it, it asks.
        const QModelIndex card = row->model()->index(0, 0);
        const QPoint button = TaskCollectionViewCell::acknowledgeButtonRect(row->visualRect(card)).center();
        QTest::mousePress(row->viewport(), Qt::LeftButton, {}, button);
        QCOMPARE(dashboard->cardPainter()->pressedIndex(), card);
        QTest::mouseRelease(row->viewport(), Qt::LeftButton, {}, button);
        QVERIFY(!dashboard->cardPainter()->pressedIndex().isValid());
    } else {
        tap(row, 0);
    }
    QCOMPARE(topAlert(dashboard), (QStringList{title, DashboardTexts::statusPrompt(*task)->message, "Yes/No"}));
    QVERIFY(AlertPresenter::visibleAlert(dashboard)->triggerAction(reply));

    if (sentId == 0) {
        // Asked at once: nothing was loaded or sent, not even by the time a later
        // refresh has been answered.
        dashboard->pullToRefresh();
        QTRY_VERIFY_WITH_TIMEOUT(m_api->server.requestCount(tasksPath) > fetches && answersTaken(m_api->network),
                                 timeoutMs);
        QCOMPARE(m_api->server.requestCount(QStringLiteral("/api/items/taskId/8")), 0);
        QCOMPARE(m_api->server.requestCount(taskPath), 0);
        return;
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requestCount(taskPath), 1, timeoutMs);
    const QJsonObject body = QJsonDocument::fromJson(m_api->server.requests(taskPath).first().body).object();
    QCOMPARE(body.value("task_status_id").toInt(), sentId);
    QCOMPARE(body.value("updater_user_id").toInt(), 7);
    if (opens) {
        QTRY_COMPARE_WITH_TIMEOUT(dashboard->segues, QStringList{"ShowChecklistItems"}, timeoutMs);
        QCOMPARE(dashboard->senders, QList<TaskPtr>{task});
        QCOMPARE(task->itemList.items.size(), 1);
        // The destination is now on top of the dashboard.
        QCOMPARE(m_host->screens().size(), 2);
        QCOMPARE(m_api->server.requestCount(tasksPath), fetches);
    } else {
        QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requestCount(tasksPath), fetches + 1, timeoutMs);
        QVERIFY(dashboard->segues.isEmpty());
        QCOMPARE(m_api->server.requestCount(QStringLiteral("/api/items/taskId/8")), 0);
    }
}

void TestDashboardVC::itemsFailureAlert()
{
    m_api->server.on("GET", "/api/items/taskId/8", CannedResponse{500, {}});
    RecordingDashboard *dashboard = loaded({taskJson(8, "Pump", 4)});
    QVERIFY(dashboard);
    AlertLog alerts;
    tap(dashboard->rows().first(), 0);
    QCOMPARE(alerts.waitForTitle(), QStringLiteral("Items Loading"));
    QCOMPARE(alerts.last(), (QStringList{"Items Loading", "Couldn't load task items", ""}));
    QTRY_VERIFY_WITH_TIMEOUT(!AlertPresenter::visibleAlert(dashboard), timeoutMs);
    QVERIFY(dashboard->segues.isEmpty());
    QCOMPARE(m_host->screens().size(), 1);
}

void TestDashboardVC::fetchFailureAlert()
{
    RecordingDashboard *dashboard = loaded({taskJson(1, "Valve A", 4)});
    QVERIFY(dashboard);
    m_api->server.on("GET", tasksPath, CannedResponse{500, {}});
    dashboard->refreshAction()->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(topAlert(dashboard),
                              (QStringList{"The operation couldn't be completed.",
                                           "Please contact technical support if the problem continues.", "OK"}),
                              timeoutMs);
    // The indicator runs until the worker answers.
    QVERIFY(dashboard->refreshControl()->isRefreshing());

    QVERIFY(AlertPresenter::visibleAlert(dashboard)->triggerAction(QStringLiteral("OK")));
    QVERIFY(!dashboard->refreshControl()->isRefreshing());
    // The table keeps what it had (the tasks themselves: tst_dashboardvm
    // sectionsFollowTheSortChoiceAndOutliveAFailedFetch).
    QCOMPARE(dashboard->rows().size(), 1);
    QVERIFY(dashboard->emptyMessageLabel()->isHidden());
}

void TestDashboardVC::taskEventAlertThenRefresh()
{
    RecordingDashboard *dashboard = loaded({taskJson(1, "Valve A", 4)});
    QVERIFY(dashboard);
    // Not an event: nothing happens.
    m_center.post(NotificationNames::taskEvent, QVariant(42));
    QCOMPARE(topAlert(dashboard), QStringList());

    // An event about a task the dashboard does not even show.
    const int fetches = m_api->server.requestCount(tasksPath);
    m_center.post(NotificationNames::taskEvent,
                  taskEvent(999, QStringLiteral("Hydrant 9"), TaskUpdateEventType::kDeleted));
    QCOMPARE(topAlert(dashboard), (QStringList{"Task Event Update", "Hydrant 9\nTask deleted.", ""}));
    QCOMPARE(m_api->server.requestCount(tasksPath), fetches);

    QTRY_VERIFY_WITH_TIMEOUT(!AlertPresenter::visibleAlert(dashboard), timeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requestCount(tasksPath), fetches + 1, timeoutMs);
}

void TestDashboardVC::panelButtonAndSwipes()
{
    RecordingDashboard *dashboard = loaded({taskJson(1, "Valve A", 4)});
    QVERIFY(dashboard);
    DashboardHeaderView *header = dashboard->headerView();
    // The button passes its state from before the tap, then flips.
    QTest::mouseClick(header->panelButton(), Qt::LeftButton);
    QTest::mouseClick(header->panelButton(), Qt::LeftButton);
    QCOMPARE(m_api->host.swipes, (QList<bool>{false, true}));
    QVERIFY(!header->isPanelButtonSelected());

    const auto swipe = [&](QPoint from, QPoint to) {
        QTest::mousePress(header, Qt::LeftButton, {}, from);
        QTest::mouseMove(header, (from + to) / 2);
        QTest::mouseMove(header, to);
        QTest::mouseRelease(header, Qt::LeftButton, {}, to);
    };
    const QPoint middle = header->rect().center();
    m_api->host.swipes.clear();
    swipe(middle + QPoint(80, 0), middle - QPoint(80, 0));
    swipe(middle - QPoint(80, 0), middle + QPoint(80, 0));
    swipe(middle, middle + QPoint(10, 0)); // too short
    swipe(middle, middle + QPoint(45, 40)); // mostly downwards
    QCOMPARE(m_api->host.swipes, (QList<bool>{true, false}));
}

void TestDashboardVC::dragsOverCardsScrollAndPull()
{
    QJsonArray tasks;
    for (int id = 1; id <= 5; ++id)
        tasks.append(taskJson(id, QStringLiteral("Valve %1").arg(id), 4));
    RecordingDashboard *dashboard = loaded(tasks);
    QVERIFY(dashboard);
    TaskTableViewCell *strip = dashboard->rows().first();
    QCOMPARE(strip->count(), 5);

    // Moves the mouse over a card in steps of 10 pixels per frame, holds still, lets go.
    const auto drag = [strip](int item, QPoint step, int steps) {
        const QPoint start = strip->cardRect(item).center();
        QTest::mousePress(strip->viewport(), Qt::LeftButton, {}, start);
        for (int i = 1; i <= steps; ++i) {
            QTest::qWait(16);
            QTest::mouseMove(strip->viewport(), start + step * i);
        }
        QTest::qWait(300);
        QTest::mouseRelease(strip->viewport(), Qt::LeftButton, {}, start + step * steps);
    };
    // Sideways over the cards: the strip scrolls, the dashboard stays.
    QScrollBar *sideways = strip->horizontalScrollBar();
    QVERIFY(sideways->maximum() > 0);
    const int fetches = m_api->server.requestCount(tasksPath);
    drag(1, QPoint(-10, 0), 15);
    QTRY_VERIFY_WITH_TIMEOUT(sideways->value() > 0, timeoutMs);
    QVERIFY(!dashboard->refreshControl()->isRefreshing());

    // Down over a card at the top: the dashboard is pulled and refreshes.
    QScroller::scroller(strip->viewport())->stop();
    sideways->setValue(0);
    drag(0, QPoint(0, 10), 30);
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requestCount(tasksPath), fetches + 1, timeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(!dashboard->refreshControl()->isRefreshing(), timeoutMs);
    // Neither drag was a tap on a card.
    QVERIFY(dashboard->segues.isEmpty());
    QCOMPARE(m_api->server.requestCount(QStringLiteral("/api/items/taskId/1"))
                 + m_api->server.requestCount(QStringLiteral("/api/items/taskId/2")),
             0);
}

void TestDashboardVC::wheelAndTapsAsOnAPhone()
{
    // Five assigned tasks in the first strip, one section each below, the last blocked.
    QJsonArray tasks;
    for (int id = 1; id <= 5; ++id)
        tasks.append(taskJson(id, QStringLiteral("Valve %1").arg(id), 2));
    for (int status = 3; status <= 5; ++status)
        tasks.append(taskJson(10 + status, QStringLiteral("Pump %1").arg(status), status));
    RecordingDashboard *dashboard = loaded(tasks);
    QVERIFY(dashboard);
    RefreshableScrollArea *page = dashboard->refreshControl();
    TaskTableViewCell *strip = dashboard->rows().first();
    QScrollBar *sideways = strip->horizontalScrollBar();

    // An upright wheel over a strip is left to the page; a sideways one scrolls the strip.
    const auto wheel = [strip](QPoint angle) {
        const QPointF at = strip->cardRect(0).center();
        QWheelEvent event(at, strip->viewport()->mapToGlobal(at), {}, angle, Qt::NoButton, {}, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(strip->viewport(), &event);
    };
    wheel(QPoint(0, -120));
    QCOMPARE(sideways->value(), 0);
    wheel(QPoint(-120, 0));
    QVERIFY(sideways->value() > 0);

    // A card cut off at the strip's end or at the page's edge: the first tap
    // brings it into view, the second opens it.
    const auto tapVisiblePart = [page](TaskTableViewCell *row, int item) {
        const QRect inSight = row->viewport()->rect().intersected(
            QRect(row->viewport()->mapFrom(page->viewport(), QPoint()), page->viewport()->size()));
        QTest::mouseClick(row->viewport(), Qt::LeftButton, {}, row->cardRect(item).intersected(inSight).center());
    };
    const auto inFullView = [page](TaskTableViewCell *row, int item) {
        const QRect card = row->cardRect(item);
        return row->viewport()->rect().contains(card)
            && page->viewport()->rect().contains(
                QRect(row->viewport()->mapTo(page->viewport(), card.topLeft()), card.size()));
    };
    const auto opensOnSecondTap = [&](TaskTableViewCell *row, int item, const QString &prompt) {
        QVERIFY(!inFullView(row, item));
        tapVisiblePart(row, item);
        QTRY_VERIFY_WITH_TIMEOUT(inFullView(row, item), timeoutMs);
        QVERIFY(!AlertPresenter::visibleAlert(dashboard));
        tapVisiblePart(row, item);
        AlertView *alert = AlertPresenter::visibleAlert(dashboard);
        QVERIFY(alert);
        QCOMPARE(alert->title(), prompt);
        QVERIFY(alert->triggerAction(QStringLiteral("No")));
    };
    page->verticalScrollBar()->setValue(0);
    sideways->setValue(0);
    int cutOff = 0;
    while (strip->viewport()->rect().contains(strip->cardRect(cutOff)))
        ++cutOff;
    opensOnSecondTap(strip, cutOff, QStringLiteral("Acknowledge task `Valve %1`").arg(cutOff + 1));

    TaskTableViewCell *last = dashboard->rows().last();
    const int lastTop = last->mapTo(page->widget(), QPoint()).y();
    page->verticalScrollBar()->setValue(lastTop + last->height() / 2 - page->viewport()->height());
    opensOnSecondTap(last, 0, QStringLiteral("Unblock task `Pump 5`"));
}

void TestDashboardVC::missingViewModelStops()
{
    FatalErrorTrap trap;
    DashboardVC dashboard;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, dashboard.loadViewIfNeeded());
}

void TestDashboardVC::closingWhileFetching()
{
    auto answered = std::make_shared<std::atomic<int>>(0);
    m_api->server.on("GET", tasksPath, [answered](const RecordedRequest &) {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        ++*answered;
        return CannedResponse{200, answer(QJsonArray{taskJson(1, "Valve A", 4)})};
    });
    auto host = makeHost(*m_api, m_center);
    QTRY_VERIFY_WITH_TIMEOUT(m_api->server.requestCount(tasksPath) >= 1, timeoutMs);
    QPointer<DashboardVC> dashboard = host->dashboard();
    host.reset();
    QVERIFY(dashboard.isNull());
    // The answers arrive after everything is gone.
    QTRY_VERIFY_WITH_TIMEOUT(answered->load() >= 1, timeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(answersTaken(m_api->network), timeoutMs);
    QVERIFY(m_log->linesStartingWith(QStringLiteral("Fetched ")).isEmpty());
}

void TestDashboardVC::alertAnsweredAfterTheDashboardIsGone()
{
    m_api->server.on("GET", tasksPath, CannedResponse{500, {}});
    QWidget window;
    window.resize(390, 700);
    auto *dashboard = new DashboardVC(&window);
    (new QVBoxLayout(&window))->addWidget(dashboard);
    dashboard->setViewModel(new DashboardVM(&m_api->manager, m_api->users, fixedClock(m_api->now)));
    window.show();
    dashboard->loadViewIfNeeded();
    QTRY_VERIFY_WITH_TIMEOUT(AlertPresenter::visibleAlert(&window), timeoutMs);
    QPointer<AlertView> alert = AlertPresenter::visibleAlert(&window);
    QCOMPARE(alert->title(), DashboardTexts::fetchFailureTitle());

    delete dashboard;
    QVERIFY(alert);
    QVERIFY(alert->triggerAction(QStringLiteral("OK")));
    QTRY_VERIFY_WITH_TIMEOUT(!AlertPresenter::visibleAlert(&window), timeoutMs);
}

QTEST_MAIN(TestDashboardVC)
#include "tst_dashboardvc.moc"
