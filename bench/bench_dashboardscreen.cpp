// The dashboard screen at scale, offscreen: for 10, 1,000 and 10,000 tasks, the
// time from an answer that is decoded and arranged (the api queue's work) to
// the first painted frame of a fresh dashboard (model reset, layout and a
// grab), and the time of a refresh with the same number of other tasks. What
// the main thread pays for an answer, whatever its size.

#include "tasks/task.h"

#include "screenbench.h"

#include <memory>
#include <random>

using namespace ravelin;

namespace {

const std::array<const char *, 8> works{"Pump maintenance",  "Valve replacement",      "Monthly meter readings",
                                        "Fire safety check", "Quarterly inspection",   "Strainer cleaning",
                                        "Leak repair",       "Emergency lighting test"};
const std::array<const char *, 6> sites{"Northfield pump station", "Harbour Road valve chamber",
                                        "Elm Street reservoir",    "Riverside treatment plant",
                                        "Station 7 booster",       "West Quay depot"};

// `count` tasks over the six statuses, as a decoded answer has them, arranged
// as the api queue hands them over.
ArrangedTasks arrangedTasks(int count, unsigned seed)
{
    std::mt19937 rng(seed);
    std::uniform_int_distribution<int> status(0, 5), priority(0, 3), progress(0, 12);
    QList<TaskPtr> tasks;
    const QDateTime start = QDateTime::fromMSecsSinceEpoch(1790000000000, Qt::UTC);
    for (int i = 0; i < count; ++i) {
        auto task = std::make_shared<Task>();
        task->id = 1000 + i;
        task->name = QStringLiteral("%1 – %2 #%3")
                         .arg(QString::fromUtf8(works[std::size_t(i) % works.size()]),
                              QString::fromUtf8(sites[std::size_t(i / 8) % sites.size()]))
                         .arg(i);
        // Every status has tasks, so that each answer has the same six sections.
        task->currentStatus = TaskStatuses::allCases().at(i < 6 ? i : status(rng));
        task->priority = TaskPriorities::allCases().at(priority(rng));
        task->taskCategory = {1, QStringLiteral("Inspection")};
        task->dateCreated = start.addSecs(qint64(i) * 600);
        const QList<ItemsCount> counts{{1, progress(rng)}, {2, progress(rng) / 4}, {3, progress(rng)}};
        task->progress = TaskProgress::fromCounts(counts);
        tasks.append(task);
    }
    return DashboardVM::arrange(tasks, SortConfiguration{SortKey::date, SortOrder::descending});
}

// What an answer leads to on the main thread, up to the painted frame.
void show(bench::DashboardWindow &screen, const ArrangedTasks &arranged)
{
    screen.viewModel->takeTasks(arranged);
    screen.dashboard->reloadData();
    screen.frame();
}

void BM_DashboardFirstFrame(benchmark::State &state)
{
    const ArrangedTasks arranged = arrangedTasks(int(state.range(0)), 1);
    for (auto _ : state) {
        state.PauseTiming();
        auto screen = std::make_unique<bench::DashboardWindow>();
        state.ResumeTiming();
        show(*screen, arranged);
        state.PauseTiming();
        screen.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Both answers of a refresh have the same sections, so that a refresh is the
// table reloading, not rows coming and going.
void BM_DashboardRefresh(benchmark::State &state)
{
    const std::array<ArrangedTasks, 2> answers{arrangedTasks(int(state.range(0)), 1),
                                               arrangedTasks(int(state.range(0)), 2)};
    bench::DashboardWindow screen;
    show(screen, answers[1]);
    screen.saveShot("dashboard", state);
    std::size_t next = 0;
    for (auto _ : state) {
        show(screen, answers[next]);
        next = 1 - next;
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

RAVELIN_SCREEN_BENCHMARK(BM_DashboardFirstFrame, 10, 1000, 10000);
RAVELIN_SCREEN_BENCHMARK(BM_DashboardRefresh, 10, 1000, 10000);

RAVELIN_SCREEN_BENCHMARK_MAIN()
