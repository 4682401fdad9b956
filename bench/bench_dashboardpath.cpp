// The dashboard's whole path for a large answer: bytes -> decoded tasks ->
// status sections, next to the parse-and-fill reference measured in the same
// run; and a large comment thread grouped by local day.

#include "api/clock.h"
#include "api/settings.h"
#include "bench/taskanswer.h"
#include "comments/commentsvm.h"
#include "comments/taskscommentsresponse.h"
#include "filter/taskfilterdata.h"
#include "tasks/dashboardvm.h"
#include "tasks/tasklist.h"
#include "tasks/tasksresponse.h"

#include <QByteArray>

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <cstdio>
#include <random>
#include <string>

using namespace ravelin;
using namespace ravelin::bench;

namespace {

constexpr int commentCount = 10000;

TaskList makeTaskList()
{
    Settings settings = Settings::defaults();
    settings.taskCategory = categories();
    return TaskList(
        TaskFilterData::makeDefault(fixedClock(TimePoint(std::chrono::milliseconds(1795169730123))), settings));
}

QByteArray makeCommentAnswer()
{
    std::mt19937 rng(7);
    std::uniform_int_distribution<qint64> offset(0, 60LL * 86400 * 1000);
    std::uniform_int_distribution<int> coin(0, 3);
    const qint64 start = 1790000000000;
    std::string out = R"({"success":true,"data":[)";
    for (int i = 0; i < commentCount; ++i) {
        const QByteArray date = QDateTime::fromMSecsSinceEpoch(start + offset(rng), Qt::UTC)
                                    .toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'"))
                                    .toLatin1();
        if (i)
            out += ',';
        out += R"({"text":"Checked the pump housing, seal replaced and pressure logged.","userId":)"
            + std::to_string(i % 9);
        out += R"(,"dateCreated":")" + date.toStdString() + '"';
        out += R"(,"itemId":)" + (coin(rng) ? std::to_string(100 + i % 40) : std::string("null"));
        out += R"(,"isIncident":")" + std::string(coin(rng) == 0 ? "1" : "0") + '"';
        out += R"(,"assetName":"Crew )" + std::to_string(i % 9) + R"(","assetIcon":"people_01"})";
    }
    out += "]}";
    return QByteArray(out.data(), qsizetype(out.size()));
}

const QByteArray &commentAnswer()
{
    static const QByteArray bytes = makeCommentAnswer();
    return bytes;
}

void BM_ParseAndFillReference(benchmark::State &state)
{
    simdjson::dom::parser parser;
    for (auto _ : state)
        benchmark::DoNotOptimize(parseAndFill(parser, answer()));
    state.SetBytesProcessed(state.iterations() * answer().size());
}

void BM_TaskDecoding(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(json::decode<TasksResponse>(answer(), networkOptions()));
    state.SetBytesProcessed(state.iterations() * answer().size());
}

void BM_TaskSections(benchmark::State &state)
{
    const TaskList list = makeTaskList();
    const QList<TaskPtr> tasks = json::decode<TasksResponse>(answer(), networkOptions()).data;
    for (auto _ : state)
        benchmark::DoNotOptimize(DashboardVM::arrange(tasks, list.filterData->sortingConfig));
    state.SetItemsProcessed(state.iterations() * tasks.size());
}

// What one fetch costs on the api queue: decoding, sorting, grouping, counting.
void BM_TaskPathBytesToSections(benchmark::State &state)
{
    const TaskList list = makeTaskList();
    for (auto _ : state) {
        benchmark::DoNotOptimize(DashboardVM::arrange(json::decode<TasksResponse>(answer(), networkOptions()).data,
                                                      list.filterData->sortingConfig));
    }
    state.SetBytesProcessed(state.iterations() * answer().size());
}

void BM_CommentDecoding(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(json::decode<TasksCommentsResponse>(commentAnswer(), networkOptions()));
    state.SetItemsProcessed(state.iterations() * commentCount);
}

// Newest-first ordering and grouping by local day, as a fetch does with its answer.
void BM_CommentGrouping(benchmark::State &state)
{
    const QList<CommentPtr> comments = json::decode<TasksCommentsResponse>(commentAnswer(), networkOptions()).data;
    CommentsVM vm(std::make_shared<Task>(), nullptr, UsersData{});
    for (auto _ : state) {
        vm.setComments(comments);
        benchmark::DoNotOptimize(vm.groupedComments().size());
    }
    state.SetItemsProcessed(state.iterations() * commentCount);
}

} // namespace

BENCHMARK(BM_ParseAndFillReference)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TaskDecoding)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TaskSections)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TaskPathBytesToSections)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CommentDecoding)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CommentGrouping)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
