#pragma once

#include <QAbstractScrollArea>
#include <QElapsedTimer>
#include <QTimer>

class QAction;
class clsBenchLog;

// The log's lines on screen. The log is the model: the view keeps no copy of a line, reads only
// the lines it draws, and lays nothing out per line, since every line is one row of a
// monospaced font. However fast lines arrive, the view takes them in at most once a frame, and
// not at all while it is hidden; it follows the end unless the operator has scrolled up, moving
// the lines in sight and drawing only the new ones. The scroll bars, which cost more to draw
// than a frame of text and hardly move on a long log, follow a few times a second.
// Selection is by whole lines, from an anchor line to the current one.
class clsLogView : public QAbstractScrollArea {
    Q_OBJECT
public:
    // The shortest time between two takes of new lines: about 60 a second.
    static constexpr int FrameMs = 16;
    // And never sooner than this many times the last frame took to take in and draw, so that a
    // stream of lines leaves the view about a hundredth of the time, yet at least four frames a
    // second: lines that come one at a time still show at once.
    static constexpr int FrameCostFactor = 100;
    static constexpr int SlowestFrameMs = 250;
    // The shortest time between two updates of the scroll bars while lines stream in.
    static constexpr int ScrollBarMs = 200;

    explicit clsLogView(clsBenchLog& log, QWidget* parent = nullptr);

    // Takes in the lines the log has gained, and brings the scroll bars up to date, now.
    void FlushPending();

    // Lines the view has taken in; the log may already hold more.
    qsizetype ShownLineCount() const { return m_rows; }
    qsizetype FirstVisibleLine() const;
    // Lines that fit whole in the viewport.
    qsizetype VisibleLineCount() const;
    // True when the last line is in sight, so new lines scroll the view along.
    bool FollowsEnd() const;

    // The line under a point of the viewport, -1 below the last line or above the first.
    qsizetype LineAt(const QPoint& viewportPos) const;
    // Where a line stands in the viewport, whether or not it is in sight.
    QRect LineRect(qsizetype line) const;

    // Lines `anchor` to `current`, either way round; -1 for both selects nothing.
    void SelectLines(qsizetype anchor, qsizetype current);
    qsizetype SelectionFirst() const;
    qsizetype SelectionLast() const;
    // The selected lines, each closed by a line feed; empty without a selection.
    QString SelectedText() const;

    QAction* actCopy;
    QAction* actSelectAll;

public slots:
    void copy();
    void selectAll();

protected:
    void paintEvent(QPaintEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void showEvent(QShowEvent* e) override;
    void changeEvent(QEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void contextMenuEvent(QContextMenuEvent* e) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void OnAppended();
    void OnCleared();
    void TakeNewLines(bool now);
    void UpdateMetrics();
    void PaintLines(const QRect& area);
    qsizetype MaxTop() const;
    // Puts `top` first in sight, moving what stays in sight instead of drawing it again.
    void SetTop(qsizetype top);
    void SyncScrollBars();
    void ScheduleScrollBars(bool now);
    void MoveCurrent(qsizetype line, bool extend);
    void EnsureVisible(qsizetype line);

    clsBenchLog& m_log;
    qsizetype m_rows = 0;
    qsizetype m_top = 0;
    qsizetype m_fitted = 1; // lines that fitted at the last change of size or font
    bool m_syncing = false;
    qsizetype m_anchor = -1;
    qsizetype m_current = -1;
    int m_lineHeight = 1;
    int m_ascent = 0;
    int m_charWidth = 1;
    QTimer m_frame;
    QElapsedTimer m_sinceFlush;
    qint64 m_takeNs = 0;  // how long taking in the last frame's lines took
    qint64 m_frameNs = 0; // ... and drawing them
    QTimer m_scrollBars;
    QElapsedTimer m_sinceScrollBars;
};
