#include "frmPrinter.h"

#include "FiscalMemoryFile.h"
#include "PaperExport.h"
#include "PaperView.h"
#include "PrinterPanels.h"
#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "Tools.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QSettings>
#include <QSplitter>
#include <QVBoxLayout>

#include <utility>

namespace {

QPushButton* Button(const QString& text, const char* name, const QString& tip, QWidget* parent) {
    auto* b = new QPushButton(text, parent);
    b->setObjectName(QLatin1String(name));
    b->setToolTip(tip);
    return b;
}

QWidget* Titled(const QString& title, QWidget* content, QWidget* parent) {
    auto* box = new QWidget(parent);
    auto* caption = new QLabel(QStringLiteral("<b>%1</b>").arg(title), box);
    auto* l = new QVBoxLayout(box);
    l->setContentsMargins(0, 0, 0, 0);
    l->setSpacing(2);
    l->addWidget(caption);
    l->addWidget(content, 1);
    return box;
}

QGroupBox* Group(const QString& title, QWidget* content, QWidget* parent) {
    auto* g = new QGroupBox(title, parent);
    auto* l = new QVBoxLayout(g);
    l->addWidget(content);
    return g;
}

} // namespace

frmPrinter::frmPrinter(QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName(QStringLiteral("frmPrinter"));
    setWindowTitle(QStringLiteral("Printer"));
    BuildWindow();
    ConnectPanels();
    m_pendingTimer.setSingleShot(true);
    m_pendingTimer.setInterval(50);
    connect(&m_pendingTimer, &QTimer::timeout, this, &frmPrinter::ShowPending);
    m_clock.setInterval(1000);
    connect(&m_clock, &QTimer::timeout, this, [this] {
        if (m_printer)
            panFiscalMemory->Show(*m_printer);
    });
    RestoreSettings();
    SetPrinter(nullptr);
}

frmPrinter::~frmPrinter() {
    SaveSettings();
}

void frmPrinter::BuildWindow() {
    lblDevice = new QLabel(this);
    lblDevice->setObjectName(QStringLiteral("lblDevice"));
    lblDevice->setWordWrap(true);

    viewReceipt = new PaperView(this);
    viewReceipt->setObjectName(QStringLiteral("viewReceipt"));
    viewJournal = new PaperView(this);
    viewJournal->setObjectName(QStringLiteral("viewJournal"));
    m_lastClicked = viewReceipt;

    cmdCopyReceipt =
        Button(QStringLiteral("Copy receipt"), "cmdCopyReceipt",
               QStringLiteral("Copies the selected document as text (click a receipt to select it)"), this);
    cmdExportPng = Button(QStringLiteral("Receipt as PNG…"), "cmdExportPng",
                          QStringLiteral("Saves the selected document as a picture"), this);
    cmdExportPdf = Button(QStringLiteral("Roll as PDF…"), "cmdExportPdf",
                          QStringLiteral("Saves the whole roll of the selected document as a PDF"), this);
    cmdFollowEnd = Button(QStringLiteral("Follow the end"), "cmdFollowEnd",
                          QStringLiteral("Scrolls both rolls to the paper being printed"), this);
    chkShowJournal = new QCheckBox(QStringLiteral("Journal"), this);
    chkShowJournal->setObjectName(QStringLiteral("chkShowJournal"));
    chkShowJournal->setChecked(true);

    auto* actions = new QHBoxLayout;
    for (QWidget* w :
         std::initializer_list<QWidget*>{cmdCopyReceipt, cmdExportPng, cmdExportPdf, cmdFollowEnd})
        actions->addWidget(w);
    actions->addStretch(1);
    actions->addWidget(chkShowJournal);

    splRolls = new QSplitter(Qt::Horizontal, this);
    splRolls->setObjectName(QStringLiteral("splRolls"));
    splRolls->addWidget(Titled(QStringLiteral("Receipt"), viewReceipt, splRolls));
    splRolls->addWidget(Titled(QStringLiteral("Journal"), viewJournal, splRolls));

    auto* paper = new QWidget(this);
    auto* pl = new QVBoxLayout(paper);
    pl->setContentsMargins(0, 0, 0, 0);
    pl->addLayout(actions);
    pl->addWidget(splRolls, 1);

    panStatus = new PrinterStatusPanel(this);
    panFaults = new PrinterFaultPanel(this);
    panFiscalMemory = new FiscalMemoryPanel(this);
    cmdNewFiscalMemory = Button(QStringLiteral("New fiscal memory…"), "cmdNewFiscalMemory", {}, this);
    panFiscalMemory->Actions()->addWidget(cmdNewFiscalMemory);
    panFiscalMemory->Actions()->addStretch(1);
    auto* side = new QWidget(this);
    auto* sl = new QVBoxLayout(side);
    sl->addWidget(panStatus);
    sl->addWidget(Group(QStringLiteral("Faults"), panFaults, side));
    sl->addWidget(Group(QStringLiteral("Fiscal memory"), panFiscalMemory, side));
    sl->addStretch(1);
    auto* sideScroll = new QScrollArea(this);
    sideScroll->setObjectName(QStringLiteral("scrSide"));
    sideScroll->setWidgetResizable(true);
    sideScroll->setWidget(side);
    sideScroll->setMinimumWidth(side->sizeHint().width() + 20);

    splPrinter = new QSplitter(Qt::Horizontal, this);
    splPrinter->setObjectName(QStringLiteral("splPrinter"));
    splPrinter->addWidget(paper);
    splPrinter->addWidget(sideScroll);
    splPrinter->setStretchFactor(0, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblDevice);
    layout->addWidget(splPrinter, 1);
    resize(1200, 800);
}

// The window's own controls: what the person asks goes to the simulator here and nowhere else.
void frmPrinter::ConnectPanels() {
    for (PaperView* view : {viewReceipt, viewJournal}) {
        PaperView* other = view == viewReceipt ? viewJournal : viewReceipt;
        connect(view, &PaperView::clicked, this, [this, view, other] {
            m_lastClicked = view;
            other->ClearSelection();
        });
        connect(view, &PaperView::selectionChanged, this, &frmPrinter::UpdateActions);
    }
    connect(cmdCopyReceipt, &QPushButton::clicked, this, &frmPrinter::CopySelectedDocument);
    connect(cmdExportPng, &QPushButton::clicked, this, [this] {
        const QString path = PickSaveFile(this, QStringLiteral("PNG pictures (*.png)"),
                                          QStringLiteral("Save the receipt as"), {});
        if (!path.isEmpty())
            ExportSelectedPng(path);
    });
    connect(cmdExportPdf, &QPushButton::clicked, this, [this] {
        const QString path = PickSaveFile(this, QStringLiteral("PDF documents (*.pdf)"),
                                          QStringLiteral("Save the roll as"), {});
        if (!path.isEmpty())
            ExportRollPdf(path);
    });
    connect(cmdNewFiscalMemory, &QPushButton::clicked, this, &frmPrinter::StartNewFiscalMemory);
    connect(cmdFollowEnd, &QPushButton::clicked, this, [this] {
        viewReceipt->ScrollToEnd();
        viewJournal->ScrollToEnd();
    });
    connect(chkShowJournal, &QCheckBox::toggled, this,
            [this](bool on) { splRolls->widget(1)->setVisible(on); });

    connect(panStatus, &PrinterStatusPanel::closeDrawerRequested, this, [this] {
        if (m_printer)
            m_printer->CloseDrawer();
    });
    connect(panFaults, &PrinterFaultPanel::coverRequested, this, [this](bool open) {
        if (m_printer)
            m_printer->SetCoverOpen(open);
    });
    connect(panFaults, &PrinterFaultPanel::receiptPaperRequested, this, [this](sim::PaperLevel level) {
        if (m_printer)
            m_printer->SetReceiptPaper(level);
    });
    connect(panFaults, &PrinterFaultPanel::journalPaperRequested, this, [this](sim::PaperLevel level) {
        if (m_printer)
            m_printer->SetJournalPaper(level);
    });
    connect(panFaults, &PrinterFaultPanel::offlineRequested, this, [this](bool offline) {
        if (m_printer)
            m_printer->SetOffline(offline);
    });
    connect(panFaults, &PrinterFaultPanel::powerOffRequested, this, [this](bool off) {
        if (m_printer)
            m_printer->SetPowerOff(off);
    });
    connect(panFaults, &PrinterFaultPanel::failNextRequested, this,
            [this](const QString& method, int32_t code, int32_t extended) {
                if (m_printer)
                    m_printer->FailNextCall(method, code, extended);
            });
}

void frmPrinter::SetPrinter(SimulatedFiscalPrinter* printer) {
    for (const auto& c : m_printerConnections)
        disconnect(c);
    m_printerConnections.clear();
    m_printer = printer;
    const auto bitmaps = [this](int slot) { return m_printer ? m_printer->Bitmaps().Get(slot) : QImage(); };
    viewReceipt->SetRoll(printer ? &printer->ReceiptRoll() : nullptr, bitmaps);
    viewJournal->SetRoll(printer ? &printer->JournalRoll() : nullptr, bitmaps);
    for (QWidget* w : std::initializer_list<QWidget*>{panStatus, panFaults, panFiscalMemory})
        w->setEnabled(printer != nullptr);
    if (printer) {
        ConnectPrinter();
        ShowAll();
    } else {
        lblDevice->setText(
            QStringLiteral("The bench's device is not the simulated printer: there is nothing to show."));
        UpdateMemoryActions();
    }
    UpdateActions();
}

// Everything the window follows, in one place.
void frmPrinter::ConnectPrinter() {
    SimulatedFiscalPrinter* p = m_printer;
    auto& c = m_printerConnections;
    c << connect(p, &SimulatedFiscalPrinter::sessionChanged, this, [this] { Later(SessionPending); });
    c << connect(p, &SimulatedFiscalPrinter::printerStateChanged, this, [this] { Later(SessionPending); });
    c << connect(p, &SimulatedFiscalPrinter::fiscalMemoryChanged, this, [this] { Later(MemoryPending); });
    c << connect(&p->Display(), &sim::CustomerDisplay::changed, this, [this] { Later(DisplayPending); });
    c << connect(&p->Hardware(), &sim::Machine::changed, this, &frmPrinter::ShowMachine);
    c << connect(&p->Drawer(), &sim::CashDrawer::opened, this, [this] { panStatus->ShowDrawer(true); });
    c << connect(&p->Drawer(), &sim::CashDrawer::closed, this, [this] { panStatus->ShowDrawer(false); });
    c << connect(p, &QObject::destroyed, this, [this] { SetPrinter(nullptr); });
}

void frmPrinter::ShowSession() {
    SimulatedFiscalPrinter& p = *m_printer;
    QString text = QStringLiteral("Simulated printer");
    if (p.DeviceName().isEmpty()) {
        text += QStringLiteral(", closed");
    } else {
        text += QStringLiteral(" %1: open").arg(p.DeviceName());
        if (p.Claimed())
            text += QStringLiteral(", claimed");
        if (p.DeviceEnabled())
            text += QStringLiteral(", enabled");
        const int32_t state = p.PrinterState();
        text += QStringLiteral("; %1 (%2)").arg(Tools::PrinterStateName(state)).arg(state);
    }
    if (p.PendingJobs() > 0)
        text += QStringLiteral("; %1 jobs queued").arg(p.PendingJobs());
    lblDevice->setText(text);
    setWindowTitle(p.DeviceName().isEmpty() ? QStringLiteral("Printer")
                                            : QStringLiteral("Printer: %1").arg(p.DeviceName()));
}

bool frmPrinter::UpdatesPending() const {
    return m_pendingTimer.isActive() || viewReceipt->LayoutPending() || viewJournal->LayoutPending();
}

void frmPrinter::Later(unsigned what) {
    m_pending |= what;
    if (!m_pendingTimer.isActive())
        m_pendingTimer.start();
}

void frmPrinter::ShowPending() {
    const unsigned pending = std::exchange(m_pending, 0);
    if (!m_printer)
        return;
    if (pending & SessionPending)
        ShowSession();
    if (pending & DisplayPending)
        panStatus->Show(*m_printer);
    if (pending & MemoryPending) {
        panFiscalMemory->Show(*m_printer);
        UpdateMemoryActions();
    }
}

void frmPrinter::ShowMachine() {
    panStatus->Show(*m_printer);
    panFaults->Show(m_printer->Hardware());
}

void frmPrinter::ShowAll() {
    m_pending = 0;
    ShowSession();
    ShowMachine();
    panStatus->ShowDrawer(m_printer->Drawer().IsOpen());
    panFiscalMemory->Show(*m_printer);
    UpdateMemoryActions();
}

PaperView* frmPrinter::CurrentView() const {
    if (viewJournal->Selection())
        return viewJournal;
    if (viewReceipt->Selection())
        return viewReceipt;
    return m_lastClicked;
}

void frmPrinter::UpdateActions() {
    const bool selected = CurrentView()->Selection().has_value();
    cmdCopyReceipt->setEnabled(selected);
    cmdExportPng->setEnabled(selected);
    cmdExportPdf->setEnabled(m_printer != nullptr);
}

// Offered only for a memory in a file; refusals for a busy printer come when it is pressed.
void frmPrinter::UpdateMemoryActions() {
    QString why;
    if (!m_printer)
        why =
            QStringLiteral("The bench's device is not the simulated printer: it has no fiscal memory here to "
                           "start anew.");
    else
        why = sim::NewFiscalMemoryUnavailable(*m_printer);
    cmdNewFiscalMemory->setEnabled(why.isEmpty());
    cmdNewFiscalMemory->setToolTip(
        why.isEmpty()
            ? QStringLiteral("Moves the %1's fiscal memory file aside, kept, and starts the printer "
                             "again on a new one (asked first)")
                  .arg(m_printer->Model().deviceName)
            : why);
}

bool frmPrinter::StartNewFiscalMemory() {
    if (!m_printer)
        return false;
    const bool fresh = sim::StartNewFiscalMemory(*m_printer);
    ShowAll();
    return fresh;
}

QString frmPrinter::SelectedDocumentText() const {
    const PaperView* view = CurrentView();
    const auto range = view->Selection();
    if (!range || !view->Roll())
        return {};
    return paper_export::DocumentText(view->Roll()->Lines(), range->first, range->last);
}

bool frmPrinter::CopySelectedDocument() {
    const QString text = SelectedDocumentText();
    if (text.isEmpty())
        return false;
    QGuiApplication::clipboard()->setText(text);
    return true;
}

bool frmPrinter::ExportSelectedPng(const QString& path) {
    const PaperView* view = CurrentView();
    const auto range = view->Selection();
    if (!range || !view->Roll()) {
        ShowMessage(QStringLiteral("Click a receipt on the paper to select it first."));
        return false;
    }
    QString error;
    const QImage image = paper_export::RenderDocument(
        view->Painter(), view->Roll()->Lines(), range->first, range->last,
        [view](qsizetype i) { return view->BitmapOf(i); }, &error);
    if (image.isNull() || !paper_export::SavePng(image, path, &error)) {
        ShowMessage(error);
        return false;
    }
    return true;
}

bool frmPrinter::ExportRollPdf(const QString& path) {
    const PaperView* view = CurrentView();
    if (!view->Roll()) {
        ShowMessage(QStringLiteral("There is no roll to save."));
        return false;
    }
    QString error;
    if (!paper_export::SavePdf(
            view->Painter(), view->Roll()->Lines(), [view](qsizetype i) { return view->BitmapOf(i); }, path,
            &error)) {
        ShowMessage(error);
        return false;
    }
    return true;
}

void frmPrinter::showEvent(QShowEvent* e) {
    QWidget::showEvent(e);
    m_clock.start();
    if (m_printer)
        panFiscalMemory->Show(*m_printer);
}

void frmPrinter::hideEvent(QHideEvent* e) {
    m_clock.stop();
    SaveSettings();
    QWidget::hideEvent(e);
}

void frmPrinter::RestoreSettings() {
    QSettings s;
    if (const QByteArray g = s.value(SettingsPrefix + QStringLiteral("geometry")).toByteArray(); !g.isEmpty())
        m_savedGeometry = restoreGeometry(g);
    splPrinter->restoreState(s.value(SettingsPrefix + QStringLiteral("splitter")).toByteArray());
    splRolls->restoreState(s.value(SettingsPrefix + QStringLiteral("rolls")).toByteArray());
    chkShowJournal->setChecked(s.value(SettingsPrefix + QStringLiteral("showJournal"), true).toBool());
    splRolls->widget(1)->setVisible(chkShowJournal->isChecked());
}

void frmPrinter::SaveSettings() const {
    QSettings s;
    s.setValue(SettingsPrefix + QStringLiteral("geometry"), saveGeometry());
    s.setValue(SettingsPrefix + QStringLiteral("splitter"), splPrinter->saveState());
    s.setValue(SettingsPrefix + QStringLiteral("rolls"), splRolls->saveState());
    s.setValue(SettingsPrefix + QStringLiteral("showJournal"), chkShowJournal->isChecked());
}
