#include "PanelBench.h"
#include "SimulatedFiscalPrinter.h"
#include "frmFiscalTicket.h"
#include "frmMacro.h"

#include <QElapsedTimer>
#include <QItemSelectionModel>
#include <QListView>
#include <QStringListModel>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

namespace {

const QString Paused = QStringLiteral("Error ... execution paused");

// The panel's whole state as one text: the engine's cursor, the list's selected row, the timer,
// the caption and enabled flag of cmdPause, the number of lines.
QString State(const frmMacro& panel, const clsMacroEngine& engine) {
    const QModelIndexList rows = engine.lstMacroCodeSelection()->selectedIndexes();
    return QStringLiteral("cursor %1, row %2, timer %3, %4 %5, lines %6")
        .arg(engine.LineCursor())
        .arg(rows.isEmpty() ? -1 : rows.first().row())
        .arg(panel.tmrMacroExecution->isActive() ? "on" : "off", panel.cmdPause->text(),
             panel.cmdPause->isEnabled() ? "enabled" : "disabled")
        .arg(engine.LineCount());
}

void Record(clsMacroEngine& engine, const QStringList& lines) {
    for (QString line : lines)
        engine.AddCommand(line);
}

// Lets exactly one tick of a running panel come now instead of after its delay.
void OneTick(frmMacro& panel) {
    QTimer* timer = panel.tmrMacroExecution;
    const int delay = timer->interval();
    int ticks = 0;
    const auto after = QObject::connect(timer, &QTimer::timeout, timer, [&] {
        if (++ticks == 1 && timer->isActive())
            timer->setInterval(delay);
    });
    timer->setInterval(1);
    QTRY_COMPARE(ticks, 1);
    QObject::disconnect(after);
}

void DoubleClick(frmMacro& panel, int row) {
    QListView* view = panel.lstMacroCode;
    const QPoint at = row >= 0 ? view->visualRect(view->model()->index(row, 0)).center()
                               : QPoint(4, view->viewport()->height() - 4); // below the last line
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, at);
}

// The panel on the simulated printer, opened, claimed and enabled, with an empty macro.
struct SimBench {
    SimulatedFiscalPrinter printer;
    clsBenchLog log;
    clsFprtWrapper wrapper{printer, log};
    clsMacroEngine macro{wrapper};
    QStringList messages;
    PanelContext ctx{printer, wrapper, macro, [] {}};
    frmMacro panel{ctx};

    SimBench() {
        wrapper.SetRecorder(&macro);
        SetMessageBoxHandler([this](const QString& text, MsgButtons, const QString&) {
            messages.append(text);
            return MsgResult::Ok;
        });
        wrapper.WOpen(QStringLiteral("ZorvaneFPU"));
        wrapper.ClaimDevice(1000);
        wrapper.SetDeviceEnabled(true);
        panel.cmdClear->click();
    }
    ~SimBench() { SetMessageBoxHandler({}); }
    bool Show() {
        panel.resize(600, 400);
        panel.show();
        return QTest::qWaitForWindowExposed(&panel);
    }
    int Receipts() const { return printer.Memory().DayCounters().fiscalReceipts; }
    // Run at "0" and wait for the timer to stop.
    void RunToTheEnd() {
        panel.cbSpeed->setCurrentText(QStringLiteral("0"));
        panel.cmdExecuteMacro->click();
        QTRY_VERIFY_WITH_TIMEOUT(!panel.tmrMacroExecution->isActive(), 10000);
    }
};

} // namespace

class tst_MacroPanel : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

private slots:
    void initTestCase() {
        SetDebugOutputHandler([](const QString&) {});
    }
    void cleanup() { SetFilePickerHandlers({}); }

    void transitions_data() {
        QTest::addColumn<QString>("from");
        QTest::addColumn<int>("line"); // where the setup leaves the cursor
        QTest::addColumn<int>("lines");
        QTest::addColumn<QStringList>("events");
        QTest::addColumn<bool>("stopOnError");
        QTest::addColumn<int>("failing"); // the line whose call fails, -1 none
        QTest::addColumn<QString>("to");
        QTest::addColumn<int>("messages");
        const auto row = [](const char* name, const char* from, int line, int lines,
                            const QStringList& events, const char* to, bool stop = false, int failing = -1,
                            int messages = 0) {
            QTest::newRow(name) << from << line << lines << events << stop << failing << to << messages;
        };
        row("Run from Recording", "Recording", 0, 4, {"Run"},
            "cursor 0, row 0, timer on, Pause enabled, lines 4");
        row("Run while paused starts at line 0", "Paused", 2, 4, {"Run"},
            "cursor 0, row 0, timer on, Pause enabled, lines 4");
        row("Run from Rewound", "Rewound", 0, 4, {"Run"},
            "cursor 0, row 0, timer on, Pause enabled, lines 4");
        row("last line played", "Running", 3, 4, {"tick"},
            "cursor -1, row -1, timer off, Pause enabled, lines 4");
        row("failing line, no stop on error", "Running", 1, 4, {"tick"},
            "cursor 2, row 2, timer on, Pause enabled, lines 4", false, 1);
        row("Pause", "Running", 1, 4, {"Pause"}, "cursor 1, row 1, timer off, Continue enabled, lines 4");
        row("stop on error, middle line", "Running", 1, 4, {"tick"},
            "cursor 2, row 2, timer off, Continue enabled, lines 4", true, 1, 1);
        row("stop on error, last line", "Running", 3, 4, {"tick"},
            "cursor -1, row -1, timer off, Continue enabled, lines 4", true, 3, 1);
        row("Continue left in Recording", "Running", 3, 4, {"tick", "Pause", "tick"},
            "cursor -1, row -1, timer off, Continue enabled, lines 4", true, 3, 2);
        row("Continue", "Paused", 2, 4, {"Pause"}, "cursor 2, row 2, timer on, Pause enabled, lines 4");
        row("Stop while paused", "Paused", 2, 4, {"Stop"},
            "cursor 0, row 0, timer off, Continue disabled, lines 4");
        row("Stop while running", "Running", 2, 4, {"Stop"},
            "cursor 0, row 0, timer off, Pause disabled, lines 4");
        row("Clear while running", "Running", 1, 4, {"Clear"},
            "cursor -1, row -1, timer off, Pause enabled, lines 0");
        row("Clear while paused", "Paused", 1, 4, {"Clear"},
            "cursor -1, row -1, timer off, Continue enabled, lines 0");
        row("Load cancelled while running", "Running", 1, 4, {"Load"},
            "cursor 1, row 1, timer off, Pause enabled, lines 4");
        row("double click on a line", "Recording", 2, 4, {"double click"},
            "cursor 2, row 2, timer off, Pause disabled, lines 4");
        row("double click with no selection", "Rewound", 0, 4, {"deselect", "double click below"},
            "cursor -1, row -1, timer off, Pause disabled, lines 4");
        row("Step on the last line, rewound", "Rewound", 0, 1, {"Step"},
            "cursor -1, row -1, timer off, Pause disabled, lines 1");
        row("Step on the last line, paused", "Paused", 3, 4, {"Step"},
            "cursor -1, row -1, timer off, Continue enabled, lines 4");
        row("Step on the last line, placed", "Placed", 3, 4, {"Step"},
            "cursor -1, row -1, timer off, Pause disabled, lines 4");
        row("Step, rewound", "Rewound", 0, 4, {"Step"},
            "cursor 1, row 1, timer off, Pause disabled, lines 4");
        row("Step, paused", "Paused", 1, 4, {"Step"},
            "cursor 2, row 2, timer off, Continue enabled, lines 4");
        row("Step, placed", "Placed", 1, 4, {"Step"}, "cursor 2, row 2, timer off, Pause disabled, lines 4");
        row("Step while running", "Running", 1, 4, {"Step"},
            "cursor 2, row 2, timer on, Pause enabled, lines 4");
        row("failing Step, stop on error", "Paused", 1, 4, {"Step"},
            "cursor 2, row 2, timer off, Continue enabled, lines 4", true, 1, 1);
        row("Step on a stopped engine, stop on error", "Recording", 0, 4, {"Step"},
            "cursor -1, row -1, timer off, Pause disabled, lines 4", true, -1, 1);
    }
    void transitions() {
        QFETCH(QString, from);
        QFETCH(int, line);
        QFETCH(int, lines);
        QFETCH(QStringList, events);
        QFETCH(bool, stopOnError);
        QFETCH(int, failing);
        QFETCH(QString, to);
        QFETCH(int, messages);
        SimBench b;
        frmMacro& panel = b.panel;
        QVERIFY(b.Show());
        const QStringList words{"F_PrintXReport", "F_ClearError", "F_ResetPrinter", "F_CheckHealth$1"};
        Record(b.macro, words.mid(0, lines));
        panel.cbSpeed->setCurrentText(QStringLiteral("5000")); // no tick unless a row asks for one

        if (from != "Recording" && from != "Placed") {
            panel.cmdExecuteMacro->click();
            for (int i = 0; i < line; ++i)
                panel.cmdStep->click();
        }
        if (from == "Paused")
            panel.cmdPause->click();
        if (from == "Rewound")
            panel.cmdStop->click();
        if (from == "Placed")
            DoubleClick(panel, line);
        if (failing >= 0)
            b.printer.FailNextCall(words[failing].section('$', 0, 0).mid(2), 114, 203);
        panel.chkStopOnError->setChecked(stopOnError);

        for (const QString& event : events) {
            if (event == "tick")
                OneTick(panel);
            else if (event == "double click")
                DoubleClick(panel, line);
            else if (event == "double click below")
                DoubleClick(panel, -1);
            else if (event == "deselect")
                b.macro.lstMacroCodeSelection()->clear();
            else if (event == "Run")
                panel.cmdExecuteMacro->click();
            else if (event == "Load")
                panel.cmdLoadMacro->click();
            else
                panel.findChild<QPushButton*>("cmd" + event)->click();
        }
        QCOMPARE(State(panel, b.macro), to);
        QCOMPARE(b.messages, QStringList(messages, Paused));
    }

    // The operator's buttons while the tick waits in an F_Delay line: the line then ends as the
    // button says, and the timer and cursor are as the button left them.
    void buttonsDuringDelay_data() {
        QTest::addColumn<int>("delay");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("state");
        QTest::newRow("Stop") << 60000 << "cmdStop"
                              << "cursor 0, row 0, timer off, Pause disabled, lines 2";
        QTest::newRow("Run") << 60000 << "cmdExecuteMacro"
                             << "cursor 0, row 0, timer on, Pause enabled, lines 2";
        QTest::newRow("Clear") << 60000 << "cmdClear"
                               << "cursor -1, row -1, timer off, Pause enabled, lines 0";
        QTest::newRow("double click") << 60000 << "lstMacroCode"
                                      << "cursor 1, row 1, timer on, Pause enabled, lines 2";
        QTest::newRow("Pause") << 300 << "cmdPause"
                               << "cursor 1, row 1, timer off, Continue enabled, lines 2";
        QTest::newRow("Load") << 300 << "cmdLoadMacro"
                              << "cursor 1, row 1, timer off, Pause enabled, lines 2";
        QTest::newRow("Step") << 300 << "cmdStep"
                              << "cursor 1, row 1, timer on, Pause enabled, lines 2";
    }
    void buttonsDuringDelay() {
        QFETCH(int, delay);
        QFETCH(QString, button);
        QFETCH(QString, state);
        PanelBench b;
        frmMacro panel(b.ctx);
        panel.resize(600, 400);
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        Record(b.macro, {"F_Delay$" + QString::number(delay), "F_PrintXReport"});
        panel.cbSpeed->setCurrentText(QStringLiteral("5000"));
        bool pressed = false;
        QTimer during; // presses the button once the wait has begun
        during.setInterval(5);
        connect(&during, &QTimer::timeout, &panel, [&] {
            if (!panel.LineInProgress() || !b.macro.tmrDelayForMacroCls()->isActive())
                return;
            during.stop();
            pressed = true;
            if (button == "lstMacroCode")
                DoubleClick(panel, 1);
            else
                panel.findChild<QPushButton*>(button)->click();
        });
        QElapsedTimer clock;
        clock.start();
        during.start();
        panel.cmdExecuteMacro->click();
        OneTick(panel); // returns when the line has ended
        QVERIFY(pressed);
        QVERIFY(!panel.LineInProgress());
        QVERIFY(clock.elapsed() < 10000);
        QCOMPARE(State(panel, b.macro), state);
        QVERIFY(b.CallsOf("PrintXReport").isEmpty());
    }

    // What a bad file gives: no message when it is loaded; played, its lines show what they did.
    void badFiles_data() {
        QTest::addColumn<QByteArray>("bytes"); // a null array: the file isn't there
        QTest::addColumn<int>("lines");
        QTest::addColumn<QStringList>("messages"); // while played
        QTest::addColumn<QStringList>("log");
        QTest::newRow("unreadable") << QByteArray() << 1 << QStringList{}
                                    << QStringList{"PrintXReport()     -> OposSuccess(0)"};
        QTest::newRow("unknown command")
            << QByteArray("F_Bogus$1\r\nF_PrintZReport\r\n") << 2 << QStringList{"Unknown command F_Bogus$1"}
            << QStringList{"PrintZReport()     -> OposSuccess(0)"};
        QTest::newRow("fields that aren't numbers")
            << QByteArray("F_ClaimDevice$abc\r\nF_PrintRecSubtotal$x\r\n") << 2
            << QStringList{"Bad Format for x...returning 0"}
            << QStringList{"ClaimDevice(0)     -> OposSuccess(0)",
                           "PrintRecSubtotal(0.00)     -> OposSuccess(0)"};
    }
    void badFiles() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, lines);
        QFETCH(QStringList, messages);
        QFETCH(QStringList, log);
        PanelBench b;
        frmMacro panel(b.ctx);
        Record(b.macro, {"F_PrintXReport"});
        const QString path = m_dir.filePath(QStringLiteral("bad.oposcmd"));
        QFile::remove(path);
        QFile file(path);
        QVERIFY(bytes.isNull() || (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()));
        file.close();
        SetFilePickerHandlers(
            {{}, [&](QWidget*, const QString&, const QString&, const QString&) { return path; }, {}});
        panel.cmdLoadMacro->click();
        QCOMPARE(b.macro.LineCount(), lines);
        QVERIFY(b.messages.isEmpty());
        panel.cmdExecuteMacro->click();
        QTRY_VERIFY(!b.macro.IsRunningMacro());
        QCOMPARE(b.messages, messages);
        QCOMPARE(b.Log(), log);
    }

    // A call made on another panel always reaches the printer; it is recorded only while the
    // engine is stopped.
    void recordingFromAnotherPanel_data() {
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<bool>("recorded");
        QTest::newRow("running") << QStringList{"cmdExecuteMacro"} << false;
        QTest::newRow("paused") << QStringList{"cmdExecuteMacro", "cmdPause"} << false;
        QTest::newRow("after Stop") << QStringList{"cmdExecuteMacro", "cmdStop"} << false;
        QTest::newRow("after Clear") << QStringList{"cmdExecuteMacro", "cmdClear"} << true;
        QTest::newRow("after the end") << QStringList{"end"} << true;
    }
    void recordingFromAnotherPanel() {
        QFETCH(QStringList, buttons);
        QFETCH(bool, recorded);
        SimBench b;
        frmFiscalTicket fiscal(b.ctx);
        const QStringList macro{"F_PrintXReport", "F_PrintXReport"};
        Record(b.macro, macro);
        b.panel.cbSpeed->setCurrentText(QStringLiteral("5000"));
        for (const QString& button : buttons) {
            if (button == "end")
                b.RunToTheEnd();
            else
                b.panel.findChild<QPushButton*>(button)->click();
        }
        const QStringList kept = b.macro.Lines();
        fiscal.cmdBeginFiscRecpt->click();
        QCOMPARE(b.printer.PrinterState(), 2); // FISCAL_RECEIPT
        QCOMPARE(b.macro.Lines().mid(0, kept.size()), kept);
        QCOMPARE(b.macro.LineCount() > kept.size(), recorded);
        QCOMPARE(b.panel.lstMacroCode->model()->rowCount(), b.macro.LineCount());
    }

    // A receipt made on the fiscal panel, saved, cleared, loaded, stepped through and run at "0".
    void receiptRoundTrip() {
        SimBench b;
        frmFiscalTicket fiscal(b.ctx);
        fiscal.cmdBeginFiscRecpt->click();
        fiscal.cmdPrintRecItem->click();
        // The operator waits for the receipt's total to come into the total and payment fields.
        QTRY_VERIFY(!fiscal.tmrUpdateReceiptTotal->isActive());
        fiscal.cmdPrintRecTotal->click();
        fiscal.cmdEndFiscRcpt->click();
        QCOMPARE(b.printer.PrinterState(), 1);
        QCOMPARE(b.Receipts(), 1);
        const QStringList recorded = b.macro.Lines();
        QVERIFY(recorded.contains("F_PrintRecItem$Articolo test 1$1.00$0$0$0.00$Kg"));

        const QString path = m_dir.filePath(QStringLiteral("receipt.oposcmd"));
        QStringList asked;
        const auto pick = [&](QWidget*, const QString& filter, const QString& title, const QString& folder) {
            asked << filter << title << folder;
            return path;
        };
        SetFilePickerHandlers({{}, pick, pick});
        b.panel.cmdSaveMacro->click();
        b.panel.cmdClear->click();
        QCOMPARE(b.macro.LineCount(), 0);
        b.panel.cmdLoadMacro->click();
        const QString filter = "Opos Test Macro Commands (*.oposcmd)|*.oposcmd|All files|*.*";
        const QString title = "Select the macro command file";
        QCOMPARE(asked, QStringList({filter, title, "", filter, title, ""}));
        QCOMPARE(b.macro.Lines(), recorded);
        QCOMPARE(State(b.panel, b.macro),
                 QString("cursor -1, row 0, timer off, Pause disabled, lines %1").arg(recorded.size()));

        b.panel.cmdStop->click(); // places the cursor on line 0
        b.panel.chkStopOnError->setChecked(true);
        for (int i = 0; i < recorded.size(); ++i)
            b.panel.cmdStep->click();
        QVERIFY(!b.macro.IsRunningMacro());
        QCOMPARE(b.Receipts(), 2);
        b.RunToTheEnd();
        QCOMPARE(b.Receipts(), 3);
        QVERIFY(b.messages.isEmpty());
        QCOMPARE(b.macro.Lines(), recorded);
    }
};

QTEST_MAIN(tst_MacroPanel)
#include "tst_macro_panel.moc"
