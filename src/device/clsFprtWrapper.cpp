#include "clsFprtWrapper.h"

#include "Tools.h"

#include <QStringList>

using Tools::AmountToText;

namespace {

QString Quoted(const QString& text) {
    return QLatin1Char('"') + text + QLatin1Char('"');
}

// Booleans of method arguments travel as the numbers True = -1, False = 0; property lines use words.
QString BoolNumber(bool value) {
    return QString::number(value ? -1 : 0);
}

QString BoolWord(bool value) {
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

// The command word and its fields joined by "$", nothing escaped.
QString MacroLine(const char* word, const QStringList& fields = {}) {
    QString line = QLatin1StringView(word);
    for (const QString& f : fields)
        line += QLatin1Char('$') + f;
    return line;
}

QString CallText(const char* name, const QStringList& args = {}) {
    return QLatin1StringView(name) + QLatin1Char('(') + args.join(QStringLiteral(", ")) + QLatin1Char(')');
}

} // namespace

clsFprtWrapper::clsFprtWrapper(IFiscalPrinter& control, ILogWriter& log, IMacroRecorder* recorder)
    : m_control(control), m_log(log), m_recorder(recorder) {}

QString clsFprtWrapper::LongText(int32_t value) {
    return QString::number(value);
}

QString clsFprtWrapper::ResultTail() {
    const int32_t code = m_control.ResultCode();
    const int32_t extended = m_control.ResultCodeExtended();
    const QString error = m_control.ErrorString();
    QString tail = QStringLiteral("     -> ") + Tools::ResultCodeName(code) + QLatin1Char('(') +
                   LongText(code) + QLatin1Char(')');
    if (code == 0)
        return tail;
    return tail + QStringLiteral("  ") + Tools::ResultCodeExtendedName(extended) + QLatin1Char('(') +
           LongText(extended) + QStringLiteral(")  ") + error;
}

void clsFprtWrapper::Record(QString line) {
    if (m_recorder)
        m_recorder->AddCommand(line);
}

// ---- Methods ------------------------------------------------------------------------------------

int32_t clsFprtWrapper::WOpen(QString DeviceName) {
    Record(MacroLine("F_Open", {DeviceName}));
    const int32_t rc = m_control.Open(DeviceName);
    WriteLog(QStringLiteral("Open((") + DeviceName + QLatin1Char(')') + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::WClose() {
    Record(MacroLine("F_Close"));
    const int32_t rc = m_control.Close();
    WriteLog(QStringLiteral("Close(()") + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::BeginFiscalReceipt(bool printheader) {
    Record(MacroLine("F_BeginFiscalReceipt", {BoolNumber(printheader)}));
    const int32_t rc = m_control.BeginFiscalReceipt(printheader);
    WriteLog(CallText("BeginFiscalReceipt", {BoolNumber(printheader)}) + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::BeginNonFiscal() {
    Record(MacroLine("F_BeginNonFiscal"));
    const int32_t rc = m_control.BeginNonFiscal();
    WriteLog(CallText("BeginNonFiscal") + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::BeginTraining() {
    Record(MacroLine("F_BeginTraining"));
    const int32_t rc = m_control.BeginTraining();
    WriteLog(CallText("BeginTraining") + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::CheckHealth(int32_t lvl) {
    Record(MacroLine("F_CheckHealth", {LongText(lvl)}));
    const int32_t rc = m_control.CheckHealth(lvl);
    WriteLog(CallText("CheckHealth", {LongText(lvl)}) + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::ClearError() {
    Record(MacroLine("F_ClearError"));
    const int32_t rc = m_control.ClearError();
    WriteLog(CallText("ClearError") + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::ClearOutput() {
    Record(MacroLine("F_ClearOutput"));
    const int32_t rc = m_control.ClearOutput();
    WriteLog(CallText("ClearOutput") + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::DirectIO(int32_t& Command, DirectIOData& pData, QString& pString) {
    const auto elements = [&pData] {
        QStringList texts;
        for (const int32_t e : pData)
            texts.append(LongText(e));
        return texts;
    };
    Record(MacroLine("F_DirectIO", QStringList{LongText(Command)} + elements() + QStringList{pString}));
    const int32_t rc = m_control.DirectIO(Command, pData, pString);
    WriteLog(QStringLiteral("DirectIO(") + Tools::DirectIOCommandName(Command) + QStringLiteral(", {") +
             elements().join(QStringLiteral(", ")) + QStringLiteral("}, ") + pString + QLatin1Char(')') +
             ResultTail());
    return rc;
}

int32_t clsFprtWrapper::EndFiscalReceipt(bool printheader) {
    Record(MacroLine("F_EndFiscalReceipt", {BoolNumber(printheader)}));
    const int32_t rc = m_control.EndFiscalReceipt(printheader);
    WriteLog(QStringLiteral("EndFiscalReceipt(, ") + BoolNumber(printheader) + QLatin1Char(')') +
             ResultTail());
    return rc;
}

int32_t clsFprtWrapper::EndNonFiscal() {
    Record(MacroLine("F_EndNonFiscal"));
    const int32_t rc = m_control.EndNonFiscal();
    WriteLog(CallText("EndNonFiscal") + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::EndTraining() {
    Record(MacroLine("F_EndTraining"));
    const int32_t rc = m_control.EndTraining();
    WriteLog(CallText("EndTraining") + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::GetData(int32_t dataitem, int32_t optArgs, QString& Data) {
    Record(MacroLine("F_GetData", {LongText(dataitem), LongText(optArgs)}));
    const int32_t rc = m_control.GetData(dataitem, optArgs, Data);
    WriteLog(CallText("GetData", {LongText(dataitem), LongText(optArgs)}) + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::GetDate(QString& oDate) {
    Record(MacroLine("F_GetDate"));
    const int32_t rc = m_control.GetDate(oDate);
    WriteLog(CallText("GetDate") + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::GetTotalizer(int32_t VatId, int32_t optArgs, QString& Data) {
    Record(MacroLine("F_GetTotalizer", {LongText(VatId), LongText(optArgs)}));
    const int32_t rc = m_control.GetTotalizer(VatId, optArgs, Data);
    WriteLog(CallText("GetTotalizer", {LongText(VatId), LongText(optArgs)}) + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::GetVatEntry(int32_t VatId, int32_t optArgs, int32_t& VatRate) {
    Record(MacroLine("F_GetVatEntry", {LongText(VatId), LongText(optArgs)}));
    const int32_t rc = m_control.GetVatEntry(VatId, optArgs, VatRate);
    WriteLog(CallText("GetVatEntry", {LongText(VatId), LongText(optArgs)}) + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintDuplicateReceipt() {
    Record(MacroLine("F_PrintDuplicateReceipt"));
    const int32_t rc = m_control.PrintDuplicateReceipt();
    WriteLog(CallText("PrintDuplicateReceipt") + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintNormal(int32_t station, QString Data) {
    Record(MacroLine("F_PrintNormal", {LongText(station), Data}));
    const int32_t rc = m_control.PrintNormal(station, Data);
    WriteLog(CallText("PrintNormal", {LongText(station), Data}) + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintPeriodicTotalsReport(QString Date1, QString Date2) {
    Record(MacroLine("F_PrintPeriodicTotalsReport", {Date1, Date2}));
    const int32_t rc = m_control.PrintPeriodicTotalsReport(Date1, Date2);
    WriteLog(CallText("PrintPeriodicTotalsReport", {Date1, Date2}) + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintRecItem(QString Description, Amount price, int32_t quantity, int32_t vatInfo,
                                     Amount unitPrice, QString unitName) {
    Record(MacroLine("F_PrintRecItem", {Description, AmountToText(price), LongText(quantity),
                                        LongText(vatInfo), AmountToText(unitPrice), unitName}));
    const int32_t rc = m_control.PrintRecItem(Description, price, quantity, vatInfo, unitPrice, unitName);
    WriteLog(CallText("PrintRecItem", {Quoted(Description), AmountToText(price), LongText(quantity),
                                       LongText(vatInfo), AmountToText(unitPrice), Quoted(unitName)}) +
             ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintRecItemAdjustment(int32_t adjustmentType, QString Description, Amount amount,
                                               int32_t vatInfo) {
    Record(MacroLine("F_PrintRecItemAdjustment",
                     {LongText(adjustmentType), Description, AmountToText(amount), LongText(vatInfo)}));
    const int32_t rc = m_control.PrintRecItemAdjustment(adjustmentType, Description, amount, vatInfo);
    WriteLog(
        CallText("PrintRecItemAdjustment", {Tools::AdjustmentTypeName(adjustmentType), Quoted(Description),
                                            AmountToText(amount), LongText(vatInfo)}) +
        ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintRecItemAdjustmentVoid(int32_t adjustmentType, QString Description, Amount amount,
                                                   int32_t vatInfo) {
    Record(MacroLine("F_PrintRecItemAdjustmentVoid",
                     {LongText(adjustmentType), Description, AmountToText(amount), LongText(vatInfo)}));
    const int32_t rc = m_control.PrintRecItemAdjustmentVoid(adjustmentType, Description, amount, vatInfo);
    WriteLog(CallText("PrintRecItemAdjustmentVoid",
                      {Tools::AdjustmentTypeName(adjustmentType), Quoted(Description), AmountToText(amount),
                       LongText(vatInfo)}) +
             ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintRecItemVoid(QString Description, Amount price, int32_t quantity, int32_t vatInfo,
                                         Amount unitPrice, QString unitName) {
    Record(MacroLine("F_PrintRecItemVoid", {Description, AmountToText(price), LongText(quantity),
                                            LongText(vatInfo), AmountToText(unitPrice), unitName}));
    const int32_t rc = m_control.PrintRecItemVoid(Description, price, quantity, vatInfo, unitPrice, unitName);
    // unitName unquoted, unlike PrintRecItem: readers of old logs expect this line as it was.
    WriteLog(CallText("PrintRecItemVoid", {Quoted(Description), AmountToText(price), LongText(quantity),
                                           LongText(vatInfo), AmountToText(unitPrice), unitName}) +
             ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintRecMessage(QString Message) {
    Record(MacroLine("F_PrintRecMessage", {Message}));
    const int32_t rc = m_control.PrintRecMessage(Message);
    WriteLog(CallText("PrintRecMessage", {Quoted(Message)}) + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintRecNotPaid(QString Description, Amount amount) {
    Record(MacroLine("F_PrintRecNotPaid", {Description, AmountToText(amount)}));
    const int32_t rc = m_control.PrintRecNotPaid(Description, amount);
    WriteLog(CallText("PrintRecNotPaid", {Quoted(Description), AmountToText(amount)}) + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintRecRefund(QString Description, Amount amount, int32_t vatInfo) {
    Record(MacroLine("F_PrintRecRefund", {Description, AmountToText(amount), LongText(vatInfo)}));
    const int32_t rc = m_control.PrintRecRefund(Description, amount, vatInfo);
    WriteLog(CallText("PrintRecRefund", {Quoted(Description), AmountToText(amount), LongText(vatInfo)}) +
             ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintRecRefundVoid(QString Description, Amount amount, int32_t vatInfo) {
    Record(MacroLine("F_PrintRecRefundVoid", {Description, AmountToText(amount), LongText(vatInfo)}));
    const int32_t rc = m_control.PrintRecRefundVoid(Description, amount, vatInfo);
    WriteLog(CallText("PrintRecRefundVoid", {Quoted(Description), AmountToText(amount), LongText(vatInfo)}) +
             ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintRecSubtotal(Amount amount) {
    Record(MacroLine("F_PrintRecSubtotal", {AmountToText(amount)}));
    const int32_t rc = m_control.PrintRecSubtotal(amount);
    WriteLog(CallText("PrintRecSubtotal", {AmountToText(amount)}) + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintRecSubtotalAdjustment(int32_t adjustmentType, QString Description,
                                                   Amount amount) {
    Record(MacroLine("F_PrintRecSubtotalAdjustment",
                     {LongText(adjustmentType), Description, AmountToText(amount)}));
    const int32_t rc = m_control.PrintRecSubtotalAdjustment(adjustmentType, Description, amount);
    WriteLog(CallText("PrintRecSubtotalAdjustment", {Tools::AdjustmentTypeName(adjustmentType),
                                                     Quoted(Description), AmountToText(amount)}) +
             ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintRecSubtotalAdjustVoid(int32_t adjustmentType, Amount amount) {
    Record(MacroLine("F_PrintRecSubtotalAdjustVoid", {LongText(adjustmentType), AmountToText(amount)}));
    const int32_t rc = m_control.PrintRecSubtotalAdjustVoid(adjustmentType, amount);
    WriteLog(CallText("PrintRecSubtotalAdjustVoid",
                      {Tools::AdjustmentTypeName(adjustmentType), AmountToText(amount)}) +
             ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintRecTotal(Amount Total, Amount Payment, QString Description) {
    Record(MacroLine("F_PrintRecTotal", {AmountToText(Total), AmountToText(Payment), Description}));
    const int32_t rc = m_control.PrintRecTotal(Total, Payment, Description);
    WriteLog(CallText("PrintRecTotal", {AmountToText(Total), AmountToText(Payment), Quoted(Description)}) +
             ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintRecVoid(QString Description) {
    Record(MacroLine("F_PrintRecVoid", {Description}));
    const int32_t rc = m_control.PrintRecVoid(Description);
    WriteLog(CallText("PrintRecVoid", {Quoted(Description)}) + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintReport(int32_t ReportType, QString startnum, QString endnum) {
    Record(MacroLine("F_PrintReport", {LongText(ReportType), startnum, endnum}));
    const int32_t rc = m_control.PrintReport(ReportType, startnum, endnum);
    WriteLog(CallText("PrintReport", {LongText(ReportType), Quoted(startnum), Quoted(endnum)}) +
             ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintXReport() {
    Record(MacroLine("F_PrintXReport"));
    const int32_t rc = m_control.PrintXReport();
    WriteLog(CallText("PrintXReport") + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::PrintZReport() {
    Record(MacroLine("F_PrintZReport"));
    const int32_t rc = m_control.PrintZReport();
    WriteLog(CallText("PrintZReport") + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::ReleaseDevice() {
    Record(MacroLine("F_ReleaseDevice"));
    const int32_t rc = m_control.ReleaseDevice();
    WriteLog(CallText("ReleaseDevice") + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::ResetPrinter() {
    Record(MacroLine("F_ResetPrinter"));
    const int32_t rc = m_control.ResetPrinter();
    WriteLog(CallText("ResetPrinter") + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::SetDate(QString oDate) {
    Record(MacroLine("F_SetDate", {oDate}));
    const int32_t rc = m_control.SetDate(oDate);
    WriteLog(CallText("SetDate", {Quoted(oDate)}) + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::SetHeaderLine(int32_t LineNumber, QString Text, bool DoubleWidth) {
    Record(MacroLine("F_SetHeaderLine", {LongText(LineNumber), Text, BoolNumber(DoubleWidth)}));
    const int32_t rc = m_control.SetHeaderLine(LineNumber, Text, DoubleWidth);
    WriteLog(CallText("SetHeaderLine", {LongText(LineNumber), Quoted(Text), BoolNumber(DoubleWidth)}) +
             ResultTail());
    return rc;
}

int32_t clsFprtWrapper::SetPOSID(QString POSID, QString CashierID) {
    Record(MacroLine("F_SetPOSID", {POSID, CashierID}));
    const int32_t rc = m_control.SetPOSID(POSID, CashierID);
    WriteLog(CallText("SetPOSID", {Quoted(POSID), Quoted(CashierID)}) + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::SetTrailerLine(int32_t LineNumber, QString Text, bool DoubleWidth) {
    Record(MacroLine("F_SetTrailerLine", {LongText(LineNumber), Text, BoolNumber(DoubleWidth)}));
    const int32_t rc = m_control.SetTrailerLine(LineNumber, Text, DoubleWidth);
    WriteLog(CallText("SetTrailerLine", {LongText(LineNumber), Quoted(Text), BoolNumber(DoubleWidth)}) +
             ResultTail());
    return rc;
}

int32_t clsFprtWrapper::SetVatTable() {
    // The one argument-less word recorded with a trailing "$": one empty field.
    Record(QStringLiteral("F_SetVatTable$"));
    const int32_t rc = m_control.SetVatTable();
    WriteLog(CallText("SetVatTable") + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::SetVatValue(int32_t VatId, QString VatValue) {
    Record(MacroLine("F_SetVatValue", {LongText(VatId), VatValue}));
    const int32_t rc = m_control.SetVatValue(VatId, VatValue);
    WriteLog(CallText("SetVatValue", {LongText(VatId), VatValue}) + ResultTail());
    return rc;
}

int32_t clsFprtWrapper::ClaimDevice(int32_t Timeout) {
    Record(MacroLine("F_ClaimDevice", {LongText(Timeout)}));
    const int32_t rc = m_control.ClaimDevice(Timeout);
    WriteLog(CallText("ClaimDevice", {LongText(Timeout)}) + ResultTail());
    return rc;
}

// ---- Properties ---------------------------------------------------------------------------------

namespace {

// The bench-side value of a read and its log line, from what the control handed over.
QVariant LogRead(const PropertyInfo& info, const QVariant& controlValue, ILogWriter& log) {
    const QString name = QLatin1StringView(info.name);
    QVariant value;
    QString line;
    switch (info.kind) {
    case PropKind::Number:
        value = QVariant::fromValue(controlValue.value<int32_t>());
        line = name + QStringLiteral(" = ") + QString::number(controlValue.value<int32_t>());
        break;
    case PropKind::StateNumber: {
        const int32_t v = controlValue.value<int32_t>();
        value = QVariant::fromValue(v);
        line = name + QStringLiteral(" = ") + QString::number(v) + QStringLiteral(" (") +
               Tools::StateName(v) + QLatin1Char(')');
        break;
    }
    case PropKind::PrinterStateNumber: {
        const int32_t v = controlValue.value<int32_t>();
        value = QVariant::fromValue(v);
        line = name + QStringLiteral(" = ") + QString::number(v) + QStringLiteral("  (") +
               Tools::PrinterStateName(v) + QLatin1Char(')');
        break;
    }
    case PropKind::Text:
        value = QVariant::fromValue(controlValue.toString());
        line = name + QStringLiteral(" = ") + Quoted(controlValue.toString());
        break;
    case PropKind::NumberAsText: {
        const QString text = QString::number(controlValue.value<int32_t>());
        value = QVariant::fromValue(text);
        line = name + QStringLiteral(" = ") + Quoted(text);
        break;
    }
    case PropKind::Boolean:
        value = QVariant::fromValue(controlValue.toBool());
        line = name + QStringLiteral(" = ") + BoolWord(controlValue.toBool());
        break;
    case PropKind::NumberAsBoolean: {
        const bool b = controlValue.value<int32_t>() != 0;
        value = QVariant::fromValue(b);
        line = name + QStringLiteral(" = ") + BoolWord(b);
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
        return forLog ? Quoted(value.toString()) : value.toString();
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
            Record(QStringLiteral("P_" #name "$") + WrittenValue(info, QVariant::fromValue(value), false));  \
            m_control.Set##name(value);                                                                      \
            WriteLog(QStringLiteral(#name " := ") + WrittenValue(info, QVariant::fromValue(value), true) +   \
                     ResultTail());                                                                          \
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
