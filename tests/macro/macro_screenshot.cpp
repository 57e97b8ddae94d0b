// Grabs the macro panel offscreen in the middle of a replay on the simulated printer, for the
// documentation: macro_screenshot <output file>.
#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "clsBenchLog.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"
#include "frmFiscalTicket.h"
#include "frmMacro.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("macro-panel.png");
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
    frmFiscalTicket fiscal(ctx);
    frmMacro panel(ctx);
    panel.resize(760, 420);
    panel.show();

    wrapper.WOpen(QStringLiteral("ZorvaneFPU"));
    wrapper.ClaimDevice(2000);
    wrapper.SetDeviceEnabled(true);
    fiscal.RebuildVatList();
    fiscal.RebuildPaymentForms();
    panel.cmdClear->click();

    // Two receipts recorded by hand on the fiscal panel.
    const auto wait = [] {
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < 600)
            QApplication::processEvents(QEventLoop::AllEvents, 50);
    };
    for (int receipt = 0; receipt < 2; ++receipt) {
        fiscal.cmdBeginFiscRecpt->click();
        fiscal.cmdPrintRecItem->click();
        fiscal.cmdPrintRecItem->click();
        wait(); // the receipt total comes back into its fields
        fiscal.cmdPrintRecTotal->click();
        fiscal.cmdEndFiscRcpt->click();
    }

    panel.chkStopOnError->setChecked(true);
    panel.cbSpeed->setCurrentText(QStringLiteral("100"));
    panel.cmdExecuteMacro->click();
    QTimer::singleShot(750, &app, [&] {
        const bool saved = panel.grab().save(out);
        std::printf("%s %s\n", saved ? "saved" : "could not save", qPrintable(out));
        panel.cmdStop->click();
        app.exit(saved ? 0 : 1);
    });
    return app.exec();
}
