#include "FiscalMemoryFile.h"
#include "FiscalMemoryScript.h"
#include "ModelSwitches.h"
#include "Seams.h"
#include "SimTestSupport.h"
#include "SqliteFiscalMemory.h"
#include "Zorvane6DirectIO.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

using namespace sim;
using namespace OposAll;
using namespace t;
using fm::Doc;
using fm::kMorning;
using fm::Sale;
using Outcome = FiscalMemoryOpening::Outcome;
using Commits = std::function<void(IFiscalMemory&)>;
using Prepare = std::function<void(const QString& path)>;

Q_DECLARE_METATYPE(Commits)
Q_DECLARE_METATYPE(Prepare)

namespace {

const ModelSwitches& Zorvane() {
    return Models().at(0);
}
const ModelSwitches& Tessorim() {
    return Models().at(1);
}

QByteArray Bytes(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void Write(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(f.write(bytes), bytes.size());
}

// Statements on the file through a connection of its own, as another program would run them.
void Raw(const QString& path, const QStringList& statements) {
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
void MakeMemory(const QString& path, const ModelSwitches& model, const Commits& commits) {
    FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, model);
    QVERIFY2(opening.memory, qPrintable(opening.message));
    commits(*opening.memory);
}

// Three receipts, a Z report, a non-fiscal document and a receipt of the next day.
void ADayAndABit(IFiscalMemory& m) {
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
QString Snapshot(const IFiscalMemory& m) {
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

FiscalMemoryFactory FileFactory(const QString& path) {
    return [path](const ModelSwitches& model) { return OpenFiscalMemoryFile(path, model).memory; };
}

} // namespace

// The fiscal memory file: what survives a restart or a kill, and what a file that can't be used
// gets.
class TestFiscalMemoryFile : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    int m_files = 0;
    QString NewPath() { return m_dir.filePath(QStringLiteral("m%1.sqlite").arg(++m_files)); }

private slots:
    void initTestCase() {
        QVERIFY(m_dir.isValid());
        // The bench's own folder lands in the test's folder, whoever runs it.
        qputenv("XDG_DATA_HOME", m_dir.filePath(QStringLiteral("data")).toLocal8Bit());
    }

    void readsBackWhatItKept() {
        const QString path = NewPath();
        QString before;
        {
            FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, Zorvane());
            QCOMPARE(opening.outcome, Outcome::Created);
            IFiscalMemory& m = *opening.memory;
            ADayAndABit(m);
            m.CommitVatTable({2200, 1000, 500});
            m.CommitHeaderLine(5, {QStringLiteral("ULTIMA"), true});
            m.CommitDepartmentLinks({{7, 3}});
            m.CommitRestart();
            m.CommitDocumentBegun({JournalDocument::Kind::Fiscal, 2, kMorning.addDays(1), {}});
            before = Snapshot(m);
        }
        QVERIFY(before.contains(QStringLiteral("Z 1 ")));
        FiscalMemoryOpening again = OpenFiscalMemoryFile(path, Zorvane());
        QCOMPARE(again.outcome, Outcome::Opened);
        QVERIFY(again.message.isEmpty());
        QCOMPARE(Snapshot(*again.memory), before);
    }

    // The process dies inside a commit: its transaction never reaches the file.
    void killDuringACommit_data() {
        QTest::addColumn<Commits>("killed");
        using K = JournalDocument::Kind;
        QTest::newRow("a receipt") << Commits(
            [](IFiscalMemory& m) { m.CommitReceipt(Sale(m, {700}, 1, kMorning.addDays(1))); });
        QTest::newRow("a credit note") << Commits([](IFiscalMemory& m) {
            m.CommitReceipt(Sale(m, {700}, 1, kMorning.addDays(1), ReceiptRecord::Outcome::CreditNote));
        });
        QTest::newRow("a Z report") << Commits([](IFiscalMemory& m) {
            QVERIFY(m.CommitZReport(kMorning.addDays(1), Doc(K::ZReport, kMorning.addDays(1))));
        });
        QTest::newRow("a non-fiscal document")
            << Commits([](IFiscalMemory& m) { m.CommitNonFiscal(Doc(K::NonFiscal, kMorning.addDays(1))); });
        QTest::newRow("a restart") << Commits([](IFiscalMemory& m) { m.CommitRestart(); });
        QTest::newRow("the VAT table") << Commits([](IFiscalMemory& m) { m.CommitVatTable({100}); });
        QTest::newRow("a header line") << Commits([](IFiscalMemory& m) {
            m.CommitHeaderLine(0, {QStringLiteral("X"), false});
        });
        QTest::newRow("a document begun") << Commits([](IFiscalMemory& m) {
            m.CommitDocumentBegun({K::Fiscal, 2, kMorning.addDays(1), {}});
        });
    }
    void killDuringACommit() {
        QFETCH(Commits, killed);
        const QString path = NewPath();
        QString before;
        Messages messages;
        {
            FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, Zorvane());
            auto& m = static_cast<SqliteFiscalMemory&>(*opening.memory);
            ADayAndABit(m);
            before = Snapshot(m);
            m.DropConnectionAtNextCommit();
            killed(m);
            QVERIFY(m.Detached());
        }
        QCOMPARE(messages.texts.size(), 1);
        QVERIFY2(messages.texts[0].contains(path), qPrintable(messages.texts[0]));
        FiscalMemoryOpening again = OpenFiscalMemoryFile(path, Zorvane());
        QCOMPARE(again.outcome, Outcome::Opened);
        QCOMPARE(Snapshot(*again.memory), before);
    }

    // Killed between receipts and in the middle of one: the ended receipts are there, the open one
    // is not; at the next Open the printer ends it as after a power cut.
    void killInTheMiddleOfAReceipt() {
        const QString path = NewPath();
        {
            SimulatedFiscalPrinter p;
            p.SetFiscalMemoryFactory(FileFactory(path));
            Ready(p);
            Sale(p, M(100));
            Sale(p, M(250));
            QCOMPARE(Begin(p), 0);
            QCOMPARE(Item(p, QStringLiteral("Lost"), M(999)), 0);
        }
        {
            FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, Zorvane());
            const IFiscalMemory& m = *opening.memory;
            QCOMPARE(m.DayCounters(), (Counters{.fiscalReceipts = 2}));
            QCOMPARE(m.GrandTotals().Sum(TotalKind::Net), M(350));
            QCOMPARE(m.JournalCount(), 2);
            QVERIFY(m.UnfinishedDocument());
            QCOMPARE(m.UnfinishedDocument()->number, 3);
            QCOMPARE(m.UnfinishedDocument()->kind, JournalDocument::Kind::Fiscal);
        }
        SimulatedFiscalPrinter p;
        p.SetFiscalMemoryFactory(FileFactory(path));
        Ready(p);
        QCOMPARE(p.PrinterState(), FPTR_PS_MONITOR);
        QCOMPARE(Data(p, FPTR_GD_RESTART), QStringLiteral("1"));
        const IFiscalMemory& m = p.Memory();
        QCOMPARE(m.DayCounters(), (Counters{.fiscalReceipts = 2, .voidedReceipts = 1, .restarts = 1}));
        QCOMPARE(m.DayVoided(), 0);
        QCOMPARE(m.GrandTotals().Sum(TotalKind::Net), M(350));
        QVERIFY(!m.UnfinishedDocument());
        const JournalDocument last = m.JournalDocuments({}).last();
        QCOMPARE(last.number, 3);
        QVERIFY(last.lines.contains(QStringLiteral("INTERRUZIONE ALIMENTAZIONE")));
        QVERIFY(last.lines.contains(QStringLiteral("ANNULLATO")));
        QVERIFY(last.lines.contains(QStringLiteral("SCONTRINO N. 0003")));
        Sale(p, M(100));
        QCOMPARE(Data(p, FPTR_GD_RECEIPT_NUMBER), QStringLiteral("4"));
    }

    // A real kill, at whatever point the writer has reached: the file holds whole receipts only, at
    // least every one the writer had reported ended, and at most a begun one besides.
    void killedProcess() {
        for (const int wanted : {1, 4, 9, 17, 30}) {
            const QString path = NewPath();
            QProcess writer;
            writer.start(QStringLiteral(FPU_FISCAL_MEMORY_WRITER), {path});
            QVERIFY(writer.waitForStarted());
            int ended = 0;
            while (ended < wanted && writer.waitForReadyRead(10000))
                while (writer.canReadLine())
                    ended = qMax(ended, writer.readLine().trimmed().toInt());
            QVERIFY2(ended >= wanted, writer.readAllStandardError().constData());
            writer.kill();
            QVERIFY(writer.waitForFinished());

            FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, Zorvane());
            QCOMPARE(opening.outcome, Outcome::Opened);
            const IFiscalMemory& m = *opening.memory;
            const int kept = m.DayCounters().fiscalReceipts;
            QVERIFY2(kept >= ended, qPrintable(QStringLiteral("%1 reported, %2 kept").arg(ended).arg(kept)));
            QCOMPARE(m.DayCounters().voidedReceipts, 0);
            QCOMPARE(m.GrandTotals().Sum(TotalKind::Net), M(100) * kept);
            QCOMPARE(m.DayTenders()[FPTR_PDL_CASH], M(100) * kept);
            QCOMPARE(m.JournalCount(), kept);
            const auto numbers = m.JournalDocuments({});
            QCOMPARE(numbers.last().number, kept);
            if (const auto open = m.UnfinishedDocument())
                QCOMPARE(open->number, kept + 1);
        }
    }

    // The bench closes after a few receipts and a Z report and starts again: the numbers go on,
    // and the journal report lists the earlier receipts.
    void continuesAfterARestart() {
        const QString path = NewPath();
        {
            SimulatedFiscalPrinter p;
            p.SetFiscalMemoryFactory(FileFactory(path));
            Ready(p);
            Sale(p, M(100));
            Sale(p, M(200));
            QCOMPARE(p.PrintZReport(), 0);
            Sale(p, M(300));
            QCOMPARE(p.Close(), 0);
        }
        SimulatedFiscalPrinter p;
        p.SetFiscalMemoryFactory(FileFactory(path));
        Ready(p);
        QCOMPARE(Data(p, FPTR_GD_Z_REPORT), QStringLiteral("1"));
        Sale(p, M(400));
        QCOMPARE(Data(p, FPTR_GD_RECEIPT_NUMBER), QStringLiteral("2"));
        QCOMPARE(Data(p, FPTR_GD_RESTART), QStringLiteral("0"));
        int32_t command = Zorvane6DirectIO::DIRECTIO_FPTR_REPORT_EJ;
        DirectIOData data{};
        data[0] = 1; // a new file
        QString name = QStringLiteral("journal.txt");
        QCOMPARE(p.DirectIO(command, data, name), 0);
        const QString report = QString::fromUtf8(Bytes(name));
        QCOMPARE(report.count(QStringLiteral("---- SF ")), 4);
        QCOMPARE(report.count(QStringLiteral("---- Z 0001")), 1);
        QCOMPARE(report.count(QStringLiteral("SCONTRINO N. 0001")), 2);
        QCOMPARE(report.count(QStringLiteral("SCONTRINO N. 0002")), 2);
    }

    // Files that are not this model's fiscal memory, or not one this bench reads: refused, and
    // left exactly as they were.
    void refused_data() {
        QTest::addColumn<Prepare>("prepare");
        QTest::addColumn<QString>("says");
        QTest::newRow("a text file") << Prepare([](const QString& p) { Write(p, "receipts: 3\n"); })
                                     << "it is not an SQLite database";
        QTest::newRow("another program's database") << Prepare([](const QString& p) {
            Raw(p, {QStringLiteral("CREATE TABLE people(name TEXT)"),
                    QStringLiteral("INSERT INTO people VALUES ('Ada')")});
        }) << "not a fiscal memory of fpubench";
        QTest::newRow("a newer schema") << Prepare([](const QString& p) {
            MakeMemory(p, Zorvane(), ADayAndABit);
            Raw(p, {QStringLiteral("PRAGMA user_version = 3")});
        }) << "newer fpubench (schema 3; this one reads up to 2)";
        QTest::newRow("the other model's memory")
            << Prepare([](const QString& p) { MakeMemory(p, Tessorim(), ADayAndABit); })
            << "belongs to a Tessorim printer, not to a ZorvaneFPU";
        QTest::newRow("a folder") << Prepare([](const QString& p) { QVERIFY(QDir().mkpath(p)); })
                                  << "it is not a file";
    }
    void refused() {
        QFETCH(Prepare, prepare);
        QFETCH(QString, says);
        const QString path = NewPath();
        prepare(path);
        const QByteArray bytes = Bytes(path);
        const QStringList around = QDir(m_dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, Zorvane());
        QCOMPARE(opening.outcome, Outcome::Refused);
        QVERIFY(!opening.memory);
        QVERIFY2(opening.message.contains(says) && opening.message.contains(path),
                 qPrintable(opening.message));
        QCOMPARE(Bytes(path), bytes);
        QCOMPARE(QDir(m_dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), around);
    }

    // A damaged fiscal memory is moved aside whole, and a new one starts in its place.
    void damaged_data() {
        QTest::addColumn<Prepare>("damage");
        QTest::addColumn<QString>("cause");
        const auto made = [](const QString& p) {
            MakeMemory(p, Zorvane(), [](IFiscalMemory& m) {
                for (int i = 0; i < 60; ++i)
                    m.CommitReceipt(Sale(m, {100 + i}, 1, kMorning, ReceiptRecord::Outcome::Sale, i + 1,
                                         QStringList(20, QStringLiteral("line %1").arg(i))));
            });
        };
        QTest::newRow("pages overwritten") << Prepare([made](const QString& p) {
            made(p);
            QByteArray b = Bytes(p);
            b.replace(b.size() / 2, 8192, QByteArray(8192, '\x5a'));
            Write(p, b);
        }) << "";
        QTest::newRow("cut short") << Prepare([made](const QString& p) {
            made(p);
            Write(p, Bytes(p).left(Bytes(p).size() / 3));
        }) << "";
        QTest::newRow("its state row gone") << Prepare([made](const QString& p) {
            made(p);
            Raw(p, {QStringLiteral("DELETE FROM state")});
        }) << "the state row is missing";
        QTest::newRow("a total of no kind") << Prepare([made](const QString& p) {
            made(p);
            Raw(p, {QStringLiteral("INSERT INTO totals VALUES ('day', 99, 1, 5)")});
        }) << "a total out of range";
        QTest::newRow("a Z record missing") << Prepare([](const QString& p) {
            MakeMemory(p, Zorvane(), ADayAndABit);
            Raw(p, {QStringLiteral("UPDATE z_records SET number = 2")});
        }) << "not numbered";
    }
    void damaged() {
        QFETCH(Prepare, damage);
        QFETCH(QString, cause);
        const QString path = NewPath();
        damage(path);
        const QByteArray bytes = Bytes(path);
        FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, Zorvane());
        QCOMPARE(opening.outcome, Outcome::MovedAside);
        QVERIFY(opening.keptAt.startsWith(path + QStringLiteral(".damaged-")));
        QCOMPARE(Bytes(opening.keptAt), bytes);
        QVERIFY2(opening.message.contains(path) && opening.message.contains(opening.keptAt) &&
                     opening.message.contains(cause),
                 qPrintable(opening.message));
        QCOMPARE(opening.memory->JournalCount(), 0);
        QCOMPARE(opening.memory->Remaining(), kFiscalMemoryCapacity);
        opening.memory.reset();
        QCOMPARE(OpenFiscalMemoryFile(path, Zorvane()).outcome, Outcome::Opened);
    }

    // Whatever bytes lie in the file, opening answers; the bytes are kept, where it says.
    void anyBytesGetAnAnswer() {
        QRandomGenerator random(20250310);
        QByteArray real;
        {
            const QString path = NewPath();
            MakeMemory(path, Zorvane(), ADayAndABit);
            real = Bytes(path);
        }
        QMap<Outcome, int> seen;
        for (int round = 0; round < 40; ++round) {
            QByteArray bytes = real;
            const int changes = 1 + round % 8;
            for (int c = 0; c < changes; ++c)
                bytes[random.bounded(round % 2 ? 100 : int(bytes.size()))] = char(random.bounded(256));
            const QString path = NewPath();
            Write(path, bytes);
            FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, Zorvane());
            ++seen[opening.outcome];
            QVERIFY(!opening.memory == (opening.outcome == Outcome::Refused));
            if (opening.outcome == Outcome::MovedAside || opening.outcome == Outcome::Refused) {
                QVERIFY2(opening.message.contains(path), qPrintable(opening.message));
                QCOMPARE(Bytes(opening.outcome == Outcome::MovedAside ? opening.keptAt : path), bytes);
            }
        }
        // The changes reach every branch: files that still open, damaged ones, refused ones.
        QVERIFY(seen[Outcome::Opened] > 0 && seen[Outcome::MovedAside] > 0 && seen[Outcome::Refused] > 0);
    }

    // A file of the first schema is brought up to date; the old file stays beside it.
    void upgradeFromTheFirstSchema() {
        const QString path = NewPath();
        MakeMemory(path, Zorvane(), ADayAndABit);
        Raw(path,
            {QStringLiteral("DROP TABLE unfinished_document"), QStringLiteral("PRAGMA user_version = 1")});
        const QByteArray before = Bytes(path);
        {
            FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, Zorvane());
            QVERIFY2(opening.outcome == Outcome::Upgraded, qPrintable(opening.message));
            QVERIFY(opening.message.contains(opening.keptAt));
            QCOMPARE(opening.memory->DayCounters().voidedReceipts, 1);
            QCOMPARE(opening.memory->ZRecords().size(), 1);
            QCOMPARE(opening.memory->JournalCount(), 6);
            opening.memory->CommitDocumentBegun(
                {JournalDocument::Kind::NonFiscal, 2, kMorning.addDays(1), {}});
            QVERIFY(QFileInfo::exists(opening.keptAt));
        }
        FiscalMemoryOpening again = OpenFiscalMemoryFile(path, Zorvane());
        QCOMPARE(again.outcome, Outcome::Opened);
        QCOMPARE(again.memory->UnfinishedDocument()->kind, JournalDocument::Kind::NonFiscal);
        QVERIFY(before.size() > 0);
    }

    // Two benches on one file: the second is refused and the first goes on writing.
    void secondBenchIsRefused() {
        const QString path = NewPath();
        FiscalMemoryOpening first = OpenFiscalMemoryFile(path, Zorvane());
        QCOMPARE(first.outcome, Outcome::Created);
        FiscalMemoryOpening second = OpenFiscalMemoryFile(path, Zorvane());
        QCOMPARE(second.outcome, Outcome::Refused);
        QVERIFY2(second.message.contains(path) &&
                     second.message.contains(QStringLiteral("another running bench")),
                 qPrintable(second.message));
        first.memory->CommitReceipt(Sale(*first.memory, {100}, 1, kMorning));
        QString keptAt, error;
        QVERIFY(!MoveFiscalMemoryAside(path, keptAt, error));
        QVERIFY(error.contains(QStringLiteral("another running bench")));
        first.memory.reset();
        FiscalMemoryOpening third = OpenFiscalMemoryFile(path, Zorvane());
        QCOMPARE(third.outcome, Outcome::Opened);
        QCOMPARE(third.memory->DayCounters().fiscalReceipts, 1);
    }

    // The window's memories: the second bench says so and works on a fresh memory in the process.
    void secondWindowWorksInMemory() {
        QStringList told;
        const auto tell = [&told](const QString& text) { told << text; };
        SimulatedFiscalPrinter first, second;
        first.SetFiscalMemoryFactory(PersistentFiscalMemories(tell));
        second.SetFiscalMemoryFactory(PersistentFiscalMemories(tell));
        Ready(first);
        QVERIFY(told.isEmpty());
        QVERIFY(dynamic_cast<const SqliteFiscalMemory*>(&first.Memory()));
        Ready(second);
        QCOMPARE(told.size(), 1);
        QVERIFY2(told[0].contains(FiscalMemoryPath(QStringLiteral("ZorvaneFPU"))), qPrintable(told[0]));
        QVERIFY(told[0].contains(QStringLiteral("not kept")));
        QVERIFY(!dynamic_cast<const SqliteFiscalMemory*>(&second.Memory()));
        Sale(second, M(100));
        QCOMPARE(first.Memory().DayCounters().fiscalReceipts, 0);
        // The other model has a file of its own.
        QCOMPARE(second.Close(), 0);
        Ready(second, QStringLiteral("Tessorim"));
        QCOMPARE(told.size(), 1);
        QVERIFY(dynamic_cast<const SqliteFiscalMemory*>(&second.Memory()));
    }

    // Starting a new fiscal memory from the command line: asked first, the old file kept.
    void newFiscalMemory_data() {
        QTest::addColumn<QString>("model");
        QTest::addColumn<bool>("exists");
        QTest::addColumn<bool>("held");
        QTest::addColumn<MsgResult>("answer");
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("moved");
        QTest::newRow("yes") << "ZorvaneFPU" << true << false << MsgResult::Yes << 0 << true;
        QTest::newRow("no") << "ZorvaneFPU" << true << false << MsgResult::No << 1 << false;
        QTest::newRow("held by a bench") << "ZorvaneFPU" << true << true << MsgResult::Yes << 1 << false;
        QTest::newRow("none yet") << "Tessorim" << false << false << MsgResult::Yes << 0 << false;
        QTest::newRow("no such model") << "Epson" << false << false << MsgResult::Yes << 2 << false;
    }
    void newFiscalMemory() {
        QFETCH(QString, model);
        QFETCH(bool, exists);
        QFETCH(bool, held);
        QFETCH(MsgResult, answer);
        QFETCH(int, status);
        QFETCH(bool, moved);
        const QString path = FiscalMemoryPath(model);
        QDir(FiscalMemoryFolder()).removeRecursively();
        if (exists)
            MakeMemory(path, *FindModel(model), ADayAndABit);
        const QByteArray bytes = Bytes(path);
        FiscalMemoryOpening holder;
        if (held)
            holder = OpenFiscalMemoryFile(path, *FindModel(model));
        Messages messages(answer);
        QCOMPARE(StartNewFiscalMemory(model), status);
        QVERIFY(!messages.texts.isEmpty());
        const QStringList aside =
            QDir(FiscalMemoryFolder()).entryList({model + QStringLiteral(".sqlite.old-*")});
        QCOMPARE(aside.size(), moved ? 1 : 0);
        QCOMPARE(QFileInfo::exists(path), exists && !moved);
        if (moved) {
            const QString keptAt = FiscalMemoryFolder() + u'/' + aside[0];
            QCOMPARE(Bytes(keptAt), bytes);
            QVERIFY2(messages.texts.last().contains(keptAt), qPrintable(messages.texts.last()));
            QCOMPARE(OpenFiscalMemoryFile(path, *FindModel(model)).outcome, Outcome::Created);
        }
    }
};

QTEST_GUILESS_MAIN(TestFiscalMemoryFile)
#include "test_fiscal_memory_file.moc"
