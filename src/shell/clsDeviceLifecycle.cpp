#include "clsDeviceLifecycle.h"

#include "clsFprtWrapper.h"

#include <QTimer>

clsDeviceLifecycle::clsDeviceLifecycle(clsFprtWrapper& wrapper, QTimer& tmrUpdateControls, Hooks hooks)
    : m_wrapper(wrapper), m_tmrUpdateControls(tmrUpdateControls), m_hooks(std::move(hooks)) {}

bool clsDeviceLifecycle::IsAcceptedDeviceName(const QString& name) {
    return name == QLatin1String("ZorvaneFPU") || name == QLatin1String("Tessorim");
}

void clsDeviceLifecycle::Open() {
    const QString name = m_hooks.deviceName();
    if (!IsAcceptedDeviceName(name))
        return;
    const int32_t rc = m_wrapper.WOpen(name);
    m_hooks.refreshAfterCommand();
    if (rc == 0) {
        m_wrapper.SetFreezeEvents(false);
        m_tmrUpdateControls.start();
    }
}

void clsDeviceLifecycle::Claim() {
    m_wrapper.ClaimDevice(2000);
    m_hooks.refreshAfterCommand();
}

void clsDeviceLifecycle::Enable() {
    m_wrapper.SetDeviceEnabled(true);
    m_hooks.refreshAfterCommand();
    // Also after a refused Enable: the lists then show what the control answers now.
    m_hooks.rebuildDeviceLists();
}

void clsDeviceLifecycle::Disable() {
    m_wrapper.SetDeviceEnabled(false);
    m_hooks.refreshAfterCommand();
}

void clsDeviceLifecycle::Release() {
    m_wrapper.ReleaseDevice();
    m_hooks.refreshAfterCommand();
}

void clsDeviceLifecycle::Close() {
    m_tmrUpdateControls.stop();
    // No refresh: the status bar goes on showing the result of the last command before Close.
    m_wrapper.WClose();
}

void clsDeviceLifecycle::OpenClaimEnable() {
    Open();
    if (m_wrapper.ResultCode() == 0)
        Claim();
    if (m_wrapper.ResultCode() == 0)
        Enable();
}

void clsDeviceLifecycle::DisableReleaseClose() {
    Disable();
    Release();
    Close();
}
