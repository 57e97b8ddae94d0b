#pragma once

#include "BenchLogLines.h"
#include "MDITestFPOPOS.h"
#include "ScriptedPrinter.h"
#include "Seams.h"
#include "Tools.h"
#include "clsBenchCore.h"
#include "clsMacroEngine.h"
#include "frmApp.h"
#include "frmLog.h"
#include "frmStatusBar.h"
#include "frmToolbar.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QtTest>

#include <memory>

// The real main window over a scripted control; message boxes and the save picker are recorded.
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
    QList<QStringList> saveCalls; // filter, title, folder
    QString savePath;             // what the save picker answers

    // `prepare` sets up the control before the window's load runs.
    template <typename Prepare> explicit ShellBench(Prepare prepare, frmLOGO logo = frmLOGO()) {
        auto control = std::make_unique<ScriptedPrinter>();
        printer = control.get();
        prepare(*printer);
        window = std::make_unique<MDITestFPOPOS>(std::move(control), std::move(logo));
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
        SetFilePickerHandlers(pickers);
    }
    ShellBench() : ShellBench([](ScriptedPrinter& p) { p.Set(Prop::State, 2); }) {}
    ~ShellBench() {
        window.reset();
        SetMessageBoxHandler({});
        SetFilePickerHandlers({});
    }

    QStringList LogLines() const { return LinesOf(window->Core().Log()); }
    qsizetype LogMark() const { return window->Core().Log().LineCount(); }
    QStringList LogSince(qsizetype mark) const { return LogLines().mid(mark); }
    QStringList MacroLines() const { return window->MacroEngine().Lines(); }
    QStringList VisiblePanels() const {
        QStringList names;
        for (int p = 0; p < frmToolbar::PanelCount; ++p)
            if (QWidget* each = window->Panel(static_cast<frmToolbar::Panel>(p));
                each->isVisibleTo(window.get()))
                names.append(each->objectName());
        return names;
    }
};
