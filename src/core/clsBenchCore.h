#pragma once

#include "BenchAlarm.h"
#include "IFiscalPrinter.h"
#include "clsBenchLog.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>

class QTimer;

// The bench without its windows: the control, the log, the wrapper and the macro engine, the
// toolbar's device actions, the refresh after a command and the answers to the control's events.
// The main window and the command-line runner each hold one and only draw or print what it says.
//
// What is shown goes out by signal; what must stop the action (the "ERRORS: " box) goes through
// the message-box seam; the answer to an ErrorEvent comes from the function the owner supplies.
class clsBenchCore : public QObject, public IFiscalPrinterEvents {
    Q_OBJECT
public:
    // Gets the question of an ErrorEvent and answers true to retry, false to clear.
    using ErrorEventAnswer = std::function<bool(const QString& question)>;

    clsBenchCore(std::unique_ptr<IFiscalPrinter> control, ErrorEventAnswer answer, QObject* parent = nullptr);
    // Over a control that the caller owns and keeps alive longer than the core.
    clsBenchCore(IFiscalPrinter& control, ErrorEventAnswer answer, QObject* parent = nullptr);
    ~clsBenchCore() override;

    IFiscalPrinter& Control() const { return m_control; }
    clsBenchLog& Log() { return m_log; }
    const clsBenchLog& Log() const { return m_log; }
    clsFprtWrapper& FprtWrapper() { return m_wrapper; }
    clsMacroEngine& MacroEngine() { return m_engine; }
    // Runs from a successful Open to the next Close; its tick is the owner's business.
    QTimer* tmrUpdateControls() const { return m_tmrUpdateControls; }

    // Only these two names reach the control; the comparison is case-sensitive.
    static bool IsAcceptedDeviceName(const QString& name);

    // The toolbar's device actions. Each ends with the refresh after a command, except Close.
    void Open(const QString& deviceName);
    void Claim();
    void Enable();
    void Disable();
    void Release();
    void Close();
    // The forward steps, each only while the control's ResultCode says the one before went well.
    void OpenClaimEnable(const QString& deviceName);
    void DisableReleaseClose();

    // What every action ends with: the latest result, the "ERRORS: " box when it failed, the two
    // state texts. One refresh writes one log line, that of State.
    void RefreshAfterCommand();
    void UpdateResultStatus();
    void UpdateStateLabel();
    void UpdatePrinterStateLabel();

    // The control's events. They bypass the wrapper: no macro line, no refresh.
    void ErrorEvent(int32_t ResultCode, int32_t ResultCodeExtended, int32_t ErrorLocus,
                    int32_t& pErrorResponse) override;
    void OutputCompleteEvent(int32_t OutputID) override;
    void StatusUpdateEvent(int32_t Status) override;

signals:
    void resultStatusUpdated(const QString& code, const QString& extended, const QString& description);
    void stateLabelUpdated(const QString& text);
    void printerStateLabelUpdated(const QString& text);
    // An alarm went red (raised) or back to green. Comes before the event's log line.
    void alarmChanged(BenchAlarm alarm, bool raised);
    // Enable has been tried, refused or not: the lists that follow the device are out of date.
    void deviceListsOutdated();

private:
    std::unique_ptr<IFiscalPrinter> m_owned;
    IFiscalPrinter& m_control;
    ErrorEventAnswer m_answer;
    clsBenchLog m_log;
    clsFprtWrapper m_wrapper;
    clsMacroEngine m_engine;
    QTimer* m_tmrUpdateControls;
};
