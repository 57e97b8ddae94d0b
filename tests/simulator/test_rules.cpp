#include "Money.h"
#include "PrinterScript.h"

using namespace OposAll;
using namespace t;

// The printer's rules, one table per family. Each row: a few calls, what each answers, and the
// state, totals and rolls afterwards; every expectation comes from the printer's page.
class TestPrinterRules : public QObject {
    Q_OBJECT

    static void Columns() {
        QTest::addColumn<QString>("model");
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("results");
        QTest::addColumn<QString>("state");
    }
    static void Row(const char* name, const char* steps, const char* results, const char* state,
                    const char* model = "ZorvaneFPU") {
        QTest::newRow(name) << QString::fromLatin1(model) << QString::fromLatin1(steps)
                            << QString::fromLatin1(results) << QString::fromLatin1(state);
    }
    static void RunRow() {
        QFETCH(QString, model);
        QFETCH(QString, steps);
        QFETCH(QString, results);
        QFETCH(QString, state);
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        p.SetEventSink(&sink);
        Ready(p, model);
        p.SetPrintTimePerLineMs(1);
        QCOMPARE(printer_script::Run(p, steps), results);
        QCOMPARE(printer_script::Observe(p, sink, state), state);
    }

private slots:
    void voids_data() {
        Columns();
        Row("nothing to void",
            "begin; item 1 10.00; adjvoid 1 3.00 1; refundvoid 1 3.00; itemvoid 1 5.00; "
            "total 10.00 10.00; end",
            "0;0;106;106;106;0;0", "daytotal=1000 fiscal=1 journal=1 has:STORNO=0");
        Row("an item sold", "begin; item 1 10.00; item 2 5.00; itemvoid 1 10.00", "0;0;0;0",
            "total=500 has:STORNO=1");
        Row("a discount on rate 2 for an item of rate 1", "begin; item 1 10.00; adj 1 1.00 2", "0;0;114/217",
            "total=1000");
        Row("a department on the item's rate", "begin; item 10001 10.00; adj 1 1.00 1", "0;0;0", "total=900");
        Row("a VAT id that doesn't exist",
            "begin; item 1 10.00; adj 1 1.00 9; itemvoid 9 10.00; refund 9 1.00",
            "0;0;114/217;114/217;114/217", "total=1000");
        Row("an unlinked department", "begin; item 10003 1.00", "0;114/217", "total=0");
        Row("bad amounts change nothing",
            "begin; item 1 10.00; item 1 -1.00; itemvoid 1 0; adj 1 0 1; refund 1 MAX; subadj 1 -1.00; total "
            "10.00 -1.00; total 10.00 10.00; end",
            "0;0;114/218;114/218;114/214;114/214;114/214;114/214;0;0", "daytotal=1000 journal=1 fiscal=1");
    }
    void voids() { RunRow(); }

    // A call out of its state answers 114/207 and leaves the state as it was; so does a property
    // that can't change inside a receipt. The two models differ in what a void in the payment does.
    void statesAndModels_data() {
        Columns();
        Row("monitor", "total 0 0; end; normal 2 x; nfend", "114/207;114/207;114/207;114/207", "state=1");
        Row("in a receipt", "begin; item 1 10.00; begin; zreport; end; notpaid 3.00",
            "0;0;114/207;114/207;114/207;114/207", "state=2");
        Row("paying", "begin; item 1 10.00; total 10.00 1.00; item 1 1.00; sub; end",
            "0;0;0;114/207;114/207;114/207", "state=3");
        Row("paid", "begin; item 1 10.00; total 10.00 10.00; total 10.00 1.00; void; item 1 1.00",
            "0;0;0;114/207;114/207;114/207", "state=4");
        Row("non-fiscal", "nfbegin; begin; message x", "0;114/207;114/207", "state=9");
        Row("locked by the last Z the memory holds", "memory 1; zreport; begin; data 10; reset",
            "0;0;114/207;114/207;114/207", "state=8 remaining=0");
        Row("properties",
            "set CheckTotal=1; set TotalizerType=5; set TotalizerType=4; begin; set FiscalReceiptType=7; "
            "set FiscalReceiptStation=1",
            "106;106;0;0;114/207;114/207", "state=2");
        Row("8 rates; a void in the payment ends the receipt",
            "begin; item 9 1.00; item 8 10.00; total 9.99 5.00; void", "0;114/217;0;0;0",
            "state=1 voided=1 daytotal=0");
        Row("4 rates; a void in the payment leaves the end to the application",
            "set CheckTotal=0; begin; item 5 1.00; item 4 10.00; total 9.99 5.00; void; item 1 1.00; end",
            "0;0;114/217;0;0;0;114/207;0", "state=1 voided=1 daytotal=0", "Tessorim");
        Row("a reset voids the open receipt and ends training",
            "training on; begin; reset; begin; item 1 10.00; reset", "0;0;0;0;0;0",
            "training=0 state=1 voided=1 fiscal=0 daytotal=0");
    }
    void statesAndModels() { RunRow(); }

    // BeginFiscalReceipt, EndFiscalReceipt and the reports never queue: no OutputCompleteEvent,
    // 113 while output is queued, on paper and in the journal when they answer 0.
    void synchronousOnly_data() {
        Columns();
        Row("a receipt: only its lines complete",
            "set AsyncMode=1; begin; item 1 1.00; total 1.00 1.00; wait; end", "0;0;0;0;0;0",
            "completed=2 state=1 fiscal=1 queue=0");
        Row("the wrong state answers before the queue",
            "set AsyncMode=1; fault print time 5000; begin; item 1 1.00; end", "0;0;0;0;114/207",
            "completed=0 queue=1");
        Row("end while the payment prints",
            "set AsyncMode=1; begin; item 1 1.00; fault print time 5000; total 1.00 1.00; end",
            "0;0;0;0;0;113", "state=4 fiscal=0");
        Row("X report with output queued", "set AsyncMode=1; fault print time 5000; nfbegin; nfend; xreport",
            "0;0;0;0;113", "queue=2 completed=0");
        Row("Z report with output queued", "set AsyncMode=1; fault print time 5000; nfbegin; nfend; zreport",
            "0;0;0;0;113", "z=0 remaining=1800 journal=1");
        Row("Z report on paper at once", "set AsyncMode=1; zreport", "0;0",
            "completed=0 z=1 remaining=1799 queue=0 has:CHIUSURA=1 jhas:CHIUSURA=1");
        Row("Z report with the cover open", "set AsyncMode=1; fault cover open; zreport", "0;0;114/201",
            "completed=0 errors=0 z=0 remaining=1800 day=closed");
        Row("begin with the cover open", "set AsyncMode=1; fault cover open; begin", "0;0;114/201",
            "state=1 receipt=0");
        Row("a power cut after the end keeps the receipt",
            "set AsyncMode=1; begin; item 1 2.00; total 2.00 2.00; wait; end; fault power off; fault power "
            "on",
            "0;0;0;0;0;0;0;0", "fiscal=1 daytotal=200 voided=0 restarts=1 has:SCONTRINO=1");
        Row("a duplicate with the queue busy",
            "set DuplicateReceipt=1; begin; item 1 1.00; total 1.00 1.00; end; set AsyncMode=1; "
            "fault print time 5000; nfbegin; nfend; dup",
            "0;0;0;0;0;0;0;0;0;113", "nonfiscal=1 journal=2");
    }
    void synchronousOnly() { RunRow(); }

    // Training mode never touches the fiscal memory.
    void trainingAndFiscalMemory_data() {
        Columns();
        Row("a Z report in training", "training on; zreport", "0;0",
            "z=0 remaining=1800 journal=0 day=closed has:NON=1");
        Row("a Z report in training, a day open",
            "begin; item 1 5.00; total 5.00 5.00; end; training on; zreport", "0;0;0;0;0;0",
            "z=0 remaining=1800 day=open daytotal=500 fiscal=1 journal=1");
        Row("a training receipt counts nowhere", "training on; begin; item 1 5.00; total 5.00 5.00; end",
            "0;0;0;0;0", "fiscal=0 daytotal=0 grandtotal=0 journal=0 day=closed has:FISCALE=1");
        Row("settings refused in training", "training on; setdate +1h; dio 1600 RESET", "0;114/207;114/207",
            "day=closed");
        Row("training twice", "training on; training on", "0;106", "training=1");
        Row("ending training outside it", "training off", "106", "training=0");
        Row("a reset leaves training", "training on; reset; zreport", "0;0;0", "training=0 z=1");
    }
    void trainingAndFiscalMemory() { RunRow(); }

    // The day ends within 24 hours of its first receipt; the clock never goes back behind a fiscal document.
    void dayEndAndClock_data() {
        Columns();
        const char* sale = "begin; item 1 1.00; total 1.00 1.00; end; ";
        const auto row = [sale](const char* name, const char* steps, const char* results, const char* state) {
            QTest::newRow(name) << "ZorvaneFPU" << QString::fromLatin1(sale) + QString::fromLatin1(steps)
                                << QStringLiteral("0;0;0;0;") + QString::fromLatin1(results)
                                << QString::fromLatin1(state);
        };
        row("23 hours later", "fault clock +23h; begin", "0;0", "state=2");
        row("three days later", "fault clock +3d; begin", "0;114/224", "state=1 day=open fiscal=1");
        row("the day end answers before the cover", "fault clock +3d; fault cover open; begin", "0;0;114/224",
            "state=1");
        row("24 hours later, a credit note", "fault clock +24h; dio 1400 123456", "0;114/224", "state=1");
        row("after the Z report", "fault clock +3d; begin; zreport; begin", "0;114/224;0;0", "state=2 z=1");
        row("a date before the Z report", "zreport; setdate -1d", "0;114/219", "z=1");
        row("a date after the Z report", "zreport; setdate +1d", "0;0", "z=1");
        row("a date while the day is open", "setdate +1d", "114/207", "day=open");
        row("settings while the day is open", "vat 1 21; vattable; header 1 SHOP; trailer 1 SHOP",
            "114/207;114/207;114/207;0", "day=open");
        row("settings after the Z report", "zreport; header 1 SHOP; vat 1 21; vattable", "0;0;0;0",
            "day=closed z=1 remaining=1799 daytotal=0 grandtotal=100");
        row("a clock going back", "fault clock -1h", "106", "clock=+0s");
        row("a clock going forward", "fault clock +2m", "0", "clock=+120s");
    }
    void dayEndAndClock() { RunRow(); }

    void receiptTypesAndTenders_data() {
        Columns();
        Row("cash-in", "set FiscalReceiptType=1", "106", "state=1");
        Row("cash-out", "set FiscalReceiptType=2", "106", "state=1");
        Row("generic", "set FiscalReceiptType=3", "106", "state=1");
        Row("service", "set FiscalReceiptType=5", "106", "state=1");
        Row("simple invoice", "set FiscalReceiptType=6", "106", "state=1");
        Row("a refund receipt counts as a refund",
            "set FiscalReceiptType=7; begin; item 1 5.00; total 5.00 5.00; end", "0;0;0;0;0",
            "refund=500 daytotal=0 creditnotes=1 fiscal=0 tender1=0");
        Row("sales", "set FiscalReceiptType=4; begin; item 1 5.00; total 5.00 5.00; end", "0;0;0;0;0",
            "daytotal=500 fiscal=1 tender1=500");
        Row("only cash gives change", "begin; item 1 10.00; total 10.00 20.00 5", "0;0;114/214",
            "state=2 total=1000");
        Row("cash gives change", "begin; item 1 10.00; total 10.00 4.00 1; total 10.00 20.00; end",
            "0;0;0;0;0", "tender1=600 tender2=400 has:RESTO=1");
        Row("a predefined line names its tender", "begin; item 1 10.00; total 10.00 10.00 0; end", "0;0;0;0",
            "tender1=1000 has:CONTANTI=1");
        Row("a free description pays cash", "begin; item 1 10.00; total 10.00 12.00 Mance; end", "0;0;0;0",
            "tender1=1000 has:Mance=1");
        Row("not paid", "begin; item 1 10.00; total 10.00 4.00; notpaid 6.00; end", "0;0;0;0;0",
            "notpaid=600 tender1=400 daytotal=1000");
        Row("a total with no payment opens the tender phase",
            "begin; item 1 10.00; total 10.00 0; notpaid 4.00; total 10.00 6.00; end", "0;0;0;0;0;0",
            "notpaid=400 tender1=600 daytotal=1000");
        Row("an empty receipt has nothing to pay", "begin; total 0 0", "0;114/214", "state=2");
    }
    void receiptTypesAndTenders() { RunRow(); }

    // With both a quantity and a unit price, the price must be their product to the cent.
    void priceAgainstQuantity_data() {
        Columns();
        Row("2 x 1.20 = 2.40", "begin; item 1 2.40 2000 1.20", "0;0", "total=240");
        Row("2 x 1.20 is not 2.50", "begin; item 1 2.50 2000 1.20", "0;114/218", "total=0");
        Row("0.333 x 3.00 rounds to 1.00", "begin; item 1 1.00 333 3.00", "0;0", "total=100");
        Row("0.333 x 3.00 is not 0.99", "begin; item 1 0.99 333 3.00", "0;114/218", "total=0");
        Row("no quantity: one item, no check", "begin; item 1 1.50 0 1.20", "0;0", "total=150");
        Row("no unit price, no check", "begin; item 1 1.50 2000 0", "0;0", "total=150");
        Row("a void checks the same", "begin; item 1 2.40 2000 1.20; itemvoid 1 2.40 2000 1.30",
            "0;0;114/218", "total=240");
        Row("a negative unit price", "begin; item 1 1.00 1000 -1.00", "0;114/218", "total=0");
    }
    void priceAgainstQuantity() { RunRow(); }

    // A power cut with a receipt open: voided by the printer itself when power returns.
    void powerCut_data() {
        Columns();
        Row("in the middle of a receipt", "begin; item 1 5.00; fault power off; fault power on", "0;0;0;0",
            "state=1 voided=1 fiscal=0 daytotal=0 restarts=1 journal=1 has:INTERRUZIONE=1 has:ANNULLATO=1");
        Row("paid, not ended", "begin; item 1 5.00; total 5.00 5.00; fault power off; fault power on",
            "0;0;0;0;0", "state=1 voided=1 daytotal=0");
        Row("queued lines are lost, the receipt still voided",
            "set AsyncMode=1; fault print time 5000; begin; item 1 5.00; fault power off; fault power on",
            "0;0;0;0;0;0", "queue=0 voided=1 daytotal=0 has:INTERRUZIONE=1");
        Row("every call while off", "fault power off; begin; xreport", "0;108;108", "power=off");
        Row("in the monitor state", "fault power off; fault power on", "0;0",
            "restarts=1 voided=0 journal=0 state=1");
        Row("during a non-fiscal document", "nfbegin; fault power off; fault power on; begin", "0;0;0;0",
            "nonfiscal=1 state=2");
        Row("then a new receipt", "begin; item 1 5.00; fault power off; fault power on; begin; item 1 1.00",
            "0;0;0;0;0;0", "total=100 receipt=2");
    }
    void powerCut() { RunRow(); }

    void duplicateInJournal_data() {
        Columns();
        Row("a kept receipt", "set DuplicateReceipt=1; begin; item 1 1.00; total 1.00 1.00; end; dup",
            "0;0;0;0;0;0", "journal=2 nonfiscal=1 fiscal=1 jhas:COPIA=1 has:COPIA=1");
        Row("nothing kept", "dup", "106", "journal=0 nonfiscal=0");
        Row("only once", "set DuplicateReceipt=1; begin; item 1 1.00; total 1.00 1.00; end; dup; dup",
            "0;0;0;0;0;0;106", "journal=2");
        Row("a voided receipt isn't kept", "set DuplicateReceipt=1; begin; item 1 1.00; void; dup",
            "0;0;0;0;106", "voided=1 journal=1");
    }
    void duplicateInJournal() { RunRow(); }

    // The strict model cancels a receipt whose total differs from its own.
    void totalCheck_data() {
        Columns();
        Row("a differing total", "begin; item 1 10.00; total 9.99 5.00; item 1 1.00; end",
            "0;0;114/214;114/207;0", "state=1 voided=1 fiscal=0 daytotal=0 has:ANNULLATO=1", "Tessorim");
        Row("a differing subtotal", "begin; item 1 10.00; sub 9.00", "0;0;114/214", "state=4", "Tessorim");
        Row("a matching subtotal", "begin; item 1 10.00; sub 10.00; total 10.00 10.00; end", "0;0;0;0;0",
            "fiscal=1 daytotal=1000", "Tessorim");
        Row("a bad payment doesn't cancel", "begin; item 1 10.00; total 9.99 -1.00", "0;0;114/214", "state=2",
            "Tessorim");
        Row("without the check", "set CheckTotal=0; begin; item 1 10.00; total 9.99 10.00; end", "0;0;0;0;0",
            "fiscal=1 daytotal=1000", "Tessorim");
        Row("the printer's total rules", "begin; item 1 10.00; total 9.99 10.00; end", "0;0;0;0",
            "fiscal=1 daytotal=1000");
    }
    void totalCheck() { RunRow(); }

    // Sequences inside printed text: a feed is one element, a barcode is checked.
    void printedText_data() {
        Columns();
        Row("a message feeding two billion lines", "begin; message \\e|2000000000F", "0;0",
            "has:2000000000]=1");
        Row("a normal line feeding two billion lines", "nfbegin; normal 2 \\e|2000000000FZq", "0;0",
            "has:2000000000]=1 has:Zq=1");
        Row("a valid barcode in a message", "begin; message \\e|9R301234567", "0;0", "has:3:01234567]=1");
    }
    void printedText() { RunRow(); }

    // Wherever printed text goes, a barcode sequence in it is checked: a bad one answers 106 and
    // prints nothing, a good one passes. Each call comes after steps that make it legal; @ is its text.
    void barcodeInEveryPrintedText_data() {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("result");
        const QString r = QStringLiteral("begin; item 1 10.00");
        const QList<std::pair<const char*, QString>> calls{
            {"item", r + "; item 1 10.00 0 0 @"},
            {"item void", r + "; itemvoid 1 10.00 0 0 @"},
            {"refund", r + "; refund 1 1.00 @"},
            {"adjustment", r + "; adj 1 1.00 1 @"},
            {"subtotal adjustment", r + "; subadj 1 1.00 @"},
            {"payment", r + "; total 10.00 10.00 @"},
            {"not paid", r + "; total 10.00 0; notpaid 10.00 @"},
            {"void", r + "; void @"},
            {"message", r + "; message @"},
            {"normal", "nfbegin; normal 2 @"},
            {"header line", "header 1 @"},
            {"trailer line", "trailer 1 @"},
            {"PreLine", r + "; set PreLine=@"},
            {"PostLine", r + "; set PostLine=@"},
            {"AdditionalHeader", "set AdditionalHeader=@"},
            {"AdditionalTrailer", "set AdditionalTrailer=@"}};
        for (const auto& [name, steps] : calls) {
            const QString setup = steps.section(u';', 0, -2), call = steps.section(u';', -1);
            const auto row = [&](const char* what, const char* text, const char* result) {
                QTest::addRow("%s, %s", name, what) << setup << QString(call).replace(u'@', text) << result;
            };
            row("barcode of type 0", "\\e|5R01234", "106");
            row("barcode cut short", "A\\e|14R1400", "106");
            row("good barcode", "A\\e|9R301234567", "0");
        }
    }
    void barcodeInEveryPrintedText() {
        QFETCH(QString, setup);
        QFETCH(QString, call);
        QFETCH(QString, result);
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(printer_script::Run(p, setup), printer_script::AllZero(setup));
        const qsizetype receipt = p.ReceiptRoll().Count(), journal = p.JournalRoll().Count();
        QCOMPARE(printer_script::Run(p, call), result);
        if (result != QLatin1String("0")) {
            QCOMPARE(p.ReceiptRoll().Count(), receipt);
            QCOMPARE(p.JournalRoll().Count(), journal);
        }
    }

    // X and Z reports print the VAT of each rate: 122.00 at 22 % holds 22.00, 11.00 at 10 % holds 1.00.
    void vatPerRateOnReports_data() {
        QTest::addColumn<bool>("z");
        QTest::newRow("X report") << false;
        QTest::newRow("Z report") << true;
    }
    void vatPerRateOnReports() {
        QFETCH(bool, z);
        SimulatedFiscalPrinter p;
        Ready(p);
        const QString sale = QStringLiteral("begin; item 1 122.00; item 2 11.00; total 133.00 133.00; end");
        QCOMPARE(printer_script::Run(p, sale), printer_script::AllZero(sale));
        const qsizetype before = p.ReceiptRoll().Count();
        QCOMPARE(z ? p.PrintZReport() : p.PrintXReport(), 0);
        const QStringList report = p.ReceiptRoll().PlainText(before).split(u'\n');
        for (const auto& [label, money] : {std::pair{"ALIQUOTA A 22,00%", "122,00"},
                                           {"IVA A 22,00%", "22,00"},
                                           {"ALIQUOTA B 10,00%", "11,00"},
                                           {"IVA B 10,00%", "1,00"},
                                           {"IVA TOTALE", "23,00"}})
            QVERIFY2(report.contains(sim::MoneyLine(
                         QString::fromLatin1(label),
                         receipt_script::ParseAmount(QString::fromLatin1(money).replace(u',', u'.')))),
                     label);
        QVERIFY(report.filter(QStringLiteral("ALIQUOTA C")).isEmpty()); // rates with nothing stay out
    }
};

QTEST_GUILESS_MAIN(TestPrinterRules)
#include "test_rules.moc"
