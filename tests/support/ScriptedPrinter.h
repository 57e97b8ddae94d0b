#pragma once

#include "PropertyRouter.h"

#include <QHash>
#include <QList>
#include <QQueue>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <tuple>

Q_DECLARE_METATYPE(DirectIOData)

// A control double for tests. It answers every method from a script, records every call with
// its arguments, keeps property values in a table and lets a test raise the control's events.
//
//   printer.Script("PrintRecItem", 114, 203, "Paper out");   // the next PrintRecItem fails
//   printer.Script("SetDeviceEnabled", 103);                  // so does the next write
//   printer.handlers["GetData"] = [](QVariantList& a) { a[2] = "250"; return 0; };
//   printer.Set(Prop::NumVatRates, 4);
//
// A call with nothing scripted succeeds. Each answer sets ResultCode, ResultCodeExtended and
// ErrorString, as a real control does.
class ScriptedPrinter : public PropertyRouter {
public:
    struct Call {
        QString name;       // method name, or "Set" + property name for a write
        QVariantList args;  // as they came in
    };
    struct Answer {
        int32_t code = 0;
        int32_t extended = 0;
        QString text;
    };
    using Handler = std::function<int32_t(QVariantList& args)>;

    void Script(const QString& name, int32_t code, int32_t extended = 0, const QString& text = {});
    void Set(Prop id, const QVariant& value) { m_props[id] = value; }
    QVariant Get(Prop id) const { return m_props.value(id); }

    // Calls of one name, in order; CallNames() all names in order.
    QList<Call> CallsOf(const QString& name) const;
    QStringList CallNames() const;
    QList<Prop> reads;     // every property read, in order
    QList<Call> calls;     // every method call and property write, in order
    QHash<QString, Handler> handlers;
    int32_t defaultResult = 0;

    IFiscalPrinterEvents* sink = nullptr;
    void SetEventSink(IFiscalPrinterEvents* s) override { sink = s; }

#define FPU_SCRIPTED_METHOD(name, params, args)                                                            \
    int32_t name params override { return Dispatch(#name, std::tie args); }
    FPU_METHODS(FPU_SCRIPTED_METHOD)
#undef FPU_SCRIPTED_METHOD

    QVariant ReadProperty(Prop id) override;
    void WriteProperty(Prop id, const QVariant& value) override;

private:
    template <typename Tuple> int32_t Dispatch(const char* name, Tuple args) {
        QVariantList list;
        std::apply([&](auto&... a) { (list.append(QVariant::fromValue(a)), ...); }, args);
        const int32_t rc = Handle(QString::fromLatin1(name), list);
        std::apply(
            [&](auto&... a) {
                qsizetype i = 0;
                ((a = list.at(i++).template value<std::remove_reference_t<decltype(a)>>()), ...);
            },
            args);
        return rc;
    }
    int32_t Handle(const QString& name, QVariantList& args);

    QHash<Prop, QVariant> m_props;
    QHash<QString, QQueue<Answer>> m_script;
};
