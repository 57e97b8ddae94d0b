// What batching buys the log window: lines pushed into the visible text box one at a time
// against the same lines flushed in batches, as a busy replay produces them.
#include "Seams.h"
#include "clsBenchLog.h"
#include "frmLog.h"

#include <QApplication>
#include <QPlainTextEdit>

#include <benchmark/benchmark.h>

namespace {

const QString kLine =
    QStringLiteral("PrintRecItem(\"Articolo test 1\", 1.00, 0, 0, 0.00, \"Kg\")     -> OposSuccess(0)");

void LineByLine(benchmark::State& state) {
    clsBenchLog lines;
    frmLog log(lines);
    log.show();
    for (auto _ : state) {
        lines.Append(kLine);
        log.FlushPending();
    }
    state.SetItemsProcessed(state.iterations());
}

void Batched(benchmark::State& state) {
    clsBenchLog lines;
    frmLog log(lines);
    log.show();
    const int batch = static_cast<int>(state.range(0));
    for (auto _ : state) {
        for (int i = 0; i < batch; ++i)
            lines.Append(kLine);
        log.FlushPending();
    }
    state.SetItemsProcessed(state.iterations() * batch);
}

} // namespace

BENCHMARK(LineByLine)->Iterations(20000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Batched)->Arg(100)->Arg(1000)->Iterations(200)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    SetDebugOutputHandler([](const QString&) {}); // only the window's cost
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
