// Compressed answers: the 10,000-task answer as a server sends it (gzip),
// inflated, and inflated and decoded as the network manager does on the api
// queue; and a decompression bomb (about 1 MB of gzip that inflates to 1 GiB)
// refused. The bomb's cost in memory is the process's peak resident memory,
// reported as the counter peak_MiB: run it alone for a clean figure
// (--benchmark_filter=Bomb).

#include "api/contentencoding.h"
#include "api/json.h"
#include "bench/taskanswer.h"
#include "tasks/tasksresponse.h"
#include "tests/support/gzipstreams.h"

#include <QByteArray>

#include <benchmark/benchmark.h>

#include <sys/resource.h>

using namespace ravelin;
using namespace ravelin::bench;

namespace {

const QByteArray &compressedAnswer()
{
    static const QByteArray bytes = test::gzip(answer());
    return bytes;
}

double peakResidentMiB()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024.0; // KiB on Linux
}

void BM_InflateTasks(benchmark::State &state)
{
    const QByteArray &body = compressedAnswer();
    for (auto _ : state) {
        const std::optional<QByteArray> inflated = ContentEncoding::decode(body, "gzip");
        if (!inflated || inflated->size() != answer().size())
            state.SkipWithError("not inflated");
        benchmark::DoNotOptimize(inflated->constData());
    }
    state.counters["compressed_KiB"] = double(body.size()) / 1024.0;
    state.counters["ratio"] = double(answer().size()) / double(body.size());
}

void BM_InflateAndDecodeTasks(benchmark::State &state)
{
    const QByteArray &body = compressedAnswer();
    const json::Options options = networkOptions();
    for (auto _ : state) {
        const std::optional<QByteArray> inflated = ContentEncoding::decode(body, "gzip");
        if (!inflated) {
            state.SkipWithError("not inflated");
            break;
        }
        TasksResponse response = json::decode<TasksResponse>(*inflated, options);
        if (response.data.size() != taskCount)
            state.SkipWithError("wrong task count");
        benchmark::DoNotOptimize(response.data.data());
    }
    state.SetItemsProcessed(std::int64_t(state.iterations()) * taskCount);
}

void BM_RefuseBomb(benchmark::State &state)
{
    static const QByteArray bomb = test::gzipBomb(1024);
    for (auto _ : state) {
        if (ContentEncoding::decode(bomb, "gzip"))
            state.SkipWithError("the bomb was inflated");
    }
    state.counters["compressed_KiB"] = double(bomb.size()) / 1024.0;
    state.counters["peak_MiB"] = peakResidentMiB();
}

} // namespace

BENCHMARK(BM_InflateTasks)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_InflateAndDecodeTasks)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RefuseBomb)->ComputeStatistics("min", minimum)->Unit(benchmark::kMillisecond)->Iterations(3);

BENCHMARK_MAIN();
