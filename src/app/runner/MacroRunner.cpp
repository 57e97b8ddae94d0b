#include "MacroRunner.h"

#include "IFiscalPrinter.h"
#include "OposAll.h"
#include "Seams.h"
#include "clsBenchCore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSaveFile>
#include <QTextStream>
#include <QTimer>

namespace {

const QString ProgramName = QStringLiteral("fpubench-run");

// Asynchronous output still queued after the last line gets this long to finish.
constexpr qint64 DrainLimitMs = 30000;

// The boxes the bench would show come out on the error stream as "message: TEXT" and are
// answered as nobody is there to answer them. In place for one run.
class MessageBoxesToStream {
public:
    explicit MessageBoxesToStream(QTextStream& err)
        : m_previous(SetMessageBoxHandler([&err](const QString& text, MsgButtons buttons, const QString&) {
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

bool TakeValue(const QStringList& arguments, qsizetype& i, const QString& option, QString& value,
               QString& error) {
    const QString& argument = arguments.at(i);
    if (argument.startsWith(option + QLatin1Char('='))) {
        value = argument.mid(option.size() + 1);
        return true;
    }
    if (i + 1 >= arguments.size()) {
        error = option + QStringLiteral(" needs a value");
        return false;
    }
    value = arguments.at(++i);
    return true;
}

bool Matches(const QString& argument, const QString& option) {
    return argument == option || argument.startsWith(option + QLatin1Char('='));
}

} // namespace

QString RunUsage() {
    return QStringLiteral(
        "usage: fpubench-run [--device NAME] [--open] [--stop-on-error] [--delay MS] [--log FILE] "
        "[--error-response retry|clear] MACRO.oposcmd");
}

bool ParseRunArguments(const QStringList& arguments, RunOptions& options, QString& error) {
    options = RunOptions{};
    QStringList files;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& a = arguments.at(i);
        QString value;
        if (a == QLatin1StringView("--help") || a == QLatin1StringView("-h")) {
            options.help = true;
        } else if (a == QLatin1StringView("--open")) {
            options.open = true;
        } else if (a == QLatin1StringView("--stop-on-error")) {
            options.stopOnError = true;
        } else if (Matches(a, QStringLiteral("--device"))) {
            if (!TakeValue(arguments, i, QStringLiteral("--device"), options.device, error))
                return false;
            // The toolbar's Open reaches the control with these names only.
            if (!clsBenchCore::IsAcceptedDeviceName(options.device)) {
                error = QStringLiteral("--device is ZorvaneFPU or Tessorim, not \"") + options.device +
                        QLatin1Char('"');
                return false;
            }
        } else if (Matches(a, QStringLiteral("--delay"))) {
            if (!TakeValue(arguments, i, QStringLiteral("--delay"), value, error))
                return false;
            bool ok = false;
            options.delayMs = value.toInt(&ok);
            if (!ok || options.delayMs < 0) {
                error = QStringLiteral("--delay needs a number of milliseconds, not \"") + value +
                        QLatin1Char('"');
                return false;
            }
        } else if (Matches(a, QStringLiteral("--log"))) {
            if (!TakeValue(arguments, i, QStringLiteral("--log"), options.logFile, error))
                return false;
            if (options.logFile.isEmpty()) {
                error = QStringLiteral("--log needs a file name");
                return false;
            }
        } else if (Matches(a, QStringLiteral("--error-response"))) {
            if (!TakeValue(arguments, i, QStringLiteral("--error-response"), value, error))
                return false;
            if (value == QLatin1StringView("retry")) {
                options.errorResponse = 11;
            } else if (value == QLatin1StringView("clear")) {
                options.errorResponse = 12;
            } else {
                error =
                    QStringLiteral("--error-response is retry or clear, not \"") + value + QLatin1Char('"');
                return false;
            }
        } else if (a.startsWith(QLatin1StringView("--"))) {
            error = QStringLiteral("unknown option ") + a;
            return false;
        } else {
            files.append(a);
        }
    }
    if (options.help)
        return true;
    if (files.size() != 1) {
        error = files.isEmpty() ? QStringLiteral("no macro file given")
                                : QStringLiteral("one macro file only, got ") + QString::number(files.size());
        return false;
    }
    options.macroFile = files.first();
    return true;
}

int RunMacroFile(const RunOptions& options, IFiscalPrinter& device, QTextStream& out, QTextStream& err) {
    MessageBoxesToStream boxes(err);
    // The error event's question goes out like a box and is answered as the command line asked.
    clsBenchCore core(device, [&err, retry = options.errorResponse == 11](const QString& question) {
        MessageBoxesToStream::WriteMessage(err, question);
        return retry;
    });
    clsBenchLog& log = core.Log();
    QObject::connect(&log, &clsBenchLog::appended, [&log, &out](qsizetype first, qsizetype count) {
        for (qsizetype i = first; i < first + count; ++i)
            out << log.Line(i) << '\n';
        out.flush();
    });
    clsMacroEngine& engine = core.MacroEngine();

    if (engine.LoadFromFile(options.macroFile) != 0) {
        err << ProgramName << ": ";
        switch (engine.LastLoadError()) {
        case clsMacroEngine::LoadError::TooManyLines:
            err << options.macroFile << " has more than " << clsMacroEngine::StoreSize << " lines\n";
            break;
        case clsMacroEngine::LoadError::TooLarge:
            err << options.macroFile << " is larger than " << clsMacroEngine::MaxFileBytes / (1024 * 1024)
                << " MB; nothing loaded\n";
            break;
        default:
            err << "cannot read macro file " << options.macroFile << '\n';
        }
        err.flush();
        return ExitUsage;
    }
    // A log that can't be written is found before the first call reaches the device.
    if (!options.logFile.isEmpty() && !CanWriteFile(options.logFile)) {
        err << ProgramName << ": cannot write log file " << options.logFile << '\n';
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

    if (!options.logFile.isEmpty() && !log.SaveToFile(options.logFile)) {
        err << ProgramName << ": cannot write log file " << options.logFile << '\n';
        err.flush();
        return ExitUsage;
    }
    return failed ? ExitLineFailed : ExitSuccess;
}

int RunnerMain(const QStringList& arguments, IFiscalPrinter& device, QTextStream& out, QTextStream& err) {
    RunOptions options;
    QString error;
    if (!ParseRunArguments(arguments, options, error)) {
        err << ProgramName << ": " << error << "; " << RunUsage() << '\n';
        err.flush();
        return ExitUsage;
    }
    if (options.help) {
        out << RunUsage() << '\n';
        out.flush();
        return ExitSuccess;
    }
    return RunMacroFile(options, device, out, err);
}
