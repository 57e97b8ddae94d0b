#include "ShellBench.h"
#include "frmFiscalTicket.h"
#include "frmSettings.h"

namespace {

// The frame's design, in twips: toolbar 735 high, left column 2160 wide, panels 6840 and the
// status bar 1050 high below it.
constexpr double ToolbarTwips = 735, ColumnTwips = 2160, PanelTwips = 6840, StatusTwips = 1050;

// The toolbar across the top at its height, the left column at its width, the panel on show
// beside the column, the status bar under both across the full width; the panel and the status
// bar share the height under the toolbar in the proportion of their design heights.
void CheckFrame(MDITestFPOPOS& w, int toolbar, int column) {
    const int width = w.width();
    QCOMPARE(w.Toolbar()->geometry(), QRect(0, 0, width, toolbar));
    const int T = w.App()->height();
    QCOMPARE(w.App()->geometry(), QRect(0, toolbar, column, T));
    QCOMPARE(QPoint(w.App()->lblHidden->x(), w.App()->lblHiddenBOTTOM->y()), QPoint(column, T));
    for (int p = 0; p < frmToolbar::PanelCount; ++p) {
        QWidget* panel = w.Panel(static_cast<frmToolbar::Panel>(p));
        if (panel->isVisibleTo(&w))
            QCOMPARE(QRect(panel->mapTo(&w, QPoint(0, 0)), panel->size()),
                     QRect(column, toolbar, width - column, T));
    }
    QCOMPARE(w.StatusBar()->geometry(), QRect(0, toolbar + T, width, w.height() - (toolbar + T)));
    const double share = (w.height() - toolbar) * PanelTwips / (PanelTwips + StatusTwips);
    QVERIFY2(qAbs(T - share) <= 1.0, qPrintable(QStringLiteral("%1 against %2").arg(T).arg(share)));
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
    void layoutKeepsItsProportions() {
        ShellBench bench;
        MDITestFPOPOS& w = *bench.window;
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        // It opens at the stored design, in one unit of at least the usual 15 twips a pixel, wide
        // enough for the widest panel and within a 1920x1080 screen.
        const int toolbar = w.Toolbar()->height();
        const int column = w.App()->width();
        const double unit = column / ColumnTwips;
        QVERIFY(unit >= 1 / 15.0);
        QVERIFY(qAbs(toolbar - ToolbarTwips * unit) <= 1.0);
        QVERIFY(qAbs(w.height() - (ToolbarTwips + PanelTwips + StatusTwips) * unit) <= 1.0);
        QVERIFY(w.width() >= 13500 * unit - 1 && w.width() <= 1920 && w.height() <= 1000);
        QVERIFY(w.width() >= w.FiscalTicket()->minimumSizeHint().width() + column);
        CheckFrame(w, toolbar, column);
        if (QTest::currentTestFailed())
            return;

        // Larger, then narrower than the panels need: the frame stops at their minimum.
        for (QSize step : {QSize(200, 120), QSize(-300, -60)}) {
            const QSize wanted = (w.size() + step).expandedTo(w.minimumSize());
            w.resize(w.size() + step);
            QTRY_COMPARE(w.size(), wanted);
            QCoreApplication::processEvents();
            CheckFrame(w, toolbar, column);
            if (QTest::currentTestFailed())
                return;
        }
        for (int p = 0; p < frmToolbar::PanelCount; ++p) { // every panel in the same place
            w.Toolbar()->Option(static_cast<frmToolbar::Panel>(p))->click();
            QCoreApplication::processEvents();
            CheckFrame(w, toolbar, column);
            if (QTest::currentTestFailed())
                return;
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
