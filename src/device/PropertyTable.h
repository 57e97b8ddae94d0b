#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <cstdint>

// Every property of the fiscal printer control, in the order the wrapper declares them:
// alphabetical without regard to case, the capabilities last.
//
// Kinds say what the control hands over and what the bench makes of it:
//   Number, Text, Boolean    - read (and written) as they are
//   NumberAsText             - a number on the control, text in the bench (quoted in the log)
//   NumberAsBoolean          - a number on the control, True when not 0
//   StateNumber              - a number whose log line adds StateName
//   PrinterStateNumber       - a number whose log line adds PrinterStateName
#define FPU_PROPERTIES(X)                                                                                  \
    X(ActualCurrency, Number, RO)                                                                          \
    X(AdditionalHeader, Text, RW)                                                                          \
    X(AdditionalTrailer, Text, RW)                                                                         \
    X(AmountDecimalPlaces, Number, RO)                                                                     \
    X(AsyncMode, Boolean, RW)                                                                              \
    X(BinaryConversion, Number, RW)                                                                        \
    X(ChangeDue, Text, RW)                                                                                 \
    X(CheckHealthText, Text, RO)                                                                           \
    X(CheckTotal, Boolean, RW)                                                                             \
    X(Claimed, Boolean, RO)                                                                                \
    X(ContractorId, Number, RW)                                                                            \
    X(CountryCode, NumberAsText, RO)                                                                       \
    X(CoverOpen, Boolean, RO)                                                                              \
    X(DateType, Number, RW)                                                                                \
    X(DayOpened, Boolean, RO)                                                                              \
    X(DescriptionLength, Number, RO)                                                                       \
    X(DeviceDescription, Text, RO)                                                                         \
    X(DeviceEnabled, Boolean, RW)                                                                          \
    X(DeviceName, Text, RO)                                                                                \
    X(DuplicateReceipt, Boolean, RW)                                                                       \
    X(ErrorLevel, Number, RO)                                                                              \
    X(ErrorOutID, Number, RO)                                                                              \
    X(ErrorState, Number, RO)                                                                              \
    X(ErrorStation, Number, RO)                                                                            \
    X(ErrorString, Text, RO)                                                                               \
    X(FiscalReceiptStation, Number, RW)                                                                    \
    X(FiscalReceiptType, Number, RW)                                                                       \
    X(FlagWhenIdle, Boolean, RW)                                                                           \
    X(FreezeEvents, Boolean, RW)                                                                           \
    X(JrnEmpty, Boolean, RO)                                                                               \
    X(JrnNearEnd, Boolean, RO)                                                                             \
    X(MessageLength, Number, RO)                                                                           \
    X(MessageType, Number, RW)                                                                             \
    X(NumHeaderLines, Number, RO)                                                                          \
    X(NumTrailerLines, Number, RO)                                                                         \
    X(NumVatRates, Number, RO)                                                                             \
    X(OutputID, Number, RO)                                                                                \
    X(PostLine, Text, RW)                                                                                  \
    X(PowerNotify, Number, RW)                                                                             \
    X(PowerState, Number, RO)                                                                              \
    X(PredefinedPaymentLines, Text, RO)                                                                    \
    X(PreLine, Text, RW)                                                                                   \
    X(PrinterState, PrinterStateNumber, RO)                                                                \
    X(QuantityDecimalPlaces, Number, RO)                                                                   \
    X(QuantityLength, Number, RO)                                                                          \
    X(RecEmpty, Boolean, RO)                                                                               \
    X(RecNearEnd, Boolean, RO)                                                                             \
    X(RemainingFiscalMemory, Number, RO)                                                                   \
    X(ReservedWord, Text, RO)                                                                              \
    X(ResultCode, Number, RO)                                                                              \
    X(ResultCodeExtended, Number, RO)                                                                      \
    X(ServiceObjectDescription, Text, RO)                                                                  \
    X(ServiceObjectVersion, NumberAsText, RO)                                                              \
    X(SlipSelection, Number, RW)                                                                           \
    X(SlpEmpty, Boolean, RO)                                                                               \
    X(SlpNearEnd, Boolean, RO)                                                                             \
    X(State, StateNumber, RO)                                                                              \
    X(TotalizerType, Number, RW)                                                                           \
    X(TrainingModeActive, Boolean, RO)                                                                     \
    X(CapAdditionalHeader, Boolean, RO)                                                                    \
    X(CapAdditionalLines, Boolean, RO)                                                                     \
    X(CapAdditionalTrailer, Boolean, RO)                                                                   \
    X(CapAmountAdjustment, Boolean, RO)                                                                    \
    X(CapAmountNotPaid, Boolean, RO)                                                                       \
    X(CapChangeDue, Boolean, RO)                                                                           \
    X(CapCheckTotal, Boolean, RO)                                                                          \
    X(CapCompareFirmwareVersion, Boolean, RO)                                                              \
    X(CapCoverSensor, Boolean, RO)                                                                         \
    X(CapDoubleWidth, Boolean, RO)                                                                         \
    X(CapDuplicateReceipt, Boolean, RO)                                                                    \
    X(CapEmptyReceiptIsVoidable, Boolean, RO)                                                              \
    X(CapFiscalReceiptStation, Boolean, RO)                                                                \
    X(CapFiscalReceiptType, Boolean, RO)                                                                   \
    X(CapFixedOutput, Boolean, RO)                                                                         \
    X(CapHasVatTable, Boolean, RO)                                                                         \
    X(CapIndependentHeader, Boolean, RO)                                                                   \
    X(CapItemList, Boolean, RO)                                                                            \
    X(CapJrnEmptySensor, Boolean, RO)                                                                      \
    X(CapJrnNearEndSensor, Boolean, RO)                                                                    \
    X(CapJrnPresent, Boolean, RO)                                                                          \
    X(CapMultiContractor, Boolean, RO)                                                                     \
    X(CapNonFiscalMode, Boolean, RO)                                                                       \
    X(CapOnlyVoidLastItem, Boolean, RO)                                                                    \
    X(CapOrderAdjustmentFirst, Boolean, RO)                                                                \
    X(CapPackageAdjustment, Boolean, RO)                                                                   \
    X(CapPercentAdjustment, Boolean, RO)                                                                   \
    X(CapPositiveAdjustment, Boolean, RO)                                                                  \
    X(CapPostPreLine, Boolean, RO)                                                                         \
    X(CapPowerLossReport, Boolean, RO)                                                                     \
    X(CapPowerReporting, NumberAsBoolean, RO)                                                              \
    X(CapPredefinedPaymentLines, Boolean, RO)                                                              \
    X(CapReceiptNotPaid, Boolean, RO)                                                                      \
    X(CapRecEmptySensor, Boolean, RO)                                                                      \
    X(CapRecNearEndSensor, Boolean, RO)                                                                    \
    X(CapRecPresent, Boolean, RO)                                                                          \
    X(CapRemainingFiscalMemory, Boolean, RO)                                                               \
    X(CapReservedWord, Boolean, RO)                                                                        \
    X(CapSetCurrency, Boolean, RO)                                                                         \
    X(CapSetHeader, Boolean, RO)                                                                           \
    X(CapSetPOSID, Boolean, RO)                                                                            \
    X(CapSetStoreFiscalID, Boolean, RO)                                                                    \
    X(CapSetTrailer, Boolean, RO)                                                                          \
    X(CapSetVatTable, Boolean, RO)                                                                         \
    X(CapSlpEmptySensor, Boolean, RO)                                                                      \
    X(CapSlpFiscalDocument, Boolean, RO)                                                                   \
    X(CapSlpFullSlip, Boolean, RO)                                                                         \
    X(CapSlpNearEndSensor, Boolean, RO)                                                                    \
    X(CapSlpPresent, Boolean, RO)                                                                          \
    X(CapSlpValidation, Boolean, RO)                                                                       \
    X(CapStatisticsReporting, Boolean, RO)                                                                 \
    X(CapSubAmountAdjustment, Boolean, RO)                                                                 \
    X(CapSubPercentAdjustment, Boolean, RO)                                                                \
    X(CapSubtotal, Boolean, RO)                                                                            \
    X(CapTotalizerType, Boolean, RO)                                                                       \
    X(CapTrainingMode, Boolean, RO)                                                                        \
    X(CapUpdateFirmware, Boolean, RO)                                                                      \
    X(CapXReport, Boolean, RO)                                                                             \
    X(CapUpdateStatistics, Boolean, RO)                                                                    \
    X(CapValidateJournal, Boolean, RO)

// Type of a property's value on the control's side, and in the bench.
#define FPU_CTL_TYPE(kind) FPU_CTL_TYPE_##kind
#define FPU_CTL_TYPE_Number int32_t
#define FPU_CTL_TYPE_Text QString
#define FPU_CTL_TYPE_Boolean bool
#define FPU_CTL_TYPE_NumberAsText int32_t
#define FPU_CTL_TYPE_NumberAsBoolean int32_t
#define FPU_CTL_TYPE_StateNumber int32_t
#define FPU_CTL_TYPE_PrinterStateNumber int32_t

#define FPU_BENCH_TYPE(kind) FPU_BENCH_TYPE_##kind
#define FPU_BENCH_TYPE_Number int32_t
#define FPU_BENCH_TYPE_Text QString
#define FPU_BENCH_TYPE_Boolean bool
#define FPU_BENCH_TYPE_NumberAsText QString
#define FPU_BENCH_TYPE_NumberAsBoolean bool
#define FPU_BENCH_TYPE_StateNumber int32_t
#define FPU_BENCH_TYPE_PrinterStateNumber int32_t

// FPU_IF_WRITABLE(access, code): expands `code` only for read-write properties.
#define FPU_IF_WRITABLE(access, ...) FPU_IF_WRITABLE_##access(__VA_ARGS__)
#define FPU_IF_WRITABLE_RW(...) __VA_ARGS__
#define FPU_IF_WRITABLE_RO(...)

enum class Prop : int {
#define FPU_PROP_ENUM(name, kind, access) name,
    FPU_PROPERTIES(FPU_PROP_ENUM)
#undef FPU_PROP_ENUM
};

enum class PropKind { Number, Text, Boolean, NumberAsText, NumberAsBoolean, StateNumber, PrinterStateNumber };

struct PropertyInfo {
    Prop id;
    const char* name;
    PropKind kind;
    bool writable;
};

inline constexpr std::array<PropertyInfo, 119> Properties{{
#define FPU_PROP_INFO(name, kind, access) {Prop::name, #name, PropKind::kind, #access[1] == 'W'},
    FPU_PROPERTIES(FPU_PROP_INFO)
#undef FPU_PROP_INFO
}};

inline constexpr int PropertyCount = static_cast<int>(Properties.size());

inline const PropertyInfo& PropertyOf(Prop id) { return Properties[static_cast<size_t>(id)]; }

// Exact, case-sensitive lookup; nullptr when the name is not a property.
inline const PropertyInfo* FindProperty(QStringView name) {
    for (const auto& p : Properties)
        if (name == QLatin1StringView(p.name))
            return &p;
    return nullptr;
}

// The bench-side kind of value: what the wrapper hands back.
inline bool IsBenchText(PropKind k) { return k == PropKind::Text || k == PropKind::NumberAsText; }
inline bool IsBenchBoolean(PropKind k) { return k == PropKind::Boolean || k == PropKind::NumberAsBoolean; }
inline bool IsBenchNumber(PropKind k) { return !IsBenchText(k) && !IsBenchBoolean(k); }
