#include "frmLog.h"

#include "Seams.h"
#include "clsBenchLog.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
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

    txtOposLog = new QPlainTextEdit(this);
    txtOposLog->setObjectName(QStringLiteral("txtOposLog"));
    txtOposLog->setFont(LogFont());
    txtOposLog->setReadOnly(true);
    txtOposLog->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtOposLog->setUndoRedoEnabled(false);

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
    connect(&m_log, &clsBenchLog::appended, this, &frmLog::OnAppended);
    connect(&m_log, &clsBenchLog::cleared, this, &frmLog::OnCleared);
}

void frmLog::OnAppended() {
    // A hidden box needn't be fed: the lines reach it when it is shown.
    if (!m_flushQueued && isVisible()) {
        m_flushQueued = true;
        QTimer::singleShot(FlushDelayMs, this, &frmLog::FlushPending);
    }
}

void frmLog::OnCleared() {
    m_shown = 0;
    txtOposLog->clear();
}

void frmLog::FlushPending() {
    m_flushQueued = false;
    const qsizetype count = m_log.LineCount();
    if (m_shown >= count)
        return;
    QStringList lines;
    lines.reserve(count - m_shown);
    for (qsizetype i = m_shown; i < count; ++i)
        lines.append(m_log.Line(i));
    txtOposLog->appendPlainText(lines.join(QLatin1Char('\n')));
    m_shown = count;
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

void frmLog::showEvent(QShowEvent* e) {
    FlushPending();
    QWidget::showEvent(e);
}

bool frmLog::event(QEvent* e) {
    if (e->type() == QEvent::WindowDeactivate && isVisible()) {
        hide();
        m_hiddenByFocusLoss.start();
    }
    return QWidget::event(e);
}
