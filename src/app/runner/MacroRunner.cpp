#include "MacroRunner.h"

#include "EventLines.h"
#include "IFiscalPrinter.h"
#include "OposAll.h"
#include "Seams.h"
#include "Tools.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QSaveFile>
#include <QStringConverter>
#include <QTextStream>
#include <QTimer>

namespace {

const QString ProgramName = QStringLiteral("fpubench-run");

// Asynchronous output still queued after the last line gets this long to finish.
constexpr qint64 DrainLimitMs = 30000;

// Every log line on standard output, and kept for --log.
class ConsoleLogSink : public ILogSink {
public:
    explicit ConsoleLogSink(QTextStream& out) : m_out(out) {}
    void AppendLogLine(const QString& line) override {
        m_out << line << '\n';
        m_out.flush();
        lines.append(line);
    }
    QStringList lines;

private:
    QTextStream& m_out;
};

// The runner stands where the bench's seams are: the log, the message boxes and the debug output
// (whose lines would only repeat standard output). Restored when the run ends.
class ConsoleSession {
public:
    ConsoleSession(QTextStream& out, QTextStream& err, int32_t errorResponse) : sink(out) {
        m_previousSink = SetLogSink(&sink);
        m_previousBox = SetMessageBoxHandler(
            [&err, errorResponse](const QString& text, MsgButtons buttons, const QString&) {
                err << "message: " << text << '\n';
                err.flush();
                // The error event's Retry/Cancel box is answered as the command line asked.
                if (buttons == MsgButtons::RetryCancel && errorResponse == 11)
                    return MsgResult::Retry;
                return UnattendedAnswer(buttons);
            });
        m_previousDebug = SetDebugOutputHandler([](const QString&) {});
    }
    ~ConsoleSession() {
        SetDebugOutputHandler(std::move(m_previousDebug));
        SetMessageBoxHandler(std::move(m_previousBox));
        SetLogSink(m_previousSink);
    }
    ConsoleSession(const ConsoleSession&) = delete;
    ConsoleSession& operator=(const ConsoleSession&) = delete;

    ConsoleLogSink sink;

private:
    ILogSink* m_previousSink = nullptr;
    MessageBoxHandler m_previousBox;
    DebugOutputHandler m_previousDebug;
};

// The control's events, answered as the operator of the bench would, with the answer fixed
// by --error-response.
class RunnerEvents : public IFiscalPrinterEvents {
public:
    void ErrorEvent(int32_t ResultCode, int32_t ResultCodeExtended, int32_t,
                    int32_t& pErrorResponse) override {
        const MsgResult answer = ShowMessage(EventLines::ErrorEventQuestion(ResultCode, ResultCodeExtended),
                                             MsgButtons::RetryCancel);
        pErrorResponse = answer == MsgResult::Retry ? 11 : 12;
        Tools::WriteLog(EventLines::ErrorEventLogLine(ResultCode, ResultCodeExtended, pErrorResponse));
    }
    void OutputCompleteEvent(int32_t OutputID) override {
        Tools::WriteLog(EventLines::OutputCompleteEventLogLine(OutputID));
    }
    void StatusUpdateEvent(int32_t Status) override {
        if (const auto line = EventLines::StatusUpdateEventLogLine(Status))
            Tools::WriteLog(*line);
    }
};

class EventSinkGuard {
public:
    EventSinkGuard(IFiscalPrinter& device, IFiscalPrinterEvents* sink) : m_device(device) {
        m_device.SetEventSink(sink);
    }
    ~EventSinkGuard() { m_device.SetEventSink(nullptr); }
    EventSinkGuard(const EventSinkGuard&) = delete;
    EventSinkGuard& operator=(const EventSinkGuard&) = delete;

private:
    IFiscalPrinter& m_device;
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

// What a toolbar action does after its call: the "ERRORS: " box on a failure and the State read
// that repaints the label (the status bar itself has no place here).
void RefreshAfterCommand(IFiscalPrinter& device, clsFprtWrapper& wrapper) {
    const int32_t code = device.ResultCode();
    const int32_t extended = device.ResultCodeExtended();
    const QString text = device.ErrorString();
    if (code != 0)
        ShowMessage(QStringLiteral("ERRORS: ") + Tools::ResultCodeName(code) + QLatin1Char('(') +
                    QString::number(code) + QStringLiteral(")  ") + Tools::ResultCodeExtendedName(extended) +
                    QLatin1Char('(') + QString::number(extended) + QStringLiteral(")  ") + text);
    wrapper.State();
}

// Open Claim Enable as the toolbar does it; true when the device ends up enabled without error.
bool OpenClaimEnable(const QString& deviceName, IFiscalPrinter& device, clsFprtWrapper& wrapper) {
    const int32_t opened = wrapper.WOpen(deviceName);
    RefreshAfterCommand(device, wrapper);
    if (opened == 0)
        wrapper.SetFreezeEvents(false);
    if (wrapper.ResultCode() == 0) {
        wrapper.ClaimDevice(2000);
        RefreshAfterCommand(device, wrapper);
    }
    if (wrapper.ResultCode() == 0) {
        wrapper.SetDeviceEnabled(true);
        RefreshAfterCommand(device, wrapper);
    }
    return device.ResultCode() == 0;
}

// Queued output finishes, and its events reach the log, before the program ends.
void DrainOutput(IFiscalPrinter& device) {
    QElapsedTimer elapsed;
    elapsed.start();
    LetEventsRun(0);
    while (device.State() == OposAll::OPOS_S_BUSY && elapsed.elapsed() < DrainLimitMs)
        LetEventsRun(10);
}

// The log window's file format: the whole log as one quoted value.
bool SaveLog(const QString& fileName, const QStringList& lines) {
    QString text = QStringLiteral("\"");
    for (const QString& line : lines)
        text += line + QStringLiteral("\r\n");
    text += QStringLiteral("\"\r\n");
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray bytes = QStringEncoder(QStringConverter::System).encode(text);
    return file.write(bytes) == bytes.size() && file.commit();
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
            if (options.device.isEmpty()) {
                error = QStringLiteral("--device needs a name");
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
    ConsoleSession session(out, err, options.errorResponse);
    RunnerEvents events;
    EventSinkGuard sinkGuard(device, &events);
    clsFprtWrapper wrapper(device);
    clsMacroEngine engine(wrapper);

    if (engine.LoadFromFile(options.macroFile) != 0) {
        if (engine.LineCount() == clsMacroEngine::StoreSize)
            err << ProgramName << ": " << options.macroFile << " has more than " << clsMacroEngine::StoreSize
                << " lines\n";
        else
            err << ProgramName << ": cannot read macro file " << options.macroFile << '\n';
        err.flush();
        return ExitUsage;
    }

    // Positioned from here on, so the runner's own calls don't add to the macro.
    engine.StartSavedMacro();
    bool failed = false;
    if (options.open && !OpenClaimEnable(options.device, device, wrapper))
        failed = true;

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

    if (!options.logFile.isEmpty() && !SaveLog(options.logFile, session.sink.lines)) {
        err << ProgramName << ": cannot write log file " << options.logFile << '\n';
        err.flush();
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
