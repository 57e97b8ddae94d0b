#pragma once

#include "OposAll.h"
#include "SimulatedFiscalPrinter.h"

#include <QList>
#include <QString>
#include <QtTest>

#include <functional>

using sim::PaperLevel;

// Records every event; the ErrorEvent answer comes from `respond`.
class RecordingSink : public IFiscalPrinterEvents {
public:
    struct Error {
        int32_t code, extended, locus;
    };
    QList<Error> errors;
    QList<int32_t> completed, statuses;
    QStringList order; // "E", "O<id>", "S<status>"
    std::function<int32_t()> respond = [] { return OposAll::OPOS_ER_RETRY; };

    void ErrorEvent(int32_t code, int32_t extended, int32_t locus, int32_t& response) override {
        errors.append({code, extended, locus});
        order << QStringLiteral("E");
        response = respond();
    }
    void OutputCompleteEvent(int32_t id) override {
        completed.append(id);
        order << QStringLiteral("O%1").arg(id);
    }
    void StatusUpdateEvent(int32_t status) override {
        statuses.append(status);
        order << QStringLiteral("S%1").arg(status);
    }
};

// Short calls for tests: the control takes every argument by reference.
namespace t {

constexpr Amount M(int cents) {
    return Amount{cents} * 100;
}
inline int32_t Open(SimulatedFiscalPrinter& p, QString name = QStringLiteral("ZorvaneFPU")) {
    return p.Open(name);
}
inline int32_t Claim(SimulatedFiscalPrinter& p) {
    int32_t timeout = 2000;
    return p.ClaimDevice(timeout);
}
// Open, claim and enable; the test fails if any step does.
inline void Ready(SimulatedFiscalPrinter& p, const QString& name = QStringLiteral("ZorvaneFPU")) {
    QCOMPARE(Open(p, name), 0);
    QCOMPARE(Claim(p), 0);
    p.SetDeviceEnabled(true);
    QCOMPARE(p.ResultCode(), 0);
}
inline int32_t Begin(SimulatedFiscalPrinter& p) {
    bool header = false;
    return p.BeginFiscalReceipt(header);
}
inline int32_t End(SimulatedFiscalPrinter& p) {
    bool header = false;
    return p.EndFiscalReceipt(header);
}
inline int32_t Item(SimulatedFiscalPrinter& p, QString desc, Amount price, int32_t vat = 1,
                    int32_t quantity = 0, Amount unitPrice = 0) {
    QString unit;
    return p.PrintRecItem(desc, price, quantity, vat, unitPrice, unit);
}
inline int32_t ItemVoid(SimulatedFiscalPrinter& p, QString desc, Amount price, int32_t vat = 1,
                        int32_t quantity = 0, Amount unitPrice = 0) {
    QString unit;
    return p.PrintRecItemVoid(desc, price, quantity, vat, unitPrice, unit);
}
inline int32_t Adjust(SimulatedFiscalPrinter& p, int32_t type, Amount amount, int32_t vat = 1) {
    QString d = QStringLiteral("Adj");
    return p.PrintRecItemAdjustment(type, d, amount, vat);
}
inline int32_t SubAdjust(SimulatedFiscalPrinter& p, int32_t type, Amount amount) {
    QString d = QStringLiteral("Sub");
    return p.PrintRecSubtotalAdjustment(type, d, amount);
}
inline int32_t Subtotal(SimulatedFiscalPrinter& p, Amount a = 0) {
    return p.PrintRecSubtotal(a);
}
inline int32_t Total(SimulatedFiscalPrinter& p, Amount total, Amount payment, QString desc = {}) {
    return p.PrintRecTotal(total, payment, desc);
}
inline int32_t Message(SimulatedFiscalPrinter& p, QString text) {
    return p.PrintRecMessage(text);
}
inline QString Data(SimulatedFiscalPrinter& p, int32_t item, int32_t opt = 0) {
    QString data;
    p.GetData(item, opt, data);
    return data;
}
inline int32_t Normal(SimulatedFiscalPrinter& p, int32_t station, QString text) {
    return p.PrintNormal(station, text);
}
inline int32_t Debug(SimulatedFiscalPrinter& p, QString command) {
    int32_t cmd = 9999;
    DirectIOData data{};
    return p.DirectIO(cmd, data, command);
}
// One paid, closed receipt of a single item.
inline void Sale(SimulatedFiscalPrinter& p, Amount price) {
    QCOMPARE(Begin(p), 0);
    QCOMPARE(Item(p, QStringLiteral("Item"), price), 0);
    QCOMPARE(Total(p, price, price), 0);
    QCOMPARE(End(p), 0);
}

} // namespace t
