#include "MacroRunner.h"
#include "SimulatedFiscalPrinter.h"

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

// The printer's rules reached through macros on fpubench-run, with 9999 lines where they need a fault:
// voids, the synchronous-only calls, the strict model, faults on demand. The rules themselves are
// pinned call by call in test_rules. Each row: the macro, what each call answers, what the last state
// dump shows, and how many output-complete events the log carries.
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
        row("always synchronous under AsyncMode",
            "P_AsyncMode$True\n" + Sale.section(u'\n', 0, 2) +
                "\nF_Delay$300\nF_EndFiscalReceipt$0\nF_PrintXReport",
            "0;0;0;0;0;0", "state=1 fiscal=1 queue=0", 2);
        row("the strict model cancels on a differing total",
            "F_BeginFiscalReceipt$-1\nF_PrintRecItem$A$10.00$0$1$0.00$\nF_PrintRecTotal$9.99$5.00$0\n"
            "F_PrintRecItem$B$1.00$0$1$0.00$\nF_EndFiscalReceipt$0",
            "0;0;114/214;114/207;0", "state=1 voided=1 fiscal=0 daytotal=0", 0, "Tessorim");
        row("a failure on demand",
            Sim("fail PrintRecItem 114 214") + "\nF_BeginFiscalReceipt$-1\nF_PrintRecItem$A$1.00$0$1$0.00$\n"
                                               "F_PrintRecItem$A$1.00$0$1$0.00$",
            "0;0;114/214;0", "total=100 fail=-");
        row("bad simulator commands change nothing", Sim("cover ajar") + u'\n' + Sim("clock -5"), "106;106",
            "cover=closed clock=+0s");
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
