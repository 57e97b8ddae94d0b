#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>

class IFiscalPrinter;
class QTextStream;

// fpubench-run: replays a macro file headlessly through the bench's core, the same macro engine,
// wrapper, log and device actions as the window. Log lines go to `out`, one per line; messages the
// bench would show in a box go to `err`.
struct RunOptions {
    QString device = QStringLiteral("ZorvaneFPU"); // "ZorvaneFPU" or "Tessorim"
    bool open = false;
    bool stopOnError = false;
    int delayMs = 0;
    QString logFile;
    QString paperFile;          // both rolls as a listing, written after the run
    int32_t errorResponse = 12; // 11 retry, 12 clear
    QString macroFile;
    QString memoryFile; // the fiscal memory to use and update; empty: a fresh one for this run
    bool help = false;
    bool version = false;
    // Standard output goes out in blocks (see RunMacroFile); false writes every line at once.
    bool blockWrites = true;
};

// Gives the device the fiscal memory in `file` for the model `deviceName`; false, with `message`
// naming the file and what to do, when it can't be used. A message on success is news to print.
using MemoryFileHook = std::function<bool(const QString& file, const QString& deviceName, QString& message)>;

inline constexpr int ExitSuccess = 0;
inline constexpr int ExitLineFailed = 1;
inline constexpr int ExitUsage = 2;

// The --help text: usage, options, exit status.
QString RunUsage();

// `arguments` as QCoreApplication::arguments() gives them, the program's name first.
// False, with a one-line reason in `error`, when they don't make a run. True with `help` or
// `version` set when the run is only to print those.
bool ParseRunArguments(const QStringList& arguments, RunOptions& options, QString& error);

// Loads and plays the macro on `device`; returns the exit status. With blockWrites the log lines
// gather and go out when a block is full, before the program waits for anything, before anything
// goes to `err`, at the end, and when SIGINT, SIGTERM or SIGHUP ends the run: a reader following
// the output, `| head`, or an interrupted run sees every line written so far.
int RunMacroFile(const RunOptions& options, IFiscalPrinter& device, QTextStream& out, QTextStream& err);

// The whole program, arguments included. `useMemoryFile` serves --memory.
int RunnerMain(const QStringList& arguments, IFiscalPrinter& device, QTextStream& out, QTextStream& err,
               const MemoryFileHook& useMemoryFile = {});
