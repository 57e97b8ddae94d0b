#include "ShellBench.h"

namespace {

// Lists are space-separated; failing calls answer their next call with 111, 112...; resultCodes are
// those of the ResultCode lines of the log, refreshes its State lines, vatReads its NumVatRates lines.
struct Sequence {
    const char *tag, *buttons, *failing, *calls, *macro, *resultCodes;
    bool timer;
    int boxes, refreshes, vatReads;
    const char* name = "ZorvaneFPU"; // of the device, case-sensitive
};
const Sequence kSequences[] = {
    {"Open Tessorim", "cmdOpen", "", "Open SetFreezeEvents", "F_Open$Tessorim P_FreezeEvents$False", "", true,
     0, 1, 0, "Tessorim"},
    {"lower case refused", "cmdOpen", "", "", "", "", false, 0, 0, 0, "zorvanefpu"},
    {"one letter off case refused", "cmdOpen", "", "", "", "", false, 0, 0, 0, "tessorim"},
    {"trailing blank refused", "cmdOpen", "", "", "", "", false, 0, 0, 0, "ZorvaneFPU "},
    {"OCE", "cmdOCE", "", "Open SetFreezeEvents ClaimDevice SetDeviceEnabled",
     "F_Open$ZorvaneFPU P_FreezeEvents$False F_ClaimDevice$2000 P_DeviceEnabled$True", "0 0", true, 0, 3, 2},
    // The failed step's code is still there for the second test.
    {"OCE, Open fails", "cmdOCE", "Open", "Open", "F_Open$ZorvaneFPU", "111 111", false, 1, 1, 0},
    {"OCE, Claim fails", "cmdOCE", "ClaimDevice", "Open SetFreezeEvents ClaimDevice",
     "F_Open$ZorvaneFPU P_FreezeEvents$False F_ClaimDevice$2000", "0 111", true, 1, 2, 0},
    {"Enable refused rebuilds the lists", "cmdEnable", "SetDeviceEnabled", "SetDeviceEnabled",
     "P_DeviceEnabled$True", "", false, 1, 1, 2},
    // Disable and Release report their refusal; Close reports nothing and doesn't refresh.
    {"DRC all refused", "cmdOpen cmdDRC", "SetDeviceEnabled ReleaseDevice Close",
     "Open SetFreezeEvents SetDeviceEnabled ReleaseDevice Close",
     "F_Open$ZorvaneFPU P_FreezeEvents$False P_DeviceEnabled$False F_ReleaseDevice F_Close", "", false, 2, 3,
     0},
};

QStringList Split(const char* list) {
    return QString::fromLatin1(list).split(' ', Qt::SkipEmptyParts);
}

} // namespace

class ToolbarTest : public QObject {
    Q_OBJECT
private slots:
    void sequences_data() {
        QTest::addColumn<int>("row");
        for (int i = 0; i < int(std::size(kSequences)); ++i)
            QTest::newRow(kSequences[i].tag) << i;
    }
    void sequences() {
        QFETCH(int, row);
        const Sequence& s = kSequences[row];
        const QString name = QString::fromLatin1(s.name);
        ShellBench bench([](ScriptedPrinter& p) {
            p.Set(Prop::State, 2);
            p.Set(Prop::NumVatRates, 4);
        });
        bench.window->Logo().lblSOName = name;
        for (int code = 111; const QString& call : Split(s.failing))
            bench.printer->Script(call, code++, 0, "Failure");
        const auto log = bench.LogMark();
        for (const QString& button : Split(s.buttons))
            bench.window->Toolbar()->findChild<QPushButton*>(button)->click();

        QCOMPARE(bench.printer->CallNames(), Split(s.calls));
        QCOMPARE(bench.MacroLines(), Split(s.macro));
        for (const auto& c : bench.printer->CallsOf("Open"))
            QCOMPARE(c.args.at(0).toString(), name);
        for (const auto& c : bench.printer->CallsOf("ClaimDevice"))
            QCOMPARE(c.args.at(0).toInt(), 2000);
        for (const auto& c : bench.printer->CallsOf("SetFreezeEvents"))
            QCOMPARE(c.args.at(0).toBool(), false);
        QCOMPARE(bench.window->tmrUpdateControls()->isActive(), s.timer);
        QCOMPARE(bench.boxes.size(), s.boxes);
        const QStringList lines = bench.LogSince(log);
        QVERIFY(*s.calls || lines.isEmpty());
        QCOMPARE(lines.filter(QRegularExpression("^ResultCode = ")).replaceInStrings("ResultCode = ", ""),
                 Split(s.resultCodes));
        QCOMPARE(lines.count("State = 2 (OPOS_S_IDLE)"), s.refreshes);
        QCOMPARE(lines.count("NumVatRates = 4"), s.vatReads);
        if (!bench.boxes.isEmpty()) {
            // The status bar shows the last refresh (not a later Close); the lists are rebuilt after it.
            QVERIFY(bench.boxes.last().text.startsWith("ERRORS: " +
                                                       bench.window->StatusBar()->lblErrorCode->text()));
            QCOMPARE(bench.LogLines().mid(log, bench.boxes.last().logAt - log).count("NumVatRates = 4"), 0);
        }
        if (Split(s.calls).endsWith("Close")) // whose result stands in the log only
            QVERIFY(lines.constLast().startsWith("Close(()"));
    }
    void optionsShowOnlyTheirPanel_data() {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("panel");
        const QStringList rows =
            Split("optSettings frmSettings optFiscal frmFiscalTicket optNonFiscal frmNonFiscal "
                  "optReports frmReports optProps frmProperties optDirectIO frmDirectIO "
                  "optAutoTests frmAutoTests optMacro frmMacro");
        for (qsizetype i = 0; i < rows.size(); i += 2)
            QTest::newRow(qPrintable(rows[i])) << rows[i] << rows[i + 1];
    }
    void optionsShowOnlyTheirPanel() {
        QFETCH(QString, option);
        QFETCH(QString, panel);
        ShellBench bench;
        MDITestFPOPOS* w = bench.window.get();
        w->Toolbar()->optMacro->click(); // from another panel, so that Settings too has to come back
        auto* button = w->Toolbar()->findChild<QRadioButton*>(option);
        button->click();
        QVERIFY(button->isChecked());
        QCOMPARE(bench.VisiblePanels(), QStringList{panel});
        QVERIFY(w->App()->isVisibleTo(w) && w->StatusBar()->isVisibleTo(w));
        QVERIFY(w->Log()->isHidden() && bench.printer->calls.isEmpty());
    }
};

QTEST_MAIN(ToolbarTest)
#include "tst_shell_toolbar.moc"
