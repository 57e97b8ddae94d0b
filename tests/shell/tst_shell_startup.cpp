#include "ShellBench.h"
#include "ShellLayout.h"
#include "Tools.h"
#include "frmApp.h"
#include "frmFiscalTicket.h"
#include "frmSettings.h"
#include "frmStatusBar.h"
#include "frmToolbar.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QtTest>

class StartupTest : public QObject {
    Q_OBJECT
private slots:
    void titleIsCaptionAndVersion();
    void titleFollowsAnotherCaption();
    void iconIsSet();
    void loadCallsNoDeviceMethod();
    void loadLogHoldsOneNumVatRatesReadPerVatList();
    void logIsHiddenAndTakesLinesFromTheStart();
    void settingsIsTheOnlyVisiblePanel();
    void toolbarControls_data();
    void toolbarControls();
    void leftColumnAndStatusBarStartAsStored();
    void layoutRelations();
    void layoutRelationsSurviveResize();
    void closingMakesNoDeviceCall();
    void receiptTakesHeaderAndTrailerFromSettings();
};

void StartupTest::titleIsCaptionAndVersion() {
    ShellBench bench;
    QCOMPARE(bench.window->windowTitle(), QStringLiteral("ZorvaneFPU OPOS driver Test V1.0.13"));
}

void StartupTest::titleFollowsAnotherCaption() {
    QCOMPARE(MainWindowTitle(QStringLiteral("Other bench")), QStringLiteral("Other bench V1.0.13"));
}

void StartupTest::iconIsSet() {
    ShellBench bench;
    QVERIFY(!bench.window->windowIcon().isNull());
    QVERIFY(!bench.window->windowIcon().pixmap(16, 16).isNull());
}

void StartupTest::loadCallsNoDeviceMethod() {
    ShellBench bench;
    QVERIFY(bench.printer->calls.isEmpty());
    QVERIFY(!bench.window->tmrUpdateControls()->isActive());
    QCOMPARE(bench.window->tmrUpdateControls()->interval(), 2000);
    QVERIFY(bench.MacroLines().isEmpty());
}

void StartupTest::loadLogHoldsOneNumVatRatesReadPerVatList() {
    // The fiscal panel and the reports panel each read NumVatRates at load, on a control that
    // isn't open: those are the only lines of the load.
    ShellBench bench([](ScriptedPrinter& p) { p.Set(Prop::NumVatRates, 4); });
    QCOMPARE(bench.LogLines(),
             QStringList({QStringLiteral("NumVatRates = 4"), QStringLiteral("NumVatRates = 4")}));
}

void StartupTest::logIsHiddenAndTakesLinesFromTheStart() {
    ShellBench bench;
    QVERIFY(bench.window->Log()->isHidden());
    QCOMPARE(bench.window->Log()->windowTitle(), QStringLiteral("Opos Test Log Form"));
    Tools::WriteLog(QStringLiteral("probe line"));
    QCOMPARE(bench.LogLines().constLast(), QStringLiteral("probe line"));
}

void StartupTest::settingsIsTheOnlyVisiblePanel() {
    ShellBench bench;
    QVERIFY(bench.window->Toolbar()->optSettings->isChecked());
    for (int p = 0; p < frmToolbar::PanelCount; ++p) {
        QWidget* panel = bench.window->Panel(static_cast<frmToolbar::Panel>(p));
        QVERIFY(panel);
        QCOMPARE(panel->isVisibleTo(bench.window.get()), p == frmToolbar::Settings);
    }
    QCOMPARE(bench.window->Panel(frmToolbar::Settings)->objectName(), QStringLiteral("frmSettings"));
    QCOMPARE(bench.window->Panel(frmToolbar::DirectIO)->objectName(), QStringLiteral("frmDirectIO"));
    QCOMPARE(bench.window->Panel(frmToolbar::AutoTests)->objectName(), QStringLiteral("frmAutoTests"));
    QCOMPARE(bench.window->Panel(frmToolbar::Macro)->objectName(), QStringLiteral("frmMacro"));
    QVERIFY(bench.window->StatusBar()->isVisibleTo(bench.window.get()));
    QVERIFY(bench.window->App()->isVisibleTo(bench.window.get()));
}

void StartupTest::toolbarControls_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    const char* rows[][2] = {{"cmdOpen", "Open"},
                             {"cmdClaim", "Claim"},
                             {"cmdEnable", "Enable"},
                             {"cmdDisable", "Disable"},
                             {"cmdRelease", "Release"},
                             {"cmdClose", "Close"},
                             {"cmdOCE", "Open Claim Enable"},
                             {"cmdDRC", "Disable Release Close"},
                             {"optSettings", "Settings"},
                             {"optFiscal", "Fiscal Receipt"},
                             {"optNonFiscal", "Non-Fiscal Rcpt"},
                             {"optReports", "Reports"},
                             {"optProps", "Properties"},
                             {"optDirectIO", "DirectIO"},
                             {"optAutoTests", "AutoTests"},
                             {"optMacro", "Macro"},
                             {"cmdLogWindow", "Log Window"},
                             {"cmdEscSequences", "ESC Seq"}};
    for (auto& row : rows)
        QTest::newRow(row[0]) << QString::fromLatin1(row[0]) << QString::fromLatin1(row[1]);
}

void StartupTest::toolbarControls() {
    QFETCH(QString, name);
    QFETCH(QString, caption);
    ShellBench bench;
    auto* button = bench.window->Toolbar()->findChild<QAbstractButton*>(name);
    QVERIFY(button);
    QCOMPARE(button->text(), caption);
    QVERIFY(button->isEnabled());
}

void StartupTest::leftColumnAndStatusBarStartAsStored() {
    ShellBench bench;
    frmApp* app = bench.window->App();
    QCOMPARE(app->cmdResetPrinter->text(), QStringLiteral("Reset Printer"));
    QCOMPARE(app->lblFPState->text(), QStringLiteral("lblFPState"));
    QCOMPARE(app->lblOposState->text(), QStringLiteral("lblOposState"));
    QCOMPARE(app->lblFPState->font().family(), QStringLiteral("Arial"));
    QCOMPARE(app->lblOposState->font().family(), QStringLiteral("Arial"));
    QVERIFY(!app->lblHidden->isVisibleTo(app));
    QVERIFY(!app->lblHiddenBOTTOM->isVisibleTo(app));

    frmStatusBar* bar = bench.window->StatusBar();
    for (QLabel* l : {bar->lblErrorCode, bar->lblErrorCodeExt, bar->lblErrorCodeDescription})
        QCOMPARE(l->text(), QStringLiteral("Label1"));
    QCOMPARE(bar->lblCoverOpen->text(), QStringLiteral("Cover Open"));
    QCOMPARE(bar->lblPaperOut->text(), QStringLiteral("Paper Out"));
    QCOMPARE(bar->lblPaperNearEmpty->text(), QStringLiteral("Paper Near Empty"));
    const QColor green(0x00, 0xFF, 0x00);
    for (LampShape* s : {bar->shpCoverOpen, bar->shpPaperOut, bar->shpPaperNearEmpty})
        QCOMPARE(s->FillColor(), green);
    for (QLabel* l : {bar->lblCoverOpen, bar->lblPaperOut, bar->lblPaperNearEmpty})
        QCOMPARE(l->palette().color(QPalette::WindowText), green);
}

namespace {

// The relations of the load: toolbar on top, left column L wide and T high, every panel beside
// it, the status bar under both taking the rest of the client height.
void CheckRelations(MDITestFPOPOS& w) {
    const int width = w.width();
    const int height = w.height();
    const int toolbar = w.Toolbar()->height();
    const int L = w.App()->lblHidden->x();
    const int T = w.App()->lblHiddenBOTTOM->y();
    QCOMPARE(w.Toolbar()->geometry(), QRect(0, 0, width, toolbar));
    QCOMPARE(w.App()->geometry(), QRect(0, toolbar, L, T));
    for (int p = 0; p < frmToolbar::PanelCount; ++p)
        QCOMPARE(w.Panel(static_cast<frmToolbar::Panel>(p))->geometry(), QRect(L, toolbar, width - L, T));
    QCOMPARE(w.StatusBar()->geometry(), QRect(0, toolbar + T, width, height - (w.App()->y() + T)));
}

} // namespace

void StartupTest::layoutRelations() {
    ShellBench bench;
    MDITestFPOPOS& w = *bench.window;
    CheckRelations(w);
    // The stored design: frmApp 13500 x 7890 under a 735 toolbar, L 2160, T 6840, in one unit.
    const double unit = w.width() / 13500.0;
    QVERIFY(qAbs(w.height() - (7890 + 735) * unit) <= 1.0);
    QVERIFY(qAbs(w.Toolbar()->height() - 735 * unit) <= 1.0);
    QVERIFY(qAbs(w.App()->lblHidden->x() - 2160 * unit) <= 1.0);
    QVERIFY(qAbs(w.App()->lblHiddenBOTTOM->y() - 6840 * unit) <= 1.0);
    QVERIFY(qAbs(w.StatusBar()->height() - (7890 - 6840) * unit) <= 1.0);
    // At least the usual 15 twips a pixel, and it fits a 1920x1080 screen.
    QVERIFY(w.width() >= 900);
    QVERIFY(w.width() <= 1920 && w.height() <= 1000);
}

void StartupTest::layoutRelationsSurviveResize() {
    ShellBench bench;
    MDITestFPOPOS& w = *bench.window;
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    for (QSize step : {QSize(200, 120), QSize(-300, -60)}) {
        const QSize wanted = w.size() + step;
        w.resize(wanted);
        QTRY_COMPARE(w.size(), wanted);
        QCoreApplication::processEvents();
        CheckRelations(w);
    }
}

void StartupTest::closingMakesNoDeviceCall() {
    ShellBench bench;
    bench.window->Toolbar()->cmdOCE->click();
    QVERIFY(!bench.printer->calls.isEmpty());
    const auto calls = bench.printer->calls.size();
    const auto lines = bench.LogMark();
    bench.window->show();
    bench.window->close();
    QCOMPARE(bench.printer->calls.size(), calls);
    QCOMPARE(bench.LogMark(), lines);
    QVERIFY(bench.window->Log()->isHidden());
}

void StartupTest::receiptTakesHeaderAndTrailerFromSettings() {
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

QTEST_MAIN(StartupTest)
#include "tst_shell_startup.moc"
