#include "ShellBench.h"
#include "Tools.h"
#include "frmApp.h"
#include "frmStatusBar.h"
#include "frmToolbar.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QtTest>

namespace {

qsizetype CountLines(const QStringList& lines, const QString& line) {
    return lines.count(line);
}

qsizetype CountPrefixed(const QStringList& lines, const QString& prefix) {
    return std::count_if(lines.begin(), lines.end(), [&](const QString& l) { return l.startsWith(prefix); });
}

} // namespace

class ToolbarTest : public QObject {
    Q_OBJECT
private slots:
    void openTakesOnlyTheTwoNames_data();
    void openTakesOnlyTheTwoNames();
    void failedOpenWritesNoFreezeEventsAndLeavesTimerOff();
    void claimPassesTwoSeconds();
    void openClaimEnableRecordsTheForwardWalk();
    void openClaimEnableStopsWhereResultCodeIsNotZero_data();
    void openClaimEnableStopsWhereResultCodeIsNotZero();
    void enableRebuildsVatListsEvenWhenRefused();
    void disableReleaseCloseAlwaysMakesThreeCalls();
    void closeStopsTimerAndLeavesStatusBarAlone();
    void optionsShowOnlyTheirPanel_data();
    void optionsShowOnlyTheirPanel();
    void logWindowButtonToggles();
};

void ToolbarTest::openTakesOnlyTheTwoNames_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("ZorvaneFPU") << "ZorvaneFPU" << true;
    QTest::newRow("Tessorim") << "Tessorim" << true;
    QTest::newRow("lower case") << "zorvanefpu" << false;
    QTest::newRow("upper case") << "ZORVANEFPU" << false;
    QTest::newRow("one letter off case") << "tessorim" << false;
    QTest::newRow("trailing blank") << "ZorvaneFPU " << false;
    QTest::newRow("empty") << "" << false;
}

void ToolbarTest::openTakesOnlyTheTwoNames() {
    QFETCH(QString, name);
    QFETCH(bool, accepted);
    ShellBench bench;
    bench.window->Logo().lblSOName = name;
    const auto log = bench.LogMark();
    bench.window->Toolbar()->cmdOpen->click();

    if (accepted) {
        QCOMPARE(bench.printer->CallNames(), QStringList({"Open", "SetFreezeEvents"}));
        QCOMPARE(bench.printer->calls.at(0).args.at(0).toString(), name);
        QCOMPARE(bench.printer->calls.at(1).args.at(0).toBool(), false);
        QCOMPARE(bench.MacroLines(), QStringList({"F_Open$" + name, "P_FreezeEvents$False"}));
        QVERIFY(bench.window->tmrUpdateControls()->isActive());
    } else {
        QVERIFY(bench.printer->calls.isEmpty());
        QVERIFY(bench.MacroLines().isEmpty());
        QCOMPARE(bench.LogMark(), log);
        QVERIFY(bench.boxes.isEmpty());
        QVERIFY(!bench.window->tmrUpdateControls()->isActive());
    }
}

void ToolbarTest::failedOpenWritesNoFreezeEventsAndLeavesTimerOff() {
    ShellBench bench;
    bench.printer->Script("Open", 109, 0, "No such device");
    bench.window->Toolbar()->cmdOpen->click();
    QCOMPARE(bench.printer->CallNames(), QStringList({"Open"}));
    QCOMPARE(bench.MacroLines(), QStringList({"F_Open$ZorvaneFPU"}));
    QVERIFY(!bench.window->tmrUpdateControls()->isActive());
    QCOMPARE(bench.boxes.size(), 1);
    QCOMPARE(bench.boxes.at(0).text, QStringLiteral("ERRORS: OposENoexist(109)  (0)  No such device"));
}

void ToolbarTest::claimPassesTwoSeconds() {
    ShellBench bench;
    bench.window->Toolbar()->cmdClaim->click();
    QCOMPARE(bench.printer->CallNames(), QStringList({"ClaimDevice"}));
    QCOMPARE(bench.printer->calls.at(0).args.at(0).toInt(), 2000);
    QCOMPARE(bench.MacroLines(), QStringList({"F_ClaimDevice$2000"}));
}

void ToolbarTest::openClaimEnableRecordsTheForwardWalk() {
    ShellBench bench([](ScriptedPrinter& p) {
        p.Set(Prop::NumVatRates, 4);
        p.Set(Prop::State, 2);
    });
    const auto log = bench.LogMark();
    bench.window->Toolbar()->cmdOCE->click();

    QCOMPARE(bench.MacroLines(), QStringList({"F_Open$ZorvaneFPU", "P_FreezeEvents$False",
                                              "F_ClaimDevice$2000", "P_DeviceEnabled$True"}));
    QCOMPARE(bench.printer->CallNames(),
             QStringList({"Open", "SetFreezeEvents", "ClaimDevice", "SetDeviceEnabled"}));
    QVERIFY(bench.boxes.isEmpty());
    QVERIFY(bench.window->tmrUpdateControls()->isActive());
    const QStringList lines = bench.LogSince(log);
    // The two tests between the steps read ResultCode through the wrapper, so they are logged.
    QCOMPARE(CountLines(lines, "ResultCode = 0"), 2);
    // Open, Claim and Enable each refresh, and a refresh logs State.
    QCOMPARE(CountLines(lines, "State = 2 (OPOS_S_IDLE)"), 3);
    // Enable's two VAT lists read NumVatRates each.
    QCOMPARE(CountLines(lines, "NumVatRates = 4"), 2);
    QCOMPARE(bench.window->App()->lblOposState->text(), QStringLiteral("OPOS_S_IDLE   ( 2)"));
}

void ToolbarTest::openClaimEnableStopsWhereResultCodeIsNotZero_data() {
    QTest::addColumn<QString>("failing");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QStringList>("macro");
    QTest::newRow("open fails") << "Open" << QStringList{"Open"} << QStringList{"F_Open$ZorvaneFPU"};
    QTest::newRow("claim fails") << "ClaimDevice" << QStringList{"Open", "SetFreezeEvents", "ClaimDevice"}
                                 << QStringList{"F_Open$ZorvaneFPU", "P_FreezeEvents$False",
                                                "F_ClaimDevice$2000"};
}

void ToolbarTest::openClaimEnableStopsWhereResultCodeIsNotZero() {
    QFETCH(QString, failing);
    QFETCH(QStringList, calls);
    QFETCH(QStringList, macro);
    ShellBench bench;
    bench.printer->Script(failing, 111, 0, "Failure");
    const auto log = bench.LogMark();
    bench.window->Toolbar()->cmdOCE->click();
    QCOMPARE(bench.printer->CallNames(), calls);
    QCOMPARE(bench.MacroLines(), macro);
    // Both tests are made; the failed step's code is still there for the second.
    const QStringList lines = bench.LogSince(log);
    QCOMPARE(CountLines(lines, "ResultCode = 111") + CountLines(lines, "ResultCode = 0"), 2);
    QCOMPARE(CountLines(lines, "ResultCode = 111"), failing == "Open" ? 2 : 1);
    QCOMPARE(bench.boxes.size(), 1);
}

void ToolbarTest::enableRebuildsVatListsEvenWhenRefused() {
    ShellBench bench([](ScriptedPrinter& p) { p.Set(Prop::NumVatRates, 3); });
    bench.printer->Script("SetDeviceEnabled", 101, 0, "Closed");
    QStringList labelsWhileBoxOpen;
    SetMessageBoxHandler([&](const QString& text, MsgButtons, const QString&) {
        bench.boxes.append({text, MsgButtons::Ok, {}});
        labelsWhileBoxOpen = bench.LogLines();
        return MsgResult::Ok;
    });
    const auto log = bench.LogMark();
    bench.window->Toolbar()->cmdEnable->click();
    QCOMPARE(bench.MacroLines(), QStringList({"P_DeviceEnabled$True"}));
    QCOMPARE(bench.boxes.size(), 1);
    QCOMPARE(bench.boxes.at(0).text, QStringLiteral("ERRORS: OposEClosed(101)  (0)  Closed"));
    const QStringList lines = bench.LogSince(log);
    QCOMPARE(CountLines(lines, "NumVatRates = 3"), 2);
    // The lists are rebuilt after the refresh, not before it.
    QCOMPARE(CountLines(labelsWhileBoxOpen.mid(log), "NumVatRates = 3"), 0);
}

void ToolbarTest::disableReleaseCloseAlwaysMakesThreeCalls() {
    ShellBench bench;
    bench.window->Toolbar()->cmdOpen->click();
    QVERIFY(bench.window->tmrUpdateControls()->isActive());
    const auto calls = bench.printer->calls.size();
    const auto macro = bench.MacroLines().size();
    bench.printer->defaultResult = 106;
    bench.window->Toolbar()->cmdDRC->click();
    QCOMPARE(bench.printer->CallNames().mid(calls),
             QStringList({"SetDeviceEnabled", "ReleaseDevice", "Close"}));
    QCOMPARE(bench.MacroSince(macro), QStringList({"P_DeviceEnabled$False", "F_ReleaseDevice", "F_Close"}));
    // Disable and Release report their refusal; Close reports nothing.
    QCOMPARE(bench.boxes.size(), 2);
    QVERIFY(!bench.window->tmrUpdateControls()->isActive());
}

void ToolbarTest::closeStopsTimerAndLeavesStatusBarAlone() {
    ShellBench bench([](ScriptedPrinter& p) { p.Set(Prop::State, 2); });
    bench.window->Toolbar()->cmdOpen->click();
    QVERIFY(bench.window->tmrUpdateControls()->isActive());
    frmStatusBar* bar = bench.window->StatusBar();
    const QString code = bar->lblErrorCode->text();
    const QString state = bench.window->App()->lblOposState->text();
    QCOMPARE(code, QStringLiteral("OposSuccess(0)"));

    bench.printer->Set(Prop::State, 1);
    bench.printer->Script("Close", 111, 0, "Failure");
    const auto log = bench.LogMark();
    bench.window->Toolbar()->cmdClose->click();

    QVERIFY(!bench.window->tmrUpdateControls()->isActive());
    QCOMPARE(bar->lblErrorCode->text(), code);
    QCOMPARE(bench.window->App()->lblOposState->text(), state);
    QVERIFY(bench.boxes.isEmpty());
    const QStringList lines = bench.LogSince(log);
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.at(0).startsWith(QStringLiteral("Close(()")));
    QCOMPARE(CountPrefixed(lines, "State ="), 0);
}

void ToolbarTest::optionsShowOnlyTheirPanel_data() {
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("panel");
    QTest::newRow("Settings") << "optSettings"
                              << "frmSettings";
    QTest::newRow("Fiscal") << "optFiscal"
                            << "frmFiscalTicket";
    QTest::newRow("NonFiscal") << "optNonFiscal"
                               << "frmNonFiscal";
    QTest::newRow("Reports") << "optReports"
                             << "frmReports";
    QTest::newRow("Props") << "optProps"
                           << "frmProperties";
    QTest::newRow("DirectIO") << "optDirectIO"
                              << "frmDirectIO";
    QTest::newRow("AutoTests") << "optAutoTests"
                               << "frmAutoTests";
    QTest::newRow("Macro") << "optMacro"
                           << "frmMacro";
}

void ToolbarTest::optionsShowOnlyTheirPanel() {
    QFETCH(QString, option);
    QFETCH(QString, panel);
    ShellBench bench;
    MDITestFPOPOS* w = bench.window.get();
    // Start from another panel, so that Settings too has to come back.
    w->Toolbar()->optMacro->click();
    w->Toolbar()->findChild<QRadioButton*>(option)->click();
    int visible = 0;
    for (int p = 0; p < frmToolbar::PanelCount; ++p) {
        QWidget* each = w->Panel(static_cast<frmToolbar::Panel>(p));
        if (each->isVisibleTo(w)) {
            ++visible;
            QCOMPARE(each->objectName(), panel);
        }
    }
    QCOMPARE(visible, 1);
    QVERIFY(w->App()->isVisibleTo(w));
    QVERIFY(w->StatusBar()->isVisibleTo(w));
    QVERIFY(w->Log()->isHidden());
    QVERIFY(bench.printer->calls.isEmpty());
}

void ToolbarTest::logWindowButtonToggles() {
    ShellBench bench;
    Tools::WriteLog(QStringLiteral("kept across toggles"));
    const QString text = bench.window->Log()->LogText();
    QPushButton* button = bench.window->Toolbar()->cmdLogWindow;
    button->click();
    QVERIFY(bench.window->Log()->isVisible());
    button->click();
    QVERIFY(!bench.window->Log()->isVisible());
    QCOMPARE(bench.window->Log()->LogText(), text);
}

QTEST_MAIN(ToolbarTest)
#include "tst_shell_toolbar.moc"
