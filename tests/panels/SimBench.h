#pragma once

#include "BenchLogLines.h"
#include "PanelContext.h"
#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "Tools.h"
#include "clsBenchLog.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

// The real log, wrapper and macro engine over the simulated printer, opened, claimed and enabled.
// Each refresh notes the result code and, as the status bar does, shows "ERRORS: " on a failure.
struct SimBench {
    SimulatedFiscalPrinter printer;
    clsBenchLog log;
    clsFprtWrapper wrapper{printer, log};
    clsMacroEngine macro{wrapper};
    QList<int32_t> results; // ResultCode at each refresh
    QStringList messages;   // every message box, in order
    PanelContext ctx{printer, wrapper, macro, [this] { Refresh(); }};
    qsizetype logStart = 0;

    explicit SimBench(const QString& model = QStringLiteral("ZorvaneFPU")) {
        wrapper.SetRecorder(&macro);
        macro.Construct();
        SetMessageBoxHandler([this](const QString& text, MsgButtons, const QString&) {
            messages.append(text);
            return MsgResult::Ok;
        });
        wrapper.WOpen(model);
        wrapper.ClaimDevice(2000);
        wrapper.SetDeviceEnabled(true);
        logStart = LinesOf(log).size();
    }
    ~SimBench() {
        SetMessageBoxHandler({});
        SetFilePickerHandlers({});
    }
    void Refresh() {
        results.append(printer.ResultCode());
        if (results.last() != 0)
            ShowMessage(QStringLiteral("ERRORS: ") + Tools::ResultCodeName(results.last()));
    }
    int ErrorBoxes() const { return int(messages.filter(QStringLiteral("ERRORS: ")).size()); }
    // The log since the last mark.
    QStringList Log() const { return LinesOf(log).mid(logStart); }
    // Presses the button named `name` among the children of `panel`, marking the log first.
    void Press(QWidget* panel, const char* name) {
        auto* button = panel->findChild<QPushButton*>(QLatin1StringView(name));
        QVERIFY2(button, name);
        logStart = LinesOf(log).size();
        button->click();
    }
};
