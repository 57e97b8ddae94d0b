#include "ShellBench.h"
#include "frmApp.h"
#include "frmNonFiscal.h"

#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest>

class NonFiscalTest : public QObject {
    Q_OBJECT
private slots:
    void defaults();
    void buttons_data();
    void buttons();
    void printNormalStation_data();
    void printNormalStation();
    void printNormalText_data();
    void printNormalText();
    void refusedCallShowsErrorsBox();
};

void NonFiscalTest::defaults() {
    ShellBench bench;
    frmNonFiscal* p = bench.window->NonFiscal();
    QCOMPARE(p->cbPrintNorStation->count(), 3);
    QCOMPARE(p->cbPrintNorStation->itemText(0), QStringLiteral("FPTR_S_RECEIPT"));
    QCOMPARE(p->cbPrintNorStation->itemText(1), QStringLiteral("FPTR_S_JOURNAL"));
    QCOMPARE(p->cbPrintNorStation->itemText(2), QStringLiteral("FPTR_S_JOURNAL_RECEIPT"));
    QCOMPARE(p->cbPrintNorStation->currentIndex(), 0);
    QCOMPARE(p->txtPrintNormal->toPlainText(), QStringLiteral("Test Print"));
    QCOMPARE(p->cmdNFRecpt->text(), QStringLiteral("BeginNonFiscal"));
    QCOMPARE(p->cmdPrintNormal->text(), QStringLiteral("PrintNormal"));
    QCOMPARE(p->cmdEndNonFiscal->text(), QStringLiteral("EndNonFiscal"));
    QCOMPARE(p->cmdBeginTraining->text(), QStringLiteral("Begin Training Mode"));
    QCOMPARE(p->cmdEndTraining->text(), QStringLiteral("End Training Mode"));
}

void NonFiscalTest::buttons_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("call");
    QTest::newRow("cmdNFRecpt") << "cmdNFRecpt"
                                << "BeginNonFiscal";
    QTest::newRow("cmdEndNonFiscal") << "cmdEndNonFiscal"
                                     << "EndNonFiscal";
    QTest::newRow("cmdBeginTraining") << "cmdBeginTraining"
                                      << "BeginTraining";
    QTest::newRow("cmdEndTraining") << "cmdEndTraining"
                                    << "EndTraining";
}

void NonFiscalTest::buttons() {
    QFETCH(QString, button);
    QFETCH(QString, call);
    ShellBench bench([](ScriptedPrinter& p) { p.Set(Prop::State, 2); });
    const auto log = bench.LogMark();
    bench.window->NonFiscal()->findChild<QPushButton*>(button)->click();
    QCOMPARE(bench.printer->CallNames(), QStringList{call});
    QCOMPARE(bench.MacroLines(), QStringList{"F_" + call});
    // The call's line, then the refresh's State line.
    QCOMPARE(bench.LogSince(log),
             QStringList({call + "()     -> OposSuccess(0)", "State = 2 (OPOS_S_IDLE)"}));
    QCOMPARE(bench.window->App()->lblOposState->text(), QStringLiteral("OPOS_S_IDLE   ( 2)"));
}

void NonFiscalTest::printNormalStation_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("station");
    QTest::newRow("receipt") << 0 << 1;
    QTest::newRow("journal") << 1 << 2;
    QTest::newRow("journal and receipt") << 2 << 3;
}

void NonFiscalTest::printNormalStation() {
    QFETCH(int, index);
    QFETCH(int, station);
    ShellBench bench([](ScriptedPrinter& p) { p.Set(Prop::State, 2); });
    frmNonFiscal* p = bench.window->NonFiscal();
    p->cbPrintNorStation->setCurrentIndex(index);
    const auto log = bench.LogMark();
    p->cmdPrintNormal->click();
    QCOMPARE(bench.printer->CallNames(), QStringList{"PrintNormal"});
    QCOMPARE(bench.printer->calls.at(0).args.at(0).toInt(), station);
    QCOMPARE(bench.printer->calls.at(0).args.at(1).toString(), QStringLiteral("Test Print"));
    QCOMPARE(bench.MacroLines(), QStringList{QStringLiteral("F_PrintNormal$%1$Test Print").arg(station)});
    QCOMPARE(bench.LogSince(log),
             QStringList({QStringLiteral("PrintNormal(%1, Test Print)     -> OposSuccess(0)").arg(station),
                          "State = 2 (OPOS_S_IDLE)"}));
}

void NonFiscalTest::printNormalText_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("sent");
    QTest::addColumn<QString>("logged");
    QTest::newRow("esc token") << "[ESC]|2CDouble"
                               << "\x1b|2CDouble"
                               << "PrintNormal(1, [ESC]|2CDouble)";
    QTest::newRow("two lines") << "one\ntwo"
                               << "one\r\ntwo"
                               << "PrintNormal(1, one[CR][LF]two)";
}

void NonFiscalTest::printNormalText() {
    QFETCH(QString, typed);
    QFETCH(QString, sent);
    QFETCH(QString, logged);
    ShellBench bench;
    frmNonFiscal* p = bench.window->NonFiscal();
    p->txtPrintNormal->setPlainText(typed);
    const auto log = bench.LogMark();
    p->cmdPrintNormal->click();
    QCOMPARE(bench.printer->calls.at(0).args.at(1).toString(), sent);
    QCOMPARE(bench.LogSince(log).at(0), logged + "     -> OposSuccess(0)");
}

void NonFiscalTest::refusedCallShowsErrorsBox() {
    ShellBench bench;
    bench.printer->Script("BeginTraining", 114, 207, "Wrong state");
    bench.window->NonFiscal()->cmdBeginTraining->click();
    QCOMPARE(bench.boxes.size(), 1);
    QCOMPARE(bench.boxes.at(0).text,
             QStringLiteral("ERRORS: OposEExtended(114)  OposEfptrWrongState(207)  Wrong state"));
    // Out of order or not, every button stays usable.
    for (QPushButton* b : bench.window->NonFiscal()->findChildren<QPushButton*>())
        QVERIFY(b->isEnabled());
}

QTEST_MAIN(NonFiscalTest)
#include "tst_nonfiscal_panel.moc"
