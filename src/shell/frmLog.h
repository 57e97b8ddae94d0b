#pragma once

#include <QElapsedTimer>
#include <QWidget>

class QPushButton;
class clsBenchLog;
class clsLogView;

// The log window: shows the bench's log, which keeps the lines whether the window is shown or
// not. The view reads the lines from the log itself and takes new ones in at most once a frame.
class frmLog : public QWidget {
    Q_OBJECT
public:
    explicit frmLog(clsBenchLog& log, QWidget* parent = nullptr);

    // Brings the view up to the log now.
    void FlushPending();

    void Clear();
    void Save();

    // True just after the window hid itself because another window took the focus: a click on
    // the toolbar's Log Window button that caused it meant "hide", not "show again".
    bool JustHiddenByFocusLoss() const;

    clsLogView* txtOposLog;
    QPushButton* cmdClearLog;
    QPushButton* cmdMinimize;
    QPushButton* cmdSaveLog2File;

protected:
    bool event(QEvent* e) override;

private:
    clsBenchLog& m_log;
    QElapsedTimer m_hiddenByFocusLoss;
};
