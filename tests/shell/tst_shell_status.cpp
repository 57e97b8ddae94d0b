#include "ShellBench.h"

// The refresh's texts, the "ERRORS: " box and which lamps a status switches are the core's; the
// window paints them where they belong.
class StatusTest : public QObject {
    Q_OBJECT
private slots:
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
        QTest::newRow("cover open") << QList<int>{11} << "RGG";
        QTest::newRow("all red") << QList<int>{11, 24, 25} << "RRR";
        QTest::newRow("all red, then receipt paper ok") << QList<int>{11, 24, 25, 26} << "RGG";
        QTest::newRow("all red, then cover ok and unknown 27") << QList<int>{11, 24, 25, 12, 27} << "GRR";
    }
    void statusEventsPaintTheLamps() {
        QFETCH(QList<int>, statuses);
        QFETCH(QString, lamps);
        ShellBench bench;
        for (int s : statuses)
            bench.printer->sink->StatusUpdateEvent(s);
        frmStatusBar* bar = bench.window->StatusBar();
        const QList<std::pair<LampShape*, QLabel*>> lampPairs{
            {bar->shpCoverOpen, bar->lblCoverOpen},
            {bar->shpPaperOut, bar->lblPaperOut},
            {bar->shpPaperNearEmpty, bar->lblPaperNearEmpty}};
        for (int i = 0; i < 3; ++i) {
            const QColor colour = lamps[i] == 'R' ? QColor(0xFF, 0x00, 0x00) : QColor(0x00, 0xFF, 0x00);
            QCOMPARE(lampPairs[i].first->FillColor(), colour);
            QCOMPARE(lampPairs[i].second->palette().color(QPalette::WindowText), colour);
        }
        QCOMPARE(bar->lblErrorCode->text(), QStringLiteral("Label1")); // no refresh
    }

    // The window asks the operator in a Retry / Cancel box under the program's title.
    void errorEventAsksInABox() {
        ShellBench bench;
        bench.answer = MsgResult::Retry;
        int32_t pErrorResponse = -1;
        bench.printer->sink->ErrorEvent(114, 203, 0, pErrorResponse);
        QCOMPARE(pErrorResponse, 11);
        QCOMPARE(bench.boxes.size(), 1);
        QCOMPARE(bench.boxes[0].text,
                 QStringLiteral("OposErrorEvent(114 OposEExtended, 203 OposEfptrRecEmpty)"));
        QCOMPARE(bench.boxes[0].buttons, MsgButtons::RetryCancel);
        QCOMPARE(bench.boxes[0].title, QStringLiteral("ZorvaneFPUTest"));
    }
};

QTEST_MAIN(StatusTest)
#include "tst_shell_status.moc"
