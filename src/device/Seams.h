#pragma once

#include <QString>

#include <functional>

class QWidget;

// The places where the bench meets the person or the system: message boxes, file and folder
// pickers and the debug output. Each has a default that needs no windows; the
// shell installs the real ones, tests install handlers that answer and record.

enum class MsgButtons { Ok, RetryCancel, OkCancel, YesNo };
enum class MsgResult { Ok, Cancel, Retry, Yes, No };

// Title of a box that has none of its own.
inline const QString ProgramTitle = QStringLiteral("ZorvaneFPUTest");

using MessageBoxHandler =
    std::function<MsgResult(const QString& text, MsgButtons buttons, const QString& title)>;

// Shows a modal message box and returns the button chosen. An empty title becomes ProgramTitle.
// Without a handler the text goes to standard error as "message: TEXT" and the answer is
// Ok (or Cancel where there is no Ok).
MsgResult ShowMessage(const QString& text, MsgButtons buttons = MsgButtons::Ok, const QString& title = {});
// Installs a handler (an empty one restores the default) and returns the previous one.
MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler);
// What a box is answered with when nobody is there to answer: Ok, or Cancel / No where the box
// has no Ok.
MsgResult UnattendedAnswer(MsgButtons buttons);

// File and folder pickers. Each returns the chosen path or the empty text.
struct FilePickerHandlers {
    std::function<QString(const QString& startFolder, QWidget* owner, const QString& title)> pickFolder;
    std::function<QString(QWidget* owner, const QString& filter, const QString& title,
                          const QString& initialFolder)>
        pickOpenFile;
    std::function<QString(QWidget* owner, const QString& filter, const QString& title,
                          const QString& initialFolder)>
        pickSaveFile;
};
FilePickerHandlers SetFilePickerHandlers(FilePickerHandlers handlers);

QString PickFolder(const QString& startFolder, QWidget* owner, const QString& title);
QString PickOpenFile(QWidget* owner, const QString& filter, const QString& title,
                     const QString& initialFolder);
QString PickSaveFile(QWidget* owner, const QString& filter, const QString& title,
                     const QString& initialFolder);

// The system's debug output. The handler gets the line with "\r\n" behind it; the default sends
// it to the Qt logging category "opos.log" at debug level, which is off unless QT_LOGGING_RULES
// switches it on ("opos.log.debug=true"); a monitor then follows it on stderr or in the journal.
using DebugOutputHandler = std::function<void(const QString& lineWithCrLf)>;
DebugOutputHandler SetDebugOutputHandler(DebugOutputHandler handler);
void DebugOutput(const QString& lineWithCrLf);
// Whether DebugOutput would reach anyone: a handler is installed or the category is on. Lets a
// writer skip building the line when nobody follows.
bool DebugOutputWanted();
