#include "AutoBench.h"

#include <QCoreApplication>

#include <memory>

// The four fixed tickets over a scripted control: every call and argument that reaches the
// control, against tables copied by hand from the tickets' descriptions.
class FixedScriptsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<AutoBench> bench;

    static QString L(const char* text) { return QString::fromUtf8(text); }

    // The sale side that the fiscal ticket and the credit note share, from the first item to the
    // first subtotal (the refund block of the fiscal ticket excluded).
    static QStringList SaleItems(int lastItem, int lastVat) {
        QStringList calls{
            L("PrintRecItem|TEST ITEM  1|1.00|0|1|0.00|"),
            L("PrintRecItem|TEST ITEM  2|2.00|0|1|0.00|"),
            L("PrintRecItem|TEST ITEM  3|3.00|0|1|0.00|"),
            L("PrintRecItem|TEST ITEM  4|4.00|0|1|0.00|"),
            L("PrintRecItem|TEST ITEM  5|5.00|0|1|0.00|"),
            L("PrintRecMessage|VOID ITEM"),
            L("PrintRecItemVoid|TEST ITEM  5|5.00|0|1|0.00|"),
            L("PrintRecMessage| "),
            L("PrintRecItem|TEST ITEM  6|8.00|0|1|0.00|"),
            L("PrintRecItemAdjustment|3|Perc Discount|25.00|1"),
            L("PrintRecItem|TEST ITEM  7|10.00|0|2|0.00|"),
            L("PrintRecItemAdjustment|3|Perc Discount|40.00|2"),
            L("PrintRecItemAdjustmentVoid|3||40.00|2"),
            L("PrintRecMessage| "),
            L("PrintRecItem|TEST ITEM  8|5.00|0|5|0.00|"),
            L("PrintRecItemAdjustment|1|Amount Discount|2.00|5"),
            L("PrintRecItem|TEST ITEM  9|7.00|0|5|0.00|"),
            L("PrintRecItemAdjustment|1|Amount Discount|3.50|5"),
            L("PrintRecItemAdjustmentVoid|1||3.50|5"),
            L("PrintRecMessage| "),
        };
        calls.append(QStringLiteral("PrintRecItem|TEST ITEM  %1|7.00|0|%2|0.00|").arg(lastItem).arg(lastVat));
        return calls;
    }

    static QStringList FullFiscalTicket() {
        QStringList calls{L("BeginFiscalReceipt|False"), L("SetAsyncMode|False")};
        QStringList sale = SaleItems(11, 3);
        const QString item11 = sale.takeLast();
        calls += sale;
        calls += QStringList{
            L("SetPreLine|PreLine: refund follows"),
            L("SetPostLine|PostLine: refund done\r\n "),
            L("PrintRecRefund|REFUND ITEM  10|4.00|5"),
            item11,
            L("PrintRecMessage| "),
            L("PrintRecMessage|PrintRecMessage (out of std)"),
            L("PrintRecMessage| "),
            L("PrintRecRefund|REFUND TEST ITEM  12|5.00|3"),
            L("PrintRecRefundVoid|REFUND VOID ITEM  12|5.00|3"),
            L("PrintRecMessage| "),
        };
        return calls + SubtotalsAndPayments("39.00", "34.00", true, "20.00") + StyleMessages();
    }

    static QStringList FullCreditNote() {
        QStringList calls{L("SetAdditionalHeader|Additional Text"), L("SetFiscalReceiptType|7"),
                          L("SetPreLine|8953986357"), L("BeginFiscalReceipt|False"), L("SetAsyncMode|False")};
        calls += SaleItems(10, 3);
        calls += QStringList{
            L("PrintRecMessage| "),
            L("PrintRecMessage|PrintRecMessage (out of std)"),
            L("PrintRecMessage| "),
        };
        return calls + SubtotalsAndPayments("43.00", "38.00", false, "30.00") + StyleMessages();
    }

    // From the first subtotal to the last payment; the fiscal ticket alone has a not-paid amount.
    static QStringList SubtotalsAndPayments(const char* subtotal, const char* total, bool notPaid,
                                            const char* lastPayment) {
        const QString sbt = QStringLiteral("PrintRecSubtotal|") + L(subtotal);
        QStringList calls{
            sbt,
            L("PrintRecMessage| "),
            L("PrintRecSubtotalAdjustment|3|DISC% SBT|10.00"),
            L("SetPreLine|SBT VOIDDISC% NOT POSSIBLE\r\nDONE WITH AmountSurcharge"),
            L("PrintRecSubtotalAdjustment|2|VOID DISC%|4.30"),
            L("PrintRecMessage| "),
            L("PrintRecSubtotalAdjustment|1|AMOUNT DISC|4.00"),
            L("SetPreLine|SBT VOIDDISCAMT NOT POSSIBLE\r\nDONE WITH AmountSurcharge"),
            L("PrintRecSubtotalAdjustment|2|VOID AMOUNT DISC|4.00"),
            L("PrintRecMessage| "),
            sbt,
            L("PrintRecSubtotalAdjustment|1|AMOUNT DISC SBT|5.00"),
            QStringLiteral("PrintRecTotal|%1|0.00|").arg(L(total)),
        };
        if (notPaid)
            calls.append(L("PrintRecNotPaid|Missed payment|10.00"));
        const char* payments[] = {"8.00", "0.50", "0.50", "0.60", "0.70",
                                  "0.80", "0.90", "0.40", "0.30", lastPayment};
        for (int form = 0; form < 10; ++form)
            calls.append(QStringLiteral("PrintRecTotal|%1|%2|%3").arg(L(total), L(payments[form])).arg(form));
        return calls;
    }

    static QStringList StyleMessages() {
        return {
            L("PrintRecMessage| "),
            L("PrintRecMessage|\x1b|2CDouble width"),
            L("PrintRecMessage|\x1b|3CDouble height"),
            L("PrintRecMessage|\x1b|5CHalf height"),
            L("PrintRecMessage|\x1b|6CFramed text"),
            L("PrintRecMessage| "),
        };
    }

    static QStringList NonFiscalTicket() {
        return {
            L("BeginNonFiscal"),
            L("PrintNormal|3|THE QUICK BROWN FOX JUMPS OVER\r\nTHE LAZY DOG'S BACK"),
            L("PrintNormal|3|\x1b|2CDouble width"),
            L("PrintNormal|3|\x1b|3CDouble height"),
            L("PrintNormal|3|\x1b|5CHalf height"),
            L("PrintNormal|3|\x1b|6CFramed"),
            L("PrintNormal|3|\x1b| 14R14007817504598"),
            L("PrintNormal|3|\x1b| 12R226443247343"),
            L("PrintNormal|3|\x1b| 7R2641223"),
            L("PrintNormal|3|\x1b| 9R301234567"),
            L("PrintNormal|3|\x1b| 11R41234567890"),
            L("PrintNormal|3|\x1b|1B"),
            L("EndNonFiscal"),
        };
    }

    // A load of nftest.bmp beside the program as bitmap 1. A second load sets only the bitmap's
    // number again: the rest of the block is what the device left in it.
    static QString BitmapLoad(const char* block = "1,0,0,0,0,0,0,0,0,0,0") {
        return QStringLiteral("DirectIO|1100|") + L(block) + u'|' + QCoreApplication::applicationDirPath() +
               QStringLiteral("/nftest.bmp");
    }

    QPushButton* ButtonOf(const QString& script) const {
        frmAutoTests& p = bench->panel;
        if (script == QStringLiteral("fiscal"))
            return p.cmdFullFiscalTicket;
        if (script == QStringLiteral("credit"))
            return p.cmdFullCreditNote;
        if (script == QStringLiteral("simple"))
            return p.cmdNonFiscalTicket;
        return p.cmdFullNonFiscalTicket;
    }

private slots:
    void init() { bench = std::make_unique<AutoBench>(); }
    void cleanup() { bench.reset(); }

    void fiscalCalls_data() {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("fail");          // a call scripted to fail, or empty
        QTest::addColumn<int>("defaultResult");     // what every other call answers
        QTest::addColumn<int>("lastMessageResult"); // what the last message answers
        QTest::addColumn<QStringList>("close");     // the calls after the last message

        const QStringList end{L("EndFiscalReceipt|False")};
        const QStringList voided{L("PrintRecVoid|PrintRecTotal FAILURE")};
        const QStringList back{L("SetFiscalReceiptType|4")}; // the credit note goes back to sales
        auto row = [](const char* tag, const char* script, const char* fail, int all, int last,
                      QStringList close) {
            QTest::newRow(tag) << L(script) << L(fail) << all << last << close;
        };
        // clang-format off
        row("fiscal: all succeed",                          "fiscal", "",                     0,   0,   end);
        row("fiscal: all refused but the last message",     "fiscal", "",                     106, 0,   end);
        row("fiscal: the last message refused",             "fiscal", "",                     0,   114, voided);
        row("fiscal: refused begin goes unnoticed",         "fiscal", "BeginFiscalReceipt",   0,   0,   end);
        row("credit: all succeed",                          "credit", "",                     0,   0,   end + back);
        row("credit: all refused but the last message",     "credit", "",                     106, 0,   end + back);
        row("credit: the last message refused",             "credit", "",                     0,   114, voided + back);
        row("credit: refused receipt type goes on",         "credit", "SetFiscalReceiptType", 0,   0,   end + back);
        // clang-format on
    }
    void fiscalCalls() {
        QFETCH(QString, script);
        QFETCH(QString, fail);
        QFETCH(int, defaultResult);
        QFETCH(int, lastMessageResult);
        QFETCH(QStringList, close);
        const bool credit = script == QStringLiteral("credit");
        const int messages = credit ? 16 : 17;
        bench->printer.defaultResult = defaultResult;
        if (!fail.isEmpty())
            bench->printer.Script(fail, 114, 207);
        int seen = 0;
        bench->printer.handlers[QStringLiteral("PrintRecMessage")] = [&](QVariantList&) {
            return ++seen == messages ? lastMessageResult : defaultResult;
        };
        QList<bool> enabledInRun;
        bench->printer.handlers[QStringLiteral("BeginFiscalReceipt")] = [&](QVariantList&) {
            frmAutoTests& p = bench->panel;
            for (QPushButton* b : {p.cmdFullFiscalTicket, p.cmdFullCreditNote, p.cmdAutoPrintTicket,
                                   p.cmdPrintTicketA, p.cmdNonFiscalTicket, p.cmdFullNonFiscalTicket})
                enabledInRun.append(b->isEnabled());
            return fail == QStringLiteral("BeginFiscalReceipt") ? 114 : defaultResult;
        };

        ButtonOf(script)->click();

        QCOMPARE(bench->CallTexts(), (credit ? FullCreditNote() : FullFiscalTicket()) + close);
        QCOMPARE(seen, messages);
        QCOMPARE(bench->MacroLines().size(), bench->printer.calls.size());
        QCOMPARE(enabledInRun, (QList<bool>{credit, !credit, true, true, true, true}));
        QVERIFY(ButtonOf(script)->isEnabled());
        QCOMPARE(bench->refreshes, 0);
    }

    // A second press prints the same ticket: nothing of the first run stays behind.
    void secondPressSameTicket_data() {
        QTest::addColumn<QString>("script");
        for (const char* s : {"fiscal", "credit", "simple", "full"})
            QTest::newRow(s) << L(s);
    }
    void secondPressSameTicket() {
        QFETCH(QString, script);
        ButtonOf(script)->click();
        const QStringList first = bench->CallTexts();
        ButtonOf(script)->click();
        QCOMPARE(bench->CallTexts(), first + first);
    }

    void nonFiscalCalls_data() {
        QTest::addColumn<QString>("script");
        QTest::addColumn<bool>("dayOpened");
        QTest::addColumn<QList<int>>("loads"); // what the bitmap loads answer, in turn
        QTest::addColumn<QStringList>("preparation");

        const QString z = L("PrintZReport");
        const QString again = BitmapLoad("1,7,7,0,0,0,0,0,0,0,0"); // the device below leaves 7, 7, 7
        // clang-format off
        QTest::newRow("simple")                              << L("simple") << true  << QList<int>{}         << QStringList{};
        QTest::newRow("full: day closed, load taken")        << L("full")   << false << QList<int>{0}        << QStringList{BitmapLoad()};
        QTest::newRow("full: day open, load taken")          << L("full")   << true  << QList<int>{0}        << QStringList{z, BitmapLoad()};
        QTest::newRow("full: day open, both loads refused")  << L("full")   << true  << QList<int>{114, 114} << QStringList{z, BitmapLoad(), z, again};
        QTest::newRow("full: day closed, first load refused") << L("full")  << false << QList<int>{106, 0}   << QStringList{BitmapLoad(), z, again};
        // clang-format on
    }
    void nonFiscalCalls() {
        QFETCH(QString, script);
        QFETCH(bool, dayOpened);
        QFETCH(QList<int>, loads);
        QFETCH(QStringList, preparation);
        bench->printer.Set(Prop::DayOpened, dayOpened);
        // The device scribbles over the block and the text; a second load starts from the script's values.
        bench->printer.handlers[QStringLiteral("DirectIO")] = [&](QVariantList& a) {
            a[1] = QVariant::fromValue(DirectIOData{7, 7, 7});
            a[2] = QStringLiteral("scribbled");
            return loads.isEmpty() ? 0 : loads.takeFirst();
        };
        bench->printer.Script(QStringLiteral("BeginNonFiscal"), 114, 207); // EndNonFiscal is still called
        QList<qsizetype> callsAtRefresh;
        QList<bool> enabledInRun;
        bench->ctx.refreshAfterCommand = [&] {
            callsAtRefresh.append(bench->printer.calls.size());
            frmAutoTests& p = bench->panel;
            enabledInRun.append(p.cmdNonFiscalTicket->isEnabled());
            enabledInRun.append(p.cmdFullNonFiscalTicket->isEnabled());
        };

        ButtonOf(script)->click();

        QCOMPARE(bench->CallTexts(), preparation + NonFiscalTicket());
        QCOMPARE(bench->printer.reads.count(Prop::DayOpened), script == QStringLiteral("full") ? 1 : 0);
        // One refresh after the preparation, and one after each call of the ticket.
        QList<qsizetype> expected;
        if (!preparation.isEmpty())
            expected.append(preparation.size());
        for (qsizetype n = 1; n <= NonFiscalTicket().size(); ++n)
            expected.append(preparation.size() + n);
        QCOMPARE(callsAtRefresh, expected);
        const bool full = script == QStringLiteral("full");
        for (qsizetype i = 0; i < enabledInRun.size(); i += 2)
            QVERIFY(enabledInRun[i] == full && enabledInRun[i + 1] == !full);
        QVERIFY(ButtonOf(script)->isEnabled());
        QCOMPARE(bench->MacroLines().size(), bench->printer.calls.size());
    }
};

QTEST_MAIN(FixedScriptsTest)
#include "tst_fixed_scripts.moc"
