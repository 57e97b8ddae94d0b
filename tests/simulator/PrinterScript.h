#pragma once

#include "ReceiptScript.h"
#include "SimTestSupport.h"

#include <QDateTime>
#include <QRegularExpression>

// Rows of printer calls in a few words, steps apart by ";":
//   begin | end | void [DESC] | xreport | zreport | dup | reset | wait | nfbegin | nfend | training on|off
//   item V A [Q U [DESC]] | itemvoid V A [Q U [DESC]] | adj T A V [DESC] | adjvoid T A V | refund V A [DESC]
//   refundvoid V A | sub A | subadj T A [DESC] | subvoid T A | total T P [DESC] | notpaid A [DESC]
//   message TEXT | normal S TEXT | vat ID VALUE | vattable | header N TEXT | trailer N TEXT
//   set PROPERTY=VALUE | setdate +N[dh] or -N[dh] from the printer's clock | dio CMD[:D0,D1...] [TEXT]
//   fault TEXT (DirectIO 9999 with TEXT) | memory N (fiscal memory left) | data ITEM (GetData)
// In TEXT and DESC, "\e" stands for character 27. Each step answers "0", "106" or "114/220".
namespace printer_script {

inline QString Code(SimulatedFiscalPrinter& p, int32_t rc) {
    return rc == OposAll::OPOS_E_EXTENDED ? QStringLiteral("114/%1").arg(p.ResultCodeExtended())
                                          : QString::number(rc);
}

inline QString Step(SimulatedFiscalPrinter& p, const QString& step) {
    using namespace t;
    using receipt_script::ParseAmount;
    const QString line = step.simplified().replace(QStringLiteral("\\e"), QString(QChar(27)));
    const QStringList w = line.split(u' ');
    const QString verb = w[0], rest = line.section(u' ', 1);
    const auto n = [&](int i) { return w.value(i).section(u':', 0, 0).toInt(); };
    const auto a = [&](int i) { return ParseAmount(w.value(i, QStringLiteral("0"))); };
    // A description: the words from the i-th on.
    const auto d = [&](int i, const char* otherwise) {
        return i < w.size() ? QStringList(w.mid(i)).join(u' ') : QString::fromLatin1(otherwise);
    };
    if (verb == QLatin1String("begin"))
        return Code(p, Begin(p));
    if (verb == QLatin1String("end"))
        return Code(p, End(p));
    if (verb == QLatin1String("void")) {
        QString desc = d(1, "VOID");
        return Code(p, p.PrintRecVoid(desc));
    }
    if (verb == QLatin1String("xreport"))
        return Code(p, p.PrintXReport());
    if (verb == QLatin1String("zreport"))
        return Code(p, p.PrintZReport());
    if (verb == QLatin1String("dup"))
        return Code(p, p.PrintDuplicateReceipt());
    if (verb == QLatin1String("reset"))
        return Code(p, p.ResetPrinter());
    if (verb == QLatin1String("nfbegin"))
        return Code(p, p.BeginNonFiscal());
    if (verb == QLatin1String("nfend"))
        return Code(p, p.EndNonFiscal());
    if (verb == QLatin1String("wait"))
        return QTest::qWaitFor([&] { return p.State() != OposAll::OPOS_S_BUSY; }, 10000)
                   ? QStringLiteral("0")
                   : QStringLiteral("busy");
    if (verb == QLatin1String("training"))
        return Code(p, rest == QLatin1String("on") ? p.BeginTraining() : p.EndTraining());
    if (verb == QLatin1String("item"))
        return Code(p, Item(p, d(5, "Articolo"), a(2), n(1), n(3), a(4)));
    if (verb == QLatin1String("itemvoid"))
        return Code(p, ItemVoid(p, d(5, "Articolo"), a(2), n(1), n(3), a(4)));
    if (verb == QLatin1String("adj") || verb == QLatin1String("adjvoid")) {
        int32_t type = n(1), vat = n(3);
        Amount amount = a(2);
        QString desc = d(4, "Sconto");
        return Code(p, verb == QLatin1String("adj") ? p.PrintRecItemAdjustment(type, desc, amount, vat)
                                                    : p.PrintRecItemAdjustmentVoid(type, desc, amount, vat));
    }
    if (verb == QLatin1String("refund") || verb == QLatin1String("refundvoid")) {
        int32_t vat = n(1);
        Amount amount = a(2);
        QString desc = d(3, "Reso");
        return Code(p, verb == QLatin1String("refund") ? p.PrintRecRefund(desc, amount, vat)
                                                       : p.PrintRecRefundVoid(desc, amount, vat));
    }
    if (verb == QLatin1String("sub"))
        return Code(p, Subtotal(p, a(1)));
    if (verb == QLatin1String("subadj")) {
        int32_t type = n(1);
        Amount amount = a(2);
        QString desc = d(3, "Sub");
        return Code(p, p.PrintRecSubtotalAdjustment(type, desc, amount));
    }
    if (verb == QLatin1String("subvoid")) {
        int32_t type = n(1);
        Amount amount = a(2);
        return Code(p, p.PrintRecSubtotalAdjustVoid(type, amount));
    }
    if (verb == QLatin1String("total"))
        return Code(p, Total(p, a(1), a(2), d(3, "")));
    if (verb == QLatin1String("notpaid")) {
        QString desc = d(2, "");
        Amount amount = a(1);
        return Code(p, p.PrintRecNotPaid(desc, amount));
    }
    if (verb == QLatin1String("message"))
        return Code(p, Message(p, rest));
    if (verb == QLatin1String("normal"))
        return Code(p, Normal(p, n(1), rest.section(u' ', 1)));
    if (verb == QLatin1String("vat")) {
        int32_t id = n(1);
        QString value = w.value(2);
        return Code(p, p.SetVatValue(id, value));
    }
    if (verb == QLatin1String("vattable"))
        return Code(p, p.SetVatTable());
    if (verb == QLatin1String("header") || verb == QLatin1String("trailer")) {
        int32_t line = n(1);
        QString text = rest.section(u' ', 1);
        bool doubleWidth = false;
        return Code(p, verb == QLatin1String("header") ? p.SetHeaderLine(line, text, doubleWidth)
                                                       : p.SetTrailerLine(line, text, doubleWidth));
    }
    if (verb == QLatin1String("set")) {
        const QString name = rest.section(u'=', 0, 0), value = rest.section(u'=', 1);
        const PropertyInfo* info = FindProperty(name);
        if (!info)
            return QStringLiteral("no property ") + name;
        QVariant v = info->kind == PropKind::Boolean ? QVariant(value == QLatin1String("1"))
                     : info->kind == PropKind::Text  ? QVariant(value)
                                                     : QVariant(value.toInt());
        p.WriteProperty(info->id, v);
        return Code(p, p.ResultCode());
    }
    if (verb == QLatin1String("setdate")) {
        const QChar unit = rest.back();
        const qint64 count = rest.chopped(1).toLongLong();
        const QDateTime when = p.Now().addSecs(count * (unit == u'd' ? 86400 : 3600));
        QString date = when.toString(QStringLiteral("ddMMyyyyHHmm"));
        return Code(p, p.SetDate(date));
    }
    if (verb == QLatin1String("fault"))
        return Code(p, Debug(p, rest));
    if (verb == QLatin1String("memory")) {
        p.SetRemainingFiscalMemory(n(1));
        return QStringLiteral("0");
    }
    if (verb == QLatin1String("data")) {
        int32_t item = n(1), opt = 0;
        QString data;
        return Code(p, p.GetData(item, opt, data));
    }
    if (verb == QLatin1String("dio")) {
        int32_t cmd = n(1);
        DirectIOData data{};
        const QStringList values = w.value(1).section(u':', 1).split(u',', Qt::SkipEmptyParts);
        for (int i = 0; i < values.size(); ++i)
            data[i] = values[i].toInt();
        QString text = rest.section(u' ', 1);
        return Code(p, p.DirectIO(cmd, data, text));
    }
    return QStringLiteral("bad step ") + step;
}

// The steps of `steps`, blank ones left out.
inline QStringList Steps(const QString& steps) {
    return steps.split(u';').filter(QRegularExpression(QStringLiteral("\\S")));
}

inline QString Run(SimulatedFiscalPrinter& p, const QString& steps) {
    QStringList out;
    for (const QString& s : Steps(steps))
        out << Step(p, s);
    return out.join(u';');
}

// What Run answers when every one of `steps` succeeds: "0;0;0".
inline QString AllZero(const QString& steps) {
    return QStringList(Steps(steps).size(), QStringLiteral("0")).join(u';');
}

// The values of `keys` ("fiscal=1 daytotal=1000 has:STORNO=0"): a key of the state dump; "completed" or
// "errors", the events seen by `sink`; "tenderN", "refund" and "notpaid", GetData in hundredths;
// "has:WORD" and "jhas:WORD", 1 when the receipt or journal roll holds WORD.
inline QString Observe(SimulatedFiscalPrinter& p, const RecordingSink& sink, const QString& keys) {
    using namespace OposAll;
    QHash<QString, QString> dump;
    for (const QString& pair : p.StateDump().split(u' '))
        dump.insert(pair.section(u'=', 0, 0), pair.section(u'=', 1));
    QStringList out;
    for (const QString& item : keys.split(u' ', Qt::SkipEmptyParts)) {
        const QString key = item.section(u'=', 0, 0);
        QString value;
        if (key == QLatin1String("completed"))
            value = QString::number(sink.completed.size());
        else if (key == QLatin1String("errors"))
            value = QString::number(sink.errors.size());
        else if (key.startsWith(QLatin1String("tender")))
            value = t::Data(p, FPTR_GD_TENDER, key.mid(6).toInt());
        else if (key == QLatin1String("refund"))
            value = t::Data(p, FPTR_GD_REFUND);
        else if (key == QLatin1String("notpaid"))
            value = t::Data(p, FPTR_GD_NOT_PAID);
        else if (key.startsWith(QLatin1String("has:")))
            value = QString::number(p.ReceiptRoll().PlainText().contains(key.mid(4)));
        else if (key.startsWith(QLatin1String("jhas:")))
            value = QString::number(p.JournalRoll().PlainText().contains(key.mid(5)));
        else
            value = dump.value(key, QStringLiteral("<none>"));
        out << key + u'=' + value;
    }
    return out.join(u' ');
}

} // namespace printer_script
