#pragma once

#include "BarcodeSymbol.h"
#include "PrintControl.h"

#include <QCache>
#include <QFont>
#include <QImage>
#include <QRectF>

class QPainter;

// Draws the elements of a paper roll as the printer puts them on paper: a strip of the printer's
// column width in a monospaced font, every print attribute drawn, barcodes as real symbols,
// bitmaps dot for dot, a cut mark below a cut. Everything is measured in pixels of one element at
// a time, so a view can lay out any number of elements without drawing them.
class PaperPainter {
public:
    static constexpr int kColumns = 46;          // font A characters per line
    static constexpr int kPrinterDots = 576;     // dots across the printable width
    static constexpr int kMaxFeedLinesShown = 8; // a longer feed is drawn this long, with its count

    explicit PaperPainter(int pixelSize = 14);

    int PaperWidth() const { return m_paperWidth; }
    qreal InnerLeft() const { return m_margin; }
    qreal InnerWidth() const { return m_inner; }
    qreal CharWidth() const { return m_charWidth; }
    int LineHeight() const { return m_lineHeight; }
    int CutGap() const { return m_lineHeight; }

    // Height in pixels, the cut gap below a cut included. `bitmap` is the picture a bitmap element
    // printed (null when its slot was empty).
    int Height(const sim::PrintedLine& line, const QImage& bitmap = {}) const;
    // Draws the element with its top at `top`, across the paper's width from x = 0.
    void Draw(QPainter& p, const sim::PrintedLine& line, int top, const QImage& bitmap = {}) const;
    // The blank paper behind elements from `top` to `bottom`.
    void DrawPaper(QPainter& p, int top, int bottom) const;

    // The symbol a barcode element draws, from a small cache.
    const BarcodeSymbol& Symbol(int type, const QString& data) const;
    // Pixels per module for a symbol on this paper: 0 when it is wider than the paper.
    int ModulePixels(const BarcodeSymbol& symbol) const;

    static QColor PaperColor() { return {252, 251, 246}; }

private:
    struct Scale {
        qreal x = 1, y = 1;
    };
    Scale TextScale(const sim::PrintAttributes& a) const;
    qreal Advance(const sim::PrintAttributes& a) const;
    int CharsPerRow(const sim::PrintAttributes& a) const;
    QFont FontFor(const sim::PrintAttributes& a) const;
    int ContentHeight(const sim::PrintedLine& line, const QImage& bitmap) const;

    void DrawText(QPainter& p, const sim::PrintedLine& line, int top) const;
    void DrawTextRow(QPainter& p, const QString& chunk, const sim::PrintAttributes& a,
                     const QRectF& row) const;
    void DrawBarcode(QPainter& p, const sim::PrintedLine& line, int top) const;
    void DrawBitmap(QPainter& p, const sim::PrintedLine& line, int top, const QImage& bitmap) const;
    void DrawFeed(QPainter& p, const sim::PrintedLine& line, int top) const;
    void DrawLogo(QPainter& p, const sim::PrintedLine& line, int top) const;
    void DrawPlaceholder(QPainter& p, const QString& text, int top, int height) const;
    void DrawCut(QPainter& p, int top) const;
    qreal AlignedLeft(sim::Align align, qreal width) const;

    QFont m_font;
    qreal m_charWidth = 0, m_ascent = 0, m_margin = 0, m_inner = 0;
    int m_lineHeight = 0, m_paperWidth = 0, m_barHeight = 0;
    mutable QCache<QString, BarcodeSymbol> m_symbols{64};
};

// What a printer draws for a control character: its picture from the Unicode control pictures.
QString PrintableText(const QString& text);
