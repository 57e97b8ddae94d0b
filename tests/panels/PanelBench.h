#pragma once

#include "PanelContext.h"
#include "ScriptedPrinter.h"
#include "Seams.h"
#include "Tools.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"

#include <QStringList>

// The real wrapper and macro engine over a scripted control, with the status refresh and the
// message boxes replaced by recorders.
struct PanelBench {
    ScriptedPrinter printer;
    clsFprtWrapper wrapper{printer};
    clsMacroEngine macro{wrapper};
    QStringList messages; // every message box, in order
    int refreshes = 0;
    PanelContext ctx{printer, wrapper, macro, [this] { Refresh(); }};

    PanelBench() {
        wrapper.SetRecorder(&macro);
        macro.Construct();
        ClearDefaultLog();
        SetMessageBoxHandler([this](const QString& text, MsgButtons, const QString&) {
            messages.append(text);
            return MsgResult::Ok;
        });
    }
    ~PanelBench() {
        SetMessageBoxHandler({});
        wrapper.SetRecorder(nullptr);
    }
    PanelBench(const PanelBench&) = delete;
    PanelBench& operator=(const PanelBench&) = delete;

    // As the status bar does it: a failure shows the "ERRORS: " box.
    void Refresh() {
        ++refreshes;
        const int32_t code = printer.ResultCode();
        if (code != 0)
            ShowMessage(QStringLiteral("ERRORS: ") + Tools::ResultCodeName(code));
    }

    int ErrorBoxes() const { return int(messages.filter(QStringLiteral("ERRORS: ")).size()); }
    QStringList MacroLines() const { return macro.Lines(); }
    static QStringList Log() { return DefaultLogLines(); }
    // The method calls and property writes that reached the control, writes as "Set<Name>".
    QStringList Calls() const { return printer.CallNames(); }
};
