#include "FiscalMemory.h"

#include "ModelSwitches.h"

namespace sim {

namespace {

class InMemoryFiscalMemory : public IFiscalMemory {
public:
    InMemoryFiscalMemory(const ModelSwitches& model, int capacity)
        : m_remaining(capacity), m_vatRates(model.defaultVatRates), m_header(6),
          m_trailer(3), m_departments{{1, 1}, {2, 2}} {}

    const Totals& DayTotals() const override { return m_day; }
    const Totals& GrandTotals() const override { return m_grand; }
    const Counters& DayCounters() const override { return m_dayCounters; }
    const Counters& GrandCounters() const override { return m_grandCounters; }
    const Tenders& DayTenders() const override { return m_tenders; }
    Amount DayVoided() const override { return m_dayVoided; }
    bool DayOpened() const override { return m_dayOpened; }
    QDateTime DayOpenedAt() const override { return m_dayOpenedAt; }
    QDateTime LastFiscalDocument() const override { return m_lastFiscal; }
    const QList<ZRecord>& ZRecords() const override { return m_z; }
    int Remaining() const override { return m_remaining; }
    const QList<JournalDocument>& Journal() const override { return m_journal; }
    const QList<int32_t>& VatRates() const override { return m_vatRates; }
    const QList<HeaderLine>& HeaderLines() const override { return m_header; }
    const QList<HeaderLine>& TrailerLines() const override { return m_trailer; }
    const QMap<int, int>& DepartmentLinks() const override { return m_departments; }
    int HeaderChanges() const override { return m_headerChanges; }
    int VatChanges() const override { return m_vatChanges; }

    void CommitReceipt(const ReceiptRecord& r) override {
        using O = ReceiptRecord::Outcome;
        if (!m_dayOpened) {
            m_dayOpened = true;
            m_dayOpenedAt = r.begunAt;
        }
        switch (r.outcome) {
        case O::Voided:
            Count(&Counters::voidedReceipts);
            m_dayVoided += r.voidedTotal;
            break;
        case O::CreditNote:
        case O::Sale:
            Count(r.outcome == O::Sale ? &Counters::fiscalReceipts : &Counters::creditNotes);
            m_day.Add(r.totals);
            m_grand.Add(r.totals);
            for (size_t i = 0; i < m_tenders.size(); ++i)
                m_tenders[i] += r.tenders[i];
            break;
        }
        Journal(r.document);
        m_lastFiscal = r.document.when;
    }

    bool CommitZReport(const QDateTime& when, const JournalDocument& document) override {
        if (m_remaining <= 0)
            return false;
        ZRecord z;
        z.number = static_cast<int>(m_z.size()) + 1;
        z.when = when;
        z.day = m_day;
        z.counters = m_dayCounters;
        z.counters.zReports = z.number;
        z.tenders = m_tenders;
        z.grandNet = m_grand.Sum(TotalKind::Net);
        m_z.append(z);
        --m_remaining;
        ++m_grandCounters.zReports;
        Journal(document);
        m_lastFiscal = when;
        CommitDayReset();
        m_dayOpened = false;
        m_dayOpenedAt = {};
        return true;
    }

    void CommitNonFiscal(const JournalDocument& document) override {
        Count(&Counters::nonFiscalDocs);
        Journal(document);
    }

    void CommitRestart() override { Count(&Counters::restarts); }

    void CommitDayReset() override {
        m_day = {};
        m_dayCounters = Counters{.restarts = m_dayCounters.restarts};
        m_tenders = {};
        m_dayVoided = 0;
    }

    void CommitVatTable(const QList<int32_t>& rates) override {
        m_vatRates = rates;
        ++m_vatChanges;
    }
    void CommitHeaderLine(int index, const HeaderLine& line) override {
        m_header[index] = line;
        ++m_headerChanges;
    }
    void CommitTrailerLine(int index, const HeaderLine& line) override { m_trailer[index] = line; }
    void CommitDepartmentLinks(const QMap<int, int>& links) override { m_departments = links; }
    void SetRemaining(int records) override { m_remaining = records; }

private:
    void Count(int Counters::*counter) {
        ++(m_dayCounters.*counter);
        ++(m_grandCounters.*counter);
    }
    void Journal(JournalDocument document) {
        document.zNumber =
            static_cast<int>(m_z.size()) + (document.kind == JournalDocument::Kind::ZReport ? 0 : 1);
        m_journal.append(std::move(document));
    }

    Totals m_day, m_grand;
    Counters m_dayCounters, m_grandCounters;
    Tenders m_tenders{};
    Amount m_dayVoided = 0;
    bool m_dayOpened = false;
    QDateTime m_dayOpenedAt, m_lastFiscal;
    QList<ZRecord> m_z;
    QList<JournalDocument> m_journal;
    int m_remaining;
    QList<int32_t> m_vatRates;
    QList<HeaderLine> m_header, m_trailer;
    QMap<int, int> m_departments;
    int m_headerChanges = 0;
    int m_vatChanges = 0;
};

} // namespace

std::unique_ptr<IFiscalMemory> MakeInMemoryFiscalMemory(const ModelSwitches& model, int capacity) {
    return std::make_unique<InMemoryFiscalMemory>(model, capacity);
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
