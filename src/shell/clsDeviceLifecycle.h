#pragma once

#include <QString>

#include <functional>

class QTimer;
class clsFprtWrapper;

// The toolbar's walk of the device through open, claim, enable and back. It keeps no state:
// whether the device is open is the control's business, and Open Claim Enable asks the
// control's ResultCode between its steps.
class clsDeviceLifecycle {
public:
    struct Hooks {
        std::function<QString()> deviceName; // read at every Open
        std::function<void()> refreshAfterCommand;
        std::function<void()> rebuildDeviceLists; // the lists that follow the device, after Enable
    };

    clsDeviceLifecycle(clsFprtWrapper& wrapper, QTimer& tmrUpdateControls, Hooks hooks);

    // Only these two names reach the control; the comparison is case-sensitive.
    static bool IsAcceptedDeviceName(const QString& name);

    void Open();
    void Claim();
    void Enable();
    void Disable();
    void Release();
    void Close();
    void OpenClaimEnable();
    void DisableReleaseClose();

private:
    clsFprtWrapper& m_wrapper;
    QTimer& m_tmrUpdateControls;
    Hooks m_hooks;
};
