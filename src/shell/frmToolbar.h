#pragma once

#include <QWidget>

class QButtonGroup;
class QPushButton;
class QRadioButton;

// The strip across the top. It holds no state and calls nothing: each control announces what
// the operator asked for, and the main window acts on it.
class frmToolbar : public QWidget {
    Q_OBJECT
public:
    // The eight operator panels, in the order of the option buttons.
    enum Panel { Settings, Fiscal, NonFiscal, Reports, Props, DirectIO, AutoTests, Macro, PanelCount };

    explicit frmToolbar(QWidget* parent = nullptr);

    QRadioButton* Option(Panel panel) const;

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
    QButtonGroup* m_panels;
};
