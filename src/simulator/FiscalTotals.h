#pragma once

#include "OposTypes.h"

#include <QString>

#include <array>
#include <cstdint>

namespace sim {

// Rate 0 is the exempt rate; 1..8 the VAT table's rates.
inline constexpr int kMaxVatRates = 8;
inline constexpr int kVatSlots = kMaxVatRates + 1;
// Tenders 1..22 as the GD_TENDER list numbers them; index 0 unused.
inline constexpr int kTenders = 22;
using Tenders = std::array<Amount, kTenders + 1>;

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

// Document counts, by the day or since the first start. Training receipts are not here: training
// never reaches the fiscal memory.
struct Counters {
    int fiscalReceipts = 0;
    int voidedReceipts = 0;
    int creditNotes = 0;
    int nonFiscalDocs = 0;
    int zReports = 0;
    int restarts = 0;
    bool operator==(const Counters&) const = default;
};

// A refusal: an OPOS result with its extended code and a sentence for ErrorString.
struct Refusal {
    int32_t code = 0;
    int32_t extended = 0;
    QString text;
    explicit operator bool() const { return code != 0; }
};

} // namespace sim
