#pragma once

#include "Machine.h"

#include <QString>

#include <optional>

namespace sim {

// One command of the simulator's fault and clock API as a macro sends it through DirectIO 9999.
struct DebugCommand {
    enum class Kind { Cover, ReceiptPaper, JournalPaper, Offline, Power, Fail, Clock, PrintTime };
    Kind kind = Kind::Cover;
    bool on = false; // cover open, offline, power off
    PaperLevel level = PaperLevel::Ok;
    QString method; // fail: a method name, or "Set" + a writable property name
    int32_t code = 0, extended = 0;
    qint64 seconds = 0; // clock: how far forward
    int ms = 0;         // print time per line
};

// Reads "cover open|closed", "receipt|journal ok|near end|empty", "offline", "online",
// "power off|on", "fail METHOD CODE [EXTENDED]", "clock +N[s|m|h|d]", "print time MS". Keywords in
// any case, words apart by blanks; anything else (a missing or extra word, an unknown method, a
// code outside 101..115, an extended code without 114, a clock that goes back or beyond a century,
// a print time outside 0..5000 ms) gives nullopt with the reason in `why`.
std::optional<DebugCommand> ParseDebugCommand(const QString& text, QString* why = nullptr);

// A name that FailNextCall understands: a method of the control, or "Set" + a writable property.
bool IsFailableName(const QString& name);

} // namespace sim
