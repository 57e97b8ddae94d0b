// Sells receipts of 1.00 into the fiscal memory file given, one after another, until killed; prints
// the count of receipts ended after each one.
#include "FiscalMemoryFile.h"
#include "SimulatedFiscalPrinter.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc != 2)
        return 2;
    const QString path = QString::fromLocal8Bit(argv[1]);
    SimulatedFiscalPrinter p;
    p.SetFiscalMemoryFactory([path](const sim::ModelSwitches& model) {
        auto opening = sim::OpenFiscalMemoryFile(path, model);
        if (!opening.memory)
            std::fprintf(stderr, "%s\n", qPrintable(opening.message));
        return std::move(opening.memory);
    });
    QString name = QStringLiteral("ZorvaneFPU"), description = QStringLiteral("Item"), unit;
    int32_t timeout = 1000, quantity = 0, vat = 1;
    bool header = false;
    if (p.Open(name) || p.ClaimDevice(timeout))
        return 1;
    p.SetDeviceEnabled(true);
    Amount price = 10000, total = 10000, unitPrice = 0;
    for (int ended = 1;; ++ended) {
        QString payment;
        if (p.BeginFiscalReceipt(header) ||
            p.PrintRecItem(description, price, quantity, vat, unitPrice, unit) ||
            p.PrintRecTotal(total, price, payment) || p.EndFiscalReceipt(header))
            return 1;
        std::printf("%d\n", ended);
        std::fflush(stdout);
    }
}
