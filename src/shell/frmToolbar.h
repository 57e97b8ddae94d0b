#pragma once

#include <QWidget>

#include <array>

class QAction;
class QAbstractButton;
class QButtonGroup;
class QKeySequence;
class QPushButton;
class QRadioButton;

// The strip across the top. It holds no state and calls nothing: each control announces what
// the operator asked for, and the main window acts on it. Every button stands for an action of
// the same name ("actOpen" for cmdOpen), which carries the keyboard shortcut shown in the
// button's tooltip; the shortcuts work anywhere in the main window.
class frmToolbar : public QWidget {
    Q_OBJECT
public:
    // The eight operator panels, in the order of the option buttons.
    enum Panel { Settings, Fiscal, NonFiscal, Reports, Props, DirectIO, AutoTests, Macro, PanelCount };

    explicit frmToolbar(QWidget* parent = nullptr);

    QRadioButton* Option(Panel panel) const;
    QAction* PanelAction(Panel panel) const { return m_panelActions[panel]; }

    QPushButton* cmdOpen;
    QPushButton* cmdClaim;
    QPushButton* cmdEnable;
    QPushButton* cmdDisable;
    QPushButton* cmdRelease;
    QPushButton* cmdClose;
    QPushButton* cmdOCE;
    QPushButton* cmdDRC;
    QRadioButton* optSettings;
    QRadioButton* optFiscal;
    QRadioButton* optNonFiscal;
    QRadioButton* optReports;
    QRadioButton* optProps;
    QRadioButton* optDirectIO;
    QRadioButton* optAutoTests;
    QRadioButton* optMacro;
    QPushButton* cmdLogWindow;
    QPushButton* cmdEscSequences;

    QAction* actOpen;
    QAction* actClaim;
    QAction* actEnable;
    QAction* actDisable;
    QAction* actRelease;
    QAction* actClose;
    QAction* actOCE;
    QAction* actDRC;
    QAction* actLogWindow;
    QAction* actEscSequences;

signals:
    void openRequested();
    void claimRequested();
    void enableRequested();
    void disableRequested();
    void releaseRequested();
    void closeRequested();
    void openClaimEnableRequested();
    void disableReleaseCloseRequested();
    void panelChosen(frmToolbar::Panel panel);
    void logWindowRequested();
    void escSequencesRequested();

private:
    QAction* Back(QAbstractButton* button, const QKeySequence& shortcut);
    QAction* BackButton(QPushButton* button, const QKeySequence& shortcut, void (frmToolbar::*request)());

    QButtonGroup* m_panels;
    std::array<QAction*, PanelCount> m_panelActions{};
};
