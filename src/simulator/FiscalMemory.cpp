#include "FiscalMemory.h"

#include "FiscalState.h"
#include "ModelSwitches.h"

namespace sim {

namespace {

class InMemoryFiscalMemory : public FiscalStateMemory {
public:
    InMemoryFiscalMemory(const ModelSwitches& model, int capacity)
        : FiscalStateMemory(FiscalState(model, capacity), {}) {}

    int JournalCount() const override { return static_cast<int>(m_journal.size()); }
    QList<JournalDocument> JournalDocuments(const JournalFilter& filter) const override {
        QList<JournalDocument> out;
        for (const JournalDocument& d : m_journal)
            if (Matches(filter, d))
                out.append(d);
        return out;
    }

    void CommitDocumentBegun(const OpenDocument& document) override { m_s.unfinished = document; }
    void CommitReceipt(const ReceiptRecord& r) override { m_journal.append(m_s.Receipt(r)); }
    bool CommitZReport(const QDateTime& when, const JournalDocument& document) override {
        JournalDocument doc = document;
        const auto z = m_s.ZReport(when, doc);
        if (!z)
            return false;
        m_z.append(*z);
        m_journal.append(std::move(doc));
        return true;
    }
    void CommitNonFiscal(const JournalDocument& document) override {
        m_journal.append(m_s.NonFiscal(document));
    }
    void CommitRestart() override { m_s.Restart(); }
    void CommitDayReset() override { m_s.DayReset(); }
    void CommitVatTable(const QList<int32_t>& rates) override { m_s.VatTable(rates); }
    void CommitHeaderLine(int index, const HeaderLine& line) override { m_s.HeaderLineAt(index, line); }
    void CommitTrailerLine(int index, const HeaderLine& line) override { m_s.trailer[index] = line; }
    void CommitDepartmentLinks(const QMap<int, int>& links) override { m_s.departments = links; }
    void SetRemaining(int records) override { m_s.remaining = records; }

private:
    QList<JournalDocument> m_journal;
};

} // namespace

std::unique_ptr<IFiscalMemory> MakeInMemoryFiscalMemory(const ModelSwitches& model, int capacity) {
    return std::make_unique<InMemoryFiscalMemory>(model, capacity);
}

int JournalDate(const QDateTime& when) {
    const QDate d = when.date();
    return d.year() * 10000 + d.month() * 100 + d.day();
}

bool Matches(const JournalFilter& filter, const JournalDocument& document) {
    if (filter.kind != 0 && static_cast<int>(document.kind) != filter.kind)
        return false;
    const auto within = [](const std::optional<std::pair<int, int>>& range, int value) {
        return !range || (value >= range->first && value <= range->second);
    };
    return within(filter.dates, JournalDate(document.when)) && within(filter.numbers, document.number) &&
           (!filter.day || document.zNumber == *filter.day);
}

bool DayEndRequired(const IFiscalMemory& memory, const QDateTime& now) {
    return memory.DayOpened() && memory.DayOpenedAt().secsTo(now) >= 24 * 3600;
}

bool BeforeLastFiscalDocument(const IFiscalMemory& memory, const QDateTime& when) {
    const QDateTime last = memory.LastFiscalDocument();
    if (!last.isValid())
        return false;
    // Dates travel to the minute: the minute of the last document is still allowed.
    const QDateTime lastMinute(last.date(), QTime(last.time().hour(), last.time().minute()));
    return when < lastMinute;
}

int NextReceiptNumber(const IFiscalMemory& memory) {
    const Counters& c = memory.DayCounters();
    return c.fiscalReceipts + c.voidedReceipts + c.creditNotes + 1;
}

int CurrentDayNumber(const IFiscalMemory& memory) {
    return static_cast<int>(memory.ZRecords().size()) + 1;
}

} // namespace sim
