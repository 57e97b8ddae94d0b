#include "frmToolbar.h"

#include "ShellLayout.h"

#include <QAction>
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
    setFixedHeight(ShellLayout::Px(ShellLayout::ToolbarHeightTwips));

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

    // The device walk on the function keys, forward unshifted and back with Shift; the panels on
    // Ctrl and their place in the row.
    actOpen = BackButton(cmdOpen, Qt::Key_F2, &frmToolbar::openRequested);
    actClaim = BackButton(cmdClaim, Qt::Key_F3, &frmToolbar::claimRequested);
    actEnable = BackButton(cmdEnable, Qt::Key_F4, &frmToolbar::enableRequested);
    actDisable = BackButton(cmdDisable, Qt::SHIFT | Qt::Key_F4, &frmToolbar::disableRequested);
    actRelease = BackButton(cmdRelease, Qt::SHIFT | Qt::Key_F3, &frmToolbar::releaseRequested);
    actClose = BackButton(cmdClose, Qt::SHIFT | Qt::Key_F2, &frmToolbar::closeRequested);
    actOCE = BackButton(cmdOCE, Qt::Key_F5, &frmToolbar::openClaimEnableRequested);
    actDRC = BackButton(cmdDRC, Qt::SHIFT | Qt::Key_F5, &frmToolbar::disableReleaseCloseRequested);
    actLogWindow = BackButton(cmdLogWindow, Qt::Key_F12, &frmToolbar::logWindowRequested);
    actEscSequences = BackButton(cmdEscSequences, {}, &frmToolbar::escSequencesRequested);
    for (int panel = 0; panel < PanelCount; ++panel) {
        QAbstractButton* option = m_panels->button(panel);
        m_panelActions[panel] = Back(option, QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + panel)));
        connect(m_panelActions[panel], &QAction::triggered, option, [option] { option->setChecked(true); });
    }
    // An option set by code acts as if clicked, as the start-up relies on.
    connect(m_panels, &QButtonGroup::idToggled, this, [this](int panel, bool checked) {
        if (checked)
            emit panelChosen(static_cast<Panel>(panel));
    });
}

QAction* frmToolbar::Back(QAbstractButton* button, const QKeySequence& shortcut) {
    auto* action = new QAction(button->text(), this);
    action->setObjectName(QStringLiteral("act") + button->objectName().mid(3));
    action->setShortcut(shortcut);
    action->setShortcutContext(Qt::WindowShortcut);
    const QString tip = shortcut.isEmpty()
                            ? button->text()
                            : button->text() + QStringLiteral(" (") +
                                  shortcut.toString(QKeySequence::NativeText) + QLatin1Char(')');
    action->setToolTip(tip);
    button->setToolTip(tip);
    addAction(action);
    return action;
}

QAction* frmToolbar::BackButton(QPushButton* button, const QKeySequence& shortcut,
                                void (frmToolbar::*request)()) {
    QAction* action = Back(button, shortcut);
    connect(button, &QPushButton::clicked, action, &QAction::trigger);
    connect(action, &QAction::triggered, this, request);
    return action;
}

QRadioButton* frmToolbar::Option(Panel panel) const {
    return qobject_cast<QRadioButton*>(m_panels->button(panel));
}
