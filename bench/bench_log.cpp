// Cost of one line appended to the bench's log, measured after the log already holds a given
// number of lines: appending must not grow with the size of the log.
#include "Seams.h"
#include "clsBenchLog.h"

#include <QLoggingCategory>

#include <benchmark/benchmark.h>

namespace {

const QString Line = QStringLiteral("PrintRecItem(\"Articolo test 1\", 1.00, 0, 0, 0.00, \"Kg\")     -> "
                                    "OposSuccess(0)");

void Fill(clsBenchLog& log, int64_t lines) {
    for (int64_t i = 0; i < lines; ++i)
        log.Append(Line);
}

// The debug output taken by a handler that drops it: the log's own append and the line's copy.
void BM_AppendDebugHandler(benchmark::State& state) {
    SetDebugOutputHandler([](const QString&) {});
    clsBenchLog log;
    Fill(log, state.range(0));
    for (auto _ : state)
        log.Append(Line);
    state.counters["lines_before"] = double(state.range(0));
    SetDebugOutputHandler({});
}
BENCHMARK(BM_AppendDebugHandler)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Iterations(200'000);

// No handler and the "opos.log" category off, as in a run that nobody follows: the copy for the
// debug output is never built.
void BM_AppendDebugCategoryOff(benchmark::State& state) {
    SetDebugOutputHandler({});
    QLoggingCategory::setFilterRules(QStringLiteral("opos.log.debug=false"));
    clsBenchLog log;
    Fill(log, state.range(0));
    for (auto _ : state)
        log.Append(Line);
    state.counters["lines_before"] = double(state.range(0));
}
BENCHMARK(BM_AppendDebugCategoryOff)->Arg(10'000)->Arg(1'000'000)->Iterations(200'000);

} // namespace

BENCHMARK_MAIN();
