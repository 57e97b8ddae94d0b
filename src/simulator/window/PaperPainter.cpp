#include "PaperPainter.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QtMath>

#include <algorithm>

using sim::Align;
using sim::PrintAttributes;
using sim::PrintedLine;
using sim::Rotation;

namespace {
constexpr int kBarcodePadding = 4;
const QColor kMarkColor(120, 120, 120);
} // namespace

QString PrintableText(const QString& text) {
    QString out = text;
    for (QChar& c : out) {
        const char16_t u = c.unicode();
        if (u < 0x20)
            c = QChar(char16_t(0x2400 + u));
        else if (u == 0x7F)
            c = QChar(char16_t(0x2421));
        else if (u >= 0x80 && u < 0xA0)
            c = QChar(char16_t(0xFFFD));
    }
    return out;
}

PaperPainter::PaperPainter(int pixelSize) {
    m_font = QFont(QStringLiteral("DejaVu Sans Mono"));
    m_font.setStyleHint(QFont::Monospace);
    m_font.setFixedPitch(true);
    m_font.setPixelSize(pixelSize);
    const QFontMetricsF fm(m_font);
    m_charWidth = fm.horizontalAdvance(QLatin1Char('M'));
    m_ascent = fm.ascent();
    m_lineHeight = qCeil(fm.height()) + 2;
    m_margin = 2 * m_charWidth;
    m_inner = kColumns * m_charWidth;
    m_paperWidth = qCeil(m_inner + 2 * m_margin);
    m_barHeight = 3 * m_lineHeight;
}

PaperPainter::Scale PaperPainter::TextScale(const PrintAttributes& a) const {
    Scale s;
    s.x = a.doubleWidth ? 2 : 1;
    s.y = a.doubleHeight ? 2 : a.halfHeight ? 0.5 : 1;
    if (a.font == 2) { // font B: three quarters of font A each way
        s.x *= 0.75;
        s.y *= 0.75;
    }
    return s;
}

qreal PaperPainter::Advance(const PrintAttributes& a) const {
    const bool sideways = a.rotation == Rotation::Left || a.rotation == Rotation::Right;
    // A character turned sideways takes its height as its width.
    return (sideways ? m_lineHeight - 2 : m_charWidth) * TextScale(a).x;
}

int PaperPainter::CharsPerRow(const PrintAttributes& a) const {
    return std::max(1, int(std::floor(m_inner / Advance(a) + 1e-6)));
}

QFont PaperPainter::FontFor(const PrintAttributes& a) const {
    QFont f = m_font;
    f.setBold(a.bold);
    f.setItalic(a.italic);
    return f;
}

qreal PaperPainter::AlignedLeft(Align align, qreal width) const {
    switch (align) {
    case Align::Center:
        return m_margin + (m_inner - width) / 2;
    case Align::Right:
        return m_margin + m_inner - width;
    case Align::Left:
        break;
    }
    return m_margin;
}

const BarcodeSymbol& PaperPainter::Symbol(int type, const QString& data) const {
    const QString key = QString::number(type) + u':' + data;
    if (BarcodeSymbol* cached = m_symbols.object(key))
        return *cached;
    auto* symbol = new BarcodeSymbol(EncodeBarcode(type, data));
    m_symbols.insert(key, symbol);
    return *symbol;
}

int PaperPainter::ModulePixels(const BarcodeSymbol& symbol) const {
    if (!symbol.IsValid() || symbol.width <= 0)
        return 0;
    return std::min(4, int(m_inner / symbol.width));
}

int PaperPainter::ContentHeight(const PrintedLine& line, const QImage& bitmap) const {
    switch (line.kind) {
    case PrintedLine::Kind::Text: {
        const int rowHeight = qCeil(m_lineHeight * TextScale(line.attr).y);
        const int perRow = CharsPerRow(line.attr);
        const int rows = std::max<qsizetype>(1, (line.text.size() + perRow - 1) / perRow);
        return rows * rowHeight;
    }
    case PrintedLine::Kind::Barcode: {
        const BarcodeSymbol& s = Symbol(line.barcodeType, line.text);
        if (ModulePixels(s) == 0)
            return 2 * m_lineHeight;
        return 2 * kBarcodePadding + m_barHeight + m_lineHeight;
    }
    case PrintedLine::Kind::Bitmap: {
        if (bitmap.isNull())
            return 2 * m_lineHeight;
        const qreal dot = m_inner / kPrinterDots;
        return qCeil(bitmap.height() * dot * (line.attr.doubleHeight ? 2 : 1)) + 2;
    }
    case PrintedLine::Kind::Feed:
        return std::clamp(line.feedLines, 1, kMaxFeedLinesShown) * m_lineHeight;
    case PrintedLine::Kind::Logo:
        return 2 * m_lineHeight + 4;
    }
    return m_lineHeight;
}

int PaperPainter::Height(const PrintedLine& line, const QImage& bitmap) const {
    return ContentHeight(line, bitmap) + (line.cutAfter ? CutGap() : 0);
}

void PaperPainter::DrawPaper(QPainter& p, int top, int bottom) const {
    p.fillRect(QRect(0, top, m_paperWidth, bottom - top), PaperColor());
}

void PaperPainter::Draw(QPainter& p, const PrintedLine& line, int top, const QImage& bitmap) const {
    const int content = ContentHeight(line, bitmap);
    DrawPaper(p, top, top + content);
    switch (line.kind) {
    case PrintedLine::Kind::Text:
        DrawText(p, line, top);
        break;
    case PrintedLine::Kind::Barcode:
        DrawBarcode(p, line, top);
        break;
    case PrintedLine::Kind::Bitmap:
        DrawBitmap(p, line, top, bitmap);
        break;
    case PrintedLine::Kind::Feed:
        DrawFeed(p, line, top);
        break;
    case PrintedLine::Kind::Logo:
        DrawLogo(p, line, top);
        break;
    }
    if (line.cutAfter)
        DrawCut(p, top + content);
}

void PaperPainter::DrawText(QPainter& p, const PrintedLine& line, int top) const {
    const PrintAttributes& a = line.attr;
    const int rowHeight = qCeil(m_lineHeight * TextScale(a).y);
    const int perRow = CharsPerRow(a);
    const QString text = PrintableText(line.text);
    for (qsizetype from = 0, row = 0; from < text.size() || row == 0; from += perRow, ++row)
        DrawTextRow(p, text.mid(from, perRow), a,
                    QRectF(m_margin, top + row * rowHeight, m_inner, rowHeight));
    if (a.blink) { // paper cannot blink: a mark in the margin tells that the printer was asked to
        p.setPen(kMarkColor);
        p.setFont(m_font);
        p.drawText(QPointF(m_charWidth * 0.5, top + m_ascent), QStringLiteral("~"));
    }
}

void PaperPainter::DrawTextRow(QPainter& p, const QString& chunk, const PrintAttributes& a,
                               const QRectF& row) const {
    const Scale s = TextScale(a);
    const qreal advance = Advance(a);
    const QRectF span(AlignedLeft(a.align, chunk.size() * advance), row.top(), chunk.size() * advance,
                      row.height());
    p.save();
    if (a.rotation == Rotation::UpsideDown) {
        p.translate(span.center());
        p.rotate(180);
        p.translate(-span.center());
    }
    QColor ink = Qt::black;
    if (a.reverse) {
        p.fillRect(span, Qt::black);
        ink = PaperColor();
    }
    p.setPen(ink);
    p.setFont(FontFor(a));
    const qreal baseline = m_ascent + 1;
    if (a.rotation == Rotation::None || a.rotation == Rotation::UpsideDown) {
        p.save();
        p.translate(span.left(), span.top());
        p.scale(s.x, s.y);
        p.drawText(QPointF(0, baseline), chunk);
        p.restore();
    } else {
        const qreal turn = a.rotation == Rotation::Left ? -90 : a.rotation == Rotation::Right ? 90 : 180;
        for (qsizetype i = 0; i < chunk.size(); ++i) {
            p.save();
            p.translate(span.left() + (i + 0.5) * advance, span.center().y());
            p.rotate(turn);
            p.scale(s.x, s.y);
            p.drawText(QPointF(-m_charWidth / 2, baseline - m_lineHeight / 2.0), QString(chunk[i]));
            p.restore();
        }
    }
    if (a.underline > 0) {
        const qreal thickness = std::max<qreal>(1, a.underline * s.y);
        p.fillRect(QRectF(span.left(), span.top() + (baseline + 2) * s.y, span.width(), thickness), ink);
    }
    if (a.boxed) {
        p.setBrush(Qt::NoBrush);
        p.drawRect(span.adjusted(-2, 0.5, 2, -0.5));
    }
    p.restore();
}

void PaperPainter::DrawBarcode(QPainter& p, const PrintedLine& line, int top) const {
    const BarcodeSymbol& s = Symbol(line.barcodeType, line.text);
    const int module = ModulePixels(s);
    const QString name = BarcodeTypeName(line.barcodeType);
    if (module == 0) {
        const QString reason = s.IsValid() ? QStringLiteral("wider than the paper") : s.error;
        DrawPlaceholder(p, QStringLiteral("%1 %2: %3").arg(name, line.text, reason), top, 2 * m_lineHeight);
        return;
    }
    qreal barsBottom = 0;
    for (const QRectF& r : s.bars)
        barsBottom = std::max(barsBottom, r.bottom());
    const qreal yScale = m_barHeight / barsBottom;
    const int left = qRound(AlignedLeft(line.attr.align, s.width * module));
    const int y0 = top + kBarcodePadding;
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    for (const QRectF& r : s.bars)
        p.fillRect(QRect(left + qRound(r.x() * module), y0 + qRound(r.y() * yScale),
                         qRound(r.width() * module), qRound(r.height() * yScale)),
                   Qt::black);
    QFont hrt = m_font;
    hrt.setPixelSize(std::max(8, m_lineHeight - 6));
    p.setFont(hrt);
    p.setPen(Qt::black);
    const QFontMetricsF fm(hrt);
    const qreal baseline = y0 + m_barHeight + fm.ascent();
    for (const BarcodeSymbol::Text& t : s.texts) {
        const qreal w = fm.horizontalAdvance(t.text);
        const qreal x = left + t.baseline.x() * module;
        p.drawText(QPointF(t.align == 1 ? x : t.align == 2 ? x - w : x - w / 2, baseline), t.text);
    }
    p.restore();
}

void PaperPainter::DrawBitmap(QPainter& p, const PrintedLine& line, int top, const QImage& bitmap) const {
    if (bitmap.isNull()) {
        DrawPlaceholder(p, QStringLiteral("bitmap %1 was never loaded").arg(line.bitmapSlot), top,
                        2 * m_lineHeight);
        return;
    }
    const qreal dot = m_inner / kPrinterDots;
    const qreal w = std::min(m_inner, bitmap.width() * dot * (line.attr.doubleWidth ? 2 : 1));
    const qreal h = bitmap.height() * dot * (line.attr.doubleHeight ? 2 : 1);
    const QRectF target(AlignedLeft(line.attr.align, w), top + 1, w, h);
    // Only the visible part is scaled: a bitmap may be thousands of dots high.
    QRectF shown = target;
    if (p.hasClipping())
        shown = target.intersected(p.clipBoundingRect());
    if (shown.isEmpty())
        return;
    const QRectF source((shown.left() - target.left()) * bitmap.width() / w,
                        (shown.top() - target.top()) * bitmap.height() / h,
                        shown.width() * bitmap.width() / w, shown.height() * bitmap.height() / h);
    QImage part = bitmap.copy(source.toAlignedRect());
    if (line.attr.reverse)
        part.invertPixels();
    p.save();
    p.setRenderHint(QPainter::SmoothPixmapTransform, false);
    p.drawImage(shown, part);
    p.restore();
}

void PaperPainter::DrawFeed(QPainter& p, const PrintedLine& line, int top) const {
    if (line.feedLines <= kMaxFeedLinesShown)
        return;
    p.save();
    p.setPen(kMarkColor);
    p.setFont(m_font);
    const int shown = kMaxFeedLinesShown * m_lineHeight;
    p.drawText(QRectF(0, top, m_paperWidth, shown), Qt::AlignCenter,
               QStringLiteral("\u22ee %1 lines fed \u22ee").arg(line.feedLines));
    p.restore();
}

void PaperPainter::DrawLogo(QPainter& p, const PrintedLine& line, int top) const {
    QFont big = m_font;
    big.setBold(true);
    big.setPixelSize(qRound(m_lineHeight * 1.3));
    const QFontMetricsF fm(big);
    const qreal emblemW = fm.horizontalAdvance(QStringLiteral("MF")) + 8;
    const qreal emblemH = 2 * m_lineHeight;
    const qreal serialW = line.text.size() * m_charWidth;
    const qreal left = AlignedLeft(line.attr.align, emblemW + m_charWidth + serialW);
    const QRectF emblem(left, top + 2, emblemW, emblemH);
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(Qt::black, 2));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(emblem.adjusted(1, 1, -1, -1), 6, 6);
    p.setFont(big);
    p.drawText(emblem, Qt::AlignCenter, QStringLiteral("MF"));
    p.setFont(m_font);
    p.drawText(QPointF(emblem.right() + m_charWidth, emblem.center().y() + m_ascent / 2 - 1), line.text);
    p.restore();
}

void PaperPainter::DrawPlaceholder(QPainter& p, const QString& text, int top, int height) const {
    const QRectF box(m_margin, top + 2, m_inner, height - 4);
    p.save();
    p.setPen(QPen(kMarkColor, 1, Qt::DashLine));
    p.setBrush(Qt::NoBrush);
    p.drawRect(box);
    p.setPen(kMarkColor);
    QFont f = m_font;
    f.setItalic(true);
    p.setFont(f);
    p.drawText(box.adjusted(4, 0, -4, 0), Qt::AlignCenter | Qt::TextWordWrap,
               QFontMetricsF(f).elidedText(PrintableText(text), Qt::ElideMiddle, 2 * (box.width() - 8)));
    p.restore();
}

void PaperPainter::DrawCut(QPainter& p, int top) const {
    // Two pieces of paper: the gap between them is no paper at all, with the cutter's line across.
    const int gap = CutGap();
    p.save();
    p.setPen(QPen(kMarkColor, 1, Qt::DashLine));
    const int y = top + gap / 2;
    p.drawLine(QPoint(qRound(m_margin), y), QPoint(m_paperWidth - 2, y));
    p.setPen(kMarkColor);
    p.setFont(m_font);
    p.drawText(QPointF(2, y + m_ascent / 2 - 1), QStringLiteral("\u2702"));
    p.restore();
}
