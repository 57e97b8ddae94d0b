#include "FiscalMemorySchema.h"

#include "SqlConnection.h"

#include <QStringList>

namespace sim::FiscalSchema {

namespace {

// Step n brings version n-1 to version n. A released step never changes: a new one goes after it.
const QList<QStringList>& Steps() {
    static const QList<QStringList> steps{
        // 1: the Z records, counters, day and grand totals, journal and settings.
        {
            QStringLiteral("CREATE TABLE meta(key TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID"),
            QStringLiteral("CREATE TABLE state(id INTEGER PRIMARY KEY CHECK (id = 1),"
                           " day_opened INTEGER NOT NULL, day_opened_at TEXT NOT NULL,"
                           " last_fiscal TEXT NOT NULL, remaining INTEGER NOT NULL,"
                           " day_voided INTEGER NOT NULL, header_changes INTEGER NOT NULL,"
                           " vat_changes INTEGER NOT NULL)"),
            QStringLiteral("CREATE TABLE counters(scope TEXT PRIMARY KEY, fiscal INTEGER NOT NULL,"
                           " voided INTEGER NOT NULL, credit_notes INTEGER NOT NULL,"
                           " non_fiscal INTEGER NOT NULL, z_reports INTEGER NOT NULL,"
                           " restarts INTEGER NOT NULL) WITHOUT ROWID"),
            QStringLiteral("CREATE TABLE totals(scope TEXT NOT NULL, kind INTEGER NOT NULL,"
                           " vat INTEGER NOT NULL, amount INTEGER NOT NULL,"
                           " PRIMARY KEY (scope, kind, vat)) WITHOUT ROWID"),
            QStringLiteral("CREATE TABLE tenders(tender INTEGER PRIMARY KEY, amount INTEGER NOT NULL)"),
            QStringLiteral("CREATE TABLE z_records(number INTEGER PRIMARY KEY, taken_at TEXT NOT NULL,"
                           " fiscal INTEGER NOT NULL, voided INTEGER NOT NULL,"
                           " credit_notes INTEGER NOT NULL, non_fiscal INTEGER NOT NULL,"
                           " z_reports INTEGER NOT NULL, restarts INTEGER NOT NULL,"
                           " grand_net INTEGER NOT NULL)"),
            QStringLiteral("CREATE TABLE z_totals(z INTEGER NOT NULL, kind INTEGER NOT NULL,"
                           " vat INTEGER NOT NULL, amount INTEGER NOT NULL,"
                           " PRIMARY KEY (z, kind, vat)) WITHOUT ROWID"),
            QStringLiteral("CREATE TABLE z_tenders(z INTEGER NOT NULL, tender INTEGER NOT NULL,"
                           " amount INTEGER NOT NULL, PRIMARY KEY (z, tender)) WITHOUT ROWID"),
            QStringLiteral("CREATE TABLE journal(id INTEGER PRIMARY KEY, kind INTEGER NOT NULL,"
                           " number INTEGER NOT NULL, z_number INTEGER NOT NULL,"
                           " taken_at TEXT NOT NULL, date INTEGER NOT NULL, lines TEXT NOT NULL)"),
            QStringLiteral("CREATE INDEX journal_by_date ON journal(date)"),
            QStringLiteral("CREATE INDEX journal_by_number ON journal(number)"),
            QStringLiteral("CREATE INDEX journal_by_day ON journal(z_number)"),
            QStringLiteral("CREATE TABLE vat_rates(rate INTEGER PRIMARY KEY, value INTEGER NOT NULL)"),
            QStringLiteral("CREATE TABLE print_lines(place TEXT NOT NULL, line INTEGER NOT NULL,"
                           " text TEXT NOT NULL, double_width INTEGER NOT NULL,"
                           " PRIMARY KEY (place, line)) WITHOUT ROWID"),
            QStringLiteral("CREATE TABLE departments(department INTEGER PRIMARY KEY,"
                           " rate INTEGER NOT NULL)"),
        },
        // 2: the document begun and not ended, so that a killed bench ends it at the next start.
        {
            QStringLiteral("CREATE TABLE unfinished_document(id INTEGER PRIMARY KEY CHECK (id = 1),"
                           " kind INTEGER NOT NULL, number INTEGER NOT NULL, begun_at TEXT NOT NULL,"
                           " credit_note TEXT NOT NULL)"),
        },
    };
    return steps;
}

} // namespace

bool Upgrade(SqlConnection& db, int from, int target) {
    for (int version = from + 1; version <= target && version <= Steps().size(); ++version) {
        if (!db.Begin())
            return false;
        bool ok = true;
        for (const QString& sql : Steps().at(version - 1))
            ok = ok && db.Exec(sql);
        // The pragmas are part of the transaction: a file is at a version with all of its tables.
        ok = ok && db.Exec(QStringLiteral("PRAGMA application_id = %1").arg(kApplicationId)) &&
             db.Exec(QStringLiteral("PRAGMA user_version = %1").arg(version)) && db.Commit();
        if (!ok) {
            db.Rollback();
            return false;
        }
    }
    return true;
}

} // namespace sim::FiscalSchema
