// The interpreter of print-control sequences in printed text, and the roll that keeps what it gives:
// sequences never reach the paper, a barcode that passes is a good one, the check and the
// interpreter agree, and text without sequences prints as it is.

#include "FuzzSupport.h"

#include "Money.h"
#include "Paper.h"
#include "PrintControl.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::Init();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0)
        return 0;
    // The first byte: the attributes every printed line starts from.
    sim::PrintAttributes base;
    base.doubleWidth = data[0] & 1;
    base.doubleHeight = data[0] & 2;
    base.boxed = data[0] & 4;
    base.align = static_cast<sim::Align>((data[0] >> 3) % 3);
    base.rotation = static_cast<sim::Rotation>((data[0] >> 5) % 5);
    const QString text =
        fuzz::Text(QByteArray(reinterpret_cast<const char*>(data + 1), static_cast<qsizetype>(size - 1)));

    bool valid = true;
    const QList<sim::PrintedLine> lines = sim::InterpretPrintControl(text, base, &valid);
    if (valid != sim::IsValidPrintControl(text))
        fuzz::Fail("the check and the interpreter disagree", text);
    QString printed;
    bool onlyText = true;
    for (const sim::PrintedLine& line : lines) {
        if (line.text.contains(QChar(27)) || line.text.contains(QChar(13)) || line.text.contains(QChar(10)))
            fuzz::Fail("a control character reached the paper", text);
        switch (line.kind) {
        case sim::PrintedLine::Kind::Barcode:
            if (!sim::IsValidBarcode(line.barcodeType, line.text))
                fuzz::Fail("a bad barcode was printed", text);
            break;
        case sim::PrintedLine::Kind::Feed:
            if (line.feedLines < 0)
                fuzz::Fail("a feed of fewer than no lines", text);
            break;
        default:
            break;
        }
        onlyText = onlyText && line.kind == sim::PrintedLine::Kind::Text;
        printed += line.text;
    }
    if (!text.contains(QChar(27))) {
        QString plain = text;
        plain.remove(QChar(13)).remove(QChar(10));
        if (!onlyText || printed != plain)
            fuzz::Fail("text without sequences did not print as it is", text);
    }

    sim::PaperRoll roll;
    roll.AppendText(text, base);
    if (roll.Count() != lines.size())
        fuzz::Fail("the roll kept another number of lines", text);
    if (roll.PlainText().count(u'\n') != (lines.isEmpty() ? 0 : lines.size() - 1))
        fuzz::Fail("the roll's text is not one line per element", text);
    if (sim::MoneyLine(text, sim::kMaxAmount).size() != sim::kLineWidth)
        fuzz::Fail("a money line with this label is not one line wide", text);
    return 0;
}
