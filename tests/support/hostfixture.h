#pragma once

#include "host/ravelinnavvc.h"
#include "items/itemlistmodel.h"
#include "items/itemsvc.h"
#include "support/apiharness.h"
#include "tasks/dashboardvc.h"
#include "tasks/taskstrip.h"
#include "views/alertpresenter.h"
#include "views/alertview.h"
#include "views/refreshablescrollarea.h"

#include <QTest>

#include <memory>

namespace ravelin::test {

// How a test wants its navigation host.
struct HostOptions
{
    // Pickers and camera; network, store, notifications and clock come from the harness.
    RavelinNavVC::Environment environment = {};
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

inline std::unique_ptr<RavelinNavVC> showHost(ApiHarness &api, NotificationCenter &center,
                                              RavelinNavVC::Environment environment = {})
{
    return makeHost(api, center, HostOptions{std::move(environment)});
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

// The topmost alert over a screen as title, message and button titles joined by "/".
inline QStringList topAlert(const QWidget *screen)
{
    const AlertView *alert = AlertPresenter::visibleAlert(screen);
    return alert ? QStringList{alert->title(), alert->message(), alert->actionTitles().join(QLatin1Char('/'))}
                 : QStringList();
}

// Opens the only task of the dashboard and waits for its `itemCount` items;
// nullptr when that does not happen in time.
inline ItemsVC *openOnlyTask(RavelinNavVC &host, int itemCount, int timeoutMs = 10000)
{
    DashboardVC *dashboard = host.dashboard();
    if (!QTest::qWaitFor([&] { return !dashboard->rows().isEmpty() && dashboard->rows().first()->count() == 1; },
                         timeoutMs))
        return nullptr;
    dashboard->openTask(dashboard->rows().first()->tasks().first());
    ItemsVC *screen = nullptr;
    const bool loaded = QTest::qWaitFor(
        [&] {
            screen = qobject_cast<ItemsVC *>(host.topScreen());
            return screen && !screen->refreshControl()->isRefreshing() && screen->itemModel()->rowCount() == itemCount;
        },
        timeoutMs);
    return loaded ? screen : nullptr;
}

} // namespace ravelin::test
