#include "FiscalMemoryFiles.h"
#include "PrinterScript.h"
#include "SqliteFiscalMemory.h"
#include "Zorvane6DirectIO.h"

#include <QLockFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace sim;
using namespace OposAll;
using namespace t;
using namespace fm;
using Outcome = FiscalMemoryOpening::Outcome;

// The files kept aside as old memories beside `path`.
static QStringList OldFiles(const QString& path) {
    const QFileInfo info(path);
    QStringList names = info.dir().entryList({info.fileName() + QStringLiteral(".old-*")});
    for (QString& name : names)
        name = info.dir().filePath(name);
    return names;
}

// The fiscal memory file across restarts and kills: what the next start finds, and what the
// printer makes of it.
class TestFiscalMemoryRestart : public QObject {
    Q_OBJECT
    Folder m_folder;
    QString NewPath() { return m_folder.NewPath(); }

private slots:
    void initTestCase() { QVERIFY(m_folder.Ready()); }

    // The process dies inside a commit: its transaction never reaches the file, and the file reads back
    // as it was before.
    void killDuringACommit_data() {
        QTest::addColumn<QString>("killed");
        for (const char* step :
             {"sale 700", "credit 700", "z", "nonfiscal", "restart", "vat 100", "header X", "begun"})
            QTest::newRow(step) << QString::fromLatin1(step);
    }
    void killDuringACommit() {
        QFETCH(QString, killed);
        const QString path = NewPath();
        QString before;
        Messages messages;
        {
            FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, Zorvane());
            auto& m = static_cast<SqliteFiscalMemory&>(*opening.memory);
            ADayAndABit(m);
            QCOMPARE(Commit(m, "vat 2200,1000,500; header ULTIMA; restart"), QStringLiteral("0;0;0"));
            m.CommitDepartmentLinks({{7, 3}});
            before = Snapshot(m);
            m.DropConnectionAtNextCommit();
            QCOMPARE(Commit(m, killed, kMorning.addDays(1)), QStringLiteral("0"));
            QVERIFY(m.Detached());
        }
        QCOMPARE(messages.texts.size(), 1);
        QVERIFY2(messages.texts[0].contains(path), qPrintable(messages.texts[0]));
        FiscalMemoryOpening again = OpenFiscalMemoryFile(path, Zorvane());
        QCOMPARE(again.outcome, Outcome::Opened);
        QCOMPARE(Snapshot(*again.memory), before);
    }

    // Killed between receipts and in the middle of one: the ended receipts are there, the open one
    // is not, and at the next Open the printer ends it as after a power cut.
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

    // A running printer starts a new fiscal memory: the old file aside as it was, the printer on a
    // new file in its place, held by this process all along.
    void newMemoryWhileRunning_data() {
        QTest::addColumn<QString>("steps");
        const QString sale = QStringLiteral("begin; item 1 1.00; total 1.00 1.00; end; ");
        QTest::newRow("after a day") << sale + "zreport; set DuplicateReceipt=1; " + sale;
        // VAT 3 is not set yet: it goes with the old memory.
        QTest::newRow("header and VAT set") << "header 1 NEGOZIO; vat 2 15; vattable; vat 3 15; " + sale;
        QTest::newRow("full, locked") << sale + "memory 0";
    }
    void newMemoryWhileRunning() {
        QFETCH(QString, steps);
        const QString path = FiscalMemoryPath(QStringLiteral("ZorvaneFPU"));
        QDir(FiscalMemoryFolder()).removeRecursively();
        {
            SimulatedFiscalPrinter p;
            p.SetFiscalMemoryFactory(PersistentFiscalMemories({}));
            Ready(p);
            QCOMPARE(printer_script::Run(p, steps), printer_script::AllZero(steps));
            const QString before = Snapshot(p.Memory());
            Messages messages(MsgResult::Yes);
            QVERIFY(StartNewFiscalMemory(p));
            QCOMPARE(messages.texts.size(), 2);
            QVERIFY2(messages.texts[0].contains(path) &&
                         messages.texts[0].contains(QStringLiteral("ZorvaneFPU")),
                     qPrintable(messages.texts[0]));

            const QStringList old = OldFiles(path);
            QCOMPARE(old.size(), 1);
            QVERIFY2(messages.texts[1].contains(old[0]), qPrintable(messages.texts[1]));
            {
                FiscalMemoryOpening aside = OpenFiscalMemoryFile(old[0], Zorvane());
                QCOMPARE(aside.outcome, Outcome::Opened);
                QCOMPARE(Snapshot(*aside.memory), before);
            }

            const auto* file = dynamic_cast<const SqliteFiscalMemory*>(&p.Memory());
            QVERIFY(file);
            QCOMPARE(file->FilePath(), path);
            QCOMPARE(p.SetVatTable(), 0);
            QCOMPARE(Snapshot(p.Memory()), Snapshot(*MakeInMemoryFiscalMemory(Zorvane())));
            QCOMPARE(p.PrinterState(), FPTR_PS_MONITOR);
            QCOMPARE(p.PrintDuplicateReceipt(), OPOS_E_ILLEGAL); // the kept receipt went with the old memory
            QLockFile lock(path + QStringLiteral(".lock"));
            qint64 pid = 0;
            QString host, app;
            QVERIFY(lock.getLockInfo(&pid, &host, &app));
            QCOMPARE(pid, QCoreApplication::applicationPid());
            QCOMPARE(OpenFiscalMemoryFile(path, Zorvane()).outcome, Outcome::Refused);

            Sale(p, M(300));
        }
        // The printer went on in the new file.
        FiscalMemoryOpening again = OpenFiscalMemoryFile(path, Zorvane());
        QCOMPARE(again.outcome, Outcome::Opened);
        QCOMPARE(again.memory->GrandCounters(), (Counters{.fiscalReceipts = 1}));
        QCOMPARE(again.memory->GrandTotals().Sum(TotalKind::Net), M(300));
        QCOMPARE(again.memory->JournalCount(), 1);
    }
};

QTEST_GUILESS_MAIN(TestFiscalMemoryRestart)
#include "test_fiscal_memory_restart.moc"
