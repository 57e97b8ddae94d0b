// How close a replay at delay "0" comes to its floor, the re-armed 1 ms timer that paces it.
// Offscreen, in one run: a macro of complete fiscal receipts is loaded through the macro panel of
// the real main window and played on the simulated printer, once with the log window hidden and
// once with it shown. The floor is measured alone, with the bench idle, before and after each
// replay, and each replay is set against the mean of the two floors beside it, since a shared
// machine's load drifts. The last line is the verdict:
//   replay: L lines/s, timer floor: F ticks/s, ratio: R
// with L the replay with the log window shown and F its floor.
// Usage: bench_macro_replay [receipts]   (five lines a receipt; default 2000, a 10,000-line macro)
#include "BenchSupport.h"
#include "MDITestFPOPOS.h"
#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "clsMacroEngine.h"
#include "frmLog.h"
#include "frmMacro.h"
#include "frmToolbar.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QItemSelectionModel>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int FloorTicks = 3000;

// Ticks per second of a single-shot 1 ms timer that re-arms itself and does nothing else.
double TimerFloor() {
    QTimer timer;
    timer.setSingleShot(true);
    timer.setInterval(1);
    QEventLoop loop;
    int ticks = 0;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        if (++ticks < FloorTicks)
            timer.start();
        else
            loop.quit();
    });
    QElapsedTimer clock;
    clock.start();
    timer.start();
    loop.exec();
    return FloorTicks / (double(clock.nsecsElapsed()) / 1e9);
}

struct Replay {
    double linesPerSecond = 0;
    int failed = 0; // lines whose result wasn't 0: "Stop on error" paused on them
};

// Run on the panel, timed from the press to the tick that plays the last line.
Replay Play(frmMacro& panel, clsMacroEngine& engine, int lines) {
    QEventLoop loop;
    QElapsedTimer clock;
    qint64 end = 0;
    Replay out;
    // The end of the macro clears the list's current row.
    const auto ended = QObject::connect(engine.lstMacroCodeSelection(), &QItemSelectionModel::currentChanged,
                                        &loop, [&](const QModelIndex& current) {
                                            if (!current.isValid()) {
                                                end = clock.nsecsElapsed();
                                                loop.quit();
                                            }
                                        });
    const MessageBoxHandler previous =
        SetMessageBoxHandler([&](const QString& text, MsgButtons buttons, const QString&) {
            std::fprintf(stderr, "message: %s\n", qPrintable(text));
            ++out.failed;
            // Go on past the failure, as an operator pressing Continue would.
            QTimer::singleShot(0, panel.cmdPause, &QPushButton::click);
            return UnattendedAnswer(buttons);
        });
    clock.start();
    panel.cmdExecuteMacro->click();
    loop.exec();
    QObject::disconnect(ended);
    SetMessageBoxHandler(previous);
    out.linesPerSecond = lines / (double(end) / 1e9);
    return out;
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Twenty thousand log lines on the terminal would measure the terminal. Set the rules to
    // "opos.log.debug=true" to count the debug output in.
    if (qEnvironmentVariableIsEmpty("QT_LOGGING_RULES"))
        qputenv("QT_LOGGING_RULES", "opos.log.debug=false");
    QApplication app(argc, argv);
    const int receipts = argc > 1 ? std::max(1, QString::fromLocal8Bit(argv[1]).toInt()) : 2000;
    const int lines = receipts * 5;

    auto* printer = new SimulatedFiscalPrinter;
    SimulatedFiscalPrinter& sim = *printer;
    MDITestFPOPOS window{std::unique_ptr<IFiscalPrinter>(printer)};
    SetMessageBoxHandler([](const QString& text, MsgButtons buttons, const QString&) {
        std::fprintf(stderr, "message: %s\n", qPrintable(text));
        return UnattendedAnswer(buttons);
    });
    window.resize(1100, 640);
    window.show();
    window.Toolbar()->cmdOCE->click();
    if (sim.PrinterState() != 1) {
        std::fprintf(stderr, "the simulated printer did not open\n");
        return 1;
    }

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("receipts.oposcmd"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bench::ReceiptMacro(receipts)) < 0)
        return 1;
    file.close();
    FilePickerHandlers pickers;
    pickers.pickOpenFile = [&](QWidget*, const QString&, const QString&, const QString&) { return path; };
    SetFilePickerHandlers(pickers);

    window.Toolbar()->optMacro->click();
    frmMacro& panel = *window.Macro();
    clsMacroEngine& engine = window.MacroEngine();
    panel.cmdLoadMacro->click();
    if (engine.LineCount() != lines) {
        std::fprintf(stderr, "the macro did not load: %d lines\n", engine.LineCount());
        return 1;
    }
    panel.cbSpeed->setCurrentText(QStringLiteral("0"));
    panel.chkStopOnError->setChecked(true);

    const int receiptsBefore = sim.Memory().DayCounters().fiscalReceipts;
    const double floor0 = TimerFloor();
    window.Log()->hide();
    const Replay hidden = Play(panel, engine, lines);
    const double floor1 = TimerFloor();
    window.Log()->show();
    const Replay shown = Play(panel, engine, lines);
    const double floor2 = TimerFloor();
    const int played = sim.Memory().DayCounters().fiscalReceipts - receiptsBefore;

    const double hiddenFloor = (floor0 + floor1) / 2;
    const double shownFloor = (floor1 + floor2) / 2;
    std::printf("macro: %d lines, %d receipts printed of %d, failed lines: %d\n", lines, played, 2 * receipts,
                hidden.failed + shown.failed);
    std::printf("timer floor: %.0f, %.0f, %.0f ticks/s\n", floor0, floor1, floor2);
    std::printf("replay, log window hidden: %.0f lines/s, ratio %.3f, %.1f us a line over the floor\n",
                hidden.linesPerSecond, hidden.linesPerSecond / hiddenFloor,
                1e6 / hidden.linesPerSecond - 1e6 / hiddenFloor);
    std::printf("replay, log window shown: %.0f lines/s, ratio %.3f, %.1f us a line over the floor\n",
                shown.linesPerSecond, shown.linesPerSecond / shownFloor,
                1e6 / shown.linesPerSecond - 1e6 / shownFloor);
    std::printf("replay: %.0f lines/s, timer floor: %.0f ticks/s, ratio: %.3f\n", shown.linesPerSecond,
                shownFloor, shown.linesPerSecond / shownFloor);
    std::fflush(stdout);
    SetMessageBoxHandler({});
    SetFilePickerHandlers({});
    return played == 2 * receipts && hidden.failed + shown.failed == 0 ? 0 : 1;
}
