#include "MacroRunner.h"
#include "SimulatedFiscalPrinter.h"

#include <QTemporaryDir>
#include <QtTest>

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
