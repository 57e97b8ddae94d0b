#include "clsFprtWrapper.h"

#include "Tools.h"

namespace {

// Room for a usual line and its result tail: a line is built in one allocation.
constexpr qsizetype LineReserve = 160;

// Fields and arguments as they are written into a line.
struct Num {
    int32_t value;
};
struct Money {
    Amount value;
};
struct Quote {
    const QString& text;
};
// Booleans of method arguments travel as the numbers True = -1, False = 0; property lines use words.
Num Flag(bool value) {
    return {value ? -1 : 0};
}

void Put(QString& out, const QString& text) {
    out += text;
}
void Put(QString& out, Num n) {
    Tools::AppendLongText(out, n.value);
}
void Put(QString& out, Money m) {
    Tools::AppendAmountText(out, m.value);
}
void Put(QString& out, Quote q) {
    out += u'"';
    out += q.text;
    out += u'"';
}
// DirectIO's block in a macro line: its elements as fields of their own.
void Put(QString& out, const DirectIOData& data) {
    bool first = true;
    for (const int32_t e : data) {
        if (!first)
            out += u'$';
        first = false;
        Tools::AppendLongText(out, e);
    }
}

// The command word and its fields joined by "$", nothing escaped.
template <typename... Fields> QString MacroLine(const char* word, const Fields&... fields) {
    QString line;
    line.reserve(LineReserve);
    line += QLatin1StringView(word);
    ((line += u'$', Put(line, fields)), ...);
    return line;
}

// "Name(arg, arg)", the start of a log line.
template <typename... Args> QString CallText(const char* name, const Args&... args) {
    QString line;
    line.reserve(LineReserve);
    line += QLatin1StringView(name);
    line += u'(';
    [[maybe_unused]] QLatin1StringView separator;
    ((line += separator, Put(line, args), separator = QLatin1StringView(", ")), ...);
    line += u')';
    return line;
}

QString BoolWord(bool value) {
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

} // namespace

clsFprtWrapper::clsFprtWrapper(IFiscalPrinter& control, ILogWriter& log, IMacroRecorder* recorder)
    : m_control(control), m_log(log), m_recorder(recorder) {}

void clsFprtWrapper::AppendResultTail(QString& line) {
    const int32_t code = m_control.ResultCode();
    const int32_t extended = m_control.ResultCodeExtended();
    const QString error = m_control.ErrorString();
    line += QLatin1StringView("     -> ");
    line += Tools::ResultCodeName(code);
    line += u'(';
    Tools::AppendLongText(line, code);
    line += u')';
    if (code == 0)
        return;
    line += QLatin1StringView("  ");
    line += Tools::ResultCodeExtendedName(extended);
    line += u'(';
    Tools::AppendLongText(line, extended);
    line += QLatin1StringView(")  ");
    line += error;
}

bool clsFprtWrapper::WillRecord() const {
    return m_recorder && m_recorder->WillRecord();
}

template <typename... Fields> void clsFprtWrapper::Record(const char* word, const Fields&... fields) {
    if (!WillRecord())
        return;
    QString line = MacroLine(word, fields...);
    m_recorder->AddCommand(line);
}

void clsFprtWrapper::LogCall(QString line) {
    AppendResultTail(line);
    WriteLog(line);
}

// ---- Methods ------------------------------------------------------------------------------------

int32_t clsFprtWrapper::WOpen(QString DeviceName) {
    Record("F_Open", DeviceName);
    const int32_t rc = m_control.Open(DeviceName);
    // Open and Close begin their lines with a doubled bracket, as readers of old logs know them.
    LogCall(CallText("Open(", DeviceName));
    return rc;
}

int32_t clsFprtWrapper::WClose() {
    Record("F_Close");
    const int32_t rc = m_control.Close();
    LogCall(CallText("Close("));
    return rc;
}

int32_t clsFprtWrapper::BeginFiscalReceipt(bool printheader) {
    Record("F_BeginFiscalReceipt", Flag(printheader));
    const int32_t rc = m_control.BeginFiscalReceipt(printheader);
    LogCall(CallText("BeginFiscalReceipt", Flag(printheader)));
    return rc;
}

int32_t clsFprtWrapper::BeginNonFiscal() {
    Record("F_BeginNonFiscal");
    const int32_t rc = m_control.BeginNonFiscal();
    LogCall(CallText("BeginNonFiscal"));
    return rc;
}

int32_t clsFprtWrapper::BeginTraining() {
    Record("F_BeginTraining");
    const int32_t rc = m_control.BeginTraining();
    LogCall(CallText("BeginTraining"));
    return rc;
}

int32_t clsFprtWrapper::CheckHealth(int32_t lvl) {
    Record("F_CheckHealth", Num{lvl});
    const int32_t rc = m_control.CheckHealth(lvl);
    LogCall(CallText("CheckHealth", Num{lvl}));
    return rc;
}

int32_t clsFprtWrapper::ClearError() {
    Record("F_ClearError");
    const int32_t rc = m_control.ClearError();
    LogCall(CallText("ClearError"));
    return rc;
}

int32_t clsFprtWrapper::ClearOutput() {
    Record("F_ClearOutput");
    const int32_t rc = m_control.ClearOutput();
    LogCall(CallText("ClearOutput"));
    return rc;
}

int32_t clsFprtWrapper::DirectIO(int32_t& Command, DirectIOData& pData, QString& pString) {
    Record("F_DirectIO", Num{Command}, pData, pString);
    const int32_t rc = m_control.DirectIO(Command, pData, pString);
    QString line;
    line.reserve(LineReserve);
    line += QLatin1StringView("DirectIO(");
    line += Tools::DirectIOCommandName(Command);
    line += QLatin1StringView(", {");
    bool first = true;
    for (const int32_t e : pData) {
        if (!first)
            line += QLatin1StringView(", ");
        first = false;
        Tools::AppendLongText(line, e);
    }
    line += QLatin1StringView("}, ");
    line += pString;
    line += u')';
    LogCall(std::move(line));
    return rc;
}

int32_t clsFprtWrapper::EndFiscalReceipt(bool printheader) {
    Record("F_EndFiscalReceipt", Flag(printheader));
    const int32_t rc = m_control.EndFiscalReceipt(printheader);
    // The comma before the argument belongs to this line, as readers of old logs know it.
    LogCall(CallText("EndFiscalReceipt", QString(), Flag(printheader)));
    return rc;
}

int32_t clsFprtWrapper::EndNonFiscal() {
    Record("F_EndNonFiscal");
    const int32_t rc = m_control.EndNonFiscal();
    LogCall(CallText("EndNonFiscal"));
    return rc;
}

int32_t clsFprtWrapper::EndTraining() {
    Record("F_EndTraining");
    const int32_t rc = m_control.EndTraining();
    LogCall(CallText("EndTraining"));
    return rc;
}

int32_t clsFprtWrapper::GetData(int32_t dataitem, int32_t optArgs, QString& Data) {
    Record("F_GetData", Num{dataitem}, Num{optArgs});
    const int32_t rc = m_control.GetData(dataitem, optArgs, Data);
    LogCall(CallText("GetData", Num{dataitem}, Num{optArgs}));
    return rc;
}

int32_t clsFprtWrapper::GetDate(QString& oDate) {
    Record("F_GetDate");
    const int32_t rc = m_control.GetDate(oDate);
    LogCall(CallText("GetDate"));
    return rc;
}

int32_t clsFprtWrapper::GetTotalizer(int32_t VatId, int32_t optArgs, QString& Data) {
    Record("F_GetTotalizer", Num{VatId}, Num{optArgs});
    const int32_t rc = m_control.GetTotalizer(VatId, optArgs, Data);
    LogCall(CallText("GetTotalizer", Num{VatId}, Num{optArgs}));
    return rc;
}

int32_t clsFprtWrapper::GetVatEntry(int32_t VatId, int32_t optArgs, int32_t& VatRate) {
    Record("F_GetVatEntry", Num{VatId}, Num{optArgs});
    const int32_t rc = m_control.GetVatEntry(VatId, optArgs, VatRate);
    LogCall(CallText("GetVatEntry", Num{VatId}, Num{optArgs}));
    return rc;
}

int32_t clsFprtWrapper::PrintDuplicateReceipt() {
    Record("F_PrintDuplicateReceipt");
    const int32_t rc = m_control.PrintDuplicateReceipt();
    LogCall(CallText("PrintDuplicateReceipt"));
    return rc;
}

int32_t clsFprtWrapper::PrintNormal(int32_t station, QString Data) {
    Record("F_PrintNormal", Num{station}, Data);
    const int32_t rc = m_control.PrintNormal(station, Data);
    LogCall(CallText("PrintNormal", Num{station}, Data));
    return rc;
}

int32_t clsFprtWrapper::PrintPeriodicTotalsReport(QString Date1, QString Date2) {
    Record("F_PrintPeriodicTotalsReport", Date1, Date2);
    const int32_t rc = m_control.PrintPeriodicTotalsReport(Date1, Date2);
    LogCall(CallText("PrintPeriodicTotalsReport", Date1, Date2));
    return rc;
}

int32_t clsFprtWrapper::PrintRecItem(QString Description, Amount price, int32_t quantity, int32_t vatInfo,
                                     Amount unitPrice, QString unitName) {
    Record("F_PrintRecItem", Description, Money{price}, Num{quantity}, Num{vatInfo}, Money{unitPrice},
           unitName);
    const int32_t rc = m_control.PrintRecItem(Description, price, quantity, vatInfo, unitPrice, unitName);
    LogCall(CallText("PrintRecItem", Quote{Description}, Money{price}, Num{quantity}, Num{vatInfo},
                     Money{unitPrice}, Quote{unitName}));
    return rc;
}

int32_t clsFprtWrapper::PrintRecItemAdjustment(int32_t adjustmentType, QString Description, Amount amount,
                                               int32_t vatInfo) {
    Record("F_PrintRecItemAdjustment", Num{adjustmentType}, Description, Money{amount}, Num{vatInfo});
    const int32_t rc = m_control.PrintRecItemAdjustment(adjustmentType, Description, amount, vatInfo);
    LogCall(CallText("PrintRecItemAdjustment", Tools::AdjustmentTypeName(adjustmentType), Quote{Description},
                     Money{amount}, Num{vatInfo}));
    return rc;
}

int32_t clsFprtWrapper::PrintRecItemAdjustmentVoid(int32_t adjustmentType, QString Description, Amount amount,
                                                   int32_t vatInfo) {
    Record("F_PrintRecItemAdjustmentVoid", Num{adjustmentType}, Description, Money{amount}, Num{vatInfo});
    const int32_t rc = m_control.PrintRecItemAdjustmentVoid(adjustmentType, Description, amount, vatInfo);
    LogCall(CallText("PrintRecItemAdjustmentVoid", Tools::AdjustmentTypeName(adjustmentType),
                     Quote{Description}, Money{amount}, Num{vatInfo}));
    return rc;
}

int32_t clsFprtWrapper::PrintRecItemVoid(QString Description, Amount price, int32_t quantity, int32_t vatInfo,
                                         Amount unitPrice, QString unitName) {
    Record("F_PrintRecItemVoid", Description, Money{price}, Num{quantity}, Num{vatInfo}, Money{unitPrice},
           unitName);
    const int32_t rc = m_control.PrintRecItemVoid(Description, price, quantity, vatInfo, unitPrice, unitName);
    // unitName unquoted, unlike PrintRecItem: readers of old logs expect this line as it was.
    LogCall(CallText("PrintRecItemVoid", Quote{Description}, Money{price}, Num{quantity}, Num{vatInfo},
                     Money{unitPrice}, unitName));
    return rc;
}

int32_t clsFprtWrapper::PrintRecMessage(QString Message) {
    Record("F_PrintRecMessage", Message);
    const int32_t rc = m_control.PrintRecMessage(Message);
    LogCall(CallText("PrintRecMessage", Quote{Message}));
    return rc;
}

int32_t clsFprtWrapper::PrintRecNotPaid(QString Description, Amount amount) {
    Record("F_PrintRecNotPaid", Description, Money{amount});
    const int32_t rc = m_control.PrintRecNotPaid(Description, amount);
    LogCall(CallText("PrintRecNotPaid", Quote{Description}, Money{amount}));
    return rc;
}

int32_t clsFprtWrapper::PrintRecRefund(QString Description, Amount amount, int32_t vatInfo) {
    Record("F_PrintRecRefund", Description, Money{amount}, Num{vatInfo});
    const int32_t rc = m_control.PrintRecRefund(Description, amount, vatInfo);
    LogCall(CallText("PrintRecRefund", Quote{Description}, Money{amount}, Num{vatInfo}));
    return rc;
}

int32_t clsFprtWrapper::PrintRecRefundVoid(QString Description, Amount amount, int32_t vatInfo) {
    Record("F_PrintRecRefundVoid", Description, Money{amount}, Num{vatInfo});
    const int32_t rc = m_control.PrintRecRefundVoid(Description, amount, vatInfo);
    LogCall(CallText("PrintRecRefundVoid", Quote{Description}, Money{amount}, Num{vatInfo}));
    return rc;
}

int32_t clsFprtWrapper::PrintRecSubtotal(Amount amount) {
    Record("F_PrintRecSubtotal", Money{amount});
    const int32_t rc = m_control.PrintRecSubtotal(amount);
    LogCall(CallText("PrintRecSubtotal", Money{amount}));
    return rc;
}

int32_t clsFprtWrapper::PrintRecSubtotalAdjustment(int32_t adjustmentType, QString Description,
                                                   Amount amount) {
    Record("F_PrintRecSubtotalAdjustment", Num{adjustmentType}, Description, Money{amount});
    const int32_t rc = m_control.PrintRecSubtotalAdjustment(adjustmentType, Description, amount);
    LogCall(CallText("PrintRecSubtotalAdjustment", Tools::AdjustmentTypeName(adjustmentType),
                     Quote{Description}, Money{amount}));
    return rc;
}

int32_t clsFprtWrapper::PrintRecSubtotalAdjustVoid(int32_t adjustmentType, Amount amount) {
    Record("F_PrintRecSubtotalAdjustVoid", Num{adjustmentType}, Money{amount});
    const int32_t rc = m_control.PrintRecSubtotalAdjustVoid(adjustmentType, amount);
    LogCall(CallText("PrintRecSubtotalAdjustVoid", Tools::AdjustmentTypeName(adjustmentType), Money{amount}));
    return rc;
}

int32_t clsFprtWrapper::PrintRecTotal(Amount Total, Amount Payment, QString Description) {
    Record("F_PrintRecTotal", Money{Total}, Money{Payment}, Description);
    const int32_t rc = m_control.PrintRecTotal(Total, Payment, Description);
    LogCall(CallText("PrintRecTotal", Money{Total}, Money{Payment}, Quote{Description}));
    return rc;
}

int32_t clsFprtWrapper::PrintRecVoid(QString Description) {
    Record("F_PrintRecVoid", Description);
    const int32_t rc = m_control.PrintRecVoid(Description);
    LogCall(CallText("PrintRecVoid", Quote{Description}));
    return rc;
}

int32_t clsFprtWrapper::PrintReport(int32_t ReportType, QString startnum, QString endnum) {
    Record("F_PrintReport", Num{ReportType}, startnum, endnum);
    const int32_t rc = m_control.PrintReport(ReportType, startnum, endnum);
    LogCall(CallText("PrintReport", Num{ReportType}, Quote{startnum}, Quote{endnum}));
    return rc;
}

int32_t clsFprtWrapper::PrintXReport() {
    Record("F_PrintXReport");
    const int32_t rc = m_control.PrintXReport();
    LogCall(CallText("PrintXReport"));
    return rc;
}

int32_t clsFprtWrapper::PrintZReport() {
    Record("F_PrintZReport");
    const int32_t rc = m_control.PrintZReport();
    LogCall(CallText("PrintZReport"));
    return rc;
}

int32_t clsFprtWrapper::ReleaseDevice() {
    Record("F_ReleaseDevice");
    const int32_t rc = m_control.ReleaseDevice();
    LogCall(CallText("ReleaseDevice"));
    return rc;
}

int32_t clsFprtWrapper::ResetPrinter() {
    Record("F_ResetPrinter");
    const int32_t rc = m_control.ResetPrinter();
    LogCall(CallText("ResetPrinter"));
    return rc;
}

int32_t clsFprtWrapper::SetDate(QString oDate) {
    Record("F_SetDate", oDate);
    const int32_t rc = m_control.SetDate(oDate);
    LogCall(CallText("SetDate", Quote{oDate}));
    return rc;
}

int32_t clsFprtWrapper::SetHeaderLine(int32_t LineNumber, QString Text, bool DoubleWidth) {
    Record("F_SetHeaderLine", Num{LineNumber}, Text, Flag(DoubleWidth));
    const int32_t rc = m_control.SetHeaderLine(LineNumber, Text, DoubleWidth);
    LogCall(CallText("SetHeaderLine", Num{LineNumber}, Quote{Text}, Flag(DoubleWidth)));
    return rc;
}

int32_t clsFprtWrapper::SetPOSID(QString POSID, QString CashierID) {
    Record("F_SetPOSID", POSID, CashierID);
    const int32_t rc = m_control.SetPOSID(POSID, CashierID);
    LogCall(CallText("SetPOSID", Quote{POSID}, Quote{CashierID}));
    return rc;
}

int32_t clsFprtWrapper::SetTrailerLine(int32_t LineNumber, QString Text, bool DoubleWidth) {
    Record("F_SetTrailerLine", Num{LineNumber}, Text, Flag(DoubleWidth));
    const int32_t rc = m_control.SetTrailerLine(LineNumber, Text, DoubleWidth);
    LogCall(CallText("SetTrailerLine", Num{LineNumber}, Quote{Text}, Flag(DoubleWidth)));
    return rc;
}

int32_t clsFprtWrapper::SetVatTable() {
    // The one argument-less word recorded with a trailing "$": one empty field.
    Record("F_SetVatTable", QString());
    const int32_t rc = m_control.SetVatTable();
    LogCall(CallText("SetVatTable"));
    return rc;
}

int32_t clsFprtWrapper::SetVatValue(int32_t VatId, QString VatValue) {
    Record("F_SetVatValue", Num{VatId}, VatValue);
    const int32_t rc = m_control.SetVatValue(VatId, VatValue);
    LogCall(CallText("SetVatValue", Num{VatId}, VatValue));
    return rc;
}

int32_t clsFprtWrapper::ClaimDevice(int32_t Timeout) {
    Record("F_ClaimDevice", Num{Timeout});
    const int32_t rc = m_control.ClaimDevice(Timeout);
    LogCall(CallText("ClaimDevice", Num{Timeout}));
    return rc;
}

// ---- Properties ---------------------------------------------------------------------------------

namespace {

// The bench-side value of a read and its log line, from what the control handed over.
QVariant LogRead(const PropertyInfo& info, const QVariant& controlValue, ILogWriter& log) {
    QVariant value;
    QString line;
    line.reserve(LineReserve);
    line += QLatin1StringView(info.name);
    line += QLatin1StringView(" = ");
    switch (info.kind) {
    case PropKind::Number:
        value = QVariant::fromValue(controlValue.value<int32_t>());
        Tools::AppendLongText(line, controlValue.value<int32_t>());
        break;
    case PropKind::StateNumber: {
        const int32_t v = controlValue.value<int32_t>();
        value = QVariant::fromValue(v);
        Tools::AppendLongText(line, v);
        line += QLatin1StringView(" (");
        line += Tools::StateName(v);
        line += u')';
        break;
    }
    case PropKind::PrinterStateNumber: {
        const int32_t v = controlValue.value<int32_t>();
        value = QVariant::fromValue(v);
        Tools::AppendLongText(line, v);
        line += QLatin1StringView("  (");
        line += Tools::PrinterStateName(v);
        line += u')';
        break;
    }
    case PropKind::Text: {
        const QString text = controlValue.toString();
        value = QVariant::fromValue(text);
        Put(line, Quote{text});
        break;
    }
    case PropKind::NumberAsText: {
        const QString text = QString::number(controlValue.value<int32_t>());
        value = QVariant::fromValue(text);
        Put(line, Quote{text});
        break;
    }
    case PropKind::Boolean:
        value = QVariant::fromValue(controlValue.toBool());
        line += BoolWord(controlValue.toBool());
        break;
    case PropKind::NumberAsBoolean: {
        const bool b = controlValue.value<int32_t>() != 0;
        value = QVariant::fromValue(b);
        line += BoolWord(b);
        break;
    }
    }
    log.Append(line);
    return value;
}

// How a written value stands in the macro line (bare) and in the log line (texts quoted).
QString WrittenValue(const PropertyInfo& info, const QVariant& value, bool forLog) {
    if (IsBenchBoolean(info.kind))
        return BoolWord(value.toBool());
    if (IsBenchText(info.kind))
        return forLog ? u'"' + value.toString() + u'"' : value.toString();
    return QString::number(value.value<int32_t>());
}

} // namespace

#define FPU_WRAPPER_READ(name, kind, access)                                                                 \
    FPU_BENCH_TYPE(kind) clsFprtWrapper::name() {                                                            \
        return LogRead(PropertyOf(Prop::name), QVariant::fromValue(m_control.name()), m_log)                 \
            .value<FPU_BENCH_TYPE(kind)>();                                                                  \
    }
FPU_PROPERTIES(FPU_WRAPPER_READ)
#undef FPU_WRAPPER_READ

#define FPU_WRAPPER_WRITE(name, kind, access)                                                                \
    FPU_IF_WRITABLE(                                                                                         \
        access, void clsFprtWrapper::Set##name(FPU_BENCH_TYPE(kind) value) {                                 \
            const PropertyInfo& info = PropertyOf(Prop::name);                                               \
            if (WillRecord())                                                                                \
                Record("P_" #name, WrittenValue(info, QVariant::fromValue(value), false));                   \
            m_control.Set##name(value);                                                                      \
            LogCall(QStringLiteral(#name " := ") + WrittenValue(info, QVariant::fromValue(value), true));    \
        })
FPU_PROPERTIES(FPU_WRAPPER_WRITE)
#undef FPU_WRAPPER_WRITE

QVariant clsFprtWrapper::ReadProperty(Prop id) {
    switch (id) {
#define FPU_WRAPPER_READ_CASE(name, kind, access)                                                            \
    case Prop::name:                                                                                         \
        return QVariant::fromValue(name());
        FPU_PROPERTIES(FPU_WRAPPER_READ_CASE)
#undef FPU_WRAPPER_READ_CASE
    }
    return {};
}

void clsFprtWrapper::WriteProperty(Prop id, const QVariant& value) {
    switch (id) {
#define FPU_WRAPPER_WRITE_CASE(name, kind, access)                                                           \
    FPU_IF_WRITABLE(access, case Prop::name : Set##name(value.value<FPU_BENCH_TYPE(kind)>()); return;)
        FPU_PROPERTIES(FPU_WRAPPER_WRITE_CASE)
#undef FPU_WRAPPER_WRITE_CASE
    default:
        return;
    }
}
