#pragma once

#include "MDITestFPOPOS.h"
#include "ScriptedPrinter.h"
#include "Seams.h"
#include "clsMacroEngine.h"
#include "frmLog.h"

#include <QStringList>

#include <memory>

// The real main window over a scripted control, with message boxes and pickers answered and
// recorded instead of shown.
struct ShellBench {
    struct Box {
        QString text;
        MsgButtons buttons;
        QString title;
    };

    ScriptedPrinter* printer = nullptr;
    std::unique_ptr<MDITestFPOPOS> window;
    QList<Box> boxes;
    MsgResult answer = MsgResult::Ok;

    struct PickerCall {
        QString filter;
        QString title;
        QString folder;
    };
    QList<PickerCall> saveCalls;
    QString savePath; // what the save picker answers

    // `prepare` sets up the control before the window's load runs.
    template <typename Prepare> explicit ShellBench(Prepare prepare) {
        auto control = std::make_unique<ScriptedPrinter>();
        printer = control.get();
        prepare(*printer);
        window = std::make_unique<MDITestFPOPOS>(std::move(control));
        InstallHandlers();
    }
    ShellBench() : ShellBench([](ScriptedPrinter&) {}) {}
    ~ShellBench() {
        window.reset();
        SetMessageBoxHandler({});
        SetFilePickerHandlers({});
    }

    void InstallHandlers() {
        SetMessageBoxHandler([this](const QString& text, MsgButtons buttons, const QString& title) {
            boxes.append({text, buttons, title});
            return answer;
        });
        FilePickerHandlers pickers;
        pickers.pickSaveFile = [this](QWidget*, const QString& filter, const QString& title,
                                      const QString& folder) {
            saveCalls.append({filter, title, folder});
            return savePath;
        };
        pickers.pickOpenFile = [](QWidget*, const QString&, const QString&, const QString&) {
            return QString();
        };
        pickers.pickFolder = [](const QString&, QWidget*, const QString&) { return QString(); };
        SetFilePickerHandlers(pickers);
    }

    QStringList LogLines() const {
        QStringList lines = window->Log()->LogText().split(QStringLiteral("\r\n"));
        if (!lines.isEmpty() && lines.constLast().isEmpty())
            lines.removeLast();
        return lines;
    }
    qsizetype LogMark() const { return window->Log()->LineCount(); }
    QStringList LogSince(qsizetype mark) const { return LogLines().mid(mark); }

    QStringList MacroLines() const { return window->MacroEngine().Lines(); }
    QStringList MacroSince(qsizetype mark) const { return MacroLines().mid(mark); }
    // Names of the control's methods and writes since the mark.
    QStringList CallsSince(qsizetype mark) const { return printer->CallNames().mid(mark); }
};
