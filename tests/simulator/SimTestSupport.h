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
    QList<int32_t> completed;
    QList<int32_t> statuses;
    QStringList order; // "E", "O<id>", "S<status>"
    std::function<int32_t(int n)> respond = [](int) { return OposAll::OPOS_ER_RETRY; };

    void ErrorEvent(int32_t code, int32_t extended, int32_t locus, int32_t& response) override {
        errors.append({code, extended, locus});
        order << QStringLiteral("E");
        response = respond(static_cast<int>(errors.size()));
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

inline constexpr Amount Money(double value) {
    return static_cast<Amount>(value * 10000 + (value < 0 ? -0.5 : 0.5));
}

inline int32_t Open(SimulatedFiscalPrinter& p, const QString& name = QStringLiteral("ZorvaneFPU")) {
    QString n = name;
    return p.Open(n);
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
inline int32_t Item(SimulatedFiscalPrinter& p, const QString& desc, Amount price, int32_t vat = 1,
                    int32_t quantity = 0, Amount unitPrice = 0, const QString& unit = {}) {
    QString d = desc, u = unit;
    return p.PrintRecItem(d, price, quantity, vat, unitPrice, u);
}
inline int32_t ItemVoid(SimulatedFiscalPrinter& p, const QString& desc, Amount price, int32_t vat = 1) {
    QString d = desc, u;
    int32_t q = 0;
    Amount up = 0;
    return p.PrintRecItemVoid(d, price, q, vat, up, u);
}
inline int32_t Adjust(SimulatedFiscalPrinter& p, int32_t type, Amount amount, int32_t vat = 1,
                      const QString& desc = QStringLiteral("Adj")) {
    QString d = desc;
    return p.PrintRecItemAdjustment(type, d, amount, vat);
}
inline int32_t AdjustVoid(SimulatedFiscalPrinter& p, int32_t type, Amount amount, int32_t vat = 1) {
    QString d;
    return p.PrintRecItemAdjustmentVoid(type, d, amount, vat);
}
inline int32_t SubAdjust(SimulatedFiscalPrinter& p, int32_t type, Amount amount,
                         const QString& desc = QStringLiteral("Sub")) {
    QString d = desc;
    return p.PrintRecSubtotalAdjustment(type, d, amount);
}
inline int32_t Refund(SimulatedFiscalPrinter& p, Amount amount, int32_t vat = 1) {
    QString d = QStringLiteral("Refund");
    return p.PrintRecRefund(d, amount, vat);
}
inline int32_t Subtotal(SimulatedFiscalPrinter& p) {
    Amount a = 0;
    return p.PrintRecSubtotal(a);
}
inline int32_t Total(SimulatedFiscalPrinter& p, Amount total, Amount payment, const QString& desc = {}) {
    QString d = desc;
    return p.PrintRecTotal(total, payment, d);
}
inline int32_t Message(SimulatedFiscalPrinter& p, const QString& text) {
    QString m = text;
    return p.PrintRecMessage(m);
}
inline int32_t Void(SimulatedFiscalPrinter& p, const QString& desc = QStringLiteral("VOID")) {
    QString d = desc;
    return p.PrintRecVoid(d);
}
inline QString Data(SimulatedFiscalPrinter& p, int32_t item, int32_t opt = 0) {
    QString data;
    p.GetData(item, opt, data);
    return data;
}
inline QString Totalizer(SimulatedFiscalPrinter& p, int32_t type, int32_t vat, int32_t item) {
    p.SetTotalizerType(type);
    QString data;
    p.GetTotalizer(vat, item, data);
    return data;
}
inline int32_t Normal(SimulatedFiscalPrinter& p, int32_t station, const QString& text) {
    QString d = text;
    return p.PrintNormal(station, d);
}
inline int32_t Dio(SimulatedFiscalPrinter& p, int32_t cmd, DirectIOData& data, QString& text) {
    return p.DirectIO(cmd, data, text);
}
// One paid, closed receipt of a single item.
inline void Sale(SimulatedFiscalPrinter& p, Amount price, int32_t vat = 1) {
    QCOMPARE(Begin(p), 0);
    QCOMPARE(Item(p, QStringLiteral("Item"), price, vat), 0);
    QCOMPARE(Total(p, price, price), 0);
    QCOMPARE(End(p), 0);
}

} // namespace t
