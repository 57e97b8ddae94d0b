#include "SqliteFiscalMemory.h"

#include "FiscalMemoryRows.h"
#include "Seams.h"
#include "SqlConnection.h"

#include <QLockFile>

namespace sim {

SqliteFiscalMemory::SqliteFiscalMemory(std::unique_ptr<SqlConnection> db, std::unique_ptr<QLockFile> lock,
                                       FiscalState state, QList<ZRecord> z, int journalCount)
    : FiscalStateMemory(std::move(state), std::move(z)), m_db(std::move(db)), m_lock(std::move(lock)),
      m_journalCount(journalCount) {}

SqliteFiscalMemory::~SqliteFiscalMemory() {
    m_db.reset(); // the file is closed before its lock goes
}

QString SqliteFiscalMemory::FilePath() const {
    return m_db->Path();
}

std::unique_ptr<QLockFile> SqliteFiscalMemory::ReleaseFile() {
    m_db->Drop();
    m_detached = true;
    return std::move(m_lock);
}

void SqliteFiscalMemory::Detach(const QString& error) {
    m_detached = true;
    ShowMessage(QStringLiteral("The fiscal memory %1 could not be written (%2). The file keeps everything up "
                               "to the last document it took; from now on this printer keeps its fiscal "
                               "memory in the bench only, until the bench ends. Check the disk and the "
                               "file, then start the bench again.")
                    .arg(FilePath(), error));
}

template <typename More> bool SqliteFiscalMemory::Commit(const FiscalState& next, More more) {
    bool written = false;
    if (!m_detached) {
        written = m_db->Begin() && FiscalRows::WriteState(*m_db, &m_s, next) && more();
        if (written && m_dropAtNextCommit) {
            m_db->Drop();
            written = false;
        } else if (written) {
            written = m_db->Commit();
        }
        if (!written) {
            const QString error = m_db->LastError();
            m_db->Rollback();
            Detach(error);
        }
    }
    m_s = next;
    return written;
}

bool SqliteFiscalMemory::Commit(const FiscalState& next) {
    return Commit(next, [] { return true; });
}

void SqliteFiscalMemory::Journal(const JournalDocument& document, bool written) {
    ++m_journalCount;
    if (!written)
        m_unwritten.append(document);
}

QList<JournalDocument> SqliteFiscalMemory::JournalDocuments(const JournalFilter& filter) const {
    QList<JournalDocument> out;
    if (!FiscalRows::ReadJournal(*m_db, filter, out))
        out.clear(); // a file that can't be read any more: what this run wrote aside is still here
    for (const JournalDocument& d : m_unwritten)
        if (Matches(filter, d))
            out.append(d);
    return out;
}

void SqliteFiscalMemory::CommitDocumentBegun(const OpenDocument& document) {
    FiscalState next = m_s;
    next.unfinished = document;
    Commit(next);
}

void SqliteFiscalMemory::CommitReceipt(const ReceiptRecord& receipt) {
    FiscalState next = m_s;
    const JournalDocument doc = next.Receipt(receipt);
    Journal(doc, Commit(next, [&] { return FiscalRows::InsertJournal(*m_db, doc); }));
}

bool SqliteFiscalMemory::CommitZReport(const QDateTime& when, const JournalDocument& document) {
    FiscalState next = m_s;
    JournalDocument doc = document;
    const auto z = next.ZReport(when, doc);
    if (!z)
        return false;
    const bool written = Commit(
        next, [&] { return FiscalRows::InsertZRecord(*m_db, *z) && FiscalRows::InsertJournal(*m_db, doc); });
    m_z.append(*z);
    Journal(doc, written);
    return true;
}

void SqliteFiscalMemory::CommitNonFiscal(const JournalDocument& document) {
    FiscalState next = m_s;
    const JournalDocument doc = next.NonFiscal(document);
    Journal(doc, Commit(next, [&] { return FiscalRows::InsertJournal(*m_db, doc); }));
}

void SqliteFiscalMemory::CommitRestart() {
    FiscalState next = m_s;
    next.Restart();
    Commit(next);
}

void SqliteFiscalMemory::CommitDayReset() {
    FiscalState next = m_s;
    next.DayReset();
    Commit(next);
}

void SqliteFiscalMemory::CommitVatTable(const QList<int32_t>& rates) {
    FiscalState next = m_s;
    next.VatTable(rates);
    Commit(next);
}

void SqliteFiscalMemory::CommitHeaderLine(int index, const HeaderLine& line) {
    FiscalState next = m_s;
    next.HeaderLineAt(index, line);
    Commit(next);
}

void SqliteFiscalMemory::CommitTrailerLine(int index, const HeaderLine& line) {
    FiscalState next = m_s;
    next.trailer[index] = line;
    Commit(next);
}

void SqliteFiscalMemory::CommitDepartmentLinks(const QMap<int, int>& links) {
    FiscalState next = m_s;
    next.departments = links;
    Commit(next);
}

void SqliteFiscalMemory::SetRemaining(int records) {
    FiscalState next = m_s;
    next.remaining = records;
    Commit(next);
}

} // namespace sim
