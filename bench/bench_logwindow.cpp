// The log window shown while lines arrive, with the event loop turning between them as in the
// program: offscreen, the window at its usual size, every turn free to lay out and paint what it
// wants. Three runs on the same log and window:
//   one per turn:  100,000 lines, one line and one turn of the event loop at a time, as a replay
//                  or an automatic test feeds the log;
//   100 per turn:  1,000,000 lines, a hundred lines a turn;
//   1M lines:      1,000,000 lines one per turn into an emptied log, timed by the 100,000, then
//                  the resident memory of the whole process.
// Beside them, at a replay's pace: a one-shot 1 ms timer re-armed after each tick, as the macro
// panel plays at delay "0", logging one line a tick, against the same ticks logging nothing; the
// processor time the log and its window add to a line.
// Lines are about a hundred characters, drawn from the kinds of line a receipt leaves. The last
// line is the verdict:
//   log shown: X us/line one per turn, Y us/line 100 per turn; 1M lines: T s, R MB resident
// Usage: bench_logwindow
#include "BenchSupport.h"
#include "Seams.h"
#include "clsBenchLog.h"
#include "clsLogView.h"
#include "frmLog.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

namespace {

// Paints of the view's viewport.
struct PaintCounter : QObject {
    long paints = 0;
    bool eventFilter(QObject*, QEvent* e) override {
        paints += e->type() == QEvent::Paint;
        return false;
    }
};

double CpuMs() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

// Processor milliseconds of `ticks` ticks of a re-armed 1 ms timer, each running `tick`.
template <typename Tick> double PacedCpuMs(int ticks, Tick tick) {
    QTimer timer;
    timer.setSingleShot(true);
    timer.setInterval(1);
    QEventLoop loop;
    int done = 0;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        tick(done);
        if (++done < ticks)
            timer.start();
        else
            loop.quit();
    });
    const double start = CpuMs();
    timer.start();
    loop.exec();
    return CpuMs() - start;
}

// A thousand different lines of the kinds a receipt leaves, about a hundred characters each.
std::vector<QString> LinePool() {
    std::vector<QString> pool;
    for (int i = 0; i < 1000; ++i) {
        switch (i % 4) {
        case 0:
            pool.push_back(
                QStringLiteral("PrintRecItem(\"Articolo di prova numero %1\", 12.50, 1000, 1, 12.50, "
                               "\"Kg\")     -> OposSuccess(0)")
                    .arg(i));
            break;
        case 1:
            pool.push_back(
                QStringLiteral("PrintRecTotal(%1.50, %1.50, \"Contanti\")     -> OposEExtended(114)  "
                               "OposEfptrRecEmpty(203)  Paper out")
                    .arg(i));
            break;
        case 2:
            pool.push_back(
                QStringLiteral("DirectIO(DIRECTIO_FPTR_DY_PRINTTEXT, {%1, 0, 0, 0, 0, 0, 0, 0, 0, 0, "
                               "0}, Totale euro)     -> OposSuccess(0)")
                    .arg(i));
            break;
        default:
            pool.push_back(
                QStringLiteral("StatusUpdateEvent(PtrSueRecNearempty)  BeginFiscalReceipt(-1)     -> "
                               "OposSuccess(0)  #%1")
                    .arg(i));
        }
    }
    return pool;
}

struct Feeder {
    clsBenchLog& log;
    clsLogView& view;
    const std::vector<QString>& pool;
    size_t next = 0;

    // `lines` lines, `perTurn` at a time with a turn of the event loop after each batch, then the
    // last ones taken in and painted. Microseconds a line.
    double Feed(long lines, int perTurn) {
        QElapsedTimer clock;
        clock.start();
        for (long done = 0; done < lines; done += perTurn) {
            for (int i = 0; i < perTurn; ++i)
                log.Append(pool[next++ % pool.size()]);
            QCoreApplication::processEvents();
        }
        // The last lines are taken in and drawn now rather than waited for: the wait for the
        // next frame would be idle time, not work.
        view.FlushPending();
        QCoreApplication::processEvents();
        return double(clock.nsecsElapsed()) / 1e3 / double(lines);
    }
};

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    SetDebugOutputHandler({}); // the "opos.log" category is off, as in a run nobody follows

    const std::vector<QString> pool = LinePool();
    double chars = 0;
    for (const QString& line : pool)
        chars += line.size();

    clsBenchLog log;
    frmLog window(log);
    window.resize(760, 480);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window)) {
        std::fprintf(stderr, "the log window was not shown\n");
        return 1;
    }
    clsLogView& view = *window.txtOposLog;
    PaintCounter counter;
    view.viewport()->installEventFilter(&counter);
    Feeder feeder{log, view, pool};
    std::printf("lines of %.0f characters on average, %lld lines in sight\n", chars / double(pool.size()),
                static_cast<long long>(view.VisibleLineCount()));

    const double idleMiB = bench::ResidentMiB();
    QElapsedTimer clock;
    clock.start();
    long paints = counter.paints;
    const double onePerTurn = feeder.Feed(100000, 1);
    std::printf("one per turn:  100,000 lines, %.2f us a line, %ld paints in %.2f s\n", onePerTurn,
                counter.paints - paints, double(clock.elapsed()) / 1e3);
    clock.restart();
    paints = counter.paints;
    const double hundredPerTurn = feeder.Feed(1000000, 100);
    std::printf("100 per turn: 1,000,000 lines, %.2f us a line, %ld paints in %.2f s\n", hundredPerTurn,
                counter.paints - paints, double(clock.elapsed()) / 1e3);

    constexpr int PacedTicks = 3000;
    window.cmdClearLog->click();
    const double idleTicks = PacedCpuMs(PacedTicks, [](int) {});
    paints = counter.paints;
    const double loggedTicks =
        PacedCpuMs(PacedTicks, [&](int i) { log.Append(pool[size_t(i) % pool.size()]); });
    std::printf("at a replay's pace: %.2f us a line of processor time for the log and its window, %ld paints "
                "in %d lines\n",
                (loggedTicks - idleTicks) * 1e3 / PacedTicks, counter.paints - paints, PacedTicks);

    window.cmdClearLog->click();
    QCoreApplication::processEvents();
    clock.restart();
    paints = counter.paints;
    std::vector<double> perHundredThousand;
    for (int part = 0; part < 10; ++part)
        perHundredThousand.push_back(feeder.Feed(100000, 1) * 100000 / 1e6);
    const double millionSeconds = double(clock.nsecsElapsed()) / 1e9;
    const double residentMiB = bench::ResidentMiB();
    std::printf("1M lines one per turn: %.2f s, %ld paints; each 100,000 in s:", millionSeconds,
                counter.paints - paints);
    for (const double s : perHundredThousand)
        std::printf(" %.2f", s);
    std::printf("\n  last 100,000 against first: %.2f\n",
                perHundredThousand.back() / perHundredThousand.front());
    std::printf(
        "resident: %.0f MB with the window up and an empty log, %.0f MB after 1M lines (peak %.0f MB)\n",
        idleMiB, residentMiB, bench::ResidentMiB("VmHWM:"));
    std::printf("log shown: %.2f us/line one per turn, %.2f us/line 100 per turn; 1M lines: %.2f s, %.0f MB "
                "resident\n",
                onePerTurn, hundredPerTurn, millionSeconds, residentMiB);
    return 0;
}
