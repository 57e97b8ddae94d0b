#include "ShellBench.h"
#include "frmNonFiscal.h"
#include <QComboBox>

class NonFiscalTest : public QObject {
    Q_OBJECT
private slots:
    void buttons_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("station");   // index in the station list
        QTest::addColumn<QString>("typed"); // empty: the text as loaded
        QTest::addColumn<QVariantList>("args");
        QTest::addColumn<QString>("macro");
        QTest::addColumn<QString>("logged"); // before the result tail
        const auto row = [](const char* tag, const QString& button, int station, const QString& typed,
                            const QVariantList& args, const QString& macro, const QString& logged) {
            QTest::newRow(tag) << button << station << typed << args << macro << logged;
        };
        for (const QString name : {"BeginNonFiscal", "EndNonFiscal", "BeginTraining", "EndTraining"})
            row(qPrintable(name), name == "BeginNonFiscal" ? "cmdNFRecpt" : "cmd" + name, 0, {}, {},
                "F_" + name, name + "()");
        row("receipt", "cmdPrintNormal", 0, {}, {1, "Test Print"}, "F_PrintNormal$1$Test Print",
            "PrintNormal(1, Test Print)");
        row("journal and receipt", "cmdPrintNormal", 2, {}, {3, "Test Print"}, "F_PrintNormal$3$Test Print",
            "PrintNormal(3, Test Print)");
        const QString esc(QChar(27));
        row("esc token", "cmdPrintNormal", 0, "[ESC]|2CDouble", {1, esc + "|2CDouble"},
            "F_PrintNormal$1$" + esc + "|2CDouble", "PrintNormal(1, [ESC]|2CDouble)");
        row("two lines", "cmdPrintNormal", 0, "one\ntwo", {1, "one\r\ntwo"}, "F_PrintNormal$1$one[CR][LF]two",
            "PrintNormal(1, one[CR][LF]two)");
    }
    void buttons() {
        QFETCH(QString, button);
        QFETCH(int, station);
        QFETCH(QString, typed);
        QFETCH(QVariantList, args);
        QFETCH(QString, macro);
        QFETCH(QString, logged);
        ShellBench bench;
        frmNonFiscal* p = bench.window->NonFiscal();
        p->cbPrintNorStation->setCurrentIndex(station);
        if (!typed.isEmpty())
            p->txtPrintNormal->setPlainText(typed);
        const auto log = bench.LogMark();
        p->findChild<QPushButton*>(button)->click();
        QCOMPARE(bench.printer->CallNames(), QStringList{logged.left(logged.indexOf('('))});
        QCOMPARE(bench.printer->calls[0].args, args);
        QCOMPARE(bench.MacroLines(), QStringList{macro});
        QCOMPARE(bench.LogSince(log),
                 QStringList({logged + "     -> OposSuccess(0)", "State = 2 (OPOS_S_IDLE)"}));
        QCOMPARE(bench.window->App()->lblOposState->text(), QStringLiteral("OPOS_S_IDLE   ( 2)"));
        // Refused, out of order or not: reported, and the button stays usable.
        bench.printer->Script(bench.printer->calls[0].name, 114, 207, "Wrong state");
        p->findChild<QPushButton*>(button)->click();
        QCOMPARE(bench.boxes.size(), 1);
        QCOMPARE(bench.boxes[0].text, "ERRORS: OposEExtended(114)  OposEfptrWrongState(207)  Wrong state");
        QVERIFY(p->findChild<QPushButton*>(button)->isEnabled());
    }
};

QTEST_MAIN(NonFiscalTest)
#include "tst_nonfiscal_panel.moc"
