#pragma once

#include "FiscalMemory.h"
#include "OposTypes.h"

#include <QDateTime>
#include <QStringList>

#include <optional>

namespace sim {

struct ModelSwitches;

// The texts of the printer's reports, built from the fiscal memory alone.

// "dd-MM-yyyy HH:mm", as every document prints its time.
QString DocumentTime(const QDateTime& when);
// A date of the reports and of SetDate: "ddmmyyyyhhmm", twelve digits of a real date and time.
std::optional<QDateTime> ParseFiscalDate(const QString& text);

// The day's VAT per rate: the sum of the receipts' rounded VAT, or, with the model's switch, the VAT
// of each rate's day total.
Totals DayVat(const IFiscalMemory& memory, const ModelSwitches& model);
// The body of X and Z reports: the day's totals, each rate with its VAT, the counters, the grand total.
QStringList DayReportLines(const IFiscalMemory& memory, const ModelSwitches& model);
// Fiscal memory records by Z number (inclusive) or by date.
QList<ZRecord> RecordsByNumber(const IFiscalMemory& memory, int from, int to);
QList<ZRecord> RecordsByDate(const IFiscalMemory& memory, const QDateTime& from, const QDateTime& to);
QStringList RecordReportLines(const QList<ZRecord>& records);
QStringList PeriodicReportLines(const QList<ZRecord>& records, const QDateTime& from, const QDateTime& to);
// The electronic journal as DirectIO 1500 asks for it: EJ mode `mode` (0 all, 1 by dates
// YYYYMMDD, 2 by numbers, 3 current day) and document type `type` (0 all, 1 Z, 2 fiscal,
// 3 non-fiscal, 4 credit notes).
QStringList JournalReportLines(const IFiscalMemory& memory, int mode, int type, int fromDate, int toDate,
                               int fromNumber, int toNumber);
QStringList FiscalMemorySummary(const IFiscalMemory& memory);

} // namespace sim
