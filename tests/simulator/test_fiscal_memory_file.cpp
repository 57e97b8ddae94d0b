#include "FiscalMemoryFiles.h"
#include "SimTestSupport.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace sim;
using namespace OposAll;
using namespace t;
using namespace fm;
using Outcome = FiscalMemoryOpening::Outcome;
using Prepare = std::function<void(const QString& path)>;

Q_DECLARE_METATYPE(Prepare)

// Opening a fiscal memory file: what a file that can't be used gets, the schema upgrade, one
// bench per file, the new memory started on purpose.
class TestFiscalMemoryFile : public QObject {
    Q_OBJECT
    Folder m_folder;
    QString NewPath() { return m_folder.NewPath(); }

private slots:
    void initTestCase() { QVERIFY(m_folder.Ready()); }

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
        QTest::newRow("a format SQLite reads but won't write") << Prepare([](const QString& p) {
            MakeMemory(p, Zorvane(), ADayAndABit);
            QByteArray b = Bytes(p);
            b[18] = 3; // the header's write version
            Write(p, b);
        }) << "readonly";
        QTest::newRow("a folder") << Prepare([](const QString& p) { QVERIFY(QDir().mkpath(p)); })
                                  << "it is not a file";
    }
    void refused() {
        QFETCH(Prepare, prepare);
        QFETCH(QString, says);
        const QString path = NewPath();
        prepare(path);
        const QByteArray bytes = Bytes(path);
        const QStringList around = QDir(m_folder.Path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, Zorvane());
        QCOMPARE(opening.outcome, Outcome::Refused);
        QVERIFY(!opening.memory);
        QVERIFY2(opening.message.contains(says) && opening.message.contains(path),
                 qPrintable(opening.message));
        QCOMPARE(Bytes(path), bytes);
        QCOMPARE(QDir(m_folder.Path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), around);
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
