#include "MDITestFPOPOS.h"

#include "EscStrings.h"
#include "ShellLayout.h"
#include "ShellPickers.h"
#include "clsDeviceLifecycle.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"
#include "clsStatusRefresh.h"
#include "frmApp.h"
#include "frmDirectIO.h"
#include "frmEscSequences.h"
#include "frmAutoTests.h"
#include "frmFiscalTicket.h"
#include "frmLog.h"
#include "frmMacro.h"
#include "frmNonFiscal.h"
#include "frmProperties.h"
#include "frmReports.h"
#include "frmSettings.h"
#include "frmStatusBar.h"

#include <QCloseEvent>
#include <QRadioButton>
#include <QTimer>

using ShellLayout::Px;

MDITestFPOPOS::MDITestFPOPOS(std::unique_ptr<IFiscalPrinter> control, QWidget* parent)
    : QWidget(parent), m_control(std::move(control)) {
    setObjectName(QStringLiteral("MDITestFPOPOS"));
    ShellPickers::InstallDialogSeams();

    // Both long-lived objects exist before any panel's load, since panels call the wrapper there.
    m_wrapper = std::make_unique<clsFprtWrapper>(*m_control);
    m_engine = std::make_unique<clsMacroEngine>(*m_wrapper);
    m_wrapper->SetRecorder(m_engine.get());
    m_engine->Construct();
    m_ctx = std::unique_ptr<PanelContext>(
        new PanelContext{*m_control, *m_wrapper, *m_engine, [this] { RefreshAfterCommand(); }});

    InitEscStrings();

    setWindowIcon(m_logo.Icon);
    setWindowTitle(MainWindowTitle(m_logo.lblCaption));

    // From here on every log line has its home, shown or not.
    m_log = std::make_unique<frmLog>();
    m_log->setWindowIcon(m_logo.Icon);
    m_log->setVisible(false);

    m_tmrUpdateControls = new QTimer(this);
    m_tmrUpdateControls->setObjectName(QStringLiteral("tmrUpdateControls"));
    m_tmrUpdateControls->setInterval(2000);

    BuildLayout();

    m_refresh = std::make_unique<clsStatusRefresh>(*m_control, *m_wrapper, *m_statusBar, *m_app);
    m_lifecycle = std::make_unique<clsDeviceLifecycle>(
        *m_wrapper, *m_tmrUpdateControls,
        clsDeviceLifecycle::Hooks{[this] { return m_logo.lblSOName; }, [this] { RefreshAfterCommand(); },
                                  [this] { RebuildDeviceLists(); }});
    ConnectToolbar();
    SetEscSequencesOpener([](QWidget* owner) {
        frmEscSequences generator(owner);
        generator.exec();
    });
    connect(m_tmrUpdateControls, &QTimer::timeout, m_fiscal, &frmFiscalTicket::MirrorReceiptOptions);
    // A receipt carries the additional header and trailer typed on the settings panel.
    m_fiscal->SetAdditionalTextSources([settings = m_settings] { return settings->AdditionalHeaderText(); },
                                       [settings = m_settings] { return settings->AdditionalTrailerText(); });

    // The last step of the load: Settings is the panel on show.
    m_toolbar->optSettings->setChecked(true);

    m_control->SetEventSink(this);
}

MDITestFPOPOS::~MDITestFPOPOS() {
    m_control->SetEventSink(nullptr);
    m_tmrUpdateControls->stop();
    m_log.reset();
    // The panels hold references into the members below; they go first.
    qDeleteAll(findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
}

void MDITestFPOPOS::BuildLayout() {
    m_app = new frmApp(*m_ctx, this);
    m_toolbar = new frmToolbar(this);
    m_toolbarHeight = Px(ShellLayout::ToolbarHeightTwips);
    m_toolbar->resize(m_toolbar->width(), m_toolbarHeight);

    // The frame's client area holds the full-width frmApp under the toolbar.
    resize(m_app->width(), m_app->height() + m_toolbarHeight);
    m_app->setGeometry(0, m_toolbarHeight, width(), height() - m_toolbarHeight);
    m_toolbar->setGeometry(0, 0, width(), m_toolbarHeight);

    m_leftColumn = m_app->LeftMarker();
    const int panelHeight = m_app->BottomMarker();

    m_settings = new frmSettings(*m_ctx, this);
    m_fiscal = new frmFiscalTicket(*m_ctx, this);
    m_nonFiscal = new frmNonFiscal(*m_ctx, this);
    m_reports = new frmReports(*m_ctx, this);
    QWidget* directIO = new frmDirectIO(*m_ctx, m_logo.lblSOName, this);
    m_properties = new frmProperties(*m_ctx, this);
    QWidget* autoTests = new frmAutoTests(*m_ctx, this);
    m_macro = new frmMacro(*m_ctx, this);
    QWidget* macro = m_macro;
    m_panels = {m_settings, m_fiscal, m_nonFiscal, m_reports, m_properties, directIO, autoTests, macro};
    for (QWidget* panel : {static_cast<QWidget*>(m_settings), static_cast<QWidget*>(m_fiscal),
                           static_cast<QWidget*>(m_nonFiscal), static_cast<QWidget*>(m_reports), directIO,
                           static_cast<QWidget*>(m_properties), autoTests, macro}) {
        panel->setGeometry(m_leftColumn, m_app->y(), m_app->width() - m_leftColumn, panelHeight);
        panel->setVisible(false);
    }

    m_statusBar = new frmStatusBar(this);
    m_statusBar->setGeometry(m_app->x(), m_app->y() + panelHeight, m_app->width(),
                             height() - (m_app->y() + panelHeight));
    m_statusBar->setVisible(true);
    m_statusBarHeight = m_statusBar->height();

    m_app->setGeometry(m_app->x(), m_app->y(), m_leftColumn, panelHeight);
}

void MDITestFPOPOS::ApplyLayout() {
    if (!m_statusBar)
        return;
    const auto g = ShellLayout::Arrange(size(), m_toolbarHeight, m_leftColumn, m_statusBarHeight);
    m_toolbar->setGeometry(g.toolbar);
    m_app->setGeometry(g.column);
    m_app->SetBottomMarker(g.panelHeight);
    for (QWidget* panel : m_panels)
        panel->setGeometry(g.panel);
    m_statusBar->setGeometry(g.statusBar);
}

void MDITestFPOPOS::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    ApplyLayout();
}

void MDITestFPOPOS::closeEvent(QCloseEvent* e) {
    // Unload: the log goes with the frame. The device is left as it is.
    m_log->close();
    QWidget::closeEvent(e);
}

void MDITestFPOPOS::ConnectToolbar() {
    clsDeviceLifecycle* life = m_lifecycle.get();
    connect(m_toolbar, &frmToolbar::openRequested, this, [life] { life->Open(); });
    connect(m_toolbar, &frmToolbar::claimRequested, this, [life] { life->Claim(); });
    connect(m_toolbar, &frmToolbar::enableRequested, this, [life] { life->Enable(); });
    connect(m_toolbar, &frmToolbar::disableRequested, this, [life] { life->Disable(); });
    connect(m_toolbar, &frmToolbar::releaseRequested, this, [life] { life->Release(); });
    connect(m_toolbar, &frmToolbar::closeRequested, this, [life] { life->Close(); });
    connect(m_toolbar, &frmToolbar::openClaimEnableRequested, this, [life] { life->OpenClaimEnable(); });
    connect(m_toolbar, &frmToolbar::disableReleaseCloseRequested, this,
            [life] { life->DisableReleaseClose(); });
    connect(m_toolbar, &frmToolbar::panelChosen, this, &MDITestFPOPOS::ShowPanel);
    connect(m_toolbar, &frmToolbar::logWindowRequested, this, &MDITestFPOPOS::ToggleLogWindow);
    connect(m_toolbar, &frmToolbar::escSequencesRequested, this, [this] {
        if (m_escSequencesOpener)
            m_escSequencesOpener(this);
    });
}

void MDITestFPOPOS::RebuildDeviceLists() {
    m_fiscal->RebuildVatList();
    m_reports->RebuildTotalizerVatList();
    m_fiscal->RebuildPaymentForms();
}

void MDITestFPOPOS::HideAllPanels() {
    for (QWidget* panel : {static_cast<QWidget*>(m_settings), static_cast<QWidget*>(m_nonFiscal),
                           static_cast<QWidget*>(m_fiscal), static_cast<QWidget*>(m_reports),
                           static_cast<QWidget*>(m_properties), m_panels[frmToolbar::DirectIO],
                           m_panels[frmToolbar::AutoTests], m_panels[frmToolbar::Macro]})
        panel->setVisible(false);
}

void MDITestFPOPOS::ShowPanel(frmToolbar::Panel panel) {
    HideAllPanels();
    m_panels[panel]->setVisible(true);
}

void MDITestFPOPOS::ToggleLogWindow() {
    if (m_log->isVisible()) {
        m_log->setVisible(false);
        return;
    }
    // The press on this button took the focus from the log, which hid itself: that press was
    // meant to hide it, not to show it again.
    if (m_log->JustHiddenByFocusLoss())
        return;
    m_log->show();
    m_log->raise();
    m_log->activateWindow();
}

void MDITestFPOPOS::SetEscSequencesOpener(std::function<void(QWidget*)> opener) {
    m_escSequencesOpener = std::move(opener);
}

void MDITestFPOPOS::RefreshAfterCommand() {
    m_refresh->RefreshAfterCommand();
}

void MDITestFPOPOS::UpdateResultStatus() {
    m_refresh->UpdateResultStatus();
}

void MDITestFPOPOS::UpdateStateLabel() {
    m_refresh->UpdateStateLabel();
}

void MDITestFPOPOS::UpdatePrinterStateLabel() {
    m_refresh->UpdatePrinterStateLabel();
}
