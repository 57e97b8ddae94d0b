#pragma once

#include <QList>
#include <QObject>
#include <QRect>
#include <QString>

class MDITestFPOPOS;
class QSettings;
class QWidget;

// What the bench remembers between runs, in QSettings under the names SetBenchIdentity gives
// (on Linux ~/.config/fpubench/fpubench.conf). The panels' fields are not remembered: every run
// starts them from their defaults.
namespace BenchSettings {

// One group per window; a window's geometry is "<group>/geometry" and "<group>/maximized".
inline const QString MainWindow = QStringLiteral("MainWindow");
inline const QString LogWindow = QStringLiteral("LogWindow");
// The printer window keeps its own state under this group.
inline const QString PrinterWindow = QStringLiteral("PrinterWindow");
// The pickers' last folders, one key per kind of file (ShellPickers::LastFolderKey).
inline const QString LastFolder = QStringLiteral("LastFolder");

} // namespace BenchSettings

// The organisation and application names that place the settings, and the desktop entry's
// name. Once, in main().
void SetBenchIdentity();

// Whether a window's saved geometry can be used on these screens (their available areas): it has
// a size, and the middle of its top edge, where the title bar is, lies on one of them.
bool UsableGeometry(const QRect& geometry, const QList<QRect>& screens);

void SaveWindowGeometry(QSettings& settings, const QString& group, const QWidget& window);
// Puts the window where it was saved, unless nothing was saved or it would be off every screen
// now; then the window keeps its own geometry and the answer is false.
bool RestoreWindowGeometry(QSettings& settings, const QString& group, QWidget& window);

// The main window's and the log window's geometry, restored when made and saved when the main
// window closes. The log's is saved only once it has a place of its own: it was restored, or
// shown in this run.
class WindowMemory : public QObject {
    Q_OBJECT
public:
    explicit WindowMemory(MDITestFPOPOS& window);
    void Save();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    MDITestFPOPOS& m_window;
    bool m_logRestored = false;
};
