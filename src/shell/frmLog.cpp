#include "frmLog.h"

#include "Seams.h"
#include "clsBenchLog.h"
#include "clsLogView.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QFont LogFont() {
    QFont font(QStringLiteral("Courier New"));
    font.setStyleHint(QFont::TypeWriter);
    if (!font.exactMatch())
        font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    return font;
}

} // namespace

frmLog::frmLog(clsBenchLog& log, QWidget* parent) : QWidget(parent, Qt::Window), m_log(log) {
    setObjectName(QStringLiteral("frmLog"));
    setWindowTitle(QStringLiteral("Opos Test Log Form"));
    // A log left open must not keep the program alive once the main window is gone.
    setAttribute(Qt::WA_QuitOnClose, false);

    txtOposLog = new clsLogView(log, this);
    txtOposLog->setObjectName(QStringLiteral("txtOposLog"));
    txtOposLog->setFont(LogFont());

    cmdClearLog = new QPushButton(QStringLiteral("&Clear"), this);
    cmdClearLog->setObjectName(QStringLiteral("cmdClearLog"));
    cmdMinimize = new QPushButton(QStringLiteral("Hide"), this);
    cmdMinimize->setObjectName(QStringLiteral("cmdMinimize"));
    cmdSaveLog2File = new QPushButton(QStringLiteral("SaveLog2File"), this);
    cmdSaveLog2File->setObjectName(QStringLiteral("cmdSaveLog2File"));

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdClearLog);
    buttons->addWidget(cmdMinimize);
    buttons->addStretch();
    buttons->addWidget(cmdSaveLog2File);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(txtOposLog);
    layout->addLayout(buttons);
    resize(760, 480);

    connect(cmdClearLog, &QPushButton::clicked, this, &frmLog::Clear);
    connect(cmdMinimize, &QPushButton::clicked, this, &QWidget::hide);
    connect(cmdSaveLog2File, &QPushButton::clicked, this, &frmLog::Save);
}

void frmLog::FlushPending() {
    txtOposLog->FlushPending();
}

void frmLog::Clear() {
    m_log.Clear();
}

void frmLog::Save() {
    const QString path = PickSaveFile(this, QStringLiteral("Log files|*.log"),
                                      QStringLiteral("Select the output log file"), QString());
    if (path.isEmpty())
        return;
    // A file that can't be written has no message of its own; the log stays as it is.
    m_log.SaveToFile(path);
}

bool frmLog::JustHiddenByFocusLoss() const {
    return m_hiddenByFocusLoss.isValid() &&
           m_hiddenByFocusLoss.elapsed() < QApplication::doubleClickInterval();
}

bool frmLog::event(QEvent* e) {
    if (e->type() == QEvent::WindowDeactivate && isVisible()) {
        hide();
        m_hiddenByFocusLoss.start();
    }
    return QWidget::event(e);
}
