#include "FiscalState.h"

#include "ModelSwitches.h"

namespace sim {

FiscalState::FiscalState(const ModelSwitches& model, int capacity)
    : remaining(capacity), vatRates(model.defaultVatRates), header(6),
      trailer(3), departments{{1, 1}, {2, 2}} {}

void FiscalState::Count(int Counters::*counter) {
    ++(dayCounters.*counter);
    ++(grandCounters.*counter);
}

JournalDocument FiscalState::Numbered(JournalDocument document) const {
    // A Z report closes the day it reports on; every other document belongs to the day in progress.
    document.zNumber = zCount + (document.kind == JournalDocument::Kind::ZReport ? 0 : 1);
    return document;
}

JournalDocument FiscalState::Receipt(const ReceiptRecord& r) {
    using O = ReceiptRecord::Outcome;
    if (!dayOpened) {
        dayOpened = true;
        dayOpenedAt = r.begunAt;
    }
    switch (r.outcome) {
    case O::Voided:
        Count(&Counters::voidedReceipts);
        dayVoided += r.voidedTotal;
        break;
    case O::CreditNote:
    case O::Sale:
        Count(r.outcome == O::Sale ? &Counters::fiscalReceipts : &Counters::creditNotes);
        day.Add(r.totals);
        grand.Add(r.totals);
        for (size_t i = 0; i < tenders.size(); ++i)
            tenders[i] += r.tenders[i];
        break;
    }
    lastFiscal = r.document.when;
    unfinished.reset();
    return Numbered(r.document);
}

std::optional<ZRecord> FiscalState::ZReport(const QDateTime& when, JournalDocument& document) {
    if (remaining <= 0)
        return std::nullopt;
    ZRecord z;
    z.number = zCount + 1;
    z.when = when;
    z.day = day;
    z.counters = dayCounters;
    z.counters.zReports = z.number;
    z.tenders = tenders;
    z.grandNet = grand.Sum(TotalKind::Net);
    ++zCount;
    document = Numbered(document);
    --remaining;
    ++grandCounters.zReports;
    lastFiscal = when;
    DayReset();
    dayOpened = false;
    dayOpenedAt = {};
    return z;
}

JournalDocument FiscalState::NonFiscal(JournalDocument document) {
    Count(&Counters::nonFiscalDocs);
    unfinished.reset();
    return Numbered(std::move(document));
}

void FiscalState::DayReset() {
    day = {};
    dayCounters = Counters{.restarts = dayCounters.restarts};
    tenders = {};
    dayVoided = 0;
}

void FiscalState::VatTable(const QList<int32_t>& rates) {
    vatRates = rates;
    ++vatChanges;
}

void FiscalState::HeaderLineAt(int index, const HeaderLine& line) {
    header[index] = line;
    ++headerChanges;
}

} // namespace sim
