#include "FiscalReceipt.h"
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

    void centsText() {
        QCOMPARE(sim::CentsText(M(2500)), QStringLiteral("2500"));
        QCOMPARE(sim::CentsText(0), QStringLiteral("0"));
    }

    void itemAdjustments_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<Amount>("amount");
        QTest::addColumn<Amount>("price");
        QTest::addColumn<Amount>("expectedTotal");
        // 25.00 holds 25 %.
        QTest::newRow("25 % discount of 8.00") << 3 << M(2500) << M(800) << M(600);
        QTest::newRow("40 % discount of 10.00") << 3 << M(4000) << M(1000) << M(600);
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

    void adjustmentActsOnLastItemRate() {
        FiscalReceipt r(kRates, FPTR_RT_SALES);
        QVERIFY(!r.AddItem(1, M(1000)));
        QVERIFY(!r.AddItem(2, M(500)));
        QVERIFY(!r.AdjustItem(1, M(100), false));
        QCOMPARE(r.RateTotal(1), M(1000));
        QCOMPARE(r.RateTotal(2), M(400));
        QCOMPARE(r.LineCount(FPTR_LC_DISCOUNT), 1);
    }

    void refusals_data() {
        QTest::addColumn<int>("step"); // what to try on a receipt holding 5.00 at rate 1
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("extended");
        QTest::newRow("discount beyond the rate") << 0 << 114 << 220;
        QTest::newRow("refund beyond the rate") << 1 << 114 << 220;
        QTest::newRow("item void beyond the rate") << 2 << 114 << 220;
        QTest::newRow("subtotal discount beyond the total") << 3 << 114 << 220;
        QTest::newRow("negative price") << 4 << 114 << 218;
        QTest::newRow("zero adjustment") << 5 << 114 << 214;
        QTest::newRow("unknown adjustment type") << 6 << 106 << 0;
        QTest::newRow("void of an adjustment never made") << 7 << 106 << 0;
        QTest::newRow("negative payment") << 8 << 114 << 214;
    }
    void refusals() {
        QFETCH(int, step);
        QFETCH(int, code);
        QFETCH(int, extended);
        FiscalReceipt r(kRates, FPTR_RT_SALES);
        QVERIFY(!r.AddItem(1, M(500)));
        sim::Refusal got;
        switch (step) {
        case 0:
            got = r.AdjustItem(1, M(600), false);
            break;
        case 1:
            got = r.Refund(1, M(501), false);
            break;
        case 2:
            got = r.VoidItem(1, M(600));
            break;
        case 3:
            got = r.AdjustSubtotal(1, M(501), false);
            break;
        case 4:
            got = r.AddItem(1, -M(1));
            break;
        case 5:
            got = r.AdjustItem(1, 0, false);
            break;
        case 6:
            got = r.AdjustItem(5, M(1), false);
            break;
        case 7:
            got = r.AdjustSubtotal(1, M(100), true);
            break;
        case 8:
            got = r.Pay(-M(1), 1, false);
            break;
        }
        QCOMPARE(got.code, code);
        QCOMPARE(got.extended, extended);
        // A refusal leaves the receipt as it was.
        QCOMPARE(r.Total(), M(500));
        QCOMPARE(r.RateTotal(1), M(500));
    }

    void subtotalSpreadOverRates() {
        FiscalReceipt r(kRates, FPTR_RT_SALES);
        QVERIFY(!r.AddItem(1, M(1000)));
        QVERIFY(!r.AddItem(2, M(2000)));
        QVERIFY(!r.AdjustSubtotal(1, M(100), false));
        // 1.00 over 10.00 and 20.00: a third is 0.33, the rest on the last rate.
        QCOMPARE(r.RateTotal(1), M(967));
        QCOMPARE(r.RateTotal(2), M(1933));
        QCOMPARE(r.Total(), M(2900));
        QVERIFY(!r.AdjustSubtotal(1, M(100), true));
        QCOMPARE(r.RateTotal(1), M(1000));
        QCOMPARE(r.RateTotal(2), M(2000));
        const auto t = r.FinalTotals();
        QCOMPARE(t.Sum(TotalKind::SubtotalDiscount), M(100));
        QCOMPARE(t.Sum(TotalKind::SubtotalDiscountVoid), M(100));
    }

    void percentSubtotal() {
        FiscalReceipt r(kRates, FPTR_RT_SALES);
        QVERIFY(!r.AddItem(1, M(4300)));
        Amount applied = 0;
        QVERIFY(!r.AdjustSubtotal(3, M(1000), false, &applied));
        QCOMPARE(applied, M(430));
        QCOMPARE(r.Total(), M(3870));
        QVERIFY(!r.AdjustSubtotal(2, M(430), false));
        QCOMPARE(r.Total(), M(4300));
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
