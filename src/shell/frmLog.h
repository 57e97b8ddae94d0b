#pragma once

#include "Seams.h"

#include <QElapsedTimer>
#include <QStringList>
#include <QWidget>

class QPlainTextEdit;
class QPushButton;

// The log window. It takes every log line from its creation on, shown or not. Lines are queued
// and reach the text box in one batch at most FlushDelayMs later, or when the window is shown:
// appending and repainting them one by one makes a busy replay, or a test that lets the event
// loop run after every line, crawl. The list of lines is the text of record; the box only shows it.
class frmLog : public QWidget, public ILogSink {
    Q_OBJECT
public:
    static constexpr int FlushDelayMs = 40;

    explicit frmLog(QWidget* parent = nullptr);
    ~frmLog() override;

    void AppendLogLine(const QString& line) override;

    // The whole log, every line closed by CR LF.
    QString LogText() const;
    qsizetype LineCount() const { return m_lines.size(); }
    // Moves the queued lines into the text box now.
    void FlushPending();

    void Clear();
    void Save();

    // The saved form of a log: the text as one quoted value closed by CR LF, in the system's
    // 8-bit code page. A file that can't be written is left alone and false comes back.
    static QByteArray SavedForm(const QString& text);
    static bool WriteLogFile(const QString& path, const QString& text);

    // True just after the window hid itself because another window took the focus: a click on
    // the toolbar's Log Window button that caused it meant "hide", not "show again".
    bool JustHiddenByFocusLoss() const;

    QPlainTextEdit* txtOposLog;
    QPushButton* cmdClearLog;
    QPushButton* cmdMinimize;
    QPushButton* cmdSaveLog2File;

protected:
    bool event(QEvent* e) override;
    void showEvent(QShowEvent* e) override;

private:
    QStringList m_lines;
    QStringList m_pending;
    bool m_flushQueued = false;
    QElapsedTimer m_hiddenByFocusLoss;
};
