#include "api/networkmanager.h"
#include "api/settings.h"
#include "host/notificationcenter.h"
#include "host/ravelinnavvc.h"
#include "host/taskupdateevent.h"
#include "resources/namedcolors.h"
#include "support/apiharness.h"
#include "support/fatalerrortrap.h"
#include "support/fixtures.h"
#include "support/logcapture.h"
#include "tasks/dashboardheaderview.h"
#include "tasks/dashboardtexts.h"
#include "tasks/dashboardvc.h"
#include "tasks/dashboardvm.h"
#include "tasks/piechartview.h"
#include "tasks/taskcard.h"
#include "tasks/taskstrip.h"
#include "views/alertpresenter.h"
#include "views/alertview.h"
#include "views/refreshablescrollarea.h"
#include "views/roundedview.h"

#include <QDir>
#include <QJsonDocument>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QScrollArea>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include <atomic>
#include <thread>

using namespace ravelin;
using namespace ravelin::test;

namespace {

constexpr int timeoutMs = 10000;
const QString tasksPath = QStringLiteral("/api/tasks/assigned-user/7");

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

QVariant eventObject(qint64 id, const QString &name, TaskUpdateEventType type)
{
    auto event = std::make_shared<TaskUpdateEvent>();
    event->id = id;
    event->name = name;
    event->type = type;
    return QVariant::fromValue(event);
}

TaskPtr makeTask(TaskStatus status, const QString &name = QStringLiteral("Pump"))
{
    auto task = std::make_shared<Task>();
    task->id = 5;
    task->name = name;
    task->currentStatus = status;
    return task;
}

QJsonObject updatedTaskJson(qint64 id, const QString &name, int statusId)
{
    QJsonObject changed = taskJson(id, name, statusId, 2, QStringLiteral("2026-11-01T08:00:00.000Z"), 3);
    changed["updaterUserId"] = 7;
    return changed;
}

} // namespace

class TestDashboardVC : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // Texts and decisions.
    void sectionHeaderText_data();
    void sectionHeaderText();
    void identifiers_data();
    void identifiers();
    void statusPromptTexts_data();
    void statusPromptTexts();
    void acknowledgeButtonRule_data();
    void acknowledgeButtonRule();
    void overallChartData();
    void itemsChartData();

    // The screen.
    void sectionsHeadersAndCards();
    void emptyMessageOnceRefreshStops();
    void acknowledgeButtonOnlyOnAssignedCards();
    void statusPromptYes_data();
    void statusPromptYes();
    void statusPromptNoSendsNothing();
    void openingATask_data();
    void openingATask();
    void fetchFailureAlert();
    void taskEventAlertThenRefresh();
    void panelButtonAndSwipeReachTheHost();
    void barButtons();
    void statusChangeFromAnotherScreen();
    void dragsOverCardsScrollAndPull();
    void missingViewModelStops();
    void closingWhileFetching();
    void alertAnsweredAfterTheDashboardIsGone();
    void render();

private:
    std::unique_ptr<RavelinNavVC> makeHost();
    // Shows the host and waits for the two fetches of the first appearance.
    bool showAndLoad(RavelinNavVC &host);
    void serveTasks(const QJsonArray &tasks);
    [[nodiscard]] static RecordingDashboard *dashboardOf(RavelinNavVC &host);
    [[nodiscard]] static TaskTableViewCell *row(DashboardVC *dashboard, const QString &name);

    std::unique_ptr<ApiHarness> m_api;
    NotificationCenter m_center;
    std::unique_ptr<LogCapture> m_log;
};

void TestDashboardVC::init()
{
    Settings::setCurrent(Settings::fromReceived(Settings{{}, {}, {{3, "Pumps"}, {1, "Meters"}}}));
    m_api = std::make_unique<ApiHarness>();
    m_api->server.on("GET", "/api/settings-constants",
                     CannedResponse{200, answer(QJsonObject{{"item_status", QJsonArray{}},
                                                            {"task_status", QJsonArray{}},
                                                            {"task_category", QJsonArray{QJsonObject{{"id", 3}, {"name", "Pumps"}},
                                                                                         QJsonObject{{"id", 1}, {"name", "Meters"}}}}})});
    serveTasks({});
    m_log = std::make_unique<LogCapture>();
}

void TestDashboardVC::cleanup()
{
    m_log.reset();
    m_api.reset();
    Settings::setCurrent(Settings::defaults());
}

void TestDashboardVC::serveTasks(const QJsonArray &tasks)
{
    m_api->server.on("GET", tasksPath, CannedResponse{200, answer(tasks)});
}

std::unique_ptr<RavelinNavVC> TestDashboardVC::makeHost()
{
    auto host = std::make_unique<RavelinNavVC>(
        RavelinNavVC::Environment{&m_api->settings, &m_api->network, &m_center, fixedClock(m_api->now)},
        new RecordingDashboard);
    host->currentUserId = 7;
    host->assetsList = QMap<qint64, QStringList>{{7, {"Ann Rivers", "people_01"}}};
    host->networkData = NetworkData{m_api->server.baseUrl(), toDateTime(m_api->now - std::chrono::seconds(30)),
                                    QStringLiteral("host-token")};
    host->setVcDelegate(&m_api->host);
    host->resize(390, 844);
    return host;
}

bool TestDashboardVC::showAndLoad(RavelinNavVC &host)
{
    host.show();
    if (!QTest::qWaitForWindowExposed(&host))
        return false;
    DashboardVC *dashboard = host.dashboard();
    // Loading and appearing each fetch once.
    return QTest::qWaitFor(
        [&] {
            if (m_log->linesStartingWith(QStringLiteral("Fetched ")).size() < 2
                || dashboard->refreshControl()->isRefreshing())
                return false;
            // The new rows are shown and laid out, and the indicator band is closed.
            for (TaskTableViewCell *r : dashboard->rows()) {
                if (!r->isVisible())
                    return false;
            }
            return dashboard->refreshControl()->indicatorBand() == 0;
        },
        timeoutMs);
}

RecordingDashboard *TestDashboardVC::dashboardOf(RavelinNavVC &host)
{
    return static_cast<RecordingDashboard *>(host.dashboard());
}

TaskTableViewCell *TestDashboardVC::row(DashboardVC *dashboard, const QString &name)
{
    return dashboard->tableView()->findChild<TaskTableViewCell *>(name);
}

// Texts and decisions --------------------------------------------------------

void TestDashboardVC::sectionHeaderText_data()
{
    QTest::addColumn<std::optional<TaskStatus>>("status");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("text");
    QTest::newRow("two in progress") << std::optional(TaskStatus::in_progress) << 2 << "IN PROGRESS (2 task)";
    QTest::newRow("three assigned") << std::optional(TaskStatus::assigned) << 3 << "ASSIGNED (3 task)";
    QTest::newRow("one completed") << std::optional(TaskStatus::complete) << 1 << "COMPLETED (1 task)";
    QTest::newRow("none") << std::optional(TaskStatus::blocked) << 0 << "BLOCKED (0 tasks)";
    QTest::newRow("no status") << std::optional<TaskStatus>() << 4 << "UNKNOWN (4 task)";
}

void TestDashboardVC::sectionHeaderText()
{
    QFETCH(std::optional<TaskStatus>, status);
    QFETCH(int, count);
    QFETCH(QString, text);
    QCOMPARE(DashboardTexts::sectionHeader(status, count), text);
}

void TestDashboardVC::identifiers_data()
{
    QTest::addColumn<TaskStatus>("status");
    QTest::addColumn<QString>("cell");
    QTest::addColumn<QString>("name");
    QTest::newRow("unassigned") << TaskStatus::unassigned << "statusCell_Unassigned" << "task_unassigned";
    QTest::newRow("in progress") << TaskStatus::in_progress << "statusCell_InProgress" << "task_in_progress";
    QTest::newRow("complete") << TaskStatus::complete << "statusCell_Completed" << "task_complete";
}

void TestDashboardVC::identifiers()
{
    QFETCH(TaskStatus, status);
    QFETCH(QString, cell);
    QFETCH(QString, name);
    QCOMPARE(DashboardTexts::statusCellName(status), cell);
    QCOMPARE(DashboardTexts::taskNameIdentifier(status), name);
    QCOMPARE(DashboardTexts::statusCellName(std::nullopt), QStringLiteral("statusCell_Unknown"));
}

void TestDashboardVC::statusPromptTexts_data()
{
    QTest::addColumn<TaskStatus>("status");
    QTest::addColumn<bool>("prompts");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("message");
    QTest::addColumn<qint64>("newStatusId");
    QTest::newRow("assigned") << TaskStatus::assigned << true << "Acknowledge task `Pump`"
                              << "The task is currently assigned to you, but requires acknowledgment from your part. "
                                 "Do you want to mark it as acknowledged?"
                              << qint64(3);
    QTest::newRow("acknowledged") << TaskStatus::acknowledged << true << "Start task `Pump`"
                                  << "The task is currently acknowledged. Do you want to start working on it?" << qint64(4);
    QTest::newRow("blocked") << TaskStatus::blocked << true << "Unblock task `Pump`"
                             << "The task is currently blocked. Do you want to start working on it?" << qint64(4);
    QTest::newRow("in progress") << TaskStatus::in_progress << false << QString() << QString() << qint64(0);
    QTest::newRow("completed") << TaskStatus::complete << false << QString() << QString() << qint64(0);
    QTest::newRow("unassigned") << TaskStatus::unassigned << false << QString() << QString() << qint64(0);
}

void TestDashboardVC::statusPromptTexts()
{
    QFETCH(TaskStatus, status);
    QFETCH(bool, prompts);
    QFETCH(QString, title);
    QFETCH(QString, message);
    QFETCH(qint64, newStatusId);
    QCOMPARE(DashboardTexts::promptsBeforeOpening(status), prompts);
    const std::optional<StatusPrompt> prompt = DashboardTexts::statusPrompt(*makeTask(status));
    QCOMPARE(prompt.has_value(), prompts);
    if (prompt)
        QCOMPARE(*prompt, (StatusPrompt{title, message, newStatusId}));
}

void TestDashboardVC::acknowledgeButtonRule_data()
{
    QTest::addColumn<TaskStatus>("status");
    QTest::addColumn<bool>("shows");
    for (TaskStatus status : TaskStatuses::allCases())
        QTest::newRow(qPrintable(TaskStatuses::rawValue(status))) << status << (status == TaskStatus::assigned);
}

void TestDashboardVC::acknowledgeButtonRule()
{
    QFETCH(TaskStatus, status);
    QFETCH(bool, shows);
    QCOMPARE(DashboardTexts::showsAcknowledgeButton(*makeTask(status)), shows);
}

void TestDashboardVC::overallChartData()
{
    const ChartData chart = DashboardTexts::overallChart({0, 2, 1, 4, 0, 3});
    QCOMPARE(chart.names, (QStringList{"Unassigned", "Assigned", "Acknowledged", "In Progress", "Blocked", "Completed"}));
    QCOMPARE(chart.values, (QList<int>{0, 2, 1, 4, 0, 3}));
    QList<QColor> colors;
    for (const char *name : {"CustomGray", "CustomRed", "CustomOrange", "CustomYellow", "CustomBlue", "CustomGreen"})
        colors.append(*NamedColors::color(QString::fromLatin1(name)));
    QCOMPARE(chart.colors, colors);
}

void TestDashboardVC::itemsChartData()
{
    TaskProgress progress;
    progress.ok = 3;
    progress.nok = 1;
    progress.open = 4;
    progress.total = 50;
    const ChartData chart = DashboardTexts::itemsChart(progress);
    QCOMPARE(chart.names, (QStringList{"Completed", "Incidents", "Open"}));
    QCOMPARE(chart.values, (QList<int>{3, 1, 4}));
    QCOMPARE(chart.colors, (QList<QColor>{*NamedColors::color(ColorNames::customGreen),
                                          *NamedColors::color(ColorNames::customRed),
                                          *NamedColors::color(ColorNames::customGray)}));
}

// The screen -----------------------------------------------------------------

void TestDashboardVC::sectionsHeadersAndCards()
{
    serveTasks({taskJson(1, "Valve A", 4, 1, "2026-11-01T08:00:00.000Z", 3,
                         QJsonArray{QJsonObject{{"itemStatusId", 1}, {"count", 3}}, QJsonObject{{"itemStatusId", 2}, {"count", 1}},
                                    QJsonObject{{"itemStatusId", 3}, {"count", 4}}}),
                taskJson(2, "Valve B", 4, 2, "2026-11-02T08:00:00.000Z", 3),
                taskJson(3, "Meter C", 2, 0, "2026-11-03T08:00:00.000Z", 1),
                taskJson(4, "Tank D", 6, 3, "2026-11-04T08:00:00.000Z", 99)});
    auto host = makeHost();
    QVERIFY(showAndLoad(*host));
    DashboardVC *dashboard = host->dashboard();

    QCOMPARE(dashboard->tableView()->objectName(), QStringLiteral("TasksDashboardTableView"));
    QStringList headers;
    for (QLabel *label : dashboard->sectionHeaderLabels())
        headers.append(label->text());
    QCOMPARE(headers, (QStringList{"ASSIGNED (1 task)", "IN PROGRESS (2 task)", "COMPLETED (1 task)"}));
    QLabel *header = dashboard->sectionHeaderLabels().first();
    QTRY_COMPARE_WITH_TIMEOUT(header->geometry().x(), 10, timeoutMs);
    QCOMPARE(header->height(), 30);
    QCOMPARE(header->font().pixelSize(), 15);
    QCOMPARE(header->font().weight(), QFont::Light);
    QCOMPARE(header->palette().color(QPalette::WindowText).alphaF(), 0.8f);

    QStringList rows;
    for (TaskTableViewCell *r : dashboard->rows())
        rows.append(r->objectName() + QLatin1Char(':') + QString::number(r->cells().size()));
    QCOMPARE(rows, (QStringList{"statusCell_Assigned:1", "statusCell_InProgress:2", "statusCell_Completed:1"}));

    // Newest first within a section (the default sort).
    TaskTableViewCell *inProgress = row(dashboard, QStringLiteral("statusCell_InProgress"));
    QVERIFY(inProgress);
    const QList<QLabel *> names = inProgress->findChildren<QLabel *>(QStringLiteral("task_in_progress"));
    QCOMPARE(names.size(), 2);
    TaskCollectionViewCell *second = inProgress->cells().at(1);
    QCOMPARE(second->currentTask()->name, QStringLiteral("Valve A"));
    QCOMPARE(second->taskName()->objectName(), QStringLiteral("task_in_progress"));
    QCOMPARE(second->taskName()->text(), QStringLiteral("Valve A"));
    QCOMPARE(second->categoryLbl()->text(), QStringLiteral("Pumps"));
    QCOMPARE(second->priorityLbl()->text(), QStringLiteral("High"));
    QCOMPARE(second->progressView()->kind(), PieChartView::Kind::itemsProgress);
    QCOMPARE(second->progressView()->centerText(), QStringLiteral("50%"));
    QList<int> itemValues;
    for (const ChartSlice &slice : second->progressView()->slices())
        itemValues.append(slice.value);
    QCOMPARE(itemValues, (QList<int>{3, 1, 4}));
    // An unknown category shows as the first one.
    QCOMPARE(row(dashboard, QStringLiteral("statusCell_Completed"))->cells().first()->categoryLbl()->text(),
             QStringLiteral("All"));

    QList<int> counts;
    for (const ChartSlice &slice : dashboard->pieChartView()->slices())
        counts.append(slice.value);
    QCOMPARE(counts, (QList<int>{0, 1, 0, 2, 0, 1}));
    QCOMPARE(dashboard->pieChartView()->centerText(), QStringLiteral("Tasks"));
    QVERIFY(dashboard->headerView()->isVisible());
    QVERIFY(dashboard->emptyMessageLabel()->isHidden());
}

void TestDashboardVC::emptyMessageOnceRefreshStops()
{
    // The answer waits until the test lets it go.
    auto release = std::make_shared<std::atomic<bool>>(false);
    m_api->server.on("GET", tasksPath, [release](const RecordedRequest &) {
        for (int i = 0; i < 500 && !release->load(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return CannedResponse{200, answer(QJsonArray{})};
    });
    auto host = makeHost();
    host->show();
    QVERIFY(QTest::qWaitForWindowExposed(host.get()));
    DashboardVC *dashboard = host->dashboard();
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requests(tasksPath).size(), 2, timeoutMs);
    QVERIFY(dashboard->refreshControl()->isRefreshing());
    QVERIFY(dashboard->emptyMessageLabel()->isHidden());

    release->store(true);
    QTRY_VERIFY_WITH_TIMEOUT(!dashboard->refreshControl()->isRefreshing(), timeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_log->linesStartingWith(QStringLiteral("Fetched 0 tasks")).size(), 2, timeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(!dashboard->refreshControl()->isRefreshing(), timeoutMs);
    QVERIFY(dashboard->rows().isEmpty());
    QVERIFY(dashboard->headerView()->isHidden());
    QVERIFY(dashboard->emptyMessageLabel()->isVisible());
    QCOMPARE(dashboard->emptyMessageLabel()->text(), QStringLiteral("No item matching filter description"));

    // Tasks again: the header comes back and the message goes.
    serveTasks({taskJson(1, "Valve A", 4)});
    dashboard->pullToRefresh();
    QVERIFY(dashboard->emptyMessageLabel()->isHidden() || dashboard->refreshControl()->isRefreshing());
    QTRY_COMPARE_WITH_TIMEOUT(dashboard->rows().size(), 1, timeoutMs);
    QVERIFY(dashboard->headerView()->isVisible());
    QVERIFY(dashboard->emptyMessageLabel()->isHidden());
}

void TestDashboardVC::acknowledgeButtonOnlyOnAssignedCards()
{
    QJsonArray tasks;
    for (int status = 1; status <= 6; ++status)
        tasks.append(taskJson(status, QStringLiteral("Task %1").arg(status), status));
    serveTasks(tasks);
    auto host = makeHost();
    QVERIFY(showAndLoad(*host));
    DashboardVC *dashboard = host->dashboard();
    QCOMPARE(dashboard->rows().size(), 6);

    TaskCollectionViewCell *assigned = nullptr;
    for (TaskTableViewCell *r : dashboard->rows()) {
        for (TaskCollectionViewCell *cell : r->cells()) {
            const bool isAssigned = cell->currentTask()->currentStatus == TaskStatus::assigned;
            QCOMPARE(!cell->acknowledgeBtn()->isHidden(), isAssigned);
            if (isAssigned)
                assigned = cell;
        }
    }
    QVERIFY(assigned);

    QTest::mouseClick(assigned->acknowledgeBtn(), Qt::LeftButton);
    AlertView *alert = AlertPresenter::visibleAlert(dashboard);
    QVERIFY(alert);
    QCOMPARE(alert->title(), QStringLiteral("Acknowledge task `Task 2`"));
    QCOMPARE(alert->actionTitles(), (QStringList{"Yes", "No"}));
    // Asked at once: nothing was loaded or sent.
    QCOMPARE(m_api->server.requests(QStringLiteral("/api/items/taskId/2")).size(), 0);
    QCOMPARE(m_api->server.requests(QStringLiteral("/api/task/2")).size(), 0);
}

void TestDashboardVC::statusPromptYes_data()
{
    QTest::addColumn<int>("statusId");
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("sentId");
    QTest::addColumn<bool>("opens");
    QTest::newRow("acknowledge, then refresh") << 2 << "Acknowledge task `Pump`" << 3 << false;
    QTest::newRow("start, then open") << 3 << "Start task `Pump`" << 4 << true;
    QTest::newRow("unblock, then open") << 5 << "Unblock task `Pump`" << 4 << true;
}

void TestDashboardVC::statusPromptYes()
{
    QFETCH(int, statusId);
    QFETCH(QString, title);
    QFETCH(int, sentId);
    QFETCH(bool, opens);
    serveTasks({taskJson(8, "Pump", statusId, 2, "2026-11-01T08:00:00.000Z", 3)});
    m_api->server.on("PUT", "/api/task/8", CannedResponse{200, answer(updatedTaskJson(8, "Pump", sentId))});
    m_api->server.on("GET", "/api/items/taskId/8", CannedResponse{200, answer(QJsonArray{itemJson(1, 8, "Seal", 3)})});
    auto host = makeHost();
    QVERIFY(showAndLoad(*host));
    RecordingDashboard *dashboard = dashboardOf(*host);
    TaskCollectionViewCell *card = dashboard->rows().first()->cells().first();
    const TaskPtr task = card->currentTask();

    QTest::mouseClick(card, Qt::LeftButton, {}, card->viewCell()->geometry().center());
    AlertView *alert = AlertPresenter::visibleAlert(dashboard);
    QVERIFY(alert);
    QCOMPARE(alert->title(), title);
    QCOMPARE(alert->message(), DashboardTexts::statusPrompt(*task)->message);
    const int fetchesBefore = m_api->server.requests(tasksPath).size();

    QVERIFY(alert->triggerAction(QStringLiteral("Yes")));
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requests(QStringLiteral("/api/task/8")).size(), 1, timeoutMs);
    const QJsonObject body =
        QJsonDocument::fromJson(m_api->server.requests(QStringLiteral("/api/task/8")).first().body).object();
    QCOMPARE(body.value("task_status_id").toInt(), sentId);
    QCOMPARE(body.value("updater_user_id").toInt(), 7);

    if (opens) {
        QTRY_COMPARE_WITH_TIMEOUT(dashboard->segues, QStringList{"ShowChecklistItems"}, timeoutMs);
        QCOMPARE(dashboard->senders.size(), 1);
        QCOMPARE(dashboard->senders.first(), task);
        QCOMPARE(task->itemList.items.size(), 1);
        QCOMPARE(m_api->server.requests(tasksPath).size(), fetchesBefore);
    } else {
        QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requests(tasksPath).size(), fetchesBefore + 1, timeoutMs);
        QVERIFY(dashboard->segues.isEmpty());
        QCOMPARE(m_api->server.requests(QStringLiteral("/api/items/taskId/8")).size(), 0);
    }
}

void TestDashboardVC::statusPromptNoSendsNothing()
{
    serveTasks({taskJson(8, "Pump", 5)});
    auto host = makeHost();
    QVERIFY(showAndLoad(*host));
    RecordingDashboard *dashboard = dashboardOf(*host);
    TaskCollectionViewCell *card = dashboard->rows().first()->cells().first();
    QTest::mouseClick(card, Qt::LeftButton, {}, card->viewCell()->geometry().center());
    AlertView *alert = AlertPresenter::visibleAlert(dashboard);
    QVERIFY(alert);
    QVERIFY(alert->triggerAction(QStringLiteral("No")));
    QTRY_VERIFY_WITH_TIMEOUT(!AlertPresenter::visibleAlert(dashboard), timeoutMs);
    // A later fetch goes out, but no status change does.
    const int fetches = m_api->server.requests(tasksPath).size();
    dashboard->pullToRefresh();
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requests(tasksPath).size(), fetches + 1, timeoutMs);
    QCOMPARE(m_api->server.requests(QStringLiteral("/api/task/8")).size(), 0);
    QVERIFY(dashboard->segues.isEmpty());
}

void TestDashboardVC::openingATask_data()
{
    QTest::addColumn<int>("statusId");
    QTest::addColumn<int>("itemsStatus");
    QTest::addColumn<bool>("opens");
    QTest::newRow("in progress") << 4 << 200 << true;
    QTest::newRow("completed") << 6 << 200 << true;
    QTest::newRow("unassigned") << 1 << 200 << true;
    QTest::newRow("items fail to load") << 4 << 500 << false;
}

void TestDashboardVC::openingATask()
{
    QFETCH(int, statusId);
    QFETCH(int, itemsStatus);
    QFETCH(bool, opens);
    serveTasks({taskJson(8, "Pump", statusId)});
    m_api->server.on("GET", "/api/items/taskId/8",
                     CannedResponse{itemsStatus, itemsStatus == 200 ? answer(QJsonArray{itemJson(1, 8, "Seal", 3)}) : QByteArray()});
    auto host = makeHost();
    QVERIFY(showAndLoad(*host));
    RecordingDashboard *dashboard = dashboardOf(*host);
    TaskCollectionViewCell *card = dashboard->rows().first()->cells().first();

    QTest::mouseClick(card, Qt::LeftButton, {}, card->viewCell()->geometry().center());
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requests(QStringLiteral("/api/items/taskId/8")).size(), 1, timeoutMs);
    if (opens) {
        QTRY_COMPARE_WITH_TIMEOUT(dashboard->segues, QStringList{"ShowChecklistItems"}, timeoutMs);
        QCOMPARE(dashboard->senders.first(), card->currentTask());
        // The destination is now on top of the dashboard.
        QCOMPARE(host->screens().size(), 2);
        return;
    }
    QTRY_VERIFY_WITH_TIMEOUT(AlertPresenter::visibleAlert(dashboard), timeoutMs);
    AlertView *alert = AlertPresenter::visibleAlert(dashboard);
    QCOMPARE(alert->title(), QStringLiteral("Items Loading"));
    QCOMPARE(alert->message(), QStringLiteral("Couldn't load task items"));
    QVERIFY(alert->actionTitles().isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!AlertPresenter::visibleAlert(dashboard), timeoutMs);
    QVERIFY(dashboard->segues.isEmpty());
    QCOMPARE(host->screens().size(), 1);
}

void TestDashboardVC::fetchFailureAlert()
{
    serveTasks({taskJson(1, "Valve A", 4)});
    auto host = makeHost();
    QVERIFY(showAndLoad(*host));
    DashboardVC *dashboard = host->dashboard();
    QCOMPARE(dashboard->rows().size(), 1);

    m_api->server.on("GET", tasksPath, CannedResponse{500, {}});
    dashboard->refreshAction()->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(AlertPresenter::visibleAlert(dashboard), timeoutMs);
    AlertView *alert = AlertPresenter::visibleAlert(dashboard);
    QCOMPARE(alert->title(), QStringLiteral("The operation couldn't be completed."));
    QCOMPARE(alert->message(), QStringLiteral("Please contact technical support if the problem continues."));
    QCOMPARE(alert->actionTitles(), QStringList{"OK"});
    // The indicator runs until the worker answers.
    QVERIFY(dashboard->refreshControl()->isRefreshing());

    QVERIFY(alert->triggerAction(QStringLiteral("OK")));
    QVERIFY(!dashboard->refreshControl()->isRefreshing());
    // The table keeps what it had.
    QCOMPARE(dashboard->rows().size(), 1);
    QCOMPARE(dashboard->rows().first()->cells().first()->currentTask()->name, QStringLiteral("Valve A"));
    QVERIFY(dashboard->emptyMessageLabel()->isHidden());
}

void TestDashboardVC::taskEventAlertThenRefresh()
{
    serveTasks({taskJson(1, "Valve A", 4)});
    auto host = makeHost();
    QVERIFY(showAndLoad(*host));
    DashboardVC *dashboard = host->dashboard();

    // Not an event: nothing happens.
    m_center.post(NotificationNames::taskEvent, QVariant(42));
    QVERIFY(!AlertPresenter::visibleAlert(dashboard));

    const int fetches = m_api->server.requests(tasksPath).size();
    // An event about a task the dashboard does not even show.
    m_center.post(NotificationNames::taskEvent, eventObject(999, QStringLiteral("Hydrant 9"), TaskUpdateEventType::kDeleted));
    AlertView *alert = AlertPresenter::visibleAlert(dashboard);
    QVERIFY(alert);
    QCOMPARE(alert->title(), QStringLiteral("Task Event Update"));
    QCOMPARE(alert->message(), QStringLiteral("Hydrant 9\nTask deleted."));
    QVERIFY(alert->actionTitles().isEmpty());
    QCOMPARE(m_api->server.requests(tasksPath).size(), fetches);

    QTRY_VERIFY_WITH_TIMEOUT(!AlertPresenter::visibleAlert(dashboard), timeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requests(tasksPath).size(), fetches + 1, timeoutMs);
}

void TestDashboardVC::panelButtonAndSwipeReachTheHost()
{
    serveTasks({taskJson(1, "Valve A", 4)});
    auto host = makeHost();
    QVERIFY(showAndLoad(*host));
    DashboardVC *dashboard = host->dashboard();
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
    swipe(middle, middle + QPoint(10, 0));  // too short
    swipe(middle, middle + QPoint(45, 40)); // mostly downwards
    QCOMPARE(m_api->host.swipes, (QList<bool>{true, false}));
}

void TestDashboardVC::barButtons()
{
    serveTasks({taskJson(1, "Valve A", 4)});
    auto host = makeHost();
    QVERIFY(showAndLoad(*host));
    RecordingDashboard *dashboard = dashboardOf(*host);
    QVERIFY(dashboard->leftBarActions().contains(dashboard->refreshAction())
            || dashboard->rightBarActions().contains(dashboard->refreshAction()));
    QVERIFY(dashboard->rightBarActions().contains(dashboard->filterAction()));

    const int fetches = m_api->server.requests(tasksPath).size();
    dashboard->refreshAction()->trigger();
    QVERIFY(dashboard->refreshControl()->isRefreshing());
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requests(tasksPath).size(), fetches + 1, timeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(!dashboard->refreshControl()->isRefreshing(), timeoutMs);

    dashboard->filterAction()->trigger();
    QCOMPARE(dashboard->segues, QStringList{"ShowFilterView"});
}

void TestDashboardVC::statusChangeFromAnotherScreen()
{
    serveTasks({taskJson(8, "Pump", 4)});
    m_api->server.on("PUT", "/api/task/8", CannedResponse{200, answer(updatedTaskJson(8, "Pump", 6))});
    auto host = makeHost();
    QVERIFY(showAndLoad(*host));
    DashboardVC *dashboard = host->dashboard();
    const int fetches = m_api->server.requests(tasksPath).size();
    dashboard->changeTaskStatus(dashboard->rows().first()->cells().first()->currentTask(), TaskStatus::complete);
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requests(QStringLiteral("/api/task/8")).size(), 1, timeoutMs);
    const QJsonObject body =
        QJsonDocument::fromJson(m_api->server.requests(QStringLiteral("/api/task/8")).first().body).object();
    QCOMPARE(body.value("task_status_id").toInt(), 6);
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requests(tasksPath).size(), fetches + 1, timeoutMs);
}

void TestDashboardVC::dragsOverCardsScrollAndPull()
{
    QJsonArray tasks;
    for (int id = 1; id <= 5; ++id)
        tasks.append(taskJson(id, QStringLiteral("Valve %1").arg(id), 4));
    serveTasks(tasks);
    auto host = makeHost();
    QVERIFY(showAndLoad(*host));
    RecordingDashboard *dashboard = dashboardOf(*host);
    TaskTableViewCell *strip = dashboard->rows().first();
    QCOMPARE(strip->cells().size(), 5);

    // Moves the mouse over a card in steps of 10 pixels per frame, holds still, lets go.
    const auto drag = [](QWidget *card, QPoint step, int steps) {
        const QPoint start = card->rect().center();
        QTest::mousePress(card, Qt::LeftButton, {}, start);
        for (int i = 1; i <= steps; ++i) {
            QTest::qWait(16);
            QTest::mouseMove(card, start + step * i);
        }
        QTest::qWait(300);
        QTest::mouseRelease(card, Qt::LeftButton, {}, start + step * steps);
    };

    // Sideways over the cards: the strip scrolls, the dashboard stays.
    QScrollBar *sideways = strip->collectionView()->horizontalScrollBar();
    QVERIFY(sideways->maximum() > 0);
    const int fetches = m_api->server.requests(tasksPath).size();
    drag(strip->cells().at(1), QPoint(-10, 0), 15);
    QTRY_VERIFY_WITH_TIMEOUT(sideways->value() > 0, timeoutMs);
    QVERIFY(!dashboard->refreshControl()->isRefreshing());

    // Down over a card at the top: the dashboard is pulled and refreshes.
    drag(strip->cells().first(), QPoint(0, 10), 30);
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requests(tasksPath).size(), fetches + 1, timeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(!dashboard->refreshControl()->isRefreshing(), timeoutMs);

    // Neither drag was a tap on a card.
    QVERIFY(dashboard->segues.isEmpty());
    QCOMPARE(m_api->server.requests(QStringLiteral("/api/items/taskId/1")).size(), 0);
    QCOMPARE(m_api->server.requests(QStringLiteral("/api/items/taskId/2")).size(), 0);
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
    auto host = makeHost();
    host->show();
    QVERIFY(QTest::qWaitForWindowExposed(host.get()));
    QTRY_VERIFY_WITH_TIMEOUT(m_api->server.requests(tasksPath).size() >= 1, timeoutMs);
    QPointer<DashboardVC> dashboard = host->dashboard();
    host.reset();
    QVERIFY(dashboard.isNull());
    // The answers arrive after everything is gone.
    QTRY_VERIFY_WITH_TIMEOUT(answered->load() >= 1, timeoutMs);
    QTest::qWait(200);
    QVERIFY(m_log->linesStartingWith(QStringLiteral("Fetched ")).isEmpty());
}

void TestDashboardVC::alertAnsweredAfterTheDashboardIsGone()
{
    m_api->server.on("GET", tasksPath, CannedResponse{500, {}});
    QWidget window;
    window.resize(390, 700);
    auto *column = new QVBoxLayout(&window);
    auto *dashboard = new DashboardVC(&window);
    column->addWidget(dashboard);
    UsersData users;
    users.currentUser.id = 7;
    dashboard->setViewModel(new DashboardVM(&m_api->manager, users, fixedClock(m_api->now)));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    dashboard->loadViewIfNeeded();
    QTRY_VERIFY_WITH_TIMEOUT(AlertPresenter::visibleAlert(&window), timeoutMs);
    QPointer<AlertView> alert = AlertPresenter::visibleAlert(&window);
    QCOMPARE(alert->title(), DashboardTexts::fetchFailureTitle);

    delete dashboard;
    QVERIFY(alert);
    QVERIFY(alert->triggerAction(QStringLiteral("OK")));
    QTRY_VERIFY_WITH_TIMEOUT(!AlertPresenter::visibleAlert(&window), timeoutMs);
}

void TestDashboardVC::render()
{
    const auto counts = [](int ok, int nok, int open) {
        return QJsonArray{QJsonObject{{"itemStatusId", 1}, {"count", ok}}, QJsonObject{{"itemStatusId", 2}, {"count", nok}},
                          QJsonObject{{"itemStatusId", 3}, {"count", open}}};
    };
    serveTasks({taskJson(1, "Replace pump seal at station 4", 2, 0, "2026-11-06T08:00:00.000Z", 3, counts(0, 0, 6)),
                taskJson(2, "Meter reading, block C", 2, 2, "2026-11-05T08:00:00.000Z", 1, counts(0, 0, 3)),
                taskJson(3, "Valve inspection", 3, 1, "2026-11-04T08:00:00.000Z", 3, counts(1, 0, 4)),
                taskJson(4, "Hydrant flushing north district", 4, 1, "2026-11-03T08:00:00.000Z", 3, counts(5, 1, 2)),
                taskJson(5, "Tank level sensor check", 4, 3, "2026-11-02T08:00:00.000Z", 1, counts(2, 0, 2)),
                taskJson(6, "Pressure test main line", 5, 0, "2026-11-01T08:00:00.000Z", 3, counts(3, 2, 3)),
                taskJson(7, "Quarterly meter audit", 6, 2, "2026-10-30T08:00:00.000Z", 1, counts(8, 0, 0))});
    auto host = makeHost();
    QVERIFY(showAndLoad(*host));
    const QString directory = QStringLiteral("/tmp/ravelin-shots");
    QVERIFY(QDir().mkpath(directory));
    const QImage full = host->grab().toImage();
    QVERIFY(full.save(directory + QStringLiteral("/dashboard.png")));

    // Opening an acknowledged task asks first.
    DashboardVC *dashboard = host->dashboard();
    TaskCollectionViewCell *card = row(dashboard, QStringLiteral("statusCell_Acknowledged"))->cells().first();
    QTest::mouseClick(card, Qt::LeftButton, {}, card->viewCell()->geometry().center());
    QVERIFY(AlertPresenter::visibleAlert(dashboard));
    QVERIFY(host->grab().toImage().save(directory + QStringLiteral("/dashboard-prompt.png")));
    AlertPresenter::visibleAlert(dashboard)->triggerAction(QStringLiteral("No"));

    // The refreshing look.
    dashboard->refreshControl()->beginRefreshing();
    QTRY_COMPARE_WITH_TIMEOUT(dashboard->refreshControl()->indicatorBand(), RefreshableScrollArea::indicatorHeight,
                              timeoutMs);
    QVERIFY(host->grab().toImage().save(directory + QStringLiteral("/dashboard-refreshing.png")));
    dashboard->refreshControl()->endRefreshing();

    // No tasks.
    serveTasks({});
    dashboard->pullToRefresh();
    QTRY_VERIFY_WITH_TIMEOUT(dashboard->emptyMessageLabel()->isVisible(), timeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(dashboard->refreshControl()->indicatorBand(), 0, timeoutMs);
    QVERIFY(host->grab().toImage().save(directory + QStringLiteral("/dashboard-empty.png")));
}

QTEST_MAIN(TestDashboardVC)
#include "tst_dashboardvc.moc"
