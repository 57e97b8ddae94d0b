#include "CommandLine.h"
#include "TestRow.h"

#include <QtTest>

namespace {

BenchStart Parse(const QString& args) {
    return ParseBenchArguments(QStringList{"/usr/bin/fpubench"} + args.split(u' ', Qt::SkipEmptyParts));
}

} // namespace

// fpubench's command line, parsed as main() parses it: before any application object exists.
class tst_BenchCommandLine : public QObject {
    Q_OBJECT

private slots:
    void parse_data() {
        QTest::addColumn<QString>("args");
        QTest::addColumn<int>("status"); // 0: the window opens
        QTest::addColumn<QString>("device");
        QTest::addColumn<QString>("memory");   // the model whose fiscal memory is renewed
        QTest::addColumn<QString>("mentions"); // in the error line
        Row("nothing", "", 0, "", "", "");
        Row("device", "--device Tessorim", 0, "Tessorim", "", "");
        Row("device with =", "--device=ZorvaneFPU", 0, "ZorvaneFPU", "", "");
        Row("the last device counts", "--device Tessorim --device ZorvaneFPU", 0, "ZorvaneFPU", "", "");
        Row("Qt's own options pass", "-platform offscreen -style=fusion -reverse --device Tessorim", 0,
            "Tessorim", "", "");
        // The reset of a model's fiscal memory is an action of its own: a window opens only to ask.
        Row("new fiscal memory", "--new-fiscal-memory Tessorim", 0, "", "Tessorim", "");
        Row("device in the wrong case", "--device tessorim", 2, "", "", "\"tessorim\"");
        Row("device the bench doesn't open", "--device=Nowhere", 2, "", "", "\"Nowhere\"");
        Row("empty device", "--device=", 2, "", "", "ZorvaneFPU or Tessorim");
        Row("device without a name", "--device", 2, "", "", "'--device'");
        Row("unknown option", "--fast", 2, "", "", "unknown option --fast");
        Row("unknown short option", "-x", 2, "", "", "-x");
        Row("a file", "receipt.oposcmd", 2, "", "", "receipt.oposcmd");
        Row("new memory of an unknown model", "--new-fiscal-memory zorvanefpu", 2, "", "", "\"zorvanefpu\"");
    }
    void parse() {
        QFETCH(QString, args);
        QFETCH(int, status);
        QFETCH(QString, mentions);
        const BenchStart start = Parse(args);
        QCOMPARE(start.openWindow, status == 0);
        QCOMPARE(start.exitCode, status);
        QTEST(start.device, "device");
        QTEST(start.newFiscalMemory, "memory");
        QVERIFY(start.out.isEmpty());
        if (mentions.isEmpty())
            QVERIFY2(start.err.isEmpty(), qPrintable(start.err));
        else // one line that names the fault and where to look next
            QVERIFY2(start.err.startsWith("fpubench: ") && start.err.contains(mentions) &&
                         start.err.endsWith("; see fpubench --help") && !start.err.contains(u'\n'),
                     qPrintable(start.err));
    }

    void helpAndVersion_data() {
        QTest::addColumn<QString>("args");
        QTest::addColumn<bool>("help");
        Row("--help", "--help", true);
        Row("-h", "-h", true);
        Row("help before a bad device", "--device x --help", true);
        Row("--version", "--version", false);
        Row("-v", "-v --device Tessorim", false);
    }
    void helpAndVersion() {
        QFETCH(QString, args);
        QFETCH(bool, help);
        const BenchStart start = Parse(args);
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
