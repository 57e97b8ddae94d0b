// Draws the main window over the simulated printer, after Open Claim Enable, into a PNG.
// Usage: QT_QPA_PLATFORM=offscreen shell_screenshot docs/main-window.png
#include "MDITestFPOPOS.h"
#include "SimulatedFiscalPrinter.h"
#include "frmToolbar.h"

#include <QApplication>
#include <QPushButton>
#include <QTimer>

#include <cstdio>

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("main-window.png");

    MDITestFPOPOS window(std::make_unique<SimulatedFiscalPrinter>());
    window.show();
    window.Toolbar()->cmdOCE->click();

    QTimer::singleShot(300, &app, [&] {
        const bool saved = window.grab().save(out);
        std::printf("%s %s\n", saved ? "saved" : "could not save", qPrintable(out));
        app.exit(saved ? 0 : 1);
    });
    return app.exec();
}
