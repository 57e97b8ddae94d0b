// The control's events: the only place where the device, not the operator, drives the bench.
// They bypass the wrapper: no macro line, no refresh.
#include "MDITestFPOPOS.h"

#include "EventLines.h"
#include "Seams.h"
#include "Tools.h"
#include "frmStatusBar.h"

void MDITestFPOPOS::ErrorEvent(int32_t ResultCode, int32_t ResultCodeExtended, int32_t /*ErrorLocus*/,
                               int32_t& pErrorResponse) {
    const MsgResult answer =
        ShowMessage(EventLines::ErrorEventQuestion(ResultCode, ResultCodeExtended), MsgButtons::RetryCancel);
    pErrorResponse = answer == MsgResult::Retry ? 11 : 12;
    Tools::WriteLog(EventLines::ErrorEventLogLine(ResultCode, ResultCodeExtended, pErrorResponse));
}

void MDITestFPOPOS::OutputCompleteEvent(int32_t OutputID) {
    Tools::WriteLog(EventLines::OutputCompleteEventLogLine(OutputID));
}

void MDITestFPOPOS::StatusUpdateEvent(int32_t Status) {
    const auto line = EventLines::StatusUpdateEventLogLine(Status);
    if (!line)
        return; // statuses the bench doesn't know leave no trace
    // Each status touches only the lamps of its own row; journal statuses touch none.
    using Alarm = frmStatusBar::Alarm;
    frmStatusBar& bar = *m_statusBar;
    switch (Status) {
    case 11:
        bar.SetAlarm(Alarm::CoverOpen, true);
        break;
    case 12:
        bar.SetAlarm(Alarm::CoverOpen, false);
        break;
    case 24:
        bar.SetAlarm(Alarm::PaperOut, true);
        break;
    case 25:
        bar.SetAlarm(Alarm::PaperNearEmpty, true);
        break;
    case 26:
        bar.SetAlarm(Alarm::PaperOut, false);
        bar.SetAlarm(Alarm::PaperNearEmpty, false);
        break;
    default:
        break;
    }
    Tools::WriteLog(*line);
}
