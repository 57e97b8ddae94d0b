#include "MacroRunner.h"
#include "SimulatedFiscalPrinter.h"

#include <QTextStream>
#include <QtTest>

// The sample macro makes one complete receipt on the simulated printer.
class tst_RunnerSimulator : public QObject {
    Q_OBJECT

private slots:
    void sampleReceiptRunsClean() {
        SimulatedFiscalPrinter device;
        QString out;
        QString err;
        QTextStream o(&out);
        QTextStream e(&err);
        const int status = RunnerMain({"fpubench-run", "--open", "--stop-on-error",
                                       QStringLiteral(FPU_EXAMPLES_DIR "/receipt.oposcmd")},
                                      device, o, e);
        QVERIFY2(status == 0, qPrintable(out + err));
        QVERIFY2(err.isEmpty(), qPrintable(err));
        QVERIFY(out.contains("EndFiscalReceipt(, 0)     -> OposSuccess(0)"));
        QVERIFY(!out.contains("OposE"));
        // The receipt is closed: the printer is back in its monitor state.
        QCOMPARE(device.PrinterState(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_RunnerSimulator)
#include "tst_runner_simulator.moc"
