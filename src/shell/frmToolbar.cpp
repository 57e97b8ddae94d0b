#include "frmToolbar.h"

#include <QButtonGroup>
#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

template <typename Button> Button* Make(const char* name, const char* caption, QWidget* parent) {
    auto* b = new Button(QString::fromLatin1(caption), parent);
    b->setObjectName(QString::fromLatin1(name));
    return b;
}

} // namespace

frmToolbar::frmToolbar(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmToolbar"));

    cmdOpen = Make<QPushButton>("cmdOpen", "Open", this);
    cmdClaim = Make<QPushButton>("cmdClaim", "Claim", this);
    cmdEnable = Make<QPushButton>("cmdEnable", "Enable", this);
    cmdDisable = Make<QPushButton>("cmdDisable", "Disable", this);
    cmdRelease = Make<QPushButton>("cmdRelease", "Release", this);
    cmdClose = Make<QPushButton>("cmdClose", "Close", this);
    cmdOCE = Make<QPushButton>("cmdOCE", "Open Claim Enable", this);
    cmdDRC = Make<QPushButton>("cmdDRC", "Disable Release Close", this);
    optSettings = Make<QRadioButton>("optSettings", "Settings", this);
    optFiscal = Make<QRadioButton>("optFiscal", "Fiscal Receipt", this);
    optNonFiscal = Make<QRadioButton>("optNonFiscal", "Non-Fiscal Rcpt", this);
    optReports = Make<QRadioButton>("optReports", "Reports", this);
    optProps = Make<QRadioButton>("optProps", "Properties", this);
    optDirectIO = Make<QRadioButton>("optDirectIO", "DirectIO", this);
    optAutoTests = Make<QRadioButton>("optAutoTests", "AutoTests", this);
    optMacro = Make<QRadioButton>("optMacro", "Macro", this);
    cmdLogWindow = Make<QPushButton>("cmdLogWindow", "Log Window", this);
    cmdEscSequences = Make<QPushButton>("cmdEscSequences", "ESC Seq", this);

    // Upper row: the device's lifecycle; lower row: which panel shows, and the two windows.
    auto* lifecycle = new QHBoxLayout;
    lifecycle->setSpacing(4);
    for (QPushButton* b : {cmdOpen, cmdClaim, cmdEnable, cmdDisable, cmdRelease, cmdClose})
        lifecycle->addWidget(b, 1);
    auto* sep = new QFrame(this);
    sep->setFrameShape(QFrame::VLine);
    lifecycle->addWidget(sep);
    lifecycle->addWidget(cmdOCE, 2);
    lifecycle->addWidget(cmdDRC, 2);

    m_panels = new QButtonGroup(this);
    m_panels->setExclusive(true);
    auto* panels = new QHBoxLayout;
    panels->setSpacing(4);
    int id = 0;
    for (QRadioButton* o :
         {optSettings, optFiscal, optNonFiscal, optReports, optProps, optDirectIO, optAutoTests, optMacro}) {
        m_panels->addButton(o, id++);
        panels->addWidget(o);
    }
    panels->addStretch();
    panels->addWidget(cmdLogWindow);
    panels->addWidget(cmdEscSequences);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->setSpacing(2);
    layout->addLayout(lifecycle);
    layout->addLayout(panels);

    connect(cmdOpen, &QPushButton::clicked, this, &frmToolbar::openRequested);
    connect(cmdClaim, &QPushButton::clicked, this, &frmToolbar::claimRequested);
    connect(cmdEnable, &QPushButton::clicked, this, &frmToolbar::enableRequested);
    connect(cmdDisable, &QPushButton::clicked, this, &frmToolbar::disableRequested);
    connect(cmdRelease, &QPushButton::clicked, this, &frmToolbar::releaseRequested);
    connect(cmdClose, &QPushButton::clicked, this, &frmToolbar::closeRequested);
    connect(cmdOCE, &QPushButton::clicked, this, &frmToolbar::openClaimEnableRequested);
    connect(cmdDRC, &QPushButton::clicked, this, &frmToolbar::disableReleaseCloseRequested);
    connect(cmdLogWindow, &QPushButton::clicked, this, &frmToolbar::logWindowRequested);
    connect(cmdEscSequences, &QPushButton::clicked, this, &frmToolbar::escSequencesRequested);
    // An option set by code acts as if clicked, as the start-up relies on.
    connect(m_panels, &QButtonGroup::idToggled, this, [this](int panel, bool checked) {
        if (checked)
            emit panelChosen(static_cast<Panel>(panel));
    });
}

QRadioButton* frmToolbar::Option(Panel panel) const {
    return qobject_cast<QRadioButton*>(m_panels->button(panel));
}
