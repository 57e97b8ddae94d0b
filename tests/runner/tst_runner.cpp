#include "MacroRunner.h"
#include "ScriptedPrinter.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QtTest>

#include <optional>

class tst_Runner : public QObject {
    Q_OBJECT

    struct Run {
        int status = -1;
        QString out, err;
    };
    QTemporaryDir m_dir;
    std::optional<ScriptedPrinter> p;

    static QStringList Lines(QString text) {
        text.chop(text.endsWith(u'\n') ? 1 : 0);
        return text.split(u'\n');
    }
    QString Macro(const QString& name, const QByteArray& bytes) {
        QFile f(m_dir.filePath(name));
        if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(f.fileName()));
        return f.fileName();
    }
    Run Main(const QStringList& args) {
        Run r;
        QTextStream out(&r.out), err(&r.err);
        r.status = RunnerMain(QStringList{"fpubench-run"} + args, *p, out, err);
        return r;
    }
    static QByteArray ReadFile(const QString& path) {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("unreadable");
    }

private slots:
    void init() { p.emplace(); }

    // Bad arguments and an unreadable file exit 2 with one line on stderr, before any call.
    void exitsTwo_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("mentions");
        const QString m = Macro("u.oposcmd", "F_PrintXReport\r\n");
        const QString missing = m_dir.filePath("missing.oposcmd");
        QTest::newRow("unknown option") << QStringList{"--fast", m} << "--fast";
        QTest::newRow("unknown short option") << QStringList{"-x", m} << "-x";
        QTest::newRow("no file") << QStringList{"--open"} << "";
        QTest::newRow("two files") << QStringList{m, m} << "";
        QTest::newRow("delay not a number") << QStringList{"--delay", "soon", m} << "";
        QTest::newRow("negative delay") << QStringList{"--delay=-5", m} << "";
        QTest::newRow("a bad delay before a good one")
            << QStringList{"--delay", "soon", "--delay=5", m} << "soon";
        QTest::newRow("bad response") << QStringList{"--error-response", "ignore", m} << "";
        QTest::newRow("device the bench doesn't open")
            << QStringList{"--open", "--device", "Nowhere", m} << "Nowhere";
        QTest::newRow("device name in the wrong case") << QStringList{"--device=tessorim", m} << "tessorim";
        QTest::newRow("missing value") << QStringList{m, "--log"} << "--log";
        QTest::newRow("empty log name") << QStringList{"--log=", m} << "--log";
        QTest::newRow("paper without a file name") << QStringList{"--paper=", m} << "--paper";
        QTest::newRow("unreadable file") << QStringList{"--open", missing} << missing;
        QTest::newRow("file after --") << QStringList{"--", "--missing.oposcmd"} << "--missing.oposcmd";
        const QString big = Macro("big.oposcmd", QByteArray(16 * 1024 * 1024 + 1, 'x'));
        QTest::newRow("file over 16 MB") << QStringList{"--open", big} << "16 MB";
        QTest::newRow("a file with no end") << QStringList{"/dev/zero"} << "16 MB";
        QTest::newRow("log into a missing folder")
            << QStringList{"--open", "--log", m_dir.filePath("nowhere/run.log"), m} << "nowhere/run.log";
        QTest::newRow("log onto a folder") << QStringList{"--log=" + m_dir.path(), m} << m_dir.path();
    }
    void exitsTwo() {
        QFETCH(QStringList, args);
        QFETCH(QString, mentions);
        const Run r = Main(args);
        QCOMPARE(r.status, 2);
        QVERIFY(r.out.isEmpty());
        QCOMPARE(Lines(r.err).size(), 1);
        QVERIFY2(r.err.startsWith("fpubench-run: ") && r.err.contains(mentions), qPrintable(r.err));
        // The line says what to do next: read the help, or see to the file.
        QVERIFY2(r.err.contains("see fpubench-run --help") || r.err.contains("check the path"),
                 qPrintable(r.err));
        QVERIFY(p->calls.isEmpty()); // not even the --open steps
    }

    // Every option reaches the run as given, whatever its form.
    void options_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("device");
        QTest::addColumn<bool>("open");
        QTest::addColumn<bool>("stop");
        QTest::addColumn<int>("delay");
        QTest::addColumn<QString>("log");
        QTest::addColumn<int>("response");
        QTest::newRow("defaults") << QStringList{"m.oposcmd"} << "ZorvaneFPU" << false << false << 0 << ""
                                  << 12;
        QTest::newRow("all, values apart")
            << QStringList{"--device", "Tessorim", "--open",           "--stop-on-error", "--delay",  "7",
                           "--log",    "run.log",  "--error-response", "retry",           "m.oposcmd"}
            << "Tessorim" << true << true << 7 << "run.log" << 11;
        QTest::newRow("values after =, file first")
            << QStringList{"m.oposcmd", "--device=ZorvaneFPU", "--delay=0", "--log=a b.log",
                           "--error-response=clear"}
            << "ZorvaneFPU" << false << false << 0 << "a b.log" << 12;
        QTest::newRow("the last value counts")
            << QStringList{"--error-response", "retry",     "--error-response", "clear",
                           "--delay=3",        "--delay=4", "m.oposcmd"}
            << "ZorvaneFPU" << false << false << 4 << "" << 12;
    }
    void options() {
        QFETCH(QStringList, args);
        RunOptions o;
        QString error;
        QVERIFY2(ParseRunArguments(QStringList{"fpubench-run"} + args, o, error), qPrintable(error));
        QTEST(o.device, "device");
        QTEST(o.open, "open");
        QTEST(o.stopOnError, "stop");
        QTEST(o.delayMs, "delay");
        QTEST(o.logFile, "log");
        QTEST(o.errorResponse, "response");
        QCOMPARE(o.macroFile, QStringLiteral("m.oposcmd"));
        QVERIFY(!o.help && !o.version);
    }

    // Help and version need no file, go to stdout and touch no device.
    void helpAndVersion_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<bool>("help");
        QTest::newRow("--help") << QStringList{"--help"} << true;
        QTest::newRow("-h with a file") << QStringList{"-h", "m.oposcmd"} << true;
        QTest::newRow("help after a bad device") << QStringList{"--device", "x", "--help"} << true;
        QTest::newRow("--version") << QStringList{"--version"} << false;
        QTest::newRow("-v") << QStringList{"-v"} << false;
    }
    void helpAndVersion() {
        QFETCH(QStringList, args);
        QFETCH(bool, help);
        const Run r = Main(args);
        QCOMPARE(r.status, 0);
        QVERIFY(r.err.isEmpty());
        QVERIFY(p->calls.isEmpty());
        if (!help) {
            QCOMPARE(r.out, QStringLiteral("fpubench-run 1.0.13\n"));
            return;
        }
        QVERIFY2(r.out.startsWith("Usage: fpubench-run [options] MACRO.oposcmd\n"), qPrintable(r.out));
        for (const char* option :
             {"--device <NAME>", "--open", "--stop-on-error", "--delay <MS>", "--log <FILE>",
              "--error-response <retry|clear>", "-h, --help", "-v, --version"})
            QVERIFY2(r.out.contains(QLatin1String(option)), option);
        // The exit codes are part of the help.
        QVERIFY(r.out.contains("0 when every line returned 0, 1 when one did not, 2 for a usage error"));
    }

    void failingLineExitsOne_data() {
        QTest::addColumn<QStringList>("option");
        QTest::addColumn<QStringList>("calls");
        QTest::newRow("goes on") << QStringList{} << QStringList{"PrintXReport", "PrintZReport"};
        QTest::newRow("stop on error") << QStringList{"--stop-on-error"} << QStringList{"PrintXReport"};
    }
    void failingLineExitsOne() {
        QFETCH(QStringList, option);
        p->Script("PrintXReport", 106, 0, "Illegal");
        const Run r =
            Main(option + QStringList{Macro("fail.oposcmd", "F_PrintXReport\r\nF_PrintZReport\r\n")});
        QCOMPARE(r.status, 1);
        QTEST(p->CallNames(), "calls");
        QCOMPARE(Lines(r.out).first(),
                 QStringLiteral("PrintXReport()     -> OposEIllegal(106)  (0)  Illegal"));
    }

    void openClaimEnable() {
        p->Set(Prop::State, 2);
        const Run r = Main({"--open", Macro("oce.oposcmd", "F_PrintXReport\r\n")});
        QCOMPARE(r.status, 0);
        QCOMPARE(p->CallNames(),
                 (QStringList{"Open", "SetFreezeEvents", "ClaimDevice", "SetDeviceEnabled", "PrintXReport"}));
        QCOMPARE(Lines(r.out),
                 (QStringList{"Open((ZorvaneFPU)     -> OposSuccess(0)", "State = 2 (OPOS_S_IDLE)",
                              "FreezeEvents := False     -> OposSuccess(0)", "ResultCode = 0",
                              "ClaimDevice(2000)     -> OposSuccess(0)", "State = 2 (OPOS_S_IDLE)",
                              "ResultCode = 0", "DeviceEnabled := True     -> OposSuccess(0)",
                              "State = 2 (OPOS_S_IDLE)", "PrintXReport()     -> OposSuccess(0)"}));
        QVERIFY(r.err.isEmpty());

        p.emplace(); // a failed Open skips Claim and Enable
        p->Set(Prop::State, 1);
        p->Script("Open", 109, 0, "No such device");
        const Run f = Main({"--open", "--device", "Tessorim", Macro("oce2.oposcmd", "F_PrintXReport\r\n")});
        QCOMPARE(f.status, 1);
        QCOMPARE(p->CallNames(), (QStringList{"Open", "PrintXReport"}));
        QCOMPARE(Lines(f.out).first(),
                 QStringLiteral("Open((Tessorim)     -> OposENoexist(109)  (0)  No such device"));
        QCOMPARE(f.err, QStringLiteral("message: ERRORS: OposENoexist(109)  (0)  No such device\n"));
    }

    // Without --error-response the device's error events are answered Clear (12).
    void eventsAreLogged() {
        int32_t answer = 0;
        p->handlers["PrintXReport"] = [&](QVariantList&) {
            p->sink->ErrorEvent(114, 203, 1, answer);
            p->sink->OutputCompleteEvent(5);
            p->sink->StatusUpdateEvent(27);
            p->sink->StatusUpdateEvent(24);
            return 0;
        };
        const Run r = Main({Macro("ev.oposcmd", "F_PrintXReport\r\n")});
        QCOMPARE(r.status, 0);
        QCOMPARE(answer, 12);
        // The events of a call stand ahead of the call's own line.
        QCOMPARE(Lines(r.out), (QStringList{"ErrorEvent(114 OposEExtended, 203 OposEfptrRecEmpty)  Resp = 12",
                                            "OutputCompleteEvent(5)", "StatusUpdateEvent(PtrSueRecEmpty)",
                                            "PrintXReport()     -> OposSuccess(0)"}));
        QCOMPARE(r.err,
                 QStringLiteral("message: OposErrorEvent(114 OposEExtended, 203 OposEfptrRecEmpty)\n"));
        QVERIFY(p->sink == nullptr); // the run leaves no sink behind
    }

    // Both streams into one, as on a terminal: block writes change neither what comes out nor its
    // order, also around a box's message and when the macro fails in the middle.
    void blockWritesChangeNothing_data() {
        QTest::addColumn<QStringList>("option");
        QTest::addColumn<QString>("merged");
        const QString before = "PrintRecMessage(\"uno\")     -> OposSuccess(0)\n"
                               "message: Bad Format for x.yz...returning 0\n"
                               "PrintRecSubtotal(0.00)     -> OposSuccess(0)\n"
                               "PrintXReport()     -> OposEIllegal(106)  (0)  Illegal\n";
        QTest::newRow("goes on") << QStringList{}
                                 << before + "PrintRecMessage(\"due\")     -> OposSuccess(0)\n";
        QTest::newRow("stop on error") << QStringList{"--stop-on-error"} << before;
    }
    void blockWritesChangeNothing() {
        QFETCH(QStringList, option);
        const QString macro = Macro("mid.oposcmd", "F_PrintRecMessage$uno\r\nF_PrintRecSubtotal$x,yz\r\n"
                                                   "F_PrintXReport\r\nF_PrintRecMessage$due\r\n");
        for (const bool blocks : {false, true}) {
            p.emplace();
            p->Script("PrintXReport", 106, 0, "Illegal");
            RunOptions options;
            QString error;
            QVERIFY(
                ParseRunArguments(QStringList{"fpubench-run"} + option + QStringList{macro}, options, error));
            options.blockWrites = blocks;
            QByteArray merged;
            QBuffer device(&merged);
            QVERIFY(device.open(QIODevice::WriteOnly));
            QTextStream out(&device), err(&device);
            QCOMPARE(RunMacroFile(options, *p, out, err), 1);
            out.flush();
            QTEST(QString::fromUtf8(merged), "merged");
        }
    }

    // Standard output is exactly the log; --log saves it in the log window's format.
    void stdoutAndLogFile() {
        const QString log = m_dir.filePath("run.log");
        const QString empty = m_dir.filePath("empty.log");
        const Run r = Main({"--delay=5", "--log=" + log,
                            Macro("ok.oposcmd", "F_PrintRecMessage$\"ciao\"\r\nP_AsyncMode$True\r\n"
                                                "F_GetDate\r\nF_Delay$0\r\nF_Close\r\n")});
        QCOMPARE(r.status, 0);
        QCOMPARE(r.out, QStringLiteral("PrintRecMessage(\"\"ciao\"\")     -> OposSuccess(0)\n"
                                       "AsyncMode := True     -> OposSuccess(0)\n"
                                       "Close(()     -> OposSuccess(0)\n"));
        QVERIFY(r.err.isEmpty());
        QCOMPARE(ReadFile(log), QByteArray("\"PrintRecMessage(\"\"ciao\"\")     -> OposSuccess(0)\r\n"
                                           "AsyncMode := True     -> OposSuccess(0)\r\n"
                                           "Close(()     -> OposSuccess(0)\r\n\"\r\n"));
        QCOMPARE(Main({"--log", empty, Macro("empty.oposcmd", "")}).status, 0);
        QCOMPARE(ReadFile(empty), QByteArray("\"\"\r\n"));
    }

    // The log's folder goes away during the run: the run is made, and still exits 2.
    void logLostDuringTheRun() {
        QTemporaryDir folder;
        const QString log = folder.filePath("run.log");
        p->handlers["PrintXReport"] = [&](QVariantList&) {
            folder.remove();
            return 0;
        };
        const Run r = Main({"--log", log, Macro("lost.oposcmd", "F_PrintXReport\r\n")});
        QCOMPARE(r.status, 2);
        QCOMPARE(p->CallNames(), QStringList{"PrintXReport"});
        QVERIFY2(r.err.startsWith("fpubench-run: cannot write log file " + log + "; the log above is complete"),
                 qPrintable(r.err));
        QVERIFY(!QFile::exists(log));
    }
};

QTEST_GUILESS_MAIN(tst_Runner)
#include "tst_runner.moc"
