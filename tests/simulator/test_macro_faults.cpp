#include "MacroRunner.h"
#include "SimulatedFiscalPrinter.h"

#include <QDateTime>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextStream>
#include <QtTest>

namespace {

// A DirectIO 9999 line: the simulator's fault and clock API, or its state dump with no command.
QString Sim(const QString& command = {}) {
    return QStringLiteral("F_DirectIO$9999$0$0$0$0$0$0$0$0$0$0$0$") + command;
}
const QString Sale = QStringLiteral("F_BeginFiscalReceipt$-1\nF_PrintRecItem$Articolo$2.00$0$1$0.00$\n"
                                    "F_PrintRecTotal$2.00$2.00$0\nF_EndFiscalReceipt$0");
const QString SaleResults = QStringLiteral("0;0;0;0");

// What each logged call answered, "0", "106" or "114/224", skipping the four calls of --open.
QString Results(const QString& log) {
    static const QRegularExpression tail(
        QStringLiteral("     -> \\w*\\((-?\\d+)\\)(?:  \\w*\\((-?\\d+)\\))?"));
    QStringList out;
    for (const QString& line : log.split(u'\n')) {
        const auto m = tail.match(line);
        if (!m.hasMatch())
            continue;
        out << (m.captured(1) == QLatin1String("114") ? QStringLiteral("114/") + m.captured(2)
                                                      : m.captured(1));
    }
    return out.mid(4).join(u';');
}

// The keys asked for, read off the last state dump in the log.
QString DumpKeys(const QString& log, const QString& keys) {
    const qsizetype at = log.lastIndexOf(QStringLiteral("DIRECTIO_FPTR_DEBUG"));
    const QString line = log.mid(at).section(u'\n', 0, 0);
    QStringList out;
    for (const QString& item : keys.split(u' ', Qt::SkipEmptyParts)) {
        const QString key = item.section(u'=', 0, 0);
        static const QRegularExpression value(QStringLiteral("[ ,(]%1=(\\S+)"));
        const auto m = QRegularExpression(value.pattern().arg(key)).match(line);
        out << key + u'=' + (m.hasMatch() ? m.captured(1).remove(u')') : QStringLiteral("<none>"));
    }
    return out.join(u' ');
}

} // namespace

// The scenarios as macros on fpubench-run, with 9999 lines where they need a fault. Each row:
// the macro, what each call answers, what the last state dump shows, and how many output-complete
// events the log carries.
class TestMacroFaults : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void scenarios_data() {
        QTest::addColumn<QString>("device");
        QTest::addColumn<QString>("macro");
        QTest::addColumn<QString>("results");
        QTest::addColumn<QString>("dump");
        QTest::addColumn<int>("completed");
        const auto row = [](const char* name, const QString& macro, const QString& results, const char* dump,
                            int completed = 0, const char* device = "ZorvaneFPU") {
            QTest::newRow(name) << QString::fromLatin1(device) << macro + u'\n' + Sim() << results + ";0"
                                << QString::fromLatin1(dump) << completed;
        };
        row("voids with nothing to void",
            "F_BeginFiscalReceipt$-1\nF_PrintRecItem$Articolo$10.00$0$1$0.00$\n"
            "F_PrintRecItemAdjustmentVoid$1$Sconto$3.00$1\nF_PrintRecRefundVoid$Reso$3.00$1\n"
            "F_PrintRecItemVoid$Mai "
            "venduto$4.00$0$1$0.00$\nF_PrintRecTotal$10.00$10.00$0\nF_EndFiscalReceipt$0",
            "0;0;106;106;106;0;0", "fiscal=1 daytotal=1000 journal=1");
        row("a discount on another rate, after a void",
            "F_BeginFiscalReceipt$-1\nF_PrintRecItem$A$10.00$0$1$0.00$\nF_PrintRecItem$B$5.00$0$2$0.00$\n"
            "F_PrintRecItemVoid$B$5.00$0$2$0.00$\nF_PrintRecItemAdjustment$1$Sconto$1.00$2\n"
            "F_PrintRecItemAdjustment$1$Sconto$1.00$1",
            "0;0;0;0;114/217;0", "total=900");
        row("always synchronous under AsyncMode",
            "P_AsyncMode$True\n" + Sale.section(u'\n', 0, 2) +
                "\nF_Delay$300\nF_EndFiscalReceipt$0\nF_PrintXReport",
            "0;0;0;0;0;0", "state=1 fiscal=1 queue=0", 2);
        row("an asynchronous Z report with the cover open",
            "P_AsyncMode$True\n" + Sim("cover open") + "\nF_PrintZReport\n" + Sim("cover closed") +
                "\nF_PrintZReport",
            "0;0;114/201;0;0", "z=1 remaining=1799 cover=closed");
        row("a power cut after EndFiscalReceipt",
            "P_AsyncMode$True\n" + Sale.section(u'\n', 0, 2) + "\nF_Delay$300\nF_EndFiscalReceipt$0\n" +
                Sim("power off") + u'\n' + Sim("power on"),
            "0;0;0;0;0;0;0", "fiscal=1 daytotal=200 voided=0 restarts=1", 2);
        row("a Z report in training", "F_BeginTraining\nF_PrintZReport\nF_EndTraining", "0;0;0",
            "z=0 remaining=1800 journal=0");
        row("the strict model cancels on a differing total",
            "F_BeginFiscalReceipt$-1\nF_PrintRecItem$A$10.00$0$1$0.00$\nF_PrintRecTotal$9.99$5.00$0\n"
            "F_PrintRecItem$B$1.00$0$1$0.00$\nF_EndFiscalReceipt$0",
            "0;0;114/214;114/207;0", "state=1 voided=1 fiscal=0 daytotal=0", 0, "Tessorim");
        row("three days without a Z report",
            Sale + u'\n' + Sim("clock +3d") +
                "\nF_BeginFiscalReceipt$-1\nF_PrintZReport\nF_BeginFiscalReceipt$-1",
            SaleResults + ";0;114/224;0;0", "state=2 z=1");
        row("a date before the last Z report",
            "F_PrintZReport\nF_SetDate$" +
                QDateTime::currentDateTime().addDays(-1).toString(QStringLiteral("ddMMyyyyHHmm")),
            "0;114/219", "z=1");
        row("a cash-in receipt",
            "P_FiscalReceiptType$1\nF_BeginFiscalReceipt$-1\nF_PrintRecItem$Fondo cassa$100.00$0$1$0.00$",
            "106;0;0", "total=10000 state=2");
        row("change only from cash",
            "F_BeginFiscalReceipt$-1\nF_PrintRecItem$A$10.00$0$1$0.00$\nF_PrintRecTotal$10.00$20.00$5\n"
            "F_PrintRecTotal$10.00$4.00$0\nF_PrintRecNotPaid$Non pagato$7.00\nF_PrintRecTotal$10.00$20.00$\n"
            "F_EndFiscalReceipt$0",
            "0;0;114/214;0;114/214;0;0", "fiscal=1 daytotal=1000");
        row("a price that isn't quantity times unit price",
            "F_BeginFiscalReceipt$-1\nF_PrintRecItem$A$2.50$2000$1$1.20$pz\nF_PrintRecItem$A$2.40$2000$1$1."
            "20$pz",
            "0;114/218;0", "total=240");
        row("a power cut in the middle of a receipt",
            "F_BeginFiscalReceipt$-1\nF_PrintRecItem$A$5.00$0$1$0.00$\n" + Sim("power off") +
                "\nF_PrintRecItem$B$1.00$0$1$0.00$\n" + Sim("power on"),
            "0;0;0;108;0", "state=1 voided=1 fiscal=0 restarts=1 journal=1");
        row("a duplicate receipt in the journal",
            "P_DuplicateReceipt$True\n" + Sale + "\nF_PrintDuplicateReceipt", "0;" + SaleResults + ";0",
            "journal=2 nonfiscal=1");
        row("a failure on demand",
            Sim("fail PrintRecItem 114 214") + "\nF_BeginFiscalReceipt$-1\nF_PrintRecItem$A$1.00$0$1$0.00$\n"
                                               "F_PrintRecItem$A$1.00$0$1$0.00$",
            "0;0;114/214;0", "total=100 fail=-");
        row("offline and back",
            Sim("offline") + "\nF_BeginFiscalReceipt$-1\n" + Sim("online") + "\nF_BeginFiscalReceipt$-1",
            "0;108;0;0", "state=2 offline=0");
        row("bad simulator commands change nothing",
            Sim("cover") + u'\n' + Sim("cover open now") + u'\n' + Sim("fail NoSuchMethod 111") + u'\n' +
                Sim("fail PrintRecItem") + u'\n' + Sim("clock -5") + u'\n' + Sim("print time 99999") + u'\n' +
                Sim("frobnicate"),
            "106;106;106;106;106;106;106", "cover=closed fail=- clock=+0s printtime=20");
    }
    void scenarios() {
        QFETCH(QString, device);
        QFETCH(QString, macro);
        QFETCH(QString, results);
        QFETCH(QString, dump);
        QFETCH(int, completed);
        const QString file = m_dir.filePath(QString::fromLatin1(QTest::currentDataTag()).replace(u' ', u'_') +
                                            QStringLiteral(".oposcmd"));
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(macro.toUtf8() + '\n');
        f.close();

        SimulatedFiscalPrinter printer;
        QString out, err;
        QTextStream o(&out), e(&err);
        RunnerMain({QStringLiteral("fpubench-run"), QStringLiteral("--open"), QStringLiteral("--device"),
                    device, file},
                   printer, o, e);
        QVERIFY2(Results(out) == results, qPrintable(Results(out) + u'\n' + out));
        QCOMPARE(DumpKeys(out, dump), dump);
        QCOMPARE(out.count(QStringLiteral("OutputCompleteEvent(")), completed);
        QVERIFY2(!out.contains(QStringLiteral("ErrorEvent(")), qPrintable(out));
    }
};

QTEST_GUILESS_MAIN(TestMacroFaults)
#include "test_macro_faults.moc"
