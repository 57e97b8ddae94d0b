#include "FiscalReceipt.h"

#include "Money.h"
#include "OposAll.h"

using namespace OposAll;

namespace sim {

namespace {

Refusal Illegal(const char* text) {
    return {OPOS_E_ILLEGAL, 0, QString::fromLatin1(text)};
}
Refusal Extended(int32_t ext, const char* text) {
    return {OPOS_E_EXTENDED, ext, QString::fromLatin1(text)};
}
Refusal NegativeTotal() {
    return Extended(OPOS_EFPTR_NEGATIVE_TOTAL, "Negative total");
}
Refusal TotalOverflow() {
    return Extended(OPOS_EFPTR_RECEIPT_TOTAL_OVERFLOW, "Receipt total too large");
}

bool IsDiscount(int32_t type) {
    return type == FPTR_AT_AMOUNT_DISCOUNT || type == FPTR_AT_PERCENTAGE_DISCOUNT;
}
bool IsPercent(int32_t type) {
    return type == FPTR_AT_PERCENTAGE_DISCOUNT || type == FPTR_AT_PERCENTAGE_SURCHARGE;
}

// An amount as the printer takes it: above zero, within its range, and still above zero in hundredths.
bool TakeAmount(Amount raw, Amount limit, Amount* out) {
    if (raw <= 0 || raw > limit)
        return false;
    *out = RoundToCents(raw);
    return *out > 0;
}

// The amount of an adjustment of `type`, a percentage of `base` for the percentage types.
Refusal AdjustmentAmount(int32_t type, Amount raw, Amount* given) {
    if (type < FPTR_AT_AMOUNT_DISCOUNT || type > FPTR_AT_PERCENTAGE_SURCHARGE)
        return Illegal("Unknown adjustment type");
    if (!TakeAmount(raw, IsPercent(type) ? kMaxPercent : kMaxAmount, given))
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, "Bad amount");
    return {};
}
Amount Applied(int32_t type, Amount given, Amount base) {
    // A percent of the base, kept to hundredths: base * percent / 100 %.
    return IsPercent(type) ? RoundDiv(static_cast<__int128>(base) * given, kMaxPercent * 100) * 100 : given;
}

TotalKind AdjustmentKind(int32_t type, bool isVoid) {
    if (IsDiscount(type))
        return isVoid ? TotalKind::DiscountVoid : TotalKind::Discount;
    return isVoid ? TotalKind::SurchargeVoid : TotalKind::Surcharge;
}
int AdjustmentLineKind(int32_t type, bool isVoid) {
    if (IsDiscount(type))
        return isVoid ? FPTR_LC_DISCOUNT_VOID : FPTR_LC_DISCOUNT;
    return isVoid ? FPTR_LC_SURCHARGE_VOID : FPTR_LC_SURCHARGE;
}

} // namespace

int FiscalReceipt::LastLiveItem() const {
    for (qsizetype i = m_lines.size() - 1; i >= 0; --i)
        if (m_lines[i].kind == Line::Kind::Item && !m_lines[i].voided)
            return static_cast<int>(i);
    return -1;
}

int FiscalReceipt::FindLive(Line::Kind kind, int vat, int32_t type, Amount amount) const {
    for (qsizetype i = m_lines.size() - 1; i >= 0; --i) {
        const Line& l = m_lines[i];
        if (l.kind == kind && !l.voided && l.vat == vat && l.type == type && l.amount == amount)
            return static_cast<int>(i);
    }
    return -1;
}

Amount FiscalReceipt::ItemValue(int item) const {
    Amount value = m_lines[item].amount;
    for (const Line& l : m_lines)
        if (l.kind == Line::Kind::Adjustment && l.item == item && !l.voided)
            value += IsDiscount(l.type) ? -l.applied : l.applied;
    return value;
}

Refusal FiscalReceipt::AddItem(int vat, Amount raw) {
    Amount price = 0;
    if (!TakeAmount(raw, kMaxAmount, &price))
        return Extended(OPOS_EFPTR_BAD_PRICE, "Bad price");
    if (Total() + price > kMaxAmount)
        return TotalOverflow();
    m_totals.At(TotalKind::Item, vat) += price;
    m_totals.At(TotalKind::Net, vat) += price;
    m_lines.append({.kind = Line::Kind::Item, .vat = vat, .amount = price});
    Count(FPTR_LC_ITEM);
    return {};
}

Refusal FiscalReceipt::VoidItem(int vat, Amount raw, QList<Reversed>* alsoReversed) {
    Amount price = 0;
    if (!TakeAmount(raw, kMaxAmount, &price))
        return Extended(OPOS_EFPTR_BAD_PRICE, "Bad price");
    const int item = FindLive(Line::Kind::Item, vat, 0, price);
    if (item < 0)
        return Illegal("No such item to void");
    const Amount value = ItemValue(item);
    if (RateTotal(vat) - value < 0 || Total() - value < 0)
        return NegativeTotal();
    for (Line& l : m_lines) {
        if (l.kind != Line::Kind::Adjustment || l.item != item || l.voided)
            continue;
        l.voided = true;
        m_totals.At(AdjustmentKind(l.type, true), vat) += l.applied;
        Count(AdjustmentLineKind(l.type, true));
        if (alsoReversed)
            alsoReversed->append({l.description, IsDiscount(l.type) ? l.applied : -l.applied});
    }
    m_lines[item].voided = true;
    m_totals.At(TotalKind::ItemVoid, vat) += price;
    m_totals.At(TotalKind::Net, vat) -= value;
    Count(FPTR_LC_ITEM_VOID);
    return {};
}

Refusal FiscalReceipt::AdjustItem(int32_t type, Amount raw, int vat, const QString& description,
                                  Amount* applied) {
    Amount given = 0;
    if (Refusal r = AdjustmentAmount(type, raw, &given))
        return r;
    const int item = LastLiveItem();
    if (item < 0)
        return Illegal("No item to adjust");
    if (m_lines[item].vat != vat)
        return Extended(OPOS_EFPTR_BAD_VAT, "VAT differs from the item's");
    const Amount adj = Applied(type, given, m_lines[item].amount);
    if (adj <= 0)
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, "Adjustment rounds to nothing");
    const Amount delta = IsDiscount(type) ? -adj : adj;
    if (ItemValue(item) + delta < 0 || RateTotal(vat) + delta < 0)
        return NegativeTotal();
    if (Total() + delta > kMaxAmount)
        return TotalOverflow();
    m_totals.At(AdjustmentKind(type, false), vat) += adj;
    m_totals.At(TotalKind::Net, vat) += delta;
    Line line{.kind = Line::Kind::Adjustment,
              .vat = vat,
              .type = type,
              .amount = given,
              .applied = adj,
              .item = item};
    line.description = description;
    m_lines.append(line);
    Count(AdjustmentLineKind(type, false));
    if (applied)
        *applied = adj;
    return {};
}

Refusal FiscalReceipt::VoidItemAdjustment(int32_t type, Amount raw, int vat, Amount* applied) {
    Amount given = 0;
    if (Refusal r = AdjustmentAmount(type, raw, &given))
        return r;
    const int found = FindLive(Line::Kind::Adjustment, vat, type, given);
    if (found < 0)
        return Illegal("No such adjustment to void");
    Line& adj = m_lines[found];
    const Amount delta = IsDiscount(type) ? adj.applied : -adj.applied;
    if (ItemValue(adj.item) + delta < 0 || RateTotal(vat) + delta < 0)
        return NegativeTotal();
    if (Total() + delta > kMaxAmount)
        return TotalOverflow();
    adj.voided = true;
    m_totals.At(AdjustmentKind(type, true), vat) += adj.applied;
    m_totals.At(TotalKind::Net, vat) += delta;
    Count(AdjustmentLineKind(type, true));
    if (applied)
        *applied = adj.applied;
    return {};
}

Refusal FiscalReceipt::Refund(int vat, Amount raw) {
    Amount amount = 0;
    if (!TakeAmount(raw, kMaxAmount, &amount))
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, "Bad amount");
    if (RateTotal(vat) - amount < 0)
        return NegativeTotal();
    m_totals.At(TotalKind::Refund, vat) += amount;
    m_totals.At(TotalKind::Net, vat) -= amount;
    m_lines.append({.kind = Line::Kind::Refund, .vat = vat, .amount = amount, .applied = amount});
    Count(FPTR_LC_REFUND);
    return {};
}

Refusal FiscalReceipt::VoidRefund(int vat, Amount raw) {
    Amount amount = 0;
    if (!TakeAmount(raw, kMaxAmount, &amount))
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, "Bad amount");
    const int found = FindLive(Line::Kind::Refund, vat, 0, amount);
    if (found < 0)
        return Illegal("No such refund to void");
    if (Total() + amount > kMaxAmount)
        return TotalOverflow();
    m_lines[found].voided = true;
    m_totals.At(TotalKind::RefundVoid, vat) += amount;
    m_totals.At(TotalKind::Net, vat) += amount;
    Count(FPTR_LC_REFUND_VOID);
    return {};
}

Refusal FiscalReceipt::AdjustSubtotal(int32_t type, Amount raw, Amount* applied) {
    Amount given = 0;
    if (Refusal r = AdjustmentAmount(type, raw, &given))
        return r;
    const bool discount = IsDiscount(type);
    const Amount subtotal = Total();
    const Amount adj = Applied(type, given, subtotal);
    if (adj <= 0)
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, "Adjustment rounds to nothing");
    if (discount && adj > subtotal)
        return NegativeTotal();
    if (!discount && subtotal + adj > kMaxAmount)
        return TotalOverflow();

    // Spread in proportion to the rates' totals; the rounding remainder goes on the last rate.
    int last = -1;
    for (int v = 0; v < kVatSlots; ++v)
        if (RateTotal(v) > 0)
            last = v;
    if (last < 0)
        return discount ? NegativeTotal() : Illegal("Nothing to adjust");
    std::array<Amount, kVatSlots> spread{};
    Amount spreadSum = 0;
    for (int v = 0; v < last; ++v) {
        if (RateTotal(v) <= 0)
            continue;
        spread[v] = RoundDiv(static_cast<__int128>(adj / 100) * RateTotal(v), subtotal) * 100;
        spreadSum += spread[v];
    }
    spread[last] = adj - spreadSum;
    for (int v = 0; v < kVatSlots; ++v) {
        if (discount)
            spread[v] = -spread[v];
        if (RateTotal(v) + spread[v] < 0)
            return NegativeTotal();
    }
    for (int v = 0; v < kVatSlots; ++v) {
        m_totals.At(TotalKind::Net, v) += spread[v];
        m_totals.At(discount ? TotalKind::SubtotalDiscount : TotalKind::SubtotalSurcharge, v) +=
            spread[v] < 0 ? -spread[v] : spread[v];
    }
    Line line{.kind = Line::Kind::SubtotalAdjustment, .type = type, .amount = given, .applied = adj};
    line.spread = spread;
    m_lines.append(line);
    Count(discount ? FPTR_LC_SUBTOTAL_DISCOUNT : FPTR_LC_SUBTOTAL_SURCHARGE);
    if (applied)
        *applied = adj;
    return {};
}

Refusal FiscalReceipt::VoidSubtotalAdjustment(int32_t type, Amount raw, Amount* applied) {
    Amount given = 0;
    if (Refusal r = AdjustmentAmount(type, raw, &given))
        return r;
    const int found = FindLive(Line::Kind::SubtotalAdjustment, 0, type, given);
    if (found < 0)
        return Illegal("No such subtotal adjustment to void");
    Line& adj = m_lines[found];
    for (int v = 0; v < kVatSlots; ++v)
        if (RateTotal(v) - adj.spread[v] < 0)
            return NegativeTotal();
    if (Total() + (IsDiscount(type) ? adj.applied : 0) > kMaxAmount)
        return TotalOverflow();
    const bool discount = IsDiscount(type);
    for (int v = 0; v < kVatSlots; ++v) {
        m_totals.At(TotalKind::Net, v) -= adj.spread[v];
        m_totals.At(discount ? TotalKind::SubtotalDiscountVoid : TotalKind::SubtotalSurchargeVoid, v) +=
            adj.spread[v] < 0 ? -adj.spread[v] : adj.spread[v];
    }
    adj.voided = true;
    Count(discount ? FPTR_LC_SUBTOTAL_DISCOUNT_VOID : FPTR_LC_SUBTOTAL_SURCHARGE_VOID);
    if (applied)
        *applied = adj.applied;
    return {};
}

Refusal FiscalReceipt::Pay(Amount raw, int tender) {
    Amount payment = 0;
    if (!TakeAmount(raw, kMaxAmount, &payment) || tender < 1 || tender > kTenders)
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, "Bad amount");
    if (tender != FPTR_PDL_CASH && payment > Due())
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, "Only cash gives change");
    m_paymentStarted = true;
    m_paid += payment;
    m_tenders[tender] += payment;
    Count(FPTR_LC_TOTAL);
    return {};
}

Refusal FiscalReceipt::OpenTender() {
    if (Total() <= 0)
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, "Nothing to pay");
    m_paymentStarted = true;
    return {};
}

Refusal FiscalReceipt::PayNotPaid(Amount raw) {
    Amount amount = 0;
    if (!TakeAmount(raw, kMaxAmount, &amount))
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, "Bad amount");
    if (amount > Due())
        return Extended(OPOS_EFPTR_BAD_ITEM_AMOUNT, "Not-paid amount beyond what is due");
    m_paymentStarted = true;
    m_paid += amount;
    m_totals.At(TotalKind::NotPaid, 0) += amount;
    Count(FPTR_LC_TOTAL);
    return {};
}

int FiscalReceipt::LineCount(int lineKind) const {
    return lineKind >= 1 && lineKind <= kLineKinds ? m_lineCount[lineKind] : 0;
}

Amount FiscalReceipt::Tender(int tender) const {
    if (tender < 1 || tender > kTenders)
        return 0;
    return m_tenders[tender] - (tender == FPTR_PDL_CASH ? Change() : 0);
}

Tenders FiscalReceipt::AllTenders() const {
    Tenders t{};
    for (int i = 1; i <= kTenders; ++i)
        t[i] = Tender(i);
    return t;
}

Totals FiscalReceipt::FinalTotals(const QList<int32_t>& rates) const {
    Totals t = m_totals;
    for (int v = 0; v < kVatSlots; ++v) {
        t.At(TotalKind::Gross, v) = t.Get(TotalKind::Item, v) - t.Get(TotalKind::ItemVoid, v) +
                                    t.Get(TotalKind::Surcharge, v) - t.Get(TotalKind::SurchargeVoid, v) +
                                    t.Get(TotalKind::SubtotalSurcharge, v) -
                                    t.Get(TotalKind::SubtotalSurchargeVoid, v);
        const Amount net = t.Get(TotalKind::Net, v);
        const int32_t rate = v >= 1 && v <= rates.size() ? rates[v - 1] : 0;
        // Prices hold the VAT: its part of the net is rate / (100 % + rate).
        const Amount vat = RoundDiv(static_cast<__int128>(net / 100) * rate, 10000 + rate) * 100;
        t.At(TotalKind::Vat, v) = vat;
        t.At(TotalKind::VatCategory, v) = net - vat;
    }
    return t;
}

} // namespace sim
