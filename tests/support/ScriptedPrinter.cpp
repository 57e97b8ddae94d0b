#include "ScriptedPrinter.h"

void ScriptedPrinter::Script(const QString& name, int32_t code, int32_t extended, const QString& text) {
    m_script[name].enqueue({code, extended, text});
}

QList<ScriptedPrinter::Call> ScriptedPrinter::CallsOf(const QString& name) const {
    QList<Call> out;
    for (const auto& c : calls)
        if (c.name == name)
            out.append(c);
    return out;
}

QStringList ScriptedPrinter::CallNames() const {
    QStringList out;
    for (const auto& c : calls)
        out.append(c.name);
    return out;
}

int32_t ScriptedPrinter::Handle(const QString& name, QVariantList& args) {
    calls.append({name, args});
    Answer answer{defaultResult, 0, {}};
    auto it = m_script.find(name);
    if (it != m_script.end() && !it->isEmpty())
        answer = it->dequeue();
    if (auto h = handlers.find(name); h != handlers.end()) {
        answer.code = (*h)(args);
    }
    m_props[Prop::ResultCode] = answer.code;
    m_props[Prop::ResultCodeExtended] = answer.extended;
    m_props[Prop::ErrorString] = answer.text;
    return answer.code;
}

QVariant ScriptedPrinter::ReadProperty(Prop id) {
    reads.append(id);
    const auto kind = PropertyOf(id).kind;
    QVariant v = m_props.value(id);
    if (kind == PropKind::Text)
        return v.isValid() ? QVariant(v.toString()) : QVariant(QString());
    if (kind == PropKind::Boolean)
        return QVariant(v.toBool());
    return QVariant(static_cast<int32_t>(v.toInt()));
}

void ScriptedPrinter::WriteProperty(Prop id, const QVariant& value) {
    QVariantList args{value};
    const QString name = QStringLiteral("Set") + QLatin1StringView(PropertyOf(id).name);
    const int32_t rc = Handle(name, args);
    if (rc == 0)
        m_props[id] = args.value(0);
}
