#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>

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
    bool help = false;
    bool version = false;
};

inline constexpr int ExitSuccess = 0;
inline constexpr int ExitLineFailed = 1;
inline constexpr int ExitUsage = 2;

// The --help text: usage, options, exit status.
QString RunUsage();

// `arguments` as QCoreApplication::arguments() gives them, the program's name first.
// False, with a one-line reason in `error`, when they don't make a run. True with `help` or
// `version` set when the run is only to print those.
bool ParseRunArguments(const QStringList& arguments, RunOptions& options, QString& error);

// Loads and plays the macro on `device`; returns the exit status.
int RunMacroFile(const RunOptions& options, IFiscalPrinter& device, QTextStream& out, QTextStream& err);

// The whole program, arguments included.
int RunnerMain(const QStringList& arguments, IFiscalPrinter& device, QTextStream& out, QTextStream& err);
