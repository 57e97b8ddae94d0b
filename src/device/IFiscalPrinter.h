#pragma once

#include "OposTypes.h"
#include "PropertyTable.h"

#include <QString>

#include <cstdint>

// The receiver of the control's events. The control calls it synchronously on the
// thread of the windows; a call may arrive while one of the control's methods runs.
class IFiscalPrinterEvents {
public:
    virtual ~IFiscalPrinterEvents() = default;
    // pErrorResponse is the handler's answer: 11 retry, 12 clear.
    virtual void ErrorEvent(int32_t ResultCode, int32_t ResultCodeExtended, int32_t ErrorLocus,
                            int32_t& pErrorResponse) = 0;
    virtual void OutputCompleteEvent(int32_t OutputID) = 0;
    virtual void StatusUpdateEvent(int32_t Status) = 0;
};

// Every method of the control: name, parameter list, argument list. Every argument goes by
// reference, as the control's COM-style contract has it: the control may change any of them.
#define FPU_METHODS(X)                                                                                     \
    X(Open, (QString & DeviceName), (DeviceName))                                                          \
    X(Close, (), ())                                                                                       \
    X(BeginFiscalReceipt, (bool& PrintHeader), (PrintHeader))                                              \
    X(BeginNonFiscal, (), ())                                                                              \
    X(BeginTraining, (), ())                                                                               \
    X(CheckHealth, (int32_t & Level), (Level))                                                             \
    X(ClearError, (), ())                                                                                  \
    X(ClearOutput, (), ())                                                                                 \
    X(DirectIO, (int32_t & Command, DirectIOData & pData, QString & pString), (Command, pData, pString))   \
    X(EndFiscalReceipt, (bool& PrintHeader), (PrintHeader))                                                \
    X(EndNonFiscal, (), ())                                                                                \
    X(EndTraining, (), ())                                                                                 \
    X(GetData, (int32_t & DataItem, int32_t & OptArgs, QString & Data), (DataItem, OptArgs, Data))         \
    X(GetDate, (QString & Date), (Date))                                                                   \
    X(GetTotalizer, (int32_t & VatID, int32_t & OptArgs, QString & Data), (VatID, OptArgs, Data))          \
    X(GetVatEntry, (int32_t & VatID, int32_t & OptArgs, int32_t & VatRate), (VatID, OptArgs, VatRate))     \
    X(PrintDuplicateReceipt, (), ())                                                                       \
    X(PrintNormal, (int32_t & Station, QString & Data), (Station, Data))                                   \
    X(PrintPeriodicTotalsReport, (QString & Date1, QString & Date2), (Date1, Date2))                       \
    X(PrintRecItem,                                                                                        \
      (QString & Description, Amount & Price, int32_t & Quantity, int32_t & VatInfo, Amount & UnitPrice,   \
       QString & UnitName),                                                                                \
      (Description, Price, Quantity, VatInfo, UnitPrice, UnitName))                                        \
    X(PrintRecItemAdjustment,                                                                              \
      (int32_t & AdjustmentType, QString & Description, Amount & Amount_, int32_t & VatInfo),              \
      (AdjustmentType, Description, Amount_, VatInfo))                                                     \
    X(PrintRecItemAdjustmentVoid,                                                                          \
      (int32_t & AdjustmentType, QString & Description, Amount & Amount_, int32_t & VatInfo),              \
      (AdjustmentType, Description, Amount_, VatInfo))                                                     \
    X(PrintRecItemVoid,                                                                                    \
      (QString & Description, Amount & Price, int32_t & Quantity, int32_t & VatInfo, Amount & UnitPrice,   \
       QString & UnitName),                                                                                \
      (Description, Price, Quantity, VatInfo, UnitPrice, UnitName))                                        \
    X(PrintRecMessage, (QString & Message), (Message))                                                     \
    X(PrintRecNotPaid, (QString & Description, Amount & Amount_), (Description, Amount_))                  \
    X(PrintRecRefund, (QString & Description, Amount & Amount_, int32_t & VatInfo),                        \
      (Description, Amount_, VatInfo))                                                                     \
    X(PrintRecRefundVoid, (QString & Description, Amount & Amount_, int32_t & VatInfo),                    \
      (Description, Amount_, VatInfo))                                                                     \
    X(PrintRecSubtotal, (Amount & Amount_), (Amount_))                                                     \
    X(PrintRecSubtotalAdjustment, (int32_t & AdjustmentType, QString & Description, Amount & Amount_),     \
      (AdjustmentType, Description, Amount_))                                                              \
    X(PrintRecSubtotalAdjustVoid, (int32_t & AdjustmentType, Amount & Amount_), (AdjustmentType, Amount_)) \
    X(PrintRecTotal, (Amount & Total, Amount & Payment, QString & Description), (Total, Payment, Description)) \
    X(PrintRecVoid, (QString & Description), (Description))                                                \
    X(PrintReport, (int32_t & ReportType, QString & StartNum, QString & EndNum),                           \
      (ReportType, StartNum, EndNum))                                                                      \
    X(PrintXReport, (), ())                                                                                \
    X(PrintZReport, (), ())                                                                                \
    X(ReleaseDevice, (), ())                                                                               \
    X(ResetPrinter, (), ())                                                                                \
    X(SetDate, (QString & Date), (Date))                                                                   \
    X(SetHeaderLine, (int32_t & LineNumber, QString & Text, bool& DoubleWidth),                            \
      (LineNumber, Text, DoubleWidth))                                                                     \
    X(SetPOSID, (QString & POSID, QString & CashierID), (POSID, CashierID))                                \
    X(SetTrailerLine, (int32_t & LineNumber, QString & Text, bool& DoubleWidth),                           \
      (LineNumber, Text, DoubleWidth))                                                                     \
    X(SetVatTable, (), ())                                                                                 \
    X(SetVatValue, (int32_t & VatID, QString & VatValue), (VatID, VatValue))                               \
    X(ClaimDevice, (int32_t & Timeout), (Timeout))

// The OPOS fiscal printer control as the bench relies on it. Methods return the OPOS result
// code (0 success); after a method or a property write, ResultCode, ResultCodeExtended and
// ErrorString describe it. Reads never fail: a closed device answers a zero of the type.
class IFiscalPrinter {
public:
    virtual ~IFiscalPrinter() = default;

    // Where ErrorEvent, OutputCompleteEvent and StatusUpdateEvent go; nullptr drops them.
    virtual void SetEventSink(IFiscalPrinterEvents* sink) = 0;

#define FPU_DECLARE_METHOD(name, params, args) virtual int32_t name params = 0;
    FPU_METHODS(FPU_DECLARE_METHOD)
#undef FPU_DECLARE_METHOD

#define FPU_DECLARE_PROPERTY(name, kind, access)                                                           \
    virtual FPU_CTL_TYPE(kind) name() = 0;                                                                 \
    FPU_IF_WRITABLE(access, virtual void Set##name(const FPU_CTL_TYPE(kind) & value) = 0;)
    FPU_PROPERTIES(FPU_DECLARE_PROPERTY)
#undef FPU_DECLARE_PROPERTY
};
