#pragma once

#include "BenchLogLines.h"
#include "PanelContext.h"
#include "ScriptedPrinter.h"
#include "Seams.h"
#include "Tools.h"
#include "clsBenchLog.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QStringList>
#include <QTest>

#include <memory>

// The real log, wrapper and macro engine over a scripted control, with the status refresh and the
// message boxes replaced by recorders.
struct PanelBench {
    ScriptedPrinter printer;
    clsBenchLog log;
    clsFprtWrapper wrapper{printer, log};
    clsMacroEngine macro{wrapper};
    QStringList messages; // every message box, in order
    int refreshes = 0;
    PanelContext ctx{printer, wrapper, macro, [this] { Refresh(); }};

    PanelBench() {
        wrapper.SetRecorder(&macro);
        macro.Construct();
        SetMessageBoxHandler([this](const QString& text, MsgButtons, const QString&) {
            messages.append(text);
            return MsgResult::Ok;
        });
    }
    ~PanelBench() { SetMessageBoxHandler({}); }
    // As the status bar does it: a failure shows the "ERRORS: " box.
    void Refresh() {
        ++refreshes;
        if (const int32_t code = printer.ResultCode())
            ShowMessage(QStringLiteral("ERRORS: ") + Tools::ResultCodeName(code));
    }
    // Calls of `method` answer `result` and hand back `value` in argument `at`.
    void Answer(const char* method, int at, const QVariant& value, int32_t result = 0) {
        printer.handlers[QLatin1StringView(method)] = [=](QVariantList& a) {
            a[at] = value;
            return result;
        };
    }
    int ErrorBoxes() const { return int(messages.filter(QStringLiteral("ERRORS: ")).size()); }
    QStringList MacroLines() const { return macro.Lines(); }
    QStringList Log() const { return LinesOf(log); }
    static QStringList Words(const char* text) { return QString::fromLatin1(text).split(u' '); }
    // The method calls and property writes that reached the control, writes as "Set<Name>".
    QStringList Calls() const { return printer.CallNames(); }
    QList<ScriptedPrinter::Call> CallsOf(const char* name) const {
        return printer.CallsOf(QLatin1StringView(name));
    }
    // Operator steps on the children of `root`, in order: "name" clicks a button or a check box,
    // "name=text" types into a field ("name+=text" adds to what it holds), "name=#n" picks row n.
    static void Apply(QWidget* root, const QStringList& steps) {
        for (const QString& step : steps) {
            const QString name = step.section(u'=', 0, 0).remove(u'+');
            const QString value = step.section(u'=', 1);
            if (!step.contains(u'=')) {
                auto* button = root->findChild<QAbstractButton*>(name);
                QVERIFY2(button, qPrintable(name));
                button->click();
            } else if (auto* list = root->findChild<QComboBox*>(name)) {
                list->setCurrentIndex(value.mid(1).toInt());
            } else {
                auto* field = root->findChild<QLineEdit*>(name);
                QVERIFY2(field, qPrintable(name));
                field->setText(step.contains(QLatin1StringView("+=")) ? field->text() + value : value);
            }
        }
    }
    // Argument `i` of the last call of `name`.
    QVariant Arg(const char* name, int i) const {
        const auto calls = CallsOf(name);
        return calls.isEmpty() ? QVariant() : calls.last().args.value(i);
    }
};
