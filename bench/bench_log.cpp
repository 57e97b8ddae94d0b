// Cost of one WriteLog into the in-memory log, measured after the log already holds a given
// number of lines: appending must not grow with the size of the log.
#include "Seams.h"
#include "Tools.h"

#include <QLoggingCategory>

#include <benchmark/benchmark.h>

namespace {

const QString Line = QStringLiteral("PrintRecItem(\"Articolo test 1\", 1.00, 0, 0, 0.00, \"Kg\")     -> "
                                    "OposSuccess(0)");

void BM_WriteLog(benchmark::State& state) {
    // The debug output goes nowhere here: only the log's own append is measured.
    SetDebugOutputHandler([](const QString&) {});
    ClearDefaultLog();
    const auto prefill = state.range(0);
    for (int64_t i = 0; i < prefill; ++i)
        Tools::WriteLog(Line);
    for (auto _ : state)
        Tools::WriteLog(Line);
    state.counters["lines_before"] = double(prefill);
    ClearDefaultLog();
}
BENCHMARK(BM_WriteLog)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Iterations(200'000);

// The same line through the default debug output with its category switched off, as in a run
// with no monitor attached.
void BM_WriteLogDebugCategoryOff(benchmark::State& state) {
    SetDebugOutputHandler({});
    QLoggingCategory::setFilterRules(QStringLiteral("opos.log.debug=false"));
    ClearDefaultLog();
    const auto prefill = state.range(0);
    for (int64_t i = 0; i < prefill; ++i)
        Tools::WriteLog(Line);
    for (auto _ : state)
        Tools::WriteLog(Line);
    ClearDefaultLog();
}
BENCHMARK(BM_WriteLogDebugCategoryOff)->Arg(10'000)->Arg(1'000'000)->Iterations(200'000);

} // namespace

BENCHMARK_MAIN();
