// The printer window's paper view under a long day: 10,000 receipts printed through the simulated
// printer, offscreen, once with no window and once with the printer window shown and the event
// loop run after every receipt (the views lay out and paint then). Prints:
//   - microseconds per printed line that the window adds (the difference of the two runs),
//   - the time of one full repaint of the receipt view at the end,
//   - resident memory at 1,000 and 10,000 receipts with the window, and the elements it keeps.
// Usage: bench_printer_window [receipts]   (default 10000)
#include "BenchSupport.h"
#include "OposAll.h"
#include "PaperView.h"
#include "SimulatedFiscalPrinter.h"
#include "frmPrinter.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>

#include <cstdio>
#include <ctime>
#include <memory>

namespace {

bool Ready(SimulatedFiscalPrinter& p) {
    QString name = QStringLiteral("ZorvaneFPU");
    int32_t timeout = 1000;
    if (p.Open(name) || p.ClaimDevice(timeout))
        return false;
    p.SetDeviceEnabled(true);
    return p.ResultCode() == 0;
}

// Three items, the total paid in cash: eleven elements on each roll.
bool Receipt(SimulatedFiscalPrinter& p, int n) {
    bool header = false;
    if (p.BeginFiscalReceipt(header))
        return false;
    for (int i = 0; i < 3; ++i) {
        QString desc = QStringLiteral("Item %1/%2").arg(n).arg(i);
        Amount price = Amount{100 + i} * 100;
        int32_t qty = 0, vat = 1;
        Amount unitPrice = 0;
        QString unit;
        if (p.PrintRecItem(desc, price, qty, vat, unitPrice, unit))
            return false;
    }
    Amount total = 0, paid = Amount{1000} * 100;
    QString cash = QStringLiteral("0");
    return p.PrintRecTotal(total, paid, cash) == 0 && p.EndFiscalReceipt(header) == 0;
}

struct Run {
    double seconds = 0, cpuSeconds = 0; // wall clock; processor time of the process, all threads
    qint64 lines = 0;
    long rssAt1000 = 0, rssAtEnd = 0;
};

// Prints `receipts` receipts; with a window, the event loop runs after each.
bool Print(SimulatedFiscalPrinter& p, int receipts, bool window, Run& run) {
    QElapsedTimer clock;
    clock.start();
    const std::clock_t cpu = std::clock();
    for (int n = 1; n <= receipts; ++n) {
        if (!Receipt(p, n))
            return false;
        if (window)
            QCoreApplication::processEvents();
        if (n == 1000)
            run.rssAt1000 = bench::StatusKiB();
    }
    run.seconds = clock.nsecsElapsed() / 1e9;
    run.cpuSeconds = double(std::clock() - cpu) / CLOCKS_PER_SEC;
    run.rssAtEnd = bench::StatusKiB();
    run.lines = p.ReceiptRoll().Count() + p.JournalRoll().Count();
    return true;
}

// The view alone: the receipt roll's elements appended again to a roll of their own, with the
// event loop run after each receipt's worth, with a view following it or with none. The best of
// three, in nanoseconds per element.
double AppendNanos(const QList<sim::PrintedLine>& lines, bool withView) {
    double best = 1e18;
    for (int round = 0; round < 3; ++round) {
        sim::PaperRoll roll;
        std::unique_ptr<PaperView> view;
        if (withView) {
            view = std::make_unique<PaperView>();
            view->resize(480, 800);
            view->SetRoll(&roll);
            view->show();
            QCoreApplication::processEvents();
        }
        QElapsedTimer clock;
        clock.start();
        for (qsizetype i = 0; i < lines.size(); ++i) {
            roll.Append(lines[i]);
            if (i % 11 == 10)
                QCoreApplication::processEvents();
        }
        QCoreApplication::processEvents();
        best = std::min(best, double(clock.nsecsElapsed()) / lines.size());
    }
    return best;
}

} // namespace

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    const int receipts = argc > 1 ? std::max(1000, atoi(argv[1])) : 10000;
    std::printf("receipts: %d, lines per receipt: 11 on each roll\n", receipts);
    std::printf("resident memory at start: %ld KiB\n", bench::StatusKiB());

    Run bare, shown;
    {
        SimulatedFiscalPrinter printer;
        if (!Ready(printer) || !Print(printer, receipts, false, bare))
            return 1;
        std::printf(
            "without window: %.2f s (processor %.2f s), %.2f us per printed line, resident %ld KiB at the "
            "end\n",
            bare.seconds, bare.cpuSeconds, bare.seconds * 1e6 / bare.lines, bare.rssAtEnd);
    }
    SimulatedFiscalPrinter printer;
    if (!Ready(printer))
        return 1;
    frmPrinter window;
    window.SetPrinter(&printer);
    window.resize(1280, 860);
    window.show();
    QCoreApplication::processEvents();
    const long before = bench::StatusKiB();
    if (!Print(printer, receipts, true, shown))
        return 1;
    // The event loop runs the views' frames too, so the window run takes at least the frames' time.
    const double perLine = (shown.seconds - bare.seconds) * 1e6 / shown.lines;
    const double cpuPerLine = (shown.cpuSeconds - bare.cpuSeconds) * 1e6 / shown.lines;
    std::printf("with window:    %.2f s (processor %.2f s), %.2f us per printed line\n", shown.seconds,
                shown.cpuSeconds, shown.seconds * 1e6 / shown.lines);
    std::printf("the window's share: %.2f us per printed line by the clock, %.2f us of processor time "
                "(%lld lines on both rolls)\n",
                perLine, cpuPerLine, static_cast<long long>(shown.lines));

    const double alone = AppendNanos(printer.ReceiptRoll().Lines(), false);
    const double followed = AppendNanos(printer.ReceiptRoll().Lines(), true);
    std::printf(
        "the paper view alone: %.3f us per appended line (%.3f us with a view, %.3f us without; best of 3)\n",
        (followed - alone) / 1000, followed / 1000, alone / 1000);

    PaperView* view = window.viewReceipt;
    QElapsedTimer paint;
    paint.start();
    constexpr int repaints = 50;
    for (int i = 0; i < repaints; ++i)
        view->viewport()->repaint();
    std::printf("one repaint of the receipt view (%dx%d): %.2f ms\n", view->viewport()->width(),
                view->viewport()->height(), paint.nsecsElapsed() / 1e6 / repaints);
    std::printf(
        "resident memory with window: %ld KiB before printing, %ld KiB at 1,000 receipts, %ld KiB at %d\n",
        before, shown.rssAt1000, shown.rssAtEnd, receipts);
    std::printf("elements laid out by the receipt view: %lld of %lld on the roll\n",
                static_cast<long long>(view->ShownCount()),
                static_cast<long long>(printer.ReceiptRoll().Count()));
    return 0;
}
