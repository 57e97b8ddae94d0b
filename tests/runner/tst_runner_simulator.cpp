#include "MacroRunner.h"
#include "SimulatedFiscalPrinter.h"

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
};

QTEST_GUILESS_MAIN(tst_RunnerSimulator)
#include "tst_runner_simulator.moc"
