#include "MDITestFPOPOS.h"

#include "EscStrings.h"
#include "Seams.h"
#include "ShellLayout.h"
#include "ShellPickers.h"
#include "SimulatedFiscalPrinter.h"
#include "clsBenchCore.h"
#include "frmApp.h"
#include "frmAutoTests.h"
#include "frmDirectIO.h"
#include "frmEscSequences.h"
#include "frmFiscalTicket.h"
#include "frmLog.h"
#include "frmMacro.h"
#include "frmNonFiscal.h"
#include "frmPrinter.h"
#include "frmProperties.h"
#include "frmReports.h"
#include "frmSettings.h"
#include "frmStatusBar.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QLabel>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTimer>
#include <QToolButton>

namespace {

// The operator answers an ErrorEvent in a Retry / Cancel box.
bool AskRetry(const QString& question) {
    return ShowMessage(question, MsgButtons::RetryCancel) == MsgResult::Retry;
}

// Takes the height its stretch factor gives it, never less than its contents need.
void StretchVertically(QWidget* w) {
    w->setMinimumHeight(w->minimumSizeHint().height());
    QSizePolicy policy = w->sizePolicy();
    policy.setVerticalPolicy(QSizePolicy::Ignored);
    w->setSizePolicy(policy);
}

} // namespace

MDITestFPOPOS::MDITestFPOPOS(std::unique_ptr<IFiscalPrinter> control, QWidget* parent)
    : MDITestFPOPOS(std::move(control), frmLOGO(), parent) {}

MDITestFPOPOS::MDITestFPOPOS(std::unique_ptr<IFiscalPrinter> control, frmLOGO logo, QWidget* parent)
    : QWidget(parent), m_core(std::make_unique<clsBenchCore>(std::move(control), AskRetry)),
      m_logo(std::move(logo)) {
    setObjectName(QStringLiteral("MDITestFPOPOS"));
    ShellPickers::InstallDialogSeams();

    // The core made the wrapper and the macro engine: both exist before any panel's load, since
    // panels call the wrapper there.
    m_ctx = std::unique_ptr<PanelContext>(new PanelContext{m_core->Control(), m_core->FprtWrapper(),
                                                           m_core->MacroEngine(),
                                                           [this] { m_core->RefreshAfterCommand(); }});

    InitEscStrings();

    setWindowIcon(m_logo.Icon);
    setWindowTitle(MainWindowTitle(m_logo.lblCaption));

    m_log = std::make_unique<frmLog>(m_core->Log());
    m_log->setWindowIcon(m_logo.Icon);
    m_log->setVisible(false);

    BuildFrame();
    ConnectToolbar();
    SetEscSequencesOpener([](QWidget* owner) {
        frmEscSequences generator(owner);
        generator.exec();
    });
    ConnectCore();
    connect(m_core->tmrUpdateControls(), &QTimer::timeout, m_fiscal, &frmFiscalTicket::MirrorReceiptOptions);
    // A receipt carries the additional header and trailer typed on the settings panel.
    m_fiscal->SetAdditionalTextSources([settings = m_settings] { return settings->AdditionalHeaderText(); },
                                       [settings = m_settings] { return settings->AdditionalTrailerText(); });

    // The last step of the load: Settings is the panel on show.
    m_toolbar->optSettings->setChecked(true);
}

MDITestFPOPOS::~MDITestFPOPOS() {
    m_core->tmrUpdateControls()->stop();
    m_printerWindow.reset();
    m_log.reset();
    // The panels hold references into the core; they go first.
    qDeleteAll(findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
}

IFiscalPrinter& MDITestFPOPOS::Control() const {
    return m_core->Control();
}

clsFprtWrapper& MDITestFPOPOS::FprtWrapper() const {
    return m_core->FprtWrapper();
}

clsMacroEngine& MDITestFPOPOS::MacroEngine() const {
    return m_core->MacroEngine();
}

QTimer* MDITestFPOPOS::tmrUpdateControls() const {
    return m_core->tmrUpdateControls();
}

// The toolbar across the top; below it the left column and the panel on show; the status bar
// along the bottom. The column keeps its width and the toolbar its height; the panels and the
// status bar share the rest of the height in the proportion of their design heights.
void MDITestFPOPOS::BuildFrame() {
    m_app = new frmApp(*m_ctx, this);
    m_toolbar = new frmToolbar(this);

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

    m_stack = new QStackedWidget(this);
    m_stack->setObjectName(QStringLiteral("stkPanels"));
    for (QWidget* panel : m_panels)
        m_stack->addWidget(panel);
    StretchVertically(m_stack);

    m_statusBar = new frmStatusBar(this);
    StretchVertically(m_statusBar);
    m_cmdPrinterWindow = new QToolButton(this);
    m_cmdPrinterWindow->setObjectName(QStringLiteral("cmdPrinterWindow"));
    m_cmdPrinterWindow->setText(QStringLiteral("Printer"));
    m_cmdPrinterWindow->setShortcut(QKeySequence(Qt::Key_F9));
    m_cmdPrinterWindow->setToolTip(
        QStringLiteral("The simulated printer: paper, display, drawer, faults (F9)"));
    m_statusBar->AddAtRightEnd(m_cmdPrinterWindow);

    auto* body = new QHBoxLayout;
    body->setContentsMargins(0, 0, 0, 0);
    body->setSpacing(0);
    body->addWidget(m_app);
    body->addWidget(m_stack, 1);

    auto* frame = new QVBoxLayout(this);
    frame->setContentsMargins(0, 0, 0, 0);
    frame->setSpacing(0);
    frame->addWidget(m_toolbar);
    frame->addLayout(body, ShellLayout::PanelHeightTwips);
    frame->addWidget(m_statusBar, ShellLayout::StatusBarHeightTwips);

    using ShellLayout::Px;
    resize(QSize(Px(ShellLayout::AppWidthTwips),
                 Px(ShellLayout::ToolbarHeightTwips + ShellLayout::AppHeightTwips))
               .expandedTo(minimumSizeHint()));
}

void MDITestFPOPOS::closeEvent(QCloseEvent* e) {
    // Unload: the log goes with the frame. The device is left as it is.
    m_log->close();
    QWidget::closeEvent(e);
}

void MDITestFPOPOS::ConnectToolbar() {
    clsBenchCore* core = m_core.get();
    connect(m_toolbar, &frmToolbar::openRequested, this, [this, core] { core->Open(m_logo.lblSOName); });
    connect(m_toolbar, &frmToolbar::claimRequested, core, &clsBenchCore::Claim);
    connect(m_toolbar, &frmToolbar::enableRequested, core, &clsBenchCore::Enable);
    connect(m_toolbar, &frmToolbar::disableRequested, core, &clsBenchCore::Disable);
    connect(m_toolbar, &frmToolbar::releaseRequested, core, &clsBenchCore::Release);
    connect(m_toolbar, &frmToolbar::closeRequested, core, &clsBenchCore::Close);
    connect(m_toolbar, &frmToolbar::openClaimEnableRequested, this,
            [this, core] { core->OpenClaimEnable(m_logo.lblSOName); });
    connect(m_toolbar, &frmToolbar::disableReleaseCloseRequested, core, &clsBenchCore::DisableReleaseClose);
    connect(m_toolbar, &frmToolbar::panelChosen, this, &MDITestFPOPOS::ShowPanel);
    connect(m_toolbar, &frmToolbar::logWindowRequested, this, &MDITestFPOPOS::ToggleLogWindow);
    connect(m_cmdPrinterWindow, &QToolButton::clicked, this, &MDITestFPOPOS::ShowPrinterWindow);
    connect(m_toolbar, &frmToolbar::escSequencesRequested, this, [this] {
        if (m_escSequencesOpener)
            m_escSequencesOpener(this);
    });
}

void MDITestFPOPOS::ConnectCore() {
    clsBenchCore* core = m_core.get();
    connect(core, &clsBenchCore::resultStatusUpdated, m_statusBar, &frmStatusBar::ShowResult);
    connect(core, &clsBenchCore::stateLabelUpdated, m_app->lblOposState, &QLabel::setText);
    connect(core, &clsBenchCore::printerStateLabelUpdated, m_app->lblFPState, &QLabel::setText);
    connect(core, &clsBenchCore::alarmChanged, m_statusBar, &frmStatusBar::SetAlarm);
    connect(core, &clsBenchCore::deviceListsOutdated, this, &MDITestFPOPOS::RebuildDeviceLists);
}

void MDITestFPOPOS::RebuildDeviceLists() {
    m_fiscal->RebuildVatList();
    m_reports->RebuildTotalizerVatList();
    m_fiscal->RebuildPaymentForms();
}

void MDITestFPOPOS::ShowPanel(frmToolbar::Panel panel) {
    m_stack->setCurrentWidget(m_panels[panel]);
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

void MDITestFPOPOS::ShowPrinterWindow() {
    if (!m_printerWindow) {
        m_printerWindow = std::make_unique<frmPrinter>();
        m_printerWindow->setWindowIcon(m_logo.Icon);
        m_printerWindow->SetPrinter(dynamic_cast<SimulatedFiscalPrinter*>(&m_core->Control()));
        if (!m_printerWindow->HasSavedGeometry())
            m_printerWindow->move(frameGeometry().topRight() + QPoint(8, 0));
    }
    m_printerWindow->show();
    m_printerWindow->raise();
    m_printerWindow->activateWindow();
}

void MDITestFPOPOS::SetEscSequencesOpener(std::function<void(QWidget*)> opener) {
    m_escSequencesOpener = std::move(opener);
}
