#pragma once

#include <QString>
#include <QStringList>

class QCommandLineParser;

// What the two programs' command lines share, and fpubench's own. Nothing here needs an
// application object: fpubench answers --help and --version before it opens a window, so both
// work where there is no display.
namespace CommandLine {

inline constexpr int ExitUsage = 2;

// "PROGRAM 1.0.13", the version of the project.
QString VersionText(const QString& program);
// The parser's help, its usage line naming `program` however the program was started.
QString HelpText(const QCommandLineParser& parser, const QString& program);
// Why parse() failed; unknown options written with their dashes ("--fast").
QString ParseError(const QCommandLineParser& parser);
// The one line a usage error leaves on stderr: the program, the fault, where to look next.
QString UsageErrorLine(const QString& program, const QString& error);
// Empty when the toolbar's Open takes `name`, else why not.
QString DeviceNameError(const QString& name);
// argv as QStrings, decoded as Qt decodes it.
QStringList Arguments(int argc, char** argv);

} // namespace CommandLine

// fpubench's command line. Decides whether a window opens at all, and on which device name.
struct BenchStart {
    bool openWindow = true;
    int exitCode = 0; // when no window opens
    QString out;      // help or version, for stdout
    QString err;      // a usage error, one line for stderr
    QString device;   // --device; empty: the build's service object name
    QString newFiscalMemory; // --new-fiscal-memory MODEL: ask, move that memory aside, no window
};

// `arguments` with the program's name first. The windowing system's own options (-platform,
// -style, ...) pass as they are, for QApplication to take.
BenchStart ParseBenchArguments(const QStringList& arguments);

// Prints what a start without a window has to say and returns its exit status.
int FinishWithoutWindow(const BenchStart& start);
