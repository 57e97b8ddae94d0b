#pragma once

#include "FiscalMemory.h"

class SqlConnection;

namespace sim {

struct FiscalState;

// The fiscal memory's rows: what a commit writes and what opening reads back. Writers return
// false with the error in the connection; they run inside the caller's transaction.
namespace FiscalRows {

// Writes whatever of `after` differs from `before`; all of it when `before` is null.
bool WriteState(SqlConnection& db, const FiscalState* before, const FiscalState& after);
bool InsertZRecord(SqlConnection& db, const ZRecord& z);
bool InsertJournal(SqlConnection& db, const JournalDocument& document);
bool WriteModel(SqlConnection& db, const QString& deviceName);

// The model the file belongs to; empty when it names none.
QString ReadModel(SqlConnection& db);
// Everything but the journal, checked as it is read: false with `problem` naming the first row
// that is missing or out of its range.
bool Load(SqlConnection& db, FiscalState& state, QList<ZRecord>& z, int& journalCount, QString& problem);
// The journal's documents that match, oldest first; false when the read fails.
bool ReadJournal(SqlConnection& db, const JournalFilter& filter, QList<JournalDocument>& out);

} // namespace FiscalRows
} // namespace sim
