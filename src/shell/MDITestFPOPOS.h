#pragma once

#include "IFiscalPrinter.h"
#include "PanelContext.h"
#include "frmLOGO.h"
#include "frmToolbar.h"

#include <QWidget>

#include <array>
#include <functional>
#include <memory>

class QTimer;
class clsDeviceLifecycle;
class clsFprtWrapper;
class clsMacroEngine;
class clsStatusRefresh;
class frmApp;
class frmFiscalTicket;
class frmLog;
class frmMacro;
class frmNonFiscal;
class frmProperties;
class frmReports;
class frmSettings;
class frmStatusBar;

// The bench's frame. It owns the control, the wrapper and the macro engine, builds every window
// once, routes the toolbar's requests and takes the control's events.
class MDITestFPOPOS : public QWidget, public IFiscalPrinterEvents {
    Q_OBJECT
public:
    explicit MDITestFPOPOS(std::unique_ptr<IFiscalPrinter> control, QWidget* parent = nullptr);
    ~MDITestFPOPOS() override;

    void ErrorEvent(int32_t ResultCode, int32_t ResultCodeExtended, int32_t ErrorLocus,
                    int32_t& pErrorResponse) override;
    void OutputCompleteEvent(int32_t OutputID) override;
    void StatusUpdateEvent(int32_t Status) override;

    void RefreshAfterCommand();
    void UpdateResultStatus();
    void UpdateStateLabel();
    void UpdatePrinterStateLabel();

    // The toolbar's Log Window: shows the log when hidden, hides it when shown.
    void ToggleLogWindow();
    void HideAllPanels();
    void ShowPanel(frmToolbar::Panel panel);

    // Opens the Esc sequences generator modally; until one is set, ESC Seq does nothing.
    void SetEscSequencesOpener(std::function<void(QWidget* owner)> opener);

    IFiscalPrinter& Control() const { return *m_control; }
    clsFprtWrapper& FprtWrapper() const { return *m_wrapper; }
    clsMacroEngine& MacroEngine() const { return *m_engine; }
    clsDeviceLifecycle& Lifecycle() const { return *m_lifecycle; }
    frmLOGO& Logo() { return m_logo; }
    QTimer* tmrUpdateControls() const { return m_tmrUpdateControls; }

    frmApp* App() const { return m_app; }
    frmToolbar* Toolbar() const { return m_toolbar; }
    frmStatusBar* StatusBar() const { return m_statusBar; }
    frmLog* Log() const { return m_log.get(); }
    QWidget* Panel(frmToolbar::Panel panel) const { return m_panels[panel]; }
    frmSettings* Settings() const { return m_settings; }
    frmFiscalTicket* FiscalTicket() const { return m_fiscal; }
    frmNonFiscal* NonFiscal() const { return m_nonFiscal; }
    frmReports* Reports() const { return m_reports; }
    frmProperties* Properties() const { return m_properties; }
    frmMacro* Macro() const { return m_macro; }

protected:
    void resizeEvent(QResizeEvent* e) override;
    void closeEvent(QCloseEvent* e) override;

private:
    void BuildLayout();
    void ApplyLayout();
    void ConnectToolbar();
    void RebuildDeviceLists();

    std::unique_ptr<IFiscalPrinter> m_control;
    std::unique_ptr<clsFprtWrapper> m_wrapper;
    std::unique_ptr<clsMacroEngine> m_engine;
    std::unique_ptr<PanelContext> m_ctx;
    frmLOGO m_logo;
    std::unique_ptr<frmLog> m_log;
    QTimer* m_tmrUpdateControls;

    frmApp* m_app = nullptr;
    frmToolbar* m_toolbar = nullptr;
    frmStatusBar* m_statusBar = nullptr;
    frmSettings* m_settings = nullptr;
    frmFiscalTicket* m_fiscal = nullptr;
    frmNonFiscal* m_nonFiscal = nullptr;
    frmReports* m_reports = nullptr;
    frmProperties* m_properties = nullptr;
    frmMacro* m_macro = nullptr;
    std::array<QWidget*, frmToolbar::PanelCount> m_panels{};

    std::unique_ptr<clsStatusRefresh> m_refresh;
    std::unique_ptr<clsDeviceLifecycle> m_lifecycle;
    std::function<void(QWidget*)> m_escSequencesOpener;

    int m_toolbarHeight = 0;
    int m_leftColumn = 0;
    int m_statusBarHeight = 0;
};
