#include "BenchLogLines.h"
#include "ScriptedPrinter.h"
#include "Seams.h"
#include "TestRow.h"
#include "clsBenchCore.h"

#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <functional>
#include <optional>

namespace {

QStringList Split(const char* list) {
    return QString::fromLatin1(list).split(u' ', Qt::SkipEmptyParts);
}

// The core over a scripted control, with everything it says recorded: boxes through the seam,
// the ErrorEvent questions, the texts it shows, the alarms and the list rebuilds it asks for.
struct CoreBench {
    struct Box {
        QString text;
        MsgButtons buttons;
        QString title;
        qsizetype logAt; // log lines when the box came up
    };
    ScriptedPrinter printer;
    QList<Box> boxes;
    QStringList questions;
    bool retry = false;
    std::optional<clsBenchCore> core;
    QList<QStringList> results; // code, extended, description
    QStringList states, printerStates;
    QList<std::pair<BenchAlarm, bool>> alarms;
    int listsOutdated = 0;
    qsizetype listsOutdatedAt = -1; // log lines at the last rebuild request

    explicit CoreBench(const std::function<void(ScriptedPrinter&)>& prepare = {}) {
        printer.Set(Prop::State, 2);
        if (prepare)
            prepare(printer);
        core.emplace(printer, [this](const QString& q) { return questions.append(q), retry; });
        QObject::connect(&*core, &clsBenchCore::resultStatusUpdated,
                         [this](const QString& c, const QString& e, const QString& d) {
                             results.append({c, e, d});
                         });
        QObject::connect(&*core, &clsBenchCore::stateLabelUpdated,
                         [this](const QString& t) { states.append(t); });
        QObject::connect(&*core, &clsBenchCore::printerStateLabelUpdated,
                         [this](const QString& t) { printerStates.append(t); });
        QObject::connect(&*core, &clsBenchCore::alarmChanged, [this](BenchAlarm a, bool raised) {
            alarms.append({a, raised});
        });
        QObject::connect(&*core, &clsBenchCore::deviceListsOutdated, [this] {
            ++listsOutdated;
            listsOutdatedAt = core->Log().LineCount();
        });
        SetMessageBoxHandler([this](const QString& text, MsgButtons buttons, const QString& title) {
            boxes.append({text, buttons, title, core->Log().LineCount()});
            return MsgResult::Ok;
        });
    }
    ~CoreBench() { SetMessageBoxHandler({}); }
    QStringList Log() const { return LinesOf(core->Log()); }
};

// Lists are space-separated; failing calls answer their next call with 111, 112...; resultCodes are
// those of the ResultCode lines of the log, refreshes its State lines.
struct Sequence {
    const char *tag, *actions, *failing, *calls, *macro, *resultCodes;
    bool timer;
    int boxes, refreshes, listRebuilds;
    const char* name = "ZorvaneFPU"; // of the device, case-sensitive
};
const Sequence kSequences[] = {
    {"Open Tessorim", "Open", "", "Open SetFreezeEvents", "F_Open$Tessorim P_FreezeEvents$False", "", true, 0,
     1, 0, "Tessorim"},
    {"lower case refused", "Open", "", "", "", "", false, 0, 0, 0, "zorvanefpu"},
    {"one letter off case refused", "Open", "", "", "", "", false, 0, 0, 0, "tessorim"},
    {"trailing blank refused", "OCE", "", "ClaimDevice SetDeviceEnabled",
     "F_ClaimDevice$2000 P_DeviceEnabled$True", "0 0", false, 0, 2, 1, "ZorvaneFPU "},
    {"OCE", "OCE", "", "Open SetFreezeEvents ClaimDevice SetDeviceEnabled",
     "F_Open$ZorvaneFPU P_FreezeEvents$False F_ClaimDevice$2000 P_DeviceEnabled$True", "0 0", true, 0, 3, 1},
    // The failed step's code is still there for the second test; no FreezeEvents after a failed Open.
    {"OCE, Open fails", "OCE", "Open", "Open", "F_Open$ZorvaneFPU", "111 111", false, 1, 1, 0},
    {"OCE, Claim fails", "OCE", "ClaimDevice", "Open SetFreezeEvents ClaimDevice",
     "F_Open$ZorvaneFPU P_FreezeEvents$False F_ClaimDevice$2000", "0 111", true, 1, 2, 0},
    {"Enable refused still outdates the lists", "Enable", "SetDeviceEnabled", "SetDeviceEnabled",
     "P_DeviceEnabled$True", "", false, 1, 1, 1},
    // Disable and Release report their refusal; Close reports nothing and doesn't refresh.
    {"DRC all refused", "Open DRC", "SetDeviceEnabled ReleaseDevice Close",
     "Open SetFreezeEvents SetDeviceEnabled ReleaseDevice Close",
     "F_Open$ZorvaneFPU P_FreezeEvents$False P_DeviceEnabled$False F_ReleaseDevice F_Close", "", false, 2, 3,
     0},
};

} // namespace

class TestBenchCore : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() {
        SetDebugOutputHandler([](const QString&) {});
    }

    void construction() {
        CoreBench b;
        QCOMPARE(b.printer.sink, &*b.core); // the control's events come to the core
        QVERIFY(b.printer.calls.isEmpty() && b.Log().isEmpty());
        QCOMPARE(b.core->MacroEngine().LineCount(), 0);
        b.core->FprtWrapper().PrintXReport(); // the wrapper logs into the core's log, records into its macro
        QCOMPARE(b.core->MacroEngine().Lines(), QStringList{"F_PrintXReport"});
        QCOMPARE(b.Log(), QStringList{"PrintXReport()     -> OposSuccess(0)"});
        QVERIFY(!b.core->tmrUpdateControls()->isActive());
        QCOMPARE(b.core->tmrUpdateControls()->interval(), 2000);
        b.core.reset();
        QCOMPARE(b.printer.sink, nullptr);
    }

    void lifecycle_data() {
        QTest::addColumn<int>("row");
        for (int i = 0; i < int(std::size(kSequences)); ++i)
            QTest::newRow(kSequences[i].tag) << i;
    }
    void lifecycle() {
        QFETCH(int, row);
        const Sequence& s = kSequences[row];
        const QString name = QString::fromLatin1(s.name);
        CoreBench b;
        for (int code = 111; const QString& call : Split(s.failing))
            b.printer.Script(call, code++, 0, "Failure");
        clsBenchCore& core = *b.core;
        const QHash<QString, std::function<void()>> actions{{"Open", [&] { core.Open(name); }},
                                                            {"Enable", [&] { core.Enable(); }},
                                                            {"OCE", [&] { core.OpenClaimEnable(name); }},
                                                            {"DRC", [&] { core.DisableReleaseClose(); }}};
        for (const QString& action : Split(s.actions))
            actions[action]();

        QCOMPARE(b.printer.CallNames(), Split(s.calls));
        QCOMPARE(core.MacroEngine().Lines(), Split(s.macro));
        for (const auto& c : b.printer.CallsOf("Open"))
            QCOMPARE(c.args.at(0).toString(), name);
        for (const auto& c : b.printer.CallsOf("ClaimDevice"))
            QCOMPARE(c.args.at(0).toInt(), 2000);
        for (const auto& c : b.printer.CallsOf("SetFreezeEvents"))
            QCOMPARE(c.args.at(0).toBool(), false);
        QCOMPARE(core.tmrUpdateControls()->isActive(), s.timer);
        QCOMPARE(b.boxes.size(), s.boxes);
        const QStringList lines = b.Log();
        QVERIFY(*s.calls || lines.isEmpty());
        QCOMPARE(lines.filter(QRegularExpression("^ResultCode = ")).replaceInStrings("ResultCode = ", ""),
                 Split(s.resultCodes));
        QCOMPARE(lines.count("State = 2 (OPOS_S_IDLE)"), s.refreshes);
        QCOMPARE(b.states.size(), s.refreshes);
        QCOMPARE(b.listsOutdated, s.listRebuilds);
        if (s.listRebuilds) // after Enable's refresh, box included
            QCOMPARE(b.listsOutdatedAt, lines.lastIndexOf("State = 2 (OPOS_S_IDLE)") + 1);
        if (Split(s.calls).endsWith("Close")) // whose result stands in the log only
            QVERIFY(lines.constLast().startsWith("Close(()"));
    }

    void refresh_data() {
        QTest::addColumn<QList<int>>("in");   // code, extended, State, PrinterState
        QTest::addColumn<QStringList>("out"); // error, code, extended, box (empty: none), state texts
        const auto row = [](const char* tag, QList<int> in, QStringList out) {
            QTest::newRow(tag) << in << out;
        };
        row("success", {0, 0, 2, 1},
            {"", "OposSuccess(0)", "(0)", "", "OPOS_S_IDLE   ( 2)", "FPTR_PS_MONITOR   ( 1)"});
        row("extended alone counts for nothing", {0, 203, 1, 0},
            {"stale", "OposSuccess(0)", "OposEfptrRecEmpty(203)", "", "OPOS_S_CLOSED   ( 1)",
             "UNKNOWN!!!    ( 0)"});
        row("extended failure", {114, 203, 3, 10},
            {"Paper out", "OposEExtended(114)", "OposEfptrRecEmpty(203)",
             "ERRORS: OposEExtended(114)  OposEfptrRecEmpty(203)  Paper out", "OPOS_S_BUSY   ( 3)",
             "FPTR_PS_REPORT   ( 10)"});
        row("no extended code", {106, 0, 0, 11},
            {"Illegal", "OposEIllegal(106)", "(0)", "ERRORS: OposEIllegal(106)  (0)  Illegal",
             "STATE OUT OF RANGE   ( 0)", "   ( 11)"});
        row("unknown code", {-5, 0, -1, -2},
            {"x", "Opos#undefined#(-5)", "(0)", "ERRORS: Opos#undefined#(-5)  (0)  x",
             "STATE OUT OF RANGE   (-1)", "   (-2)"});
    }
    void refresh() {
        QFETCH(QList<int>, in);
        QFETCH(QStringList, out);
        CoreBench b([&](ScriptedPrinter& p) {
            p.Set(Prop::State, in[2]);
            p.Set(Prop::PrinterState, in[3]);
        });
        b.printer.Script("ResetPrinter", in[0], in[1], out[0]);
        b.core->FprtWrapper().ResetPrinter();
        b.printer.reads.clear();
        b.core->RefreshAfterCommand();

        QCOMPARE(b.results, (QList<QStringList>{{out[1], out[2], out[0]}}));
        QCOMPARE(b.states, QStringList{out[4]});
        QCOMPARE(b.printerStates, QStringList{out[5]});
        // One line, State's; the result and PrinterState reads go straight to the control.
        QCOMPARE(b.Log().mid(1).size(), 1);
        QVERIFY(b.Log().at(1).startsWith("State = "));
        const QList<Prop> reads{Prop::ResultCode, Prop::ResultCodeExtended, Prop::ErrorString, Prop::State,
                                Prop::PrinterState};
        QCOMPARE(b.printer.reads, reads);
        QCOMPARE(b.boxes.size(), out[3].isEmpty() ? 0 : 1);
        for (const auto& box : b.boxes) {
            QCOMPARE(box.text, out[3]);
            QCOMPARE(box.buttons, MsgButtons::Ok);
            QCOMPARE(box.title, QStringLiteral("ZorvaneFPUTest"));
            QCOMPARE(box.logAt, 1); // before State is read
        }
    }

    void statusEvents_data() {
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("line"); // empty: no line
        QTest::addColumn<QString>(
            "alarms"); // each as C, O or N (cover, paper out, near empty), + raised, - cleared
        const auto row = [](int status, const char* line, const char* alarms) {
            QTest::newRow(qPrintable(QString::number(status)))
                << status << QString::fromLatin1(line) << QString::fromLatin1(alarms);
        };
        row(0, "StatusUpdateEvent(0)", "");
        row(11, "StatusUpdateEvent(PtrSueCoverOpen)", "C+");
        row(12, "StatusUpdateEvent(PtrSueCoverOk)", "C-");
        row(21, "StatusUpdateEvent(PtrSueJrnEmpty)", "");
        row(22, "StatusUpdateEvent(PtrSueJrnNearempty)", "");
        row(23, "StatusUpdateEvent(PtrSueJrnPaperok)", "");
        row(24, "StatusUpdateEvent(PtrSueRecEmpty)", "O+");
        row(25, "StatusUpdateEvent(PtrSueRecNearempty)", "N+");
        row(26, "StatusUpdateEvent(PtrSueRecPaperok)", "O-N-");
        row(1001, "StatusUpdateEvent(PtrSueIdle)", "");
        row(27, "", "");
        row(-1, "", "");
    }
    void statusEvents() {
        QFETCH(int, status);
        QFETCH(QString, line);
        QFETCH(QString, alarms);
        CoreBench b;
        qsizetype logAtAlarm = -1;
        QObject::connect(&*b.core, &clsBenchCore::alarmChanged,
                         [&] { logAtAlarm = b.core->Log().LineCount(); });
        b.printer.sink->StatusUpdateEvent(status);
        QCOMPARE(b.Log(), line.isEmpty() ? QStringList() : QStringList{line});
        QString seen;
        for (auto [alarm, raised] : b.alarms)
            seen += QString(alarm == BenchAlarm::CoverOpen  ? 'C'
                            : alarm == BenchAlarm::PaperOut ? 'O'
                                                            : 'N') +
                    (raised ? '+' : '-');
        QCOMPARE(seen, alarms);
        if (!alarms.isEmpty())
            QCOMPARE(logAtAlarm, 0); // the lamps change before the line is written
        // Events bypass the wrapper: no macro line, no device call, no refresh.
        QCOMPARE(b.core->MacroEngine().LineCount(), 0);
        QVERIFY(b.printer.calls.isEmpty() && b.results.isEmpty());
    }

    void errorEvent_data() {
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("extended");
        QTest::addColumn<bool>("retry");
        QTest::addColumn<int>("response");
        QTest::addColumn<QString>("text"); // of the question, and after "ErrorEvent" in the log
        Row("retry", 114, 203, true, 11, "(114 OposEExtended, 203 OposEfptrRecEmpty)");
        Row("cancel", 114, 201, false, 12, "(114 OposEExtended, 201 OposEfptrCoverOpen)");
        Row("no extended code", 112, 0, false, 12, "(112 OposETimeout, 0 )");
        Row("unknown codes", 99, 300, true, 11, "(99 Opos#undefined#, 300 )");
    }
    void errorEvent() {
        QFETCH(int, code);
        QFETCH(int, extended);
        QFETCH(bool, retry);
        QFETCH(int, response);
        QFETCH(QString, text);
        CoreBench b;
        b.retry = retry;
        int32_t pErrorResponse = -1;
        b.printer.sink->ErrorEvent(code, extended, 1, pErrorResponse);
        b.printer.sink->OutputCompleteEvent(5); // a line of its own and nothing else
        QCOMPARE(pErrorResponse, response);
        QCOMPARE(b.questions, QStringList{"OposErrorEvent" + text});
        QVERIFY(b.boxes.isEmpty()); // the answer is the owner's, not a box of the core's
        QCOMPARE(b.Log(), QStringList({"ErrorEvent" + text + "  Resp = " + QString::number(response),
                                       "OutputCompleteEvent(5)"}));
        QCOMPARE(b.core->MacroEngine().LineCount(), 0);
        QVERIFY(b.printer.calls.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestBenchCore)
#include "tst_benchcore.moc"
