#include "frmLog.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
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

frmLog::frmLog(QWidget* parent) : QWidget(parent, Qt::Window) {
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

    SetLogSink(this);
}

frmLog::~frmLog() {
    ILogSink* const current = SetLogSink(nullptr);
    if (current != this)
        SetLogSink(current); // another sink took over since: leave it in place
}

void frmLog::AppendLogLine(const QString& line) {
    m_lines.append(line);
    m_pending.append(line);
    // A hidden box needn't be fed: the lines reach it when it is shown.
    if (!m_flushQueued && isVisible()) {
        m_flushQueued = true;
        QTimer::singleShot(FlushDelayMs, this, &frmLog::FlushPending);
    }
}

void frmLog::FlushPending() {
    m_flushQueued = false;
    if (m_pending.isEmpty())
        return;
    txtOposLog->appendPlainText(m_pending.join(QLatin1Char('\n')));
    m_pending.clear();
}

QString frmLog::LogText() const {
    if (m_lines.isEmpty())
        return {};
    return m_lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n");
}

void frmLog::Clear() {
    m_lines.clear();
    m_pending.clear();
    txtOposLog->clear();
}

QByteArray frmLog::SavedForm(const QString& text) {
    return (QLatin1Char('"') + text + QStringLiteral("\"\r\n")).toLocal8Bit();
}

bool frmLog::WriteLogFile(const QString& path, const QString& text) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(SavedForm(text));
    return file.commit();
}

void frmLog::Save() {
    const QString path = PickSaveFile(this, QStringLiteral("Log files|*.log"),
                                      QStringLiteral("Select the output log file"), QString());
    if (path.isEmpty())
        return;
    WriteLogFile(path, LogText());
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
