#include "SimulatedFiscalPrinter.h"

#include "OposAll.h"

using namespace OposAll;
using sim::PrintAttributes;
using sim::PrintedLine;
using sim::Refusal;

SimulatedFiscalPrinter::SimulatedFiscalPrinter(QObject* parent)
    : QObject(parent), m_drawer(new sim::CashDrawer(this)) {
    m_jobTimer.setSingleShot(true);
    connect(&m_jobTimer, &QTimer::timeout, this, &SimulatedFiscalPrinter::RunJob);
    connect(m_drawer, &sim::CashDrawer::closed, this, &SimulatedFiscalPrinter::changed);
    ResetFiscalState(sim::Models().first());
}

SimulatedFiscalPrinter::~SimulatedFiscalPrinter() = default;

void SimulatedFiscalPrinter::ResetFiscalState(const sim::ModelSwitches& model) {
    m_model = model;
    m_memory = std::make_unique<sim::InMemoryFiscalMemory>();
    m_vatRates = model.defaultVatRates;
    m_pendingVat.clear();
    m_header = QList<HeadLine>(6);
    m_trailer = QList<HeadLine>(3);
    m_posId.clear();
    m_cashierId.clear();
    m_dayOpened = false;
    m_printerState = FPTR_PS_MONITOR;
    m_training = false;
    m_receipt.reset();
    m_receiptVoided = false;
    m_receiptNumber = 0;
    m_docLines.clear();
    m_docPrinted.clear();
    m_lastReceiptLines.clear();
    m_kept.clear();
    m_hasKept = false;
    m_departments = {{1, 1}, {2, 2}};
}

QDateTime SimulatedFiscalPrinter::Now() const {
    return QDateTime::currentDateTime().addSecs(m_clockOffset);
}

// ---------------------------------------------------------------- results and checks

int32_t SimulatedFiscalPrinter::Result(int32_t code, int32_t extended, const QString& text) {
    m_resultCode = code;
    m_resultExtended = extended;
    m_errorString = code == 0 ? QString() : text;
    return code;
}

bool SimulatedFiscalPrinter::ConsumeFailure(const QString& name) {
    auto it = m_failNext.find(name);
    if (it == m_failNext.end())
        return false;
    const auto [code, ext] = it.value();
    m_failNext.erase(it);
    Result(code, ext, QStringLiteral("Simulated failure"));
    return true;
}

std::optional<Refusal> SimulatedFiscalPrinter::PhysicalFault(int stations) const {
    if (m_coverOpen)
        return Refusal{OPOS_E_EXTENDED, OPOS_EFPTR_COVER_OPEN, QStringLiteral("Cover open")};
    if ((stations & FPTR_S_RECEIPT) && m_recPaper == PaperLevel::Empty)
        return Refusal{OPOS_E_EXTENDED, OPOS_EFPTR_REC_EMPTY, QStringLiteral("Receipt paper empty")};
    if ((stations & FPTR_S_JOURNAL) && m_jrnPaper == PaperLevel::Empty)
        return Refusal{OPOS_E_EXTENDED, OPOS_EFPTR_JRN_EMPTY, QStringLiteral("Journal paper empty")};
    return std::nullopt;
}

int32_t SimulatedFiscalPrinter::EffectivePrinterState() const {
    if (m_memory->Remaining() <= 0)
        return FPTR_PS_LOCKED;
    return m_printerState;
}

int32_t SimulatedFiscalPrinter::CheckSession(const char* method, Session need) {
    m_out.clear();
    if (ConsumeFailure(QString::fromLatin1(method)))
        return m_resultCode;
    if (!m_open)
        return Result(OPOS_E_CLOSED, 0, QStringLiteral("Device closed"));
    if (need != Session::Open && !m_claimed)
        return Result(OPOS_E_NOTCLAIMED, 0, QStringLiteral("Device not claimed"));
    if (need == Session::Enabled && !m_enabled)
        return Result(OPOS_E_DISABLED, 0, QStringLiteral("Device not enabled"));
    return 0;
}

int32_t SimulatedFiscalPrinter::Check(const char* method, unsigned legalStates, int stations,
                                      bool dayMustBeClosed, bool capable) {
    if (CheckSession(method, Session::Enabled))
        return m_resultCode;
    if (m_offline || m_powerOff)
        return Result(OPOS_E_OFFLINE, 0, QStringLiteral("Printer offline"));
    if (!capable)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Not supported by this printer"));
    const int32_t state = EffectivePrinterState();
    if (!(legalStates & In(state))) {
        static const char* const names[] = {"",
                                            "Printer not in monitor state",
                                            "Printer not in fiscal receipt state",
                                            "Printer not in fiscal receipt total state",
                                            "Printer not in fiscal receipt ending state",
                                            "",
                                            "",
                                            "",
                                            "Printer locked: fiscal memory full",
                                            "Printer not in non-fiscal state",
                                            "Printer busy with a report"};
        QString text = QStringLiteral("Printer not in the right state");
        if (state == FPTR_PS_LOCKED)
            text = QString::fromLatin1(names[FPTR_PS_LOCKED]);
        else
            for (int s = 1; s <= 10; ++s)
                if (legalStates == In(s) && *names[s]) {
                    text = QString::fromLatin1(names[s]);
                    break;
                }
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_WRONG_STATE, text);
    }
    if (dayMustBeClosed && m_dayOpened)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_WRONG_STATE, QStringLiteral("Fiscal day open"));
    const bool queued = stations != 0 && m_asyncMode;
    if (!queued && !m_queue.empty())
        return Result(OPOS_E_BUSY, 0, QStringLiteral("Busy with output"));
    if (stations != 0 && !m_asyncMode)
        if (auto fault = PhysicalFault(stations))
            return Refuse(*fault);
    return 0;
}

int32_t SimulatedFiscalPrinter::ResolveVat(int32_t vatInfo, int* rate) {
    if (vatInfo >= 0 && vatInfo <= m_model.numVatRates) {
        *rate = vatInfo;
        return 0;
    }
    if (vatInfo >= 10001 && vatInfo <= 10250) {
        const auto it = m_departments.find(vatInfo - 10000);
        if (it != m_departments.end() && it.value() <= m_model.numVatRates) {
            *rate = it.value();
            return 0;
        }
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_VAT,
                      QStringLiteral("Department not linked to a VAT rate"));
    }
    return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_VAT, QStringLiteral("Bad VAT"));
}

int32_t SimulatedFiscalPrinter::CheckDescription(const QString& text) {
    if (text.size() > 38)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_ITEM_DESCRIPTION,
                      QStringLiteral("Description too long"));
    if (text.contains(QStringLiteral("TOTALE"), Qt::CaseInsensitive))
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_ITEM_DESCRIPTION,
                      QStringLiteral("Description holds the reserved word"));
    return 0;
}

// ---------------------------------------------------------------- printing and the queue

void SimulatedFiscalPrinter::EmitLine(int station, const PrintedLine& line) {
    m_out.append({station, line});
    if (station & FPTR_S_RECEIPT) {
        m_docPrinted.append(line);
        switch (line.kind) {
        case PrintedLine::Kind::Text:
            m_docLines.append(line.text);
            break;
        case PrintedLine::Kind::Barcode:
            m_docLines.append(QStringLiteral("[BARCODE %1:%2]").arg(line.barcodeType).arg(line.text));
            break;
        case PrintedLine::Kind::Bitmap:
            m_docLines.append(QStringLiteral("[BITMAP %1]").arg(line.bitmapSlot));
            break;
        case PrintedLine::Kind::Feed:
            for (int i = 0; i < line.feedLines; ++i)
                m_docLines.append(QString());
            break;
        }
    }
}

void SimulatedFiscalPrinter::Emit(int station, const QString& textWithSequences, PrintAttributes base) {
    auto lines = sim::InterpretPrintControl(textWithSequences);
    if (lines.isEmpty())
        lines.append(PrintedLine{});
    for (auto line : lines) {
        if (line.attr == PrintAttributes{})
            line.attr = base;
        EmitLine(station, line);
    }
}

void SimulatedFiscalPrinter::EmitAmountLine(int station, const QString& text, Amount amount) {
    const int width = 46;
    const QString money = sim::MoneyText(amount);
    QString left = text.left(width - money.size() - 1);
    EmitLine(
        station,
        PrintedLine{PrintedLine::Kind::Text, left.leftJustified(width - money.size()) + money, {}, 0, 0, 0});
}

void SimulatedFiscalPrinter::EmitPreLine() {
    if (!m_preLine.isEmpty())
        Emit(FPTR_S_JOURNAL_RECEIPT, m_preLine);
    m_preLine.clear();
}

void SimulatedFiscalPrinter::EmitPostLine() {
    if (!m_postLine.isEmpty())
        Emit(FPTR_S_JOURNAL_RECEIPT, m_postLine);
    m_postLine.clear();
}

void SimulatedFiscalPrinter::Apply(const QList<Output>& lines) {
    for (const auto& o : lines) {
        if (o.station & FPTR_S_RECEIPT)
            m_receiptRoll.Append(o.line);
        if (o.station & FPTR_S_JOURNAL)
            m_journalRoll.Append(o.line);
    }
    emit changed();
}

int32_t SimulatedFiscalPrinter::Flush(std::function<void()> onDone) {
    QList<Output> lines;
    lines.swap(m_out);
    if (!m_asyncMode) {
        Apply(lines);
        if (onDone)
            onDone();
        return Ok();
    }
    int station = 0;
    for (const auto& o : lines)
        station |= o.station;
    if (station == 0)
        station = FPTR_S_JOURNAL_RECEIPT;
    m_outputId = ++m_nextOutputId;
    m_queue.push_back({m_outputId, station, lines, std::move(onDone)});
    if (m_queue.size() == 1 && !m_inError)
        StartNextJob();
    return Ok();
}

void SimulatedFiscalPrinter::StartNextJob() {
    if (m_queue.empty() || m_inError)
        return;
    qsizetype count = 0;
    for (const auto& o : m_queue.front().lines)
        count += o.line.kind == PrintedLine::Kind::Feed ? qMax(1, o.line.feedLines) : 1;
    m_jobTimer.start(static_cast<int>(qMax<qsizetype>(1, count) * m_printMsPerLine));
}

void SimulatedFiscalPrinter::RunJob() {
    if (m_queue.empty() || m_inError)
        return;
    Job& job = m_queue.front();
    if (auto fault = PhysicalFault(job.station)) {
        m_inError = true;
        m_errorLevel = FPTR_EL_RECOVERABLE;
        m_errorOutId = job.id;
        m_errorState = EffectivePrinterState();
        m_errorStation = job.station;
        const int32_t ext = fault->extended;
        Deliver([this, ext] {
            int32_t response = OPOS_ER_RETRY;
            if (m_sink)
                m_sink->ErrorEvent(OPOS_E_EXTENDED, ext, OPOS_EL_OUTPUT, response);
            m_inError = false;
            m_errorLevel = FPTR_EL_NONE;
            if (response == OPOS_ER_CLEAR) {
                ClearQueue();
                CheckIdle();
            } else {
                StartNextJob();
            }
            emit changed();
        });
        emit changed();
        return;
    }
    Job done = std::move(job);
    m_queue.pop_front();
    Apply(done.lines);
    if (done.onDone)
        done.onDone();
    const int32_t id = done.id;
    Deliver([this, id] {
        if (m_sink)
            m_sink->OutputCompleteEvent(id);
    });
    StartNextJob();
    CheckIdle();
}

void SimulatedFiscalPrinter::ClearQueue() {
    m_jobTimer.stop();
    // Reports cut short still end their state.
    for (auto& job : m_queue)
        if (job.onDone)
            job.onDone();
    m_queue.clear();
    m_inError = false;
    m_errorLevel = FPTR_EL_NONE;
}

void SimulatedFiscalPrinter::CheckIdle() {
    if (m_flagWhenIdle && m_queue.empty()) {
        m_flagWhenIdle = false;
        RaiseStatus(OPOS_SUE_IDLE);
    }
}

// ---------------------------------------------------------------- events

void SimulatedFiscalPrinter::Deliver(std::function<void()> event) {
    if (m_freezeEvents || !m_held.empty()) {
        m_held.push_back(std::move(event));
        if (!m_freezeEvents)
            ReleaseHeld();
        return;
    }
    event();
}

void SimulatedFiscalPrinter::ReleaseHeld() {
    while (!m_freezeEvents && !m_held.empty()) {
        auto event = std::move(m_held.front());
        m_held.pop_front();
        event();
    }
}

void SimulatedFiscalPrinter::RaiseStatus(int32_t status) {
    if (!m_open)
        return;
    Deliver([this, status] {
        if (m_sink)
            m_sink->StatusUpdateEvent(status);
    });
}

// ---------------------------------------------------------------- faults

void SimulatedFiscalPrinter::SetCoverOpen(bool open) {
    if (m_coverOpen == open)
        return;
    m_coverOpen = open;
    if (m_enabled)
        RaiseStatus(open ? FPTR_SUE_COVER_OPEN : FPTR_SUE_COVER_OK);
    emit changed();
}

void SimulatedFiscalPrinter::SetReceiptPaper(PaperLevel level) {
    if (m_recPaper == level)
        return;
    m_recPaper = level;
    if (m_enabled)
        RaiseStatus(level == PaperLevel::Empty     ? FPTR_SUE_REC_EMPTY
                    : level == PaperLevel::NearEnd ? FPTR_SUE_REC_NEAREMPTY
                                                   : FPTR_SUE_REC_PAPEROK);
    emit changed();
}

void SimulatedFiscalPrinter::SetJournalPaper(PaperLevel level) {
    if (m_jrnPaper == level)
        return;
    m_jrnPaper = level;
    if (m_enabled)
        RaiseStatus(level == PaperLevel::Empty     ? FPTR_SUE_JRN_EMPTY
                    : level == PaperLevel::NearEnd ? FPTR_SUE_JRN_NEAREMPTY
                                                   : FPTR_SUE_JRN_PAPEROK);
    emit changed();
}

void SimulatedFiscalPrinter::SetOffline(bool offline) {
    m_offline = offline;
    emit changed();
}

void SimulatedFiscalPrinter::SetPowerOff(bool off) {
    if (m_powerOff == off)
        return;
    m_powerOff = off;
    if (off) {
        ClearQueue();
    } else {
        ++m_memory->MutableDayCounters().restarts;
        ++m_memory->MutableGrandCounters().restarts;
    }
    if (m_enabled && m_powerNotify == OPOS_PN_ENABLED)
        RaiseStatus(off ? OPOS_SUE_POWER_OFF_OFFLINE : OPOS_SUE_POWER_ONLINE);
    emit changed();
}

void SimulatedFiscalPrinter::FailNextCall(const QString& method, int32_t code, int32_t extended) {
    m_failNext.insert(method, {code, extended});
}

void SimulatedFiscalPrinter::SetRemainingFiscalMemory(int records) {
    m_memory->SetRemaining(records);
    emit changed();
}

QString SimulatedFiscalPrinter::DepartmentLinks() const {
    QStringList parts;
    for (auto it = m_departments.cbegin(); it != m_departments.cend(); ++it)
        parts << QStringLiteral("%1%2").arg(it.key()).arg(QChar(u'A' + it.value() - 1));
    return parts.join(u',');
}

QString SimulatedFiscalPrinter::ReceiptText() const {
    return (m_receipt ? m_docLines : m_lastReceiptLines).join(u'\n');
}

// ---------------------------------------------------------------- lifecycle

int32_t SimulatedFiscalPrinter::Open(QString& DeviceName) {
    m_out.clear();
    if (ConsumeFailure(QStringLiteral("Open")))
        return m_resultCode;
    if (m_open)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Device already open"));
    const sim::ModelSwitches* model = sim::FindModel(DeviceName);
    if (!model)
        return Result(OPOS_E_NOEXIST, 0, QStringLiteral("No such device"));
    if (model->deviceName != m_model.deviceName)
        ResetFiscalState(*model);
    m_open = true;
    m_claimed = false;
    m_enabled = false;
    m_deviceName = DeviceName;
    m_asyncMode = false;
    m_checkTotal = m_model.checkTotalAtOpen;
    m_flagWhenIdle = false;
    m_freezeEvents = false;
    m_duplicateReceipt = false;
    m_additionalHeader.clear();
    m_additionalTrailer.clear();
    m_changeDue.clear();
    m_preLine.clear();
    m_postLine.clear();
    m_binaryConversion = 0;
    m_dateType = FPTR_DT_RTC;
    m_messageType = 1;
    m_powerNotify = OPOS_PN_DISABLED;
    m_totalizerType = FPTR_TT_DAY;
    m_fiscalReceiptType = FPTR_RT_SALES;
    m_fiscalReceiptStation = FPTR_RS_RECEIPT;
    m_outputId = 0;
    m_errorLevel = FPTR_EL_NONE;
    m_errorOutId = m_errorState = m_errorStation = 0;
    m_checkHealthText.clear();
    emit changed();
    return Ok();
}

int32_t SimulatedFiscalPrinter::Close() {
    if (CheckSession("Close", Session::Open))
        return m_resultCode;
    if (m_claimed)
        ReleaseDevice();
    ClearQueue();
    m_held.clear();
    m_open = false;
    emit changed();
    return Ok();
}

int32_t SimulatedFiscalPrinter::ClaimDevice(int32_t& Timeout) {
    if (CheckSession("ClaimDevice", Session::Open))
        return m_resultCode;
    if (m_claimed)
        return Ok();
    if (Timeout < -1)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad timeout"));
    m_claimed = true;
    emit changed();
    return Ok();
}

int32_t SimulatedFiscalPrinter::ReleaseDevice() {
    if (CheckSession("ReleaseDevice", Session::Open))
        return m_resultCode;
    if (!m_claimed)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Device not claimed"));
    if (m_enabled) {
        ClearQueue();
        m_enabled = false;
    }
    m_claimed = false;
    emit changed();
    return Ok();
}

// ---------------------------------------------------------------- properties

QVariant SimulatedFiscalPrinter::ReadProperty(Prop id) {
    switch (id) {
    case Prop::ResultCode:
        return m_resultCode;
    case Prop::ResultCodeExtended:
        return m_resultExtended;
    case Prop::ErrorString:
        return m_errorString;
    case Prop::State:
        return !m_open            ? OPOS_S_CLOSED
               : m_inError        ? OPOS_S_ERROR
               : !m_queue.empty() ? OPOS_S_BUSY
                                  : OPOS_S_IDLE;
    default:
        break;
    }
    const PropertyInfo& info = PropertyOf(id);
    auto zero = [&]() -> QVariant {
        if (info.kind == PropKind::Text)
            return QString();
        if (info.kind == PropKind::Boolean)
            return false;
        return int32_t{0};
    };
    if (!m_open)
        return zero();

    static const QList<Prop> capsOn{
        Prop::CapAdditionalHeader,
        Prop::CapAdditionalLines,
        Prop::CapAdditionalTrailer,
        Prop::CapAmountAdjustment,
        Prop::CapAmountNotPaid,
        Prop::CapChangeDue,
        Prop::CapCoverSensor,
        Prop::CapDoubleWidth,
        Prop::CapDuplicateReceipt,
        Prop::CapEmptyReceiptIsVoidable,
        Prop::CapFiscalReceiptStation,
        Prop::CapFiscalReceiptType,
        Prop::CapHasVatTable,
        Prop::CapIndependentHeader,
        Prop::CapJrnEmptySensor,
        Prop::CapJrnNearEndSensor,
        Prop::CapJrnPresent,
        Prop::CapNonFiscalMode,
        Prop::CapPercentAdjustment,
        Prop::CapPositiveAdjustment,
        Prop::CapPostPreLine,
        Prop::CapPredefinedPaymentLines,
        Prop::CapReceiptNotPaid,
        Prop::CapRecEmptySensor,
        Prop::CapRecNearEndSensor,
        Prop::CapRecPresent,
        Prop::CapRemainingFiscalMemory,
        Prop::CapReservedWord,
        Prop::CapSetHeader,
        Prop::CapSetPOSID,
        Prop::CapSetTrailer,
        Prop::CapSetVatTable,
        Prop::CapSubAmountAdjustment,
        Prop::CapSubPercentAdjustment,
        Prop::CapSubtotal,
        Prop::CapTotalizerType,
        Prop::CapTrainingMode,
        Prop::CapXReport,
    };

    switch (id) {
    case Prop::ActualCurrency:
        return FPTR_AC_EUR;
    case Prop::AdditionalHeader:
        return m_additionalHeader;
    case Prop::AdditionalTrailer:
        return m_additionalTrailer;
    case Prop::AmountDecimalPlaces:
        return int32_t{2};
    case Prop::AsyncMode:
        return m_asyncMode;
    case Prop::BinaryConversion:
        return m_binaryConversion;
    case Prop::ChangeDue:
        return m_changeDue;
    case Prop::CheckHealthText:
        return m_checkHealthText;
    case Prop::CheckTotal:
        return m_checkTotal;
    case Prop::Claimed:
        return m_claimed;
    case Prop::CountryCode:
        return FPTR_CC_ITALY;
    case Prop::CoverOpen:
        return m_coverOpen;
    case Prop::DateType:
        return m_dateType;
    case Prop::DayOpened:
        return m_dayOpened;
    case Prop::DescriptionLength:
        return int32_t{38};
    case Prop::DeviceDescription:
        return QStringLiteral("Simulated fiscal printer");
    case Prop::DeviceEnabled:
        return m_enabled;
    case Prop::DeviceName:
        return m_deviceName;
    case Prop::DuplicateReceipt:
        return m_duplicateReceipt;
    case Prop::ErrorLevel:
        return m_errorLevel;
    case Prop::ErrorOutID:
        return m_errorOutId;
    case Prop::ErrorState:
        return m_errorState;
    case Prop::ErrorStation:
        return m_errorStation;
    case Prop::FiscalReceiptStation:
        return m_fiscalReceiptStation;
    case Prop::FiscalReceiptType:
        return m_fiscalReceiptType;
    case Prop::FlagWhenIdle:
        return m_flagWhenIdle;
    case Prop::FreezeEvents:
        return m_freezeEvents;
    case Prop::JrnEmpty:
        return m_jrnPaper == PaperLevel::Empty;
    case Prop::JrnNearEnd:
        return m_jrnPaper == PaperLevel::NearEnd;
    case Prop::MessageLength:
        return int32_t{46};
    case Prop::MessageType:
        return m_messageType;
    case Prop::NumHeaderLines:
        return int32_t{6};
    case Prop::NumTrailerLines:
        return int32_t{3};
    case Prop::NumVatRates:
        return int32_t{m_model.numVatRates};
    case Prop::OutputID:
        return m_outputId;
    case Prop::PostLine:
        return m_postLine;
    case Prop::PowerNotify:
        return m_powerNotify;
    case Prop::PowerState:
        return m_powerOff ? OPOS_PS_OFF_OFFLINE : m_offline ? OPOS_PS_OFFLINE : OPOS_PS_ONLINE;
    case Prop::PredefinedPaymentLines:
        return QStringLiteral("0,1,2,3,4,5,6,7,8,9,10");
    case Prop::PreLine:
        return m_preLine;
    case Prop::PrinterState:
        return EffectivePrinterState();
    case Prop::QuantityDecimalPlaces:
        return int32_t{3};
    case Prop::QuantityLength:
        return int32_t{10};
    case Prop::RecEmpty:
        return m_recPaper == PaperLevel::Empty;
    case Prop::RecNearEnd:
        return m_recPaper == PaperLevel::NearEnd;
    case Prop::RemainingFiscalMemory:
        return int32_t{m_memory->Remaining()};
    case Prop::ReservedWord:
        return QStringLiteral("TOTALE");
    case Prop::ServiceObjectDescription:
        return QStringLiteral("fpubench simulated fiscal printer service");
    case Prop::ServiceObjectVersion:
        return int32_t{1011000};
    case Prop::TotalizerType:
        return m_totalizerType;
    case Prop::TrainingModeActive:
        return m_training;
    case Prop::CapCheckTotal:
        return m_model.capCheckTotal;
    case Prop::CapPowerReporting:
        return OPOS_PR_STANDARD;
    default:
        break;
    }
    if (capsOn.contains(id))
        return true;
    return zero();
}

void SimulatedFiscalPrinter::WriteProperty(Prop id, const QVariant& value) {
    m_out.clear();
    const PropertyInfo& info = PropertyOf(id);
    if (ConsumeFailure(QStringLiteral("Set") + QLatin1StringView(info.name)))
        return;
    if (!m_open) {
        Result(OPOS_E_CLOSED, 0, QStringLiteral("Device closed"));
        return;
    }
    const int32_t n = value.toInt();
    const bool b = value.toBool();
    const QString t = value.toString();
    auto outOfRange = [this] { Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Value out of range")); };
    auto needMonitor = [this] {
        if (EffectivePrinterState() == FPTR_PS_MONITOR)
            return true;
        Result(OPOS_E_EXTENDED, OPOS_EFPTR_WRONG_STATE, QStringLiteral("Printer not in monitor state"));
        return false;
    };

    switch (id) {
    case Prop::AdditionalHeader:
        m_additionalHeader = t;
        break;
    case Prop::AdditionalTrailer:
        m_additionalTrailer = t;
        break;
    case Prop::AsyncMode:
        m_asyncMode = b;
        break;
    case Prop::BinaryConversion:
        if (n < 0 || n > 2)
            return outOfRange();
        m_binaryConversion = n;
        break;
    case Prop::ChangeDue:
        m_changeDue = t;
        break;
    case Prop::CheckTotal:
        if (b && !m_model.capCheckTotal)
            return outOfRange();
        m_checkTotal = b;
        break;
    case Prop::DateType:
        if (n < FPTR_DT_CONF || n > FPTR_DT_START)
            return outOfRange();
        m_dateType = n;
        break;
    case Prop::DeviceEnabled:
        if (b && !m_claimed) {
            Result(OPOS_E_NOTCLAIMED, 0, QStringLiteral("Device not claimed"));
            return;
        }
        if (b && (m_offline || m_powerOff)) {
            Result(OPOS_E_OFFLINE, 0, QStringLiteral("Printer offline"));
            return;
        }
        if (!b && m_enabled)
            ClearQueue();
        m_enabled = b && m_claimed;
        break;
    case Prop::DuplicateReceipt:
        m_duplicateReceipt = b;
        break;
    case Prop::FiscalReceiptStation:
        if (!needMonitor())
            return;
        if (n != FPTR_RS_RECEIPT)
            return outOfRange();
        m_fiscalReceiptStation = n;
        break;
    case Prop::FiscalReceiptType:
        if (!needMonitor())
            return;
        if (n < FPTR_RT_CASH_IN || n > FPTR_RT_REFUND)
            return outOfRange();
        m_fiscalReceiptType = n;
        break;
    case Prop::FlagWhenIdle:
        m_flagWhenIdle = b;
        Result(0);
        CheckIdle();
        emit changed();
        return;
    case Prop::FreezeEvents:
        m_freezeEvents = b;
        Result(0);
        ReleaseHeld();
        return;
    case Prop::MessageType:
        if (n < 1 || n > 99)
            return outOfRange();
        m_messageType = n;
        break;
    case Prop::PostLine:
        m_postLine = t;
        break;
    case Prop::PreLine:
        m_preLine = t;
        break;
    case Prop::PowerNotify:
        if (n != OPOS_PN_DISABLED && n != OPOS_PN_ENABLED)
            return outOfRange();
        if (m_enabled) {
            Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Device enabled"));
            return;
        }
        m_powerNotify = n;
        break;
    case Prop::TotalizerType:
        if (n < FPTR_TT_DOCUMENT || n > FPTR_TT_GRAND)
            return outOfRange();
        m_totalizerType = n;
        break;
    case Prop::ContractorId:
    case Prop::SlipSelection:
    default:
        Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Not supported by this printer"));
        return;
    }
    Result(0);
    emit changed();
}
