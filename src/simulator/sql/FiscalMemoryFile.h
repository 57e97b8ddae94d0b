#pragma once

#include "FiscalMemory.h"

#include <QString>

#include <functional>
#include <memory>

class SimulatedFiscalPrinter;

namespace sim {

// How opening a fiscal memory file went. Every message names the file and what to do next.
struct FiscalMemoryOpening {
    enum class Outcome {
        Opened,     // the file as it was
        Created,    // there was none: a new, empty memory
        Upgraded,   // an older schema brought up to date; a copy of the old file kept aside
        MovedAside, // damaged: moved aside, a new, empty memory in its place
        Refused,    // not ours, newer, of the other model, in use or out of reach: left as it was
    };
    Outcome outcome = Outcome::Refused;
    std::unique_ptr<IFiscalMemory> memory; // null when refused
    QString message;                       // empty when there is nothing to say
    QString keptAt;                        // where the old file went (moved aside, upgraded)
};

// Opens the fiscal memory of a `model` printer in `path`, creating it (and its folder) when
// missing. The file is never deleted or overwritten: a file that is not a fiscal memory, one of a
// newer schema or of the other model, and one another bench holds are refused; a damaged one is
// moved aside with a time stamp before a new memory starts. Any bytes at `path` give one of these
// outcomes, never a crash. Needs a QCoreApplication for Qt's SQL driver.
FiscalMemoryOpening OpenFiscalMemoryFile(const QString& path, const ModelSwitches& model,
                                         int capacity = kFiscalMemoryCapacity);

// Moves the memory in `path` aside, with a time stamp, so that the next opening starts a new one.
// False, with `error` naming the file and the cause, when another bench holds it or the move fails.
bool MoveFiscalMemoryAside(const QString& path, QString& keptAt, QString& error);

// The bench's own fiscal memories: one file per model under the user's data folder.
QString FiscalMemoryFolder();
QString FiscalMemoryPath(const QString& deviceName);

// The window's memories: each model's own file, opened when the model is. What opening has to say
// goes to `tell`; a file that can't be used leaves that model on a fresh memory in the process.
FiscalMemoryFactory PersistentFiscalMemories(std::function<void(const QString&)> tell);

// The runner's --memory FILE for `deviceName` (the model the run opens): opened now, and handed
// to `printer` when that model is opened; the other model gets a fresh memory. False, with
// `message`, when the file is refused; otherwise `message` is what opening had to say, if anything.
bool UseFiscalMemoryFile(SimulatedFiscalPrinter& printer, const QString& path, const QString& deviceName,
                         QString& message);

// The command line's reset: asks, through the message box, to start a new fiscal memory for
// `deviceName`; on Yes moves the old file aside and says where. 0 when done, 1 when declined or
// refused, 2 for a name no model answers to.
int StartNewFiscalMemory(const QString& deviceName);

// Why `printer`'s memory can't be started anew from the printer window (it is not in a file),
// else empty.
QString NewFiscalMemoryUnavailable(const SimulatedFiscalPrinter& printer);

// The printer window's reset: refuses, through the message box, while the memory is not in a file
// or the printer is busy; asks; on Yes moves the file aside as the command line does, the lock
// held all along, and the printer goes on with a new memory in its place; says where the old file
// went. True when the printer has a new memory.
bool StartNewFiscalMemory(SimulatedFiscalPrinter& printer);

} // namespace sim
