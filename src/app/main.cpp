#include "BenchSettings.h"
#include "CommandLine.h"
#include "FiscalMemoryFile.h"
#include "MDITestFPOPOS.h"
#include "ShellPickers.h"
#include "SimulatedFiscalPrinter.h"

#include <QApplication>

#include <memory>

int main(int argc, char* argv[]) {
    const BenchStart start = ParseBenchArguments(CommandLine::Arguments(argc, argv));
    if (!start.openWindow)
        return FinishWithoutWindow(start);

    QApplication app(argc, argv);
    SetBenchIdentity();
    if (!start.newFiscalMemory.isEmpty()) {
        ShellPickers::InstallDialogSeams();
        return sim::StartNewFiscalMemory(start.newFiscalMemory);
    }
    frmLOGO logo;
    if (!start.device.isEmpty())
        logo.lblSOName = start.device;
    auto printer = std::make_unique<SimulatedFiscalPrinter>();
    printer->SetFiscalMemoryFactory(sim::PersistentFiscalMemories({}));
    MDITestFPOPOS window(std::move(printer), logo);
    WindowMemory memory(window);
    window.show();
    return app.exec();
}
