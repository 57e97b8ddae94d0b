#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

// The places where the bench meets the person or the system: message boxes, file and folder
// pickers, the log's home and the debug output. Each has a default that needs no windows; the
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

// Where the log's lines go: the log window once it exists, a console in programs without
// windows. The line has no line end of its own.
class ILogSink {
public:
    virtual ~ILogSink() = default;
    virtual void AppendLogLine(const QString& line) = 0;
};
// nullptr restores the default sink, which keeps the lines in memory (see DefaultLogLines).
ILogSink* SetLogSink(ILogSink* sink);
// Lines that reached the default sink, for programs that only look at the end.
const QStringList& DefaultLogLines();
void ClearDefaultLog();

// The system's debug output. The handler gets the line with "\r\n" behind it; the default sends
// it to the Qt logging category "opos.log" (debug level), which a monitor follows on stderr or
// in the journal.
using DebugOutputHandler = std::function<void(const QString& lineWithCrLf)>;
DebugOutputHandler SetDebugOutputHandler(DebugOutputHandler handler);
void DebugOutput(const QString& lineWithCrLf);
