#pragma once

#include <QList>
#include <QString>

namespace sim {

enum class Align { Left, Center, Right };
enum class Rotation { None, Left, Right, UpsideDown, Down }; // |lR |rR |uR |dR

struct PrintAttributes {
    bool doubleWidth = false, doubleHeight = false, halfHeight = false, boxed = false, blink = false,
         reverse = false;
    Align align = Align::Left;
    Rotation rotation = Rotation::None;
    bool operator==(const PrintAttributes&) const = default;
};

struct PrintedLine {
    enum class Kind { Text, Barcode, Bitmap, Feed };
    Kind kind = Kind::Text;
    QString text; // Text: what is printed, no control sequences; Barcode: the data
    PrintAttributes attr;
    int barcodeType = 0; // 1 EAN13, 2 UPC, 3 ITLV2of5, 4 CODE39
    int bitmapSlot = 0;  // Bitmap: slot number
    int feedLines = 0;   // Feed: lines fed
};

// Interprets print-control sequences (character 27 followed by "|1C" normal, "|2C" double width,
// "|3C" double height, "|5C" half height, "|6C" boxed, "|cA"/"|lA"/"|rA" alignment,
// "|lR"/"|rR"/"|uR"/"|dR" rotation, "|K" blink, "|nB" bitmap n, "|nF" feed n lines,
// "|nR" barcode of n characters that follow, whose first is the type digit; the length may carry one
// leading blank). The text is split at CR/LF; attributes set by a sequence last to the end of that
// printed line. Sequences are never printed; an unknown sequence is dropped.
QList<PrintedLine> InterpretPrintControl(const QString& text);
// The same, each printed line starting from `base` instead of plain attributes.
QList<PrintedLine> InterpretPrintControl(const QString& text, const PrintAttributes& base);

class PaperRoll {
public:
    void Append(const PrintedLine& line);
    void AppendText(const QString& textWithSequences, const PrintAttributes& base = {}); // interpret + append
    const QList<PrintedLine>& Lines() const;
    qsizetype Count() const;
    // Plain-text rendering: one text line per printed line; a barcode as "[BARCODE <type>:<data>]",
    // a bitmap as "[BITMAP <slot>]", a feed as that many empty lines. Lines joined by "\n".
    QString PlainText(qsizetype fromLine = 0) const;
    void Clear();

private:
    QList<PrintedLine> m_lines;
};

} // namespace sim
