// Grabs the fiscal receipt and properties panels offscreen, on the simulated printer, for the
// documentation: panel_screenshots <output folder>.
#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "clsBenchLog.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"
#include "frmFiscalTicket.h"
#include "frmProperties.h"
#include "frmSettings.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QString folder = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath();
    SetMessageBoxHandler([](const QString& text, MsgButtons, const QString&) {
        std::fprintf(stderr, "message: %s\n", qPrintable(text));
        return MsgResult::Ok;
    });

    SimulatedFiscalPrinter printer;
    clsBenchLog log;
    clsFprtWrapper wrapper(printer, log);
    clsMacroEngine macro(wrapper);
    wrapper.SetRecorder(&macro);
    macro.Construct();
    PanelContext ctx{printer, wrapper, macro, [] {}};

    wrapper.WOpen(QStringLiteral("ZorvaneFPU"));
    wrapper.ClaimDevice(2000);
    wrapper.SetDeviceEnabled(true);

    frmSettings settings(ctx);
    frmFiscalTicket fiscal(ctx);
    fiscal.SetAdditionalTextSources([&] { return settings.AdditionalHeaderText(); },
                                    [&] { return settings.AdditionalTrailerText(); });
    fiscal.RebuildVatList();
    fiscal.RebuildPaymentForms();
    fiscal.resize(1000, 560);
    fiscal.show();
    fiscal.cmdBeginFiscRecpt->click();
    fiscal.cmdPrintRecItem->click();
    fiscal.cmdPrintRecItem->click();
    // Let the receipt total come back into its fields.
    QElapsedTimer waited;
    waited.start();
    while (fiscal.tmrUpdateReceiptTotal->isActive() && waited.elapsed() < 5000)
        QApplication::processEvents(QEventLoop::AllEvents, 50);

    frmProperties props(ctx);
    props.resize(640, 560);
    props.show();
    props.cmdReadProps->click();
    QApplication::processEvents();

    const bool ok = fiscal.grab().save(QDir(folder).filePath(QStringLiteral("fiscal-panel.png"))) &&
                    props.grab().save(QDir(folder).filePath(QStringLiteral("properties-panel.png")));
    wrapper.ResetPrinter();
    return ok ? 0 : 1;
}
