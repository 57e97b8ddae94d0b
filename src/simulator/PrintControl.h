#pragma once

#include <QList>
#include <QString>

namespace sim {

enum class Align { Left, Center, Right };
enum class Rotation { None, Left, Right, UpsideDown, Down }; // |lR |rR |uR |dR

struct PrintAttributes {
    bool doubleWidth = false, doubleHeight = false, halfHeight = false, boxed = false, blink = false,
         reverse = false, bold = false, italic = false;
    int underline = 0; // thickness in dots, 0 none
    int font = 1;      // typeface: 1 font A, 2 font B (narrower)
    Align align = Align::Left;
    Rotation rotation = Rotation::None;
    bool operator==(const PrintAttributes&) const = default;
};

// One element of a paper roll. A feed is one element with its count, however many lines it feeds.
struct PrintedLine {
    enum class Kind { Text, Barcode, Bitmap, Feed, Logo };
    Kind kind = Kind::Text;
    QString text; // Text: what is printed, no control sequences; Barcode: the data
    PrintAttributes attr;
    int barcodeType = 0;   // 1 EAN13, 2 UPC, 3 ITLV2of5, 4 CODE39
    int bitmapSlot = 0;    // Bitmap: slot number
    int feedLines = 0;     // Feed: lines fed
    bool cutAfter = false; // the paper is cut below this element (receipt roll only)

    static PrintedLine Plain(const QString& text, const PrintAttributes& attr = {}) {
        PrintedLine l;
        l.text = text;
        l.attr = attr;
        return l;
    }
    // Lines of paper it takes: a feed its count, anything else one.
    qint64 PaperLines() const { return kind == Kind::Feed ? qMax(feedLines, 1) : 1; }
};

// The one text form of a printed element: the text itself, "[BARCODE <type>:<data>]",
// "[BITMAP <slot>]", "[FEED <lines>]" or "[FISCAL LOGO <serial>]". A cut leaves no text.
QString PlainLine(const PrintedLine& line);

// Interprets print-control sequences (character 27 followed by "|1C" or "|N" normal, "|2C" double
// width, "|3C" double height, "|4C" both, "|5C" half height, "|6C" boxed, "|rvC" reverse, "|bC"
// bold, "|uC" or "|nuC" underline (n dots), "|iC" italic, "|!bC", "|!uC", "|!iC", "|!rvC" each
// back off, "|1fT"/"|2fT" font A/B, "|cA"/"|lA"/"|rA" alignment, "|lR"/"|rR"/"|uR"/"|dR" rotation,
// "|K" blink, "|nB" bitmap n, "|nF" feed n lines, "|P", "|nP" or "|nfP" paper cut, "|nR" barcode
// of the n characters that follow, the first being the type digit; the length may carry one
// leading blank). The text is split at CR/LF; attributes set by a sequence
// last to the end of that printed line, which starts from `base`. Sequences are never printed; an
// unknown one is dropped. A bad barcode sequence is dropped too and clears `*valid`.
QList<PrintedLine> InterpretPrintControl(const QString& text, const PrintAttributes& base = {},
                                         bool* valid = nullptr);
// False when a barcode sequence in `text` is bad: a type other than 1..4, data not valid for the
// type, or fewer than n characters behind it.
bool IsValidPrintControl(const QString& text);

// Barcode data check by type: 1 EAN13 (12 or 13 digits; a 13th must be the right check digit),
// 2 UPC (11 or 12 digits, same rule), 3 ITLV2of5 (an even number of digits, at least 2),
// 4 CODE39 (its character set: 0-9 A-Z space - . $ / + %).
bool IsValidBarcode(int type, const QString& data);

} // namespace sim
