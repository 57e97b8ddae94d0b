#pragma once

#include "FiscalTotals.h"

#include <QList>
#include <QString>

#include <array>
#include <cstdint>

namespace sim {

// A refusal of the document: an OPOS result with its extended code and a sentence.
struct Refusal {
    int32_t code = 0;
    int32_t extended = 0;
    QString text;
    explicit operator bool() const { return code != 0; }
};

// The arithmetic of one fiscal receipt: running totals per VAT rate, the last item that
// adjustments act on, subtotal adjustments spread over the rates, payments and change.
// Every amount handed in is already rounded to hundredths; every result is too.
class FiscalReceipt {
public:
    static constexpr int kTenders = 22;
    static constexpr int kLineKinds = 15;

    FiscalReceipt(QList<int32_t> vatRates, int32_t receiptType);

    Refusal AddItem(int vat, Amount price);
    Refusal VoidItem(int vat, Amount price);
    // Types 1/2 amount discount/surcharge, 3/4 percentage (amount holds the percent).
    // `applied` gets the amount that went onto the rate.
    Refusal AdjustItem(int32_t type, Amount amount, bool isVoid, Amount* applied = nullptr);
    Refusal Refund(int vat, Amount amount, bool isVoid);
    Refusal AdjustSubtotal(int32_t type, Amount amount, bool isVoid, Amount* applied = nullptr);
    // tender 1..22; a not-paid amount counts apart.
    Refusal Pay(Amount payment, int tender, bool notPaid);
    void CountComment() { ++m_lines[13]; }
    void CountSubtotal() { ++m_lines[14]; }

    int32_t ReceiptType() const { return m_type; }
    Amount Total() const { return m_totals.Sum(TotalKind::Net); }
    Amount RateTotal(int vat) const { return m_totals.Get(TotalKind::Net, vat); }
    Amount Paid() const { return m_paid; }
    bool FullyPaid() const { return m_paymentStarted && m_paid >= Total(); }
    bool PaymentStarted() const { return m_paymentStarted; }
    Amount Change() const { return m_paid > Total() ? m_paid - Total() : 0; }
    int LineCount(int lineKind) const; // by the LC_ numbers, 1..15
    Amount Tender(int tender) const;   // 1..22, change already taken off cash
    // The receipt's totals with gross, VAT and taxable amounts worked out.
    Totals FinalTotals() const;
    int LastItemVat() const { return m_lastVat; }

private:
    struct SubtotalAdjustment {
        int32_t type;
        Amount amount;
        std::array<Amount, kVatSlots> spread; // signed, as it went onto the rates
        bool voided = false;
    };
    bool IsDiscount(int32_t type) const { return type == 1 || type == 3; }
    Refusal NegativeTotal() const;

    QList<int32_t> m_rates;
    int32_t m_type;
    Totals m_totals;
    int m_lastVat = -1;
    Amount m_lastPrice = 0;
    QList<SubtotalAdjustment> m_subtotalAdjustments;
    Amount m_paid = 0;
    bool m_paymentStarted = false;
    std::array<Amount, kTenders + 1> m_tenders{};
    std::array<int, kLineKinds + 1> m_lines{};
};

} // namespace sim
