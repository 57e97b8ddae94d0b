#include "SimulatedFiscalPrinter.h"

#include "Money.h"
#include "OposAll.h"
#include "Tools.h"

using namespace OposAll;
using sim::PrintAttributes;
using sim::PrintedLine;

SimulatedFiscalPrinter::SimulatedFiscalPrinter(QObject* parent)
    : QObject(parent), m_model(sim::Models().first()), m_memory(sim::MakeInMemoryFiscalMemory(m_model)) {
    m_queue.faultOf = [this](int stations) { return m_machine.PhysicalFault(stations); };
    m_queue.print = [this](const sim::Outputs& lines) { Apply(lines); };
    m_queue.completed = [this](int32_t id) {
        Deliver([this, id] {
            if (m_sink)
                m_sink->OutputCompleteEvent(id);
        });
    };
    m_queue.faulted = [this](int32_t id, int stations, const sim::Refusal& fault) {
        OnJobFaulted(id, stations, fault);
    };
    m_queue.drained = [this] { CheckIdle(); };
}

SimulatedFiscalPrinter::~SimulatedFiscalPrinter() {
    // The queue's hooks reach back into this object: none may run while it goes.
    m_queue.faultOf = {};
    m_queue.print = {};
    m_queue.completed = {};
    m_queue.faulted = {};
    m_queue.drained = {};
}

// ---------------------------------------------------------------- results and checks

int32_t SimulatedFiscalPrinter::Result(int32_t code, int32_t extended, const QString& text) {
    m_resultCode = code;
    m_resultExtended = extended;
    m_errorString = code == 0 ? QString() : text;
    return code;
}

int32_t SimulatedFiscalPrinter::EffectivePrinterState() const {
    return m_memory->Remaining() <= 0 ? FPTR_PS_LOCKED : m_printerState;
}

bool SimulatedFiscalPrinter::Queues(int stations, unsigned flags) const {
    return stations != 0 && m_session.asyncMode && !(flags & AlwaysSync);
}

int32_t SimulatedFiscalPrinter::CheckSession(const char* method, Need need) {
    m_out.clear();
    if (const auto failure = m_machine.TakeFailure(QString::fromLatin1(method)))
        return Refuse(*failure);
    if (!m_open)
        return Result(OPOS_E_CLOSED, 0, QStringLiteral("Device closed"));
    if (need != Need::Open && !m_claimed)
        return Result(OPOS_E_NOTCLAIMED, 0, QStringLiteral("Device not claimed"));
    if (need == Need::Enabled && !m_enabled)
        return Result(OPOS_E_DISABLED, 0, QStringLiteral("Device not enabled"));
    return 0;
}

int32_t SimulatedFiscalPrinter::Check(const char* method, unsigned legalStates, int stations,
                                      unsigned flags) {
    if (CheckSession(method, Need::Enabled))
        return m_resultCode;
    if (flags & Debug)
        return 0;
    if (m_machine.Offline() || m_machine.PowerOff())
        return Result(OPOS_E_OFFLINE, 0, QStringLiteral("Printer offline"));
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
                if (legalStates == In(s) && *names[s])
                    text = QString::fromLatin1(names[s]);
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_WRONG_STATE, text);
    }
    if ((flags & DayClosed) && DayOpen())
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_WRONG_STATE, QStringLiteral("Fiscal day open"));
    if ((flags & NotTraining) && m_training)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_WRONG_STATE, QStringLiteral("Refused in training mode"));
    if ((flags & NewDay) && sim::DayEndRequired(*m_memory, Now()))
        return Result(OPOS_E_EXTENDED, sim::kDayEndRequired,
                      QStringLiteral("Day end required: print a Z report"));
    if (!Queues(stations, flags) && !m_queue.Empty())
        return Result(OPOS_E_BUSY, 0, QStringLiteral("Busy with output"));
    if (stations != 0 && !Queues(stations, flags))
        if (const auto fault = m_machine.PhysicalFault(stations))
            return Refuse(*fault);
    return 0;
}

int32_t SimulatedFiscalPrinter::ResolveVat(int32_t vatInfo, int* rate) {
    if (vatInfo >= 0 && vatInfo <= m_model.numVatRates) {
        *rate = vatInfo;
        return 0;
    }
    if (vatInfo >= 10001 && vatInfo <= 10250) {
        const auto& links = m_memory->DepartmentLinks();
        const auto it = links.find(vatInfo - 10000);
        if (it != links.end() && it.value() <= m_model.numVatRates) {
            *rate = it.value();
            return 0;
        }
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_VAT,
                      QStringLiteral("Department not linked to a VAT rate"));
    }
    return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_VAT, QStringLiteral("Bad VAT"));
}

int32_t SimulatedFiscalPrinter::CheckPrintedText(const QString& text, int maxLength) {
    if (text.size() > maxLength)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_LENGTH, QStringLiteral("Text too long"));
    if (!sim::IsValidPrintControl(text))
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad barcode in the text"));
    return 0;
}

int32_t SimulatedFiscalPrinter::CheckDescription(const QString& text) {
    if (text.size() > 38)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_ITEM_DESCRIPTION,
                      QStringLiteral("Description too long"));
    if (text.contains(QStringLiteral("TOTALE"), Qt::CaseInsensitive))
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_ITEM_DESCRIPTION,
                      QStringLiteral("Description holds the reserved word"));
    if (!sim::IsValidPrintControl(text))
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad barcode in the text"));
    return 0;
}

// ---------------------------------------------------------------- printing and the queue

void SimulatedFiscalPrinter::EmitLine(int station, const PrintedLine& line) {
    m_out.append({station, line});
    if (station & FPTR_S_RECEIPT) {
        m_doc.printed.append(line);
        m_doc.text.append(sim::PlainLine(line));
    }
}

void SimulatedFiscalPrinter::Emit(int station, const QString& textWithSequences, PrintAttributes base) {
    for (const PrintedLine& line : sim::InterpretPrintControl(textWithSequences, base))
        EmitLine(station, line);
}

void SimulatedFiscalPrinter::EmitMoney(int station, const QString& label, Amount amount) {
    EmitLine(station, PrintedLine::Plain(sim::MoneyLine(label, amount)));
}

void SimulatedFiscalPrinter::EmitPreLine() {
    if (!m_session.preLine.isEmpty())
        Emit(FPTR_S_JOURNAL_RECEIPT, m_session.preLine);
    m_session.preLine.clear();
}

void SimulatedFiscalPrinter::EmitPostLine() {
    if (!m_session.postLine.isEmpty())
        Emit(FPTR_S_JOURNAL_RECEIPT, m_session.postLine);
    m_session.postLine.clear();
}

void SimulatedFiscalPrinter::Apply(const sim::Outputs& lines) {
    for (const auto& o : lines) {
        if (o.station & FPTR_S_RECEIPT)
            m_receiptRoll.Append(o.line);
        if (o.station & FPTR_S_JOURNAL) {
            if (o.line.cutAfter) { // the journal stays one strip
                PrintedLine uncut = o.line;
                uncut.cutAfter = false;
                m_journalRoll.Append(uncut);
            } else {
                m_journalRoll.Append(o.line);
            }
        }
    }
}

void SimulatedFiscalPrinter::CutPaper() {
    for (auto it = m_out.rbegin(); it != m_out.rend(); ++it) {
        if (it->station & FPTR_S_RECEIPT) {
            it->line.cutAfter = true;
            return;
        }
    }
}

void SimulatedFiscalPrinter::EmitFiscalLogo() {
    PrintedLine logo;
    logo.kind = PrintedLine::Kind::Logo;
    logo.text = QString::fromLatin1(sim::kSerialNumber);
    logo.attr.align = sim::Align::Center;
    EmitLine(FPTR_S_JOURNAL_RECEIPT, logo);
}

int32_t SimulatedFiscalPrinter::Flush(unsigned flags) {
    sim::Outputs lines;
    lines.swap(m_out);
    if (Queues(FPTR_S_JOURNAL_RECEIPT, flags))
        m_session.outputId = m_queue.Submit(std::move(lines));
    else
        Apply(lines);
    return Ok();
}

void SimulatedFiscalPrinter::ShowOnDisplay(const QString& top, Amount amount) {
    m_display.ShowTwoLines(top, sim::MoneyText(amount));
}

// ---------------------------------------------------------------- events

void SimulatedFiscalPrinter::Deliver(std::function<void()> event) {
    m_events.Deliver(std::move(event));
}

void SimulatedFiscalPrinter::RaiseStatus(int32_t status) {
    if (!m_open || !m_enabled)
        return;
    Deliver([this, status] {
        if (m_sink)
            m_sink->StatusUpdateEvent(status);
    });
}

void SimulatedFiscalPrinter::OnJobFaulted(int32_t id, int stations, const sim::Refusal& fault) {
    m_session.errorLevel = FPTR_EL_RECOVERABLE;
    m_session.errorOutId = id;
    m_session.errorState = EffectivePrinterState();
    m_session.errorStation = stations;
    const int32_t extended = fault.extended;
    Deliver([this, extended] {
        int32_t response = OPOS_ER_RETRY;
        if (m_sink)
            m_sink->ErrorEvent(OPOS_E_EXTENDED, extended, OPOS_EL_OUTPUT, response);
        m_session.errorLevel = FPTR_EL_NONE;
        if (response == OPOS_ER_CLEAR)
            m_queue.Clear();
        else
            m_queue.Retry();
    });
}

void SimulatedFiscalPrinter::CheckIdle() {
    if (m_session.flagWhenIdle && m_queue.Empty()) {
        m_session.flagWhenIdle = false;
        RaiseStatus(OPOS_SUE_IDLE);
    }
}

// ---------------------------------------------------------------- faults

void SimulatedFiscalPrinter::SetCoverOpen(bool open) {
    if (m_machine.SetCoverOpen(open))
        RaiseStatus(open ? FPTR_SUE_COVER_OPEN : FPTR_SUE_COVER_OK);
}

void SimulatedFiscalPrinter::SetReceiptPaper(PaperLevel level) {
    if (m_machine.SetReceiptPaper(level))
        RaiseStatus(level == PaperLevel::Empty     ? FPTR_SUE_REC_EMPTY
                    : level == PaperLevel::NearEnd ? FPTR_SUE_REC_NEAREMPTY
                                                   : FPTR_SUE_REC_PAPEROK);
}

void SimulatedFiscalPrinter::SetJournalPaper(PaperLevel level) {
    if (m_machine.SetJournalPaper(level))
        RaiseStatus(level == PaperLevel::Empty     ? FPTR_SUE_JRN_EMPTY
                    : level == PaperLevel::NearEnd ? FPTR_SUE_JRN_NEAREMPTY
                                                   : FPTR_SUE_JRN_PAPEROK);
}

void SimulatedFiscalPrinter::SetOffline(bool offline) {
    m_machine.SetOffline(offline);
}

void SimulatedFiscalPrinter::SetPowerOff(bool off) {
    if (!m_machine.SetPowerOff(off))
        return;
    if (off)
        m_queue.Clear(); // what was still queued never reaches paper
    else
        AfterPowerCut();
    if (m_session.powerNotify == OPOS_PN_ENABLED)
        RaiseStatus(off ? OPOS_SUE_POWER_OFF_OFFLINE : OPOS_SUE_POWER_ONLINE);
}

void SimulatedFiscalPrinter::FailNextCall(const QString& method, int32_t code, int32_t extended) {
    m_machine.FailNextCall(method, code, extended);
}

bool SimulatedFiscalPrinter::SetClockOffsetSeconds(qint64 seconds) {
    if (sim::BeforeLastFiscalDocument(*m_memory, QDateTime::currentDateTime().addSecs(seconds)))
        return false;
    m_machine.SetClockOffsetSeconds(seconds);
    return true;
}

void SimulatedFiscalPrinter::SetRemainingFiscalMemory(int records) {
    m_memory->SetRemaining(records);
    CommitNotice();
}

QString SimulatedFiscalPrinter::DepartmentLinks() const {
    QString out;
    const auto& links = m_memory->DepartmentLinks();
    for (auto it = links.cbegin(); it != links.cend(); ++it) {
        if (!out.isEmpty())
            out += u',';
        out += QString::number(it.key()) + QChar(u'A' + it.value() - 1);
    }
    return out;
}

QString SimulatedFiscalPrinter::ReceiptText() const {
    return (m_doc.receipt ? m_doc.text : m_lastDocText).join(u'\n');
}

// ---------------------------------------------------------------- lifecycle

int32_t SimulatedFiscalPrinter::Open(QString& DeviceName) {
    m_out.clear();
    if (const auto failure = m_machine.TakeFailure(QStringLiteral("Open")))
        return Refuse(*failure);
    if (m_open)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Device already open"));
    const sim::ModelSwitches* model = sim::FindModel(DeviceName);
    if (!model)
        return Result(OPOS_E_NOEXIST, 0, QStringLiteral("No such device"));
    const bool attach = model->deviceName != m_model.deviceName || (m_memoryFactory && !m_memoryFromFactory);
    if (attach) {
        // Another model is another printer, with its own fiscal memory.
        m_model = *model;
        m_memory.reset(); // a model's store is let go before the next one is opened
        if (m_memoryFactory)
            m_memory = m_memoryFactory(m_model);
        if (!m_memory)
            m_memory = sim::MakeInMemoryFiscalMemory(m_model);
        m_memoryFromFactory = bool(m_memoryFactory);
        m_pendingVat.clear();
        m_posId.clear();
        m_cashierId.clear();
        m_printerState = FPTR_PS_MONITOR;
        m_training = false;
        m_trainingReceipts = 0;
        m_doc = {};
        m_lastDocText.clear();
        m_kept.reset();
        CommitNotice();
    }
    m_open = true;
    m_claimed = m_enabled = false;
    m_deviceName = DeviceName;
    m_session = Session{};
    m_session.checkTotal = m_model.checkTotalAtOpen;
    m_events.SetFrozen(false);
    m_queue.ResetIds();
    if (attach)
        if (const auto unfinished = m_memory->UnfinishedDocument())
            EndUnfinishedDocument(*unfinished);
    emit sessionChanged();
    return Ok();
}

void SimulatedFiscalPrinter::SetFiscalMemoryFactory(sim::FiscalMemoryFactory factory) {
    m_memoryFactory = std::move(factory);
    m_memoryFromFactory = false;
}

QString SimulatedFiscalPrinter::FiscalMemoryBusy() const {
    if (m_doc.receipt || m_doc.nonFiscal || m_printerState != FPTR_PS_MONITOR)
        return QStringLiteral("The %1 has a document open (%2). End it first; the fiscal memory was left as "
                              "it is.")
            .arg(m_model.deviceName, Tools::PrinterStateName(m_printerState));
    if (m_queue.Pending() > 0)
        return QStringLiteral("The %1 still has output queued (%2 jobs). Let it print, or clear it, first; "
                              "the fiscal memory was left as it is.")
            .arg(m_model.deviceName)
            .arg(m_queue.Pending());
    return {};
}

bool SimulatedFiscalPrinter::ReplaceFiscalMemory(const sim::FiscalMemorySwap& swap, QString* refusal) {
    const QString busy = FiscalMemoryBusy();
    if (refusal)
        *refusal = busy;
    if (!busy.isEmpty())
        return false;
    const int32_t before = EffectivePrinterState();
    const bool fresh = swap(m_memory);
    if (!m_memory)
        m_memory = sim::MakeInMemoryFiscalMemory(m_model);
    if (fresh) {
        // What belonged to the old memory goes with it; the printer's own settings, training mode
        // and paper stay.
        m_pendingVat.clear();
        m_kept.reset();
    }
    CommitNotice();
    if (EffectivePrinterState() != before) // a full memory was LOCKED
        emit printerStateChanged(EffectivePrinterState());
    return true;
}

int32_t SimulatedFiscalPrinter::Close() {
    if (CheckSession("Close", Need::Open))
        return m_resultCode;
    if (m_claimed)
        ReleaseDevice();
    m_queue.Clear();
    m_events.Clear();
    m_open = false;
    emit sessionChanged();
    return Ok();
}

int32_t SimulatedFiscalPrinter::ClaimDevice(int32_t& Timeout) {
    if (CheckSession("ClaimDevice", Need::Open))
        return m_resultCode;
    if (m_claimed)
        return Ok();
    if (Timeout < -1)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad timeout"));
    m_claimed = true;
    emit sessionChanged();
    return Ok();
}

int32_t SimulatedFiscalPrinter::ReleaseDevice() {
    if (CheckSession("ReleaseDevice", Need::Open))
        return m_resultCode;
    if (!m_claimed)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Device not claimed"));
    if (m_enabled) {
        m_queue.Clear();
        m_enabled = false;
    }
    m_claimed = false;
    emit sessionChanged();
    return Ok();
}
