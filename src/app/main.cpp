#include "FiscalMemoryFile.h"
#include "MDITestFPOPOS.h"
#include "ShellPickers.h"
#include "SimulatedFiscalPrinter.h"

#include <QApplication>

#include <memory>

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    // --new-fiscal-memory MODEL: asks, moves that model's fiscal memory aside and ends.
    if (const qsizetype i = app.arguments().indexOf(QStringLiteral("--new-fiscal-memory")); i > 0) {
        ShellPickers::InstallDialogSeams();
        return sim::StartNewFiscalMemory(app.arguments().value(i + 1));
    }
    auto printer = std::make_unique<SimulatedFiscalPrinter>();
    printer->SetFiscalMemoryFactory(sim::PersistentFiscalMemories({}));
    MDITestFPOPOS window(std::move(printer));
    window.show();
    return app.exec();
}
