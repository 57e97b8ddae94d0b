#pragma once

#include "IFiscalPrinter.h"
#include "ILogWriter.h"
#include "IMacroRecorder.h"
#include "OposTypes.h"
#include "PropertyTable.h"

#include <QString>
#include <QVariant>

#include <cstdint>

// The one door to the fiscal printer control. Every method and property write is recorded as a
// macro line before the control is touched, forwarded, and logged with its result by name; every
// read is logged. It keeps no state of its own and never looks at a result.
//
// Arguments the control fills (Data, Date, VatRate) and DirectIO's three go by reference; the
// others by value: the wrapper hands the control its own copies by reference and logs what the
// control left in them.
class clsFprtWrapper {
public:
    clsFprtWrapper(IFiscalPrinter& control, ILogWriter& log, IMacroRecorder* recorder = nullptr);

    void SetRecorder(IMacroRecorder* recorder) { m_recorder = recorder; }
    IFiscalPrinter& Control() const { return m_control; }

    int32_t WOpen(QString DeviceName);
    int32_t WClose();
    int32_t BeginFiscalReceipt(bool printheader);
    int32_t BeginNonFiscal();
    int32_t BeginTraining();
    int32_t CheckHealth(int32_t lvl);
    int32_t ClearError();
    int32_t ClearOutput();
    int32_t DirectIO(int32_t& Command, DirectIOData& pData, QString& pString);
    int32_t EndFiscalReceipt(bool printheader);
    int32_t EndNonFiscal();
    int32_t EndTraining();
    int32_t GetData(int32_t dataitem, int32_t optArgs, QString& Data);
    int32_t GetDate(QString& oDate);
    int32_t GetTotalizer(int32_t VatId, int32_t optArgs, QString& Data);
    int32_t GetVatEntry(int32_t VatId, int32_t optArgs, int32_t& VatRate);
    int32_t PrintDuplicateReceipt();
    int32_t PrintNormal(int32_t station, QString Data);
    int32_t PrintPeriodicTotalsReport(QString Date1, QString Date2);
    int32_t PrintRecItem(QString Description, Amount price, int32_t quantity, int32_t vatInfo,
                         Amount unitPrice, QString unitName);
    int32_t PrintRecItemAdjustment(int32_t adjustmentType, QString Description, Amount amount,
                                   int32_t vatInfo);
    int32_t PrintRecItemAdjustmentVoid(int32_t adjustmentType, QString Description, Amount amount,
                                       int32_t vatInfo);
    int32_t PrintRecItemVoid(QString Description, Amount price, int32_t quantity, int32_t vatInfo,
                             Amount unitPrice, QString unitName);
    int32_t PrintRecMessage(QString Message);
    int32_t PrintRecNotPaid(QString Description, Amount amount);
    int32_t PrintRecRefund(QString Description, Amount amount, int32_t vatInfo);
    int32_t PrintRecRefundVoid(QString Description, Amount amount, int32_t vatInfo);
    int32_t PrintRecSubtotal(Amount amount);
    int32_t PrintRecSubtotalAdjustment(int32_t adjustmentType, QString Description, Amount amount);
    int32_t PrintRecSubtotalAdjustVoid(int32_t adjustmentType, Amount amount);
    int32_t PrintRecTotal(Amount Total, Amount Payment, QString Description);
    int32_t PrintRecVoid(QString Description);
    int32_t PrintReport(int32_t ReportType, QString startnum, QString endnum);
    int32_t PrintXReport();
    int32_t PrintZReport();
    int32_t ReleaseDevice();
    int32_t ResetPrinter();
    int32_t SetDate(QString oDate);
    int32_t SetHeaderLine(int32_t LineNumber, QString Text, bool DoubleWidth);
    int32_t SetPOSID(QString POSID, QString CashierID);
    // Recorded as F_SetTrailerLine, with the three fields of F_SetHeaderLine.
    int32_t SetTrailerLine(int32_t LineNumber, QString Text, bool DoubleWidth);
    int32_t SetVatTable();
    int32_t SetVatValue(int32_t VatId, QString VatValue);
    int32_t ClaimDevice(int32_t Timeout);

    // Property members: Name() reads and logs; SetName(value) records, writes and logs.
#define FPU_WRAPPER_PROPERTY(name, kind, access)                                                             \
    FPU_BENCH_TYPE(kind) name();                                                                             \
    FPU_IF_WRITABLE(access, void Set##name(FPU_BENCH_TYPE(kind) value);)
    FPU_PROPERTIES(FPU_WRAPPER_PROPERTY)
#undef FPU_WRAPPER_PROPERTY

    // The same members reached by id, for the properties grid and the macro replay. The value is
    // of the bench-side type (int32_t, QString or bool); writing a read-only property does nothing.
    QVariant ReadProperty(Prop id);
    void WriteProperty(Prop id, const QVariant& value);

private:
    // Appends the text that closes a log line: the result by name, and on a failure the extended
    // code and the error string.
    void AppendResultTail(QString& line);
    bool WillRecord() const;
    // Builds the macro line of `word` and its fields only when the recorder will keep it.
    template <typename... Fields> void Record(const char* word, const Fields&... fields);
    // Closes the call's log line with the result tail and writes it.
    void LogCall(QString line);
    void WriteLog(const QString& line) {
        m_log.Append(line);
    }

    IFiscalPrinter& m_control;
    ILogWriter& m_log;
    IMacroRecorder* m_recorder;
};
