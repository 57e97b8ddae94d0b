#pragma once

#include <QString>

#include <cstdint>

class IFiscalPrinter;
class clsFprtWrapper;
class frmApp;
class frmStatusBar;

// What every action ends with: the latest result in the status bar, the "ERRORS: " box when it
// failed, and the two state labels repainted.
class clsStatusRefresh {
public:
    clsStatusRefresh(IFiscalPrinter& control, clsFprtWrapper& wrapper, frmStatusBar& bar, frmApp& app);

    void RefreshAfterCommand();
    void UpdateResultStatus();
    void UpdateStateLabel();
    void UpdatePrinterStateLabel();

    static QString ErrorsText(int32_t code, int32_t extended, const QString& errorString);
    // A state label: the name, three blanks and the number in brackets with a blank for its sign.
    static QString StateLabelText(const QString& name, int32_t value);

private:
    IFiscalPrinter& m_control;
    clsFprtWrapper& m_wrapper;
    frmStatusBar& m_bar;
    frmApp& m_app;
};
