#pragma once

#include "PaperPainter.h"

#include <QAbstractScrollArea>
#include <QElapsedTimer>
#include <QHash>
#include <QTimer>

#include <deque>
#include <functional>
#include <optional>

namespace sim {
class PaperRoll;
}

// One paper roll on screen, following the roll as it prints. Only the elements in sight are
// drawn; an appended element costs one measurement; the view keeps at most `Keep()` elements
// laid out (older paper drops out of sight, the roll itself keeps everything). It scrolls along
// with new paper unless the user has scrolled up. A click selects the document under the mouse:
// the paper from one cut to the next.
class PaperView : public QAbstractScrollArea {
    Q_OBJECT
public:
    // The picture in printer memory for a bitmap slot, null when the slot is empty.
    using BitmapLookup = std::function<QImage(int slot)>;
    struct Range {
        qsizetype first = 0, last = 0; // roll indices, both included
        bool operator==(const Range&) const = default;
    };

    static constexpr qsizetype kDefaultKeep = 20000;
    // While paper comes in, the view lays out and paints at most once in this time.
    static constexpr int kFrameMs = 40;

    explicit PaperView(QWidget* parent = nullptr);

    // Follows `roll` (nullptr: blank). The roll must outlive the view or be replaced first.
    void SetRoll(const sim::PaperRoll* roll, BitmapLookup bitmaps = {});
    const sim::PaperRoll* Roll() const { return m_roll; }
    void SetKeep(qsizetype elements);
    qsizetype Keep() const { return m_keep; }

    const PaperPainter& Painter() const { return m_painter; }
    // The roll indices laid out: [FirstShown(), FirstShown() + ShownCount()).
    qsizetype FirstShown() const { return m_first; }
    qsizetype ShownCount() const { return qsizetype(m_tops.size()); }
    // The bitmap an element printed, as it was in printer memory when it printed.
    QImage BitmapOf(qsizetype index) const;
    bool FollowsEnd() const { return m_follow; }
    // New paper waits for the next frame's layout.
    bool LayoutPending() const { return m_relayout.isActive(); }

    // The element at a height of the viewport; -1 when none.
    qsizetype IndexAt(int viewportY) const;
    // Where an element sits in the viewport's coordinates (scrolling applied).
    QRect ElementRect(qsizetype index) const;
    // The document (cut to cut) that holds `index`; within what the view keeps.
    std::optional<Range> DocumentAt(qsizetype index) const;
    void SelectDocumentAt(qsizetype index);
    void ClearSelection() { SelectDocumentAt(-1); }
    std::optional<Range> Selection() const { return m_selection; }
    void ScrollToEnd();

signals:
    void selectionChanged();
    void clicked();

protected:
    void paintEvent(QPaintEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void Rebuild();
    void OnAppended(qsizetype index);
    void OnTornOff(qsizetype count);
    void Append(qsizetype index);
    void TrimFront();
    void Relayout();
    qint64 Top(qsizetype index) const;
    qint64 Bottom(qsizetype index) const;
    int PaperLeft() const;

    static constexpr int kPad = 12; // background around the paper

    PaperPainter m_painter;
    const sim::PaperRoll* m_roll = nullptr;
    BitmapLookup m_bitmaps;
    qsizetype m_keep = kDefaultKeep;

    // Absolute tops of the laid-out elements, m_first's first; m_end is the bottom of the last.
    std::deque<qint64> m_tops;
    qsizetype m_first = 0;
    qint64 m_end = 0;
    qint64 m_dropped = 0; // height that left the front since the last relayout
    QHash<qsizetype, QImage> m_printedBitmaps;

    std::optional<Range> m_selection;
    bool m_follow = true;
    bool m_adjusting = false;
    QTimer m_relayout;
    QElapsedTimer m_lastFrame;
    QMetaObject::Connection m_appendedConnection, m_clearedConnection, m_tornOffConnection,
        m_destroyedConnection;
};
