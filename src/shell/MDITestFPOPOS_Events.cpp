// The control's events: the only place where the device, not the operator, drives the bench.
// They bypass the wrapper: no macro line, no refresh.
#include "MDITestFPOPOS.h"

#include "Seams.h"
#include "Tools.h"
#include "frmStatusBar.h"

namespace {

QString EventArguments(int32_t code, int32_t extended) {
    return QStringLiteral("%1 ").arg(code) + Tools::ResultCodeName(code) +
           QStringLiteral(", %1 ").arg(extended) + Tools::ResultCodeExtendedName(extended) + QLatin1Char(')');
}

} // namespace

void MDITestFPOPOS::ErrorEvent(int32_t ResultCode, int32_t ResultCodeExtended, int32_t /*ErrorLocus*/,
                               int32_t& pErrorResponse) {
    const QString arguments = EventArguments(ResultCode, ResultCodeExtended);
    const MsgResult answer =
        ShowMessage(QStringLiteral("OposErrorEvent(") + arguments, MsgButtons::RetryCancel);
    pErrorResponse = answer == MsgResult::Retry ? 11 : 12;
    Tools::WriteLog(QStringLiteral("ErrorEvent(") + arguments +
                    QStringLiteral("  Resp = %1").arg(pErrorResponse));
}

void MDITestFPOPOS::OutputCompleteEvent(int32_t OutputID) {
    Tools::WriteLog(QStringLiteral("OutputCompleteEvent(%1)").arg(OutputID));
}

void MDITestFPOPOS::StatusUpdateEvent(int32_t Status) {
    using Alarm = frmStatusBar::Alarm;
    frmStatusBar& bar = *m_statusBar;
    QString name;
    switch (Status) {
    case 0:
        name = QStringLiteral("0");
        break;
    case 11:
        bar.SetAlarm(Alarm::CoverOpen, true);
        name = QStringLiteral("PtrSueCoverOpen");
        break;
    case 12:
        bar.SetAlarm(Alarm::CoverOpen, false);
        name = QStringLiteral("PtrSueCoverOk");
        break;
    case 21:
        name = QStringLiteral("PtrSueJrnEmpty");
        break;
    case 22:
        name = QStringLiteral("PtrSueJrnNearempty");
        break;
    case 23:
        name = QStringLiteral("PtrSueJrnPaperok");
        break;
    case 24:
        bar.SetAlarm(Alarm::PaperOut, true);
        name = QStringLiteral("PtrSueRecEmpty");
        break;
    case 25:
        bar.SetAlarm(Alarm::PaperNearEmpty, true);
        name = QStringLiteral("PtrSueRecNearempty");
        break;
    case 26:
        bar.SetAlarm(Alarm::PaperOut, false);
        bar.SetAlarm(Alarm::PaperNearEmpty, false);
        name = QStringLiteral("PtrSueRecPaperok");
        break;
    case 1001:
        name = QStringLiteral("PtrSueIdle");
        break;
    default:
        return; // statuses the bench doesn't know leave no trace
    }
    Tools::WriteLog(QStringLiteral("StatusUpdateEvent(") + name + QLatin1Char(')'));
}
