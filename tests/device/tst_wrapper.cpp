#include "DeviceDoubles.h"
#include "ScriptedPrinter.h"
#include "Tools.h"
#include "clsFprtWrapper.h"

#include <QTest>

#include <functional>
#include <memory>

namespace {

const QString Success = QStringLiteral("     -> OposSuccess(0)");
const QChar Esc(27);

// One method of the wrapper with the lines it must leave.
struct MethodCase {
    const char* name;
    const char* controlMethod;
    std::function<int32_t(clsFprtWrapper&)> call;
    QString macro;
    QString log; // without the tail
};

const QList<MethodCase>& MethodCases() {
    static const QList<MethodCase> cases{
        {"WOpen", "Open", [](clsFprtWrapper& w) { return w.WOpen("ZorvaneFPU"); }, "F_Open$ZorvaneFPU",
         "Open((ZorvaneFPU)"},
        {"WClose", "Close", [](clsFprtWrapper& w) { return w.WClose(); }, "F_Close", "Close(()"},
        {"BeginFiscalReceipt", "BeginFiscalReceipt",
         [](clsFprtWrapper& w) { return w.BeginFiscalReceipt(true); }, "F_BeginFiscalReceipt$-1",
         "BeginFiscalReceipt(-1)"},
        {"BeginNonFiscal", "BeginNonFiscal", [](clsFprtWrapper& w) { return w.BeginNonFiscal(); },
         "F_BeginNonFiscal", "BeginNonFiscal()"},
        {"BeginTraining", "BeginTraining", [](clsFprtWrapper& w) { return w.BeginTraining(); },
         "F_BeginTraining", "BeginTraining()"},
        {"CheckHealth", "CheckHealth", [](clsFprtWrapper& w) { return w.CheckHealth(1); }, "F_CheckHealth$1",
         "CheckHealth(1)"},
        {"ClearError", "ClearError", [](clsFprtWrapper& w) { return w.ClearError(); }, "F_ClearError",
         "ClearError()"},
        {"ClearOutput", "ClearOutput", [](clsFprtWrapper& w) { return w.ClearOutput(); }, "F_ClearOutput",
         "ClearOutput()"},
        {"DirectIO", "DirectIO",
         [](clsFprtWrapper& w) {
             int32_t command = 9003;
             DirectIOData data{1, 500, -1, -1};
             QString text;
             return w.DirectIO(command, data, text);
         },
         "F_DirectIO$9003$1$500$-1$-1$0$0$0$0$0$0$0$",
         "DirectIO(DIRECTIO_FPTR_SETPOLLINGTIME, {1, 500, -1, -1, 0, 0, 0, 0, 0, 0, 0}, )"},
        {"DirectIO unknown command", "DirectIO",
         [](clsFprtWrapper& w) {
             int32_t command = 1003;
             DirectIOData data{};
             QString text = "a$b";
             return w.DirectIO(command, data, text);
         },
         "F_DirectIO$1003$0$0$0$0$0$0$0$0$0$0$0$a$b",
         "DirectIO(UNDEFINED DIRECTIO COMMAND, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, a$b)"},
        {"EndFiscalReceipt", "EndFiscalReceipt", [](clsFprtWrapper& w) { return w.EndFiscalReceipt(false); },
         "F_EndFiscalReceipt$0", "EndFiscalReceipt(, 0)"},
        {"EndNonFiscal", "EndNonFiscal", [](clsFprtWrapper& w) { return w.EndNonFiscal(); }, "F_EndNonFiscal",
         "EndNonFiscal()"},
        {"EndTraining", "EndTraining", [](clsFprtWrapper& w) { return w.EndTraining(); }, "F_EndTraining",
         "EndTraining()"},
        {"GetData", "GetData",
         [](clsFprtWrapper& w) {
             QString data;
             return w.GetData(1, 0, data);
         },
         "F_GetData$1$0", "GetData(1, 0)"},
        {"GetDate", "GetDate",
         [](clsFprtWrapper& w) {
             QString date;
             return w.GetDate(date);
         },
         "F_GetDate", "GetDate()"},
        {"GetTotalizer", "GetTotalizer",
         [](clsFprtWrapper& w) {
             QString data;
             return w.GetTotalizer(2, 3, data);
         },
         "F_GetTotalizer$2$3", "GetTotalizer(2, 3)"},
        {"GetVatEntry", "GetVatEntry",
         [](clsFprtWrapper& w) {
             int32_t rate = 0;
             return w.GetVatEntry(1, 0, rate);
         },
         "F_GetVatEntry$1$0", "GetVatEntry(1, 0)"},
        {"PrintDuplicateReceipt", "PrintDuplicateReceipt",
         [](clsFprtWrapper& w) { return w.PrintDuplicateReceipt(); }, "F_PrintDuplicateReceipt",
         "PrintDuplicateReceipt()"},
        {"PrintNormal", "PrintNormal", [](clsFprtWrapper& w) { return w.PrintNormal(2, "Hello world"); },
         "F_PrintNormal$2$Hello world", "PrintNormal(2, Hello world)"},
        {"PrintPeriodicTotalsReport", "PrintPeriodicTotalsReport",
         [](clsFprtWrapper& w) { return w.PrintPeriodicTotalsReport("010124", "311224"); },
         "F_PrintPeriodicTotalsReport$010124$311224", "PrintPeriodicTotalsReport(010124, 311224)"},
        {"PrintRecItem", "PrintRecItem",
         [](clsFprtWrapper& w) { return w.PrintRecItem("Articolo test 1", 10000, 0, 0, 0, "Kg"); },
         "F_PrintRecItem$Articolo test 1$1.00$0$0$0.00$Kg",
         "PrintRecItem(\"Articolo test 1\", 1.00, 0, 0, 0.00, \"Kg\")"},
        {"PrintRecItemAdjustment", "PrintRecItemAdjustment",
         [](clsFprtWrapper& w) { return w.PrintRecItemAdjustment(1, "Sconto", 5000, 1); },
         "F_PrintRecItemAdjustment$1$Sconto$0.50$1",
         "PrintRecItemAdjustment(FPTR_AT_AMOUNT_DISCOUNT, \"Sconto\", 0.50, 1)"},
        {"PrintRecItemAdjustmentVoid", "PrintRecItemAdjustmentVoid",
         [](clsFprtWrapper& w) { return w.PrintRecItemAdjustmentVoid(3, "Pct", 100000, 2); },
         "F_PrintRecItemAdjustmentVoid$3$Pct$10.00$2",
         "PrintRecItemAdjustmentVoid(FPTR_AT_PERCENTAGE_DISCOUNT, \"Pct\", 10.00, 2)"},
        {"PrintRecItemVoid", "PrintRecItemVoid",
         [](clsFprtWrapper& w) { return w.PrintRecItemVoid("Articolo", 25000, 1000, 1, 25000, "pz"); },
         "F_PrintRecItemVoid$Articolo$2.50$1000$1$2.50$pz",
         "PrintRecItemVoid(\"Articolo\", 2.50, 1000, 1, 2.50, pz)"},
        {"PrintRecMessage", "PrintRecMessage", [](clsFprtWrapper& w) { return w.PrintRecMessage("Grazie"); },
         "F_PrintRecMessage$Grazie", "PrintRecMessage(\"Grazie\")"},
        {"PrintRecNotPaid", "PrintRecNotPaid",
         [](clsFprtWrapper& w) { return w.PrintRecNotPaid("Credito", 15000); },
         "F_PrintRecNotPaid$Credito$1.50", "PrintRecNotPaid(\"Credito\", 1.50)"},
        {"PrintRecRefund", "PrintRecRefund",
         [](clsFprtWrapper& w) { return w.PrintRecRefund("Reso", 20000, 1); }, "F_PrintRecRefund$Reso$2.00$1",
         "PrintRecRefund(\"Reso\", 2.00, 1)"},
        {"PrintRecRefundVoid", "PrintRecRefundVoid",
         [](clsFprtWrapper& w) { return w.PrintRecRefundVoid("Reso", -20000, 10001); },
         "F_PrintRecRefundVoid$Reso$-2.00$10001", "PrintRecRefundVoid(\"Reso\", -2.00, 10001)"},
        {"PrintRecSubtotal", "PrintRecSubtotal", [](clsFprtWrapper& w) { return w.PrintRecSubtotal(0); },
         "F_PrintRecSubtotal$0.00", "PrintRecSubtotal(0.00)"},
        {"PrintRecSubtotalAdjustment", "PrintRecSubtotalAdjustment",
         [](clsFprtWrapper& w) { return w.PrintRecSubtotalAdjustment(2, "Maggiorazione", 10000); },
         "F_PrintRecSubtotalAdjustment$2$Maggiorazione$1.00",
         "PrintRecSubtotalAdjustment(FPTR_AT_AMOUNT_SURCHARGE, \"Maggiorazione\", 1.00)"},
        {"PrintRecSubtotalAdjustVoid", "PrintRecSubtotalAdjustVoid",
         [](clsFprtWrapper& w) { return w.PrintRecSubtotalAdjustVoid(4, 5000); },
         "F_PrintRecSubtotalAdjustVoid$4$0.50",
         "PrintRecSubtotalAdjustVoid(FPTR_AT_PERCENTAGE_SURCHARGE, 0.50)"},
        {"PrintRecSubtotalAdjustVoid invalid type", "PrintRecSubtotalAdjustVoid",
         [](clsFprtWrapper& w) { return w.PrintRecSubtotalAdjustVoid(7, 5000); },
         "F_PrintRecSubtotalAdjustVoid$7$0.50", "PrintRecSubtotalAdjustVoid(INVALID AdjutmentType, 0.50)"},
        {"PrintRecTotal", "PrintRecTotal",
         [](clsFprtWrapper& w) { return w.PrintRecTotal(30000, 50000, "Contanti"); },
         "F_PrintRecTotal$3.00$5.00$Contanti", "PrintRecTotal(3.00, 5.00, \"Contanti\")"},
        {"PrintRecVoid", "PrintRecVoid", [](clsFprtWrapper& w) { return w.PrintRecVoid("Annullo"); },
         "F_PrintRecVoid$Annullo", "PrintRecVoid(\"Annullo\")"},
        {"PrintReport", "PrintReport", [](clsFprtWrapper& w) { return w.PrintReport(1, "1", "5"); },
         "F_PrintReport$1$1$5", "PrintReport(1, \"1\", \"5\")"},
        {"PrintXReport", "PrintXReport", [](clsFprtWrapper& w) { return w.PrintXReport(); }, "F_PrintXReport",
         "PrintXReport()"},
        {"PrintZReport", "PrintZReport", [](clsFprtWrapper& w) { return w.PrintZReport(); }, "F_PrintZReport",
         "PrintZReport()"},
        {"ReleaseDevice", "ReleaseDevice", [](clsFprtWrapper& w) { return w.ReleaseDevice(); },
         "F_ReleaseDevice", "ReleaseDevice()"},
        {"ResetPrinter", "ResetPrinter", [](clsFprtWrapper& w) { return w.ResetPrinter(); }, "F_ResetPrinter",
         "ResetPrinter()"},
        {"SetDate", "SetDate", [](clsFprtWrapper& w) { return w.SetDate("010120241200"); },
         "F_SetDate$010120241200", "SetDate(\"010120241200\")"},
        {"SetHeaderLine", "SetHeaderLine",
         [](clsFprtWrapper& w) { return w.SetHeaderLine(1, "NEGOZIO", true); },
         "F_SetHeaderLine$1$NEGOZIO$-1", "SetHeaderLine(1, \"NEGOZIO\", -1)"},
        {"SetPOSID", "SetPOSID", [](clsFprtWrapper& w) { return w.SetPOSID("01", "cassiere"); },
         "F_SetPOSID$01$cassiere", "SetPOSID(\"01\", \"cassiere\")"},
        {"SetTrailerLine", "SetTrailerLine",
         [](clsFprtWrapper& w) { return w.SetTrailerLine(2, "Arrivederci", false); },
         "F_SetTrailerLine$2$Arrivederci$0", "SetTrailerLine(2, \"Arrivederci\", 0)"},
        {"SetVatTable", "SetVatTable", [](clsFprtWrapper& w) { return w.SetVatTable(); }, "F_SetVatTable$",
         "SetVatTable()"},
        {"SetVatValue", "SetVatValue", [](clsFprtWrapper& w) { return w.SetVatValue(1, "2200"); },
         "F_SetVatValue$1$2200", "SetVatValue(1, 2200)"},
        {"ClaimDevice", "ClaimDevice", [](clsFprtWrapper& w) { return w.ClaimDevice(2000); },
         "F_ClaimDevice$2000", "ClaimDevice(2000)"},
    };
    return cases;
}

} // namespace

class TestWrapper : public QObject {
    Q_OBJECT

    std::unique_ptr<ScriptedPrinter> printer;
    std::unique_ptr<RecordingMacro> macro;
    std::unique_ptr<CollectingSink> log;
    std::unique_ptr<clsFprtWrapper> wrapper;
    DebugOutputHandler previousDebug;

private slots:
    void init();
    void cleanup();

    void methodLines_data();
    void methodLines();
    void everyMethodIsCovered();
    void failureTails_data();
    void failureTails();
    void recordsBeforeAndLogsAfterTheCall();
    void controlChangesShowInLogOnly();
    void directIOChangesShowInLogOnly();
    void outputArgumentsReachCaller();
    void controlCharactersReachTheControlAndBecomeTokensInLog();
    void amountsUsePointOnCommaSystem();
    void worksWithoutRecorder();

    void propertyReads_data();
    void propertyReads();
    void propertyWrites();
    void refusedWriteStillRecordedAndLogged();
    void everyPropertyById();
    void writingReadOnlyByIdDoesNothing();
};

void TestWrapper::init() {
    printer = std::make_unique<ScriptedPrinter>();
    macro = std::make_unique<RecordingMacro>();
    log = std::make_unique<CollectingSink>();
    wrapper = std::make_unique<clsFprtWrapper>(*printer, macro.get());
    previousDebug = SetDebugOutputHandler([](const QString&) {});
}

void TestWrapper::cleanup() {
    SetDebugOutputHandler(previousDebug);
    wrapper.reset();
    log.reset();
    macro.reset();
    printer.reset();
}

void TestWrapper::methodLines_data() {
    QTest::addColumn<int>("index");
    const auto& cases = MethodCases();
    for (int i = 0; i < cases.size(); ++i)
        QTest::newRow(cases[i].name) << i;
}

void TestWrapper::methodLines() {
    QFETCH(int, index);
    const MethodCase& c = MethodCases()[index];

    QCOMPARE(c.call(*wrapper), 0);
    QCOMPARE(macro->lines, QStringList{c.macro});
    QCOMPARE(log->lines, QStringList{c.log + Success});
    QCOMPARE(printer->CallNames(), QStringList{QString::fromLatin1(c.controlMethod)});
}

void TestWrapper::everyMethodIsCovered() {
    QSet<QString> covered;
    for (const auto& c : MethodCases())
        covered.insert(QString::fromLatin1(c.controlMethod));
    QCOMPARE(covered.size(), 44);
}

void TestWrapper::failureTails_data() {
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("extended");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("tail");
    QTest::newRow("success hides extended and text") << 0 << 203 << "ignored"
                                                     << "     -> OposSuccess(0)";
    QTest::newRow("no extended code") << 106 << 0 << "Bad argument"
                                      << "     -> OposEIllegal(106)  (0)  Bad argument";
    QTest::newRow("extended code") << 114 << 203 << "Paper out"
                                   << "     -> OposEExtended(114)  OposEfptrRecEmpty(203)  Paper out";
    QTest::newRow("closed, empty text") << 101 << 0 << ""
                                        << "     -> OposEClosed(101)  (0)  ";
    QTest::newRow("unknown code in the span") << 100 << 0 << ""
                                              << "     -> Opos#undefined#(100)  (0)  ";
    QTest::newRow("negative code, unknown extended") << -5 << 999 << "x"
                                                     << "     -> Opos#undefined#(-5)  (999)  x";
}

void TestWrapper::failureTails() {
    QFETCH(int, code);
    QFETCH(int, extended);
    QFETCH(QString, error);
    QFETCH(QString, tail);
    printer->Script("PrintXReport", code, extended, error);

    QCOMPARE(wrapper->PrintXReport(), code);
    QCOMPARE(macro->lines, QStringList{"F_PrintXReport"});
    // The tail's own reads go straight to the control and leave no line.
    QCOMPARE(log->lines, QStringList{"PrintXReport()" + tail});
}

void TestWrapper::recordsBeforeAndLogsAfterTheCall() {
    qsizetype callsWhenRecorded = -1;
    qsizetype callsWhenLogged = -1;
    macro->onAdd = [&] { callsWhenRecorded = printer->calls.size(); };
    log->onAppend = [&] { callsWhenLogged = printer->calls.size(); };
    printer->Script("ResetPrinter", 111, 0, "Failure");

    QCOMPARE(wrapper->ResetPrinter(), 111);
    QCOMPARE(callsWhenRecorded, 0);
    QCOMPARE(callsWhenLogged, 1);
    QCOMPARE(macro->lines, QStringList{"F_ResetPrinter"});
}

void TestWrapper::controlChangesShowInLogOnly() {
    printer->handlers["PrintRecItem"] = [](QVariantList& a) {
        a[1] = QVariant::fromValue<Amount>(25000);
        a[2] = QVariant::fromValue<int32_t>(3);
        a[4] = QVariant::fromValue<Amount>(-5000);
        return 0;
    };
    QCOMPARE(wrapper->PrintRecItem("Pane", 10000, 1, 2, 10000, "Kg"), 0);
    QCOMPARE(macro->lines, QStringList{"F_PrintRecItem$Pane$1.00$1$2$1.00$Kg"});
    QCOMPARE(log->lines, QStringList{"PrintRecItem(\"Pane\", 2.50, 3, 2, -0.50, \"Kg\")" + Success});
    // The control was handed the values that went in.
    const auto call = printer->CallsOf("PrintRecItem").value(0);
    QCOMPARE(call.args.value(1).value<Amount>(), Amount(10000));
    QCOMPARE(call.args.value(2).value<int32_t>(), 1);
}

void TestWrapper::directIOChangesShowInLogOnly() {
    printer->handlers["DirectIO"] = [](QVariantList& a) {
        auto data = a[1].value<DirectIOData>();
        data[0] = 1;
        data[10] = -7;
        a[1] = QVariant::fromValue(data);
        a[2] = QStringLiteral("1A,2B");
        return 0;
    };
    int32_t command = 9001;
    DirectIOData data{};
    QString text;
    QCOMPARE(wrapper->DirectIO(command, data, text), 0);

    QCOMPARE(macro->lines, QStringList{"F_DirectIO$9001$0$0$0$0$0$0$0$0$0$0$0$"});
    QCOMPARE(log->lines,
             QStringList{"DirectIO(DIRECTIO_FPTR_DEPARTMENTCFG, {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, -7}, 1A,2B)" +
                         Success});
    QCOMPARE(data[0], 1);
    QCOMPARE(data[10], -7);
    QCOMPARE(text, QStringLiteral("1A,2B"));
}

void TestWrapper::outputArgumentsReachCaller() {
    printer->handlers["GetData"] = [](QVariantList& a) {
        a[2] = QStringLiteral("250");
        return 0;
    };
    printer->handlers["GetDate"] = [](QVariantList& a) {
        a[0] = QStringLiteral("311220231530");
        return 0;
    };
    printer->handlers["GetVatEntry"] = [](QVariantList& a) {
        a[2] = QVariant::fromValue<int32_t>(2200);
        return 0;
    };
    QString data;
    QString date;
    int32_t rate = 0;
    wrapper->GetData(11, 0, data);
    wrapper->GetDate(date);
    wrapper->GetVatEntry(1, 0, rate);

    QCOMPARE(data, QStringLiteral("250"));
    QCOMPARE(date, QStringLiteral("311220231530"));
    QCOMPARE(rate, 2200);
    // Output arguments stand in neither line.
    QCOMPARE(macro->lines, QStringList({"F_GetData$11$0", "F_GetDate", "F_GetVatEntry$1$0"}));
    QCOMPARE(log->lines,
             QStringList({"GetData(11, 0)" + Success, "GetDate()" + Success, "GetVatEntry(1, 0)" + Success}));
}

void TestWrapper::controlCharactersReachTheControlAndBecomeTokensInLog() {
    const QString text = Esc + QStringLiteral("|2CBig\r\nline");
    wrapper->PrintNormal(1, text);

    QCOMPARE(printer->CallsOf("PrintNormal").value(0).args.value(1).toString(), text);
    // Tokens for CR and LF are the recorder's business; the wrapper hands the line as it is.
    QCOMPARE(macro->lines, QStringList{"F_PrintNormal$1$" + text});
    QCOMPARE(log->lines, QStringList{"PrintNormal(1, [ESC]|2CBig[CR][LF]line)" + Success});
}

void TestWrapper::amountsUsePointOnCommaSystem() {
    LocaleScope scope(QLocale(QLocale::German, QLocale::Germany));
    wrapper->PrintRecSubtotal(15000);
    QCOMPARE(macro->lines, QStringList{"F_PrintRecSubtotal$1.50"});
    QCOMPARE(log->lines, QStringList{"PrintRecSubtotal(1.50)" + Success});
}

void TestWrapper::worksWithoutRecorder() {
    wrapper->SetRecorder(nullptr);
    printer->Script("PrintXReport", 101);
    QCOMPARE(wrapper->PrintXReport(), 101);
    QVERIFY(macro->lines.isEmpty());
    QCOMPARE(printer->CallNames(), QStringList{"PrintXReport"});
    QCOMPARE(log->lines, QStringList{"PrintXReport()     -> OposEClosed(101)  (0)  "});
}

void TestWrapper::propertyReads_data() {
    QTest::addColumn<int>("prop");
    QTest::addColumn<QVariant>("controlValue");
    QTest::addColumn<QVariant>("benchValue");
    QTest::addColumn<QString>("line");
    const auto row = [](const char* name, Prop p, QVariant ctl, QVariant bench, const char* line) {
        QTest::newRow(name) << int(p) << ctl << bench << QString::fromUtf8(line);
    };
    row("number", Prop::NumVatRates, 8, 8, "NumVatRates = 8");
    row("negative number", Prop::ErrorLevel, -1, -1, "ErrorLevel = -1");
    row("text", Prop::DeviceName, "ZorvaneFPU", "ZorvaneFPU", "DeviceName = \"ZorvaneFPU\"");
    row("empty text", Prop::PreLine, "", "", "PreLine = \"\"");
    row("text with line break", Prop::PostLine, "a\r\nb", "a\r\nb", "PostLine = \"a[CR][LF]b\"");
    row("boolean true", Prop::CoverOpen, true, true, "CoverOpen = True");
    row("boolean false", Prop::DayOpened, false, false, "DayOpened = False");
    row("capability", Prop::CapValidateJournal, true, true, "CapValidateJournal = True");
    row("state closed", Prop::State, 1, 1, "State = 1 (OPOS_S_CLOSED)");
    row("state out of range", Prop::State, 0, 0, "State = 0 (STATE OUT OF RANGE)");
    row("printer state", Prop::PrinterState, 2, 2, "PrinterState = 2  (FPTR_PS_FISCAL_RECEIPT)");
    row("printer state unknown", Prop::PrinterState, 0, 0, "PrinterState = 0  (UNKNOWN!!! )");
    row("printer state beyond", Prop::PrinterState, 11, 11, "PrinterState = 11  ()");
    row("country code", Prop::CountryCode, 7, "7", "CountryCode = \"7\"");
    row("service object version", Prop::ServiceObjectVersion, 1011000, "1011000",
        "ServiceObjectVersion = \"1011000\"");
    row("power reporting one", Prop::CapPowerReporting, 1, true, "CapPowerReporting = True");
    row("power reporting three", Prop::CapPowerReporting, 3, true, "CapPowerReporting = True");
    row("power reporting zero", Prop::CapPowerReporting, 0, false, "CapPowerReporting = False");
}

void TestWrapper::propertyReads() {
    QFETCH(int, prop);
    QFETCH(QVariant, controlValue);
    QFETCH(QVariant, benchValue);
    QFETCH(QString, line);
    const Prop id = Prop(prop);
    printer->Set(id, controlValue);

    const QVariant got = wrapper->ReadProperty(id);
    QCOMPARE(got, benchValue);
    QCOMPARE(log->lines, QStringList{line});
    QVERIFY(macro->lines.isEmpty());
    QVERIFY(printer->calls.isEmpty());
}

void TestWrapper::propertyWrites() {
    wrapper->SetAdditionalHeader(QString());
    wrapper->SetBinaryConversion(2);
    wrapper->SetFreezeEvents(false);
    wrapper->SetAsyncMode(true);
    wrapper->SetPreLine("a\nb");

    QCOMPARE(macro->lines, QStringList({"P_AdditionalHeader$", "P_BinaryConversion$2", "P_FreezeEvents$False",
                                        "P_AsyncMode$True", "P_PreLine$a\nb"}));
    QCOMPARE(log->lines, QStringList({"AdditionalHeader := \"\"" + Success, "BinaryConversion := 2" + Success,
                                      "FreezeEvents := False" + Success, "AsyncMode := True" + Success,
                                      "PreLine := \"a[LF]b\"" + Success}));
    QCOMPARE(printer->CallNames(), QStringList({"SetAdditionalHeader", "SetBinaryConversion",
                                                "SetFreezeEvents", "SetAsyncMode", "SetPreLine"}));
    QCOMPARE(printer->Get(Prop::BinaryConversion).toInt(), 2);
    QCOMPARE(printer->Get(Prop::AsyncMode).toBool(), true);
}

void TestWrapper::refusedWriteStillRecordedAndLogged() {
    printer->Script("SetDeviceEnabled", 101, 0, "Device closed");
    wrapper->SetDeviceEnabled(true);
    QCOMPARE(macro->lines, QStringList{"P_DeviceEnabled$True"});
    QCOMPARE(log->lines, QStringList{"DeviceEnabled := True     -> OposEClosed(101)  (0)  Device closed"});
    QCOMPARE(printer->CallNames(), QStringList{"SetDeviceEnabled"});
}

void TestWrapper::everyPropertyById() {
    int reads = 0;
    int writes = 0;
    for (const PropertyInfo& p : Properties) {
        const QString name = QLatin1StringView(p.name);
        log->lines.clear();
        macro->lines.clear();
        printer->reads.clear();
        wrapper->ReadProperty(p.id);
        ++reads;
        QCOMPARE(printer->reads, QList<Prop>{p.id});
        QCOMPARE(log->lines.size(), 1);
        QVERIFY2(log->lines[0].startsWith(name + " = "), qPrintable(log->lines[0]));
        QVERIFY(macro->lines.isEmpty());

        if (!p.writable)
            continue;
        ++writes;
        log->lines.clear();
        printer->calls.clear();
        const QVariant value = IsBenchText(p.kind)      ? QVariant(QStringLiteral("v"))
                               : IsBenchBoolean(p.kind) ? QVariant(true)
                                                        : QVariant(3);
        const QString shown = IsBenchText(p.kind) ? "v" : IsBenchBoolean(p.kind) ? "True" : "3";
        wrapper->WriteProperty(p.id, value);
        QCOMPARE(printer->CallNames(), QStringList{"Set" + name});
        QCOMPARE(macro->lines, QStringList{"P_" + name + "$" + shown});
        const QString logged = IsBenchText(p.kind) ? "\"v\"" : shown;
        QCOMPARE(log->lines, QStringList{name + " := " + logged + Success});
    }
    QCOMPARE(reads, 119);
    QCOMPARE(writes, 20);
}

void TestWrapper::writingReadOnlyByIdDoesNothing() {
    wrapper->WriteProperty(Prop::CoverOpen, true);
    wrapper->WriteProperty(Prop::State, 2);
    QVERIFY(printer->calls.isEmpty());
    QVERIFY(macro->lines.isEmpty());
    QVERIFY(log->lines.isEmpty());
}

QTEST_GUILESS_MAIN(TestWrapper)
#include "tst_wrapper.moc"
