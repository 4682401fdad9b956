#pragma once

// What the screen benchmarks share: a phone-sized offscreen window, the frame
// the event loop would paint next, a picture of it on request, a dashboard in
// such a window, the three sizes each benchmark runs at with the best run
// reported, and main().

#include "api/clock.h"
#include "api/usersdata.h"
#include "bench/taskanswer.h"
#include "tasks/dashboardvc.h"
#include "tasks/dashboardvm.h"

#include <QApplication>
#include <QPixmap>
#include <QVBoxLayout>
#include <QWidget>

#include <benchmark/benchmark.h>

namespace ravelin::bench {

struct PhoneWindow
{
    // Shown at once, or by show() once the screen is in it.
    explicit PhoneWindow(bool shown = true)
    {
        window.resize(390, 844);
        layout = new QVBoxLayout(&window);
        if (shown)
            show();
    }

    void show()
    {
        window.show();
        QCoreApplication::processEvents();
    }

    // Layouts run through posted events, one posting the next (the list grows,
    // then its scroll area follows): what the event loop does before the next
    // frame, and the frame.
    void frame()
    {
        for (int pass = 0; pass < 3; ++pass)
            QCoreApplication::sendPostedEvents();
        last = window.grab();
    }

    // The last frame as <RAVELIN_BENCH_SHOTS>/<name>-<size>.png, when that is set.
    void saveShot(const char *name, benchmark::State &state) const
    {
        if (qEnvironmentVariableIsSet("RAVELIN_BENCH_SHOTS"))
            last.save(QStringLiteral("%1/%2-%3.png")
                          .arg(qEnvironmentVariable("RAVELIN_BENCH_SHOTS"), QString::fromLatin1(name))
                          .arg(state.range(0)));
    }

    QWidget window;
    QVBoxLayout *layout = nullptr;
    QPixmap last;
};

// A phone-sized window with a dashboard that has never shown anything, for
// worker 1, its view model on `manager` (or on none).
struct DashboardWindow : PhoneWindow
{
    explicit DashboardWindow(NetworkManager *manager = nullptr)
        : PhoneWindow(false)
    {
        dashboard = new DashboardVC(&window);
        layout->addWidget(dashboard);
        UsersData users;
        users.currentUser.id = 1;
        viewModel = new DashboardVM(manager, users, systemClock());
        dashboard->setViewModel(viewModel);
        show();
    }

    DashboardVC *dashboard = nullptr;
    DashboardVM *viewModel = nullptr;
};

} // namespace ravelin::bench

// A screen benchmark at three sizes, in milliseconds, with the best run.
#define RAVELIN_SCREEN_BENCHMARK(function, small, medium, large)                                                       \
    BENCHMARK(function)                                                                                                \
        ->Arg(small)                                                                                                   \
        ->Arg(medium)                                                                                                  \
        ->Arg(large)                                                                                                   \
        ->ComputeStatistics("min", ravelin::bench::minimum)                                                            \
        ->Unit(benchmark::kMillisecond)

#define RAVELIN_SCREEN_BENCHMARK_MAIN()                                                                                \
    int main(int argc, char **argv)                                                                                    \
    {                                                                                                                  \
        qputenv("QT_QPA_PLATFORM", "offscreen");                                                                       \
        QApplication app(argc, argv);                                                                                  \
        benchmark::Initialize(&argc, argv);                                                                            \
        if (benchmark::ReportUnrecognizedArguments(argc, argv))                                                        \
            return 1;                                                                                                  \
        benchmark::RunSpecifiedBenchmarks();                                                                           \
        benchmark::Shutdown();                                                                                         \
        return 0;                                                                                                      \
    }
