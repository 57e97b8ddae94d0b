#include "clsBenchCore.h"

#include "BenchTexts.h"
#include "Seams.h"
#include "Tools.h"

#include <QTimer>

namespace {

constexpr int32_t ClaimTimeoutMs = 2000;
constexpr int32_t ResponseRetry = 11;
constexpr int32_t ResponseClear = 12;

// The lamps each status switches; the others stay as they are. Journal statuses switch none:
// the lamps stand for the receipt station and the cover.
struct LampChange {
    int32_t status;
    BenchAlarm alarm;
    bool raised;
};
constexpr LampChange LampChanges[] = {
    {11, BenchAlarm::CoverOpen, true}, {12, BenchAlarm::CoverOpen, false},
    {24, BenchAlarm::PaperOut, true},  {25, BenchAlarm::PaperNearEmpty, true},
    {26, BenchAlarm::PaperOut, false}, {26, BenchAlarm::PaperNearEmpty, false},
};

} // namespace

clsBenchCore::clsBenchCore(std::unique_ptr<IFiscalPrinter> control, ErrorEventAnswer answer, QObject* parent)
    : clsBenchCore(*control, std::move(answer), parent) {
    m_owned = std::move(control);
}

clsBenchCore::clsBenchCore(IFiscalPrinter& control, ErrorEventAnswer answer, QObject* parent)
    : QObject(parent), m_control(control), m_answer(std::move(answer)), m_wrapper(control, m_log),
      m_engine(m_wrapper), m_tmrUpdateControls(new QTimer(this)) {
    m_wrapper.SetRecorder(&m_engine);
    m_engine.Construct();
    m_tmrUpdateControls->setObjectName(QStringLiteral("tmrUpdateControls"));
    m_tmrUpdateControls->setInterval(2000);
    m_control.SetEventSink(this);
}

clsBenchCore::~clsBenchCore() {
    m_control.SetEventSink(nullptr);
}

bool clsBenchCore::IsAcceptedDeviceName(const QString& name) {
    return name == QLatin1String("ZorvaneFPU") || name == QLatin1String("Tessorim");
}

void clsBenchCore::Open(const QString& deviceName) {
    if (!IsAcceptedDeviceName(deviceName))
        return;
    const int32_t rc = m_wrapper.WOpen(deviceName);
    RefreshAfterCommand();
    if (rc == 0) {
        m_wrapper.SetFreezeEvents(false);
        m_tmrUpdateControls->start();
    }
}

void clsBenchCore::Claim() {
    m_wrapper.ClaimDevice(ClaimTimeoutMs);
    RefreshAfterCommand();
}

void clsBenchCore::Enable() {
    m_wrapper.SetDeviceEnabled(true);
    RefreshAfterCommand();
    // Also after a refused Enable: the lists then show what the control answers now.
    emit deviceListsOutdated();
}

void clsBenchCore::Disable() {
    m_wrapper.SetDeviceEnabled(false);
    RefreshAfterCommand();
}

void clsBenchCore::Release() {
    m_wrapper.ReleaseDevice();
    RefreshAfterCommand();
}

void clsBenchCore::Close() {
    m_tmrUpdateControls->stop();
    // No refresh: what is shown stays the result of the last command before Close.
    m_wrapper.WClose();
}

void clsBenchCore::OpenClaimEnable(const QString& deviceName) {
    Open(deviceName);
    if (m_wrapper.ResultCode() == 0)
        Claim();
    if (m_wrapper.ResultCode() == 0)
        Enable();
}

void clsBenchCore::DisableReleaseClose() {
    Disable();
    Release();
    Close();
}

void clsBenchCore::RefreshAfterCommand() {
    UpdateResultStatus();
    UpdateStateLabel();
    UpdatePrinterStateLabel();
}

void clsBenchCore::UpdateResultStatus() {
    // Straight from the control: these reads must leave no log line.
    const int32_t code = m_control.ResultCode();
    const int32_t extended = m_control.ResultCodeExtended();
    const QString errorString = m_control.ErrorString();
    emit resultStatusUpdated(BenchTexts::ResultCodeLabel(code), BenchTexts::ResultCodeExtendedLabel(extended),
                             errorString);
    // The extended code alone counts for nothing.
    if (code != 0)
        ShowMessage(BenchTexts::ErrorsText(code, extended, errorString));
}

void clsBenchCore::UpdateStateLabel() {
    const int32_t state = m_wrapper.State();
    emit stateLabelUpdated(BenchTexts::StateLabelText(Tools::StateName(state), state));
}

void clsBenchCore::UpdatePrinterStateLabel() {
    const int32_t state = m_control.PrinterState();
    emit printerStateLabelUpdated(BenchTexts::StateLabelText(Tools::PrinterStateName(state), state));
}

void clsBenchCore::ErrorEvent(int32_t ResultCode, int32_t ResultCodeExtended, int32_t /*ErrorLocus*/,
                              int32_t& pErrorResponse) {
    const bool retry = m_answer && m_answer(BenchTexts::ErrorEventQuestion(ResultCode, ResultCodeExtended));
    pErrorResponse = retry ? ResponseRetry : ResponseClear;
    m_log.Append(BenchTexts::ErrorEventLogLine(ResultCode, ResultCodeExtended, pErrorResponse));
}

void clsBenchCore::OutputCompleteEvent(int32_t OutputID) {
    m_log.Append(BenchTexts::OutputCompleteEventLogLine(OutputID));
}

void clsBenchCore::StatusUpdateEvent(int32_t Status) {
    const auto line = BenchTexts::StatusUpdateEventLogLine(Status);
    if (!line)
        return; // statuses the bench doesn't know leave no trace
    for (const LampChange& change : LampChanges)
        if (change.status == Status)
            emit alarmChanged(change.alarm, change.raised);
    m_log.Append(*line);
}
