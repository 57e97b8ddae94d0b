#pragma once

#include "FiscalMemory.h"

#include <optional>

namespace sim {

// The fiscal memory's numbers and settings, and what each commit does to them. Every store applies
// its commits through this one type, so that they count alike; the Z records and the journal
// documents a commit makes are handed back for the store to keep.
struct FiscalState {
    FiscalState(const ModelSwitches& model, int capacity);

    Totals day, grand;
    Counters dayCounters, grandCounters;
    Tenders tenders{};
    Amount dayVoided = 0;
    bool dayOpened = false;
    QDateTime dayOpenedAt, lastFiscal;
    int zCount = 0;
    int remaining = 0;
    QList<int32_t> vatRates;
    QList<HeaderLine> header, trailer;
    QMap<int, int> departments;
    int headerChanges = 0;
    int vatChanges = 0;
    std::optional<OpenDocument> unfinished;

    // The receipt's journal document, numbered into its day.
    JournalDocument Receipt(const ReceiptRecord& receipt);
    // The day's record, and `document` numbered; nullopt, and nothing changed, when the memory is full.
    std::optional<ZRecord> ZReport(const QDateTime& when, JournalDocument& document);
    JournalDocument NonFiscal(JournalDocument document);
    void Restart() { Count(&Counters::restarts); }
    void DayReset();
    void VatTable(const QList<int32_t>& rates);
    void HeaderLineAt(int index, const HeaderLine& line);

private:
    void Count(int Counters::*counter);
    JournalDocument Numbered(JournalDocument document) const;
};

} // namespace sim
