#pragma once

#include "host/ravelinnavvc.h"
#include "items/itemlistmodel.h"
#include "items/itemsvc.h"
#include "support/apiharness.h"
#include "tasks/dashboardvc.h"
#include "tasks/taskstrip.h"
#include "views/refreshablescrollarea.h"

#include <QTest>

#include <memory>

namespace ravelin::test {

// A phone-sized navigation host on the harness's server, signed in as worker 7
// ("Ann Rivers"; worker 1 is the "Dispatch Desk"). The environment's network,
// store, notifications and clock come from the harness; the rest (pickers,
// camera) from the caller.
inline std::unique_ptr<RavelinNavVC> showHost(ApiHarness &api, NotificationCenter &center,
                                              RavelinNavVC::Environment environment = {})
{
    environment.userDefaults = &api.settings;
    environment.network = &api.network;
    environment.notifications = &center;
    environment.clock = fixedClock(api.now);
    auto host = std::make_unique<RavelinNavVC>(std::move(environment));
    host->currentUserId = 7;
    host->assetsList
        = QMap<qint64, QStringList>{{7, {"Ann Rivers", "people_01"}}, {1, {"Dispatch Desk", "building_01"}}};
    host->networkData = NetworkData{api.server.baseUrl(), toDateTime(api.now - std::chrono::seconds(30)),
                                    QStringLiteral("host-token")};
    host->setVcDelegate(&api.host);
    host->resize(390, 844);
    host->show();
    return host;
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
