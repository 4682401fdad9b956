// Reading QR codes from camera frames: one 1280x720 frame with a code on it and
// one without, as the camera hands them over (32-bit colour) and already grey.
// The scanner reads one frame at a time off the main thread, so a frame's
// reading time bounds how many frames a second are looked at.

#include "demo/common/qrsymbol.h"
#include "items/qrcodereader.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>

using namespace ravelin;

namespace {

const QSize hd(1280, 720);

QImage frame(bool withCode, QImage::Format format)
{
    const QList<QrSymbol::Sticker> stickers{{QStringLiteral("FS-1021"), QPoint(560, 250)}};
    return QrSymbol::scene(hd, withCode ? stickers : QList<QrSymbol::Sticker>{}).convertToFormat(format);
}

void readFrame(benchmark::State &state, bool withCode, QImage::Format format)
{
    const QImage picture = frame(withCode, format);
    qsizetype found = 0;
    for (auto _ : state) {
        const QList<QrDetection> codes = QrCodeReader::read(picture);
        found += codes.size();
        benchmark::DoNotOptimize(codes);
    }
    state.counters["codes/frame"] = double(found) / double(state.iterations());
    state.counters["frames/s"] = benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
}

} // namespace

BENCHMARK_CAPTURE(readFrame, with_code_rgb32, true, QImage::Format_RGB32)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFrame, without_code_rgb32, false, QImage::Format_RGB32)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFrame, with_code_grey, true, QImage::Format_Grayscale8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readFrame, without_code_grey, false, QImage::Format_Grayscale8)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
