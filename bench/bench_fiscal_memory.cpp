// The fiscal memory file against the one in the process: what a receipt costs through the
// printer, what opening a full file costs, and what the journal report costs by date and number.
// Prints figures. Usage: bench_fiscal_memory [FOLDER] (a temporary folder by default; the disk
// under it is what is measured).
#include "FiscalMemoryFile.h"
#include "ModelSwitches.h"
#include "Reports.h"
#include "SimulatedFiscalPrinter.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr int Receipts = 1000;
constexpr int Days = 50;
constexpr int ReceiptsPerDay = 100;

double MsPerReceipt(SimulatedFiscalPrinter& p, int receipts) {
    QString name = QStringLiteral("ZorvaneFPU"), description = QStringLiteral("Articolo"), unit, payment;
    int32_t timeout = 1000, quantity = 0, vat = 1;
    bool header = false;
    p.Open(name);
    p.ClaimDevice(timeout);
    p.SetDeviceEnabled(true);
    Amount price = 12300, unitPrice = 0;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < receipts; ++i) {
        p.BeginFiscalReceipt(header);
        for (int line = 0; line < 5; ++line)
            p.PrintRecItem(description, price, quantity, vat, unitPrice, unit);
        Amount total = 5 * price, paid = total;
        p.PrintRecTotal(total, paid, payment);
        p.EndFiscalReceipt(header);
    }
    const double ms = timer.nsecsElapsed() / 1e6 / receipts;
    if (p.Memory().DayCounters().fiscalReceipts != receipts)
        std::fprintf(stderr, "only %d receipts reached the memory\n",
                     p.Memory().DayCounters().fiscalReceipts);
    return ms;
}

// Days of receipts of 20 journal lines each, a Z report closing each day.
void Fill(sim::IFiscalMemory& m) {
    const QDateTime start(QDate(2025, 1, 1), QTime(8, 0));
    const QStringList lines(20, QStringLiteral("ARTICOLO DI PROVA                    12,30"));
    for (int day = 0; day < Days; ++day) {
        for (int r = 0; r < ReceiptsPerDay; ++r) {
            sim::ReceiptRecord rec;
            rec.begunAt = start.addDays(day).addSecs(60 * r);
            rec.totals.At(sim::TotalKind::Net, 1) = 12300;
            rec.tenders[1] = 12300;
            rec.document.kind = sim::JournalDocument::Kind::Fiscal;
            rec.document.number = r + 1;
            rec.document.when = rec.begunAt;
            rec.document.lines = lines;
            m.CommitReceipt(rec);
        }
        sim::JournalDocument z;
        z.kind = sim::JournalDocument::Kind::ZReport;
        z.when = start.addDays(day).addSecs(12 * 3600);
        m.CommitZReport(z.when, z);
    }
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QTemporaryDir temp;
    const QString folder = argc > 1 ? QString::fromLocal8Bit(argv[1]) : temp.path();
    const QString path = folder + QStringLiteral("/bench-fiscal-memory.sqlite");
    QFile::remove(path);

    {
        SimulatedFiscalPrinter inProcess;
        std::printf("receipt of 5 items, memory in the process: %.3f ms\n",
                    MsPerReceipt(inProcess, Receipts));
    }
    {
        SimulatedFiscalPrinter inFile;
        inFile.SetFiscalMemoryFactory([&path](const sim::ModelSwitches& model) {
            return sim::OpenFiscalMemoryFile(path, model).memory;
        });
        std::printf("receipt of 5 items, memory in %s: %.3f ms\n", qPrintable(path),
                    MsPerReceipt(inFile, Receipts));
    }
    QFile::remove(path);

    const sim::ModelSwitches& model = sim::Models().first();
    QElapsedTimer timer;
    timer.start();
    {
        auto opening = sim::OpenFiscalMemoryFile(path, model);
        Fill(*opening.memory);
    }
    std::printf("%d days of %d receipts and a Z report written: %.1f s, %.1f MiB\n", Days, ReceiptsPerDay,
                timer.nsecsElapsed() / 1e9, QFileInfo(path).size() / 1048576.0);

    timer.restart();
    auto opening = sim::OpenFiscalMemoryFile(path, model);
    std::printf("opening it (checked and loaded, %lld journal documents): %.1f ms\n",
                static_cast<long long>(opening.memory->JournalCount()), timer.nsecsElapsed() / 1e6);
    const auto report = [&](const char* what, int mode, int from, int to) {
        QElapsedTimer t;
        t.start();
        const QStringList lines = sim::JournalReportLines(*opening.memory, mode, 0, from, to, from, to);
        std::printf("journal report, %s: %lld lines in %.1f ms\n", what, static_cast<long long>(lines.size()),
                    t.nsecsElapsed() / 1e6);
    };
    report("one day by date", 1, 20250210, 20250210);
    report("numbers 1 to 3 of every day", 2, 1, 3);
    report("the whole journal", 0, 0, 0);
    return 0;
}
