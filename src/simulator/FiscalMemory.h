#pragma once

#include "FiscalTotals.h"

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QStringList>

#include <memory>

namespace sim {

struct ModelSwitches;

// One closed fiscal day as the fiscal memory keeps it.
struct ZRecord {
    int number = 0;
    QDateTime when;
    Totals day;
    Counters counters;
    Tenders tenders{};
    Amount grandNet = 0; // grand total after this day
};

// A document of the electronic journal.
struct JournalDocument {
    enum class Kind { Other = 0, ZReport = 1, Fiscal = 2, NonFiscal = 3, CreditNote = 4 };
    Kind kind = Kind::Other;
    int number = 0;  // receipt number in its day, Z number for a Z report
    int zNumber = 0; // the day it belongs to: the number its Z report gets
    QDateTime when;
    QStringList lines;
};

struct HeaderLine {
    QString text;
    bool doubleWidth = false;
    bool operator==(const HeaderLine&) const = default;
};

// What one ended fiscal receipt leaves behind.
struct ReceiptRecord {
    enum class Outcome { Sale, CreditNote, Voided };
    Outcome outcome = Outcome::Sale;
    Totals totals;          // a sale's totals; a credit note's amounts as refunds
    Tenders tenders{};      // what the customer paid, by tender, change taken off cash
    Amount voidedTotal = 0; // a voided receipt's running total when it was voided
    QDateTime begunAt;      // the first receipt of a day opens the day at this time
    JournalDocument document;
};

// The printer's permanent memory: everything that survives a power cut and counts fiscally. Reads
// are free; every change goes through one commit, which is one whole document (a receipt, a Z
// report, a non-fiscal document) or one setting, so that a store on disk can make each commit a
// single transaction.
class IFiscalMemory {
public:
    virtual ~IFiscalMemory() = default;

    virtual const Totals& DayTotals() const = 0;
    virtual const Totals& GrandTotals() const = 0;
    virtual const Counters& DayCounters() const = 0;
    virtual const Counters& GrandCounters() const = 0;
    virtual const Tenders& DayTenders() const = 0;
    virtual Amount DayVoided() const = 0; // total of the day's voided receipts
    virtual bool DayOpened() const = 0;
    virtual QDateTime DayOpenedAt() const = 0;
    // The time of the last fiscal document (receipt, credit note, voided receipt or Z report).
    virtual QDateTime LastFiscalDocument() const = 0;
    virtual const QList<ZRecord>& ZRecords() const = 0;
    virtual int Remaining() const = 0;
    virtual const QList<JournalDocument>& Journal() const = 0;
    virtual const QList<int32_t>& VatRates() const = 0; // hundredths of a percent, rate 1 first
    virtual const QList<HeaderLine>& HeaderLines() const = 0;
    virtual const QList<HeaderLine>& TrailerLines() const = 0;
    virtual const QMap<int, int>& DepartmentLinks() const = 0; // department -> rate
    virtual int HeaderChanges() const = 0;
    virtual int VatChanges() const = 0;

    // An ended receipt: counters, totals, tenders, day opening and journal in one.
    virtual void CommitReceipt(const ReceiptRecord& receipt) = 0;
    // A Z report: the day's record, the journal document, a new day. False, and nothing changed,
    // when the memory is full.
    virtual bool CommitZReport(const QDateTime& when, const JournalDocument& document) = 0;
    // A non-fiscal document (a duplicate receipt is one): counted and journaled.
    virtual void CommitNonFiscal(const JournalDocument& document) = 0;
    virtual void CommitRestart() = 0;
    // The day's totals back to zero without a Z record.
    virtual void CommitDayReset() = 0;
    virtual void CommitVatTable(const QList<int32_t>& rates) = 0;
    virtual void CommitHeaderLine(int index, const HeaderLine& line) = 0; // index 0-based
    virtual void CommitTrailerLine(int index, const HeaderLine& line) = 0;
    virtual void CommitDepartmentLinks(const QMap<int, int>& links) = 0;
    // The simulator's fault API: pretend that many Z records are left.
    virtual void SetRemaining(int records) = 0;
};

// The fiscal memory of a new printer of `model`, held in the process.
std::unique_ptr<IFiscalMemory> MakeInMemoryFiscalMemory(const ModelSwitches& model, int capacity = 1800);

// The day rules, read off the memory.
// The day opened 24 hours or more before `now`: no fiscal receipt until a Z report.
bool DayEndRequired(const IFiscalMemory& memory, const QDateTime& now);
// `when`, to the minute, lies before the last fiscal document: the clock may not go there.
bool BeforeLastFiscalDocument(const IFiscalMemory& memory, const QDateTime& when);
// The number the next fiscal receipt of the day gets.
int NextReceiptNumber(const IFiscalMemory& memory);
// The number the next Z report gets, which is also the number of the day in progress.
int CurrentDayNumber(const IFiscalMemory& memory);

} // namespace sim
