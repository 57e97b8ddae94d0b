#include "FiscalMemoryFile.h"
#include "MacroRunner.h"
#include "PaperListing.h"
#include "SimulatedFiscalPrinter.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {

struct Run {
    int status = 0;
    QString out, err;
};

// One run of the program: a new printer, as a new process has, with --memory served as the
// program serves it.
Run RunProgram(const QStringList& arguments) {
    SimulatedFiscalPrinter device;
    Run run;
    QTextStream o(&run.out), e(&run.err);
    run.status = RunnerMain(QStringList{"fpubench-run"} + arguments, device, o, e,
                            [&device](const QString& file, const QString& name, QString& message) {
                                return sim::UseFiscalMemoryFile(device, file, name, message);
                            });
    return run;
}

// "fiscal=N journal=N" off the state dump in the log.
QString Counts(const QString& log) {
    static const QRegularExpression counts(QStringLiteral(" (fiscal=\\d+) .* (journal=\\d+)"));
    const auto m = counts.match(log.mid(log.lastIndexOf(QStringLiteral("DIRECTIO_FPTR_DEBUG"))));
    return m.hasMatch() ? m.captured(1) + u' ' + m.captured(2) : QStringLiteral("<no dump>");
}

} // namespace

// The sample macro makes one complete receipt on the simulated printer.
class tst_RunnerSimulator : public QObject {
    Q_OBJECT

private slots:
    void sampleReceiptRunsClean() {
        SimulatedFiscalPrinter device;
        QString out, err;
        QTextStream o(&out), e(&err);
        const int status = RunnerMain({"fpubench-run", "--open", "--stop-on-error",
                                       QStringLiteral(FPU_EXAMPLES_DIR "/receipt.oposcmd")},
                                      device, o, e);
        QVERIFY2(status == 0 && err.isEmpty(), qPrintable(out + err));
        QVERIFY(out.contains("EndFiscalReceipt(, 0)     -> OposSuccess(0)"));
        QVERIFY(!out.contains("OposE"));
        QCOMPARE(device.PrinterState(), 1); // the receipt is closed: back in the monitor state
    }

    // --paper lists both rolls after the run; the expected listing was written by hand from the
    // printer's rules (46 columns, amounts on the right, a cut and the fiscal logo per document).
    void paperListing() {
        QTemporaryDir dir;
        const QString paper = dir.filePath(QStringLiteral("out.paper"));
        SimulatedFiscalPrinter device;
        QString out, err;
        QTextStream o(&out), e(&err);
        const int status = RunnerMain({"fpubench-run", "--open", "--paper", paper,
                                       QStringLiteral(FPU_RUNNER_DATA_DIR "/paper.oposcmd")},
                                      device, o, e);
        QVERIFY2(status == 0 && err.isEmpty(), qPrintable(out + err));
        QFile written(paper), expected(QStringLiteral(FPU_RUNNER_DATA_DIR "/paper.expected"));
        QVERIFY(written.open(QIODevice::ReadOnly) && expected.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(written.readAll()).split(u'\n'),
                 QString::fromUtf8(expected.readAll()).split(u'\n'));
    }

    // The listing's own escapes: what a printed line could confuse with a marker.
    void paperListingLine_data() {
        QTest::addColumn<QString>("printed");
        QTest::addColumn<QString>("listed");
        const QString esc(QChar(27));
        QTest::newRow("brackets") << "[x] {y}"
                                  << "\\[x] {y}";
        QTest::newRow("brace first") << "{y}"
                                     << "\\{y}";
        QTest::newRow("backslash doubled") << "a\\b"
                                           << "a\\\\b";
        QTest::newRow("control characters") << QString("a") + QChar(1) + QChar(0x7f) << "a\\x01\\x7f";
        QTest::newRow("underline two dots, right, upside down") << esc + "|2uC" + esc + "|rA" + esc + "|uRx"
                                                                << "{underline=2,right,upside-down} x";
        QTest::newRow("font B, italic, reverse") << esc + "|2fT" + esc + "|iC" + esc + "|rvCx"
                                                 << "{italic,reverse,font-b} x";
        QTest::newRow("a time that is not alone") << "at 23-11-2026 21:22"
                                                  << "at 23-11-2026 21:22";
        QTest::newRow("document time") << "23-11-2026 21:22"
                                       << "[DOCUMENT TIME]";
        QTest::newRow("CODE39 barcode, centred") << esc + "|cA" + esc + "|5R4AB-1"
                                                 << "{center} [BARCODE CODE39 AB-1]";
    }
    void paperListingLine() {
        QFETCH(QString, printed);
        QFETCH(QString, listed);
        const QList<sim::PrintedLine> lines = sim::InterpretPrintControl(printed);
        QCOMPARE(lines.size(), 1);
        QCOMPARE(sim::PaperListingLine(lines.first()), listed);
    }

    // Each run starts on a fresh fiscal memory, unless --memory names a file to go on with.
    void memoryAcrossRuns_data() {
        QTest::addColumn<QStringList>("options"); // "FILE" stands for the memory file
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::newRow("fresh each run") << QStringList{} << "fiscal=1 journal=1"
                                        << "fiscal=1 journal=1";
        QTest::newRow("--memory FILE") << QStringList{"--memory", "FILE"} << "fiscal=1 journal=1"
                                       << "fiscal=2 journal=2";
        QTest::newRow("--memory=FILE") << QStringList{"--memory=FILE"} << "fiscal=1 journal=1"
                                       << "fiscal=2 journal=2";
        QTest::newRow("on the other model")
            << QStringList{"--device", "Tessorim", "--memory", "FILE"} << "fiscal=1 journal=1"
            << "fiscal=2 journal=2";
    }
    void memoryAcrossRuns() {
        QFETCH(QStringList, options);
        QFETCH(QString, first);
        QFETCH(QString, second);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("ci/memory.sqlite"));
        options.replaceInStrings(QStringLiteral("FILE"), file);
        const QString macro = dir.filePath(QStringLiteral("sale.oposcmd"));
        QFile f(macro);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(
            "F_BeginFiscalReceipt$-1\nF_PrintRecItem$Articolo$2.00$0$1$0.00$\n"
            "F_PrintRecTotal$2.00$2.00$0\nF_EndFiscalReceipt$0\nF_DirectIO$9999$0$0$0$0$0$0$0$0$0$0$0$\n");
        f.close();
        for (const QString& expected : {first, second}) {
            const Run run = RunProgram(options + QStringList{"--open", macro});
            QVERIFY2(run.status == 0 && run.err.isEmpty(), qPrintable(run.out + run.err));
            QCOMPARE(Counts(run.out), expected);
        }
        QCOMPARE(QFileInfo::exists(file), !options.isEmpty());
        // A fresh run leaves nothing behind in the bench's own folder either.
        QVERIFY(!QFileInfo::exists(sim::FiscalMemoryFolder()));
    }

    // A file that can't be the memory: said on stderr with its name, exit 2, the file untouched.
    void memoryFileRefused() {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("notes.txt"));
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("not a fiscal memory\n");
        f.close();
        const Run run = RunProgram({"--memory", file, QStringLiteral(FPU_EXAMPLES_DIR "/receipt.oposcmd")});
        QCOMPARE(run.status, 2);
        QVERIFY(run.out.isEmpty());
        QVERIFY2(run.err.startsWith(QStringLiteral("fpubench-run: ")) && run.err.contains(file),
                 qPrintable(run.err));
        QFile again(file);
        QVERIFY(again.open(QIODevice::ReadOnly));
        QCOMPARE(again.readAll(), QByteArray("not a fiscal memory\n"));
    }

    // The program's standard output in blocks: lines written before a wait are out while it
    // waits, and a run ended by a signal ends at once, as that signal ends a program.
    void linesOutWhileWaitingAndOnTerm() {
        QTemporaryDir dir;
        QByteArray lines;
        for (int i = 0; i < 3000; ++i)
            lines += "F_PrintXReport\r\n";
        const auto write = [&](const QString& name, const QByteArray& bytes) {
            QFile f(dir.filePath(name));
            return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size() ? f.fileName() : QString();
        };
        const QString plain = write("plain.oposcmd", lines);
        const QString waits = write("waits.oposcmd", lines + "F_Delay$60000\r\nF_PrintZReport\r\n");
        QVERIFY(!plain.isEmpty() && !waits.isEmpty());

        QProcess reference;
        reference.start(FPUBENCH_RUN_PATH, {plain});
        QVERIFY(reference.waitForFinished(30000));
        const QByteArray expected = reference.readAllStandardOutput();
        QCOMPARE(expected.count('\n'), 3000);

        QProcess run;
        run.start(FPUBENCH_RUN_PATH, {waits});
        QByteArray got;
        QDeadlineTimer deadline(30000);
        while (got.size() < expected.size() && !deadline.hasExpired() && run.waitForReadyRead(1000))
            got += run.readAllStandardOutput();
        QCOMPARE(got, expected);
        QCOMPARE(run.state(), QProcess::Running); // in its wait
        run.terminate();
        QVERIFY(run.waitForFinished(10000));
        QCOMPARE(run.exitStatus(), QProcess::CrashExit);
        QCOMPARE(got + run.readAllStandardOutput(), expected);
    }
};

QTEST_GUILESS_MAIN(tst_RunnerSimulator)
#include "tst_runner_simulator.moc"
