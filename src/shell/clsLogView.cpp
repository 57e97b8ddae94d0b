#include "clsLogView.h"

#include "clsBenchLog.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScopeGuard>
#include <QScrollBar>

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace {

// Blank space left and right of the text, in pixels.
constexpr int Margin = 4;

int ClampToInt(qsizetype value) {
    return int(std::clamp<qsizetype>(value, 0, INT_MAX));
}

} // namespace

clsLogView::clsLogView(clsBenchLog& log, QWidget* parent) : QAbstractScrollArea(parent), m_log(log) {
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setAutoFillBackground(true);
    viewport()->setCursor(Qt::IBeamCursor);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);

    actCopy = new QAction(tr("&Copy"), this);
    actCopy->setShortcut(QKeySequence::Copy);
    actCopy->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    actSelectAll = new QAction(tr("Select All"), this);
    actSelectAll->setShortcut(QKeySequence::SelectAll);
    actSelectAll->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(actCopy);
    addAction(actSelectAll);

    m_frame.setSingleShot(true);
    m_scrollBars.setSingleShot(true);
    UpdateMetrics();

    connect(actCopy, &QAction::triggered, this, &clsLogView::copy);
    connect(actSelectAll, &QAction::triggered, this, &clsLogView::selectAll);
    connect(&m_frame, &QTimer::timeout, this, [this] { TakeNewLines(false); });
    connect(&m_scrollBars, &QTimer::timeout, this, &clsLogView::SyncScrollBars);
    connect(&m_log, &clsBenchLog::appended, this, &clsLogView::OnAppended);
    connect(&m_log, &clsBenchLog::cleared, this, &clsLogView::OnCleared);
}

void clsLogView::OnAppended() {
    // Once per frame at most, and a hidden view takes the lines in when it is shown.
    if (m_frame.isActive() || !isVisible())
        return;
    const qint64 interval =
        std::clamp<qint64>(m_frameNs * FrameCostFactor / 1000000, FrameMs, SlowestFrameMs);
    const qint64 since = m_sinceFlush.isValid() ? m_sinceFlush.elapsed() : interval;
    m_frame.start(int(std::clamp<qint64>(interval - since, 0, interval)));
}

void clsLogView::OnCleared() {
    m_rows = 0;
    m_top = 0;
    m_anchor = -1;
    m_current = -1;
    SyncScrollBars();
    viewport()->update();
}

void clsLogView::FlushPending() {
    TakeNewLines(true);
}

void clsLogView::TakeNewLines(bool now) {
    m_frame.stop();
    m_sinceFlush.start();
    const auto took = qScopeGuard([this] { m_takeNs = m_sinceFlush.nsecsElapsed(); });
    const qsizetype count = m_log.LineCount();
    if (count != m_rows) {
        const bool follow = FollowsEnd();
        const qsizetype before = m_rows;
        m_rows = count;
        if (follow)
            SetTop(MaxTop());
        // New lines that come into sight without a move are drawn where they stand.
        if (before <= m_top + VisibleLineCount()) {
            const int y = LineRect(std::max(before, m_top)).top();
            viewport()->update(0, y, viewport()->width(), viewport()->height() - y);
        }
    }
    ScheduleScrollBars(now);
}

qsizetype clsLogView::FirstVisibleLine() const {
    return m_top;
}

qsizetype clsLogView::VisibleLineCount() const {
    return std::max(1, viewport()->height() / m_lineHeight);
}

qsizetype clsLogView::MaxTop() const {
    return std::max<qsizetype>(0, m_rows - VisibleLineCount());
}

bool clsLogView::FollowsEnd() const {
    return m_top >= MaxTop();
}

void clsLogView::SetTop(qsizetype top) {
    top = std::clamp<qsizetype>(top, 0, MaxTop());
    const qsizetype moved = m_top - top;
    if (moved == 0)
        return;
    m_top = top;
    if (std::abs(moved) < VisibleLineCount())
        viewport()->scroll(0, int(moved) * m_lineHeight);
    else
        viewport()->update();
}

qsizetype clsLogView::LineAt(const QPoint& viewportPos) const {
    if (viewportPos.y() < 0)
        return -1;
    const qsizetype line = FirstVisibleLine() + viewportPos.y() / m_lineHeight;
    return line < m_rows ? line : -1;
}

QRect clsLogView::LineRect(qsizetype line) const {
    const qsizetype y = (line - FirstVisibleLine()) * m_lineHeight;
    return QRect(0, int(std::clamp<qsizetype>(y, INT_MIN / 2, INT_MAX / 2)), viewport()->width(),
                 m_lineHeight);
}

void clsLogView::SelectLines(qsizetype anchor, qsizetype current) {
    if (anchor < 0 || current < 0 || m_rows == 0) {
        m_anchor = m_current = -1;
    } else {
        m_anchor = std::min(anchor, m_rows - 1);
        m_current = std::min(current, m_rows - 1);
    }
    viewport()->update();
}

qsizetype clsLogView::SelectionFirst() const {
    return m_anchor < 0 ? -1 : std::min(m_anchor, m_current);
}

qsizetype clsLogView::SelectionLast() const {
    return m_anchor < 0 ? -1 : std::max(m_anchor, m_current);
}

QString clsLogView::SelectedText() const {
    const qsizetype first = SelectionFirst();
    if (first < 0)
        return {};
    // Joined as stored and decoded once: a selection of all of a long log stays one allocation.
    QByteArray bytes;
    for (qsizetype i = first; i <= SelectionLast(); ++i) {
        bytes += m_log.LineUtf8(i);
        bytes += '\n';
    }
    return QString::fromUtf8(bytes);
}

void clsLogView::copy() {
    const QString text = SelectedText();
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

void clsLogView::selectAll() {
    if (m_rows > 0)
        SelectLines(0, m_rows - 1);
}

void clsLogView::UpdateMetrics() {
    const QFontMetrics metrics(font());
    m_lineHeight = std::max(1, metrics.height());
    m_ascent = metrics.ascent();
    m_charWidth = std::max(1, metrics.horizontalAdvance(QLatin1Char('0')));
}

void clsLogView::ScheduleScrollBars(bool now) {
    const qint64 since = m_sinceScrollBars.isValid() ? m_sinceScrollBars.elapsed() : ScrollBarMs;
    if (now || since >= ScrollBarMs)
        SyncScrollBars();
    else if (!m_scrollBars.isActive())
        m_scrollBars.start(int(ScrollBarMs - since));
}

void clsLogView::SyncScrollBars() {
    QScrollBar* v = verticalScrollBar();
    QScrollBar* h = horizontalScrollBar();
    // The operator's drag wins; the bars catch up once it ends.
    if (v->isSliderDown() || h->isSliderDown()) {
        m_scrollBars.start(ScrollBarMs);
        return;
    }
    m_scrollBars.stop();
    m_sinceScrollBars.start();
    const int scrolled = h->value();
    const qsizetype visible = VisibleLineCount();
    const qsizetype width = m_log.LongestLineLength() * m_charWidth + 2 * Margin;
    m_syncing = true;
    v->setRange(0, ClampToInt(MaxTop()));
    v->setPageStep(ClampToInt(visible));
    v->setSingleStep(1);
    v->setValue(ClampToInt(m_top));
    h->setRange(0, ClampToInt(width - viewport()->width()));
    h->setPageStep(viewport()->width());
    h->setSingleStep(m_charWidth);
    m_syncing = false;
    if (h->value() != scrolled)
        viewport()->update();
}

void clsLogView::EnsureVisible(qsizetype line) {
    const qsizetype visible = VisibleLineCount();
    if (line < m_top)
        SetTop(line);
    else if (line >= m_top + visible)
        SetTop(line - visible + 1);
    SyncScrollBars();
}

void clsLogView::MoveCurrent(qsizetype line, bool extend) {
    if (m_rows == 0)
        return;
    line = std::clamp<qsizetype>(line, 0, m_rows - 1);
    if (!extend || m_anchor < 0)
        m_anchor = line;
    m_current = line;
    EnsureVisible(line);
    viewport()->update();
}

void clsLogView::paintEvent(QPaintEvent* e) {
    QElapsedTimer clock;
    clock.start();
    PaintLines(e->rect());
    m_frameNs = m_takeNs + clock.nsecsElapsed();
    m_takeNs = 0;
}

void clsLogView::PaintLines(const QRect& area) {
    QPainter painter(viewport());
    const qsizetype top = FirstVisibleLine();
    const qsizetype first = top + std::max(0, area.top()) / m_lineHeight;
    const qsizetype last = std::min(m_rows - 1, top + std::max(0, area.bottom()) / m_lineHeight);
    const int scrolled = horizontalScrollBar()->value();
    // Only the columns in sight are drawn, so that a very long line costs no more than a short one.
    const qsizetype firstColumn = std::max(0, (scrolled - Margin) / m_charWidth);
    const qsizetype columns = viewport()->width() / m_charWidth + 2;
    const qsizetype selFirst = SelectionFirst();
    const qsizetype selLast = SelectionLast();
    const QPalette& colors = palette();
    for (qsizetype row = first; row <= last; ++row) {
        const int y = int(row - top) * m_lineHeight;
        if (row >= selFirst && row <= selLast && selFirst >= 0) {
            painter.fillRect(QRect(0, y, viewport()->width(), m_lineHeight),
                             colors.brush(QPalette::Highlight));
            painter.setPen(colors.color(QPalette::HighlightedText));
        } else {
            painter.setPen(colors.color(QPalette::Text));
        }
        const QString line = m_log.Line(row);
        qsizetype from = firstColumn;
        if (from >= line.size())
            continue;
        if (from > 0 && line.at(from).isLowSurrogate())
            --from;
        painter.drawText(Margin + int(from) * m_charWidth - scrolled, y + m_ascent,
                         line.mid(from, columns + 1));
    }
}

void clsLogView::resizeEvent(QResizeEvent* e) {
    // Whether the end was in sight is a question about the lines that fitted before.
    const bool follow = m_top + m_fitted >= m_rows;
    QAbstractScrollArea::resizeEvent(e);
    m_fitted = VisibleLineCount();
    m_top = std::clamp<qsizetype>(follow ? MaxTop() : m_top, 0, MaxTop());
    SyncScrollBars();
    viewport()->update();
}

void clsLogView::showEvent(QShowEvent* e) {
    QAbstractScrollArea::showEvent(e);
    FlushPending();
}

void clsLogView::changeEvent(QEvent* e) {
    QAbstractScrollArea::changeEvent(e);
    if (e->type() == QEvent::FontChange) {
        const bool follow = m_top + m_fitted >= m_rows;
        UpdateMetrics();
        m_fitted = VisibleLineCount();
        m_top = std::clamp<qsizetype>(follow ? MaxTop() : m_top, 0, MaxTop());
        SyncScrollBars();
        viewport()->update();
    }
}

void clsLogView::scrollContentsBy(int dx, int dy) {
    // The bars being brought up to the view say nothing new.
    if (m_syncing)
        return;
    if (dy != 0)
        SetTop(verticalScrollBar()->value());
    if (dx != 0) {
        if (std::abs(dx) < viewport()->width())
            viewport()->scroll(dx, 0);
        else
            viewport()->update();
    }
}

void clsLogView::contextMenuEvent(QContextMenuEvent* e) {
    actCopy->setEnabled(SelectionFirst() >= 0);
    QMenu::exec(actions(), e->globalPos(), nullptr, this);
    actCopy->setEnabled(true);
}

void clsLogView::mousePressEvent(QMouseEvent* e) {
    if (e->button() != Qt::LeftButton) {
        QAbstractScrollArea::mousePressEvent(e);
        return;
    }
    const int y = e->position().toPoint().y();
    MoveCurrent(FirstVisibleLine() + (y < 0 ? -1 : y / m_lineHeight), e->modifiers() & Qt::ShiftModifier);
}

void clsLogView::mouseMoveEvent(QMouseEvent* e) {
    if (!(e->buttons() & Qt::LeftButton) || m_anchor < 0)
        return;
    const int y = e->position().toPoint().y();
    MoveCurrent(FirstVisibleLine() + (y < 0 ? -1 : y / m_lineHeight), true);
}

void clsLogView::keyPressEvent(QKeyEvent* e) {
    const qsizetype page = VisibleLineCount();
    const qsizetype from = m_current >= 0 ? m_current : FirstVisibleLine();
    qsizetype target = 0;
    switch (e->key()) {
    case Qt::Key_Up:
        target = m_current >= 0 ? from - 1 : from;
        break;
    case Qt::Key_Down:
        target = m_current >= 0 ? from + 1 : from;
        break;
    case Qt::Key_PageUp:
        target = from - page;
        break;
    case Qt::Key_PageDown:
        target = from + page;
        break;
    case Qt::Key_Home:
        target = 0;
        break;
    case Qt::Key_End:
        target = m_rows - 1;
        break;
    default:
        QAbstractScrollArea::keyPressEvent(e);
        return;
    }
    MoveCurrent(target, e->modifiers() & Qt::ShiftModifier);
}
