#include "ShellBench.h"

class StatusTest : public QObject {
    Q_OBJECT
private slots:
    // The refresh's texts and box are the core's; the window paints them where they belong.
    void resetPrinterRefresh_data() {
        QTest::addColumn<QList<int>>("in");   // code, extended, State, PrinterState
        QTest::addColumn<QStringList>("out"); // error, code, extended, box (empty: none), state labels
        const auto row = [](const char* tag, QList<int> in, QStringList out) {
            QTest::newRow(tag) << in << out;
        };
        row("success", {0, 0, 2, 1},
            {"", "OposSuccess(0)", "(0)", "", "OPOS_S_IDLE   ( 2)", "FPTR_PS_MONITOR   ( 1)"});
        row("extended failure", {114, 203, 3, 10},
            {"Paper out", "OposEExtended(114)", "OposEfptrRecEmpty(203)",
             "ERRORS: OposEExtended(114)  OposEfptrRecEmpty(203)  Paper out", "OPOS_S_BUSY   ( 3)",
             "FPTR_PS_REPORT   ( 10)"});
    }
    void resetPrinterRefresh() {
        QFETCH(QList<int>, in);
        QFETCH(QStringList, out);
        ShellBench bench([&](ScriptedPrinter& p) {
            p.Set(Prop::State, in[2]);
            p.Set(Prop::PrinterState, in[3]);
        });
        bench.printer->Script("ResetPrinter", in[0], in[1], out[0]);
        const auto log = bench.LogMark();
        bench.window->App()->cmdResetPrinter->click();

        frmStatusBar* bar = bench.window->StatusBar();
        QCOMPARE(bar->lblErrorCode->text(), out[1]);
        QCOMPARE(bar->lblErrorCodeExt->text(), out[2]);
        QCOMPARE(bar->lblErrorCodeDescription->text(), out[0]);
        QCOMPARE(bench.window->App()->lblOposState->text(), out[4]);
        QCOMPARE(bench.window->App()->lblFPState->text(), out[5]);
        QCOMPARE(bench.MacroLines(), QStringList({"F_ResetPrinter"}));
        QCOMPARE(bench.LogSince(log).size(), 2); // the call's and State's
        QCOMPARE(bench.boxes.size(), out[3].isEmpty() ? 0 : 1);
        for (const auto& box : bench.boxes)
            QCOMPARE(box.text, out[3]);
    }
    // Which lamps a status switches is the core's table; the lamps and their labels follow it.
    void statusEvents_data() {
        QTest::addColumn<QList<int>>("before");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("line");  // empty: no line
        QTest::addColumn<QString>("lamps"); // cover, paper out, paper low afterwards: R red, G green
        const QList<int> allRed{11, 24, 25};
        const auto row = [](const char* tag, QList<int> before, int status, const char* line,
                            const char* lamps) {
            QTest::newRow(tag) << before << status << QString::fromLatin1(line) << QString::fromLatin1(lamps);
        };
        row("cover open", {}, 11, "StatusUpdateEvent(PtrSueCoverOpen)", "RGG");
        row("cover ok", allRed, 12, "StatusUpdateEvent(PtrSueCoverOk)", "GRR");
        row("rec empty keeps low", {25}, 24, "StatusUpdateEvent(PtrSueRecEmpty)", "GRR");
        row("rec paper ok", allRed, 26, "StatusUpdateEvent(PtrSueRecPaperok)", "RGG");
        row("27 unknown", allRed, 27, "", "RRR");
    }
    void statusEvents() {
        QFETCH(QList<int>, before);
        QFETCH(int, status);
        QFETCH(QString, line);
        QFETCH(QString, lamps);
        ShellBench bench;
        for (int s : before)
            bench.printer->sink->StatusUpdateEvent(s);
        const auto log = bench.LogMark();
        bench.printer->sink->StatusUpdateEvent(status);

        QCOMPARE(bench.LogSince(log), line.isEmpty() ? QStringList() : QStringList{line});
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
    // The window answers an ErrorEvent with a Retry / Cancel box.
    void errorEvent_data() {
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("extended");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("response");
        QTest::addColumn<QString>("text"); // of the box, and after "ErrorEvent" in the log
        QTest::newRow("retry") << 114 << 203 << int(MsgResult::Retry) << 11
                               << "(114 OposEExtended, 203 OposEfptrRecEmpty)";
        QTest::newRow("cancel") << 114 << 201 << int(MsgResult::Cancel) << 12
                                << "(114 OposEExtended, 201 OposEfptrCoverOpen)";
    }
    void errorEvent() {
        QFETCH(int, code);
        QFETCH(int, extended);
        QFETCH(int, answer);
        QFETCH(int, response);
        QFETCH(QString, text);
        ShellBench bench;
        bench.answer = static_cast<MsgResult>(answer);
        const auto log = bench.LogMark();
        int32_t pErrorResponse = -1;
        bench.printer->sink->ErrorEvent(code, extended, 0, pErrorResponse);
        QCOMPARE(pErrorResponse, response);
        QCOMPARE(bench.boxes.size(), 1);
        QCOMPARE(bench.boxes[0].text, "OposErrorEvent" + text);
        QCOMPARE(bench.boxes[0].buttons, MsgButtons::RetryCancel);
        QCOMPARE(bench.boxes[0].title, QStringLiteral("ZorvaneFPUTest"));
        QCOMPARE(bench.LogSince(log),
                 QStringList({"ErrorEvent" + text + "  Resp = " + QString::number(response)}));
    }
};

QTEST_MAIN(StatusTest)
#include "tst_shell_status.moc"
