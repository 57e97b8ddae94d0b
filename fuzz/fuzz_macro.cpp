// Macro text through the engine's load and replay, onto a fresh simulated printer of each model,
// opened, claimed and enabled the way the toolbar does it. Waits take no time: F_Delay only lets
// the events through, the drawer closes by itself at once and queued output prints in no time.

#include "FuzzSupport.h"

#include "SimulatedFiscalPrinter.h"
#include "clsBenchCore.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>

namespace {

QString MacroPath() {
    static QTemporaryDir dir;
    static const QString path = dir.filePath(QStringLiteral("input.oposcmd"));
    return path;
}

void Replay(const QString& model, const QString& macro, bool retry) {
    SimulatedFiscalPrinter printer;
    printer.Drawer().SetAutoCloseMs(1);
    printer.SetPrintTimePerLineMs(0);
    clsBenchCore core(printer, [retry](const QString&) { return retry; });
    clsMacroEngine& engine = core.MacroEngine();
    engine.SetDelayWait([](int) { QCoreApplication::processEvents(); });
    if (engine.LoadFromFile(macro) != 0 && engine.LastLoadError() != clsMacroEngine::LoadError::TooManyLines)
        fuzz::Fail("a macro file that was just written does not load");
    engine.StartSavedMacro();
    core.OpenClaimEnable(model);
    // Nothing else moves the cursor here; the count only guards the loop.
    for (int32_t played = 0; engine.IsRunningMacro() && played <= engine.LineCount(); ++played) {
        engine.PlayLineMacro();
        fuzz::CheckBooks(printer);
    }
    QCoreApplication::processEvents();
    fuzz::CheckBooks(printer);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::Init();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    QFile file(MacroPath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        fuzz::Fail("cannot write the macro file");
    file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    file.close();
    // The last byte, whatever it is, also decides how the error events are answered.
    const bool retry = size > 0 && (data[size - 1] & 1);
    Replay(QStringLiteral("ZorvaneFPU"), MacroPath(), retry);
    Replay(QStringLiteral("Tessorim"), MacroPath(), !retry);
    fuzz::TidyReports();
    return 0;
}
