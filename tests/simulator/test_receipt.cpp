#include "Money.h"
#include "ReceiptScript.h"

#include "OposAll.h"

#include <QtTest>

using namespace OposAll;
using sim::FiscalReceipt;
using sim::TotalKind;

namespace {
constexpr Amount M(int cents) {
    return Amount{cents} * 100;
}
const QList<int32_t> kRates{2200, 1000, 500, 400};
} // namespace

// The receipt's own rules, each row a few steps and what the page says they give.
class TestReceiptRules : public QObject {
    Q_OBJECT

    static void AddColumns() {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("results");
        QTest::addColumn<QString>("state"); // key=value, amounts in hundredths
    }
    static void Row(const char* name, const char* steps, const char* results, const char* state) {
        QTest::newRow(name) << QString::fromLatin1(steps) << QString::fromLatin1(results)
                            << QString::fromLatin1(state);
    }
    static void RunRow() {
        QFETCH(QString, steps);
        QFETCH(QString, results);
        QFETCH(QString, state);
        FiscalReceipt r(FPTR_RT_SALES);
        QCOMPARE(receipt_script::Run(r, steps), results);
        QCOMPARE(receipt_script::Observe(r, state), state);
    }

private slots:
    // A void must match an earlier line of the same amount and VAT, not voided yet.
    void voidsAndTheirMatches_data() {
        AddColumns();
        Row("discount void with no discount", "item 1 10.00; adjvoid 1 3.00 1", "0;106", "total=1000 lc4=0");
        Row("discount void of a surcharge", "item 1 10.00; adj 2 3.00 1; adjvoid 1 3.00 1", "0;0;106",
            "total=1300");
        Row("discount void of another amount", "item 1 10.00; adj 1 3.00 1; adjvoid 1 2.00 1", "0;0;106",
            "total=700");
        Row("discount void on another VAT", "item 1 10.00; adj 1 3.00 1; adjvoid 1 3.00 2", "0;0;106",
            "total=700");
        Row("discount void matched", "item 1 10.00; adj 1 3.00 1; adjvoid 1 3.00 1", "0;0;0",
            "total=1000 lc3=1 lc4=1");
        Row("discount voided twice", "item 1 10.00; adj 1 3.00 1; adjvoid 1 3.00 1; adjvoid 1 3.00 1",
            "0;0;0;106", "total=1000");
        Row("percentage void matched by its percent", "item 1 8.00; adj 3 25.00 1; adjvoid 3 25.00 1",
            "0;0;0", "total=800");
        Row("item never sold", "item 1 10.00; itemvoid 1 4.00", "0;106", "total=1000 lc2=0");
        Row("item void on another VAT", "item 1 10.00; itemvoid 2 10.00", "0;106", "total=1000");
        Row("item void matched", "item 1 10.00; item 1 5.00; itemvoid 1 10.00", "0;0;0", "total=500 lc2=1");
        Row("item voided twice", "item 1 10.00; itemvoid 1 10.00; itemvoid 1 10.00", "0;0;106", "total=0");
        Row("two equal items, two voids", "item 1 2.00; item 1 2.00; itemvoid 1 2.00; itemvoid 1 2.00",
            "0;0;0;0", "total=0");
        Row("item void takes its discount with it", "item 1 10.00; adj 1 2.00 1; itemvoid 1 10.00", "0;0;0",
            "total=0 lc4=1");
        Row("discount of a voided item can't be voided again",
            "item 1 10.00; adj 1 2.00 1; itemvoid 1 10.00; adjvoid 1 2.00 1", "0;0;0;106", "total=0");
        Row("refund void with no refund", "item 1 10.00; refundvoid 1 2.00", "0;106", "total=1000");
        Row("refund void matched", "item 1 10.00; refund 1 2.00; refundvoid 1 2.00", "0;0;0",
            "total=1000 lc7=1 lc8=1");
        Row("refund void on another VAT", "item 1 10.00; item 2 5.00; refund 1 2.00; refundvoid 2 2.00",
            "0;0;0;106", "total=1300");
        Row("subtotal void with no adjustment", "item 1 10.00; subvoid 1 1.00", "0;106", "total=1000");
        Row("subtotal void matched", "item 1 10.00; sub 1 1.00; subvoid 1 1.00", "0;0;0", "total=1000");
    }
    void voidsAndTheirMatches() { RunRow(); }

    // Adjustments act on the last item not voided, on its VAT rate.
    void adjustments_data() {
        AddColumns();
        Row("25 % discount of 8.00", "item 1 8.00; adj 3 25.00 1", "0;0", "total=600");
        Row("12.5 % of 1.00 rounds half away", "item 1 1.00; adj 3 12.50 1", "0;0", "total=87");
        Row("10 % surcharge of 5.00", "item 1 5.00; adj 4 10.00 1", "0;0", "total=550");
        Row("amount surcharge", "item 1 5.00; adj 2 1.50 1", "0;0", "total=650 lc5=1");
        Row("discount on the last item's rate only", "item 1 10.00; item 2 20.00; adj 1 1.00 2", "0;0;0",
            "rate1=1000 rate2=1900");
        Row("VAT other than the item's", "item 2 10.00; adj 1 1.00 1", "0;114/217", "rate1=0 rate2=1000");
        Row("after voiding the last item: the one before",
            "item 1 10.00; item 2 5.00; itemvoid 2 5.00; adj 1 1.00 1", "0;0;0;0", "rate1=900 rate2=0");
        Row("after voiding the last item: not the voided one",
            "item 1 10.00; item 2 5.00; itemvoid 2 5.00; adj 1 1.00 2", "0;0;0;114/217", "rate2=0");
        Row("no item", "adj 1 1.00 1", "106", "total=0");
        Row("every item voided", "item 1 1.00; itemvoid 1 1.00; adj 1 0.50 1", "0;0;106", "total=0");
        Row("discount beyond its item", "item 1 5.00; item 1 10.00; adj 1 12.00 1", "0;0;114/220",
            "total=1500");
        Row("subtotal discount spread over the rates", "item 1 10.00; item 2 19.00; sub 1 1.00", "0;0;0",
            "rate1=966 rate2=1834 total=2800");
        Row("10 % of the subtotal", "item 1 10.00; item 2 19.00; sub 3 10.00", "0;0;0", "total=2610");
        Row("subtotal discount beyond the total", "item 1 5.00; sub 1 5.01", "0;114/220", "total=500");
        Row("refund beyond the rate", "item 1 5.00; refund 1 5.01", "0;114/220", "total=500");
        Row("item void beyond the rate", "item 1 5.00; refund 1 3.00; itemvoid 1 5.00", "0;0;114/220",
            "total=200");
    }
    void adjustments() { RunRow(); }

    // Amounts of zero, below zero or beyond what 64 bits hold: a clear code and nothing changed.
    void badAmounts_data() {
        AddColumns();
        Row("item of zero", "item 1 0", "114/218", "total=0 lc1=0");
        Row("item below zero", "item 1 -1.00", "114/218", "total=0");
        Row("item beyond 64 bits", "item 1 MAX", "114/218", "total=0");
        Row("item void of zero", "item 1 1.00; itemvoid 1 0", "0;114/218", "total=100");
        Row("discount of zero", "item 1 1.00; adj 1 0 1", "0;114/214", "total=100");
        Row("discount below zero", "item 1 1.00; adj 1 -0.50 1", "0;114/214", "total=100");
        Row("discount beyond 64 bits", "item 1 1.00; adj 1 MAX 1", "0;114/214", "total=100");
        Row("discount void of zero", "item 1 1.00; adj 1 0.10 1; adjvoid 1 0 1", "0;0;114/214", "total=90");
        Row("percentage over 100", "item 1 1.00; adj 3 100.01 1", "0;114/214", "total=100");
        Row("percentage that rounds to nothing", "item 1 1.00; adj 3 0.01 1", "0;114/214", "total=100");
        Row("unknown adjustment type", "item 1 1.00; adj 5 0.10 1", "0;106", "total=100");
        Row("refund below zero", "item 1 1.00; refund 1 -0.10", "0;114/214", "total=100");
        Row("refund void beyond 64 bits", "item 1 1.00; refundvoid 1 MAX", "0;114/214", "total=100");
        Row("subtotal adjustment of zero", "item 1 1.00; sub 2 0", "0;114/214", "total=100");
        Row("payment of zero", "item 1 1.00; pay 0 1", "0;114/214", "total=100 due=100");
        Row("payment below zero", "item 1 1.00; pay -1.00 1", "0;114/214", "due=100");
        Row("payment beyond 64 bits", "item 1 1.00; pay MAX 1", "0;114/214", "due=100");
        Row("receipt total beyond the printer's", "item 1 99999999.99; item 1 0.01", "0;114/216",
            "total=9999999999");
    }
    void badAmounts() { RunRow(); }

    // Payments add up; only cash gives change; not paid at most what is due.
    void tenders_data() {
        AddColumns();
        Row("cash overpaid gives change", "item 1 10.00; pay 20.00 1", "0;0", "change=1000 tender1=1000");
        Row("card overpaid", "item 1 10.00; pay 20.00 6", "0;114/214", "due=1000 tender6=0");
        Row("card exactly", "item 1 10.00; pay 10.00 6", "0;0", "due=0 change=0 tender6=1000");
        Row("cheque then cash with change", "item 1 10.00; pay 4.00 2; pay 10.00 1", "0;0;0",
            "change=400 tender1=600 tender2=400");
        Row("not paid beyond what is due", "item 1 10.00; pay 4.00 1; notpaid 7.00", "0;0;114/214",
            "due=600");
        Row("not paid the rest", "item 1 10.00; pay 4.00 1; notpaid 6.00", "0;0;0", "due=0 change=0");
        Row("cash never ends below zero", "item 1 1.00; pay 0.50 1; pay 5.00 1", "0;0;0",
            "change=450 tender1=100");
    }
    void tenders() { RunRow(); }

    void vatIsIncludedInPrices() {
        FiscalReceipt r(FPTR_RT_SALES);
        QVERIFY(!r.AddItem(1, M(12200)));
        QVERIFY(!r.AddItem(0, M(500)));
        const auto t = r.FinalTotals(kRates);
        QCOMPARE(t.Get(TotalKind::Vat, 1), M(2200)); // 122.00 holds 22.00 of VAT at 22 %
        QCOMPARE(t.Get(TotalKind::VatCategory, 1), M(10000));
        QCOMPARE(t.Get(TotalKind::Vat, 0), M(0));
        QCOMPARE(t.Sum(TotalKind::Gross), M(12700));
    }
};

QTEST_GUILESS_MAIN(TestReceiptRules)
#include "test_receipt.moc"
