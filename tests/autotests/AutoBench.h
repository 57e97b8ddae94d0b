#pragma once

#include "PanelBench.h"
#include "frmAutoTests.h"

#include <QMetaObject>
#include <QTimer>

// The automatic tests panel over the scripted control.
struct AutoBench : PanelBench {
    frmAutoTests panel{ctx};

    // The calls that reached the control, one text each: the name, then "|" and each argument.
    // Amounts show two decimals (four when they hold more), Booleans True or False, a DirectIO
    // block its eleven numbers joined by commas.
    QStringList CallTexts() const {
        QStringList out;
        for (const auto& call : printer.calls) {
            QString text = call.name;
            for (const QVariant& arg : call.args)
                text += u'|' + ArgText(arg);
            out.append(text);
        }
        return out;
    }

    static QString ArgText(const QVariant& arg) {
        const int type = arg.metaType().id();
        if (type == QMetaType::Long || type == QMetaType::LongLong) { // an Amount
            const qint64 v = arg.toLongLong();
            const qint64 abs = v < 0 ? -v : v;
            QString text = QStringLiteral("%1%2.%3")
                               .arg(v < 0 ? QStringLiteral("-") : QString())
                               .arg(abs / 10000)
                               .arg(abs % 10000, 4, 10, QLatin1Char('0'));
            return text.endsWith(QLatin1StringView("00")) ? text.chopped(2) : text;
        }
        if (type == QMetaType::Bool)
            return arg.toBool() ? QStringLiteral("True") : QStringLiteral("False");
        if (type == qMetaTypeId<DirectIOData>()) {
            QStringList numbers;
            for (int32_t n : arg.value<DirectIOData>())
                numbers.append(QString::number(n));
            return numbers.join(u',');
        }
        return arg.toString();
    }

    // A timer's tick without waiting for it.
    static void Fire(QTimer* timer) { QMetaObject::invokeMethod(timer, "timeout"); }
};
