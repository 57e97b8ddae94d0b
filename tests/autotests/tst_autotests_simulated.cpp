#include "FullNonFiscalTicket.h"
#include "OposAll.h"
#include "SimBench.h"
#include "frmAutoTests.h"

#include <QRegularExpression>

using namespace OposAll;

namespace {

// The automatic tests panel over a freshly opened, claimed and enabled simulated printer.
struct AutoSim : SimBench {
    frmAutoTests panel{ctx};
    qsizetype rollStart = 0;

    explicit AutoSim(const QString& model) : SimBench(model) { Mark(); }
    // What follows is what the next test step reads.
    void Mark() {
        logStart = LinesOf(log).size();
        rollStart = printer.ReceiptRoll().Count();
        messages.clear();
    }
    // The refused calls of the log, each up to the names of its codes (the error text dropped).
    QStringList Refusals() const {
        QStringList out;
        const QString arrow = QStringLiteral("     -> ");
        for (const QString& line : Log()) {
            const qsizetype tail = line.indexOf(arrow);
            if (tail < 0 || line.mid(tail) == arrow + QStringLiteral("OposSuccess(0)"))
                continue;
            const qsizetype first = line.indexOf(QStringLiteral(")  "), tail);
            const qsizetype second = line.indexOf(QStringLiteral(")  "), first + 3);
            out.append(second < 0 ? line : line.left(second + 1));
        }
        return out;
    }
    QStringList Paper() const { return printer.ReceiptRoll().PlainText(rollStart).split(u'\n'); }
    QList<sim::PrintedLine> PaperLines() const { return printer.ReceiptRoll().Lines().mid(rollStart); }
    QString Data(int32_t item) {
        QString data;
        int32_t none = 0;
        printer.GetData(item, none, data); // straight to the device: no log line
        return data;
    }
    bool OnPaper(const QString& pattern) const {
        const QRegularExpression re(pattern);
        const QStringList lines = Paper();
        return std::any_of(lines.begin(), lines.end(),
                           [&](const QString& l) { return re.match(l).hasMatch(); });
    }
};

QString L(const char* text) {
    return QString::fromUtf8(text);
}
const auto Refused = [](const char* call, const char* codes) { return L(call) + "     -> " + L(codes); };
const auto WrongState = [](const char* call) {
    return Refused(call, "OposEExtended(114)  OposEfptrWrongState(207)");
};
const auto BadVat = [](const char* call) {
    return Refused(call, "OposEExtended(114)  OposEfptrBadVat(217)");
};
const auto BadAmount = [](const char* call) {
    return Refused(call, "OposEExtended(114)  OposEfptrBadItemAmount(214)");
};
// An amount line of the receipt: its label's start, then the amount at the end of the line.
QString AmountLine(const char* label, const char* units, const char* cents) {
    return QStringLiteral("^%1\\S*(\\s+EURO)?\\s+%2[.,]%3$").arg(L(label), L(units), L(cents));
}
const QString Subtotal = QStringLiteral("^SUBTOTAL");
const QString Total = QStringLiteral("^TOTAL");

// Tessorim has four VAT rates: every step of the two fiscal scripts on rate 5 is refused.
QStringList Rate5Refused() {
    return {
        BadVat("PrintRecItem(\"TEST ITEM  8\", 5.00, 0, 5, 0.00, \"\")"),
        BadVat("PrintRecItemAdjustment(FPTR_AT_AMOUNT_DISCOUNT, \"Amount Discount\", 2.00, 5)"),
        BadVat("PrintRecItem(\"TEST ITEM  9\", 7.00, 0, 5, 0.00, \"\")"),
        BadVat("PrintRecItemAdjustment(FPTR_AT_AMOUNT_DISCOUNT, \"Amount Discount\", 3.50, 5)"),
        BadVat("PrintRecItemAdjustmentVoid(FPTR_AT_AMOUNT_DISCOUNT, \"\", 3.50, 5)"),
    };
}

// A subtotal that is not the printer's cancels the receipt on Tessorim: the subtotal itself is
// refused, and so is every later step but the messages, up to the last payment.
QStringList CancelledAtSubtotal(const char* subtotal, const char* total, bool notPaid, const char* last) {
    const QString sbt = QStringLiteral("PrintRecSubtotal(%1)").arg(L(subtotal));
    QStringList out{
        BadAmount(qPrintable(sbt)),
        WrongState("PrintRecSubtotalAdjustment(FPTR_AT_PERCENTAGE_DISCOUNT, \"DISC% SBT\", 10.00)"),
        WrongState("PrintRecSubtotalAdjustment(FPTR_AT_AMOUNT_SURCHARGE, \"VOID DISC%\", 4.30)"),
        WrongState("PrintRecSubtotalAdjustment(FPTR_AT_AMOUNT_DISCOUNT, \"AMOUNT DISC\", 4.00)"),
        WrongState("PrintRecSubtotalAdjustment(FPTR_AT_AMOUNT_SURCHARGE, \"VOID AMOUNT DISC\", 4.00)"),
        WrongState(qPrintable(sbt)),
        WrongState("PrintRecSubtotalAdjustment(FPTR_AT_AMOUNT_DISCOUNT, \"AMOUNT DISC SBT\", 5.00)"),
        WrongState(qPrintable(QStringLiteral("PrintRecTotal(%1, 0.00, \"\")").arg(L(total)))),
    };
    if (notPaid)
        out.append(WrongState("PrintRecNotPaid(\"Missed payment\", 10.00)"));
    const char* amounts[] = {"8.00", "0.50", "0.50", "0.60", "0.70", "0.80", "0.90", "0.40", "0.30", last};
    for (int form = 0; form < 10; ++form)
        out.append(WrongState(qPrintable(
            QStringLiteral("PrintRecTotal(%1, %2, \"%3\")").arg(L(total), L(amounts[form])).arg(form))));
    return out;
}

} // namespace

// The scripts on the simulated printer of both models, against what its rules (docs/simulated-printer.md)
// say each must give.
class AutoTestsSimulatedTest : public QObject {
    Q_OBJECT

private slots:
    // Facts are "PrinterState=n", "voided=n" (voided receipts of the day), "FiscalReceiptType=n",
    // "total=n" (the open receipt's), "on=pattern" (some receipt line matches), "off=pattern" (none does).
    void fiscalScripts_data() {
        QTest::addColumn<QString>("model");
        QTest::addColumn<QString>("script");
        QTest::addColumn<QStringList>("refusals");
        QTest::addColumn<QStringList>("facts");
        const QString on = QStringLiteral("on="), off = QStringLiteral("off=");

        // The printer's own total rules on this model: the 4.30 that stands in for the void of
        // 10 % of 39.00 (3.90) leaves 39.40 and 34.40. The last payment, 20.00 on a non-cash form
        // against 11.70 still due, is refused (only cash gives change), so the receipt stays
        // in the tender phase and EndFiscalReceipt is refused.
        QTest::newRow("ZorvaneFPU: full fiscal ticket")
            << L("ZorvaneFPU") << L("fiscal")
            << QStringList{BadAmount("PrintRecTotal(34.00, 20.00, \"9\")"),
                           WrongState("EndFiscalReceipt(, 0)")}
            << QStringList{L("PrinterState=3"),
                           L("voided=0"),
                           L("FiscalReceiptType=4"),
                           L("total=3440"),
                           on + AmountLine("SUBTOTAL", "39", "00"),
                           on + AmountLine("SUBTOTAL", "39", "40"),
                           on + AmountLine("TOTAL", "34", "40"),
                           on + L("^PreLine: refund follows$")};
        // Four VAT rates: the items on rate 5 are refused, the printer's subtotal is 33.00, and
        // the subtotal of 39.00 cancels the receipt, which waits to be ended.
        const QStringList cancelled{L("PrinterState=1"), L("voided=1"), L("FiscalReceiptType=4"),
                                    off + Subtotal, off + Total};
        QTest::newRow("Tessorim: full fiscal ticket")
            << L("Tessorim") << L("fiscal")
            << Rate5Refused() + QStringList{BadVat("PrintRecRefund(\"REFUND ITEM  10\", 4.00, 5)")} +
                   CancelledAtSubtotal("39.00", "34.00", true, "20.00")
            << cancelled;

        // The credit note adds up as meant: 43.00 and 38.00. Its last payment, 30.00 on a
        // non-cash form against 25.30 due, is refused, and so are the end and the receipt type.
        QTest::newRow("ZorvaneFPU: full credit note")
            << L("ZorvaneFPU") << L("credit")
            << QStringList{BadAmount("PrintRecTotal(38.00, 30.00, \"9\")"),
                           WrongState("EndFiscalReceipt(, 0)"), WrongState("FiscalReceiptType := 4")}
            << QStringList{L("PrinterState=3"),
                           L("voided=0"),
                           L("FiscalReceiptType=7"),
                           L("total=3800"),
                           on + AmountLine("SUBTOTAL", "43", "00"),
                           on + AmountLine("TOTAL", "38", "00"),
                           on + L("^8953986357$"),
                           on + L("^Additional Text$")};
        QTest::newRow("Tessorim: full credit note")
            << L("Tessorim") << L("credit")
            << Rate5Refused() + CancelledAtSubtotal("43.00", "38.00", false, "30.00") << cancelled;
    }
    void fiscalScripts() {
        QFETCH(QString, model);
        QFETCH(QString, script);
        QFETCH(QStringList, refusals);
        QFETCH(QStringList, facts);
        AutoSim bench(model);
        (script == QStringLiteral("fiscal") ? bench.panel.cmdFullFiscalTicket : bench.panel.cmdFullCreditNote)
            ->click();

        // What the printer shows after the script, fact by fact beside what it must be.
        QStringList shown;
        for (const QString& fact : facts) {
            const QString key = fact.section(u'=', 0, 0), value = fact.section(u'=', 1);
            if (key == QLatin1StringView("on") || key == QLatin1StringView("off"))
                shown.append((bench.OnPaper(value) ? "on=" : "off=") + value);
            else if (key == QLatin1StringView("PrinterState"))
                shown.append(key + u'=' + QString::number(bench.printer.PrinterState()));
            else if (key == QLatin1StringView("FiscalReceiptType"))
                shown.append(key + u'=' + QString::number(bench.printer.FiscalReceiptType()));
            else
                shown.append(key + u'=' +
                             bench.Data(key == QLatin1StringView("voided") ? FPTR_GD_FISCAL_REC_VOID
                                                                           : FPTR_GD_CURRENT_TOTAL));
        }
        QCOMPARE(bench.Refusals(), refusals);
        QCOMPARE(shown, facts);
        QVERIFY(bench.messages.isEmpty()); // these scripts show nothing
    }

    void nonFiscalScripts_data() {
        QTest::addColumn<QString>("model");
        QTest::addColumn<bool>("full");
        QTest::addColumn<bool>("dayOpen"); // a fiscal receipt sold first
        QTest::addColumn<int>("zReports");
        QTest::addColumn<bool>("bitmap"); // bitmap 1 is on the paper
        for (const char* model : {"ZorvaneFPU", "Tessorim"}) {
            QTest::addRow("%s: simple", model) << L(model) << false << false << 0 << false;
            QTest::addRow("%s: full, day closed", model) << L(model) << true << false << 0 << true;
            QTest::addRow("%s: full, day open", model) << L(model) << true << true << 1 << true;
        }
    }
    void nonFiscalScripts() {
        QFETCH(QString, model);
        QFETCH(bool, full);
        QFETCH(bool, dayOpen);
        QFETCH(int, zReports);
        QFETCH(bool, bitmap);
        AutoSim bench(model);
        if (dayOpen) {
            bench.panel.txtNumberOfLines->setText(QStringLiteral("1"));
            bench.panel.cmdAutoPrintTicket->click();
            QVERIFY(bench.printer.DayOpened());
        }
        bench.Mark();
        (full ? bench.panel.cmdFullNonFiscalTicket : bench.panel.cmdNonFiscalTicket)->click();

        // The six-digit UPC code is no UPC code: that line is refused. What the printer does
        // with bitmap 1 when it holds none is its own affair.
        QStringList refusals = bench.Refusals();
        refusals.removeIf(
            [](const QString& l) { return l.startsWith(QStringLiteral("PrintNormal(3, [ESC]|1B)")); });
        QCOMPARE(refusals,
                 QStringList{Refused("PrintNormal(3, [ESC]| 7R2641223)", "OposEIllegal(106)  (0)")});
        QCOMPARE(bench.messages.value(0), QStringLiteral("ERRORS: OposEIllegal"));
        QCOMPARE(bench.Log().count(QStringLiteral("PrintZReport()     -> OposSuccess(0)")), zReports);
        QCOMPARE(bench.printer.PrinterState(), FPTR_PS_MONITOR);
        QCOMPARE(bench.Data(FPTR_GD_NONFISCAL_DOC), QStringLiteral("1"));

        QList<std::pair<int, QString>> barcodes;
        QList<int> bitmaps;
        QStringList styled;
        // The ticket starts with its first text; a Z report may stand before it.
        QList<sim::PrintedLine> ticket = bench.PaperLines();
        while (!ticket.isEmpty() && ticket.first().text != QStringLiteral("THE QUICK BROWN FOX JUMPS OVER"))
            ticket.removeFirst();
        QVERIFY(!ticket.isEmpty());
        for (const sim::PrintedLine& line : ticket) {
            if (line.kind == sim::PrintedLine::Kind::Barcode)
                barcodes.append({line.barcodeType, line.text});
            if (line.kind == sim::PrintedLine::Kind::Bitmap)
                bitmaps.append(line.bitmapSlot);
            if (line.kind == sim::PrintedLine::Kind::Text &&
                (line.attr.doubleWidth || line.attr.doubleHeight || line.attr.halfHeight || line.attr.boxed))
                styled.append(line.text);
        }
        QCOMPARE(
            barcodes,
            (QList<std::pair<int, QString>>{
                {1, L("4007817504598")}, {2, L("26443247343")}, {3, L("01234567")}, {4, L("1234567890")}}));
        QCOMPARE(styled, (QStringList{L("Double width"), L("Double height"), L("Half height"), L("Framed")}));
        QVERIFY(bench.OnPaper(QStringLiteral("^THE QUICK BROWN FOX JUMPS OVER$")));
        QVERIFY(bench.OnPaper(QStringLiteral("^THE LAZY DOG'S BACK$")));
        if (bitmap)
            QCOMPARE(bitmaps, QList<int>{1});
        QCOMPARE(bench.printer.Bitmaps().Has(1), full);
    }

    void continuousTicket_data() {
        QTest::addColumn<QString>("model");
        QTest::addColumn<bool>("async");
        for (const char* model : {"ZorvaneFPU", "Tessorim"}) {
            QTest::addRow("%s: sync", model) << L(model) << false;
            QTest::addRow("%s: async", model) << L(model) << true;
        }
    }
    void continuousTicket() {
        QFETCH(QString, model);
        QFETCH(bool, async);
        AutoSim bench(model);
        frmAutoTests& panel = bench.panel;
        panel.txtNumberOfLines->setText(QStringLiteral("3"));
        panel.txtNumberOfTests->setText(QStringLiteral("2"));
        if (async)
            bench.wrapper.SetAsyncMode(true); // as the fiscal panel's check box does
        bench.Mark();

        (async ? panel.cmdPrintTicketA : panel.cmdAutoPrintTicket)->click();
        QTimer* timer = async ? panel.tmrTestA : panel.tmrTest;
        QVERIFY(timer->isActive());
        QCOMPARE(bench.Refusals(), QStringList{});
        QVERIFY(bench.messages.isEmpty());
        QCOMPARE(bench.printer.PrinterState(), FPTR_PS_MONITOR);
        QVERIFY(bench.OnPaper(AmountLine("TOTAL", "3", "00")));
        QVERIFY(bench.OnPaper(AmountLine("CENTO!!", "3", "00")));
        // Lines sent asynchronously keep the device busy until the drain has waited for them.
        QCOMPARE(bench.Log().contains(QStringLiteral("State = 3 (OPOS_S_BUSY)")), async);
        QVERIFY(!bench.printer.AsyncMode());

        QMetaObject::invokeMethod(timer, "timeout");
        QVERIFY(!timer->isActive());
        QCOMPARE(bench.Log().count(QStringLiteral("EndFiscalReceipt(, 0)     -> OposSuccess(0)")), 2);
        QCOMPARE(bench.Data(FPTR_GD_FISCAL_REC), QStringLiteral("2"));
    }
};

QTEST_MAIN(AutoTestsSimulatedTest)
#include "tst_autotests_simulated.moc"
