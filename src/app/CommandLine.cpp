#include "CommandLine.h"

#include "clsBenchCore.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

namespace CommandLine {

QString VersionText(const QString& program) {
    return program + QLatin1Char(' ') + QStringLiteral(FPUBENCH_VERSION_TEXT);
}

QString HelpText(const QCommandLineParser& parser, const QString& program) {
    // Qt writes the path the program was started by, or a placeholder without an application.
    const QString started = QCoreApplication::instance() ? QCoreApplication::arguments().value(0)
                                                         : QStringLiteral("<executable_name>");
    QString text = parser.helpText();
    const QString usage = QStringLiteral("Usage: ");
    if (text.startsWith(usage + started))
        text.replace(usage.size(), started.size(), program);
    return text;
}

QString ParseError(const QCommandLineParser& parser) {
    const QStringList unknown = parser.unknownOptionNames();
    if (unknown.isEmpty()) {
        // Qt's sentence, made a clause of the usage line.
        QString text = parser.errorText();
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
        if (!text.isEmpty())
            text[0] = text[0].toLower();
        return text;
    }
    QStringList written;
    for (const QString& name : unknown)
        written.append((name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name);
    return (written.size() == 1 ? QStringLiteral("unknown option ") : QStringLiteral("unknown options ")) +
           written.join(QStringLiteral(", "));
}

QString UsageErrorLine(const QString& program, const QString& error) {
    return program + QStringLiteral(": ") + error + QStringLiteral("; see ") + program +
           QStringLiteral(" --help");
}

QString DeviceNameError(const QString& name) {
    if (clsBenchCore::IsAcceptedDeviceName(name))
        return {};
    return QStringLiteral("--device is ZorvaneFPU or Tessorim, not \"") + name + QLatin1Char('"');
}

QStringList Arguments(int argc, char** argv) {
    QStringList list;
    for (int i = 0; i < argc; ++i)
        list.append(QString::fromLocal8Bit(argv[i]));
    return list;
}

} // namespace CommandLine

namespace {

const QString BenchProgram = QStringLiteral("fpubench");

// The options that QGuiApplication and QApplication take out of the arguments themselves.
// Known here so that they are not refused, and kept out of the help.
void AddWindowSystemOptions(QCommandLineParser& parser) {
    static const char* const withValue[] = {"platform",
                                            "platformpluginpath",
                                            "platformtheme",
                                            "plugin",
                                            "qwindowgeometry",
                                            "qwindowtitle",
                                            "qwindowicon",
                                            "session",
                                            "display",
                                            "geometry",
                                            "title",
                                            "icon",
                                            "name",
                                            "style",
                                            "stylesheet",
                                            "qmljsdebugger"};
    static const char* const flags[] = {"reverse", "widgetcount", "nograb", "dograb", "sync", "testability"};
    for (const char* name : withValue) {
        QCommandLineOption option(QString::fromLatin1(name), QString(), QStringLiteral("value"));
        option.setFlags(QCommandLineOption::HiddenFromHelp);
        parser.addOption(option);
    }
    for (const char* name : flags) {
        QCommandLineOption option(QString::fromLatin1(name));
        option.setFlags(QCommandLineOption::HiddenFromHelp);
        parser.addOption(option);
    }
}

} // namespace

BenchStart ParseBenchArguments(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Workbench for a fiscal printer driven through its OPOS-style control.\n"
                       "The device is the simulated fiscal printer."));
    // Qt's own options come with one dash ("-platform offscreen").
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Show this help and exit."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Show the program's version and exit."));
    const QCommandLineOption device(
        QStringLiteral("device"),
        QStringLiteral("The device name the toolbar's Open uses: ZorvaneFPU or Tessorim "
                       "(default: ") +
            QStringLiteral(FPUBENCH_SO_NAME_TEXT) + QStringLiteral(")."),
        QStringLiteral("NAME"));
    const QCommandLineOption newMemory(
        QStringLiteral("new-fiscal-memory"),
        QStringLiteral("Start MODEL's simulated printer on a new fiscal memory, after asking; the old "
                       "file is kept aside. No window opens."),
        QStringLiteral("MODEL"));
    parser.addOptions({help, version, device, newMemory});
    AddWindowSystemOptions(parser);

    BenchStart start;
    auto refuse = [&start](const QString& error) {
        start.openWindow = false;
        start.exitCode = CommandLine::ExitUsage;
        start.err = CommandLine::UsageErrorLine(BenchProgram, error);
        return start;
    };
    if (!parser.parse(arguments))
        return refuse(CommandLine::ParseError(parser));
    if (parser.isSet(help) || parser.isSet(version)) {
        start.openWindow = false;
        start.out = parser.isSet(help) ? CommandLine::HelpText(parser, BenchProgram)
                                       : CommandLine::VersionText(BenchProgram) + QLatin1Char('\n');
        return start;
    }
    if (!parser.positionalArguments().isEmpty())
        return refuse(QStringLiteral("unexpected argument ") + parser.positionalArguments().constFirst());
    if (parser.isSet(device)) {
        if (const QString error = CommandLine::DeviceNameError(parser.value(device)); !error.isEmpty())
            return refuse(error);
        start.device = parser.value(device);
    }
    if (parser.isSet(newMemory)) {
        if (const QString error = CommandLine::DeviceNameError(parser.value(newMemory)); !error.isEmpty())
            return refuse(error);
        start.newFiscalMemory = parser.value(newMemory);
    }
    return start;
}

int FinishWithoutWindow(const BenchStart& start) {
    if (!start.out.isEmpty())
        std::fputs(start.out.toLocal8Bit().constData(), stdout);
    if (!start.err.isEmpty())
        std::fprintf(stderr, "%s\n", start.err.toLocal8Bit().constData());
    return start.exitCode;
}
