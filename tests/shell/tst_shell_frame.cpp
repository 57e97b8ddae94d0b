// The main window's frame: its start and close, its layout, the toolbar's buttons and options,
// the status bar's lamps and boxes, and the non-fiscal panel's buttons.
#include "ShellBench.h"
#include "frmFiscalTicket.h"
#include "frmNonFiscal.h"
#include "frmSettings.h"

#include <QComboBox>

namespace {

QStringList Split(const char* list) {
    return QString::fromLatin1(list).split(' ', Qt::SkipEmptyParts);
}

// The frame's design, in twips: toolbar 735 high, left column 2160 wide, panels 6840 and the
// status bar 1050 high below it.
constexpr double ToolbarTwips = 735, ColumnTwips = 2160, PanelTwips = 6840, StatusTwips = 1050;

// The toolbar across the top at its height, the left column at its width, the panel on show
// beside the column, the status bar under both across the full width; the panel and the status
// bar share the height under the toolbar in the proportion of their design heights.
void CheckFrame(MDITestFPOPOS& w, int toolbar, int column) {
    const int width = w.width(), T = w.App()->height();
    QCOMPARE(w.Toolbar()->geometry(), QRect(0, 0, width, toolbar));
    QCOMPARE(w.App()->geometry(), QRect(0, toolbar, column, T));
    QCOMPARE(QPoint(w.App()->lblHidden->x(), w.App()->lblHiddenBOTTOM->y()), QPoint(column, T));
    for (int p = 0; p < frmToolbar::PanelCount; ++p)
        if (QWidget* panel = w.Panel(frmToolbar::Panel(p)); panel->isVisibleTo(&w))
            QCOMPARE(QRect(panel->mapTo(&w, QPoint(0, 0)), panel->size()),
                     QRect(column, toolbar, width - column, T));
    QCOMPARE(w.StatusBar()->geometry(), QRect(0, toolbar + T, width, w.height() - (toolbar + T)));
    const double share = (w.height() - toolbar) * PanelTwips / (PanelTwips + StatusTwips);
    QVERIFY2(qAbs(T - share) <= 1.0, qPrintable(QStringLiteral("%1 against %2").arg(T).arg(share)));
}

void ShowActive(QWidget* w) {
    w->show();
    w->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(w));
}

// The walk itself is the core's; here each button and its shortcut reach it, with the device name
// of the build and the lists that only the window has (NumVatRates lines: the fiscal and the
// reports panel rebuild theirs).
struct Press {
    const char *button, *shortcut, *failing, *calls;
    int vatReads;
};
const Press kPresses[] = {
    {"cmdOpen", "F2", "", "Open SetFreezeEvents", 0},
    {"cmdClaim", "F3", "", "ClaimDevice", 0},
    {"cmdEnable", "F4", "", "SetDeviceEnabled", 2},
    {"cmdEnable", "F4", "SetDeviceEnabled", "SetDeviceEnabled", 2},
    {"cmdDisable", "Shift+F4", "", "SetDeviceEnabled", 0},
    {"cmdRelease", "Shift+F3", "", "ReleaseDevice", 0},
    {"cmdClose", "Shift+F2", "", "Close", 0},
    {"cmdOCE", "F5", "", "Open SetFreezeEvents ClaimDevice SetDeviceEnabled", 2},
    {"cmdDRC", "Shift+F5", "", "SetDeviceEnabled ReleaseDevice Close", 0},
    {"cmdLogWindow", "F12", "", "", 0},
};
const char* const kOptions[] = {"optSettings", "optFiscal",   "optNonFiscal", "optReports",
                                "optProps",    "optDirectIO", "optAutoTests", "optMacro"};
const char* const kPanels[] = {"frmSettings",   "frmFiscalTicket", "frmNonFiscal", "frmReports",
                               "frmProperties", "frmDirectIO",     "frmAutoTests", "frmMacro"};

} // namespace

class FrameTest : public QObject {
    Q_OBJECT
private slots:
    void loadAndClose() {
        ShellBench bench([](ScriptedPrinter& p) { p.Set(Prop::NumVatRates, 4); });
        MDITestFPOPOS* w = bench.window.get();
        QCOMPARE(w->windowTitle(), QStringLiteral("ZorvaneFPU OPOS driver Test V1.0.13"));
        QCOMPARE(MainWindowTitle(QStringLiteral("Other bench")), QStringLiteral("Other bench V1.0.13"));
        // The fiscal and the reports panel each read NumVatRates on a control that isn't open.
        QCOMPARE(bench.LogLines(), QStringList({"NumVatRates = 4", "NumVatRates = 4"}));
        QVERIFY(bench.printer->calls.isEmpty() && bench.MacroLines().isEmpty());
        QVERIFY(!w->tmrUpdateControls()->isActive());
        QCOMPARE(bench.VisiblePanels(), QStringList{"frmSettings"});
        QVERIFY(w->App()->isVisibleTo(w) && w->StatusBar()->isVisibleTo(w) && w->Log()->isHidden());
        // Closing the window makes no device call and writes no line.
        w->Toolbar()->cmdOCE->click();
        const auto calls = bench.printer->calls.size();
        const auto lines = bench.LogMark();
        w->show();
        w->close();
        QCOMPARE(bench.printer->calls.size(), calls);
        QCOMPARE(bench.LogMark(), lines);
    }

    void layoutKeepsItsProportions() {
        ShellBench bench;
        MDITestFPOPOS& w = *bench.window;
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        // It opens at the stored design, in one unit of at least the usual 15 twips a pixel, wide
        // enough for the widest panel and within a 1920x1080 screen.
        const int toolbar = w.Toolbar()->height(), column = w.App()->width();
        const double unit = column / ColumnTwips;
        QVERIFY(unit >= 1 / 15.0);
        QVERIFY(qAbs(toolbar - ToolbarTwips * unit) <= 1.0);
        QVERIFY(qAbs(w.height() - (ToolbarTwips + PanelTwips + StatusTwips) * unit) <= 1.0);
        QVERIFY(w.width() >= 13500 * unit - 1 && w.width() <= 1920 && w.height() <= 1000);
        QVERIFY(w.width() >= w.FiscalTicket()->minimumSizeHint().width() + column);
        CheckFrame(w, toolbar, column);
        // Larger, then narrower than the panels need: the frame stops at their minimum.
        for (QSize step : {QSize(200, 120), QSize(-300, -60)}) {
            const QSize wanted = (w.size() + step).expandedTo(w.minimumSize());
            w.resize(w.size() + step);
            QTRY_COMPARE(w.size(), wanted);
            QCoreApplication::processEvents();
            CheckFrame(w, toolbar, column);
        }
        for (int p = 0; p < frmToolbar::PanelCount; ++p) { // every panel in the same place
            w.Toolbar()->Option(frmToolbar::Panel(p))->click();
            QCoreApplication::processEvents();
            CheckFrame(w, toolbar, column);
        }
    }

    void buttonsAndShortcuts_data() {
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("byKey");
        for (int i = 0; i < int(std::size(kPresses)); ++i) {
            const QString tag = QString(kPresses[i].button) + (*kPresses[i].failing ? " refused" : "");
            QTest::addRow("%s clicked", qPrintable(tag)) << i << false;
            QTest::addRow("%s by %s", qPrintable(tag), kPresses[i].shortcut) << i << true;
        }
    }
    void buttonsAndShortcuts() {
        QFETCH(int, row);
        QFETCH(bool, byKey);
        const Press& p = kPresses[row];
        ShellBench bench([](ScriptedPrinter& printer) {
            printer.Set(Prop::State, 2);
            printer.Set(Prop::NumVatRates, 4);
        });
        MDITestFPOPOS* w = bench.window.get();
        w->Logo().lblSOName = QStringLiteral("Tessorim");
        for (const QString& call : Split(p.failing))
            bench.printer->Script(call, 111, 0, "Failure");
        auto* button = w->Toolbar()->findChild<QPushButton*>(p.button);
        const QKeySequence key(QString::fromLatin1(p.shortcut));
        QCOMPARE(button->toolTip(), button->text() + " (" + key.toString(QKeySequence::NativeText) + ")");
        ShowActive(w);
        const auto log = bench.LogMark();
        byKey ? QTest::keySequence(w, key) : button->click();

        QCOMPARE(bench.printer->CallNames(), Split(p.calls));
        for (const auto& c : bench.printer->CallsOf("Open"))
            QCOMPARE(c.args.at(0).toString(), QStringLiteral("Tessorim"));
        const QStringList lines = bench.LogSince(log);
        QCOMPARE(lines.count("NumVatRates = 4"), p.vatReads);
        if (p.vatReads) // the lists follow the refresh, its box included
            QCOMPARE(lines.indexOf("NumVatRates = 4"), lines.lastIndexOf("State = 2 (OPOS_S_IDLE)") + 1);
        QCOMPARE(bench.boxes.size(), *p.failing ? 1 : 0);
        QCOMPARE(w->Log()->isVisible(), QByteArray(p.button) == "cmdLogWindow");
    }

    // Each option, clicked or by its Ctrl+digit, shows its panel and only that.
    void optionsShowOnlyTheirPanel_data() {
        QTest::addColumn<int>("panel");
        QTest::addColumn<bool>("byKey");
        for (int i = 0; i < frmToolbar::PanelCount; ++i) {
            QTest::addRow("%s clicked", kOptions[i]) << i << false;
            QTest::addRow("%s by Ctrl+%d", kOptions[i], i + 1) << i << true;
        }
    }
    void optionsShowOnlyTheirPanel() {
        QFETCH(int, panel);
        QFETCH(bool, byKey);
        ShellBench bench;
        MDITestFPOPOS* w = bench.window.get();
        ShowActive(w);
        w->Toolbar()->optMacro->click(); // from another panel, so that Settings too has to come back
        auto* option = w->Toolbar()->findChild<QRadioButton*>(kOptions[panel]);
        const QKeySequence key(QStringLiteral("Ctrl+%1").arg(panel + 1));
        QCOMPARE(option->toolTip(), option->text() + " (" + key.toString(QKeySequence::NativeText) + ")");
        byKey ? QTest::keySequence(w, key) : option->click();
        QVERIFY(option->isChecked());
        QCOMPARE(bench.VisiblePanels(), QStringList{kPanels[panel]});
        QVERIFY(w->App()->isVisibleTo(w) && w->StatusBar()->isVisibleTo(w));
        QVERIFY(w->Log()->isHidden() && bench.printer->calls.isEmpty());
    }

    // The refresh's texts and which lamps a status switches are the core's; the window paints them.
    void resetPrinterPaintsTheRefresh() {
        ShellBench bench([](ScriptedPrinter& p) {
            p.Set(Prop::State, 3);
            p.Set(Prop::PrinterState, 10);
        });
        bench.printer->Script("ResetPrinter", 114, 203, "Paper out");
        bench.window->App()->cmdResetPrinter->click();
        frmStatusBar* bar = bench.window->StatusBar();
        QCOMPARE(bar->lblErrorCode->text(), QStringLiteral("OposEExtended(114)"));
        QCOMPARE(bar->lblErrorCodeExt->text(), QStringLiteral("OposEfptrRecEmpty(203)"));
        QCOMPARE(bar->lblErrorCodeDescription->text(), QStringLiteral("Paper out"));
        QCOMPARE(bench.window->App()->lblOposState->text(), QStringLiteral("OPOS_S_BUSY   ( 3)"));
        QCOMPARE(bench.window->App()->lblFPState->text(), QStringLiteral("FPTR_PS_REPORT   ( 10)"));
        QCOMPARE(bench.MacroLines(), QStringList({"F_ResetPrinter"}));
        QCOMPARE(bench.boxes.size(), 1);
        QCOMPARE(bench.boxes[0].text, "ERRORS: OposEExtended(114)  OposEfptrRecEmpty(203)  Paper out");
    }

    void statusEventsPaintTheLamps_data() {
        QTest::addColumn<QList<int>>("statuses");
        QTest::addColumn<QString>("lamps"); // cover, paper out, paper low afterwards: R red, G green
        QTest::newRow("none") << QList<int>{} << "GGG";
        QTest::newRow("all red") << QList<int>{11, 24, 25} << "RRR";
        QTest::newRow("all red, then cover ok") << QList<int>{11, 24, 25, 12} << "GRR";
        QTest::newRow("all red, then receipt paper ok") << QList<int>{11, 24, 25, 26} << "RGG";
    }
    void statusEventsPaintTheLamps() {
        QFETCH(QList<int>, statuses);
        QFETCH(QString, lamps);
        ShellBench bench;
        for (int s : statuses)
            bench.printer->sink->StatusUpdateEvent(s);
        frmStatusBar* bar = bench.window->StatusBar();
        const std::pair<LampShape*, QLabel*> pairs[] = {{bar->shpCoverOpen, bar->lblCoverOpen},
                                                        {bar->shpPaperOut, bar->lblPaperOut},
                                                        {bar->shpPaperNearEmpty, bar->lblPaperNearEmpty}};
        for (int i = 0; i < 3; ++i) {
            const QColor colour = lamps[i] == 'R' ? QColor(0xFF, 0x00, 0x00) : QColor(0x00, 0xFF, 0x00);
            QCOMPARE(pairs[i].first->FillColor(), colour);
            QCOMPARE(pairs[i].second->palette().color(QPalette::WindowText), colour);
        }
        QCOMPARE(bar->lblErrorCode->text(), QStringLiteral("Label1")); // no refresh
    }

    // The window asks the operator in a Retry / Cancel box under the program's title.
    void errorEventAsksInABox() {
        ShellBench bench;
        bench.answer = MsgResult::Retry;
        int32_t response = -1;
        bench.printer->sink->ErrorEvent(114, 203, 0, response);
        QCOMPARE(response, 11);
        QCOMPARE(bench.boxes.size(), 1);
        QCOMPARE(bench.boxes[0].text,
                 QStringLiteral("OposErrorEvent(114 OposEExtended, 203 OposEfptrRecEmpty)"));
        QCOMPARE(bench.boxes[0].buttons, MsgButtons::RetryCancel);
        QCOMPARE(bench.boxes[0].title, QStringLiteral("ZorvaneFPUTest"));
    }

    void receiptTakesHeaderAndTrailerFromSettings() {
        ShellBench bench;
        bench.window->Settings()->txtAdditionalHeader->setPlainText(QStringLiteral("[ESC]|cAWelcome"));
        bench.window->Settings()->txtAdditionalTrailer->setPlainText(QStringLiteral("Goodbye"));
        bench.window->FiscalTicket()->cmdBeginFiscRecpt->click();
        bench.window->FiscalTicket()->cmdEndFiscRcpt->click();
        const auto header = bench.printer->CallsOf(QStringLiteral("SetAdditionalHeader"));
        const auto trailer = bench.printer->CallsOf(QStringLiteral("SetAdditionalTrailer"));
        QCOMPARE(header.size(), 1);
        QCOMPARE(header.first().args.first().toString(), QString(QChar(27)) + QStringLiteral("|cAWelcome"));
        QCOMPARE(trailer.size(), 1);
        QCOMPARE(trailer.first().args.first().toString(), QStringLiteral("Goodbye"));
    }

    void nonFiscalButtons_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("station");   // index in the station list
        QTest::addColumn<QString>("typed"); // empty: the text as loaded
        QTest::addColumn<QVariantList>("args");
        QTest::addColumn<QString>("macro");
        QTest::addColumn<QString>("logged"); // before the result tail
        const auto row = [](const char* tag, const QString& button, int station, const QString& typed,
                            const QVariantList& args, const QString& macro, const QString& logged) {
            QTest::newRow(tag) << button << station << typed << args << macro << logged;
        };
        for (const QString name : {"BeginNonFiscal", "EndNonFiscal", "BeginTraining", "EndTraining"})
            row(qPrintable(name), name == "BeginNonFiscal" ? "cmdNFRecpt" : "cmd" + name, 0, {}, {},
                "F_" + name, name + "()");
        const QString esc(QChar(27)), print = "cmdPrintNormal";
        row("receipt", print, 0, {}, {1, "Test Print"}, "F_PrintNormal$1$Test Print",
            "PrintNormal(1, Test Print)");
        row("journal and receipt", print, 2, {}, {3, "Test Print"}, "F_PrintNormal$3$Test Print",
            "PrintNormal(3, Test Print)");
        row("esc token", print, 0, "[ESC]|2CDouble", {1, esc + "|2CDouble"},
            "F_PrintNormal$1$" + esc + "|2CDouble", "PrintNormal(1, [ESC]|2CDouble)");
        row("two lines", print, 0, "one\ntwo", {1, "one\r\ntwo"}, "F_PrintNormal$1$one[CR][LF]two",
            "PrintNormal(1, one[CR][LF]two)");
    }
    void nonFiscalButtons() {
        QFETCH(QString, button);
        QFETCH(int, station);
        QFETCH(QString, typed);
        QFETCH(QString, macro);
        QFETCH(QString, logged);
        ShellBench bench;
        frmNonFiscal* p = bench.window->NonFiscal();
        p->cbPrintNorStation->setCurrentIndex(station);
        if (!typed.isEmpty())
            p->txtPrintNormal->setPlainText(typed);
        const auto log = bench.LogMark();
        p->findChild<QPushButton*>(button)->click();
        QCOMPARE(bench.printer->CallNames(), QStringList{logged.left(logged.indexOf('('))});
        QTEST(bench.printer->calls[0].args, "args");
        QCOMPARE(bench.MacroLines(), QStringList{macro});
        QCOMPARE(bench.LogSince(log),
                 QStringList({logged + "     -> OposSuccess(0)", "State = 2 (OPOS_S_IDLE)"}));
        QCOMPARE(bench.window->App()->lblOposState->text(), QStringLiteral("OPOS_S_IDLE   ( 2)"));
        // Refused, out of order or not: reported, and the button stays usable.
        bench.printer->Script(bench.printer->calls[0].name, 114, 207, "Wrong state");
        p->findChild<QPushButton*>(button)->click();
        QCOMPARE(bench.boxes.size(), 1);
        QCOMPARE(bench.boxes[0].text, "ERRORS: OposEExtended(114)  OposEfptrWrongState(207)  Wrong state");
        QVERIFY(p->findChild<QPushButton*>(button)->isEnabled());
    }
};

QTEST_MAIN(FrameTest)
#include "tst_shell_frame.moc"
