// Grabs the automatic tests panel offscreen, on the simulated printer, for the documentation:
// autotests_screenshot <output folder>
#include "SimulatedFiscalPrinter.h"
#include "clsBenchLog.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"
#include "frmAutoTests.h"

#include <QApplication>
#include <QDir>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QString folder = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath();

    SimulatedFiscalPrinter printer;
    clsBenchLog log;
    clsFprtWrapper wrapper(printer, log);
    clsMacroEngine macro(wrapper);
    wrapper.SetRecorder(&macro);
    macro.Construct();
    PanelContext ctx{printer, wrapper, macro, [] {}};

    frmAutoTests panel(ctx);
    panel.resize(640, 320);
    panel.show();
    QApplication::processEvents();
    return panel.grab().save(QDir(folder).filePath(QStringLiteral("autotests-panel.png"))) ? 0 : 1;
}
