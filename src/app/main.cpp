#include "BenchSettings.h"
#include "CommandLine.h"
#include "MDITestFPOPOS.h"
#include "SimulatedFiscalPrinter.h"

#include <QApplication>

#include <memory>

int main(int argc, char* argv[]) {
    const BenchStart start = ParseBenchArguments(CommandLine::Arguments(argc, argv));
    if (!start.openWindow)
        return FinishWithoutWindow(start);

    QApplication app(argc, argv);
    SetBenchIdentity();
    frmLOGO logo;
    if (!start.device.isEmpty())
        logo.lblSOName = start.device;
    MDITestFPOPOS window(std::make_unique<SimulatedFiscalPrinter>(), logo);
    WindowMemory memory(window);
    window.show();
    return app.exec();
}
