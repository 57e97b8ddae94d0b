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

// A store whose reads all come from a FiscalState and its Z records held in the process; each
// store adds where its journal lies and how its commits are kept.
class FiscalStateMemory : public IFiscalMemory {
public:
    FiscalStateMemory(FiscalState state, QList<ZRecord> z) : m_s(std::move(state)), m_z(std::move(z)) {}

    const Totals& DayTotals() const override { return m_s.day; }
    const Totals& GrandTotals() const override { return m_s.grand; }
    const Counters& DayCounters() const override { return m_s.dayCounters; }
    const Counters& GrandCounters() const override { return m_s.grandCounters; }
    const Tenders& DayTenders() const override { return m_s.tenders; }
    Amount DayVoided() const override { return m_s.dayVoided; }
    bool DayOpened() const override { return m_s.dayOpened; }
    QDateTime DayOpenedAt() const override { return m_s.dayOpenedAt; }
    QDateTime LastFiscalDocument() const override { return m_s.lastFiscal; }
    const QList<ZRecord>& ZRecords() const override { return m_z; }
    int Remaining() const override { return m_s.remaining; }
    const QList<int32_t>& VatRates() const override { return m_s.vatRates; }
    const QList<HeaderLine>& HeaderLines() const override { return m_s.header; }
    const QList<HeaderLine>& TrailerLines() const override { return m_s.trailer; }
    const QMap<int, int>& DepartmentLinks() const override { return m_s.departments; }
    int HeaderChanges() const override { return m_s.headerChanges; }
    int VatChanges() const override { return m_s.vatChanges; }
    std::optional<OpenDocument> UnfinishedDocument() const override { return m_s.unfinished; }

protected:
    FiscalState m_s;
    QList<ZRecord> m_z;
};

} // namespace sim
