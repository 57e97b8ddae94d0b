#include "AutoBench.h"
#include "ContinuousTicket.h"

#include <QTimer>

#include <memory>

// The continuous ticket test over a scripted control: the check of the printer's total, the
// repetitions that live in txtNumberOfTests, the asynchronous drain, and one run at a time.
class ContinuousTest : public QObject {
    Q_OBJECT

    std::unique_ptr<AutoBench> bench;
    struct Box {
        QString text;
        MsgButtons buttons;
        QString title;
    };
    QList<Box> boxes;
    // How the ticket ends after GetData.
    enum Close { Pay, Wrong, VoidPayment };

    static QString Item(int line) {
        return QStringLiteral("PrintRecItem|TEST ITEM  %1|1.00|0|1|0.00|").arg(line);
    }
    QPushButton* Button(bool async) const {
        return async ? bench->panel.cmdPrintTicketA : bench->panel.cmdAutoPrintTicket;
    }
    QTimer* Timer(bool async) const { return async ? bench->panel.tmrTestA : bench->panel.tmrTest; }
    int Tickets() const { return int(bench->CallsOf("BeginFiscalReceipt").size()); }
    // Tickets of one line that the printer adds up right, `repetitions` times.
    void OneLineTickets(int repetitions) {
        bench->panel.txtNumberOfLines->setText(QStringLiteral("1"));
        bench->panel.txtNumberOfTests->setText(QString::number(repetitions));
        bench->Answer("GetData", 2, QStringLiteral("100"));
    }

private slots:
    void init() {
        bench = std::make_unique<AutoBench>();
        bench->printer.Set(Prop::State, 2);
        boxes.clear();
        SetMessageBoxHandler([this](const QString& text, MsgButtons buttons, const QString& title) {
            boxes.append({text, buttons, title});
            return MsgResult::Ok;
        });
    }
    void cleanup() { bench.reset(); }

    void oneTicket_data() {
        QTest::addColumn<bool>("async");
        QTest::addColumn<QString>("lines");
        QTest::addColumn<QString>("repetitions");
        QTest::addColumn<QString>("reply");
        QTest::addColumn<int>("totalResult");
        QTest::addColumn<int>("items");
        QTest::addColumn<int>("close");
        QTest::addColumn<QString>("repetitionsAfter");
        QTest::addColumn<bool>("armed");
        for (bool async : {false, true}) {
            auto row = [&](const char* tag, const char* lines, const char* repetitions, const char* reply,
                           int totalResult, int items, Close close, const char* after, bool armed) {
                QTest::addRow("%s: %s", async ? "async" : "sync", tag)
                    << async << QString(lines) << QString(repetitions) << QString(reply) << totalResult
                    << items << int(close) << QString(after) << armed;
            };
            // clang-format off
            row("300 with 3 lines pays 3.00",      "3",    "1",     "300", 0,   3, Pay, "1", false);
            row("301 with 3 lines is wrong",       "3",    "1",     "301", 0,   3, Wrong, "1", false);
            row("empty reply",                     "3",    "1",     "",    0,   3, Wrong, "1", false);
            row("reply not a number",              "3",    "1",     "3OO", 0,   3, Wrong, "1", false);
            // 2^32 + 300: wrapped to 32 bits it would read as 300.
            row("reply beyond 32 bits",            "3",    "1",     "4294967596", 0, 3, Wrong, "1", false);
            row("refused payment voids",           "3",    "1",     "300", 114, 3, VoidPayment, "1", false);
            row("zero lines",                      "0",    "1",     "0",   0,   0, Pay, "1", false);
            row("lines not a number",              "many", "1",     "0",   0,   0, Pay, "1", false);
            row("2.5 lines are 2",                 "2.5",  "1",     "200", 0,   2, Pay, "1", false);
            row("3.5 lines are 4",                 "3.5",  "1",     "400", 0,   4, Pay, "1", false);
            row("0 repetitions print one",         "3",    "0",     "300", 0,   3, Pay, "0", false);
            row("negative repetitions print one",  "3",    "-2",    "300", 0,   3, Pay, "-2", false);
            row("text repetitions print one",      "3",    "often", "300", 0,   3, Pay, "often", false);
            row("2 repetitions leave one",         "3",    "2",     "300", 0,   3, Pay, " 1", true);
            // clang-format on
        }
    }
    void oneTicket() {
        QFETCH(bool, async);
        QFETCH(QString, lines);
        QFETCH(QString, repetitions);
        QFETCH(QString, reply);
        QFETCH(int, totalResult);
        QFETCH(int, items);
        QFETCH(int, close);
        QFETCH(QString, repetitionsAfter);
        QFETCH(bool, armed);
        frmAutoTests& panel = bench->panel;
        panel.txtNumberOfLines->setText(lines);
        panel.txtNumberOfTests->setText(repetitions);
        bench->Answer("GetData", 2, reply);
        bench->printer.Script(QStringLiteral("PrintRecTotal"), totalResult);

        Button(async)->click();

        QStringList expected{QStringLiteral("BeginFiscalReceipt|False")};
        for (int line = 1; line <= items; ++line)
            expected.append(Item(line));
        if (async)
            expected.append(QStringLiteral("SetAsyncMode|False"));
        expected.append(QStringLiteral("GetData|1|0|"));
        const QString total = QStringLiteral("PrintRecTotal|%1.00|%1.00|CENTO!!").arg(items);
        if (close == Wrong)
            expected.append(QStringLiteral("PrintRecVoid|FPU TOTAL WRONG"));
        else
            expected << total
                     << (close == Pay ? QStringLiteral("EndFiscalReceipt|False")
                                      : QStringLiteral("PrintRecVoid|PrintRecTotal FAILURE"));
        QCOMPARE(bench->CallTexts(), expected);
        QCOMPARE(bench->MacroLines().size(), expected.size()); // each call recorded as its own line
        // Only the asynchronous test waits for the device.
        QCOMPARE(bench->printer.reads.contains(Prop::State), async);

        // A wrong total tells what the printer said, in a box with no title of its own.
        QCOMPARE(boxes.size(), close == Wrong ? 1 : 0);
        if (close == Wrong) {
            QCOMPARE(boxes[0].text, QStringLiteral("TOTAL FAILURE ... FPU SAYS:") + reply);
            QVERIFY(boxes[0].buttons == MsgButtons::Ok && boxes[0].title == ProgramTitle);
        }
        QCOMPARE(panel.txtNumberOfTests->text(), repetitionsAfter);
        QCOMPARE(Timer(async)->isActive(), armed);
        QVERIFY(!Timer(!async)->isActive());
        if (armed)
            QCOMPARE(Timer(async)->interval(), 2000);
        QVERIFY(panel.cmdAutoPrintTicket->isEnabled() && panel.cmdPrintTicketA->isEnabled());
        QCOMPARE(bench->refreshes, 0); // these tests leave the status bar alone
    }

    void descriptionOfLineTen() {
        bench->panel.txtNumberOfLines->setText(QStringLiteral("10"));
        bench->panel.cmdAutoPrintTicket->click();
        const auto items = bench->CallsOf("PrintRecItem");
        QCOMPARE(items.size(), 10);
        QCOMPARE(items[9].args[0].toString(), QStringLiteral("TEST ITEM ") + QStringLiteral(" 10"));
    }

    void repetitionsCountDown_data() {
        QTest::addColumn<bool>("async");
        QTest::newRow("sync") << false;
        QTest::newRow("async") << true;
    }
    void repetitionsCountDown() {
        QFETCH(bool, async);
        frmAutoTests& panel = bench->panel;
        OneLineTickets(3);

        Button(async)->click();
        QCOMPARE(panel.txtNumberOfTests->text(), QStringLiteral(" 2"));
        QVERIFY(Timer(async)->isActive());
        QVERIFY(Button(false)->isEnabled() && Button(true)->isEnabled()); // the pause
        AutoBench::Fire(Timer(async));
        QCOMPARE(panel.txtNumberOfTests->text(), QStringLiteral(" 1"));
        QVERIFY(Timer(async)->isActive());
        AutoBench::Fire(Timer(async));
        QCOMPARE(panel.txtNumberOfTests->text(), QStringLiteral(" 1"));
        QVERIFY(!Timer(async)->isActive());
        QCOMPARE(Tickets(), 3);
        QCOMPARE(bench->CallsOf("EndFiscalReceipt").size(), 3);

        Button(async)->click(); // after the end: one more ticket
        QCOMPARE(Tickets(), 4);
        QVERIFY(!Timer(async)->isActive());
    }

    // The operator changes the count during the pause: the repetition reads the box anew.
    void repetitionReadsTheBoxesAgain() {
        frmAutoTests& panel = bench->panel;
        OneLineTickets(5);
        panel.cmdAutoPrintTicket->click();
        panel.txtNumberOfTests->setText(QStringLiteral("1"));
        panel.txtNumberOfLines->setText(QStringLiteral("2"));
        AutoBench::Fire(panel.tmrTest);
        QCOMPARE(bench->CallsOf("PrintRecItem").size(), 3);
        QVERIFY(!panel.tmrTest->isActive());
    }

    void drainReadsStateUntilIdle() {
        // The device stays busy for two rounds of passes after the lines.
        bench->printer.Set(Prop::State, 3);
        const int lines = 2;
        QList<int> readsAtPass; // State reads made before each pass
        AutoScripts::PrintContinuousTicket(bench->wrapper, lines, AutoScripts::Drain::UntilIdle, [&] {
            readsAtPass.append(int(bench->printer.reads.count(Prop::State)));
            if (readsAtPass.size() == lines + 2 * 5000)
                bench->printer.Set(Prop::State, 2);
        });
        QCOMPARE(bench->printer.reads.count(Prop::State), 3);
        QCOMPARE(readsAtPass.count(0), lines); // one pass after each line, before the drain
        QCOMPARE(readsAtPass.count(1), 5000);
        QCOMPARE(readsAtPass.count(2), 5000);

        const QStringList log = bench->Log();
        const qsizetype at = log.indexOf(QStringLiteral("AsyncMode := False     -> OposSuccess(0)"));
        QVERIFY2(at > 0, qPrintable(log.join(u'\n')));
        QCOMPARE(log.mid(at + 1, 4), (QStringList{QStringLiteral("State = 3 (OPOS_S_BUSY)"),
                                                  QStringLiteral("State = 3 (OPOS_S_BUSY)"),
                                                  QStringLiteral("State = 2 (OPOS_S_IDLE)"),
                                                  QStringLiteral("GetData(1, 0)     -> OposSuccess(0)")}));
    }

    // A press of either button in the pause is the repetition that was due: the timer stops.
    void pressInThePauseTakesOverTheRepetition() {
        frmAutoTests& panel = bench->panel;
        OneLineTickets(2);
        panel.cmdAutoPrintTicket->click();
        QVERIFY(panel.tmrTest->isActive());
        panel.cmdPrintTicketA->click();
        QVERIFY(!panel.tmrTest->isActive() && !panel.tmrTestA->isActive());
        QCOMPARE(Tickets(), 2);
        QCOMPARE(panel.txtNumberOfTests->text(), QStringLiteral(" 1"));
    }

    void noSecondRunDuringARun_data() {
        QTest::addColumn<QString>("from");
        QTest::addColumn<int>("tickets");
        // Presses are dropped; a tick waits and starts its run after the one in progress.
        QTest::newRow("presses in an event pass") << QStringLiteral("press") << 1;
        QTest::newRow("timers in an event pass") << QStringLiteral("timer") << 2;
        QTest::newRow("timers and presses in the message box") << QStringLiteral("box") << 2;
    }
    void noSecondRunDuringARun() {
        QFETCH(QString, from);
        QFETCH(int, tickets);
        frmAutoTests& panel = bench->panel;
        panel.txtNumberOfLines->setText(QStringLiteral("1"));
        panel.txtNumberOfTests->setText(QStringLiteral("1"));
        int getData = 0;
        // The box row gets a wrong total first, so that the run stops in the message box.
        bench->printer.handlers[QStringLiteral("GetData")] = [&](QVariantList& a) {
            a[2] = from == QStringLiteral("box") && getData++ == 0 ? QStringLiteral("999")
                                                                   : QStringLiteral("100");
            return 0;
        };
        QList<bool> enabledInRun; // both continuous buttons, then the four scripts
        auto intrude = [&] {
            for (QPushButton* b :
                 {panel.cmdAutoPrintTicket, panel.cmdPrintTicketA, panel.cmdFullFiscalTicket,
                  panel.cmdFullCreditNote, panel.cmdNonFiscalTicket, panel.cmdFullNonFiscalTicket}) {
                enabledInRun.append(b->isEnabled());
                b->click();
            }
        };
        bool once = true;
        bench->printer.handlers[QStringLiteral("PrintRecItem")] = [&](QVariantList&) {
            if (once && from == QStringLiteral("press"))
                intrude();
            if (once && from == QStringLiteral("timer")) {
                panel.tmrTest->start(0);
                panel.tmrTestA->start(0);
            }
            once = false;
            return 0;
        };
        SetMessageBoxHandler([&](const QString& text, MsgButtons, const QString&) {
            boxes.append({text, MsgButtons::Ok, QString()});
            panel.tmrTest->start(0);
            panel.tmrTestA->start(0);
            intrude();
            QTest::qWait(20); // the box's own event loop
            return MsgResult::Ok;
        });

        panel.cmdAutoPrintTicket->click();
        QTRY_COMPARE(Tickets(), tickets);
        QTest::qWait(50);
        QCOMPARE(Tickets(), tickets);

        // One ticket after the other, never one inside another.
        const QStringList paid =
            bench->Words("BeginFiscalReceipt PrintRecItem GetData PrintRecTotal EndFiscalReceipt");
        const QStringList voided = bench->Words("BeginFiscalReceipt PrintRecItem GetData PrintRecVoid");
        QStringList expected = from == QStringLiteral("box") ? voided : paid;
        for (int t = 1; t < tickets; ++t)
            expected += paid;
        QStringList calls = bench->Calls();
        calls.removeAll(QStringLiteral("SetAsyncMode")); // a deferred tick may be either test's
        QCOMPARE(calls, expected);
        if (from != QStringLiteral("timer"))
            QCOMPARE(enabledInRun, (QList<bool>{false, false, true, true, true, true}));
        QVERIFY(!panel.IsRunning() && !panel.tmrTest->isActive() && !panel.tmrTestA->isActive());
    }
};

QTEST_MAIN(ContinuousTest)
#include "tst_continuous.moc"
