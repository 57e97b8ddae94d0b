#pragma once

#include "FiscalMemory.h"
#include "FiscalReceipt.h"

#include "OposAll.h"

// Documents for the fiscal memory suites, built as the printer builds them.
namespace fm {

inline const QDateTime kMorning(QDate(2025, 3, 10), QTime(9, 0));

// A receipt of one item per amount (hundredths) at `vat`, paid in cash, ended at `when`.
inline sim::ReceiptRecord Sale(const sim::IFiscalMemory& m, QList<int> cents, int vat, const QDateTime& when,
                               sim::ReceiptRecord::Outcome outcome = sim::ReceiptRecord::Outcome::Sale,
                               int number = 0, const QStringList& lines = {}) {
    using O = sim::ReceiptRecord::Outcome;
    sim::FiscalReceipt r(outcome == O::CreditNote ? OposAll::FPTR_RT_REFUND : OposAll::FPTR_RT_SALES);
    for (int c : cents)
        r.AddItem(vat, Amount{c} * 100);
    r.Pay(r.Total(), OposAll::FPTR_PDL_CASH);
    sim::ReceiptRecord rec;
    rec.outcome = outcome;
    rec.begunAt = when;
    rec.voidedTotal = r.Total();
    const sim::Totals t = r.FinalTotals(m.VatRates());
    if (outcome == O::Sale) {
        rec.totals = t;
        rec.tenders = r.AllTenders();
    } else if (outcome == O::CreditNote) {
        rec.totals.At(sim::TotalKind::Refund, vat) = t.Get(sim::TotalKind::Net, vat);
    }
    rec.document.kind = outcome == O::CreditNote ? sim::JournalDocument::Kind::CreditNote
                                                 : sim::JournalDocument::Kind::Fiscal;
    rec.document.when = when;
    rec.document.number = number;
    rec.document.lines = lines;
    return rec;
}

inline sim::JournalDocument Doc(sim::JournalDocument::Kind kind, const QDateTime& when, int number = 0,
                                const QStringList& lines = {}) {
    sim::JournalDocument d;
    d.kind = kind;
    d.when = when;
    d.number = number;
    d.lines = lines;
    return d;
}

} // namespace fm
