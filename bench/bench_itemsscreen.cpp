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

#include "screenbench.h"

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

// A fresh items screen on a task whose answer has arrived.
ItemsVC *openScreen(bench::PhoneWindow &window, const QList<ItemPtr> &items)
{
    auto *screen = new ItemsVC(&window.window);
    window.layout->addWidget(screen);
    UsersData users;
    users.currentUser.id = 1;
    screen->setViewModel(new ItemsVM(taskOf({}), nullptr, users));
    screen->reloadData();
    screen->viewModel()->task()->itemList.items = items;
    screen->reloadData();
    window.frame();
    return screen;
}

void BM_ItemsScreenOpen(benchmark::State &state)
{
    const QList<ItemPtr> items = answer(int(state.range(0)));
    bench::PhoneWindow window;
    int measured = 0;
    for (auto _ : state) {
        ItemsVC *screen = openScreen(window, items);
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
    bench::PhoneWindow window;
    ItemsVC *screen = openScreen(window, answer(int(state.range(0))));
    window.saveShot("items", state);
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
    bench::PhoneWindow window;
    ItemsVC *screen = openScreen(window, answers[0]);
    std::size_t next = 1;
    for (auto _ : state) {
        screen->viewModel()->task()->itemList.items = answers[next];
        screen->reloadData();
        window.frame();
        next = 1 - next;
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

RAVELIN_SCREEN_BENCHMARK(BM_ItemsScreenOpen, 10, 1000, 10000);
RAVELIN_SCREEN_BENCHMARK(BM_ItemsScreenFilter, 10, 1000, 10000);
RAVELIN_SCREEN_BENCHMARK(BM_ItemsScreenRefresh, 10, 1000, 10000);

RAVELIN_SCREEN_BENCHMARK_MAIN()
