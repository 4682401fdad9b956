#pragma once

#include "comments/commentsvc.h"
#include "comments/commentthreadmodel.h"
#include "comments/commentthreadview.h"
#include "filter/filtervc.h"
#include "filter/inputfield.h"
#include "filter/inputsheet.h"
#include "host/ravelineventvc.h"
#include "host/ravelinnavvc.h"
#include "host/taskupdateevent.h"
#include "items/itemlistmodel.h"
#include "items/itemsvc.h"
#include "items/qrscannervc.h"
#include "support/apiharness.h"
#include "support/testpicker.h"
#include "tasks/dashboardvc.h"
#include "tasks/taskstrip.h"
#include "views/alertpresenter.h"
#include "views/alertview.h"
#include "views/refreshablescrollarea.h"

#include <QNetworkReply>
#include <QTest>

#include <memory>

namespace ravelin::test {

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

// A task event as the host posts it, about a task of that name.
inline QVariant taskEvent(qint64 id, const QString &name, TaskUpdateEventType type)
{
    auto event = std::make_shared<TaskUpdateEvent>();
    event->id = id;
    event->name = name;
    event->type = type;
    return QVariant::fromValue(event);
}

// How a test wants its navigation host.
struct HostOptions
{
    // Pickers and camera; network, store, notifications and clock come from the harness.
    RavelinNavVC::Environment environment = {};
    // The alerts' and the scanner's waits, over the environment's: short unless
    // a test checks the waits themselves (then unset, or set to what it checks).
    std::optional<Delays> delays = Delays::uniform(std::chrono::milliseconds(100));
    // The root screen, taken over by the host; a new dashboard when unset.
    Screen *root = nullptr;
    // Whether the host hands over the session's network data.
    bool networkData = true;
    bool shown = true;
    QSize size{390, 844};
};

// A phone-sized navigation host on the harness's server, signed in as worker 7
// ("Ann Rivers"; worker 1 is the "Dispatch Desk").
inline std::unique_ptr<RavelinNavVC> makeHost(ApiHarness &api, NotificationCenter &center, HostOptions options = {})
{
    RavelinNavVC::Environment environment = std::move(options.environment);
    environment.userDefaults = &api.settings;
    environment.network = &api.network;
    environment.notifications = &center;
    environment.clock = fixedClock(api.now);
    if (options.delays)
        environment.delays = *options.delays;
    auto host = options.root ? std::make_unique<RavelinNavVC>(std::move(environment), options.root)
                             : std::make_unique<RavelinNavVC>(std::move(environment));
    host->currentUserId = 7;
    host->assetsList
        = QMap<qint64, QStringList>{{7, {"Ann Rivers", "people_01"}}, {1, {"Dispatch Desk", "building_01"}}};
    if (options.networkData)
        host->networkData = NetworkData{api.server.baseUrl(), toDateTime(api.now - std::chrono::seconds(30)),
                                        QStringLiteral("host-token")};
    host->setVcDelegate(&api.host);
    host->resize(options.size);
    if (options.shown)
        host->show();
    return host;
}

// Waits until the dashboard shows `taskCount` tasks with its indicator stopped.
inline bool waitForDashboard(RavelinNavVC &host, int taskCount, int timeoutMs = 10000)
{
    DashboardVC *dashboard = host.dashboard();
    return QTest::qWaitFor(
        [&] {
            int shown = 0;
            for (const TaskTableViewCell *row : dashboard->rows())
                shown += row->count();
            return shown == taskCount && !dashboard->refreshControl()->isRefreshing();
        },
        timeoutMs);
}

// An alert as title, message and button titles joined by "/"; nothing for none.
inline QStringList alertTexts(const AlertView *alert)
{
    return alert ? QStringList{alert->title(), alert->message(), alert->actionTitles().join(QLatin1Char('/'))}
                 : QStringList();
}

// The topmost alert over a screen, as alertTexts() reads it.
inline QStringList topAlert(const QWidget *screen)
{
    return alertTexts(AlertPresenter::visibleAlert(screen));
}

// Every alert shown while the log lives, as alertTexts() reads it, oldest first:
// what a test reads of an alert that may be gone by the time it looks.
class AlertLog : public QObject
{
public:
    AlertLog() { qApp->installEventFilter(this); }

    [[nodiscard]] QStringList last() const { return shown.value(shown.size() - 1); }
    // Waits for the next alert after the `seen` first ones; its title, or nothing in time.
    [[nodiscard]] QString waitForTitle(qsizetype seen = 0, int timeoutMs = 10000) const
    {
        return QTest::qWaitFor([&] { return shown.size() > seen; }, timeoutMs) ? shown.at(seen).value(0) : QString();
    }

    QList<QStringList> shown;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show) {
            if (auto *alert = qobject_cast<AlertView *>(watched))
                shown.append(alertTexts(alert));
        }
        return false;
    }
};

// Whether every answer the network has had has also been taken: no reply is
// left, the last one deleted after its handler ran.
inline bool answersTaken(const QNetworkAccessManager &network)
{
    return network.findChildren<QNetworkReply *>().isEmpty();
}

// Opens the first task of the dashboard's row `row` and waits for its
// `itemCount` items; nullptr when that does not happen in time.
inline ItemsVC *openTask(RavelinNavVC &host, int row, int itemCount, int timeoutMs = 10000)
{
    DashboardVC *dashboard = host.dashboard();
    dashboard->openTask(dashboard->rows().at(row)->tasks().first());
    ItemsVC *screen = nullptr;
    const bool loaded = QTest::qWaitFor(
        [&] {
            screen = qobject_cast<ItemsVC *>(host.topScreen());
            return screen && !screen->refreshControl()->isRefreshing() && screen->itemModel()->rowCount() == itemCount;
        },
        timeoutMs);
    return loaded ? screen : nullptr;
}

// Where openScreen() goes: the dashboard's sections, and the task it opens (the
// first of a section) with its items and comment rows once loaded.
struct ScreenRoute
{
    int sections = 1;
    int taskRow = 0;
    int items = 1;
    int commentRows = 0;
};

// Walks a shown host from its loaded dashboard to the screen of that name:
// "dashboard", "prompt" (the first task's status prompt), "filter", "date
// picker", "items", "item action" (for the last item), "block task",
// "scanner", "comments" or "picture" (a comment's picture opened). The keyboard is on
// the window where it would be; false when the screen does not show in time.
inline bool openScreen(RavelinNavVC &host, const QString &name, const ScreenRoute &route = {}, int timeoutMs = 10000)
{
    DashboardVC *dashboard = host.dashboard();
    if (!QTest::qWaitForWindowActive(&host)
        || !QTest::qWaitFor(
            [&] {
                return dashboard->rows().size() == route.sections && dashboard->rows().last()->isVisible()
                    && !dashboard->refreshControl()->isRefreshing();
            },
            timeoutMs))
        return false;
    host.setFocus();
    if (name == QLatin1String("dashboard"))
        return true;
    if (name == QLatin1String("prompt")) {
        dashboard->openTask(dashboard->rows().first()->tasks().first());
        return AlertPresenter::visibleAlert(&host) != nullptr;
    }
    if (name == QLatin1String("filter") || name == QLatin1String("date picker")) {
        dashboard->filterAction()->trigger();
        auto *filter = qobject_cast<FilterVC *>(host.topScreen());
        host.setFocus();
        if (!filter || name == QLatin1String("filter"))
            return filter;
        QTest::keyClick(filter->dateStart(), Qt::Key_Return);
        return filter->inputSheet()->isPresented();
    }
    ItemsVC *items = openTask(host, route.taskRow, route.items, timeoutMs);
    if (!items)
        return false;
    host.setFocus();
    if (name == QLatin1String("items"))
        return true;
    if (name == QLatin1String("item action")) {
        items->actOnRow(route.items - 1);
        return host.presentedScreen();
    }
    if (name == QLatin1String("scanner")) {
        items->checkpointBtnPressed()->trigger();
        host.setFocus();
        return qobject_cast<QRScannerVC *>(host.topScreen());
    }
    if (name == QLatin1String("block task")) {
        items->markAsBlockedBtn()->click();
        return host.presentedScreen();
    }
    items->commentsButton()->trigger();
    auto *comments = qobject_cast<CommentsVC *>(host.topScreen());
    if (!comments
        || !QTest::qWaitFor(
            [&] {
                return !comments->isFetching() && comments->threadModel()->rowCount() == route.commentRows
                    && comments->tableView()->height() > 0;
            },
            timeoutMs))
        return false;
    host.setFocus();
    if (name == QLatin1String("comments"))
        return true;
    comments->commentCellDidTapImage(QImage::fromData(jpeg()));
    return host.presentedScreen();
}

// Opens the only task of the dashboard and waits for its `itemCount` items;
// nullptr when that does not happen in time.
inline ItemsVC *openOnlyTask(RavelinNavVC &host, int itemCount, int timeoutMs = 10000)
{
    DashboardVC *dashboard = host.dashboard();
    if (!QTest::qWaitFor([&] { return !dashboard->rows().isEmpty() && dashboard->rows().first()->count() == 1; },
                         timeoutMs))
        return nullptr;
    return openTask(host, 0, itemCount, timeoutMs);
}

} // namespace ravelin::test
