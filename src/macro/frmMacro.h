#pragma once

#include "PanelContext.h"

#include <QWidget>

#include <cstdint>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QListView;
class QPushButton;
class QTimer;

// The operator's view of the macro: the engine's lines, and the buttons that play them. A
// one-shot timer plays one line per tick and arms itself again. The panel keeps no state of its
// own beyond that timer and the caption and enabled flag of cmdPause; the cursor is the engine's.
class frmMacro : public QWidget {
    Q_OBJECT
public:
    explicit frmMacro(PanelContext& ctx, QWidget* parent = nullptr);

    static inline const QString PauseCaption = QStringLiteral("Pause");
    static inline const QString ContinueCaption = QStringLiteral("Continue");
    static inline const QString ErrorMessage = QStringLiteral("Error ... execution paused");
    static inline const QString FileTitle = QStringLiteral("Select the macro command file");
    static inline const QString FileFilter =
        QStringLiteral("Opos Test Macro Commands (*.oposcmd)|*.oposcmd|All files|*.*");

    // True while a line is being played, by a tick or by One Line Step: an F_Delay line lets the
    // operator's buttons in during that time.
    bool LineInProgress() const { return m_lineInProgress; }

    QListView* lstMacroCode;
    QPushButton* cmdExecuteMacro;
    QPushButton* cmdPause;
    QPushButton* cmdStop;
    QPushButton* cmdStep;
    QPushButton* cmdClear;
    QPushButton* cmdLoadMacro;
    QPushButton* cmdSaveMacro;

    QGroupBox* fraOptions;
    QComboBox* cbSpeed;
    QCheckBox* chkStopOnError;

    QTimer* tmrMacroExecution;
    // The engine's timer, which its F_Delay lines wait on; shown here because it belongs to the
    // panel's replay, kept by the engine because the engine also plays without windows.
    QTimer* tmrDelayForMacroCls;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Form_Load();
    void ApplyDelay();
    int32_t PlayLine();

    void cmdExecuteMacro_Click();
    void cmdPause_Click();
    void cmdStop_Click();
    void cmdStep_Click();
    void cmdClear_Click();
    void cmdLoadMacro_Click();
    void cmdSaveMacro_Click();
    void lstMacroCode_DblClick();
    void tmrMacroExecution_Timer();

    PanelContext& m_ctx;
    bool m_lineInProgress = false;
    // Raised by every action that decides the timer and the cursor for itself (Run, Stop, Clear,
    // Load): a tick whose line was still playing then leaves both as that action set them.
    quint64 m_overrides = 0;
};
