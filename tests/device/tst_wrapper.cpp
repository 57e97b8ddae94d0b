#include "BenchLogLines.h"
#include "DeviceDoubles.h"
#include "ScriptedPrinter.h"
#include "Seams.h"
#include "Tools.h"
#include "clsFprtWrapper.h"

#include <QTest>

#include <functional>
#include <optional>

namespace {

const QString Success = QStringLiteral("     -> OposSuccess(0)");

// What a call hands by reference.
struct Out {
    int32_t n = 0;
    QString s;
    DirectIOData d{};
};

// One method of the wrapper with the lines it must leave; the row's first word is the control's method.
struct MethodCase {
    const char* name;
    std::function<int32_t(clsFprtWrapper&, Out&)> call;
    QString macroArgs; // the macro line after "F_" and the method
    QString logArgs;   // the log line after the method, without the tail
};

#define CALL(expr) [](clsFprtWrapper& w, [[maybe_unused]] Out& o) { return w.expr; }

const QList<MethodCase>& MethodCases() {
    static const QList<MethodCase> cases{
        {"Open", CALL(WOpen("ZorvaneFPU")), "$ZorvaneFPU", "((ZorvaneFPU)"},
        {"Close", CALL(WClose()), "", "(()"},
        {"BeginFiscalReceipt", CALL(BeginFiscalReceipt(true)), "$-1", "(-1)"},
        {"BeginNonFiscal", CALL(BeginNonFiscal()), "", "()"},
        {"BeginTraining", CALL(BeginTraining()), "", "()"},
        {"CheckHealth", CALL(CheckHealth(1)), "$1", "(1)"},
        {"ClaimDevice", CALL(ClaimDevice(2000)), "$2000", "(2000)"},
        {"ClearError", CALL(ClearError()), "", "()"},
        {"ClearOutput", CALL(ClearOutput()), "", "()"},
        {"DirectIO", CALL(DirectIO(o.n = 9003, o.d = DirectIOData{1, 500, -1, -1}, o.s)),
         "$9003$1$500$-1$-1$0$0$0$0$0$0$0$",
         "(DIRECTIO_FPTR_SETPOLLINGTIME, {1, 500, -1, -1, 0, 0, 0, 0, 0, 0, 0}, )"},
        {"DirectIO unknown command", CALL(DirectIO(o.n = 1003, o.d, o.s = "a$b")),
         "$1003$0$0$0$0$0$0$0$0$0$0$0$a$b",
         "(UNDEFINED DIRECTIO COMMAND, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, a$b)"},
        {"EndFiscalReceipt", CALL(EndFiscalReceipt(false)), "$0", "(, 0)"},
        {"EndNonFiscal", CALL(EndNonFiscal()), "", "()"},
        {"EndTraining", CALL(EndTraining()), "", "()"},
        {"GetData", CALL(GetData(1, 0, o.s)), "$1$0", "(1, 0)"},
        {"GetDate", CALL(GetDate(o.s)), "", "()"},
        {"GetTotalizer", CALL(GetTotalizer(2, 3, o.s)), "$2$3", "(2, 3)"},
        {"GetVatEntry", CALL(GetVatEntry(1, 0, o.n)), "$1$0", "(1, 0)"},
        {"PrintDuplicateReceipt", CALL(PrintDuplicateReceipt()), "", "()"},
        {"PrintNormal", CALL(PrintNormal(2, "Hello world")), "$2$Hello world", "(2, Hello world)"},
        // Tokens for CR and LF are the recorder's business; the wrapper hands the line as it is.
        {"PrintNormal control characters", CALL(PrintNormal(1, "\x1b|2CBig\r\nline")),
         "$1$\x1b|2CBig\r\nline", "(1, [ESC]|2CBig[CR][LF]line)"},
        {"PrintPeriodicTotalsReport", CALL(PrintPeriodicTotalsReport("010124", "311224")), "$010124$311224",
         "(010124, 311224)"},
        {"PrintRecItem", CALL(PrintRecItem("Articolo test 1", 10000, 0, 0, 0, "Kg")),
         "$Articolo test 1$1.00$0$0$0.00$Kg", "(\"Articolo test 1\", 1.00, 0, 0, 0.00, \"Kg\")"},
        {"PrintRecItemAdjustment", CALL(PrintRecItemAdjustment(1, "Sconto", 5000, 1)), "$1$Sconto$0.50$1",
         "(FPTR_AT_AMOUNT_DISCOUNT, \"Sconto\", 0.50, 1)"},
        {"PrintRecItemAdjustmentVoid", CALL(PrintRecItemAdjustmentVoid(3, "Pct", 100000, 2)),
         "$3$Pct$10.00$2", "(FPTR_AT_PERCENTAGE_DISCOUNT, \"Pct\", 10.00, 2)"},
        {"PrintRecItemVoid", CALL(PrintRecItemVoid("Articolo", 25000, 1000, 1, 25000, "pz")),
         "$Articolo$2.50$1000$1$2.50$pz", "(\"Articolo\", 2.50, 1000, 1, 2.50, pz)"},
        {"PrintRecMessage", CALL(PrintRecMessage("Grazie")), "$Grazie", "(\"Grazie\")"},
        {"PrintRecNotPaid", CALL(PrintRecNotPaid("Credito", 15000)), "$Credito$1.50", "(\"Credito\", 1.50)"},
        {"PrintRecRefund", CALL(PrintRecRefund("Reso", 20000, 1)), "$Reso$2.00$1", "(\"Reso\", 2.00, 1)"},
        {"PrintRecRefundVoid", CALL(PrintRecRefundVoid("Reso", -20000, 10001)), "$Reso$-2.00$10001",
         "(\"Reso\", -2.00, 10001)"},
        {"PrintRecSubtotal", CALL(PrintRecSubtotal(0)), "$0.00", "(0.00)"},
        {"PrintRecSubtotalAdjustment", CALL(PrintRecSubtotalAdjustment(2, "Maggiorazione", 10000)),
         "$2$Maggiorazione$1.00", "(FPTR_AT_AMOUNT_SURCHARGE, \"Maggiorazione\", 1.00)"},
        {"PrintRecSubtotalAdjustVoid", CALL(PrintRecSubtotalAdjustVoid(4, 5000)), "$4$0.50",
         "(FPTR_AT_PERCENTAGE_SURCHARGE, 0.50)"},
        {"PrintRecSubtotalAdjustVoid invalid type", CALL(PrintRecSubtotalAdjustVoid(7, 5000)), "$7$0.50",
         "(INVALID AdjutmentType, 0.50)"},
        {"PrintRecTotal", CALL(PrintRecTotal(30000, 50000, "Contanti")), "$3.00$5.00$Contanti",
         "(3.00, 5.00, \"Contanti\")"},
        {"PrintRecVoid", CALL(PrintRecVoid("Annullo")), "$Annullo", "(\"Annullo\")"},
        {"PrintReport", CALL(PrintReport(1, "1", "5")), "$1$1$5", "(1, \"1\", \"5\")"},
        {"PrintXReport", CALL(PrintXReport()), "", "()"},
        {"PrintZReport", CALL(PrintZReport()), "", "()"},
        {"ReleaseDevice", CALL(ReleaseDevice()), "", "()"},
        {"ResetPrinter", CALL(ResetPrinter()), "", "()"},
        {"SetDate", CALL(SetDate("010120241200")), "$010120241200", "(\"010120241200\")"},
        {"SetHeaderLine", CALL(SetHeaderLine(1, "NEGOZIO", true)), "$1$NEGOZIO$-1", "(1, \"NEGOZIO\", -1)"},
        {"SetPOSID", CALL(SetPOSID("01", "cassiere")), "$01$cassiere", "(\"01\", \"cassiere\")"},
        {"SetTrailerLine", CALL(SetTrailerLine(2, "Arrivederci", false)), "$2$Arrivederci$0",
         "(2, \"Arrivederci\", 0)"},
        {"SetVatTable", CALL(SetVatTable()), "$", "()"},
        {"SetVatValue", CALL(SetVatValue(1, "2200")), "$1$2200", "(1, 2200)"},
    };
    return cases;
}
#undef CALL

QString Control(const MethodCase& c) {
    return QString::fromLatin1(c.name).section(u' ', 0, 0);
}

} // namespace

class TestWrapper : public QObject {
    Q_OBJECT

    std::optional<ScriptedPrinter> printer;
    std::optional<RecordingMacro> macro;
    std::optional<clsBenchLog> log;
    std::optional<clsFprtWrapper> wrapper;

private slots:
    void initTestCase() {
        SetDebugOutputHandler([](const QString&) {});
    }
    void init() {
        printer.emplace();
        macro.emplace();
        log.emplace();
        wrapper.emplace(*printer, *log, &*macro);
    }

    void methodLines_data() {
        QTest::addColumn<int>("index");
        for (int i = 0; i < MethodCases().size(); ++i)
            QTest::newRow(MethodCases()[i].name) << i;
    }
    void methodLines() {
        QFETCH(int, index);
        const MethodCase& c = MethodCases()[index];
        LocaleScope comma(QLocale(QLocale::German, QLocale::Germany)); // amounts keep their point
        Out out;
        QCOMPARE(c.call(*wrapper, out), 0);
        QCOMPARE(macro->lines, QStringList{"F_" + Control(c) + c.macroArgs});
        QCOMPARE(LinesOf(*log), QStringList{Control(c) + c.logArgs + Success});
        QCOMPARE(printer->CallNames(), QStringList{Control(c)});
    }
    void everyMethodIsCovered() {
        QSet<QString> covered;
        for (const auto& c : MethodCases())
            covered.insert(Control(c));
        QCOMPARE(covered.size(), 44);
    }

    // The call is recorded before it goes to the control and logged after, with the result's tail.
    void tails_data() {
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("extended");
        QTest::addColumn<QString>("error");
        QTest::addColumn<QString>("tail");
        QTest::addColumn<QString>("recorder"); // "keeps", "refuses" or "none"
        const auto row = [](const char* name, int code, int ext, const char* error, const char* tail,
                            const char* rec) {
            QTest::newRow(name) << code << ext << QString(error) << QString(tail) << QString(rec);
        };
        row("success hides extended and text", 0, 203, "ignored", "     -> OposSuccess(0)", "keeps");
        row("no extended code", 106, 0, "Bad argument", "     -> OposEIllegal(106)  (0)  Bad argument",
            "keeps");
        row("extended code", 114, 203, "Paper out",
            "     -> OposEExtended(114)  OposEfptrRecEmpty(203)  Paper out", "keeps");
        row("unknown code in the span", 100, 0, "", "     -> Opos#undefined#(100)  (0)  ", "keeps");
        row("negative code, unknown extended", -5, 999, "x", "     -> Opos#undefined#(-5)  (999)  x",
            "keeps");
        row("without recorder", 101, 0, "", "     -> OposEClosed(101)  (0)  ", "none");
        // A recorder that won't keep the line isn't even handed one.
        row("recorder refusing", 0, 0, "", "     -> OposSuccess(0)", "refuses");
    }
    void tails() {
        QFETCH(int, code);
        QFETCH(int, extended);
        QFETCH(QString, error);
        QFETCH(QString, tail);
        QFETCH(QString, recorder);
        qsizetype callsWhenRecorded = -1, callsWhenLogged = -1;
        macro->onAdd = [&] { callsWhenRecorded = printer->calls.size(); };
        QObject::connect(&*log, &clsBenchLog::appended, [&] { callsWhenLogged = printer->calls.size(); });
        if (recorder == "none")
            wrapper->SetRecorder(nullptr);
        macro->recording = recorder != "refuses";
        printer->Script("PrintXReport", code, extended, error);
        QCOMPARE(wrapper->PrintXReport(), code);
        QCOMPARE(printer->CallNames(), QStringList{"PrintXReport"});
        QCOMPARE(macro->lines, recorder == "keeps" ? QStringList{"F_PrintXReport"} : QStringList{});
        QCOMPARE(callsWhenRecorded, recorder == "keeps" ? 0 : -1);
        QCOMPARE(callsWhenLogged, 1);
        // The tail's own reads go straight to the control and leave no line.
        QCOMPARE(LinesOf(*log), QStringList{"PrintXReport()" + tail});
    }

    // Values the control changes through a reference show in the log line and reach the caller,
    // while the macro line keeps what went in; results the control fills stand in neither line.
    void byReferenceValues() {
        printer->handlers["PrintRecItem"] = [](QVariantList& a) {
            a[1] = QVariant::fromValue<Amount>(25000);
            a[2] = QVariant::fromValue<int32_t>(3);
            a[4] = QVariant::fromValue<Amount>(-5000);
            return 0;
        };
        printer->handlers["DirectIO"] = [](QVariantList& a) {
            auto data = a[1].value<DirectIOData>();
            data[0] = 1;
            data[10] = -7;
            a[1] = QVariant::fromValue(data);
            return a[2] = QStringLiteral("1A,2B"), 0;
        };
        printer->handlers["GetData"] = [](QVariantList& a) { return a[2] = QStringLiteral("250"), 0; };
        printer->handlers["GetDate"] = [](QVariantList& a) {
            return a[0] = QStringLiteral("311220231530"), 0;
        };
        printer->handlers["GetVatEntry"] = [](QVariantList& a) {
            return a[2] = QVariant::fromValue(2200), 0;
        };
        Out io{9001, {}, {}}, data, date, rate;
        QCOMPARE(wrapper->PrintRecItem("Pane", 10000, 1, 2, 10000, "Kg"), 0);
        QCOMPARE(wrapper->DirectIO(io.n, io.d, io.s), 0);
        wrapper->GetData(11, 0, data.s);
        wrapper->GetDate(date.s);
        wrapper->GetVatEntry(1, 0, rate.n);

        const auto call = printer->CallsOf("PrintRecItem").value(0); // handed the values that went in
        QCOMPARE(call.args.value(1).value<Amount>(), Amount(10000));
        QCOMPARE(call.args.value(2).value<int32_t>(), 1);
        QCOMPARE(io.d, (DirectIOData{1, 0, 0, 0, 0, 0, 0, 0, 0, 0, -7}));
        QCOMPARE(io.s, QStringLiteral("1A,2B"));
        QCOMPARE(data.s, QStringLiteral("250"));
        QCOMPARE(date.s, QStringLiteral("311220231530"));
        QCOMPARE(rate.n, 2200);
        QCOMPARE(macro->lines, QStringList({"F_PrintRecItem$Pane$1.00$1$2$1.00$Kg",
                                            "F_DirectIO$9001$0$0$0$0$0$0$0$0$0$0$0$", "F_GetData$11$0",
                                            "F_GetDate", "F_GetVatEntry$1$0"}));
        QCOMPARE(
            LinesOf(*log),
            QStringList(
                {"PrintRecItem(\"Pane\", 2.50, 3, 2, -0.50, \"Kg\")" + Success,
                 "DirectIO(DIRECTIO_FPTR_DEPARTMENTCFG, {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, -7}, 1A,2B)" + Success,
                 "GetData(11, 0)" + Success, "GetDate()" + Success, "GetVatEntry(1, 0)" + Success}));
    }

    void propertyReads_data() {
        QTest::addColumn<int>("prop");
        QTest::addColumn<QVariant>("controlValue");
        QTest::addColumn<QVariant>("benchValue");
        QTest::addColumn<QString>("line");
        const auto row = [](const char* name, Prop p, QVariant ctl, QVariant bench, const char* line) {
            QTest::newRow(name) << int(p) << ctl << bench << QString::fromUtf8(line);
        };
        row("number", Prop::ErrorLevel, -1, -1, "ErrorLevel = -1");
        row("text", Prop::DeviceName, "ZorvaneFPU", "ZorvaneFPU", "DeviceName = \"ZorvaneFPU\"");
        row("text with line break", Prop::PostLine, "a\r\nb", "a\r\nb", "PostLine = \"a[CR][LF]b\"");
        row("boolean true", Prop::CoverOpen, true, true, "CoverOpen = True");
        row("state", Prop::State, 1, 1, "State = 1 (OPOS_S_CLOSED)");
        row("printer state", Prop::PrinterState, 2, 2, "PrinterState = 2  (FPTR_PS_FISCAL_RECEIPT)");
        row("printer state unknown", Prop::PrinterState, 0, 0, "PrinterState = 0  (UNKNOWN!!! )");
        row("country code", Prop::CountryCode, 7, "7", "CountryCode = \"7\"");
        row("version", Prop::ServiceObjectVersion, 1011000, "1011000", "ServiceObjectVersion = \"1011000\"");
        row("power reporting three", Prop::CapPowerReporting, 3, true, "CapPowerReporting = True");
        row("power reporting zero", Prop::CapPowerReporting, 0, false, "CapPowerReporting = False");
    }
    void propertyReads() {
        QFETCH(int, prop);
        QFETCH(QVariant, controlValue);
        QFETCH(QString, line);
        printer->Set(Prop(prop), controlValue);
        QTEST(wrapper->ReadProperty(Prop(prop)), "benchValue");
        QCOMPARE(LinesOf(*log), QStringList{line});
        QVERIFY(macro->lines.isEmpty());
        QVERIFY(printer->calls.isEmpty());
    }

    // Edge values of writes, and a write the control refuses: still recorded, logged with its failure.
    void propertyWrites() {
        printer->Script("SetDeviceEnabled", 101, 0, "Device closed");
        wrapper->SetAdditionalHeader(QString());
        wrapper->SetFreezeEvents(false);
        wrapper->SetPreLine("a\nb");
        wrapper->SetDeviceEnabled(true);
        QCOMPARE(macro->lines, QStringList({"P_AdditionalHeader$", "P_FreezeEvents$False", "P_PreLine$a\nb",
                                            "P_DeviceEnabled$True"}));
        QCOMPARE(LinesOf(*log),
                 QStringList({"AdditionalHeader := \"\"" + Success, "FreezeEvents := False" + Success,
                              "PreLine := \"a[LF]b\"" + Success,
                              "DeviceEnabled := True     -> OposEClosed(101)  (0)  Device closed"}));
        QCOMPARE(printer->CallNames(),
                 QStringList({"SetAdditionalHeader", "SetFreezeEvents", "SetPreLine", "SetDeviceEnabled"}));
        QCOMPARE(printer->Get(Prop::PreLine).toString(), QStringLiteral("a\nb"));
    }

    // Every property reads by its id; every writable one writes by its id, the others not at all.
    void everyPropertyById() {
        int writes = 0;
        for (const PropertyInfo& p : Properties) {
            const QString name = QLatin1StringView(p.name);
            const bool text = IsBenchText(p.kind), boolean = IsBenchBoolean(p.kind);
            log->Clear();
            printer->reads.clear();
            printer->calls.clear();
            wrapper->ReadProperty(p.id);
            QCOMPARE(printer->reads, QList<Prop>{p.id});
            QCOMPARE(LinesOf(*log).size(), 1);
            QVERIFY2(LinesOf(*log)[0].startsWith(name + " = "), qPrintable(LinesOf(*log)[0]));
            log->Clear();
            const QVariant value = text ? QVariant("v") : boolean ? QVariant(true) : QVariant(3);
            wrapper->WriteProperty(p.id, value);
            if (!p.writable) {
                QVERIFY(printer->calls.isEmpty() && LinesOf(*log).isEmpty() && macro->lines.isEmpty());
                continue;
            }
            ++writes;
            const QString shown = text ? "v" : boolean ? "True" : "3";
            QCOMPARE(printer->CallNames(), QStringList{"Set" + name});
            QCOMPARE(printer->Get(p.id), value);
            QCOMPARE(macro->lines, QStringList{"P_" + name + "$" + shown});
            QCOMPARE(LinesOf(*log), QStringList{name + " := " + (text ? "\"v\"" : shown) + Success});
            macro->lines.clear();
        }
        QCOMPARE(writes, 20);
    }
};

QTEST_GUILESS_MAIN(TestWrapper)
#include "tst_wrapper.moc"
