#include "PrintControl.h"

#include <QStringList>

#include <algorithm>

namespace sim {

namespace {

constexpr QChar kEsc(27);

bool IsAsciiDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}
bool IsLower(QChar c) {
    return c >= u'a' && c <= u'z';
}
bool IsUpper(QChar c) {
    return c >= u'A' && c <= u'Z';
}
bool IsAsciiDigits(const QString& s) {
    return std::all_of(s.begin(), s.end(), IsAsciiDigit);
}

// GS1 check digit: data digits weighted 3, 1, 3, ... from the right.
bool CheckDigitOk(const QString& digits) {
    int sum = 0;
    int weight = 3;
    for (qsizetype i = digits.size() - 2; i >= 0; --i) {
        sum += (digits[i].unicode() - u'0') * weight;
        weight = 4 - weight;
    }
    return (10 - sum % 10) % 10 == digits.back().unicode() - u'0';
}

// Collects what one source line (between two line breaks) puts on paper.
class LineBuilder {
public:
    LineBuilder(QList<PrintedLine>& out, const PrintAttributes& base) : m_out(out), m_attr(base) {}

    PrintAttributes& Attr() { return m_attr; }
    void AddChar(QChar c) { m_text.append(c); }

    void AddObject(PrintedLine line) {
        FlushText();
        line.attr = m_attr;
        m_out.append(line);
        m_produced = true;
    }
    // Something that prints nothing but still counts as the line's content.
    void MarkProduced() { m_produced = true; }
    // The paper is cut below what is printed so far; with nothing printed yet, below a blank line.
    void Cut() {
        FlushText();
        if (m_out.isEmpty())
            m_out.append(PrintedLine::Plain(QString(), m_attr));
        m_out.last().cutAfter = true;
        m_produced = true;
    }

    void Finish() {
        FlushText();
        // A line of nothing but style changes still feeds paper.
        if (!m_produced)
            m_out.append(PrintedLine::Plain(QString(), m_attr));
    }

private:
    void FlushText() {
        if (m_text.isEmpty())
            return;
        m_out.append(PrintedLine::Plain(m_text, m_attr));
        m_text.clear();
        m_produced = true;
    }

    QList<PrintedLine>& m_out;
    PrintAttributes m_attr;
    QString m_text;
    bool m_produced = false;
};

// Size tokens select one size each, as UnifiedPOS has them; boxing adds to the size.
void ApplyCharacterToken(int n, PrintAttributes& a) {
    switch (n) {
    case 1:
        a = PrintAttributes{.align = a.align, .rotation = a.rotation};
        break;
    case 2:
    case 3:
    case 4:
        a.doubleWidth = n != 3;
        a.doubleHeight = n != 2;
        a.halfHeight = false;
        break;
    case 5:
        a.halfHeight = true;
        a.doubleWidth = a.doubleHeight = false;
        break;
    case 6:
        a.boxed = true;
        break;
    default:
        break;
    }
}

// The barcode whose n characters start at `from`; false when it is bad.
bool TakeBarcode(const QString& line, qsizetype from, int n, PrintedLine* out) {
    if (n < 2 || line.size() - from < n)
        return false;
    const QChar type = line[from];
    if (!IsAsciiDigit(type))
        return false;
    out->kind = PrintedLine::Kind::Barcode;
    out->barcodeType = type.unicode() - u'0';
    out->text = line.mid(from + 1, n - 1);
    return IsValidBarcode(out->barcodeType, out->text);
}

// Handles the sequence whose ESC stands at `pos`; returns the index just behind what it consumed.
qsizetype ParseSequence(const QString& line, qsizetype pos, LineBuilder& b, bool& valid) {
    const qsizetype n = line.size();
    qsizetype j = pos + 1;
    if (j >= n || line[j] != u'|')
        return j; // a lone ESC is a control character: never printed
    ++j;
    bool blank = false;
    if (j < n && line[j] == u' ') {
        blank = true;
        ++j;
    }
    bool off = false; // "!": the attribute goes back off
    if (!blank && j < n && line[j] == u'!') {
        off = true;
        ++j;
    }
    const qsizetype numStart = j;
    while (j < n && IsAsciiDigit(line[j]))
        ++j;
    const QString num = line.mid(numStart, j - numStart);
    const qsizetype lowStart = j;
    while (j < n && IsLower(line[j]))
        ++j;
    const QString lower = line.mid(lowStart, j - lowStart);
    if (j >= n || !IsUpper(line[j]))
        return pos + 2; // not a sequence: drop ESC and "|", print the rest
    const QChar term = line[j++];

    bool numOk = false;
    const int value = num.isEmpty() ? -1 : num.toInt(&numOk);
    if (term == u'R' && !num.isEmpty() && lower.isEmpty() && !off) {
        PrintedLine bc;
        if (!numOk || !TakeBarcode(line, j, value, &bc)) {
            valid = false;
            return numOk ? std::min<qsizetype>(n, j + value) : n;
        }
        b.AddObject(bc);
        return j + value;
    }
    if (!num.isEmpty() && !numOk)
        return j; // a count beyond any paper: unknown
    if (blank)
        return j; // only a barcode length may carry the blank

    PrintAttributes& a = b.Attr();
    if (off) {
        if (!num.isEmpty() || term != u'C')
            return j;
        if (lower == QLatin1String("b"))
            a.bold = false;
        else if (lower == QLatin1String("u"))
            a.underline = 0;
        else if (lower == QLatin1String("i"))
            a.italic = false;
        else if (lower == QLatin1String("rv"))
            a.reverse = false;
        return j;
    }
    if (lower.isEmpty()) {
        if (term == u'C' && !num.isEmpty()) {
            ApplyCharacterToken(value, a);
        } else if (term == u'B' && !num.isEmpty()) {
            PrintedLine bmp;
            bmp.kind = PrintedLine::Kind::Bitmap;
            bmp.bitmapSlot = value;
            b.AddObject(bmp);
        } else if (term == u'F' && !num.isEmpty()) {
            if (value > 0) {
                PrintedLine feed;
                feed.kind = PrintedLine::Kind::Feed;
                feed.feedLines = value;
                b.AddObject(feed);
            } else {
                b.MarkProduced();
            }
        } else if (term == u'P') {
            b.Cut(); // a partial cut (any percentage) is a cut on this paper
        } else if (term == u'K' && num.isEmpty()) {
            a.blink = true;
        } else if (term == u'N' && num.isEmpty()) {
            ApplyCharacterToken(1, a);
        }
        return j;
    }
    if (lower == QLatin1String("u") && term == u'C') {
        a.underline = num.isEmpty() ? 1 : value;
    } else if (lower == QLatin1String("rv") && term == u'C') {
        a.reverse = num.isEmpty() || value > 0;
    } else if (lower == QLatin1String("f") && term == u'T') {
        if (value == 1 || value == 2)
            a.font = value;
    } else if (lower == QLatin1String("f") && term == u'P') {
        b.Cut(); // feed to the cutter, then cut
    } else if (!num.isEmpty()) {
        return j;
    } else if (lower == QLatin1String("b") && term == u'C') {
        a.bold = true;
    } else if (lower == QLatin1String("i") && term == u'C') {
        a.italic = true;
    } else if (term == u'A' &&
               (lower == QLatin1String("l") || lower == QLatin1String("c") || lower == QLatin1String("r"))) {
        const QChar c = lower[0];
        a.align = c == u'l' ? Align::Left : c == u'c' ? Align::Center : Align::Right;
    } else if (term == u'R' && lower.size() == 1 && QStringLiteral("lrud").contains(lower[0])) {
        const QChar c = lower[0];
        a.rotation = c == u'l'   ? Rotation::Left
                     : c == u'r' ? Rotation::Right
                     : c == u'u' ? Rotation::UpsideDown
                                 : Rotation::Down;
    }
    return j;
}

void InterpretLine(QStringView line, const PrintAttributes& base, QList<PrintedLine>& out, bool& valid) {
    const QString text = line.toString();
    LineBuilder b(out, base);
    qsizetype i = 0;
    while (i < text.size()) {
        if (text[i] == kEsc) {
            i = ParseSequence(text, i, b, valid);
        } else {
            b.AddChar(text[i]);
            ++i;
        }
    }
    b.Finish();
}

} // namespace

QString PlainLine(const PrintedLine& l) {
    switch (l.kind) {
    case PrintedLine::Kind::Text:
        return l.text;
    case PrintedLine::Kind::Barcode:
        return QStringLiteral("[BARCODE ") + QString::number(l.barcodeType) + u':' + l.text + u']';
    case PrintedLine::Kind::Bitmap:
        return QStringLiteral("[BITMAP ") + QString::number(l.bitmapSlot) + u']';
    case PrintedLine::Kind::Feed:
        return QStringLiteral("[FEED ") + QString::number(l.feedLines) + u']';
    case PrintedLine::Kind::Logo:
        return QStringLiteral("[FISCAL LOGO ") + l.text + u']';
    }
    return {};
}

QList<PrintedLine> InterpretPrintControl(const QString& text, const PrintAttributes& base, bool* valid) {
    QList<PrintedLine> out;
    bool ok = true;
    // CR LF, a lone CR and a lone LF each end a line; a break at the very end opens no new line.
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c != u'\r' && c != u'\n')
            continue;
        InterpretLine(QStringView(text).mid(start, i - start), base, out, ok);
        if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++i;
        start = i + 1;
    }
    if (start < text.size() || start == 0)
        InterpretLine(QStringView(text).mid(start), base, out, ok);
    if (valid)
        *valid = ok;
    return out;
}

bool IsValidPrintControl(const QString& text) {
    if (!text.contains(kEsc))
        return true;
    bool valid = true;
    InterpretPrintControl(text, {}, &valid);
    return valid;
}

bool IsValidBarcode(int type, const QString& data) {
    switch (type) {
    case 1:
        if (!IsAsciiDigits(data) || (data.size() != 12 && data.size() != 13))
            return false;
        return data.size() == 12 || CheckDigitOk(data);
    case 2:
        if (!IsAsciiDigits(data) || (data.size() != 11 && data.size() != 12))
            return false;
        return data.size() == 11 || CheckDigitOk(data);
    case 3:
        return data.size() >= 2 && data.size() % 2 == 0 && IsAsciiDigits(data);
    case 4: {
        if (data.isEmpty())
            return false;
        static const QString extra = QStringLiteral(" -.$/+%");
        return std::all_of(data.begin(), data.end(), [](QChar c) {
            return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || extra.contains(c);
        });
    }
    default:
        return false;
    }
}

} // namespace sim
