#include "ShellBench.h"
#include "frmApp.h"
#include "frmStatusBar.h"

#include <QLabel>
#include <QPushButton>
#include <QtTest>

class StatusTest : public QObject {
    Q_OBJECT
private slots:
    void resultStatus_data();
    void resultStatus();
    void resultReadsLeaveNoLogLine();
    void boxComesBeforeStateLabels();
    void stateLabels_data();
    void stateLabels();
    void statusEvents_data();
    void statusEvents();
    void errorEvent_data();
    void errorEvent();
    void outputCompleteEvent();
};

void StatusTest::resultStatus_data() {
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("extended");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("codeLabel");
    QTest::addColumn<QString>("extLabel");
    QTest::addColumn<QString>("box"); // empty: no box
    QTest::newRow("success") << 0 << 0 << ""
                             << "OposSuccess(0)"
                             << "(0)"
                             << "";
    QTest::newRow("extended alone counts for nothing") << 0 << 203 << "stale"
                                                       << "OposSuccess(0)"
                                                       << "OposEfptrRecEmpty(203)"
                                                       << "";
    QTest::newRow("extended failure") << 114 << 203 << "Paper out"
                                      << "OposEExtended(114)"
                                      << "OposEfptrRecEmpty(203)"
                                      << "ERRORS: OposEExtended(114)  OposEfptrRecEmpty(203)  Paper out";
    QTest::newRow("no extended code") << 106 << 0 << "Illegal"
                                      << "OposEIllegal(106)"
                                      << "(0)"
                                      << "ERRORS: OposEIllegal(106)  (0)  Illegal";
    QTest::newRow("unknown code") << 100 << 0 << ""
                                  << "Opos#undefined#(100)"
                                  << "(0)"
                                  << "ERRORS: Opos#undefined#(100)  (0)  ";
    QTest::newRow("negative code") << -5 << 0 << "x"
                                   << "Opos#undefined#(-5)"
                                   << "(0)"
                                   << "ERRORS: Opos#undefined#(-5)  (0)  x";
}

void StatusTest::resultStatus() {
    QFETCH(int, code);
    QFETCH(int, extended);
    QFETCH(QString, error);
    QFETCH(QString, codeLabel);
    QFETCH(QString, extLabel);
    QFETCH(QString, box);
    ShellBench bench;
    bench.printer->Script("ResetPrinter", code, extended, error);
    bench.window->App()->cmdResetPrinter->click();

    frmStatusBar* bar = bench.window->StatusBar();
    QCOMPARE(bar->lblErrorCode->text(), codeLabel);
    QCOMPARE(bar->lblErrorCodeExt->text(), extLabel);
    QCOMPARE(bar->lblErrorCodeDescription->text(), error);
    if (box.isEmpty()) {
        QVERIFY(bench.boxes.isEmpty());
    } else {
        QCOMPARE(bench.boxes.size(), 1);
        QCOMPARE(bench.boxes.at(0).text, box);
        QCOMPARE(bench.boxes.at(0).buttons, MsgButtons::Ok);
        QCOMPARE(bench.boxes.at(0).title, QStringLiteral("ZorvaneFPUTest"));
    }
}

void StatusTest::resultReadsLeaveNoLogLine() {
    ShellBench bench([](ScriptedPrinter& p) {
        p.Set(Prop::State, 2);
        p.Set(Prop::PrinterState, 1);
    });
    const auto log = bench.LogMark();
    bench.window->App()->cmdResetPrinter->click();
    QCOMPARE(bench.MacroLines(), QStringList({"F_ResetPrinter"}));
    // One line for the call, one for the State read; ResultCode, ResultCodeExtended, ErrorString
    // and PrinterState go straight to the control.
    QCOMPARE(bench.LogSince(log),
             QStringList({"ResetPrinter()     -> OposSuccess(0)", "State = 2 (OPOS_S_IDLE)"}));
    QVERIFY(bench.printer->reads.contains(Prop::ResultCode));
    QVERIFY(bench.printer->reads.contains(Prop::PrinterState));
}

void StatusTest::boxComesBeforeStateLabels() {
    ShellBench bench([](ScriptedPrinter& p) { p.Set(Prop::State, 4); });
    bench.printer->Script("ResetPrinter", 111, 0, "Failure");
    QString labelWhileBoxOpen;
    SetMessageBoxHandler([&](const QString&, MsgButtons, const QString&) {
        labelWhileBoxOpen = bench.window->App()->lblOposState->text();
        return MsgResult::Ok;
    });
    bench.window->App()->cmdResetPrinter->click();
    QCOMPARE(labelWhileBoxOpen, QStringLiteral("lblOposState"));
    QCOMPARE(bench.window->App()->lblOposState->text(), QStringLiteral("OPOS_S_ERROR   ( 4)"));
}

void StatusTest::stateLabels_data() {
    QTest::addColumn<int>("state");
    QTest::addColumn<int>("printerState");
    QTest::addColumn<QString>("oposLabel");
    QTest::addColumn<QString>("fpLabel");
    QTest::newRow("idle, monitor") << 2 << 1 << "OPOS_S_IDLE   ( 2)"
                                   << "FPTR_PS_MONITOR   ( 1)";
    QTest::newRow("closed, unknown") << 1 << 0 << "OPOS_S_CLOSED   ( 1)"
                                     << "UNKNOWN!!!    ( 0)";
    QTest::newRow("busy, report") << 3 << 10 << "OPOS_S_BUSY   ( 3)"
                                  << "FPTR_PS_REPORT   ( 10)";
    QTest::newRow("out of range") << 0 << 11 << "STATE OUT OF RANGE   ( 0)"
                                  << "   ( 11)";
    QTest::newRow("negative") << -1 << -2 << "STATE OUT OF RANGE   (-1)"
                              << "   (-2)";
}

void StatusTest::stateLabels() {
    QFETCH(int, state);
    QFETCH(int, printerState);
    QFETCH(QString, oposLabel);
    QFETCH(QString, fpLabel);
    ShellBench bench([&](ScriptedPrinter& p) {
        p.Set(Prop::State, state);
        p.Set(Prop::PrinterState, printerState);
    });
    bench.window->RefreshAfterCommand();
    QCOMPARE(bench.window->App()->lblOposState->text(), oposLabel);
    QCOMPARE(bench.window->App()->lblFPState->text(), fpLabel);
}

void StatusTest::statusEvents_data() {
    QTest::addColumn<QList<int>>("before");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("line"); // empty: no line
    QTest::addColumn<bool>("cover");   // red afterwards
    QTest::addColumn<bool>("paperOut");
    QTest::addColumn<bool>("paperLow");
    const QList<int> none;
    const QList<int> allRed{11, 24, 25};
    QTest::newRow("0") << none << 0 << "StatusUpdateEvent(0)" << false << false << false;
    QTest::newRow("cover open") << none << 11 << "StatusUpdateEvent(PtrSueCoverOpen)" << true << false
                                << false;
    QTest::newRow("cover ok") << allRed << 12 << "StatusUpdateEvent(PtrSueCoverOk)" << false << true << true;
    QTest::newRow("jrn empty") << allRed << 21 << "StatusUpdateEvent(PtrSueJrnEmpty)" << true << true << true;
    QTest::newRow("jrn near empty") << none << 22 << "StatusUpdateEvent(PtrSueJrnNearempty)" << false << false
                                    << false;
    QTest::newRow("jrn paper ok") << allRed << 23 << "StatusUpdateEvent(PtrSueJrnPaperok)" << true << true
                                  << true;
    QTest::newRow("rec empty") << none << 24 << "StatusUpdateEvent(PtrSueRecEmpty)" << false << true << false;
    QTest::newRow("rec empty keeps low")
        << QList<int>{25} << 24 << "StatusUpdateEvent(PtrSueRecEmpty)" << false << true << true;
    QTest::newRow("rec near empty") << none << 25 << "StatusUpdateEvent(PtrSueRecNearempty)" << false << false
                                    << true;
    QTest::newRow("rec paper ok") << allRed << 26 << "StatusUpdateEvent(PtrSueRecPaperok)" << true << false
                                  << false;
    QTest::newRow("idle") << allRed << 1001 << "StatusUpdateEvent(PtrSueIdle)" << true << true << true;
    QTest::newRow("27 unknown") << allRed << 27 << "" << true << true << true;
    QTest::newRow("13 unknown") << none << 13 << "" << false << false << false;
    QTest::newRow("-1 unknown") << none << -1 << "" << false << false << false;
}

void StatusTest::statusEvents() {
    QFETCH(QList<int>, before);
    QFETCH(int, status);
    QFETCH(QString, line);
    QFETCH(bool, cover);
    QFETCH(bool, paperOut);
    QFETCH(bool, paperLow);
    ShellBench bench;
    QVERIFY(bench.printer->sink == bench.window.get());
    for (int s : before)
        bench.printer->sink->StatusUpdateEvent(s);
    const auto log = bench.LogMark();
    bench.printer->sink->StatusUpdateEvent(status);

    QCOMPARE(bench.LogSince(log), line.isEmpty() ? QStringList() : QStringList{line});
    const QColor red(0xFF, 0x00, 0x00);
    const QColor green(0x00, 0xFF, 0x00);
    frmStatusBar* bar = bench.window->StatusBar();
    QCOMPARE(bar->shpCoverOpen->FillColor(), cover ? red : green);
    QCOMPARE(bar->lblCoverOpen->palette().color(QPalette::WindowText), cover ? red : green);
    QCOMPARE(bar->shpPaperOut->FillColor(), paperOut ? red : green);
    QCOMPARE(bar->lblPaperOut->palette().color(QPalette::WindowText), paperOut ? red : green);
    QCOMPARE(bar->shpPaperNearEmpty->FillColor(), paperLow ? red : green);
    QCOMPARE(bar->lblPaperNearEmpty->palette().color(QPalette::WindowText), paperLow ? red : green);
    // Events bypass the wrapper: no macro line, no device call, no refresh.
    QVERIFY(bench.MacroLines().isEmpty());
    QVERIFY(bench.printer->calls.isEmpty());
    QCOMPARE(bar->lblErrorCode->text(), QStringLiteral("Label1"));
}

void StatusTest::errorEvent_data() {
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("extended");
    QTest::addColumn<int>("answer");
    QTest::addColumn<int>("response");
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("line");
    QTest::newRow("retry") << 114 << 203 << int(MsgResult::Retry) << 11
                           << "OposErrorEvent(114 OposEExtended, 203 OposEfptrRecEmpty)"
                           << "ErrorEvent(114 OposEExtended, 203 OposEfptrRecEmpty)  Resp = 11";
    QTest::newRow("cancel") << 114 << 201 << int(MsgResult::Cancel) << 12
                            << "OposErrorEvent(114 OposEExtended, 201 OposEfptrCoverOpen)"
                            << "ErrorEvent(114 OposEExtended, 201 OposEfptrCoverOpen)  Resp = 12";
    QTest::newRow("no extended code")
        << 111 << 0 << int(MsgResult::Cancel) << 12 << "OposErrorEvent(111 OposEFailure, 0 )"
        << "ErrorEvent(111 OposEFailure, 0 )  Resp = 12";
    QTest::newRow("box closed another way")
        << 112 << 0 << int(MsgResult::Ok) << 12 << "OposErrorEvent(112 OposETimeout, 0 )"
        << "ErrorEvent(112 OposETimeout, 0 )  Resp = 12";
}

void StatusTest::errorEvent() {
    QFETCH(int, code);
    QFETCH(int, extended);
    QFETCH(int, answer);
    QFETCH(int, response);
    QFETCH(QString, box);
    QFETCH(QString, line);
    ShellBench bench;
    bench.answer = static_cast<MsgResult>(answer);
    const auto log = bench.LogMark();
    int32_t pErrorResponse = -1;
    bench.printer->sink->ErrorEvent(code, extended, 0, pErrorResponse);
    QCOMPARE(pErrorResponse, response);
    QCOMPARE(bench.boxes.size(), 1);
    QCOMPARE(bench.boxes.at(0).text, box);
    QCOMPARE(bench.boxes.at(0).buttons, MsgButtons::RetryCancel);
    QCOMPARE(bench.boxes.at(0).title, QStringLiteral("ZorvaneFPUTest"));
    QCOMPARE(bench.LogSince(log), QStringList{line});
    QVERIFY(bench.MacroLines().isEmpty());
    QVERIFY(bench.printer->calls.isEmpty());
}

void StatusTest::outputCompleteEvent() {
    ShellBench bench;
    const auto log = bench.LogMark();
    bench.printer->sink->OutputCompleteEvent(5);
    QCOMPARE(bench.LogSince(log), QStringList{"OutputCompleteEvent(5)"});
    QVERIFY(bench.boxes.isEmpty());
}

QTEST_MAIN(StatusTest)
#include "tst_shell_status.moc"
