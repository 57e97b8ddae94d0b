#pragma once

#include "FiscalReceipt.h"

#include <QStringList>

#include <limits>

// A tiny language for receipt rows: steps apart by ";", each a verb and its numbers.
//   item V A | itemvoid V A | adj T A V | adjvoid T A V | refund V A | refundvoid V A
//   sub T A | subvoid T A | pay A TENDER | notpaid A
// Amounts are decimal ("10.00", "-1.00", "0"), or MAX for the largest 64-bit amount.
// Each step answers "0", "106" or "114/220", joined by ";".
namespace receipt_script {

inline Amount ParseAmount(const QString& text) {
    if (text == QLatin1String("MAX"))
        return std::numeric_limits<Amount>::max();
    const bool negative = text.startsWith(u'-');
    const QStringList parts = text.mid(negative ? 1 : 0).split(u'.');
    Amount value = parts[0].toLongLong() * AmountScale;
    if (parts.size() > 1)
        value += parts[1].leftJustified(4, u'0').left(4).toLongLong();
    return negative ? -value : value;
}

inline QString Code(const sim::Refusal& r) {
    if (!r)
        return QStringLiteral("0");
    return r.extended ? QStringLiteral("%1/%2").arg(r.code).arg(r.extended) : QString::number(r.code);
}

inline QString Step(sim::FiscalReceipt& r, const QString& step) {
    const QStringList w = step.simplified().split(u' ');
    const QString& verb = w[0];
    const auto n = [&](int i) { return w.value(i).toInt(); };
    const auto a = [&](int i) { return ParseAmount(w.value(i)); };
    if (verb == QLatin1String("item"))
        return Code(r.AddItem(n(1), a(2)));
    if (verb == QLatin1String("itemvoid"))
        return Code(r.VoidItem(n(1), a(2)));
    if (verb == QLatin1String("adj"))
        return Code(r.AdjustItem(n(1), a(2), n(3), QStringLiteral("ADJ")));
    if (verb == QLatin1String("adjvoid"))
        return Code(r.VoidItemAdjustment(n(1), a(2), n(3)));
    if (verb == QLatin1String("refund"))
        return Code(r.Refund(n(1), a(2)));
    if (verb == QLatin1String("refundvoid"))
        return Code(r.VoidRefund(n(1), a(2)));
    if (verb == QLatin1String("sub"))
        return Code(r.AdjustSubtotal(n(1), a(2)));
    if (verb == QLatin1String("subvoid"))
        return Code(r.VoidSubtotalAdjustment(n(1), a(2)));
    if (verb == QLatin1String("pay"))
        return Code(r.Pay(a(1), n(2)));
    if (verb == QLatin1String("notpaid"))
        return Code(r.PayNotPaid(a(1)));
    return QStringLiteral("bad step ") + step;
}

inline QString Run(sim::FiscalReceipt& r, const QString& steps) {
    QStringList out;
    for (const QString& s : steps.split(u';', Qt::SkipEmptyParts))
        out << Step(r, s);
    return out.join(u';');
}

// "total=700 rate1=700 change=0 tender1=600 lc4=1", in hundredths for amounts, for the keys asked.
inline QString Observe(const sim::FiscalReceipt& r, const QString& keys) {
    QStringList out;
    for (const QString& item : keys.split(u' ', Qt::SkipEmptyParts)) {
        const QString key = item.section(u'=', 0, 0);
        qint64 value = 0;
        if (key == QLatin1String("total"))
            value = r.Total() / 100;
        else if (key == QLatin1String("change"))
            value = r.Change() / 100;
        else if (key == QLatin1String("due"))
            value = r.Due() / 100;
        else if (key.startsWith(QLatin1String("rate")))
            value = r.RateTotal(key.mid(4).toInt()) / 100;
        else if (key.startsWith(QLatin1String("tender")))
            value = r.Tender(key.mid(6).toInt()) / 100;
        else if (key.startsWith(QLatin1String("lc")))
            value = r.LineCount(key.mid(2).toInt());
        out << key + u'=' + QString::number(value);
    }
    return out.join(u' ');
}

} // namespace receipt_script
