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

// Commits in a few words, ";" apart, each made at `when`:
//   sale C[,C...] [VAT] | voided C | credit C [VAT] | nonfiscal | z | full (no room left) | restart
//   | dayreset | vat R[,R...] | header TEXT | begun (a receipt, number 2)
// C are hundredths. Answers "0" per step, or "full" for a Z report the memory has no room for.
inline QString Commit(sim::IFiscalMemory& m, const QString& steps, const QDateTime& when = kMorning) {
    using K = sim::JournalDocument::Kind;
    using O = sim::ReceiptRecord::Outcome;
    QStringList out;
    for (const QString& step : steps.split(u';', Qt::SkipEmptyParts)) {
        const QStringList w = step.simplified().split(u' ');
        QList<int> values;
        for (const QString& v : w.value(1).split(u',', Qt::SkipEmptyParts))
            values << v.toInt();
        const int vat = w.value(2, QStringLiteral("1")).toInt();
        const QString& verb = w[0];
        QString answer = QStringLiteral("0");
        if (verb == QLatin1String("sale") || verb == QLatin1String("voided") ||
            verb == QLatin1String("credit"))
            m.CommitReceipt(Sale(m, values, vat, when,
                                 verb == QLatin1String("sale")     ? O::Sale
                                 : verb == QLatin1String("voided") ? O::Voided
                                                                   : O::CreditNote));
        else if (verb == QLatin1String("nonfiscal"))
            m.CommitNonFiscal(Doc(K::NonFiscal, when));
        else if (verb == QLatin1String("z") && !m.CommitZReport(when, Doc(K::ZReport, when)))
            answer = QStringLiteral("full");
        else if (verb == QLatin1String("full"))
            m.SetRemaining(0);
        else if (verb == QLatin1String("restart"))
            m.CommitRestart();
        else if (verb == QLatin1String("dayreset"))
            m.CommitDayReset();
        else if (verb == QLatin1String("vat"))
            m.CommitVatTable(QList<int32_t>(values.begin(), values.end()));
        else if (verb == QLatin1String("header"))
            m.CommitHeaderLine(0, {w.value(1), false});
        else if (verb == QLatin1String("begun"))
            m.CommitDocumentBegun({K::Fiscal, 2, when, {}});
        else if (verb != QLatin1String("z"))
            answer = QStringLiteral("bad step ") + step;
        out << answer;
    }
    return out.join(u';');
}

} // namespace fm
