#include "FiscalMemory.h"
#include "FiscalMemoryFile.h"
#include "FiscalMemoryScript.h"
#include "ModelSwitches.h"
#include "Reports.h"
#include "SqliteFiscalMemory.h"

#include <QtTest>

using namespace sim;
using namespace OposAll;
using fm::Doc;
using fm::kMorning;
using fm::Sale;

namespace {

QString Observe(const IFiscalMemory& m) {
    const Counters& c = m.DayCounters();
    return QStringLiteral("fiscal=%1 voided=%2 creditnotes=%3 nonfiscal=%4 restarts=%5 z=%6 remaining=%7 "
                          "day=%8 grand=%9 refund=%10 midvoid=%11 cash=%12 journal=%13 open=%14")
        .arg(c.fiscalReceipts)
        .arg(c.voidedReceipts)
        .arg(c.creditNotes)
        .arg(c.nonFiscalDocs)
        .arg(m.GrandCounters().restarts)
        .arg(m.ZRecords().size())
        .arg(m.Remaining())
        .arg(m.DayTotals().Sum(TotalKind::Net) / 100)
        .arg(m.GrandTotals().Sum(TotalKind::Net) / 100)
        .arg(m.DayTotals().Sum(TotalKind::Refund) / 100)
        .arg(m.DayVoided() / 100)
        .arg(m.DayTenders()[FPTR_PDL_CASH] / 100)
        .arg(m.JournalCount())
        .arg(m.DayOpened());
}

// The first line of each document: the tests put a tag there.
QStringList Tags(const QList<JournalDocument>& documents) {
    QStringList tags;
    for (const auto& d : documents)
        tags << d.lines.value(0);
    return tags;
}
} // namespace

Q_DECLARE_METATYPE(JournalFilter)

// The fiscal memory behind its interface, run over each store: what each commit leaves, the journal
// as reports ask for it, and the day rules read off it.
class FiscalMemorySuite : public QObject {
    Q_OBJECT

protected:
    virtual std::unique_ptr<IFiscalMemory> Make(const ModelSwitches& model) = 0;
    // What the bench's next start sees of `m`.
    virtual void Restart(std::unique_ptr<IFiscalMemory>& m, const ModelSwitches& model) {
        Q_UNUSED(m);
        Q_UNUSED(model);
    }
    std::unique_ptr<IFiscalMemory> Make() { return Make(Models().first()); }
    void Restart(std::unique_ptr<IFiscalMemory>& m) { Restart(m, Models().first()); }

private slots:
    void commits_data() {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("answers");
        QTest::addColumn<QString>("changed"); // from a fresh memory's values
        const auto row = [](const char* name, const char* steps, const char* answers, const char* changed) {
            QTest::newRow(name) << QString::fromLatin1(steps) << QString::fromLatin1(answers)
                                << QString::fromLatin1(changed);
        };
        row("nothing", "", "", "");
        row("a sale", "sale 1000,250", "0", "fiscal=1 day=1250 grand=1250 cash=1250 journal=1 open=1");
        row("a voided receipt", "voided 500", "0", "voided=1 midvoid=500 journal=1 open=1");
        row("a credit note", "credit 800 2", "0", "creditnotes=1 refund=800 journal=1 open=1");
        row("a Z after a sale", "sale 1000; z", "0;0", "z=1 remaining=1799 grand=1000 journal=2");
        row("a Z with the memory full", "sale 1000; full; z", "0;0;full",
            "fiscal=1 remaining=0 day=1000 grand=1000 cash=1000 journal=1 open=1");
        row("a non-fiscal document opens no day", "nonfiscal", "0", "nonfiscal=1 journal=1");
        row("restarts outlive the day", "restart; dayreset", "0;0", "restarts=1");
    }
    void commits() {
        QFETCH(QString, steps);
        QFETCH(QString, answers);
        QFETCH(QString, changed);
        QStringList expected =
            QStringLiteral("fiscal=0 voided=0 creditnotes=0 nonfiscal=0 restarts=0 z=0 "
                           "remaining=1800 day=0 grand=0 refund=0 midvoid=0 cash=0 journal=0 open=0")
                .split(u' ');
        for (const QString& c : changed.split(u' ', Qt::SkipEmptyParts))
            for (QString& e : expected)
                if (e.section(u'=', 0, 0) == c.section(u'=', 0, 0))
                    e = c;
        auto memory = Make();
        QCOMPARE(fm::Commit(*memory, steps), answers);
        Restart(memory);
        QCOMPARE(Observe(*memory), expected.join(u' '));
    }

    void zRecordKeepsTheDay() {
        auto m = Make();
        m->CommitReceipt(Sale(*m, {1000}, 1, kMorning));
        m->CommitReceipt(Sale(*m, {500}, 2, kMorning.addSecs(60)));
        Restart(m);
        QCOMPARE(CurrentDayNumber(*m), 1);
        QCOMPARE(NextReceiptNumber(*m), 3);
        QVERIFY(m->CommitZReport(kMorning.addSecs(7200), Doc(JournalDocument::Kind::ZReport, {})));
        Restart(m);
        const ZRecord& z = m->ZRecords().last();
        QCOMPARE(z.number, 1);
        QCOMPARE(z.when, kMorning.addSecs(7200));
        QCOMPARE(z.day.Sum(TotalKind::Net), Amount{1500} * 100);
        QCOMPARE(z.day.Get(TotalKind::Net, 2), Amount{500} * 100);
        QCOMPARE(z.tenders[FPTR_PDL_CASH], Amount{1500} * 100);
        QCOMPARE(z.counters.fiscalReceipts, 2);
        QCOMPARE(z.counters.zReports, 1);
        QCOMPARE(z.grandNet, Amount{1500} * 100);
        QCOMPARE(m->JournalDocuments({}).last().zNumber, 1);
        QCOMPARE(CurrentDayNumber(*m), 2);
        QCOMPARE(NextReceiptNumber(*m), 1);
        QCOMPARE(m->LastFiscalDocument(), kMorning.addSecs(7200));
    }

    // Once 24 hours have passed since the day opened, the day must end first; the clock never goes back
    // behind the last fiscal document, to the minute. The day's one receipt is at 09:00:30.
    void dayAndClock_data() {
        QTest::addColumn<qint64>("at"); // seconds from that receipt
        QTest::addColumn<bool>("dayEnd");
        QTest::addColumn<bool>("behind");
        QTest::newRow("the same minute") << qint64{-30} << false << false;
        QTest::newRow("a second before that minute") << qint64{-31} << false << true;
        QTest::newRow("a day before") << qint64{-86400} << false << true;
        QTest::newRow("an hour later") << qint64{3600} << false << false;
        QTest::newRow("a second short of a day") << qint64{24 * 3600 - 1} << false << false;
        QTest::newRow("24 hours") << qint64{24 * 3600} << true << false;
        QTest::newRow("three days") << qint64{3 * 24 * 3600} << true << false;
    }
    void dayAndClock() {
        QFETCH(qint64, at);
        QFETCH(bool, dayEnd);
        QFETCH(bool, behind);
        auto m = Make(); // nothing printed yet: no day to end, no time to keep behind
        QVERIFY(!DayEndRequired(*m, kMorning.addDays(3)) &&
                !BeforeLastFiscalDocument(*m, kMorning.addYears(-10)));
        m->CommitReceipt(Sale(*m, {100}, 1, kMorning.addSecs(30)));
        Restart(m);
        QCOMPARE(DayEndRequired(*m, kMorning.addSecs(30 + at)), dayEnd);
        QCOMPARE(BeforeLastFiscalDocument(*m, kMorning.addSecs(30 + at)), behind);
    }

    // Three receipts of 0.03 at 22 %: 0.01 of VAT each, 0.03 in all; on the day's 0.09 it is 0.02.
    void vatOnTheDayTotals_data() {
        QTest::addColumn<bool>("onDayTotals");
        QTest::addColumn<Amount>("vat");
        QTest::newRow("summed from the receipts") << false << Amount{300};
        QTest::newRow("on the day's totals") << true << Amount{200};
    }
    void vatOnTheDayTotals() {
        QFETCH(bool, onDayTotals);
        QFETCH(Amount, vat);
        ModelSwitches model = Models().first();
        model.vatOnDayTotals = onDayTotals;
        auto m = Make(model);
        for (int i = 0; i < 3; ++i)
            m->CommitReceipt(Sale(*m, {3}, 1, kMorning));
        Restart(m, model);
        QCOMPARE(DayVat(*m, model).Get(TotalKind::Vat, 1), vat);
    }

    // Two days of documents, each tagged in its first line; DirectIO 1500 asks by kind, dates,
    // numbers and day.
    void journalFilter_data() {
        QTest::addColumn<JournalFilter>("filter");
        QTest::addColumn<QStringList>("tags");
        using K = JournalDocument::Kind;
        const auto f = [](int kind, std::optional<std::pair<int, int>> dates,
                          std::optional<std::pair<int, int>> numbers, std::optional<int> day) {
            return JournalFilter{kind, dates, numbers, day};
        };
        const QStringList all{"S1", "N1", "C2", "Z1", "S1b", "V2b"};
        QTest::newRow("everything") << f(0, {}, {}, {}) << all;
        QTest::newRow("fiscal receipts") << f(int(K::Fiscal), {}, {}, {}) << QStringList{"S1", "S1b", "V2b"};
        QTest::newRow("Z reports") << f(int(K::ZReport), {}, {}, {}) << QStringList{"Z1"};
        QTest::newRow("credit notes") << f(int(K::CreditNote), {}, {}, {}) << QStringList{"C2"};
        QTest::newRow("the second date")
            << f(0, std::pair{20250311, 20250311}, {}, {}) << QStringList{"S1b", "V2b"};
        QTest::newRow("up to the first date")
            << f(0, std::pair{20250301, 20250310}, {}, {}) << QStringList{"S1", "N1", "C2", "Z1"};
        QTest::newRow("dates the wrong way round")
            << f(0, std::pair{20250311, 20250310}, {}, {}) << QStringList{};
        QTest::newRow("number 2 of each day") << f(0, {}, std::pair{2, 2}, {}) << QStringList{"C2", "V2b"};
        QTest::newRow("fiscal number 1")
            << f(int(K::Fiscal), {}, std::pair{1, 1}, {}) << QStringList{"S1", "S1b"};
        QTest::newRow("day 1, closed by its Z") << f(0, {}, {}, 1) << QStringList{"S1", "N1", "C2", "Z1"};
        QTest::newRow("day 2, in progress") << f(0, {}, {}, 2) << QStringList{"S1b", "V2b"};
        QTest::newRow("a day to come") << f(0, {}, {}, 3) << QStringList{};
    }
    void journalFilter() {
        QFETCH(JournalFilter, filter);
        QFETCH(QStringList, tags);
        using K = JournalDocument::Kind;
        using O = ReceiptRecord::Outcome;
        const QDateTime next = kMorning.addDays(1);
        auto m = Make();
        m->CommitReceipt(Sale(*m, {100}, 1, kMorning, O::Sale, 1, {"S1"}));
        m->CommitNonFiscal(Doc(K::NonFiscal, kMorning.addSecs(600), 1, {"N1"}));
        m->CommitReceipt(Sale(*m, {100}, 1, kMorning.addSecs(1200), O::CreditNote, 2, {"C2"}));
        QVERIFY(m->CommitZReport(kMorning.addSecs(3600 * 11),
                                 Doc(K::ZReport, kMorning.addSecs(3600 * 11), 1, {"Z1"})));
        m->CommitReceipt(Sale(*m, {100}, 1, next, O::Sale, 1, {"S1b"}));
        m->CommitReceipt(Sale(*m, {100}, 1, next.addSecs(3600), O::Voided, 2, {"V2b"}));
        Restart(m);
        QCOMPARE(m->JournalCount(), 6);
        QCOMPARE(Tags(m->JournalDocuments(filter)), tags);
    }

    // The journal keeps a document's text as it was printed, odd characters included.
    void journalKeepsTheText() {
        const QStringList lines{"",
                                QString::fromUtf8("Caff\u00e8 \u20ac 1,20"),
                                "a\"b\\c'd",
                                "\x1b|2CDOPPIA",
                                "  spaced  ",
                                "[ESC]|1C",
                                QString(46, u'x')};
        auto m = Make();
        m->CommitNonFiscal(Doc(JournalDocument::Kind::NonFiscal, kMorning, 1, lines));
        Restart(m);
        const auto docs = m->JournalDocuments({});
        QCOMPARE(docs.size(), 1);
        QCOMPARE(docs[0].lines, lines);
        QCOMPARE(docs[0].when, kMorning);
        QCOMPARE(docs[0].number, 1);
        QCOMPARE(docs[0].kind, JournalDocument::Kind::NonFiscal);
    }

    // The settings and the document left open are kept like the numbers.
    void settingsAndTheOpenDocument() {
        auto m = Make();
        const OpenDocument open{JournalDocument::Kind::CreditNote, 4, kMorning, QStringLiteral("NC-9")};
        m->CommitVatTable({2100, 1000});
        m->CommitHeaderLine(0, {QStringLiteral("NEGOZIO"), true});
        m->CommitTrailerLine(2, {QStringLiteral("GRAZIE"), false});
        m->CommitDepartmentLinks({{3, 2}, {250, 1}});
        m->SetRemaining(17);
        m->CommitRestart();
        m->CommitDocumentBegun(open);
        Restart(m);
        QCOMPARE(m->VatRates(), (QList<int32_t>{2100, 1000}));
        QCOMPARE(m->VatChanges(), 1);
        QCOMPARE(m->HeaderLines().size(), 6);
        QCOMPARE(m->HeaderLines()[0], (HeaderLine{QStringLiteral("NEGOZIO"), true}));
        QCOMPARE(m->HeaderLines()[1], HeaderLine{});
        QCOMPARE(m->HeaderChanges(), 1);
        QCOMPARE(m->TrailerLines().size(), 3);
        QCOMPARE(m->TrailerLines()[2], (HeaderLine{QStringLiteral("GRAZIE"), false}));
        QCOMPARE(m->DepartmentLinks(), (QMap<int, int>{{3, 2}, {250, 1}}));
        QCOMPARE(m->Remaining(), 17);
        QCOMPARE(m->GrandCounters().restarts, 1);
        QVERIFY(m->UnfinishedDocument() == open);
        // The document's own commit ends it.
        m->CommitReceipt(Sale(*m, {100}, 1, kMorning, ReceiptRecord::Outcome::Voided, 4));
        Restart(m);
        QVERIFY(!m->UnfinishedDocument());
    }
};

// The store that lives in the process.
class InProcess : public FiscalMemorySuite {
    Q_OBJECT
    std::unique_ptr<IFiscalMemory> Make(const ModelSwitches& model) override {
        return MakeInMemoryFiscalMemory(model);
    }
};

// The SQLite file, read through the copy it keeps in the process.
class InFile : public FiscalMemorySuite {
    Q_OBJECT
protected:
    QTemporaryDir m_dir;
    int m_files = 0;
    std::unique_ptr<IFiscalMemory> Make(const ModelSwitches& model) override {
        const QString path = m_dir.filePath(QStringLiteral("memory%1.sqlite").arg(++m_files));
        FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, model);
        if (opening.outcome != FiscalMemoryOpening::Outcome::Created) {
            QTest::qFail(qPrintable(opening.message), __FILE__, __LINE__);
            return MakeInMemoryFiscalMemory(model);
        }
        return std::move(opening.memory);
    }
};

// The SQLite file as the next start reads it back: closed and opened again before every look.
class InFileReopened : public InFile {
    Q_OBJECT
    void Restart(std::unique_ptr<IFiscalMemory>& m, const ModelSwitches& model) override {
        const QString path = static_cast<SqliteFiscalMemory&>(*m).FilePath();
        m.reset();
        FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, model);
        QVERIFY2(opening.outcome == FiscalMemoryOpening::Outcome::Opened, qPrintable(opening.message));
        m = std::move(opening.memory);
        QVERIFY(m);
    }
};

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    InProcess inProcess;
    InFile inFile;
    InFileReopened reopened;
    int failed = 0;
    for (QObject* suite : std::initializer_list<QObject*>{&inProcess, &inFile, &reopened})
        failed += QTest::qExec(suite, argc, argv);
    return failed;
}

#include "test_fiscal_memory.moc"
