#pragma once

#include <QElapsedTimer>
#include <QWidget>

class QPlainTextEdit;
class QPushButton;
class clsBenchLog;

// The log window: shows the bench's log, which keeps the lines whether the window is shown or
// not. New lines reach the text box in one batch on the next turn of the event loop, or when the
// window is shown: appending them one by one makes a busy replay crawl. Batches go out at
// most every FlushDelayMs, so a test that lets the event loop run after each line stays fast.
class frmLog : public QWidget {
    Q_OBJECT
public:
    static constexpr int FlushDelayMs = 40;

    explicit frmLog(clsBenchLog& log, QWidget* parent = nullptr);

    // Brings the text box up to the log now.
    void FlushPending();

    void Clear();
    void Save();

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
    void OnAppended();
    void OnCleared();

    clsBenchLog& m_log;
    qsizetype m_shown = 0; // lines of the log already in the text box
    bool m_flushQueued = false;
    QElapsedTimer m_hiddenByFocusLoss;
};
