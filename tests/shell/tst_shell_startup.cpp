#include "ShellBench.h"
#include "ShellLayout.h"
#include "frmFiscalTicket.h"
#include "frmSettings.h"

namespace {

// Toolbar on top, left column L wide and T high, every panel beside it, the status bar under
// both taking the rest of the client height.
void CheckRelations(MDITestFPOPOS& w) {
    const int width = w.width();
    const int toolbar = w.Toolbar()->height();
    const int L = w.App()->lblHidden->x();
    const int T = w.App()->lblHiddenBOTTOM->y();
    QCOMPARE(w.Toolbar()->geometry(), QRect(0, 0, width, toolbar));
    QCOMPARE(w.App()->geometry(), QRect(0, toolbar, L, T));
    for (int p = 0; p < frmToolbar::PanelCount; ++p)
        QCOMPARE(w.Panel(static_cast<frmToolbar::Panel>(p))->geometry(), QRect(L, toolbar, width - L, T));
    QCOMPARE(w.StatusBar()->geometry(), QRect(0, toolbar + T, width, w.height() - (w.App()->y() + T)));
}

} // namespace

class StartupTest : public QObject {
    Q_OBJECT
private slots:
    void loadAndClose() {
        ShellBench bench([](ScriptedPrinter& p) { p.Set(Prop::NumVatRates, 4); });
        QCOMPARE(bench.window->windowTitle(), QStringLiteral("ZorvaneFPU OPOS driver Test V1.0.13"));
        QCOMPARE(MainWindowTitle(QStringLiteral("Other bench")), QStringLiteral("Other bench V1.0.13"));
        // The fiscal and the reports panel each read NumVatRates on a control that isn't open.
        QCOMPARE(bench.LogLines(), QStringList({"NumVatRates = 4", "NumVatRates = 4"}));
        QCOMPARE(bench.printer->CallNames(), QStringList());
        QVERIFY(bench.MacroLines().isEmpty());
        QVERIFY(!bench.window->tmrUpdateControls()->isActive());
        QCOMPARE(bench.window->tmrUpdateControls()->interval(), 2000);
        QVERIFY(bench.window->Toolbar()->optSettings->isChecked());
        QCOMPARE(bench.VisiblePanels(), QStringList{"frmSettings"});
        QVERIFY(bench.window->App()->isVisibleTo(bench.window.get()) &&
                bench.window->StatusBar()->isVisibleTo(bench.window.get()));
        QVERIFY(bench.window->Log()->isHidden());
        Tools::WriteLog(QStringLiteral("probe line"));
        QCOMPARE(bench.LogLines().constLast(), QStringLiteral("probe line"));
        // Closing the window makes no device call and writes no line.
        bench.window->Toolbar()->cmdOCE->click();
        const auto calls = bench.printer->calls.size();
        const auto lines = bench.LogMark();
        QVERIFY(calls > 0);
        bench.window->show();
        bench.window->close();
        QCOMPARE(bench.printer->calls.size(), calls);
        QCOMPARE(bench.LogMark(), lines);
        QVERIFY(bench.window->Log()->isHidden());
    }
    void layoutRelations() {
        ShellBench bench;
        MDITestFPOPOS& w = *bench.window;
        CheckRelations(w);
        // The stored design: frmApp 13500 x 7890 under a 735 toolbar, L 2160, T 6840, in one unit of
        // at least the usual 15 twips a pixel, and it fits a 1920x1080 screen.
        const double unit = w.width() / 13500.0;
        for (auto [pixels, twips] : {std::pair{w.height(), 7890 + 735},
                                     {w.Toolbar()->height(), 735},
                                     {w.App()->lblHidden->x(), 2160},
                                     {w.App()->lblHiddenBOTTOM->y(), 6840},
                                     {w.StatusBar()->height(), 7890 - 6840}})
            QVERIFY2(qAbs(pixels - twips * unit) <= 1.0, qPrintable(QString::number(twips)));
        QVERIFY(w.width() >= 900 && w.width() <= 1920 && w.height() <= 1000);

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
};

QTEST_MAIN(StartupTest)
#include "tst_shell_startup.moc"
