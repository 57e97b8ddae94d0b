#include "BenchSettings.h"

#include "MDITestFPOPOS.h"
#include "frmLog.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QWidget>

void SetBenchIdentity() {
    QCoreApplication::setOrganizationName(QStringLiteral("fpubench"));
    QCoreApplication::setApplicationName(QStringLiteral("fpubench"));
    QGuiApplication::setDesktopFileName(QStringLiteral("fpubench"));
}

bool UsableGeometry(const QRect& geometry, const QList<QRect>& screens) {
    if (geometry.isEmpty())
        return false;
    const QPoint titleBar(geometry.center().x(), geometry.top());
    for (const QRect& screen : screens)
        if (screen.contains(titleBar))
            return true;
    return false;
}

namespace {

QString Key(const QString& group, const char* name) {
    return group + QLatin1Char('/') + QLatin1String(name);
}

QList<QRect> AvailableScreens() {
    QList<QRect> areas;
    for (const QScreen* screen : QGuiApplication::screens())
        areas.append(screen->availableGeometry());
    return areas;
}

} // namespace

void SaveWindowGeometry(QSettings& settings, const QString& group, const QWidget& window) {
    const bool maximized = window.isMaximized() || window.isFullScreen();
    // A maximized window comes back maximized, and to its normal place when it is restored.
    settings.setValue(Key(group, "geometry"), maximized ? window.normalGeometry() : window.geometry());
    settings.setValue(Key(group, "maximized"), maximized);
}

bool RestoreWindowGeometry(QSettings& settings, const QString& group, QWidget& window) {
    const QRect geometry = settings.value(Key(group, "geometry")).toRect();
    if (!UsableGeometry(geometry, AvailableScreens()))
        return false;
    window.setGeometry(geometry);
    if (settings.value(Key(group, "maximized")).toBool())
        window.setWindowState(window.windowState() | Qt::WindowMaximized);
    return true;
}

WindowMemory::WindowMemory(MDITestFPOPOS& window) : m_window(window) {
    QSettings settings;
    RestoreWindowGeometry(settings, BenchSettings::MainWindow, m_window);
    m_logRestored = RestoreWindowGeometry(settings, BenchSettings::LogWindow, *m_window.Log());
    m_window.installEventFilter(this);
}

void WindowMemory::Save() {
    QSettings settings;
    SaveWindowGeometry(settings, BenchSettings::MainWindow, m_window);
    const QWidget& log = *m_window.Log();
    if (m_logRestored || log.testAttribute(Qt::WA_WState_Created))
        SaveWindowGeometry(settings, BenchSettings::LogWindow, log);
}

bool WindowMemory::eventFilter(QObject* watched, QEvent* event) {
    // Before the frame's own close, which takes the log window with it.
    if (watched == &m_window && event->type() == QEvent::Close)
        Save();
    return QObject::eventFilter(watched, event);
}
