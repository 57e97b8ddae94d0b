#include "MacroRunner.h"
#include "ScriptedPrinter.h"

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
        QTest::newRow("no file") << QStringList{"--open"} << "";
        QTest::newRow("two files") << QStringList{m, m} << "";
        QTest::newRow("delay not a number") << QStringList{"--delay", "soon", m} << "";
        QTest::newRow("negative delay") << QStringList{"--delay=-5", m} << "";
        QTest::newRow("bad response") << QStringList{"--error-response", "ignore", m} << "";
        QTest::newRow("device the bench doesn't open")
            << QStringList{"--open", "--device", "Nowhere", m} << "Nowhere";
        QTest::newRow("device name in the wrong case") << QStringList{"--device=tessorim", m} << "tessorim";
        QTest::newRow("missing value") << QStringList{m, "--log"} << "";
        QTest::newRow("unreadable file") << QStringList{"--open", missing} << missing;
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
        QVERIFY2(r.err.size() > 1 && r.err.contains(mentions), qPrintable(r.err));
        QVERIFY(p->calls.isEmpty()); // not even the --open steps
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
        QCOMPARE(r.err, "fpubench-run: cannot write log file " + log + "\n");
        QVERIFY(!QFile::exists(log));
    }
};

QTEST_GUILESS_MAIN(tst_Runner)
#include "tst_runner.moc"
