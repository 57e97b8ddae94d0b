#pragma once

#include "FiscalTotals.h"

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

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

// Which documents of the electronic journal a report asks for; every condition given must hold.
struct JournalFilter {
    int kind = 0;                               // 0 every kind, else a JournalDocument::Kind
    std::optional<std::pair<int, int>> dates;   // YYYYMMDD, both ends included
    std::optional<std::pair<int, int>> numbers; // document numbers, both ends included
    std::optional<int> day;                     // the documents of that day (its Z number)
};
// The journal's date of `when`: YYYYMMDD.
int JournalDate(const QDateTime& when);
bool Matches(const JournalFilter& filter, const JournalDocument& document);

// A document begun and not ended yet. The memory keeps it so that, when a printer's power (or the
// bench) comes back after a cut, the printer can end it as a real one does.
struct OpenDocument {
    JournalDocument::Kind kind = JournalDocument::Kind::Fiscal; // Fiscal, CreditNote or NonFiscal
    int number = 0;
    QDateTime begunAt;
    QString creditNoteNumber;
    bool operator==(const OpenDocument&) const = default;
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
    virtual int JournalCount() const = 0;
    // The journal's documents that match, oldest first.
    virtual QList<JournalDocument> JournalDocuments(const JournalFilter& filter) const = 0;
    virtual const QList<int32_t>& VatRates() const = 0; // hundredths of a percent, rate 1 first
    virtual const QList<HeaderLine>& HeaderLines() const = 0;
    virtual const QList<HeaderLine>& TrailerLines() const = 0;
    virtual const QMap<int, int>& DepartmentLinks() const = 0; // department -> rate
    virtual int HeaderChanges() const = 0;
    virtual int VatChanges() const = 0;
    // The document begun and not committed since: nullopt between documents.
    virtual std::optional<OpenDocument> UnfinishedDocument() const = 0;

    // A fiscal receipt or a non-fiscal document begins; its commit at the end clears it.
    virtual void CommitDocumentBegun(const OpenDocument& document) = 0;
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

inline constexpr int kFiscalMemoryCapacity = 1800; // Z records

// The fiscal memory of a new printer of `model`, held in the process.
std::unique_ptr<IFiscalMemory> MakeInMemoryFiscalMemory(const ModelSwitches& model,
                                                        int capacity = kFiscalMemoryCapacity);

// Where a printer gets its fiscal memory when a model is opened.
using FiscalMemoryFactory = std::function<std::unique_ptr<IFiscalMemory>(const ModelSwitches& model)>;
// Replaces a printer's fiscal memory in place: takes `memory` and leaves another (or the same) in
// it. True when what it leaves is a new, empty memory, false when it is the old one's content.
using FiscalMemorySwap = std::function<bool(std::unique_ptr<IFiscalMemory>& memory)>;

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
