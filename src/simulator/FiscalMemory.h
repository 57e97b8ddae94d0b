#pragma once

#include "FiscalTotals.h"

#include <QDateTime>
#include <QList>
#include <QStringList>

#include <array>

namespace sim {

// One closed fiscal day as the fiscal memory keeps it.
struct ZRecord {
    int number = 0;
    QDateTime when;
    Totals day;
    Counters counters;
    Amount grandNet = 0; // grand total after this day
};

// A document of the electronic journal.
struct JournalDocument {
    enum class Kind { Fiscal = 2, NonFiscal = 3, CreditNote = 4, ZReport = 1, Other = 0 };
    Kind kind = Kind::Other;
    int number = 0;  // receipt number in its day, Z number for a Z report
    int zNumber = 0; // the day it belongs to: number of the next Z
    QDateTime when;
    QStringList lines;
};

// The printer's permanent memory: day and grand totals, counters, Z records and the journal.
class IFiscalMemory {
public:
    virtual ~IFiscalMemory() = default;

    virtual const Totals& DayTotals() const = 0;
    virtual const Totals& GrandTotals() const = 0;
    virtual const Counters& DayCounters() const = 0;
    virtual Counters& MutableDayCounters() = 0;
    virtual const Counters& GrandCounters() const = 0;
    virtual Counters& MutableGrandCounters() = 0;
    virtual Amount DayTender(int tender) const = 0; // 1..22
    virtual Amount DayVoided() const = 0;           // total of the day's voided receipts
    // A closed receipt: its totals into the day and the grand total, its tenders into the day.
    virtual void AddReceipt(const Totals& receipt, const std::array<Amount, 23>& tenders) = 0;
    virtual void AddVoided(Amount total) = 0;
    // Writes a Z record of the day and starts a new day; false when the memory is full.
    virtual bool CloseDay(const QDateTime& when) = 0;
    // Day totals back to zero without a Z record.
    virtual void ResetDay() = 0;
    virtual const QList<ZRecord>& ZRecords() const = 0;
    virtual int Remaining() const = 0;
    virtual void SetRemaining(int records) = 0;
    virtual void AppendJournal(const JournalDocument& doc) = 0;
    virtual const QList<JournalDocument>& Journal() const = 0;
    virtual int HeaderChanges() const = 0;
    virtual void CountHeaderChange() = 0;
    virtual int VatChanges() const = 0;
    virtual void CountVatChange() = 0;
};

class InMemoryFiscalMemory : public IFiscalMemory {
public:
    explicit InMemoryFiscalMemory(int capacity = 1800) : m_remaining(capacity) {}

    const Totals& DayTotals() const override { return m_day; }
    const Totals& GrandTotals() const override { return m_grand; }
    const Counters& DayCounters() const override { return m_dayCounters; }
    Counters& MutableDayCounters() override { return m_dayCounters; }
    const Counters& GrandCounters() const override { return m_grandCounters; }
    Counters& MutableGrandCounters() override { return m_grandCounters; }
    Amount DayTender(int tender) const override;
    Amount DayVoided() const override { return m_dayVoided; }
    void AddReceipt(const Totals& receipt, const std::array<Amount, 23>& tenders) override;
    void AddVoided(Amount total) override { m_dayVoided += total; }
    bool CloseDay(const QDateTime& when) override;
    void ResetDay() override;
    const QList<ZRecord>& ZRecords() const override { return m_z; }
    int Remaining() const override { return m_remaining; }
    void SetRemaining(int records) override { m_remaining = records; }
    void AppendJournal(const JournalDocument& doc) override { m_journal.append(doc); }
    const QList<JournalDocument>& Journal() const override { return m_journal; }
    int HeaderChanges() const override { return m_headerChanges; }
    void CountHeaderChange() override { ++m_headerChanges; }
    int VatChanges() const override { return m_vatChanges; }
    void CountVatChange() override { ++m_vatChanges; }

private:
    Totals m_day, m_grand;
    Counters m_dayCounters, m_grandCounters;
    std::array<Amount, 23> m_tenders{};
    Amount m_dayVoided = 0;
    QList<ZRecord> m_z;
    QList<JournalDocument> m_journal;
    int m_remaining;
    int m_headerChanges = 0;
    int m_vatChanges = 0;
};

} // namespace sim
