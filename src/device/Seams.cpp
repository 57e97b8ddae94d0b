#include "Seams.h"

#include <QLoggingCategory>

#include <cstdio>
#include <utility>

Q_LOGGING_CATEGORY(lcOposLog, "opos.log", QtInfoMsg)

MsgResult UnattendedAnswer(MsgButtons buttons) {
    switch (buttons) {
    case MsgButtons::RetryCancel:
        return MsgResult::Cancel;
    case MsgButtons::YesNo:
        return MsgResult::No;
    case MsgButtons::Ok:
    case MsgButtons::OkCancel:
        break;
    }
    return MsgResult::Ok;
}

namespace {

MsgResult DefaultMessageBox(const QString& text, MsgButtons buttons, const QString&) {
    std::fprintf(stderr, "message: %s\n", text.toLocal8Bit().constData());
    std::fflush(stderr);
    return UnattendedAnswer(buttons);
}

MessageBoxHandler& MessageBoxSlot() {
    static MessageBoxHandler handler;
    return handler;
}

FilePickerHandlers& PickerSlot() {
    static FilePickerHandlers handlers;
    return handlers;
}

DebugOutputHandler& DebugSlot() {
    static DebugOutputHandler handler;
    return handler;
}

void DefaultDebugOutput(const QString& lineWithCrLf) {
    QStringView line(lineWithCrLf);
    if (line.endsWith(u"\r\n"))
        line.chop(2);
    qCDebug(lcOposLog).noquote() << line;
}

} // namespace

MsgResult ShowMessage(const QString& text, MsgButtons buttons, const QString& title) {
    const QString shownTitle = title.isEmpty() ? ProgramTitle : title;
    const MessageBoxHandler& handler = MessageBoxSlot();
    return handler ? handler(text, buttons, shownTitle) : DefaultMessageBox(text, buttons, shownTitle);
}

MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler) {
    return std::exchange(MessageBoxSlot(), std::move(handler));
}

FilePickerHandlers SetFilePickerHandlers(FilePickerHandlers handlers) {
    return std::exchange(PickerSlot(), std::move(handlers));
}

QString PickFolder(const QString& startFolder, QWidget* owner, const QString& title) {
    const auto& pick = PickerSlot().pickFolder;
    return pick ? pick(startFolder, owner, title) : QString();
}

QString PickOpenFile(QWidget* owner, const QString& filter, const QString& title,
                     const QString& initialFolder) {
    const auto& pick = PickerSlot().pickOpenFile;
    return pick ? pick(owner, filter, title, initialFolder) : QString();
}

QString PickSaveFile(QWidget* owner, const QString& filter, const QString& title,
                     const QString& initialFolder) {
    const auto& pick = PickerSlot().pickSaveFile;
    return pick ? pick(owner, filter, title, initialFolder) : QString();
}

DebugOutputHandler SetDebugOutputHandler(DebugOutputHandler handler) {
    return std::exchange(DebugSlot(), std::move(handler));
}

void DebugOutput(const QString& lineWithCrLf) {
    const DebugOutputHandler& handler = DebugSlot();
    if (handler)
        handler(lineWithCrLf);
    else
        DefaultDebugOutput(lineWithCrLf);
}

bool DebugOutputWanted() {
    return DebugSlot() || lcOposLog().isDebugEnabled();
}
