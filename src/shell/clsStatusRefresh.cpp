#include "clsStatusRefresh.h"

#include "Seams.h"
#include "Tools.h"
#include "clsFprtWrapper.h"
#include "frmApp.h"
#include "frmStatusBar.h"

#include <QLabel>

clsStatusRefresh::clsStatusRefresh(IFiscalPrinter& control, clsFprtWrapper& wrapper, frmStatusBar& bar,
                                   frmApp& app)
    : m_control(control), m_wrapper(wrapper), m_bar(bar), m_app(app) {}

void clsStatusRefresh::RefreshAfterCommand() {
    UpdateResultStatus();
    UpdateStateLabel();
    UpdatePrinterStateLabel();
}

QString clsStatusRefresh::ErrorsText(int32_t code, int32_t extended, const QString& errorString) {
    return QStringLiteral("ERRORS: ") + Tools::ResultCodeName(code) + QStringLiteral("(%1)  ").arg(code) +
           Tools::ResultCodeExtendedName(extended) + QStringLiteral("(%1)  ").arg(extended) + errorString;
}

QString clsStatusRefresh::StateLabelText(const QString& name, int32_t value) {
    return name + QStringLiteral("   (") + Tools::NumberText(value) + QLatin1Char(')');
}

void clsStatusRefresh::UpdateResultStatus() {
    // Straight from the control: these reads must leave no log line.
    const int32_t code = m_control.ResultCode();
    const int32_t extended = m_control.ResultCodeExtended();
    const QString errorString = m_control.ErrorString();

    m_bar.lblErrorCode->setText(Tools::ResultCodeName(code) + QStringLiteral("(%1)").arg(code));
    m_bar.lblErrorCodeExt->setText(Tools::ResultCodeExtendedName(extended) +
                                   QStringLiteral("(%1)").arg(extended));
    m_bar.lblErrorCodeDescription->setText(errorString);

    if (code != 0)
        ShowMessage(ErrorsText(code, extended, errorString));
}

void clsStatusRefresh::UpdateStateLabel() {
    const int32_t state = m_wrapper.State();
    m_app.lblOposState->setText(StateLabelText(Tools::StateName(state), state));
}

void clsStatusRefresh::UpdatePrinterStateLabel() {
    const int32_t state = m_control.PrinterState();
    m_app.lblFPState->setText(StateLabelText(Tools::PrinterStateName(state), state));
}
