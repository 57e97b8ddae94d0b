#include "FiscalMemory.h"
#include "FiscalReceipt.h"
#include "ModelSwitches.h"
#include "Reports.h"

#include "OposAll.h"

#include <QtTest>

using namespace sim;
using namespace OposAll;

namespace {
const QDateTime kMorning(QDate(2025, 3, 10), QTime(9, 0));

// A receipt of one item per amount (hundredths) at `vat`, paid in cash, ended at `when`.
ReceiptRecord Sale(const IFiscalMemory& m, QList<int> cents, int vat, const QDateTime& when,
                   ReceiptRecord::Outcome outcome = ReceiptRecord::Outcome::Sale) {
    FiscalReceipt r(outcome == ReceiptRecord::Outcome::CreditNote ? FPTR_RT_REFUND : FPTR_RT_SALES);
    for (int c : cents)
        r.AddItem(vat, Amount{c} * 100);
    r.Pay(r.Total(), FPTR_PDL_CASH);
    ReceiptRecord rec;
    rec.outcome = outcome;
    rec.begunAt = when;
    rec.voidedTotal = r.Total();
    const Totals t = r.FinalTotals(m.VatRates());
    if (outcome == ReceiptRecord::Outcome::Sale) {
        rec.totals = t;
        rec.tenders = r.AllTenders();
    } else if (outcome == ReceiptRecord::Outcome::CreditNote) {
        rec.totals.At(TotalKind::Refund, vat) = t.Get(TotalKind::Net, vat);
    }
    rec.document.kind = JournalDocument::Kind::Fiscal;
    rec.document.when = when;
    return rec;
}

JournalDocument Doc(JournalDocument::Kind kind, const QDateTime& when) {
    JournalDocument d;
    d.kind = kind;
    d.when = when;
    return d;
}

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
        .arg(m.Journal().size())
        .arg(m.DayOpened());
}

using Commits = std::function<void(IFiscalMemory&)>;
} // namespace

Q_DECLARE_METATYPE(Commits)

// The fiscal memory behind its interface: what each commit leaves, and the day rules read off it.
class TestFiscalMemory : public QObject {
    Q_OBJECT

private slots:
    void commits_data() {
        QTest::addColumn<Commits>("commits");
        QTest::addColumn<QString>("expected");
        using O = ReceiptRecord::Outcome;
        const auto row = [](const char* name, Commits c, const char* expected) {
            QTest::newRow(name) << c << QString::fromLatin1(expected);
        };
        const QString fresh = "fiscal=0 voided=0 creditnotes=0 nonfiscal=0 restarts=0 z=0 remaining=1800 "
                              "day=0 grand=0 refund=0 midvoid=0 cash=0 journal=0 open=0";
        QTest::newRow("nothing") << Commits([](IFiscalMemory&) {}) << fresh;
        row(
            "a sale",
            [](IFiscalMemory& m) {
                m.CommitReceipt(Sale(m, {1000, 250}, 1, kMorning));
            },
            "fiscal=1 voided=0 creditnotes=0 nonfiscal=0 restarts=0 z=0 remaining=1800 "
            "day=1250 grand=1250 refund=0 midvoid=0 cash=1250 journal=1 open=1");
        row(
            "a voided receipt",
            [](IFiscalMemory& m) { m.CommitReceipt(Sale(m, {500}, 1, kMorning, O::Voided)); },
            "fiscal=0 voided=1 creditnotes=0 nonfiscal=0 restarts=0 z=0 remaining=1800 "
            "day=0 grand=0 refund=0 midvoid=500 cash=0 journal=1 open=1");
        row(
            "a credit note",
            [](IFiscalMemory& m) { m.CommitReceipt(Sale(m, {800}, 2, kMorning, O::CreditNote)); },
            "fiscal=0 voided=0 creditnotes=1 nonfiscal=0 restarts=0 z=0 remaining=1800 "
            "day=0 grand=0 refund=800 midvoid=0 cash=0 journal=1 open=1");
        row(
            "a Z after a sale",
            [](IFiscalMemory& m) {
                m.CommitReceipt(Sale(m, {1000}, 1, kMorning));
                QVERIFY(m.CommitZReport(kMorning.addSecs(3600), Doc(JournalDocument::Kind::ZReport, {})));
            },
            "fiscal=0 voided=0 creditnotes=0 nonfiscal=0 restarts=0 z=1 remaining=1799 "
            "day=0 grand=1000 refund=0 midvoid=0 cash=0 journal=2 open=0");
        row(
            "a Z with the memory full",
            [](IFiscalMemory& m) {
                m.CommitReceipt(Sale(m, {1000}, 1, kMorning));
                m.SetRemaining(0);
                QVERIFY(!m.CommitZReport(kMorning.addSecs(3600), Doc(JournalDocument::Kind::ZReport, {})));
            },
            "fiscal=1 voided=0 creditnotes=0 nonfiscal=0 restarts=0 z=0 remaining=0 "
            "day=1000 grand=1000 refund=0 midvoid=0 cash=1000 journal=1 open=1");
        row(
            "a non-fiscal document opens no day",
            [](IFiscalMemory& m) { m.CommitNonFiscal(Doc(JournalDocument::Kind::NonFiscal, kMorning)); },
            "fiscal=0 voided=0 creditnotes=0 nonfiscal=1 restarts=0 z=0 remaining=1800 "
            "day=0 grand=0 refund=0 midvoid=0 cash=0 journal=1 open=0");
        row(
            "restarts outlive the day",
            [](IFiscalMemory& m) {
                m.CommitRestart();
                m.CommitDayReset();
            },
            "fiscal=0 voided=0 creditnotes=0 nonfiscal=0 restarts=1 z=0 remaining=1800 "
            "day=0 grand=0 refund=0 midvoid=0 cash=0 journal=0 open=0");
    }
    void commits() {
        QFETCH(Commits, commits);
        QFETCH(QString, expected);
        const auto memory = MakeInMemoryFiscalMemory(Models().first());
        commits(*memory);
        QCOMPARE(Observe(*memory), expected);
    }

    void zRecordKeepsTheDay() {
        const auto m = MakeInMemoryFiscalMemory(Models().first());
        m->CommitReceipt(Sale(*m, {1000}, 1, kMorning));
        m->CommitReceipt(Sale(*m, {500}, 2, kMorning.addSecs(60)));
        QCOMPARE(CurrentDayNumber(*m), 1);
        QCOMPARE(NextReceiptNumber(*m), 3);
        QVERIFY(m->CommitZReport(kMorning.addSecs(7200), Doc(JournalDocument::Kind::ZReport, {})));
        const ZRecord& z = m->ZRecords().last();
        QCOMPARE(z.number, 1);
        QCOMPARE(z.day.Sum(TotalKind::Net), Amount{1500} * 100);
        QCOMPARE(z.counters.fiscalReceipts, 2);
        QCOMPARE(z.grandNet, Amount{1500} * 100);
        QCOMPARE(m->Journal().last().zNumber, 1);
        QCOMPARE(CurrentDayNumber(*m), 2);
        QCOMPARE(NextReceiptNumber(*m), 1);
        QCOMPARE(m->LastFiscalDocument(), kMorning.addSecs(7200));
    }

    // Once 24 hours have passed since the day opened, the day must end first.
    void dayEnd_data() {
        QTest::addColumn<qint64>("after"); // seconds from the first receipt; -1: no receipt
        QTest::addColumn<bool>("required");
        QTest::newRow("no day open") << qint64{-1} << false;
        QTest::newRow("the same hour") << qint64{3600} << false;
        QTest::newRow("a second short of a day") << qint64{24 * 3600 - 1} << false;
        QTest::newRow("24 hours") << qint64{24 * 3600} << true;
        QTest::newRow("three days") << qint64{3 * 24 * 3600} << true;
    }
    void dayEnd() {
        QFETCH(qint64, after);
        QFETCH(bool, required);
        const auto m = MakeInMemoryFiscalMemory(Models().first());
        if (after >= 0)
            m->CommitReceipt(Sale(*m, {100}, 1, kMorning));
        QCOMPARE(DayEndRequired(*m, kMorning.addSecs(qMax<qint64>(after, 0))), required);
    }

    // The clock never goes back behind the last fiscal document, to the minute.
    void clockBehindLastDocument_data() {
        QTest::addColumn<qint64>("offset"); // seconds from the last document at 09:00:30
        QTest::addColumn<bool>("before");
        QTest::newRow("the same minute") << qint64{-30} << false;
        QTest::newRow("a second before that minute") << qint64{-31} << true;
        QTest::newRow("a day before") << qint64{-86400} << true;
        QTest::newRow("later") << qint64{60} << false;
    }
    void clockBehindLastDocument() {
        QFETCH(qint64, offset);
        QFETCH(bool, before);
        const auto m = MakeInMemoryFiscalMemory(Models().first());
        QVERIFY(!BeforeLastFiscalDocument(*m, kMorning.addYears(-10))); // nothing printed yet
        m->CommitReceipt(Sale(*m, {100}, 1, kMorning.addSecs(30)));
        QCOMPARE(BeforeLastFiscalDocument(*m, kMorning.addSecs(30 + offset)), before);
    }

    // X and Z reports print the VAT of each rate.
    void vatPerRate() {
        const auto m = MakeInMemoryFiscalMemory(Models().first());
        m->CommitReceipt(Sale(*m, {12200}, 1, kMorning)); // 122.00 at 22 %: 22.00 of VAT
        m->CommitReceipt(Sale(*m, {1100}, 2, kMorning));  // 11.00 at 10 %: 1.00
        const QStringList lines = DayReportLines(*m, Models().first());
        const auto has = [&](const QString& label, const QString& money) {
            const QString line = label + QString(46 - label.size() - money.size(), u' ') + money;
            return lines.contains(line) ? QString() : line;
        };
        QCOMPARE(has("ALIQUOTA A 22,00%", "122,00"), QString());
        QCOMPARE(has("IVA A 22,00%", "22,00"), QString());
        QCOMPARE(has("ALIQUOTA B 10,00%", "11,00"), QString());
        QCOMPARE(has("IVA B 10,00%", "1,00"), QString());
        QCOMPARE(has("IVA TOTALE", "23,00"), QString());
        QCOMPARE(lines.filter(QStringLiteral("ALIQUOTA C")).size(), 0); // rates with nothing stay out
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
        const auto m = MakeInMemoryFiscalMemory(model);
        for (int i = 0; i < 3; ++i)
            m->CommitReceipt(Sale(*m, {3}, 1, kMorning));
        QCOMPARE(DayVat(*m, model).Get(TotalKind::Vat, 1), vat);
    }
};

QTEST_GUILESS_MAIN(TestFiscalMemory)
#include "test_fiscal_memory.moc"
