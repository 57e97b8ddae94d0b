// Draws the printer window after a receipt with a barcode and a bitmap into a PNG.
// Usage: printer_screenshot docs/printer-window.png
#include "MDITestFPOPOS.h"
#include "PaperView.h"
#include "PrinterBench.h"
#include "frmPrinter.h"

#include <QApplication>
#include <QScrollBar>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

using namespace pw;

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    QStandardPaths::setTestModeEnabled(true); // the window's remembered state stays out of the user's
    const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("printer-window.png");
    QTemporaryDir folder;

    MDITestFPOPOS window(std::make_unique<SimulatedFiscalPrinter>());
    IFiscalPrinter& p = window.Control();
    if (!Ready(p))
        return 1;
    int32_t line = 1;
    bool wide = true;
    QString header = QStringLiteral("FPUBENCH DEMO STORE");
    p.SetHeaderLine(line, header, wide);
    line = 2;
    wide = false;
    header = QStringLiteral("Via dei Test 1, Milano");
    p.SetHeaderLine(line, header, wide);
    DirectIOData slot{};
    slot[0] = 1;
    if (DirectIO(p, 1100, slot, WriteBitmapFile(QDir(folder.path()))) != 0)
        return 1;

    const QStringList sale{QStringLiteral("Espresso"), QStringLiteral("Cornetto"),
                           QStringLiteral("Acqua 0,5L")};
    if (Sale(p, sale, Seq("|cA") + Seq("|14R14006381333931")) != 0)
        return 1;
    const QStringList styles{
        Seq("|cA") + Seq("|1B"),
        Seq("|cA") + Seq("|4C") + QStringLiteral("THANK YOU"),
        Seq("|bC") + QStringLiteral("Bold"),
        Seq("|uC") + QStringLiteral("Underlined"),
        Seq("|iC") + QStringLiteral("Italic text"),
        Seq("|rvC") + QStringLiteral(" Reverse "),
        Seq("|2C") + QStringLiteral("Double width"),
        Seq("|3C") + QStringLiteral("Double height"),
        Seq("|6C") + QStringLiteral("Boxed"),
        Seq("|2fT") + QStringLiteral("Font B: smaller, more columns on a line"),
        Seq("|rA") + QStringLiteral("Right aligned"),
        Seq("|cA") + Esc + QStringLiteral("|12R4FPUBENCH-42"),
    };
    if (NonFiscal(p, styles) != 0)
        return 1;
    DirectIOData drawer{};
    DirectIO(p, 1000, drawer, {});
    DirectIOData row{};
    row[0] = 1;
    DirectIO(p, 1302, row, QStringLiteral("THANK YOU!"));
    row[0] = 2;
    DirectIO(p, 1302, row, QStringLiteral("TOTALE         6,75"));

    window.show();
    window.ShowPrinterWindow();
    frmPrinter* printer = window.PrinterWindow();
    printer->resize(1280, 860);
    QTimer::singleShot(400, &app, [&] {
        // The fiscal receipt selected, as after a click on it, and in sight.
        PaperView* view = printer->viewReceipt;
        view->SelectDocumentAt(view->FirstShown());
        view->verticalScrollBar()->setValue(0);
        const bool saved = printer->grab().save(out);
        std::printf("%s %s\n", saved ? "saved" : "could not save", qPrintable(out));
        app.exit(saved ? 0 : 1);
    });
    return app.exec();
}
