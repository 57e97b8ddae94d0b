// A fiscal memory file of arbitrary bytes. The first byte picks the model ("T" the strict one,
// anything else the other); the rest is the file. Opening must give one of its outcomes and keep
// its promises: a refused file is left byte for byte as it was, a damaged one is moved aside whole,
// and a memory that opens takes a receipt and a Z report and reads back, from its file, as it was
// left.

#include "FuzzSupport.h"

#include "FiscalMemoryFile.h"
#include "FiscalTotals.h"
#include "ModelSwitches.h"
#include "SimulatedFiscalPrinter.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>

namespace {

using Outcome = sim::FiscalMemoryOpening::Outcome;

QByteArray ReadAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// One sale of 1.00 in cash: when every call is taken, the day's net total grows by exactly that.
void SellOne(SimulatedFiscalPrinter& p) {
    const Amount before = p.Memory().DayTotals().Sum(sim::TotalKind::Net);
    bool header = true;
    QString description = QStringLiteral("Articolo"), unit, payment = QStringLiteral("0CONTANTI");
    Amount price = 10000, unitPrice = 0, total = 10000, paid = 10000;
    int32_t quantity = 0, vat = 1;
    const bool taken = p.BeginFiscalReceipt(header) == 0 &&
                       p.PrintRecItem(description, price, quantity, vat, unitPrice, unit) == 0 &&
                       p.PrintRecTotal(total, paid, payment) == 0 && p.EndFiscalReceipt(header) == 0;
    if (taken && p.Memory().DayTotals().Sum(sim::TotalKind::Net) != before + 10000)
        fuzz::Fail("a receipt of 1.00 did not add 1.00 to the day");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::Init();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static QTemporaryDir folder(
        QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm/fpufuzz-fm-XXXXXX") : QString());
    if (size == 0)
        return 0;
    QString model = data[0] == 'T' ? QStringLiteral("Tessorim") : QStringLiteral("ZorvaneFPU");
    const QByteArray bytes(reinterpret_cast<const char*>(data) + 1, static_cast<qsizetype>(size - 1));
    QDir dir(folder.filePath(QStringLiteral("m")));
    dir.removeRecursively();
    dir.mkpath(QStringLiteral("."));
    const QString path = dir.filePath(model + QStringLiteral(".sqlite"));
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            fuzz::Fail("cannot write the input file");
    }

    sim::FiscalMemoryOpening opening = sim::OpenFiscalMemoryFile(path, *sim::FindModel(model));
    if ((opening.memory == nullptr) != (opening.outcome == Outcome::Refused))
        fuzz::Fail("a memory handed out with a refusal, or none without");
    if (opening.outcome == Outcome::Refused) {
        if (opening.message.isEmpty())
            fuzz::Fail("a refusal that says nothing");
        if (ReadAll(path) != bytes)
            fuzz::Fail("a refused file was changed");
        return 0;
    }
    if (opening.outcome == Outcome::MovedAside && ReadAll(opening.keptAt) != bytes)
        fuzz::Fail("a damaged file was not kept aside as it was", opening.keptAt);

    int journal = 0;
    {
        SimulatedFiscalPrinter p;
        fuzz::ClearingSink sink;
        p.SetEventSink(&sink);
        p.SetPrintTimePerLineMs(0);
        p.SetFiscalMemoryFactory([&opening](const sim::ModelSwitches&) { return std::move(opening.memory); });
        int32_t timeout = 0;
        if (p.Open(model) != 0 || p.ClaimDevice(timeout) != 0)
            fuzz::Fail("the simulated printer does not open on a memory that opened");
        p.SetDeviceEnabled(true);
        SellOne(p);
        p.PrintZReport();
        SellOne(p);
        QCoreApplication::processEvents();
        journal = p.Memory().JournalCount();
        p.SetEventSink(nullptr);
    }
    // What was committed is what the file holds.
    sim::FiscalMemoryOpening again = sim::OpenFiscalMemoryFile(path, *sim::FindModel(model));
    if (again.outcome != Outcome::Opened)
        fuzz::Fail("a memory the bench wrote does not open as it was", again.message);
    if (again.memory->JournalCount() != journal)
        fuzz::Fail("the journal read back is not the one written");
    return 0;
}
