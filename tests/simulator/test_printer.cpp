#include "PrinterScript.h"

#include <QSignalSpy>

using namespace OposAll;
using namespace t;

class TestSimulatedPrinter : public QObject {
    Q_OBJECT
private slots:
    void lifecycle() {
        SimulatedFiscalPrinter p;
        // Closed: reads are zero; a failed write is described by the result properties, reads leave them.
        QCOMPARE(p.NumVatRates(), 0);
        QCOMPARE(p.DeviceName(), QString());
        QCOMPARE(p.State(), OPOS_S_CLOSED);
        p.SetAsyncMode(true);
        QCOMPARE(p.ResultCode(), OPOS_E_CLOSED);
        (void)p.NumVatRates();
        QCOMPARE(p.ResultCode(), OPOS_E_CLOSED);
        QCOMPARE(Claim(p), OPOS_E_CLOSED);
        QCOMPARE(p.Close(), OPOS_E_CLOSED);
        QCOMPARE(p.ReleaseDevice(), OPOS_E_CLOSED);
        QCOMPARE(Open(p, QStringLiteral("NoSuchPrinter")), OPOS_E_NOEXIST);
        QCOMPARE(Open(p), 0);
        QCOMPARE(Open(p), OPOS_E_ILLEGAL);
        p.SetDeviceEnabled(true);
        QCOMPARE(p.ResultCode(), OPOS_E_NOTCLAIMED);
        QCOMPARE(p.ReleaseDevice(), OPOS_E_ILLEGAL);
        QCOMPARE(Claim(p), 0);
        QCOMPARE(Claim(p), 0);
        p.SetDeviceEnabled(true);
        QCOMPARE(p.PrinterState(), FPTR_PS_MONITOR);
        // Release disables first; Close releases first.
        QCOMPARE(p.ReleaseDevice(), 0);
        QVERIFY(!p.DeviceEnabled());
        QCOMPARE(Claim(p), 0);
        QCOMPARE(p.Close(), 0);
        QVERIFY(!p.Claimed());
        QCOMPARE(p.State(), OPOS_S_CLOSED);
    }

    void orderOfChecks_data() {
        QTest::addColumn<int>("level");      // 0 closed, 1 open, 2 claimed, 3 enabled, 4 in a receipt
        QTest::addColumn<QString>("faults"); // letters, see orderOfChecks()
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("extended");
        const auto row = [](const char* name, int level, const char* faults, int code, int extended) {
            QTest::newRow(name) << level << QString::fromLatin1(faults) << code << extended;
        };
        row("closed", 0, "", 101, 0);
        row("not claimed", 1, "", 103, 0);
        row("not enabled", 2, "", 105, 0);
        row("offline", 3, "O", 108, 0);
        row("wrong state before cover", 3, "C", 114, 207);
        row("busy before cover", 4, "AC", 113, 0);
        row("cover open", 4, "C", 114, 201);
        row("cover before receipt paper", 4, "CR", 114, 201);
        row("receipt paper empty", 4, "R", 114, 203);
        row("receipt before journal", 4, "RJ", 114, 203);
        row("journal empty", 4, "J", 114, 202);
        row("paper before arguments", 4, "RV", 114, 203);
        row("bad VAT", 4, "V", 114, 217);
        row("long description", 4, "D", 114, 215);
        row("reserved word", 4, "W", 114, 215);
        row("negative quantity", 4, "Q", 114, 213);
        row("negative unit price", 4, "U", 114, 218);
    }
    void orderOfChecks() {
        QFETCH(int, level);
        QFETCH(QString, faults);
        QFETCH(int, code);
        QFETCH(int, extended);
        SimulatedFiscalPrinter p;
        if (level >= 1)
            QCOMPARE(Open(p), 0);
        if (level >= 2)
            QCOMPARE(Claim(p), 0);
        if (level >= 3)
            p.SetDeviceEnabled(true);
        if (level >= 4)
            QCOMPARE(Begin(p), 0);
        if (faults.contains(u'A')) { // A: an item still queued
            p.SetPrintTimePerLineMs(10000);
            p.SetAsyncMode(true);
            QCOMPARE(Item(p, QStringLiteral("Queued"), M(100)), 0);
            p.SetAsyncMode(false);
        }
        if (faults.contains(u'O'))
            p.SetOffline(true);
        if (faults.contains(u'C'))
            p.SetCoverOpen(true);
        if (faults.contains(u'R'))
            p.SetReceiptPaper(PaperLevel::Empty);
        if (faults.contains(u'J'))
            p.SetJournalPaper(PaperLevel::Empty);
        QString desc = faults.contains(u'D')   ? QString(39, u'x')
                       : faults.contains(u'W') ? QStringLiteral("Totale merce")
                                               : QStringLiteral("Item");
        Amount price = M(100), unitPrice = faults.contains(u'U') ? -M(1) : 0;
        int32_t quantity = faults.contains(u'Q') ? -1 : 0, vat = faults.contains(u'V') ? 99 : 1;
        QString unit;
        QCOMPARE(p.PrintRecItem(desc, price, quantity, vat, unitPrice, unit), code);
        QCOMPARE(p.ResultCode(), code);
        QCOMPARE(p.ResultCodeExtended(), extended);
        QVERIFY(!p.ErrorString().isEmpty());
        if (extended == 207)
            QCOMPARE(p.ErrorString(), QStringLiteral("Printer not in fiscal receipt state"));
        if (extended == 201)
            QCOMPARE(p.ErrorString(), QStringLiteral("Cover open"));
    }

    // A credit note with voids and adjustments on the way, the PreLine above its first item only, change
    // given from cash: it adds to the refunds, not to the day.
    void creditNoteTotals() {
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        Ready(p);
        const auto run = [&](const QString& steps, const QString& state) {
            QCOMPARE(printer_script::Run(p, steps), printer_script::AllZero(steps));
            QCOMPARE(printer_script::Observe(p, sink, state), state);
        };
        run("set FiscalReceiptType=7; begin; set PreLine=8953986357; item 1 1.00 0 0 TEST ITEM 1; item 1 "
            "2.00; "
            "item 1 3.00; itemvoid 1 3.00; item 2 8.00; adj 3 25.00 2; sub",
            "total=900");                   // 25 % of 8.00
        run("subadj 3 10.00", "total=810"); // 10 %: 0.90 off
        run("subadj 2 0.90; subadj 1 1.00", "total=800");
        run("total 8.00 5.00 0; total 8.00 7.70", "state=4 has:4,70=1"); // cash: the change of 12.70 paid
        QCOMPARE(p.PreLine(), QString());
        const QStringList lines = p.ReceiptText().split(u'\n');
        QCOMPARE(lines.count(QStringLiteral("8953986357")), 1);
        QVERIFY(
            lines[lines.indexOf(QStringLiteral("8953986357")) + 1].startsWith(QStringLiteral("TEST ITEM 1")));
        run("end", "refund=800 daytotal=0");
    }

    void totalsAndData() {
        SimulatedFiscalPrinter p;
        Ready(p);
        Sale(p, M(2500));
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("B"), M(1000), 2), 0);
        QCOMPARE(Item(p, QStringLiteral("C"), M(200), 2), 0);
        QCOMPARE(ItemVoid(p, QStringLiteral("C"), M(200), 2), 0);
        QCOMPARE(Message(p, QStringLiteral("hello")), 0);
        QCOMPARE(Data(p, FPTR_GD_LINECOUNT, FPTR_LC_ITEM), QStringLiteral("2"));
        QCOMPARE(Data(p, FPTR_GD_LINECOUNT, FPTR_LC_ITEM_VOID), QStringLiteral("1"));
        QCOMPARE(Data(p, FPTR_GD_LINECOUNT, FPTR_LC_COMMENT), QStringLiteral("1"));
        QCOMPARE(Total(p, M(1000), M(1000), QStringLiteral("1")), 0);
        QCOMPARE(End(p), 0);
        QCOMPARE(Data(p, FPTR_GD_DAILY_TOTAL), QStringLiteral("3500"));
        QCOMPARE(Data(p, FPTR_GD_GRAND_TOTAL), QStringLiteral("3500"));
        QCOMPARE(Data(p, FPTR_GD_FISCAL_REC), QStringLiteral("2"));
        QCOMPARE(Data(p, FPTR_GD_TENDER, FPTR_PDL_CASH), QStringLiteral("2500"));
        QCOMPARE(Data(p, FPTR_GD_TENDER, FPTR_PDL_CHEQUE), QStringLiteral("1000"));
        QCOMPARE(Data(p, FPTR_GD_PRINTER_ID), QStringLiteral("99ZS000123"));
        QString data;
        const auto totalizer = [&](int32_t type, int32_t vat, int32_t item) {
            p.SetTotalizerType(type);
            p.GetTotalizer(vat, item, data);
            return data;
        };
        QCOMPARE(totalizer(FPTR_TT_DAY, 2, FPTR_GT_NET), QStringLiteral("1000"));
        QCOMPARE(totalizer(FPTR_TT_DAY, 2, FPTR_GT_ITEM_VOID), QStringLiteral("200"));
        QCOMPARE(totalizer(FPTR_TT_DAY, 1, FPTR_GT_VAT), QStringLiteral("451")); // 25.00 * 22 / 122
        QCOMPARE(totalizer(FPTR_TT_GRAND, 0, FPTR_GT_NET), QStringLiteral("3500"));
        int32_t item = FPTR_GD_TENDER, opt = 23, vat = 9, gt = FPTR_GT_NET;
        QCOMPARE(p.GetData(item, opt, data), OPOS_E_ILLEGAL);
        QCOMPARE(p.GetTotalizer(vat, gt, data), OPOS_E_ILLEGAL);
    }

    void vatTableAndDate() {
        SimulatedFiscalPrinter p;
        Ready(p);
        int32_t id = 5, opt = 0, rate = -1;
        for (const char* bad : {"abc", "4.5.1", "-3"}) {
            QString v = QString::fromLatin1(bad);
            QCOMPARE(p.SetVatValue(id, v), OPOS_E_ILLEGAL);
        }
        QString v = QStringLiteral("4,5");
        QCOMPARE(p.SetVatValue(id, v), 0);
        QCOMPARE(p.GetVatEntry(id, opt, rate), 0);
        QCOMPARE(rate, 0); // pending until the table is set
        QCOMPARE(p.SetVatTable(), 0);
        QCOMPARE(p.GetVatEntry(id, opt, rate), 0);
        QCOMPARE(rate, 450);
        id = 9;
        QCOMPARE(p.SetVatValue(id, v), OPOS_E_ILLEGAL);
        QString date = QStringLiteral("32132025"), got;
        QCOMPARE(p.SetDate(date), OPOS_E_EXTENDED);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_BAD_DATE);
        date = QStringLiteral("150620301045");
        QCOMPARE(p.SetDate(date), 0);
        QCOMPARE(p.GetDate(got), 0);
        QCOMPARE(got.left(8), QStringLiteral("15062030"));
    }

    void reports() {
        SimulatedFiscalPrinter p;
        Ready(p);
        for (int cents : {100, 200}) {
            Sale(p, M(cents));
            QCOMPARE(p.PrintZReport(), 0);
        }
        int32_t type = FPTR_RT_ORDINAL;
        QString from = QStringLiteral("1"), to = QStringLiteral("2");
        auto before = p.ReceiptRoll().Count();
        QCOMPARE(p.PrintReport(type, from, to), 0);
        const QString text = p.ReceiptRoll().PlainText(before);
        QVERIFY(text.contains(QStringLiteral("1,00")) && text.contains(QStringLiteral("2,00")));
        from = QStringLiteral("3");
        QCOMPARE(p.PrintReport(type, from, to), OPOS_E_ILLEGAL);
        type = FPTR_RT_DATE;
        from = QStringLiteral("01012000");
        QCOMPARE(p.PrintReport(type, from, to), OPOS_E_EXTENDED);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_BAD_DATE);
        from = QStringLiteral("010120000000");
        to = QStringLiteral("311299990000");
        before = p.ReceiptRoll().Count();
        QCOMPARE(p.PrintPeriodicTotalsReport(from, to), 0);
        QVERIFY(p.ReceiptRoll().PlainText(before).contains(QStringLiteral("3,00")));
    }

    // Each document ends with one cut of the receipt paper, below its last line; a fiscal one has the
    // fiscal logo with the serial number just above the cut. The journal is never cut.
    void documentFoot_data() {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<bool>("logo");
        QTest::newRow("sale") << "begin; item 1 1.00; total 1.00 1.00; end" << true;
        QTest::newRow("voided receipt") << "begin; item 1 1.00; void" << true;
        QTest::newRow("training receipt") << "training on; begin; item 1 1.00; total 1.00 1.00; end" << false;
        QTest::newRow("non-fiscal document") << "nfbegin; normal 2 hello; nfend" << false;
        QTest::newRow("X report") << "xreport" << false;
        QTest::newRow("Z report") << "zreport" << true;
    }
    void documentFoot() {
        QFETCH(QString, steps);
        QFETCH(bool, logo);
        SimulatedFiscalPrinter p;
        Ready(p);
        const qsizetype receiptStart = p.ReceiptRoll().Count(), journalStart = p.JournalRoll().Count();
        QCOMPARE(printer_script::Run(p, steps), printer_script::AllZero(steps));
        const QList<sim::PrintedLine> paper = p.ReceiptRoll().Lines().mid(receiptStart);
        QVERIFY(paper.size() > 2);
        for (qsizetype i = 0; i < paper.size(); ++i)
            QCOMPARE(paper[i].cutAfter, i == paper.size() - 1);
        const auto isLogo = [](const sim::PrintedLine& l) { return l.kind == sim::PrintedLine::Kind::Logo; };
        QCOMPARE(std::count_if(paper.begin(), paper.end(), isLogo), logo ? 1 : 0);
        if (logo) {
            QVERIFY(isLogo(paper.last()));
            QCOMPARE(paper.last().text, QStringLiteral("99ZS000123"));
        }
        const QList<sim::PrintedLine> journal = p.JournalRoll().Lines().mid(journalStart);
        QVERIFY(std::none_of(journal.begin(), journal.end(),
                             [](const sim::PrintedLine& l) { return l.cutAfter; }));
    }

    void fiscalStateSurvivesCloseAndOpen() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("A"), M(700)), 0);
        QCOMPARE(p.Close(), 0);
        Ready(p);
        QCOMPARE(p.PrinterState(), FPTR_PS_FISCAL_RECEIPT);
        QCOMPARE(Data(p, FPTR_GD_CURRENT_TOTAL), QStringLiteral("700"));
    }

    // What a window follows live: the printer state, commits to the fiscal memory, the rolls, the display.
    void observation() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QSignalSpy states(&p, &SimulatedFiscalPrinter::printerStateChanged);
        QSignalSpy commits(&p, &SimulatedFiscalPrinter::fiscalMemoryChanged);
        QSignalSpy receipt(&p.ReceiptRoll(), &sim::PaperRoll::appended);
        QSignalSpy journal(&p.JournalRoll(), &sim::PaperRoll::appended);
        QSignalSpy display(&p.Display(), &sim::CustomerDisplay::changed);
        QSignalSpy machine(&p.Hardware(), &sim::Machine::changed);
        Sale(p, M(100));
        QList<int> seen;
        for (const auto& args : states)
            seen << args.at(0).toInt();
        QCOMPARE(seen, (QList<int>{FPTR_PS_FISCAL_RECEIPT, FPTR_PS_FISCAL_RECEIPT_ENDING, FPTR_PS_MONITOR}));
        QCOMPARE(commits.count(), 1); // the receipt, once, when it ends
        QCOMPARE(receipt.count(), p.ReceiptRoll().Count());
        QCOMPARE(journal.count(), p.JournalRoll().Count());
        QVERIFY(display.count() >= 2); // the item, the total, the blank display after
        p.SetCoverOpen(true);
        QCOMPARE(machine.count(), 1);
        QCOMPARE(p.PrintXReport(), OPOS_E_EXTENDED);
        QCOMPARE(commits.count(), 1);
    }

    // A failed property write leaves the property; offline refuses enabling; power and paper show.
    void faults() {
        SimulatedFiscalPrinter p;
        Ready(p);
        p.FailNextCall(QStringLiteral("SetAsyncMode"), OPOS_E_EXTENDED, OPOS_EFPTR_TECHNICAL_ASSISTANCE);
        p.SetAsyncMode(true);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_TECHNICAL_ASSISTANCE);
        QVERIFY(!p.AsyncMode());
        p.SetOffline(true);
        p.SetDeviceEnabled(false);
        p.SetDeviceEnabled(true);
        QCOMPARE(p.ResultCode(), OPOS_E_OFFLINE);
        p.SetOffline(false);
        p.SetPowerOff(true);
        QCOMPARE(p.PowerState(), OPOS_PS_OFF_OFFLINE);
        p.SetPowerOff(false);
        QCOMPARE(p.PowerState(), OPOS_PS_ONLINE);
        p.SetReceiptPaper(PaperLevel::NearEnd);
        p.SetJournalPaper(PaperLevel::Empty);
        QVERIFY(p.RecNearEnd() && !p.RecEmpty() && p.JrnEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSimulatedPrinter)
#include "test_printer.moc"
