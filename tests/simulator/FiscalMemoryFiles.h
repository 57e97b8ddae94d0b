#pragma once

// Fiscal memory files for the suites that open, damage, kill and restart them.
#include "FiscalMemoryFile.h"
#include "FiscalMemoryScript.h"
#include "ModelSwitches.h"
#include "Seams.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

namespace fm {

using namespace sim;

// The test's own folder: new file names in it, and the bench's data folder inside it, whoever runs
// the test.
class Folder {
public:
    bool Ready() {
        qputenv("XDG_DATA_HOME", m_dir.filePath(QStringLiteral("data")).toLocal8Bit());
        return m_dir.isValid();
    }
    QString NewPath() { return m_dir.filePath(QStringLiteral("m%1.sqlite").arg(++m_files)); }
    QString Path() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
    int m_files = 0;
};
using Commits = std::function<void(IFiscalMemory&)>;

inline const ModelSwitches& Zorvane() {
    return Models().at(0);
}
inline const ModelSwitches& Tessorim() {
    return Models().at(1);
}

inline QByteArray Bytes(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline void Write(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(f.write(bytes), bytes.size());
}

// Statements on the file through a connection of its own, as another program would run them.
inline void Raw(const QString& path, const QStringList& statements) {
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("raw"));
        db.setDatabaseName(path);
        QVERIFY(db.open());
        for (const QString& sql : statements) {
            QSqlQuery q(db);
            QVERIFY2(q.exec(sql), qPrintable(sql));
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("raw"));
}

// A fiscal memory in `path` with `commits` made, closed again.
inline void MakeMemory(const QString& path, const ModelSwitches& model, const Commits& commits) {
    FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, model);
    QVERIFY2(opening.memory, qPrintable(opening.message));
    commits(*opening.memory);
}

// Three receipts, a Z report, a non-fiscal document and a receipt of the next day.
inline void ADayAndABit(IFiscalMemory& m) {
    using K = JournalDocument::Kind;
    m.CommitReceipt(Sale(m, {1000, 250}, 1, kMorning, ReceiptRecord::Outcome::Sale, 1, {"first"}));
    m.CommitReceipt(Sale(m, {990}, 2, kMorning.addSecs(60), ReceiptRecord::Outcome::Sale, 2, {"second"}));
    m.CommitReceipt(
        Sale(m, {400}, 3, kMorning.addSecs(120), ReceiptRecord::Outcome::CreditNote, 3, {"third"}));
    m.CommitNonFiscal(Doc(K::NonFiscal, kMorning.addSecs(180), 1, {"non-fiscal"}));
    QVERIFY(m.CommitZReport(kMorning.addSecs(3600), Doc(K::ZReport, kMorning.addSecs(3600), 1, {"Z"})));
    m.CommitReceipt(Sale(m, {5}, 1, kMorning.addDays(1), ReceiptRecord::Outcome::Voided, 1, {"voided"}));
}

// Every read of the memory, as text.
inline QString Snapshot(const IFiscalMemory& m) {
    QStringList out;
    const auto totals = [&out](const QString& name, const Totals& t) {
        for (int k = 1; k <= kTotalKinds; ++k)
            for (int v = 0; v < kVatSlots; ++v)
                if (t.byKind[k][v] != 0)
                    out << QStringLiteral("%1[%2,%3]=%4").arg(name).arg(k).arg(v).arg(t.byKind[k][v]);
    };
    const auto counters = [&out](const QString& name, const Counters& c) {
        out << QStringLiteral("%1 %2/%3/%4/%5/%6/%7")
                   .arg(name)
                   .arg(c.fiscalReceipts)
                   .arg(c.voidedReceipts)
                   .arg(c.creditNotes)
                   .arg(c.nonFiscalDocs)
                   .arg(c.zReports)
                   .arg(c.restarts);
    };
    const auto tenders = [&out](const QString& name, const Tenders& t) {
        for (int i = 1; i <= kTenders; ++i)
            if (t[i] != 0)
                out << QStringLiteral("%1[%2]=%3").arg(name).arg(i).arg(t[i]);
    };
    totals(QStringLiteral("day"), m.DayTotals());
    totals(QStringLiteral("grand"), m.GrandTotals());
    counters(QStringLiteral("day"), m.DayCounters());
    counters(QStringLiteral("grand"), m.GrandCounters());
    tenders(QStringLiteral("tenders"), m.DayTenders());
    out << QStringLiteral("voided=%1 open=%2 at=%3 last=%4 remaining=%5 vat=%6/%7 header=%8")
               .arg(m.DayVoided())
               .arg(m.DayOpened())
               .arg(m.DayOpenedAt().toString(Qt::ISODateWithMs),
                    m.LastFiscalDocument().toString(Qt::ISODateWithMs))
               .arg(m.Remaining())
               .arg(m.VatChanges())
               .arg(m.VatRates().size())
               .arg(m.HeaderChanges());
    for (const ZRecord& z : m.ZRecords()) {
        out << QStringLiteral("Z %1 %2 %3")
                   .arg(z.number)
                   .arg(z.when.toString(Qt::ISODateWithMs))
                   .arg(z.grandNet);
        totals(QStringLiteral("z"), z.day);
        counters(QStringLiteral("z"), z.counters);
        tenders(QStringLiteral("z"), z.tenders);
    }
    for (const JournalDocument& d : m.JournalDocuments({}))
        out << QStringLiteral("doc %1 %2 %3 %4 %5")
                   .arg(int(d.kind))
                   .arg(d.number)
                   .arg(d.zNumber)
                   .arg(d.when.toString(Qt::ISODateWithMs), d.lines.join(u'|'));
    for (const auto& h : m.HeaderLines() + m.TrailerLines())
        out << h.text + (h.doubleWidth ? QStringLiteral(" (double)") : QString());
    for (auto it = m.DepartmentLinks().cbegin(); it != m.DepartmentLinks().cend(); ++it)
        out << QStringLiteral("dept %1=%2").arg(it.key()).arg(it.value());
    if (const auto u = m.UnfinishedDocument())
        out << QStringLiteral("unfinished %1 %2").arg(int(u->kind)).arg(u->number);
    return out.join(u'\n');
}

// Collects what would go into message boxes, answering `answer`.
class Messages {
public:
    explicit Messages(MsgResult answer = MsgResult::Ok)
        : m_previous(SetMessageBoxHandler([this, answer](const QString& text, MsgButtons, const QString&) {
              texts << text;
              return answer;
          })) {}
    ~Messages() { SetMessageBoxHandler(std::move(m_previous)); }
    QStringList texts;

private:
    MessageBoxHandler m_previous;
};

inline FiscalMemoryFactory FileFactory(const QString& path) {
    return [path](const ModelSwitches& model) { return OpenFiscalMemoryFile(path, model).memory; };
}

} // namespace fm
