#include "FiscalReceipt.h"

#include "OposAll.h"

using namespace OposAll;

namespace sim {

namespace {
Refusal Illegal(const QString& text) {
    return {OPOS_E_ILLEGAL, 0, text};
}
Refusal Extended(int32_t ext, const QString& text) {
    return {OPOS_E_EXTENDED, ext, text};
}
} // namespace

FiscalReceipt::FiscalReceipt(QList<int32_t> vatRates, int32_t receiptType)
    : m_rates(std::move(vatRates)), m_type(receiptType) {}

Refusal FiscalReceipt::NegativeTotal() const {
    return Extended(OPOS_EFPTR_NEGATIVE_TOTAL, QStringLiteral("Negative total"));
}

Refusal FiscalReceipt::AddItem(int vat, Amount price) {
    if (price < 0)
        return Extended(OPOS_EFPTR_BAD_PRICE, QStringLiteral("Bad price"));
    m_totals.At(TotalKind::Item, vat) += price;
    m_totals.At(TotalKind::Net, vat) += price;
    m_lastVat = vat;
    m_lastPrice = price;
    ++m_lines[FPTR_LC_ITEM];
    return {};
}

Refusal FiscalReceipt::VoidItem(int vat, Amount price) {
    if (price < 0)
        return Extended(OPOS_EFPTR_BAD_PRICE, QStringLiteral("Bad price"));
    if (m_totals.Get(TotalKind::Net, vat) - price < 0)
        return NegativeTotal();
    m_totals.At(TotalKind::ItemVoid, vat) += price;
    m_totals.At(TotalKind::Net, vat) -= price;
    ++m_lines[FPTR_LC_ITEM_VOID];
    return {};
}

Refusal FiscalReceipt::AdjustItem(int32_t type, Amount amount, bool isVoid, Amount* applied) {
    if (type < FPTR_AT_AMOUNT_DISCOUNT || type > FPTR_AT_PERCENTAGE_SURCHARGE)
        return Illegal(QStringLiteral("Unknown adjustment type"));
    if (amount <= 0)
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, QStringLiteral("Bad amount"));
    if (m_lastVat < 0)
        return Illegal(QStringLiteral("No item to adjust"));
    const bool percent = type == FPTR_AT_PERCENTAGE_DISCOUNT || type == FPTR_AT_PERCENTAGE_SURCHARGE;
    if (percent && type == FPTR_AT_PERCENTAGE_DISCOUNT && amount > 100 * AmountScale)
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, QStringLiteral("Bad amount"));
    // A percent of the item's price, kept to hundredths.
    const Amount adj =
        percent ? RoundDiv(static_cast<__int128>(m_lastPrice) * amount, 100 * AmountScale * 100) * 100
                : amount;
    const bool discount = IsDiscount(type);
    const Amount delta = (discount != isVoid) ? -adj : adj;
    if (m_totals.Get(TotalKind::Net, m_lastVat) + delta < 0)
        return NegativeTotal();
    TotalKind kind;
    int lc;
    if (discount) {
        kind = isVoid ? TotalKind::DiscountVoid : TotalKind::Discount;
        lc = isVoid ? FPTR_LC_DISCOUNT_VOID : FPTR_LC_DISCOUNT;
    } else {
        kind = isVoid ? TotalKind::SurchargeVoid : TotalKind::Surcharge;
        lc = isVoid ? FPTR_LC_SURCHARGE_VOID : FPTR_LC_SURCHARGE;
    }
    m_totals.At(kind, m_lastVat) += adj;
    m_totals.At(TotalKind::Net, m_lastVat) += delta;
    ++m_lines[lc];
    if (applied)
        *applied = adj;
    return {};
}

Refusal FiscalReceipt::Refund(int vat, Amount amount, bool isVoid) {
    if (amount <= 0)
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, QStringLiteral("Bad amount"));
    const Amount delta = isVoid ? amount : -amount;
    if (m_totals.Get(TotalKind::Net, vat) + delta < 0)
        return NegativeTotal();
    m_totals.At(isVoid ? TotalKind::RefundVoid : TotalKind::Refund, vat) += amount;
    m_totals.At(TotalKind::Net, vat) += delta;
    ++m_lines[isVoid ? FPTR_LC_REFUND_VOID : FPTR_LC_REFUND];
    return {};
}

Refusal FiscalReceipt::AdjustSubtotal(int32_t type, Amount amount, bool isVoid, Amount* applied) {
    if (type < FPTR_AT_AMOUNT_DISCOUNT || type > FPTR_AT_PERCENTAGE_SURCHARGE)
        return Illegal(QStringLiteral("Unknown adjustment type"));
    if (amount <= 0)
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, QStringLiteral("Bad amount"));
    const bool discount = IsDiscount(type);
    const bool percent = type == FPTR_AT_PERCENTAGE_DISCOUNT || type == FPTR_AT_PERCENTAGE_SURCHARGE;
    std::array<Amount, kVatSlots> spread{};

    if (isVoid) {
        // The last adjustment of this type and amount is taken back exactly as it went on.
        SubtotalAdjustment* match = nullptr;
        for (qsizetype i = m_subtotalAdjustments.size() - 1; i >= 0; --i) {
            auto& a = m_subtotalAdjustments[i];
            if (!a.voided && a.type == type && a.amount == amount) {
                match = &a;
                break;
            }
        }
        if (!match)
            return Illegal(QStringLiteral("No such subtotal adjustment"));
        for (int v = 0; v < kVatSlots; ++v)
            if (m_totals.Get(TotalKind::Net, v) - match->spread[v] < 0)
                return NegativeTotal();
        Amount sum = 0;
        for (int v = 0; v < kVatSlots; ++v) {
            const Amount back = match->spread[v] < 0 ? -match->spread[v] : match->spread[v];
            m_totals.At(TotalKind::Net, v) -= match->spread[v];
            m_totals.At(discount ? TotalKind::SubtotalDiscountVoid : TotalKind::SubtotalSurchargeVoid, v) +=
                back;
            sum += back;
        }
        match->voided = true;
        ++m_lines[discount ? FPTR_LC_SUBTOTAL_DISCOUNT_VOID : FPTR_LC_SUBTOTAL_SURCHARGE_VOID];
        if (applied)
            *applied = sum;
        return {};
    }

    const Amount subtotal = Total();
    if (percent && discount && amount > 100 * AmountScale)
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, QStringLiteral("Bad amount"));
    const Amount adj =
        percent ? RoundDiv(static_cast<__int128>(subtotal) * amount, 100 * AmountScale * 100) * 100 : amount;
    if (discount && adj > subtotal)
        return NegativeTotal();

    // Spread in proportion to the rates' totals; the rounding remainder goes on the last rate.
    int last = -1;
    for (int v = 0; v < kVatSlots; ++v)
        if (m_totals.Get(TotalKind::Net, v) > 0)
            last = v;
    if (last < 0)
        return discount ? NegativeTotal() : Illegal(QStringLiteral("Nothing to adjust"));
    const Amount adjCents = adj / 100;
    Amount given = 0;
    for (int v = 0; v < last; ++v) {
        const Amount rate = m_totals.Get(TotalKind::Net, v);
        if (rate <= 0)
            continue;
        const Amount share = RoundDiv(static_cast<__int128>(adjCents) * rate, subtotal) * 100;
        spread[v] = share;
        given += share;
    }
    spread[last] = adj - given;
    if (discount)
        for (auto& s : spread)
            s = -s;
    for (int v = 0; v < kVatSlots; ++v)
        if (m_totals.Get(TotalKind::Net, v) + spread[v] < 0)
            return NegativeTotal();
    for (int v = 0; v < kVatSlots; ++v) {
        m_totals.At(TotalKind::Net, v) += spread[v];
        m_totals.At(discount ? TotalKind::SubtotalDiscount : TotalKind::SubtotalSurcharge, v) +=
            spread[v] < 0 ? -spread[v] : spread[v];
    }
    m_subtotalAdjustments.append({type, amount, spread});
    ++m_lines[discount ? FPTR_LC_SUBTOTAL_DISCOUNT : FPTR_LC_SUBTOTAL_SURCHARGE];
    if (applied)
        *applied = adj;
    return {};
}

Refusal FiscalReceipt::Pay(Amount payment, int tender, bool notPaid) {
    if (payment < 0)
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, QStringLiteral("Bad amount"));
    if (Total() < 0)
        return NegativeTotal();
    m_paymentStarted = true;
    m_paid += payment;
    if (notPaid)
        m_totals.At(TotalKind::NotPaid, 0) += payment;
    else if (tender >= 1 && tender <= kTenders)
        m_tenders[tender] += payment;
    ++m_lines[FPTR_LC_TOTAL];
    return {};
}

int FiscalReceipt::LineCount(int lineKind) const {
    return lineKind >= 1 && lineKind <= kLineKinds ? m_lines[lineKind] : 0;
}

Amount FiscalReceipt::Tender(int tender) const {
    if (tender < 1 || tender > kTenders)
        return 0;
    Amount a = m_tenders[tender];
    if (tender == FPTR_PDL_CASH)
        a -= Change();
    return a;
}

Totals FiscalReceipt::FinalTotals() const {
    Totals t = m_totals;
    for (int v = 0; v < kVatSlots; ++v) {
        t.At(TotalKind::Gross, v) = t.Get(TotalKind::Item, v) - t.Get(TotalKind::ItemVoid, v) +
                                    t.Get(TotalKind::Surcharge, v) - t.Get(TotalKind::SurchargeVoid, v) +
                                    t.Get(TotalKind::SubtotalSurcharge, v) -
                                    t.Get(TotalKind::SubtotalSurchargeVoid, v);
        const Amount net = t.Get(TotalKind::Net, v);
        const int32_t rate = v >= 1 && v <= m_rates.size() ? m_rates[v - 1] : 0;
        // Prices hold the VAT: its part of the net is rate / (100 % + rate).
        const Amount vat = RoundDiv(static_cast<__int128>(net / 100) * rate, 10000 + rate) * 100;
        t.At(TotalKind::Vat, v) = vat;
        t.At(TotalKind::VatCategory, v) = net - vat;
    }
    return t;
}

} // namespace sim
