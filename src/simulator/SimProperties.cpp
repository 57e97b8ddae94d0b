#include "SimulatedFiscalPrinter.h"

#include "OposAll.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <initializer_list>

using namespace OposAll;

namespace {
template <typename Entry>
std::array<Entry, PropertyCount> Indexed(std::initializer_list<std::pair<Prop, Entry>> rows) {
    std::array<Entry, PropertyCount> table{};
    for (const auto& [id, entry] : rows)
        table[static_cast<size_t>(id)] = entry;
    return table;
}
} // namespace

QVariant SimulatedFiscalPrinter::ReadProperty(Prop id) {
    using P = SimulatedFiscalPrinter;
    using Reader = QVariant (*)(const P&);
    // What the printer answers even while closed.
    static const auto results = Indexed<Reader>({
        {Prop::ResultCode, [](const P& p) -> QVariant { return p.m_resultCode; }},
        {Prop::ResultCodeExtended, [](const P& p) -> QVariant { return p.m_resultExtended; }},
        {Prop::ErrorString, [](const P& p) -> QVariant { return p.m_errorString; }},
        {Prop::State,
         [](const P& p) -> QVariant {
             return !p.m_open             ? OPOS_S_CLOSED
                    : p.m_queue.InError() ? OPOS_S_ERROR
                    : !p.m_queue.Empty()  ? OPOS_S_BUSY
                                          : OPOS_S_IDLE;
         }},
    });
    // Identity and limits: fixed for every model.
    static const auto fixed = Indexed<QVariant>({
        {Prop::ActualCurrency, FPTR_AC_EUR},
        {Prop::AmountDecimalPlaces, 2},
        {Prop::CountryCode, FPTR_CC_ITALY},
        {Prop::DescriptionLength, 38},
        {Prop::DeviceDescription, QStringLiteral("Simulated fiscal printer")},
        {Prop::MessageLength, 46},
        {Prop::NumHeaderLines, 6},
        {Prop::NumTrailerLines, 3},
        {Prop::PredefinedPaymentLines, QStringLiteral("0,1,2,3,4,5,6,7,8,9,10")},
        {Prop::QuantityDecimalPlaces, 3},
        {Prop::QuantityLength, 10},
        {Prop::ReservedWord, QStringLiteral("TOTALE")},
        {Prop::ServiceObjectDescription, QStringLiteral("fpubench simulated fiscal printer service")},
        {Prop::ServiceObjectVersion, 1011000},
        {Prop::CapPowerReporting, OPOS_PR_STANDARD},
    });
    static const auto live = Indexed<Reader>({
        {Prop::AdditionalHeader, [](const P& p) -> QVariant { return p.m_session.additionalHeader; }},
        {Prop::AdditionalTrailer, [](const P& p) -> QVariant { return p.m_session.additionalTrailer; }},
        {Prop::AsyncMode, [](const P& p) -> QVariant { return p.m_session.asyncMode; }},
        {Prop::BinaryConversion, [](const P& p) -> QVariant { return p.m_session.binaryConversion; }},
        {Prop::ChangeDue, [](const P& p) -> QVariant { return p.m_session.changeDue; }},
        {Prop::CheckHealthText, [](const P& p) -> QVariant { return p.m_session.checkHealthText; }},
        {Prop::CheckTotal, [](const P& p) -> QVariant { return p.m_session.checkTotal; }},
        {Prop::Claimed, [](const P& p) -> QVariant { return p.m_claimed; }},
        {Prop::CoverOpen, [](const P& p) -> QVariant { return p.m_machine.CoverOpen(); }},
        {Prop::DateType, [](const P& p) -> QVariant { return p.m_session.dateType; }},
        {Prop::DayOpened, [](const P& p) -> QVariant { return p.DayOpen(); }},
        {Prop::DeviceEnabled, [](const P& p) -> QVariant { return p.m_enabled; }},
        {Prop::DeviceName, [](const P& p) -> QVariant { return p.m_deviceName; }},
        {Prop::DuplicateReceipt, [](const P& p) -> QVariant { return p.m_session.duplicateReceipt; }},
        {Prop::ErrorLevel, [](const P& p) -> QVariant { return p.m_session.errorLevel; }},
        {Prop::ErrorOutID, [](const P& p) -> QVariant { return p.m_session.errorOutId; }},
        {Prop::ErrorState, [](const P& p) -> QVariant { return p.m_session.errorState; }},
        {Prop::ErrorStation, [](const P& p) -> QVariant { return p.m_session.errorStation; }},
        {Prop::FiscalReceiptStation, [](const P& p) -> QVariant { return p.m_session.fiscalReceiptStation; }},
        {Prop::FiscalReceiptType, [](const P& p) -> QVariant { return p.m_session.fiscalReceiptType; }},
        {Prop::FlagWhenIdle, [](const P& p) -> QVariant { return p.m_session.flagWhenIdle; }},
        {Prop::FreezeEvents, [](const P& p) -> QVariant { return p.m_events.Frozen(); }},
        {Prop::JrnEmpty, [](const P& p) -> QVariant { return p.JournalPaper() == PaperLevel::Empty; }},
        {Prop::JrnNearEnd, [](const P& p) -> QVariant { return p.JournalPaper() == PaperLevel::NearEnd; }},
        {Prop::MessageType, [](const P& p) -> QVariant { return p.m_session.messageType; }},
        {Prop::NumVatRates, [](const P& p) -> QVariant { return p.m_model.numVatRates; }},
        {Prop::OutputID, [](const P& p) -> QVariant { return p.m_session.outputId; }},
        {Prop::PostLine, [](const P& p) -> QVariant { return p.m_session.postLine; }},
        {Prop::PowerNotify, [](const P& p) -> QVariant { return p.m_session.powerNotify; }},
        {Prop::PowerState,
         [](const P& p) -> QVariant {
             return p.IsPowerOff() ? OPOS_PS_OFF_OFFLINE : p.IsOffline() ? OPOS_PS_OFFLINE : OPOS_PS_ONLINE;
         }},
        {Prop::PreLine, [](const P& p) -> QVariant { return p.m_session.preLine; }},
        {Prop::PrinterState, [](const P& p) -> QVariant { return p.EffectivePrinterState(); }},
        {Prop::RecEmpty, [](const P& p) -> QVariant { return p.ReceiptPaper() == PaperLevel::Empty; }},
        {Prop::RecNearEnd, [](const P& p) -> QVariant { return p.ReceiptPaper() == PaperLevel::NearEnd; }},
        {Prop::RemainingFiscalMemory, [](const P& p) -> QVariant { return p.m_memory->Remaining(); }},
        {Prop::TotalizerType, [](const P& p) -> QVariant { return p.m_session.totalizerType; }},
        {Prop::TrainingModeActive, [](const P& p) -> QVariant { return p.m_training; }},
        {Prop::CapCheckTotal, [](const P& p) -> QVariant { return p.m_model.capCheckTotal; }},
    });
    // Capabilities of what this printer implements; every other one is False.
    static const auto capable = Indexed<bool>({
        {Prop::CapAdditionalHeader, true},
        {Prop::CapAdditionalLines, true},
        {Prop::CapAdditionalTrailer, true},
        {Prop::CapAmountAdjustment, true},
        {Prop::CapAmountNotPaid, true},
        {Prop::CapChangeDue, true},
        {Prop::CapCoverSensor, true},
        {Prop::CapDoubleWidth, true},
        {Prop::CapDuplicateReceipt, true},
        {Prop::CapEmptyReceiptIsVoidable, true},
        {Prop::CapFiscalReceiptStation, true},
        {Prop::CapFiscalReceiptType, true},
        {Prop::CapHasVatTable, true},
        {Prop::CapIndependentHeader, true},
        {Prop::CapJrnEmptySensor, true},
        {Prop::CapJrnNearEndSensor, true},
        {Prop::CapJrnPresent, true},
        {Prop::CapNonFiscalMode, true},
        {Prop::CapPercentAdjustment, true},
        {Prop::CapPositiveAdjustment, true},
        {Prop::CapPostPreLine, true},
        {Prop::CapPredefinedPaymentLines, true},
        {Prop::CapReceiptNotPaid, true},
        {Prop::CapRecEmptySensor, true},
        {Prop::CapRecNearEndSensor, true},
        {Prop::CapRecPresent, true},
        {Prop::CapRemainingFiscalMemory, true},
        {Prop::CapReservedWord, true},
        {Prop::CapSetHeader, true},
        {Prop::CapSetPOSID, true},
        {Prop::CapSetTrailer, true},
        {Prop::CapSetVatTable, true},
        {Prop::CapSubAmountAdjustment, true},
        {Prop::CapSubPercentAdjustment, true},
        {Prop::CapSubtotal, true},
        {Prop::CapTotalizerType, true},
        {Prop::CapTrainingMode, true},
        {Prop::CapXReport, true},
    });

    const auto i = static_cast<size_t>(id);
    if (results[i])
        return results[i](*this);
    const PropertyInfo& info = PropertyOf(id);
    if (m_open && live[i])
        return live[i](*this);
    if (m_open && fixed[i].isValid())
        return fixed[i];
    if (info.kind == PropKind::Text)
        return QString();
    if (info.kind == PropKind::Boolean)
        return m_open && capable[i];
    return int32_t{0};
}

void SimulatedFiscalPrinter::WriteProperty(Prop id, const QVariant& value) {
    using P = SimulatedFiscalPrinter;
    // Sets the property and answers 0, or sets the result of a refusal and answers it.
    using Writer = int32_t (*)(P&, const QVariant&);
    static constexpr auto range = [](P& p, int32_t n, int32_t low, int32_t high) {
        return n >= low && n <= high ? 0 : p.Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Value out of range"));
    };
    // A line break in these texts starts a new printed line: the limit is per line.
    static constexpr auto printable = [](P& p, const QString& text) {
        const auto lines = QStringView(text).split(QRegularExpression(QStringLiteral("\r\n|\r|\n")));
        const bool fits =
            std::all_of(lines.begin(), lines.end(), [](QStringView l) { return l.size() <= 46; });
        return fits && sim::IsValidPrintControl(text)
                   ? 0
                   : p.Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Text too long or with a bad barcode"));
    };
    static constexpr auto monitor = [](P& p) {
        return p.EffectivePrinterState() == FPTR_PS_MONITOR
                   ? 0
                   : p.Result(OPOS_E_EXTENDED, OPOS_EFPTR_WRONG_STATE,
                              QStringLiteral("Printer not in monitor state"));
    };
    // Stores `value` in `field` when the checks before answered 0.
    static constexpr auto assign = [](int32_t rc, auto& field, const auto& value) {
        if (rc == 0)
            field = value;
        return rc;
    };
    static const auto writers = Indexed<Writer>({
        {Prop::AdditionalHeader,
         [](P& p, const QVariant& v) {
             return assign(printable(p, v.toString()), p.m_session.additionalHeader, v.toString());
         }},
        {Prop::AdditionalTrailer,
         [](P& p, const QVariant& v) {
             return assign(printable(p, v.toString()), p.m_session.additionalTrailer, v.toString());
         }},
        {Prop::PreLine,
         [](P& p, const QVariant& v) {
             return assign(printable(p, v.toString()), p.m_session.preLine, v.toString());
         }},
        {Prop::PostLine,
         [](P& p, const QVariant& v) {
             return assign(printable(p, v.toString()), p.m_session.postLine, v.toString());
         }},
        {Prop::ChangeDue,
         [](P& p, const QVariant& v) { return assign(0, p.m_session.changeDue, v.toString()); }},
        {Prop::AsyncMode,
         [](P& p, const QVariant& v) { return assign(0, p.m_session.asyncMode, v.toBool()); }},
        {Prop::DuplicateReceipt,
         [](P& p, const QVariant& v) { return assign(0, p.m_session.duplicateReceipt, v.toBool()); }},
        {Prop::BinaryConversion,
         [](P& p, const QVariant& v) {
             return assign(range(p, v.toInt(), 0, 2), p.m_session.binaryConversion, v.toInt());
         }},
        {Prop::DateType,
         [](P& p, const QVariant& v) {
             return assign(range(p, v.toInt(), FPTR_DT_CONF, FPTR_DT_START), p.m_session.dateType, v.toInt());
         }},
        {Prop::MessageType,
         [](P& p, const QVariant& v) {
             return assign(range(p, v.toInt(), 1, 99), p.m_session.messageType, v.toInt());
         }},
        {Prop::TotalizerType,
         [](P& p, const QVariant& v) {
             return assign(range(p, v.toInt(), FPTR_TT_DOCUMENT, FPTR_TT_GRAND), p.m_session.totalizerType,
                           v.toInt());
         }},
        {Prop::CheckTotal,
         [](P& p, const QVariant& v) {
             const bool on = v.toBool();
             return assign(range(p, on && !p.m_model.capCheckTotal, 0, 0), p.m_session.checkTotal, on);
         }},
        {Prop::FiscalReceiptStation,
         [](P& p, const QVariant& v) {
             const int32_t rc = monitor(p);
             return assign(rc ? rc : range(p, v.toInt(), FPTR_RS_RECEIPT, FPTR_RS_RECEIPT),
                           p.m_session.fiscalReceiptStation, v.toInt());
         }},
        {Prop::FiscalReceiptType,
         [](P& p, const QVariant& v) {
             // Sales and refunds (credit notes) only: other receipt types don't exist on this printer.
             const int32_t n = v.toInt(), rc = monitor(p);
             return assign(rc ? rc : range(p, n == FPTR_RT_SALES || n == FPTR_RT_REFUND, 1, 1),
                           p.m_session.fiscalReceiptType, n);
         }},
        {Prop::PowerNotify,
         [](P& p, const QVariant& v) {
             if (const int32_t rc = range(p, v.toInt(), OPOS_PN_DISABLED, OPOS_PN_ENABLED))
                 return rc;
             if (p.m_enabled)
                 return p.Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Device enabled"));
             return assign(0, p.m_session.powerNotify, v.toInt());
         }},
        {Prop::DeviceEnabled,
         [](P& p, const QVariant& v) {
             const bool on = v.toBool();
             if (on && !p.m_claimed)
                 return p.Result(OPOS_E_NOTCLAIMED, 0, QStringLiteral("Device not claimed"));
             if (on && (p.IsOffline() || p.IsPowerOff()))
                 return p.Result(OPOS_E_OFFLINE, 0, QStringLiteral("Printer offline"));
             if (!on && p.m_enabled)
                 p.m_queue.Clear();
             p.m_enabled = on;
             return 0;
         }},
        {Prop::FlagWhenIdle,
         [](P& p, const QVariant& v) {
             p.m_session.flagWhenIdle = v.toBool();
             p.Result(0);
             p.CheckIdle();
             return 0;
         }},
        {Prop::FreezeEvents,
         [](P& p, const QVariant& v) {
             p.Result(0);
             p.m_events.SetFrozen(v.toBool());
             return 0;
         }},
    });

    m_out.clear();
    const PropertyInfo& info = PropertyOf(id);
    if (const auto failure = m_machine.TakeFailure(QStringLiteral("Set") + QLatin1StringView(info.name))) {
        Refuse(*failure);
        return;
    }
    if (!m_open) {
        Result(OPOS_E_CLOSED, 0, QStringLiteral("Device closed"));
        return;
    }
    const Writer write = writers[static_cast<size_t>(id)];
    if (!write) {
        Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Not supported by this printer"));
        return;
    }
    if (write(*this, value) == 0) {
        if (id != Prop::FlagWhenIdle && id != Prop::FreezeEvents)
            Result(0);
        emit sessionChanged();
    }
}
