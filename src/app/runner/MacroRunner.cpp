#include "MacroRunner.h"

#include "CommandLine.h"
#include "IFiscalPrinter.h"
#include "OposAll.h"
#include "PaperListing.h"
#include "RunnerOutput.h"
#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "clsBenchCore.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSaveFile>
#include <QTextStream>
#include <QTimer>

#include <vector>

namespace {

const QString ProgramName = QStringLiteral("fpubench-run");

// Asynchronous output still queued after the last line gets this long to finish.
constexpr qint64 DrainLimitMs = 30000;

// The boxes the bench would show come out on the error stream as "message: TEXT" and are
// answered as nobody is there to answer them. In place for one run. The log lines written before
// a box go out before it.
class MessageBoxesToStream {
public:
    MessageBoxesToStream(QTextStream& err, BlockOutput& output)
        : m_previous(
              SetMessageBoxHandler([&err, &output](const QString& text, MsgButtons buttons, const QString&) {
                  output.Flush();
                  WriteMessage(err, text);
                  return UnattendedAnswer(buttons);
              })) {}
    ~MessageBoxesToStream() { SetMessageBoxHandler(std::move(m_previous)); }
    MessageBoxesToStream(const MessageBoxesToStream&) = delete;
    MessageBoxesToStream& operator=(const MessageBoxesToStream&) = delete;

    static void WriteMessage(QTextStream& err, const QString& text) {
        err << "message: " << text << '\n';
        err.flush();
    }

private:
    MessageBoxHandler m_previous;
};

void LetEventsRun(int ms) {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    if (ms <= 0)
        return;
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

// Queued output finishes, and its events reach the log, before the program ends.
void DrainOutput(IFiscalPrinter& device) {
    QElapsedTimer elapsed;
    elapsed.start();
    LetEventsRun(0);
    while (device.State() == OposAll::OPOS_S_BUSY && elapsed.elapsed() < DrainLimitMs)
        LetEventsRun(10);
}

// Whether a file can be written the way the log is saved (aside, then renamed into place). Leaves
// nothing behind.
bool CanWriteFile(const QString& path) {
    QSaveFile probe(path);
    if (!probe.open(QIODevice::WriteOnly))
        return false;
    probe.cancelWriting();
    return true;
}

} // namespace

namespace {

// One row per option: the option as the parser knows it and what its value does to the run.
// Help and version come first. To add an option, add its row.
// A flag's row gets an empty value; a row returns the error, or the empty text.
struct RunOptionRow {
    QCommandLineOption option;
    QString (*apply)(const QString& value, RunOptions& options);
};

const std::vector<RunOptionRow>& RunOptionTable() {
    static const std::vector<RunOptionRow> rows = {
        {QCommandLineOption({QStringLiteral("h"), QStringLiteral("help")},
                            QStringLiteral("Show this help and exit.")),
         [](const QString&, RunOptions& o) {
             o.help = true;
             return QString();
         }},
        {QCommandLineOption({QStringLiteral("v"), QStringLiteral("version")},
                            QStringLiteral("Show the program's version and exit.")),
         [](const QString&, RunOptions& o) {
             o.version = true;
             return QString();
         }},
        {QCommandLineOption(QStringLiteral("device"),
                            QStringLiteral("The device name to open: ZorvaneFPU (default) or Tessorim."),
                            QStringLiteral("NAME")),
         [](const QString& value, RunOptions& o) {
             o.device = value;
             return CommandLine::DeviceNameError(value);
         }},
        {QCommandLineOption(QStringLiteral("open"),
                            QStringLiteral("Open, Claim and Enable the device first, as the toolbar's Open "
                                           "Claim Enable.")),
         [](const QString&, RunOptions& o) {
             o.open = true;
             return QString();
         }},
        {QCommandLineOption(QStringLiteral("stop-on-error"),
                            QStringLiteral("Stop at the first line whose call does not return 0.")),
         [](const QString&, RunOptions& o) {
             o.stopOnError = true;
             return QString();
         }},
        {QCommandLineOption(QStringLiteral("delay"), QStringLiteral("Wait MS milliseconds between lines."),
                            QStringLiteral("MS")),
         [](const QString& value, RunOptions& o) {
             bool ok = false;
             o.delayMs = value.toInt(&ok);
             if (ok && o.delayMs >= 0)
                 return QString();
             return QStringLiteral("--delay needs a number of milliseconds, not \"") + value +
                    QLatin1Char('"');
         }},
        {QCommandLineOption(QStringLiteral("log"),
                            QStringLiteral("Save the log to FILE, as the log window saves it."),
                            QStringLiteral("FILE")),
         [](const QString& value, RunOptions& o) {
             o.logFile = value;
             return value.isEmpty() ? QStringLiteral("--log needs a file name") : QString();
         }},
        {QCommandLineOption(QStringLiteral("paper"),
                            QStringLiteral("After the run, write both paper rolls to FILE as a listing "
                                           "(attributes, barcodes, bitmaps, cuts marked)."),
                            QStringLiteral("FILE")),
         [](const QString& value, RunOptions& o) {
             o.paperFile = value;
             return value.isEmpty() ? QStringLiteral("--paper needs a file name") : QString();
         }},
        {QCommandLineOption(QStringLiteral("memory"),
                            QStringLiteral("Keep the fiscal memory in FILE across runs (created when "
                                           "missing); without it each run starts on a fresh one."),
                            QStringLiteral("FILE")),
         [](const QString& value, RunOptions& o) {
             o.memoryFile = value;
             return value.isEmpty() ? QStringLiteral("--memory needs a file name") : QString();
         }},
        {QCommandLineOption(QStringLiteral("error-response"),
                            QStringLiteral("Answer the device's error events with retry or clear (default)."),
                            QStringLiteral("retry|clear")),
         [](const QString& value, RunOptions& o) {
             if (value == QLatin1StringView("retry"))
                 o.errorResponse = 11;
             else if (value == QLatin1StringView("clear"))
                 o.errorResponse = 12;
             else
                 return QStringLiteral("--error-response is retry or clear, not \"") + value +
                        QLatin1Char('"');
             return QString();
         }},
    };
    return rows;
}

void DescribeRunner(QCommandLineParser& parser) {
    parser.setApplicationDescription(QStringLiteral(
        "Replays a macro file on the simulated fiscal printer and prints the log to standard "
        "output.\nExit status: 0 when every line returned 0, 1 when one did not, 2 for a usage "
        "error or an unreadable file."));
    for (const RunOptionRow& row : RunOptionTable())
        parser.addOption(row.option);
    parser.addPositionalArgument(QStringLiteral("MACRO.oposcmd"), QStringLiteral("The macro file to play."));
}

// What the simulated printer put on its rolls, for a script to compare with a kept copy.
bool WritePaper(IFiscalPrinter& device, const QString& path, QString& error) {
    const auto* printer = dynamic_cast<const SimulatedFiscalPrinter*>(&device);
    if (!printer) {
        error = QStringLiteral("--paper needs the simulated printer");
        return false;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(sim::PaperListing(printer->ReceiptRoll(), printer->JournalRoll()).toUtf8()) < 0 ||
        !file.commit()) {
        error = QStringLiteral("cannot write paper file ") + path;
        return false;
    }
    return true;
}

} // namespace

QString RunUsage() {
    QCommandLineParser parser;
    DescribeRunner(parser);
    return CommandLine::HelpText(parser, ProgramName);
}

bool ParseRunArguments(const QStringList& arguments, RunOptions& options, QString& error) {
    options = RunOptions{};
    QCommandLineParser parser;
    DescribeRunner(parser);
    if (!parser.parse(arguments)) {
        error = CommandLine::ParseError(parser);
        return false;
    }
    for (const RunOptionRow& row : RunOptionTable()) {
        const QString name = row.option.names().constLast();
        if (!parser.isSet(name))
            continue;
        // Each value as given, in order: a bad one is refused even when a later one is good.
        const QStringList values =
            row.option.valueName().isEmpty() ? QStringList{QString()} : parser.values(name);
        for (const QString& value : values) {
            error = row.apply(value, options);
            if (!error.isEmpty())
                return false;
        }
        // Help and version lead the table: asked for, they are all the run does.
        if (options.help || options.version)
            return true;
    }
    const QStringList files = parser.positionalArguments();
    if (files.size() != 1) {
        error = files.isEmpty() ? QStringLiteral("no macro file given")
                                : QStringLiteral("one macro file only, got ") + QString::number(files.size());
        return false;
    }
    options.macroFile = files.first();
    return true;
}

int RunMacroFile(const RunOptions& options, IFiscalPrinter& device, QTextStream& out, QTextStream& err) {
    BlockOutput output(out, options.blockWrites);
    const FlushOnSignal interrupted([&output] { output.Flush(); });
    MessageBoxesToStream boxes(err, output);
    // The error event's question goes out like a box and is answered as the command line asked.
    clsBenchCore core(device, [&err, &output, retry = options.errorResponse == 11](const QString& question) {
        output.Flush();
        MessageBoxesToStream::WriteMessage(err, question);
        return retry;
    });
    clsBenchLog& log = core.Log();
    QObject::connect(&log, &clsBenchLog::appended, [&log, &output](qsizetype first, qsizetype count) {
        for (qsizetype i = first; i < first + count; ++i)
            output.WriteLine(log.LineUtf8(i));
    });
    clsMacroEngine& engine = core.MacroEngine();

    if (engine.LoadFromFile(options.macroFile) != 0) {
        err << ProgramName << ": ";
        switch (engine.LastLoadError()) {
        case clsMacroEngine::LoadError::TooManyLines:
            err << options.macroFile << " has more than " << clsMacroEngine::StoreSize
                << " lines; split it into macros of at most " << clsMacroEngine::StoreSize << " lines\n";
            break;
        case clsMacroEngine::LoadError::TooLarge:
            err << options.macroFile << " is larger than " << clsMacroEngine::MaxFileBytes / (1024 * 1024)
                << " MB; nothing loaded, check the path (a macro file is at most that)\n";
            break;
        default:
            err << "cannot read macro file " << options.macroFile
                << "; check the path and that the file is readable\n";
        }
        err.flush();
        return ExitUsage;
    }
    // A log that can't be written is found before the first call reaches the device.
    if (!options.logFile.isEmpty() && !CanWriteFile(options.logFile)) {
        err << ProgramName << ": cannot write log file " << options.logFile
            << "; check the path: give --log a file in a folder you can write to\n";
        err.flush();
        return ExitUsage;
    }

    // Positioned from here on, so the runner's own calls don't add to the macro.
    engine.StartSavedMacro();
    bool failed = false;
    if (options.open) {
        core.OpenClaimEnable(options.device);
        failed = device.ResultCode() != 0;
    }

    if (!(failed && options.stopOnError)) {
        while (engine.IsRunningMacro()) {
            if (engine.LineCursor() >= engine.LineCount()) {
                engine.StopMacro();
                break;
            }
            if (engine.PlayLineMacro() != 0) {
                failed = true;
                if (options.stopOnError) {
                    engine.StopMacro();
                    break;
                }
            }
            LetEventsRun(engine.IsRunningMacro() ? options.delayMs : 0);
        }
    }
    DrainOutput(device);
    output.Flush();

    if (!options.logFile.isEmpty() && !log.SaveToFile(options.logFile)) {
        err << ProgramName << ": cannot write log file " << options.logFile
            << "; the log above is complete, check the path: give --log a file in a folder you can write to\n";
        err.flush();
        return ExitUsage;
    }
    if (QString error; !options.paperFile.isEmpty() && !WritePaper(device, options.paperFile, error)) {
        err << ProgramName << ": " << error << '\n';
        err.flush();
        return ExitUsage;
    }
    return failed ? ExitLineFailed : ExitSuccess;
}

int RunnerMain(const QStringList& arguments, IFiscalPrinter& device, QTextStream& out, QTextStream& err,
               const MemoryFileHook& useMemoryFile) {
    RunOptions options;
    QString error;
    if (!ParseRunArguments(arguments, options, error)) {
        err << CommandLine::UsageErrorLine(ProgramName, error) << '\n';
        err.flush();
        return ExitUsage;
    }
    if (options.help || options.version) {
        out << (options.help ? RunUsage() : CommandLine::VersionText(ProgramName) + QLatin1Char('\n'));
        out.flush();
        return ExitSuccess;
    }
    if (!options.memoryFile.isEmpty()) {
        QString message = QStringLiteral("--memory needs the simulated printer");
        const bool used = useMemoryFile && useMemoryFile(options.memoryFile, options.device, message);
        if (!message.isEmpty()) {
            err << ProgramName << ": " << message << '\n';
            err.flush();
        }
        if (!used)
            return ExitUsage;
    }
    return RunMacroFile(options, device, out, err);
}
