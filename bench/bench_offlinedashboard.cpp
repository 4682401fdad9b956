// The dashboard opened without a connection, offscreen: the 10,000-task answer
// the offline cache kept (SQLite), read back when the request fails, decoded
// and arranged on the api queue, up to the first painted frame. The request
// goes to a loopback port that refuses connections, as a phone without a
// network fails at once.

#include "api/settings.h"
#include "bench/taskanswer.h"
#include "tests/support/outboxrig.h"

#include "screenbench.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTemporaryDir>

using namespace ravelin;

namespace {

constexpr qint64 userId = 1;

// A loopback port that refuses connections once the server listening on it is gone.
QString refusingHost()
{
    QTcpServer closed;
    closed.listen(QHostAddress::LocalHost);
    return QStringLiteral("127.0.0.1:%1").arg(closed.serverPort());
}

// A refusing port, a session with a fresh token, and the answer in the cache.
// The rig's outbox has no user, and sends nothing.
struct Offline
{
    Offline()
        : rig(dir.path(), refusingHost())
    {
        Settings current = Settings::defaults();
        current.taskCategory = bench::categories();
        Settings::setCurrent(current);
        rig.store.storeAnswer(userId, Router::getAllTasks(userId, {}).path(), bench::answer(), systemClock()());
        rig.manager.setCacheReader(
            [this](const Router &route) { return rig.store.cachedAnswer(userId, route.path()); });
    }

    QTemporaryDir dir;
    test::OutboxRig rig;
};

void BM_CachedDashboardOpens(benchmark::State &state)
{
    Offline offline;
    int shown = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto screen = std::make_unique<bench::DashboardWindow>(&offline.rig.manager);
        bool done = false;
        state.ResumeTiming();
        screen->viewModel->fetchTasks([&done](bool, std::optional<ManagerErrors>) { done = true; });
        QElapsedTimer waited;
        waited.start();
        while (!done && waited.elapsed() < 30000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        screen->dashboard->reloadData();
        screen->frame();
        state.PauseTiming();
        shown = int(screen->viewModel->taskList().tasks.size());
        screen->saveShot("cached-dashboard", state);
        screen.reset();
        state.ResumeTiming();
    }
    state.counters["tasks shown"] = shown;
    if (shown != bench::taskCount)
        state.SkipWithError("the dashboard did not open from the cache");
}

} // namespace

BENCHMARK(BM_CachedDashboardOpens)->Arg(bench::taskCount)->Unit(benchmark::kMillisecond)->MinTime(2.0);

RAVELIN_SCREEN_BENCHMARK_MAIN()
