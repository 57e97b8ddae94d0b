#include "FuzzSupport.h"

#include "FiscalMemory.h"
#include "Money.h"
#include "ReportFiles.h"
#include "Seams.h"
#include "SimulatedFiscalPrinter.h"

#include <QCoreApplication>
#include <QDir>
#include <QStringDecoder>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

namespace fuzz {

void Init() {
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);
    // Memory-backed when the system has it: report files are synced to disk, and there is no disk
    // to wait for there.
    static QTemporaryDir data(
        QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm/fpufuzz-XXXXXX") : QString());
    if (!data.isValid())
        Fail("no temporary folder");
    qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    SetMessageBoxHandler(
        [](const QString&, MsgButtons buttons, const QString&) { return UnattendedAnswer(buttons); });
    SetDebugOutputHandler([](const QString&) {});
}

void Fail(const char* what, const QString& detail) {
    std::fprintf(stderr, "fuzz finding: %s %s\n", what, qPrintable(detail));
    std::fflush(stderr);
    std::abort();
}

void CheckBooks(const SimulatedFiscalPrinter& printer) {
    using sim::TotalKind;
    const sim::IFiscalMemory& m = printer.Memory();
    sim::Totals days;
    sim::Counters counted;
    Amount running = 0;
    for (const sim::ZRecord& z : m.ZRecords()) {
        days.Add(z.day);
        running += z.day.Sum(TotalKind::Net);
        if (z.grandNet != running)
            Fail("a Z record's grand total is not the sum of the days", QString::number(z.number));
        counted.fiscalReceipts += z.counters.fiscalReceipts;
        counted.voidedReceipts += z.counters.voidedReceipts;
        counted.creditNotes += z.counters.creditNotes;
    }
    days.Add(m.DayTotals());
    if (!(days == m.GrandTotals()))
        Fail("the grand totals are not the sum of the days");
    const sim::Counters& day = m.DayCounters();
    const sim::Counters& grand = m.GrandCounters();
    if (counted.fiscalReceipts + day.fiscalReceipts != grand.fiscalReceipts ||
        counted.voidedReceipts + day.voidedReceipts != grand.voidedReceipts ||
        counted.creditNotes + day.creditNotes != grand.creditNotes)
        Fail("the grand counters are not the sum of the days");
    if (m.DayTenders()[1] < 0)
        Fail("the day's cash is below zero", QString::number(m.DayTenders()[1]));
    if (const sim::FiscalReceipt* receipt = printer.CurrentReceipt()) {
        if (receipt->Total() < 0 || receipt->Total() > sim::kMaxAmount)
            Fail("an open receipt's total out of range", QString::number(receipt->Total()));
    }
}

void TidyReports() {
    static unsigned runs = 0;
    if (++runs % 512 == 0)
        QDir(sim::ReportFolder()).removeRecursively();
}

QString Text(const QByteArray& bytes) {
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    QString text = decoder.decode(bytes);
    return decoder.hasError() ? QString::fromLatin1(bytes) : text;
}

} // namespace fuzz
