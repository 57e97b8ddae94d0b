#include "FiscalMemoryRows.h"

#include "FiscalState.h"
#include "SqlConnection.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSqlQuery>

#include <limits>

namespace sim::FiscalRows {

namespace {

constexpr int kHeaderLines = 6;
constexpr int kTrailerLines = 3;

// A null text binds as NULL: the statements that take a time write coalesce(?, '').
QVariant TimeValue(const QDateTime& t) {
    return t.isValid() ? t.toString(Qt::ISODateWithMs) : QString();
}

// Times are kept as the printer's wall clock shows them; empty for none.
bool ParseTime(const QString& text, QDateTime& out) {
    if (text.isEmpty()) {
        out = {};
        return true;
    }
    out = QDateTime::fromString(text, Qt::ISODateWithMs);
    return out.isValid();
}

QVariantList CounterValues(const QString& scope, const Counters& c) {
    return {scope,           c.fiscalReceipts, c.voidedReceipts, c.creditNotes,
            c.nonFiscalDocs, c.zReports,       c.restarts};
}

bool WriteTotals(SqlConnection& db, const QString& table, const QVariant& owner, const Totals* before,
                 const Totals& after) {
    for (int k = 1; k <= kTotalKinds; ++k)
        for (int v = 0; v < kVatSlots; ++v) {
            const Amount a = after.byKind[k][v];
            const Amount b = before ? before->byKind[k][v] : 0;
            if (a == b)
                continue;
            // Only amounts that aren't zero have a row.
            const bool ok =
                a == 0 ? db.Exec(QStringLiteral("DELETE FROM %1 WHERE %2 = ? AND kind = ? AND vat = ?")
                                     .arg(table,
                                          table == u"totals" ? QStringLiteral("scope") : QStringLiteral("z")),
                                 {owner, k, v})
                       : db.Exec(QStringLiteral("INSERT OR REPLACE INTO %1 VALUES (?, ?, ?, ?)").arg(table),
                                 {owner, k, v, qlonglong(a)});
            if (!ok)
                return false;
        }
    return true;
}

bool WriteLines(SqlConnection& db, const QString& place, const QList<HeaderLine>* before,
                const QList<HeaderLine>& after) {
    for (int i = 0; i < after.size(); ++i)
        if (!before || before->value(i) != after[i])
            if (!db.Exec(
                    QStringLiteral("INSERT OR REPLACE INTO print_lines VALUES (?, ?, coalesce(?, ''), ?)"),
                    {place, i, after[i].text, after[i].doubleWidth ? 1 : 0}))
                return false;
    return true;
}

bool ReadCounters(const QSqlQuery& q, int first, Counters& c) {
    c.fiscalReceipts = q.value(first).toInt();
    c.voidedReceipts = q.value(first + 1).toInt();
    c.creditNotes = q.value(first + 2).toInt();
    c.nonFiscalDocs = q.value(first + 3).toInt();
    c.zReports = q.value(first + 4).toInt();
    c.restarts = q.value(first + 5).toInt();
    return true;
}

bool InRange(int value, int low, int high) {
    return value >= low && value <= high;
}

// Reads every row of `sql`; `row` answers false, with `problem` set, for a row out of range.
template <typename Row> bool ForEachRow(SqlConnection& db, const QString& sql, QString& problem, Row row) {
    QSqlQuery* q = db.Run(sql);
    if (!q) {
        problem = db.LastError();
        return false;
    }
    bool ok = true;
    while (ok && q->next())
        ok = row(*q);
    q->finish();
    return ok;
}

} // namespace

bool WriteState(SqlConnection& db, const FiscalState* before, const FiscalState& after) {
    if (!db.Exec(
            QStringLiteral(
                "INSERT OR REPLACE INTO state VALUES (1, ?, coalesce(?, ''), coalesce(?, ''), ?, ?, ?, ?)"),
            {after.dayOpened ? 1 : 0, TimeValue(after.dayOpenedAt), TimeValue(after.lastFiscal),
             after.remaining, qlonglong(after.dayVoided), after.headerChanges, after.vatChanges}))
        return false;
    const QString counters = QStringLiteral("INSERT OR REPLACE INTO counters VALUES (?, ?, ?, ?, ?, ?, ?)");
    if ((!before || before->dayCounters != after.dayCounters) &&
        !db.Exec(counters, CounterValues(QStringLiteral("day"), after.dayCounters)))
        return false;
    if ((!before || before->grandCounters != after.grandCounters) &&
        !db.Exec(counters, CounterValues(QStringLiteral("grand"), after.grandCounters)))
        return false;
    if (!WriteTotals(db, QStringLiteral("totals"), QStringLiteral("day"), before ? &before->day : nullptr,
                     after.day) ||
        !WriteTotals(db, QStringLiteral("totals"), QStringLiteral("grand"), before ? &before->grand : nullptr,
                     after.grand))
        return false;
    for (int t = 1; t <= kTenders; ++t) {
        const Amount a = after.tenders[t];
        if (a == (before ? before->tenders[t] : 0))
            continue;
        if (!(a == 0 ? db.Exec(QStringLiteral("DELETE FROM tenders WHERE tender = ?"), {t})
                     : db.Exec(QStringLiteral("INSERT OR REPLACE INTO tenders VALUES (?, ?)"),
                               {t, qlonglong(a)})))
            return false;
    }
    if (!before || before->vatRates != after.vatRates) {
        if (!db.Exec(QStringLiteral("DELETE FROM vat_rates")))
            return false;
        for (int i = 0; i < after.vatRates.size(); ++i)
            if (!db.Exec(QStringLiteral("INSERT INTO vat_rates VALUES (?, ?)"), {i + 1, after.vatRates[i]}))
                return false;
    }
    if (!WriteLines(db, QStringLiteral("header"), before ? &before->header : nullptr, after.header) ||
        !WriteLines(db, QStringLiteral("trailer"), before ? &before->trailer : nullptr, after.trailer))
        return false;
    if (!before || before->departments != after.departments) {
        if (!db.Exec(QStringLiteral("DELETE FROM departments")))
            return false;
        for (auto it = after.departments.cbegin(); it != after.departments.cend(); ++it)
            if (!db.Exec(QStringLiteral("INSERT INTO departments VALUES (?, ?)"), {it.key(), it.value()}))
                return false;
    }
    if (!before || before->unfinished != after.unfinished) {
        if (!db.Exec(QStringLiteral("DELETE FROM unfinished_document")))
            return false;
        if (const auto& u = after.unfinished)
            if (!db.Exec(
                    QStringLiteral(
                        "INSERT INTO unfinished_document VALUES (1, ?, ?, coalesce(?, ''), coalesce(?, ''))"),
                    {static_cast<int>(u->kind), u->number, TimeValue(u->begunAt), u->creditNoteNumber}))
                return false;
    }
    return true;
}

bool InsertZRecord(SqlConnection& db, const ZRecord& z) {
    QVariantList values = CounterValues({}, z.counters);
    values[0] = TimeValue(z.when);
    values.prepend(z.number);
    values.append(qlonglong(z.grandNet));
    if (!db.Exec(QStringLiteral("INSERT INTO z_records VALUES (?, coalesce(?, ''), ?, ?, ?, ?, ?, ?, ?)"),
                 values) ||
        !WriteTotals(db, QStringLiteral("z_totals"), z.number, nullptr, z.day))
        return false;
    for (int t = 1; t <= kTenders; ++t)
        if (z.tenders[t] != 0 && !db.Exec(QStringLiteral("INSERT INTO z_tenders VALUES (?, ?, ?)"),
                                          {z.number, t, qlonglong(z.tenders[t])}))
            return false;
    return true;
}

bool InsertJournal(SqlConnection& db, const JournalDocument& d) {
    const QByteArray lines =
        QJsonDocument(QJsonArray::fromStringList(d.lines)).toJson(QJsonDocument::Compact);
    return db.Exec(QStringLiteral("INSERT INTO journal(kind, number, z_number, taken_at, date, lines)"
                                  " VALUES (?, ?, ?, coalesce(?, ''), ?, ?)"),
                   {static_cast<int>(d.kind), d.number, d.zNumber, TimeValue(d.when), JournalDate(d.when),
                    QString::fromUtf8(lines)});
}

bool WriteModel(SqlConnection& db, const QString& deviceName) {
    return db.Exec(QStringLiteral("INSERT OR REPLACE INTO meta VALUES ('model', ?)"), {deviceName});
}

QString ReadModel(SqlConnection& db) {
    return db.Scalar(QStringLiteral("SELECT value FROM meta WHERE key = 'model'")).toString();
}

bool Load(SqlConnection& db, FiscalState& s, QList<ZRecord>& zs, int& journalCount, QString& problem) {
    const auto bad = [&problem](const QString& what) {
        problem = what;
        return false;
    };
    bool found = false;
    if (!ForEachRow(db,
                    QStringLiteral("SELECT day_opened, day_opened_at, last_fiscal, remaining, day_voided,"
                                   " header_changes, vat_changes FROM state WHERE id = 1"),
                    problem, [&](const QSqlQuery& q) {
                        found = true;
                        s.dayOpened = q.value(0).toInt() != 0;
                        s.remaining = q.value(3).toInt();
                        s.dayVoided = q.value(4).toLongLong();
                        s.headerChanges = q.value(5).toInt();
                        s.vatChanges = q.value(6).toInt();
                        return (ParseTime(q.value(1).toString(), s.dayOpenedAt) &&
                                ParseTime(q.value(2).toString(), s.lastFiscal)) ||
                               bad(QStringLiteral("a time of the state row is not a time"));
                    }))
        return false;
    if (!found)
        return bad(QStringLiteral("the state row is missing"));

    int scopes = 0;
    if (!ForEachRow(
            db,
            QStringLiteral("SELECT scope, fiscal, voided, credit_notes, non_fiscal, z_reports, restarts"
                           " FROM counters"),
            problem, [&](const QSqlQuery& q) {
                const QString scope = q.value(0).toString();
                if (scope != u"day" && scope != u"grand")
                    return bad(QStringLiteral("a counter row of no known scope"));
                ++scopes;
                return ReadCounters(q, 1, scope == u"day" ? s.dayCounters : s.grandCounters);
            }))
        return false;
    if (scopes != 2)
        return bad(QStringLiteral("the counters are missing"));

    if (!ForEachRow(db, QStringLiteral("SELECT scope, kind, vat, amount FROM totals"), problem,
                    [&](const QSqlQuery& q) {
                        const QString scope = q.value(0).toString();
                        const int k = q.value(1).toInt(), v = q.value(2).toInt();
                        if ((scope != u"day" && scope != u"grand") || !InRange(k, 1, kTotalKinds) ||
                            !InRange(v, 0, kVatSlots - 1))
                            return bad(QStringLiteral("a total out of range"));
                        (scope == u"day" ? s.day : s.grand).byKind[k][v] = q.value(3).toLongLong();
                        return true;
                    }) ||
        !ForEachRow(db, QStringLiteral("SELECT tender, amount FROM tenders"), problem,
                    [&](const QSqlQuery& q) {
                        const int t = q.value(0).toInt();
                        if (!InRange(t, 1, kTenders))
                            return bad(QStringLiteral("a tender out of range"));
                        s.tenders[t] = q.value(1).toLongLong();
                        return true;
                    }))
        return false;

    zs.clear();
    if (!ForEachRow(
            db,
            QStringLiteral("SELECT number, taken_at, fiscal, voided, credit_notes, non_fiscal, z_reports,"
                           " restarts, grand_net FROM z_records ORDER BY number"),
            problem,
            [&](const QSqlQuery& q) {
                ZRecord z;
                z.number = q.value(0).toInt();
                ReadCounters(q, 2, z.counters);
                z.grandNet = q.value(8).toLongLong();
                if (z.number != zs.size() + 1)
                    return bad(QStringLiteral("the Z records are not numbered 1, 2, 3..."));
                if (!ParseTime(q.value(1).toString(), z.when) || !z.when.isValid())
                    return bad(QStringLiteral("Z record %1 has no time").arg(z.number));
                zs.append(z);
                return true;
            }) ||
        !ForEachRow(db, QStringLiteral("SELECT z, kind, vat, amount FROM z_totals"), problem,
                    [&](const QSqlQuery& q) {
                        const int z = q.value(0).toInt(), k = q.value(1).toInt(), v = q.value(2).toInt();
                        if (!InRange(z, 1, zs.size()) || !InRange(k, 1, kTotalKinds) ||
                            !InRange(v, 0, kVatSlots - 1))
                            return bad(QStringLiteral("a total of a Z record out of range"));
                        zs[z - 1].day.byKind[k][v] = q.value(3).toLongLong();
                        return true;
                    }) ||
        !ForEachRow(db, QStringLiteral("SELECT z, tender, amount FROM z_tenders"), problem,
                    [&](const QSqlQuery& q) {
                        const int z = q.value(0).toInt(), t = q.value(1).toInt();
                        if (!InRange(z, 1, zs.size()) || !InRange(t, 1, kTenders))
                            return bad(QStringLiteral("a tender of a Z record out of range"));
                        zs[z - 1].tenders[t] = q.value(2).toLongLong();
                        return true;
                    }))
        return false;
    s.zCount = static_cast<int>(zs.size());

    s.vatRates.clear();
    if (!ForEachRow(db, QStringLiteral("SELECT rate, value FROM vat_rates ORDER BY rate"), problem,
                    [&](const QSqlQuery& q) {
                        if (q.value(0).toInt() != s.vatRates.size() + 1 || s.vatRates.size() >= kMaxVatRates)
                            return bad(
                                QStringLiteral("the VAT rates are not numbered 1 to %1").arg(kMaxVatRates));
                        s.vatRates.append(q.value(1).toInt());
                        return true;
                    }))
        return false;
    if (s.vatRates.isEmpty())
        return bad(QStringLiteral("the VAT table is missing"));

    int lines = 0;
    if (!ForEachRow(db, QStringLiteral("SELECT place, line, text, double_width FROM print_lines"), problem,
                    [&](const QSqlQuery& q) {
                        const QString place = q.value(0).toString();
                        const int i = q.value(1).toInt();
                        QList<HeaderLine>* list = place == u"header"    ? &s.header
                                                  : place == u"trailer" ? &s.trailer
                                                                        : nullptr;
                        if (!list || !InRange(i, 0, static_cast<int>(list->size()) - 1))
                            return bad(QStringLiteral("a header or trailer line out of range"));
                        (*list)[i] = {q.value(2).toString(), q.value(3).toInt() != 0};
                        ++lines;
                        return true;
                    }))
        return false;
    if (lines != kHeaderLines + kTrailerLines)
        return bad(QStringLiteral("header or trailer lines are missing"));

    s.departments.clear();
    if (!ForEachRow(db, QStringLiteral("SELECT department, rate FROM departments"), problem,
                    [&](const QSqlQuery& q) {
                        const int d = q.value(0).toInt(), r = q.value(1).toInt();
                        if (!InRange(d, 1, 250) || !InRange(r, 1, kMaxVatRates))
                            return bad(QStringLiteral("a department link out of range"));
                        s.departments.insert(d, r);
                        return true;
                    }))
        return false;

    s.unfinished.reset();
    if (!ForEachRow(db, QStringLiteral("SELECT kind, number, begun_at, credit_note FROM unfinished_document"),
                    problem, [&](const QSqlQuery& q) {
                        using K = JournalDocument::Kind;
                        const auto kind = static_cast<K>(q.value(0).toInt());
                        OpenDocument u{kind, q.value(1).toInt(), {}, q.value(3).toString()};
                        if ((kind != K::Fiscal && kind != K::CreditNote && kind != K::NonFiscal) ||
                            !ParseTime(q.value(2).toString(), u.begunAt))
                            return bad(QStringLiteral("the unfinished document is not one"));
                        s.unfinished = u;
                        return true;
                    }))
        return false;

    bool ok = false;
    journalCount = db.Scalar(QStringLiteral("SELECT count(*) FROM journal"), &ok).toInt();
    return ok || bad(db.LastError());
}

bool ReadJournal(SqlConnection& db, const JournalFilter& filter, QList<JournalDocument>& out) {
    QString sql = QStringLiteral("SELECT kind, number, z_number, taken_at, lines FROM journal WHERE 1");
    QVariantList values;
    if (filter.kind != 0) {
        sql += QStringLiteral(" AND kind = ?");
        values << filter.kind;
    }
    if (filter.dates) {
        sql += QStringLiteral(" AND date BETWEEN ? AND ?");
        values << filter.dates->first << filter.dates->second;
    }
    if (filter.numbers) {
        sql += QStringLiteral(" AND number BETWEEN ? AND ?");
        values << filter.numbers->first << filter.numbers->second;
    }
    if (filter.day) {
        sql += QStringLiteral(" AND z_number = ?");
        values << *filter.day;
    }
    QSqlQuery* q = db.Run(sql + QStringLiteral(" ORDER BY id"), values);
    if (!q)
        return false;
    while (q->next()) {
        JournalDocument d;
        d.kind = static_cast<JournalDocument::Kind>(q->value(0).toInt());
        d.number = q->value(1).toInt();
        d.zNumber = q->value(2).toInt();
        ParseTime(q->value(3).toString(), d.when);
        for (const QJsonValue& line : QJsonDocument::fromJson(q->value(4).toString().toUtf8()).array())
            d.lines.append(line.toString());
        out.append(std::move(d));
    }
    q->finish();
    return true;
}

} // namespace sim::FiscalRows
