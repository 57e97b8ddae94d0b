#include "MacroRunner.h"
#include "PaperListing.h"
#include "SimulatedFiscalPrinter.h"

#include <QRegularExpression>
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
};

QTEST_GUILESS_MAIN(tst_RunnerSimulator)
#include "tst_runner_simulator.moc"
