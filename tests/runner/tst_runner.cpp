#include "EventLines.h"
#include "MacroRunner.h"
#include "ScriptedPrinter.h"
#include "Seams.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <QtTest>

namespace {

struct Run {
    QString out;
    QString err;
    int status = -1;
};

Run Main(const QStringList& args, ScriptedPrinter& printer) {
    Run r;
    QTextStream out(&r.out);
    QTextStream err(&r.err);
    r.status = RunnerMain(QStringList{QStringLiteral("fpubench-run")} + args, printer, out, err);
    return r;
}

QStringList Lines(const QString& text) {
    QStringList lines = text.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

} // namespace

class tst_Runner : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

    QString Macro(const QString& name, const QByteArray& bytes) {
        const QString path = m_dir.filePath(name);
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

private slots:
    void parseArguments_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("device");
        QTest::addColumn<bool>("open");
        QTest::addColumn<bool>("stop");
        QTest::addColumn<int>("delay");
        QTest::addColumn<QString>("log");
        QTest::addColumn<int>("response");

        QTest::newRow("file only") << QStringList{"m.oposcmd"} << true << "ZorvaneFPU" << false << false << 0
                                   << "" << 12;
        QTest::newRow("everything") << QStringList{"--device",        "Tessorim", "--open",
                                                   "--stop-on-error", "--delay",  "250",
                                                   "--log",           "out.log",  "--error-response",
                                                   "retry",           "m.oposcmd"}
                                    << true << "Tessorim" << true << true << 250 << "out.log" << 11;
        QTest::newRow("equals form") << QStringList{"--delay=5", "--error-response=clear", "m.oposcmd"}
                                     << true << "ZorvaneFPU" << false << false << 5 << "" << 12;
        QTest::newRow("no file") << QStringList{"--open"} << false << "" << false << false << 0 << "" << 0;
        QTest::newRow("two files") << QStringList{"a", "b"} << false << "" << false << false << 0 << "" << 0;
        QTest::newRow("unknown option")
            << QStringList{"--fast", "m"} << false << "" << false << false << 0 << "" << 0;
        QTest::newRow("delay not a number")
            << QStringList{"--delay", "soon", "m"} << false << "" << false << false << 0 << "" << 0;
        QTest::newRow("negative delay")
            << QStringList{"--delay", "-5", "m"} << false << "" << false << false << 0 << "" << 0;
        QTest::newRow("bad response") << QStringList{"--error-response", "ignore", "m"} << false << ""
                                      << false << false << 0 << "" << 0;
        QTest::newRow("missing value")
            << QStringList{"m", "--log"} << false << "" << false << false << 0 << "" << 0;
    }
    void parseArguments() {
        QFETCH(QStringList, args);
        QFETCH(bool, ok);
        RunOptions o;
        QString error;
        QCOMPARE(ParseRunArguments(QStringList{"fpubench-run"} + args, o, error), ok);
        QCOMPARE(error.isEmpty(), ok);
        if (!ok)
            return;
        QTEST(o.device, "device");
        QTEST(o.open, "open");
        QTEST(o.stopOnError, "stop");
        QTEST(o.delayMs, "delay");
        QTEST(o.logFile, "log");
        QTEST(int(o.errorResponse), "response");
        QCOMPARE(o.macroFile, args.last());
    }

    void usageErrorExitsTwo() {
        ScriptedPrinter printer;
        const Run r = Main({"--fast", Macro("u.oposcmd", "F_PrintXReport\r\n")}, printer);
        QCOMPARE(r.status, 2);
        QVERIFY(r.out.isEmpty());
        QCOMPARE(Lines(r.err).size(), 1);
        QVERIFY(r.err.contains("--fast"));
        QVERIFY(printer.calls.isEmpty());
    }

    void unreadableFileExitsTwo() {
        ScriptedPrinter printer;
        const QString missing = m_dir.filePath("missing.oposcmd");
        const Run r = Main({"--open", missing}, printer);
        QCOMPARE(r.status, 2);
        QVERIFY(r.out.isEmpty());
        QCOMPARE(Lines(r.err).size(), 1);
        QVERIFY(r.err.contains(missing));
        QVERIFY(printer.calls.isEmpty()); // not even the --open steps
    }

    // Standard output is exactly the log: the lines the wrapper writes, nothing else.
    void stdoutIsTheLog() {
        ScriptedPrinter printer;
        const Run r =
            Main({Macro("ok.oposcmd", "F_PrintXReport\r\nP_AsyncMode$True\r\nF_GetDate\r\nF_Delay$0\r\n")},
                 printer);
        QCOMPARE(r.status, 0);
        QCOMPARE(r.out, QStringLiteral("PrintXReport()     -> OposSuccess(0)\n"
                                       "AsyncMode := True     -> OposSuccess(0)\n"));
        QVERIFY(r.err.isEmpty());
    }

    void failingLineExitsOne_data() {
        QTest::addColumn<bool>("stopOnError");
        QTest::addColumn<QStringList>("calls");
        QTest::newRow("goes on") << false << QStringList{"PrintXReport", "PrintZReport"};
        QTest::newRow("stop on error") << true << QStringList{"PrintXReport"};
    }
    void failingLineExitsOne() {
        QFETCH(bool, stopOnError);
        QFETCH(QStringList, calls);
        ScriptedPrinter printer;
        printer.Script("PrintXReport", 106, 0, "Illegal");
        QStringList args{Macro("fail.oposcmd", "F_PrintXReport\r\nF_PrintZReport\r\n")};
        if (stopOnError)
            args.prepend("--stop-on-error");
        const Run r = Main(args, printer);
        QCOMPARE(r.status, 1);
        QCOMPARE(printer.CallNames(), calls);
        QCOMPARE(Lines(r.out).first(),
                 QStringLiteral("PrintXReport()     -> OposEIllegal(106)  (0)  Illegal"));
    }

    // A macro recorded on the first model doesn't open it again on replay.
    void recordedOpenFails() {
        ScriptedPrinter printer;
        const Run r = Main(
            {"--stop-on-error", Macro("open.oposcmd", "F_Open$ZorvaneFPU\r\nF_PrintXReport\r\n")}, printer);
        QCOMPARE(r.status, 1);
        QVERIFY(printer.calls.isEmpty());
        QVERIFY(r.out.isEmpty());
    }

    void unknownCommandIsAMessage() {
        ScriptedPrinter printer;
        const Run r = Main({Macro("bogus.oposcmd", "F_Bogus$1\r\n")}, printer);
        QCOMPARE(r.status, 0);
        QCOMPARE(r.err, QStringLiteral("message: Unknown command F_Bogus$1\n"));
        QVERIFY(r.out.isEmpty());
    }

    void openClaimEnable() {
        ScriptedPrinter printer;
        printer.Set(Prop::State, 2);
        const Run r = Main({"--open", Macro("oce.oposcmd", "F_PrintXReport\r\n")}, printer);
        QCOMPARE(r.status, 0);
        QCOMPARE(printer.CallNames(),
                 (QStringList{"Open", "SetFreezeEvents", "ClaimDevice", "SetDeviceEnabled", "PrintXReport"}));
        QCOMPARE(Lines(r.out),
                 (QStringList{"Open((ZorvaneFPU)     -> OposSuccess(0)", "State = 2 (OPOS_S_IDLE)",
                              "FreezeEvents := False     -> OposSuccess(0)", "ResultCode = 0",
                              "ClaimDevice(2000)     -> OposSuccess(0)", "State = 2 (OPOS_S_IDLE)",
                              "ResultCode = 0", "DeviceEnabled := True     -> OposSuccess(0)",
                              "State = 2 (OPOS_S_IDLE)", "PrintXReport()     -> OposSuccess(0)"}));
        QVERIFY(r.err.isEmpty());
    }

    void failedOpenSkipsTheRest() {
        ScriptedPrinter printer;
        printer.Set(Prop::State, 1);
        printer.Script("Open", 109, 0, "No such device");
        const Run r =
            Main({"--open", "--device", "Nowhere", Macro("oce2.oposcmd", "F_PrintXReport\r\n")}, printer);
        QCOMPARE(r.status, 1);
        QCOMPARE(printer.CallNames(), (QStringList{"Open", "PrintXReport"}));
        QCOMPARE(Lines(r.out).first(),
                 QStringLiteral("Open((Nowhere)     -> OposENoexist(109)  (0)  No such device"));
        QCOMPARE(r.err, QStringLiteral("message: ERRORS: OposENoexist(109)  (0)  No such device\n"));
    }

    void eventsAreLogged_data() {
        QTest::addColumn<QString>("response");
        QTest::addColumn<QString>("errorLine");
        QTest::newRow("clear") << "clear"
                               << "ErrorEvent(114 OposEExtended, 203 OposEfptrRecEmpty)  Resp = 12";
        QTest::newRow("retry") << "retry"
                               << "ErrorEvent(114 OposEExtended, 203 OposEfptrRecEmpty)  Resp = 11";
    }
    void eventsAreLogged() {
        QFETCH(QString, response);
        QFETCH(QString, errorLine);
        ScriptedPrinter printer;
        int32_t answer = 0;
        printer.handlers["PrintXReport"] = [&](QVariantList&) {
            printer.sink->ErrorEvent(114, 203, 1, answer);
            printer.sink->OutputCompleteEvent(5);
            printer.sink->StatusUpdateEvent(27);
            printer.sink->StatusUpdateEvent(24);
            return 0;
        };
        const Run r =
            Main({"--error-response", response, Macro("ev.oposcmd", "F_PrintXReport\r\n")}, printer);
        QCOMPARE(r.status, 0);
        QCOMPARE(answer, response == "retry" ? 11 : 12);
        // The events of a call stand ahead of the call's own line.
        QCOMPARE(Lines(r.out),
                 (QStringList{errorLine, "OutputCompleteEvent(5)", "StatusUpdateEvent(PtrSueRecEmpty)",
                              "PrintXReport()     -> OposSuccess(0)"}));
        QCOMPARE(r.err,
                 QStringLiteral("message: OposErrorEvent(114 OposEExtended, 203 OposEfptrRecEmpty)\n"));
        QVERIFY(printer.sink == nullptr); // the run leaves no sink behind
    }

    void statusLines_data() {
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("line");
        QTest::newRow("0") << 0 << "StatusUpdateEvent(0)";
        QTest::newRow("11") << 11 << "StatusUpdateEvent(PtrSueCoverOpen)";
        QTest::newRow("12") << 12 << "StatusUpdateEvent(PtrSueCoverOk)";
        QTest::newRow("21") << 21 << "StatusUpdateEvent(PtrSueJrnEmpty)";
        QTest::newRow("22") << 22 << "StatusUpdateEvent(PtrSueJrnNearempty)";
        QTest::newRow("23") << 23 << "StatusUpdateEvent(PtrSueJrnPaperok)";
        QTest::newRow("24") << 24 << "StatusUpdateEvent(PtrSueRecEmpty)";
        QTest::newRow("25") << 25 << "StatusUpdateEvent(PtrSueRecNearempty)";
        QTest::newRow("26") << 26 << "StatusUpdateEvent(PtrSueRecPaperok)";
        QTest::newRow("1001") << 1001 << "StatusUpdateEvent(PtrSueIdle)";
        QTest::newRow("27 dropped") << 27 << "";
        QTest::newRow("1 dropped") << 1 << "";
    }
    void statusLines() {
        QFETCH(int, status);
        QFETCH(QString, line);
        QCOMPARE(EventLines::StatusUpdateEventLogLine(status).value_or(QString()), line);
    }

    void errorEventTexts() {
        QCOMPARE(EventLines::ErrorEventQuestion(114, 203),
                 QStringLiteral("OposErrorEvent(114 OposEExtended, 203 OposEfptrRecEmpty)"));
        QCOMPARE(EventLines::ErrorEventLogLine(114, 0, 12),
                 QStringLiteral("ErrorEvent(114 OposEExtended, 0 )  Resp = 12"));
        QCOMPARE(EventLines::OutputCompleteEventLogLine(5), QStringLiteral("OutputCompleteEvent(5)"));
    }

    void logFile() {
        ScriptedPrinter printer;
        const QString log = m_dir.filePath("run.log");
        const Run r =
            Main({"--log", log, Macro("log.oposcmd", "F_PrintRecMessage$\"ciao\"\r\nF_Close\r\n")}, printer);
        QCOMPARE(r.status, 0);
        QFile f(log);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), QByteArray("\"PrintRecMessage(\"\"ciao\"\")     -> OposSuccess(0)\r\n"
                                         "Close(()     -> OposSuccess(0)\r\n\"\r\n"));

        const QString empty = m_dir.filePath("empty.log");
        QCOMPARE(Main({"--log", empty, Macro("empty.oposcmd", "")}, printer).status, 0);
        QFile e(empty);
        QVERIFY(e.open(QIODevice::ReadOnly));
        QCOMPARE(e.readAll(), QByteArray("\"\"\r\n"));
    }

    void delayBetweenLines() {
        ScriptedPrinter printer;
        const Run r =
            Main({"--delay", "5", Macro("d.oposcmd", "F_PrintXReport\r\nF_PrintZReport\r\n")}, printer);
        QCOMPARE(r.status, 0);
        QCOMPARE(printer.CallNames(), (QStringList{"PrintXReport", "PrintZReport"}));
    }
};

QTEST_GUILESS_MAIN(tst_Runner)
#include "tst_runner.moc"
