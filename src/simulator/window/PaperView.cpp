#include "PaperView.h"

#include "Paper.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace {
// How far a document is searched for its cuts, each way.
constexpr qsizetype kDocumentScan = 10000;
const QColor kDesk(88, 92, 98);
const QColor kSelection(40, 120, 255, 45);
} // namespace

PaperView::PaperView(QWidget* parent) : QAbstractScrollArea(parent) {
    setObjectName(QStringLiteral("PaperView"));
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_relayout.setSingleShot(true);
    connect(&m_relayout, &QTimer::timeout, this, &PaperView::Relayout);
    // Scrolling up stops following the end; scrolling back down to it starts again.
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
        if (!m_adjusting)
            m_follow = value >= verticalScrollBar()->maximum() - m_painter.LineHeight() / 2;
    });
    setMinimumWidth(m_painter.PaperWidth() + 2 * kPad + verticalScrollBar()->sizeHint().width() + 2);
}

void PaperView::SetRoll(const sim::PaperRoll* roll, BitmapLookup bitmaps) {
    disconnect(m_appendedConnection);
    disconnect(m_clearedConnection);
    disconnect(m_tornOffConnection);
    disconnect(m_destroyedConnection);
    m_roll = roll;
    m_bitmaps = std::move(bitmaps);
    if (m_roll) {
        m_appendedConnection = connect(m_roll, &sim::PaperRoll::appended, this, &PaperView::OnAppended);
        m_clearedConnection = connect(m_roll, &sim::PaperRoll::cleared, this, &PaperView::Rebuild);
        m_tornOffConnection = connect(m_roll, &sim::PaperRoll::tornOff, this, &PaperView::OnTornOff);
        m_destroyedConnection = connect(m_roll, &QObject::destroyed, this, [this] { SetRoll(nullptr); });
    }
    Rebuild();
}

void PaperView::SetKeep(qsizetype elements) {
    m_keep = std::max<qsizetype>(elements, 1);
    Rebuild();
}

void PaperView::Rebuild() {
    m_tops.clear();
    m_printedBitmaps.clear();
    m_end = 0;
    m_dropped = 0;
    m_first = m_roll ? std::max<qsizetype>(0, m_roll->Count() - m_keep) : 0;
    if (m_selection)
        emit selectionChanged();
    m_selection.reset();
    m_follow = true;
    if (m_roll)
        for (qsizetype i = m_first; i < m_roll->Count(); ++i)
            Append(i);
    Relayout();
}

void PaperView::OnAppended(qsizetype index) {
    if (index != m_first + ShownCount()) { // not the next one: start again from the roll
        Rebuild();
        return;
    }
    Append(index);
    if (ShownCount() > m_keep + m_keep / 8)
        TrimFront();
    // An open document that is selected grows with its paper.
    if (m_selection && m_selection->last == index - 1 && !m_roll->Lines()[index - 1].cutAfter) {
        m_selection->last = index;
        emit selectionChanged();
    }
    if (!m_relayout.isActive()) {
        const qint64 since = m_lastFrame.isValid() ? m_lastFrame.elapsed() : kFrameMs;
        m_relayout.start(int(std::max<qint64>(0, kFrameMs - since)));
    }
}

// The roll keeps far more than a view shows, so what is shown normally stays: only its indices move.
void PaperView::OnTornOff(qsizetype count) {
    if (count > m_first) {
        Rebuild();
        return;
    }
    m_first -= count;
    QHash<qsizetype, QImage> moved;
    for (auto it = m_printedBitmaps.cbegin(); it != m_printedBitmaps.cend(); ++it)
        moved.insert(it.key() - count, it.value());
    m_printedBitmaps.swap(moved);
    if (m_selection) {
        m_selection->first -= count;
        m_selection->last -= count;
        emit selectionChanged();
    }
}

void PaperView::Append(qsizetype index) {
    const sim::PrintedLine& line = m_roll->Lines()[index];
    QImage bitmap;
    if (line.kind == sim::PrintedLine::Kind::Bitmap && m_bitmaps) {
        bitmap = m_bitmaps(line.bitmapSlot);
        if (!bitmap.isNull())
            m_printedBitmaps.insert(index, bitmap); // shared with the printer's memory, no copy
    }
    m_tops.push_back(m_end);
    m_end += m_painter.Height(line, bitmap);
}

// Drops the oldest elements in one go, so that trimming costs nothing per appended element.
void PaperView::TrimFront() {
    const qsizetype drop = ShownCount() - m_keep;
    const qint64 newTop = m_tops[drop];
    m_dropped += newTop - m_tops.front();
    for (qsizetype i = m_first; i < m_first + drop; ++i)
        m_printedBitmaps.remove(i);
    m_tops.erase(m_tops.begin(), m_tops.begin() + drop);
    m_first += drop;
    if (m_selection && m_selection->first < m_first) {
        m_selection.reset();
        emit selectionChanged();
    }
}

void PaperView::Relayout() {
    m_relayout.stop();
    m_lastFrame.start();
    m_adjusting = true;
    QScrollBar* v = verticalScrollBar();
    const qint64 base = m_tops.empty() ? m_end : m_tops.front();
    const qint64 content = m_end - base + 2 * kPad;
    const int page = viewport()->height();
    const int oldValue = v->value();
    v->setPageStep(page);
    v->setSingleStep(m_painter.LineHeight());
    v->setRange(0, int(std::clamp<qint64>(content - page, 0, INT_MAX)));
    if (m_follow)
        v->setValue(v->maximum());
    else
        v->setValue(int(std::max<qint64>(0, oldValue - m_dropped)));
    m_dropped = 0;

    QScrollBar* h = horizontalScrollBar();
    h->setPageStep(viewport()->width());
    h->setRange(0, std::max(0, m_painter.PaperWidth() + 2 * kPad - viewport()->width()));
    m_adjusting = false;
    viewport()->update();
}

qint64 PaperView::Top(qsizetype index) const {
    return m_tops[index - m_first];
}

qint64 PaperView::Bottom(qsizetype index) const {
    const qsizetype next = index - m_first + 1;
    return next < ShownCount() ? m_tops[next] : m_end;
}

int PaperView::PaperLeft() const {
    const int free = viewport()->width() - m_painter.PaperWidth();
    return free > 2 * kPad ? free / 2 : kPad - horizontalScrollBar()->value();
}

QImage PaperView::BitmapOf(qsizetype index) const {
    if (const auto it = m_printedBitmaps.constFind(index); it != m_printedBitmaps.cend())
        return *it;
    if (!m_roll || index < 0 || index >= m_roll->Count() || !m_bitmaps)
        return {};
    const sim::PrintedLine& line = m_roll->Lines()[index];
    return line.kind == sim::PrintedLine::Kind::Bitmap ? m_bitmaps(line.bitmapSlot) : QImage();
}

qsizetype PaperView::IndexAt(int viewportY) const {
    if (m_tops.empty())
        return -1;
    const qint64 y = m_tops.front() + verticalScrollBar()->value() + viewportY - kPad;
    if (y < m_tops.front() || y >= m_end)
        return -1;
    const auto it = std::upper_bound(m_tops.begin(), m_tops.end(), y);
    return m_first + (it - m_tops.begin()) - 1;
}

QRect PaperView::ElementRect(qsizetype index) const {
    if (index < m_first || index >= m_first + ShownCount())
        return {};
    const qint64 origin = m_tops.front() + verticalScrollBar()->value() - kPad;
    return QRect(PaperLeft(), int(Top(index) - origin), m_painter.PaperWidth(),
                 int(Bottom(index) - Top(index)));
}

std::optional<PaperView::Range> PaperView::DocumentAt(qsizetype index) const {
    if (!m_roll || index < m_first || index >= m_first + ShownCount())
        return std::nullopt;
    const QList<sim::PrintedLine>& lines = m_roll->Lines();
    Range r{index, index};
    while (r.first > m_first && index - r.first < kDocumentScan && !lines[r.first - 1].cutAfter)
        --r.first;
    const qsizetype last = m_first + ShownCount() - 1;
    while (r.last < last && r.last - index < kDocumentScan && !lines[r.last].cutAfter)
        ++r.last;
    return r;
}

void PaperView::SelectDocumentAt(qsizetype index) {
    const std::optional<Range> r = DocumentAt(index);
    if (r == m_selection)
        return;
    m_selection = r;
    viewport()->update();
    emit selectionChanged();
}

void PaperView::ScrollToEnd() {
    m_follow = true;
    Relayout();
}

void PaperView::paintEvent(QPaintEvent* e) {
    QPainter p(viewport());
    p.fillRect(e->rect(), kDesk);
    if (m_tops.empty() || !m_roll)
        return;
    const qint64 origin = m_tops.front() + verticalScrollBar()->value() - kPad; // absolute y at the top
    const qint64 from = origin + e->rect().top(), to = origin + e->rect().bottom() + 1;
    auto it = std::upper_bound(m_tops.begin(), m_tops.end(), from);
    if (it != m_tops.begin())
        --it;
    const QList<sim::PrintedLine>& lines = m_roll->Lines();
    p.translate(PaperLeft(), 0);
    p.setClipRect(e->rect().translated(-PaperLeft(), 0));
    for (qsizetype i = m_first + (it - m_tops.begin()); i < m_first + ShownCount(); ++i) {
        const qint64 top = Top(i);
        if (top >= to)
            break;
        m_painter.Draw(p, lines[i], int(top - origin), BitmapOf(i));
    }
    if (m_selection) {
        const qint64 top = Top(std::max(m_selection->first, m_first));
        const qint64 bottom = Bottom(std::min(m_selection->last, m_first + ShownCount() - 1));
        if (bottom > from && top < to) {
            const QRect r(0, int(top - origin), m_painter.PaperWidth(), int(bottom - top));
            p.fillRect(r, kSelection);
            p.setPen(QPen(QColor(40, 120, 255), 2));
            p.drawRect(r.adjusted(1, 1, -1, -1));
        }
    }
}

void PaperView::resizeEvent(QResizeEvent* e) {
    QAbstractScrollArea::resizeEvent(e);
    Relayout();
}

void PaperView::mousePressEvent(QMouseEvent* e) {
    if (e->button() == Qt::LeftButton) {
        SelectDocumentAt(IndexAt(e->position().toPoint().y()));
        emit clicked();
    }
    QAbstractScrollArea::mousePressEvent(e);
}

void PaperView::scrollContentsBy(int, int) {
    viewport()->update();
}
