#pragma once

#include "OposTypes.h"

#include <QString>

#include <array>

namespace sim {

// Rate 0 is the exempt rate; 1..8 the VAT table's rates.
inline constexpr int kMaxVatRates = 8;
inline constexpr int kVatSlots = kMaxVatRates + 1;

// What a totalizer adds up, numbered as the GetTotalizer items are.
enum class TotalKind {
    Gross = 1,
    Net,
    Discount,
    DiscountVoid,
    Item,
    ItemVoid,
    NotPaid,
    Refund,
    RefundVoid,
    SubtotalDiscount,
    SubtotalDiscountVoid,
    SubtotalSurcharge,
    SubtotalSurchargeVoid,
    Surcharge,
    SurchargeVoid,
    Vat,
    VatCategory,
};
inline constexpr int kTotalKinds = 17;

// Amounts by kind and VAT rate: one receipt, one day or the grand total.
struct Totals {
    std::array<std::array<Amount, kVatSlots>, kTotalKinds + 1> byKind{};

    Amount Get(TotalKind kind, int vat) const { return byKind[static_cast<int>(kind)][vat]; }
    Amount& At(TotalKind kind, int vat) { return byKind[static_cast<int>(kind)][vat]; }
    Amount Sum(TotalKind kind) const {
        Amount s = 0;
        for (Amount a : byKind[static_cast<int>(kind)])
            s += a;
        return s;
    }
    void Add(const Totals& other) {
        for (size_t k = 0; k < byKind.size(); ++k)
            for (size_t v = 0; v < kVatSlots; ++v)
                byKind[k][v] += other.byKind[k][v];
    }
    bool operator==(const Totals&) const = default;
};

// Document counts, by the day or since the first start.
struct Counters {
    int fiscalReceipts = 0;
    int voidedReceipts = 0;
    int creditNotes = 0;
    int nonFiscalDocs = 0;
    int trainingReceipts = 0;
    int zReports = 0;
    int restarts = 0;
};

// Round to whole hundredths, halves away from zero: the printer's own precision.
inline Amount RoundToCents(Amount a) {
    const Amount r = a % 100;
    Amount base = a - r;
    if (r >= 50)
        base += 100;
    else if (r <= -50)
        base -= 100;
    return base;
}

// num / den rounded half away from zero; den > 0.
inline Amount RoundDiv(__int128 num, __int128 den) {
    const __int128 q = num / den;
    const __int128 r = num % den;
    if (2 * (r < 0 ? -r : r) >= den)
        return static_cast<Amount>(num < 0 ? q - 1 : q + 1);
    return static_cast<Amount>(q);
}

// Whole hundredths as decimal text: 25.00 gives "2500".
inline QString CentsText(Amount a) {
    return QString::number(RoundToCents(a) / 100);
}

// The printed form: "25,00", "-3,50".
inline QString MoneyText(Amount a) {
    const Amount c = RoundToCents(a) / 100;
    const Amount abs = c < 0 ? -c : c;
    return QStringLiteral("%1%2,%3")
        .arg(c < 0 ? QStringLiteral("-") : QString())
        .arg(abs / 100)
        .arg(abs % 100, 2, 10, QLatin1Char('0'));
}

} // namespace sim
