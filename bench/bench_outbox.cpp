// The outbox's cost: writing one result (its picture file synced and renamed,
// its row committed with WAL and synchronous FULL) and draining a queue of 500
// results with pictures against a loopback HTTPS server, pictures uploaded first.

#include "api/sqliteofflinestore.h"
#include "demo/common/loopbackserver.h"
#include "tests/support/outboxresults.h"
#include "tests/support/outboxrig.h"

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <httplib.h>

#include <atomic>

using namespace ravelin;
using namespace std::chrono;

namespace {

constexpr qint64 user = 7;

// A 640x480 photo as the camera's JPEG (about 20 KB).
const QByteArray &photoBytes()
{
    static const QByteArray bytes = [] {
        QImage image(640, 480, QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, qRgb((x * 7 + y) % 256, (y * 3) % 256, (x ^ y) % 256));
        }
        QByteArray jpeg;
        QBuffer buffer(&jpeg);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "JPEG", 85);
        return jpeg;
    }();
    return bytes;
}

// The n-th result of a round, of `kind`, on `task`.
OutboxEntry roundResult(OutboxEntry::Kind kind, qint64 task, qint64 n)
{
    return test::sampleResult(kind, user, task, QStringLiteral("Round note %1").arg(n), n, system_clock::now());
}

void writeResult(benchmark::State &state, OutboxEntry::Kind kind)
{
    QTemporaryDir dir;
    SqliteOfflineStore store(dir.path());
    // Every result but a status change comes with a picture.
    const QByteArray picture = kind == OutboxEntry::Kind::taskStatus ? QByteArray() : photoBytes();
    qint64 n = 0;
    for (auto _ : state) {
        ++n;
        if (!store.add(roundResult(kind, 1 + n % 20, n), picture))
            state.SkipWithError("the result was not written");
    }
}

void drainQueue(benchmark::State &state)
{
    const int results = int(state.range(0));
    std::atomic<int> requests = 0;
    LoopbackServer server(SelfSignedCertificate::create(), [&requests](const httplib::Request &, httplib::Response &r) {
        ++requests;
        r.status = 200;
        r.set_content(R"({"success":true,"data":true})", "application/json");
    });
    if (!server.start()) {
        state.SkipWithError("no loopback server");
        return;
    }
    for (auto _ : state) {
        state.PauseTiming();
        QTemporaryDir dir;
        test::OutboxRig rig(dir.path(), server.baseUrl());
        OutboxSender &sender = rig.sender;
        // Half item results, half comments, on 25 tasks, every one with a picture.
        for (int i = 0; i < results; ++i) {
            const qint64 task = 1 + i % 25;
            const auto kind = i % 2 ? OutboxEntry::Kind::comment : OutboxEntry::Kind::itemsUpdate;
            if (!sender.add(roundResult(kind, task, i), photoBytes()))
                state.SkipWithError("the result was not written");
        }
        requests = 0;
        QEventLoop loop;
        QObject::connect(&sender, &OutboxSender::idle, &loop, [&] {
            if (sender.counts().waiting == 0)
                loop.quit();
        });
        QTimer::singleShot(minutes(2), &loop, &QEventLoop::quit);
        state.ResumeTiming();

        sender.setUserId(user);
        loop.exec();

        state.PauseTiming();
        if (sender.counts().waiting != 0)
            state.SkipWithError("the queue did not drain");
        state.counters["requests"] = double(requests);
        state.ResumeTiming();
    }
    state.counters["results/s"]
        = benchmark::Counter(double(results) * double(state.iterations()), benchmark::Counter::kIsRate);
}

} // namespace

BENCHMARK_CAPTURE(writeResult, task_status, OutboxEntry::Kind::taskStatus)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeResult, item_with_picture, OutboxEntry::Kind::itemsUpdate)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeResult, comment_with_picture, OutboxEntry::Kind::comment)->Unit(benchmark::kMillisecond);
BENCHMARK(drainQueue)->Arg(500)->Iterations(2)->UseRealTime()->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
