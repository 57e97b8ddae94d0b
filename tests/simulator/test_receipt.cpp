#include "FiscalReceipt.h"
#include "SimTestSupport.h"

using namespace OposAll;
using sim::FiscalReceipt;
using sim::TotalKind;
using t::M;

namespace {
const QList<int32_t> kRates{2200, 1000, 500, 400};
using Step = std::function<sim::Refusal(FiscalReceipt&)>;
} // namespace

class TestReceiptArithmetic : public QObject {
    Q_OBJECT
private slots:
    void rounding_data() {
        QTest::addColumn<Amount>("in");
        QTest::addColumn<Amount>("out");
        QTest::newRow("half up") << Amount{1250} << Amount{1300};
        QTest::newRow("below half") << Amount{1249} << Amount{1200};
        QTest::newRow("negative half away") << Amount{-1250} << Amount{-1300};
        QTest::newRow("negative below half") << Amount{-1249} << Amount{-1200};
        QTest::newRow("exact") << Amount{250000} << Amount{250000};
    }
    void rounding() {
        QFETCH(Amount, in);
        QFETCH(Amount, out);
        QCOMPARE(sim::RoundToCents(in), out);
    }

    void itemAdjustments_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<Amount>("amount"); // a percentage holds the percent: 25.00 = 25 %
        QTest::addColumn<Amount>("price");
        QTest::addColumn<Amount>("expectedTotal");
        QTest::newRow("25 % discount of 8.00") << 3 << M(2500) << M(800) << M(600);
        QTest::newRow("12.5 % of 1.00 rounds half away") << 3 << M(1250) << M(100) << M(87);
        QTest::newRow("10 % surcharge of 5.00") << 4 << M(1000) << M(500) << M(550);
        QTest::newRow("amount discount") << 1 << M(200) << M(500) << M(300);
        QTest::newRow("amount surcharge") << 2 << M(150) << M(500) << M(650);
    }
    void itemAdjustments() {
        QFETCH(int, type);
        QFETCH(Amount, amount);
        QFETCH(Amount, price);
        QFETCH(Amount, expectedTotal);
        FiscalReceipt r(kRates, FPTR_RT_SALES);
        QVERIFY(!r.AddItem(1, price));
        QVERIFY(!r.AdjustItem(type, amount, false));
        QCOMPARE(r.Total(), expectedTotal);
        // The void takes back exactly what went on.
        QVERIFY(!r.AdjustItem(type, amount, true));
        QCOMPARE(r.Total(), price);
    }

    void refusals_data() {
        QTest::addColumn<Step>("step"); // tried on a receipt holding 5.00 at rate 1
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("extended");
        using R = FiscalReceipt&;
        const auto row = [](const char* name, int code, int extended, Step step) {
            QTest::newRow(name) << step << code << extended;
        };
        row("discount beyond the rate", 114, 220, [](R r) { return r.AdjustItem(1, M(600), false); });
        row("refund beyond the rate", 114, 220, [](R r) { return r.Refund(1, M(501), false); });
        row("item void beyond the rate", 114, 220, [](R r) { return r.VoidItem(1, M(600)); });
        row("subtotal discount beyond the total", 114, 220,
            [](R r) { return r.AdjustSubtotal(1, M(501), false); });
        row("negative price", 114, 218, [](R r) { return r.AddItem(1, -M(1)); });
        row("zero adjustment", 114, 214, [](R r) { return r.AdjustItem(1, 0, false); });
        row("unknown adjustment type", 106, 0, [](R r) { return r.AdjustItem(5, M(1), false); });
        row("void of an adjustment never made", 106, 0,
            [](R r) { return r.AdjustSubtotal(1, M(100), true); });
        row("negative payment", 114, 214, [](R r) { return r.Pay(-M(1), 1, false); });
    }

    void refusals() {
        QFETCH(Step, step);
        QFETCH(int, code);
        QFETCH(int, extended);
        FiscalReceipt r(kRates, FPTR_RT_SALES);
        QVERIFY(!r.AddItem(1, M(500)));
        const sim::Refusal got = step(r);
        QCOMPARE(got.code, code);
        QCOMPARE(got.extended, extended);
        // A refusal leaves the receipt as it was.
        QCOMPARE(r.Total(), M(500));
        QCOMPARE(r.RateTotal(1), M(500));
    }

    void adjustmentsSpreadOverRates() {
        FiscalReceipt r(kRates, FPTR_RT_SALES);
        QVERIFY(!r.AddItem(1, M(1000)));
        QVERIFY(!r.AddItem(2, M(2000)));
        QVERIFY(!r.AdjustItem(1, M(100), false)); // acts on the last item's rate only
        QCOMPARE(r.RateTotal(1), M(1000));
        QCOMPARE(r.RateTotal(2), M(1900));
        QCOMPARE(r.LineCount(FPTR_LC_DISCOUNT), 1);
        QVERIFY(!r.AdjustSubtotal(1, M(100), false));
        // 1.00 over 10.00 and 19.00: 0.34 on the first rate, the rest on the last.
        QCOMPARE(r.RateTotal(1), M(966));
        QCOMPARE(r.RateTotal(2), M(1834));
        QCOMPARE(r.Total(), M(2800));
        QVERIFY(!r.AdjustSubtotal(1, M(100), true));
        QCOMPARE(r.RateTotal(1), M(1000));
        QCOMPARE(r.RateTotal(2), M(1900));
        const auto t = r.FinalTotals();
        QCOMPARE(t.Sum(TotalKind::SubtotalDiscount), M(100));
        QCOMPARE(t.Sum(TotalKind::SubtotalDiscountVoid), M(100));
        // A percentage of the subtotal: 10 % of 29.00.
        Amount applied = 0;
        QVERIFY(!r.AdjustSubtotal(3, M(1000), false, &applied));
        QCOMPARE(applied, M(290));
        QCOMPARE(r.Total(), M(2610));
    }

    void paymentsAndChange() {
        FiscalReceipt r(kRates, FPTR_RT_SALES);
        QVERIFY(!r.AddItem(1, M(1000)));
        QVERIFY(!r.Pay(M(400), FPTR_PDL_CASH, false));
        QVERIFY(!r.FullyPaid());
        QVERIFY(!r.Pay(M(1000), FPTR_PDL_CHEQUE, false));
        QVERIFY(r.FullyPaid());
        QCOMPARE(r.Change(), M(400));
        // The change comes out of the cash drawer.
        QCOMPARE(r.Tender(FPTR_PDL_CASH), M(0));
        QCOMPARE(r.Tender(FPTR_PDL_CHEQUE), M(1000));
    }

    void vatIsIncludedInPrices() {
        FiscalReceipt r(kRates, FPTR_RT_SALES);
        QVERIFY(!r.AddItem(1, M(12200)));
        QVERIFY(!r.AddItem(0, M(500)));
        const auto t = r.FinalTotals();
        QCOMPARE(t.Get(TotalKind::Vat, 1), M(2200));
        QCOMPARE(t.Get(TotalKind::VatCategory, 1), M(10000));
        QCOMPARE(t.Get(TotalKind::Vat, 0), M(0));
        QCOMPARE(t.Sum(TotalKind::Gross), M(12700));
    }
};

QTEST_GUILESS_MAIN(TestReceiptArithmetic)
#include "test_receipt.moc"
