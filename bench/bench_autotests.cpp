// The synchronous continuous ticket test on the simulated printer, through the real main window
// with the log window shown: 1,000 tickets of 25 lines, the pause between tickets cut to nothing.
// Prints tickets/s, lines/s and the resident memory after 100 and after 1,000 tickets, then
// times fpubench-run on a macro of the same tickets for comparison.
// Usage: bench_autotests [PATH_TO_FPUBENCH_RUN]
#include "BenchSupport.h"
#include "MDITestFPOPOS.h"
#include "SimulatedFiscalPrinter.h"
#include "clsBenchCore.h"
#include "clsBenchLog.h"
#include "frmAutoTests.h"
#include "frmLog.h"
#include "frmToolbar.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <cstdio>

#include <malloc.h>

namespace {

constexpr int Lines = 25;
constexpr int FirstTickets = 100;
constexpr int AllTickets = 1000;
// The macro store holds 10001 lines: as many whole tickets as fit.
constexpr int RunnerTickets = 10001 / (Lines + 4);

// Runs `tickets` tickets from one press and waits until the last repetition has ended.
double RunTickets(frmAutoTests& panel, int tickets) {
    panel.txtNumberOfTests->setText(QString::number(tickets));
    QElapsedTimer clock;
    clock.start();
    panel.cmdAutoPrintTicket->click();
    while (panel.IsRunning() || panel.tmrTest->isActive())
        QApplication::processEvents(QEventLoop::AllEvents);
    return clock.elapsed() / 1000.0;
}

void Report(const char* what, int tickets, double seconds) {
    std::printf("%-34s %5d tickets in %7.2f s: %8.1f tickets/s %9.0f lines/s\n", what, tickets, seconds,
                tickets / seconds, tickets * double(Lines) / seconds);
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QString runner = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(FPUBENCH_RUN_PATH);

    auto* printer = new SimulatedFiscalPrinter;
    MDITestFPOPOS window{std::unique_ptr<IFiscalPrinter>(printer)};
    window.show();
    window.Log()->show();
    window.Toolbar()->cmdOCE->click();
    window.ShowPanel(frmToolbar::AutoTests);
    auto* panel = qobject_cast<frmAutoTests*>(window.Panel(frmToolbar::AutoTests));
    if (!panel || printer->PrinterState() != 1) {
        std::fprintf(stderr, "the bench did not come up on the simulated printer\n");
        return 1;
    }
    panel->SetRepetitionPause(0);
    panel->txtNumberOfLines->setText(QString::number(Lines));
    QApplication::processEvents();

    const long before = bench::StatusKiB();
    const double first = RunTickets(*panel, FirstTickets);
    const long afterFirst = bench::StatusKiB();
    const qsizetype logFirst = window.Core().Log().LineCount();
    const qsizetype paperFirst = printer->ReceiptRoll().Count() + printer->JournalRoll().Count();
    const double rest = RunTickets(*panel, AllTickets - FirstTickets);
    const long afterAll = bench::StatusKiB();
    const qsizetype logAll = window.Core().Log().LineCount();
    const qsizetype paperAll = printer->ReceiptRoll().Count() + printer->JournalRoll().Count();

    // The log's own share: what comes back when the log is cleared.
    window.Log()->Clear();
    QApplication::processEvents();
    malloc_trim(0);
    const long withoutLog = bench::StatusKiB();

    // The same again with the log window hidden, for the time the shown window costs.
    window.Log()->hide();
    const double hidden = RunTickets(*panel, AllTickets);
    window.Log()->show();

    QString total;
    int32_t item = 20, none = 0; // FPTR_GD_FISCAL_REC: receipts of the day
    printer->GetData(item, none, total);

    std::printf("continuous test, sync, %d lines a ticket, log window shown (the printer counts %s receipts "
                "at the end)\n",
                Lines, qPrintable(total));
    Report("first tickets", FirstTickets, first);
    Report("next tickets", AllTickets - FirstTickets, rest);
    Report("all tickets", AllTickets, first + rest);
    Report("1000 more, log window hidden", AllTickets, hidden);
    std::printf("resident memory: %ld KiB at start, %ld KiB after %d tickets, %ld KiB after %d tickets\n",
                before, afterFirst, FirstTickets, afterAll, AllTickets);
    std::printf("growth from %d to %d tickets: %ld KiB, %.2f KiB per ticket; the log grew by %lld lines, the "
                "two paper rolls by %lld lines\n",
                FirstTickets, AllTickets, afterAll - afterFirst,
                double(afterAll - afterFirst) / (AllTickets - FirstTickets),
                static_cast<long long>(logAll - logFirst), static_cast<long long>(paperAll - paperFirst));
    std::printf("after clearing the log: %ld KiB, %ld KiB more than at start\n", withoutLog,
                withoutLog - before);

    // The same tickets from a macro file through fpubench-run.
    QTemporaryDir dir;
    const QString macroPath = dir.filePath(QStringLiteral("tickets.oposcmd"));
    QFile macro(macroPath);
    if (!dir.isValid() || !macro.open(QIODevice::WriteOnly)) {
        std::fprintf(stderr, "cannot write the macro file\n");
        return 1;
    }
    QTextStream lines(&macro);
    for (int t = 0; t < RunnerTickets; ++t) {
        lines << "F_BeginFiscalReceipt$0\r\n";
        for (int line = 1; line <= Lines; ++line)
            lines << "F_PrintRecItem$TEST ITEM  " << line << "$1.00$0$1$0.00$\r\n";
        lines << "F_GetData$1$0\r\n";
        lines << "F_PrintRecTotal$" << Lines << ".00$" << Lines << ".00$CENTO!!\r\n";
        lines << "F_EndFiscalReceipt$0\r\n";
    }
    lines.flush();
    macro.close();

    QProcess run;
    run.setStandardOutputFile(QProcess::nullDevice());
    QElapsedTimer clock;
    clock.start();
    run.start(runner, {QStringLiteral("--open"), macroPath});
    if (!run.waitForFinished(-1) || run.exitStatus() != QProcess::NormalExit) {
        std::fprintf(stderr, "fpubench-run did not run: %s\n", qPrintable(run.errorString()));
        return 1;
    }
    const double seconds = clock.elapsed() / 1000.0;
    std::printf("fpubench-run --open on a macro of the same tickets (exit status %d):\n", run.exitCode());
    Report("fpubench-run", RunnerTickets, seconds);
    return 0;
}
