#pragma once

#include "IFiscalPrinter.h"
#include "PanelContext.h"
#include "frmLOGO.h"
#include "frmToolbar.h"

#include <QWidget>

#include <array>
#include <functional>
#include <memory>

class QStackedWidget;
class QTimer;
class clsBenchCore;
class clsFprtWrapper;
class clsMacroEngine;
class frmApp;
class frmFiscalTicket;
class frmLog;
class frmMacro;
class frmNonFiscal;
class frmPrinter;
class QToolButton;
class frmProperties;
class frmReports;
class frmSettings;
class frmStatusBar;

// The bench's frame. It holds the bench's core (control, log, wrapper, macro engine), builds
// every window once and shows what the core says: the toolbar's requests go to the core, the
// core's results, state texts and alarms come back to the status bar and the left column.
class MDITestFPOPOS : public QWidget {
    Q_OBJECT
public:
    explicit MDITestFPOPOS(std::unique_ptr<IFiscalPrinter> control, QWidget* parent = nullptr);
    // With a customisation record other than the build's, such as another device name.
    MDITestFPOPOS(std::unique_ptr<IFiscalPrinter> control, frmLOGO logo, QWidget* parent = nullptr);
    ~MDITestFPOPOS() override;

    // The toolbar's Log Window: shows the log when hidden, hides it when shown.
    void ToggleLogWindow();
    void ShowPanel(frmToolbar::Panel panel);
    // The printer window beside the main window, made at its first opening.
    void ShowPrinterWindow();
    frmPrinter* PrinterWindow() const { return m_printerWindow.get(); }
    QToolButton* cmdPrinterWindow() const { return m_cmdPrinterWindow; }

    // Opens the Esc sequences generator modally; until one is set, ESC Seq does nothing.
    void SetEscSequencesOpener(std::function<void(QWidget* owner)> opener);

    clsBenchCore& Core() const { return *m_core; }
    IFiscalPrinter& Control() const;
    clsFprtWrapper& FprtWrapper() const;
    clsMacroEngine& MacroEngine() const;
    QTimer* tmrUpdateControls() const;
    frmLOGO& Logo() { return m_logo; }

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
    void closeEvent(QCloseEvent* e) override;

private:
    void BuildFrame();
    void ConnectToolbar();
    void ConnectCore();
    void RebuildDeviceLists();

    std::unique_ptr<clsBenchCore> m_core;
    std::unique_ptr<PanelContext> m_ctx;
    frmLOGO m_logo;
    std::unique_ptr<frmLog> m_log;

    frmApp* m_app = nullptr;
    frmToolbar* m_toolbar = nullptr;
    QStackedWidget* m_stack = nullptr;
    frmStatusBar* m_statusBar = nullptr;
    frmSettings* m_settings = nullptr;
    frmFiscalTicket* m_fiscal = nullptr;
    frmNonFiscal* m_nonFiscal = nullptr;
    frmReports* m_reports = nullptr;
    frmProperties* m_properties = nullptr;
    frmMacro* m_macro = nullptr;
    std::array<QWidget*, frmToolbar::PanelCount> m_panels{};

    std::function<void(QWidget*)> m_escSequencesOpener;
    QToolButton* m_cmdPrinterWindow = nullptr;
    std::unique_ptr<frmPrinter> m_printerWindow;
};
