#pragma once

#include "FiscalTotals.h"

#include <QList>
#include <QString>

#include <array>
#include <cstdint>

namespace sim {

// The arithmetic and the rules of one fiscal receipt: its lines, running totals per VAT rate,
// voids that must match an earlier line, adjustments on the last item, subtotal adjustments spread
// over the rates, payments and change. Amounts come in as the application sent them; each call
// checks and rounds them to hundredths, and a refused call changes nothing.
class FiscalReceipt {
public:
    static constexpr int kLineKinds = 15;

    // An adjustment an item void took back with its item: what to print.
    struct Reversed {
        QString description{};
        Amount printed; // signed as the receipt shows it
    };

    explicit FiscalReceipt(int32_t receiptType) : m_type(receiptType) {}

    Refusal AddItem(int vat, Amount price);
    // Voids the latest item of this price and VAT not voided yet, and the adjustments standing on it.
    Refusal VoidItem(int vat, Amount price, QList<Reversed>* alsoReversed = nullptr);
    // Types 1/2 amount discount/surcharge, 3/4 percentage (the amount holds the percent). Acts on the
    // last item not voided, whose VAT `vat` must be. `applied` gets what went onto the rate.
    Refusal AdjustItem(int32_t type, Amount amount, int vat, const QString& description,
                       Amount* applied = nullptr);
    // Voids the latest adjustment of this type, amount and VAT not voided yet.
    Refusal VoidItemAdjustment(int32_t type, Amount amount, int vat, Amount* applied = nullptr);
    Refusal Refund(int vat, Amount amount);
    Refusal VoidRefund(int vat, Amount amount);
    Refusal AdjustSubtotal(int32_t type, Amount amount, Amount* applied = nullptr);
    Refusal VoidSubtotalAdjustment(int32_t type, Amount amount, Amount* applied = nullptr);
    // tender 1..22; only cash (1) may pay more than is due, and gives change.
    Refusal Pay(Amount payment, int tender);
    // The tender phase without a payment: the printer shows its total and waits.
    Refusal OpenTender();
    // At most what is still due.
    Refusal PayNotPaid(Amount amount);
    void CountComment() { ++m_lineCount[13]; }
    void CountSubtotal() { ++m_lineCount[14]; }

    int32_t ReceiptType() const { return m_type; }
    Amount Total() const { return m_totals.Sum(TotalKind::Net); }
    Amount RateTotal(int vat) const { return m_totals.Get(TotalKind::Net, vat); }
    Amount Paid() const { return m_paid; }
    Amount Due() const { return m_paid < Total() ? Total() - m_paid : 0; }
    bool FullyPaid() const { return m_paymentStarted && m_paid >= Total(); }
    bool PaymentStarted() const { return m_paymentStarted; }
    Amount Change() const { return m_paid > Total() ? m_paid - Total() : 0; }
    int LineCount(int lineKind) const; // by the LC_ numbers, 1..15
    Amount Tender(int tender) const;   // 1..22, change already taken off cash
    Tenders AllTenders() const;
    // The receipt's totals with gross, VAT and taxable amounts worked out; `rates` in hundredths of a
    // percent, rate 1 first. Prices hold their VAT.
    Totals FinalTotals(const QList<int32_t>& rates) const;

private:
    struct Line {
        enum class Kind { Item, Adjustment, Refund, SubtotalAdjustment };
        Kind kind = Kind::Item;
        int vat = 0;
        int32_t type = 0;   // adjustments
        Amount amount = 0;  // as given, in hundredths; a percentage for percentage types
        Amount applied = 0; // what went onto the rate, unsigned
        int item = -1;      // an item adjustment: the index of its item
        bool voided = false;
        QString description{};
        std::array<Amount, kVatSlots> spread{}; // a subtotal adjustment, signed, per rate
    };
    int LastLiveItem() const;
    int FindLive(Line::Kind kind, int vat, int32_t type, Amount amount) const;
    // The item's price with the adjustments standing on it.
    Amount ItemValue(int item) const;
    void Count(int lineKind) { ++m_lineCount[lineKind]; }

    int32_t m_type;
    QList<Line> m_lines;
    Totals m_totals;
    Amount m_paid = 0;
    bool m_paymentStarted = false;
    Tenders m_tenders{};
    std::array<int, kLineKinds + 1> m_lineCount{};
};

} // namespace sim
