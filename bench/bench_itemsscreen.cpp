// The items screen at scale, offscreen: for a task of 10, 1,000 and 10,000
// items, what the main thread pays from the items' answer (decoded by the api
// queue) to the first painted frame of a fresh screen: building the screen,
// taking the items, laying out and a grab. Then filtering the shown task to
// "Open" and back, and taking a second answer in which every tenth item
// changed its status.

#include "api/usersdata.h"
#include "items/itemlistmodel.h"
#include "items/itemsvc.h"
#include "items/itemsvm.h"
#include "items/itemtableview.h"
#include "tasks/task.h"

#include <QApplication>
#include <QPixmap>
#include <QVBoxLayout>
#include <QWidget>

#include <benchmark/benchmark.h>

#include <memory>

using namespace ravelin;

namespace {

const std::array<const char *, 6> checkpoints{"Pressure gauge", "Enclosure seals", "Cathodic protection post",
                                              "Access path",    "Warning signs",   "Pump bearings"};
const std::array<const char *, 3> details{"Read the inlet gauge and note any value outside 2 to 6 bar",
                                          "Check door seals and cable glands for moisture",
                                          "Grease the bearings and listen for noise while running"};

// `count` items as a decoded answer has them; every `changed`-th one with
// another status than in the answer with changed = 0.
QList<ItemPtr> answer(int count, int changed = 0)
{
    QList<ItemPtr> items;
    items.reserve(count);
    const QDateTime created = QDateTime::fromMSecsSinceEpoch(1790000000000, Qt::UTC);
    for (int i = 0; i < count; ++i) {
        auto item = std::make_shared<Item>();
        item->id = 1 + i;
        item->taskId = 105;
        item->name = QStringLiteral("%1 #%2")
                         .arg(QString::fromUtf8(checkpoints[std::size_t(i) % checkpoints.size()]))
                         .arg(i + 1);
        item->details = QString::fromUtf8(details[std::size_t(i) % details.size()]);
        item->dateCreated = created;
        item->status = i % 3 == 0 ? ItemStatus::ok : ItemStatus::open;
        if (changed > 0 && i % changed == 0)
            item->status = ItemStatus::nok;
        if (i % 4 == 0)
            item->qrCode = QStringLiteral("CP-%1").arg(1000 + i);
        items.append(item);
    }
    return items;
}

TaskPtr taskOf(const QList<ItemPtr> &items)
{
    auto task = std::make_shared<Task>();
    task->id = 105;
    task->name = QStringLiteral("Safety walk-round – Riverside treatment plant");
    task->taskCategory = {5, QStringLiteral("Safety check")};
    task->itemList.items = items;
    return task;
}

// A phone-sized window.
struct Window
{
    Window()
    {
        window.resize(390, 844);
        layout = new QVBoxLayout(&window);
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

    // A fresh items screen on a task whose answer has arrived.
    ItemsVC *open(const QList<ItemPtr> &items)
    {
        auto *screen = new ItemsVC(&window);
        layout->addWidget(screen);
        UsersData users;
        users.currentUser.id = 1;
        screen->setViewModel(new ItemsVM(taskOf({}), nullptr, users));
        screen->reloadData();
        screen->viewModel()->task()->itemList.items = items;
        screen->reloadData();
        frame();
        return screen;
    }

    QWidget window;
    QVBoxLayout *layout = nullptr;
    QPixmap last;
};

void BM_ItemsScreenOpen(benchmark::State &state)
{
    const QList<ItemPtr> items = answer(int(state.range(0)));
    Window window;
    int measured = 0;
    for (auto _ : state) {
        ItemsVC *screen = window.open(items);
        state.PauseTiming();
        measured = screen->tableView()->measuredRowCount();
        delete screen;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        state.ResumeTiming();
    }
    state.counters["measuredRows"] = measured;
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_ItemsScreenFilter(benchmark::State &state)
{
    Window window;
    ItemsVC *screen = window.open(answer(int(state.range(0))));
    if (qEnvironmentVariableIsSet("RAVELIN_BENCH_SHOTS"))
        window.last.save(
            QStringLiteral("%1/items-%2.png").arg(qEnvironmentVariable("RAVELIN_BENCH_SHOTS")).arg(state.range(0)));
    int segment = ItemStatuses::segmentIndex(ItemStatus::open);
    for (auto _ : state) {
        screen->filterChanged(segment);
        window.frame();
        segment = segment == ItemStatuses::segmentIndex(ItemStatus::open)
            ? ItemStatuses::segmentIndex(ItemStatus::all)
            : ItemStatuses::segmentIndex(ItemStatus::open);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_ItemsScreenRefresh(benchmark::State &state)
{
    const std::array<QList<ItemPtr>, 2> answers{answer(int(state.range(0))), answer(int(state.range(0)), 10)};
    Window window;
    ItemsVC *screen = window.open(answers[0]);
    std::size_t next = 1;
    for (auto _ : state) {
        screen->viewModel()->task()->itemList.items = answers[next];
        screen->reloadData();
        window.frame();
        next = 1 - next;
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

double minimum(const std::vector<double> &v)
{
    return *std::min_element(v.begin(), v.end());
}

} // namespace

BENCHMARK(BM_ItemsScreenOpen)
    ->Arg(10)
    ->Arg(1000)
    ->Arg(10000)
    ->ComputeStatistics("min", minimum)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ItemsScreenFilter)
    ->Arg(10)
    ->Arg(1000)
    ->Arg(10000)
    ->ComputeStatistics("min", minimum)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ItemsScreenRefresh)
    ->Arg(10)
    ->Arg(1000)
    ->Arg(10000)
    ->ComputeStatistics("min", minimum)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
