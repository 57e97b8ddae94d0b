#pragma once

#include "FiscalMemory.h"
#include "FiscalState.h"

#include <memory>

class QLockFile;
class SqlConnection;

namespace sim {

// The fiscal memory in an SQLite file. Reads come from a copy in the process, the journal from
// the file; every commit is one transaction, so that a kill at any moment leaves the file as it
// was after the last whole document. When a write fails the memory says so once, goes on in the
// process only, and leaves the file as it was.
class SqliteFiscalMemory final : public FiscalStateMemory {
public:
    // `db` open on a checked file at the current schema, `lock` held; `state` and `z` as loaded.
    SqliteFiscalMemory(std::unique_ptr<SqlConnection> db, std::unique_ptr<QLockFile> lock, FiscalState state,
                       QList<ZRecord> z, int journalCount);
    ~SqliteFiscalMemory() override;

    QString FilePath() const;
    // Closes the file and hands over its lock, still held, so that the file can be moved or
    // replaced with no other bench getting in. The memory is of no use afterwards.
    std::unique_ptr<QLockFile> ReleaseFile();
    // A write failed: from then on nothing reaches the file.
    bool Detached() const { return m_detached; }
    // For tests: the next commit writes its rows and then loses its connection before COMMIT, as
    // when the process is killed there.
    void DropConnectionAtNextCommit() { m_dropAtNextCommit = true; }

    int JournalCount() const override { return m_journalCount; }
    QList<JournalDocument> JournalDocuments(const JournalFilter& filter) const override;

    void CommitDocumentBegun(const OpenDocument& document) override;
    void CommitReceipt(const ReceiptRecord& receipt) override;
    bool CommitZReport(const QDateTime& when, const JournalDocument& document) override;
    void CommitNonFiscal(const JournalDocument& document) override;
    void CommitRestart() override;
    void CommitDayReset() override;
    void CommitVatTable(const QList<int32_t>& rates) override;
    void CommitHeaderLine(int index, const HeaderLine& line) override;
    void CommitTrailerLine(int index, const HeaderLine& line) override;
    void CommitDepartmentLinks(const QMap<int, int>& links) override;
    void SetRemaining(int records) override;

private:
    // Writes `next` (and `more`, the commit's own rows) in one transaction, then takes it as the
    // state. False when it didn't reach the file.
    template <typename More> bool Commit(const FiscalState& next, More more);
    bool Commit(const FiscalState& next);
    void Journal(const JournalDocument& document, bool written);
    void Detach(const QString& error);

    std::unique_ptr<SqlConnection> m_db;
    std::unique_ptr<QLockFile> m_lock;
    int m_journalCount = 0;
    QList<JournalDocument> m_unwritten; // documents that came after a failed write
    bool m_detached = false;
    bool m_dropAtNextCommit = false;
};

} // namespace sim
