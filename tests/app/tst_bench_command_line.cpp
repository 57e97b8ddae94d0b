#include "CommandLine.h"

#include <QtTest>

// fpubench's command line, parsed as main() parses it: before any application object exists.
class tst_BenchCommandLine : public QObject {
    Q_OBJECT

private slots:
    void parse_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<bool>("opens");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("device");
        QTest::addColumn<QString>("mentions"); // in the error line

        QTest::newRow("nothing") << QStringList{} << true << 0 << ""
                                 << "";
        QTest::newRow("device") << QStringList{"--device", "Tessorim"} << true << 0 << "Tessorim"
                                << "";
        QTest::newRow("device with =") << QStringList{"--device=ZorvaneFPU"} << true << 0 << "ZorvaneFPU"
                                       << "";
        QTest::newRow("the last device counts")
            << QStringList{"--device", "Tessorim", "--device", "ZorvaneFPU"} << true << 0 << "ZorvaneFPU"
            << "";
        QTest::newRow("Qt's own options pass")
            << QStringList{"-platform", "offscreen", "-style=fusion", "-reverse", "--device", "Tessorim"}
            << true << 0 << "Tessorim"
            << "";

        QTest::newRow("device in the wrong case") << QStringList{"--device", "tessorim"} << false << 2 << ""
                                                  << "\"tessorim\"";
        QTest::newRow("device the bench doesn't open") << QStringList{"--device=Nowhere"} << false << 2 << ""
                                                       << "\"Nowhere\"";
        QTest::newRow("empty device") << QStringList{"--device="} << false << 2 << ""
                                      << "ZorvaneFPU or Tessorim";
        QTest::newRow("device without a name") << QStringList{"--device"} << false << 2 << ""
                                               << "'--device'";
        QTest::newRow("unknown option") << QStringList{"--fast"} << false << 2 << ""
                                        << "unknown option --fast";
        QTest::newRow("unknown short option") << QStringList{"-x"} << false << 2 << ""
                                              << "-x";
        QTest::newRow("a file") << QStringList{"receipt.oposcmd"} << false << 2 << ""
                                << "receipt.oposcmd";
        QTest::newRow("new memory of a model the bench doesn't know")
            << QStringList{"--new-fiscal-memory", "zorvanefpu"} << false << 2 << ""
            << "\"zorvanefpu\"";
    }
    void parse() {
        QFETCH(QStringList, args);
        QFETCH(QString, mentions);
        const BenchStart start = ParseBenchArguments(QStringList{"/usr/bin/fpubench"} + args);
        QTEST(start.openWindow, "opens");
        QTEST(start.exitCode, "status");
        QTEST(start.device, "device");
        QVERIFY(start.newFiscalMemory.isEmpty());
        QVERIFY(start.out.isEmpty());
        if (mentions.isEmpty()) {
            QVERIFY2(start.err.isEmpty(), qPrintable(start.err));
            return;
        }
        // One line that names the fault and where to look next.
        QVERIFY2(start.err.startsWith("fpubench: ") && start.err.contains(mentions) &&
                     start.err.endsWith("; see fpubench --help") && !start.err.contains(u'\n'),
                 qPrintable(start.err));
    }

    // The reset of a model's fiscal memory is an action of its own: a window opens only to ask.
    void newFiscalMemory() {
        const BenchStart start =
            ParseBenchArguments({"/usr/bin/fpubench", "--new-fiscal-memory", "Tessorim"});
        QVERIFY(start.openWindow);
        QCOMPARE(start.newFiscalMemory, QStringLiteral("Tessorim"));
        QVERIFY(start.err.isEmpty());
    }

    void helpAndVersion_data() {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<bool>("help");
        QTest::newRow("--help") << QStringList{"--help"} << true;
        QTest::newRow("-h") << QStringList{"-h"} << true;
        QTest::newRow("help before a bad device") << QStringList{"--device", "x", "--help"} << true;
        QTest::newRow("--version") << QStringList{"--version"} << false;
        QTest::newRow("-v") << QStringList{"-v", "--device", "Tessorim"} << false;
    }
    void helpAndVersion() {
        QFETCH(QStringList, args);
        QFETCH(bool, help);
        const BenchStart start = ParseBenchArguments(QStringList{"./build/src/app/fpubench"} + args);
        QVERIFY(!start.openWindow);
        QCOMPARE(start.exitCode, 0);
        QVERIFY(start.err.isEmpty());
        if (!help) {
            QCOMPARE(start.out, QStringLiteral("fpubench 1.0.13\n"));
            return;
        }
        QVERIFY2(start.out.startsWith("Usage: fpubench [options]\n"), qPrintable(start.out));
        for (const char* option :
             {"-h, --help", "-v, --version", "--device <NAME>", "ZorvaneFPU", "Tessorim"})
            QVERIFY2(start.out.contains(QLatin1String(option)), option);
        QVERIFY(!start.out.contains("platform")); // Qt's options are Qt's to document
    }
};

QTEST_APPLESS_MAIN(tst_BenchCommandLine)
#include "tst_bench_command_line.moc"
