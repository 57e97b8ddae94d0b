#include "Paper.h"

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

    void Finish() {
        FlushText();
        // A line of nothing but style changes still feeds paper.
        if (!m_produced) {
            PrintedLine blank;
            blank.attr = m_attr;
            m_out.append(blank);
        }
    }

private:
    void FlushText() {
        if (m_text.isEmpty())
            return;
        PrintedLine line;
        line.text = m_text;
        line.attr = m_attr;
        m_out.append(line);
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
        a.doubleWidth = a.doubleHeight = a.halfHeight = a.boxed = a.blink = a.reverse = false;
        break;
    case 2:
        a.doubleWidth = true;
        a.doubleHeight = a.halfHeight = false;
        break;
    case 3:
        a.doubleHeight = true;
        a.doubleWidth = a.halfHeight = false;
        break;
    case 4:
        a.doubleWidth = a.doubleHeight = true;
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

// Handles the sequence whose ESC stands at `pos`; returns the index just behind what it consumed.
qsizetype ParseSequence(const QString& line, qsizetype pos, LineBuilder& b) {
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
    if (!num.isEmpty() && !numOk)
        return j; // absurd number: unknown

    if (term == u'R' && !num.isEmpty() && lower.isEmpty()) {
        const qsizetype take = std::min<qsizetype>(value, n - j);
        const QString body = line.mid(j, take);
        j += take;
        if (body.isEmpty())
            return j;
        PrintedLine bc;
        bc.kind = PrintedLine::Kind::Barcode;
        bc.barcodeType = IsAsciiDigit(body[0]) ? body[0].unicode() - u'0' : 0;
        bc.text = body.mid(1);
        b.AddObject(bc);
        return j;
    }
    if (blank)
        return j; // only a barcode length may carry the blank

    PrintAttributes& a = b.Attr();
    if (lower.isEmpty() && !num.isEmpty()) {
        if (term == u'C') {
            ApplyCharacterToken(value, a);
        } else if (term == u'B') {
            PrintedLine bmp;
            bmp.kind = PrintedLine::Kind::Bitmap;
            bmp.bitmapSlot = value;
            b.AddObject(bmp);
        } else if (term == u'F') {
            if (value > 0) {
                PrintedLine feed;
                feed.kind = PrintedLine::Kind::Feed;
                feed.feedLines = value;
                b.AddObject(feed);
            } else {
                b.MarkProduced();
            }
        }
        return j;
    }
    if (!num.isEmpty())
        return j;
    if (lower.isEmpty() && term == u'K') {
        a.blink = true;
    } else if (lower.size() == 1 && term == u'A') {
        const QChar c = lower[0];
        if (c == u'l')
            a.align = Align::Left;
        else if (c == u'c')
            a.align = Align::Center;
        else if (c == u'r')
            a.align = Align::Right;
    } else if (lower.size() == 1 && term == u'R') {
        const QChar c = lower[0];
        if (c == u'l')
            a.rotation = Rotation::Left;
        else if (c == u'r')
            a.rotation = Rotation::Right;
        else if (c == u'u')
            a.rotation = Rotation::UpsideDown;
        else if (c == u'd')
            a.rotation = Rotation::Down;
    } else if (lower == QLatin1String("rv") && term == u'C') {
        a.reverse = true;
    }
    return j;
}

void InterpretLine(const QString& line, const PrintAttributes& base, QList<PrintedLine>& out) {
    LineBuilder b(out, base);
    qsizetype i = 0;
    while (i < line.size()) {
        if (line[i] == kEsc) {
            i = ParseSequence(line, i, b);
        } else {
            b.AddChar(line[i]);
            ++i;
        }
    }
    b.Finish();
}

// CR LF, a lone CR and a lone LF each end a line; a break at the very end opens no new line.
QStringList SplitLines(const QString& text) {
    QStringList lines;
    QString current;
    bool broke = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'\r' || c == u'\n') {
            if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
                ++i;
            lines.append(current);
            current.clear();
            broke = true;
        } else {
            current.append(c);
        }
    }
    if (!broke || !current.isEmpty())
        lines.append(current);
    return lines;
}

} // namespace

QList<PrintedLine> InterpretPrintControl(const QString& text) {
    return InterpretPrintControl(text, {});
}

QList<PrintedLine> InterpretPrintControl(const QString& text, const PrintAttributes& base) {
    QList<PrintedLine> out;
    for (const QString& line : SplitLines(text))
        InterpretLine(line, base, out);
    return out;
}

void PaperRoll::Append(const PrintedLine& line) {
    m_lines.append(line);
}

void PaperRoll::AppendText(const QString& textWithSequences, const PrintAttributes& base) {
    m_lines.append(InterpretPrintControl(textWithSequences, base));
}

const QList<PrintedLine>& PaperRoll::Lines() const {
    return m_lines;
}

qsizetype PaperRoll::Count() const {
    return m_lines.size();
}

QString PaperRoll::PlainText(qsizetype fromLine) const {
    QStringList out;
    for (qsizetype i = std::max<qsizetype>(fromLine, 0); i < m_lines.size(); ++i) {
        const PrintedLine& l = m_lines[i];
        switch (l.kind) {
        case PrintedLine::Kind::Text:
            out.append(l.text);
            break;
        case PrintedLine::Kind::Barcode:
            out.append(QStringLiteral("[BARCODE %1:%2]").arg(l.barcodeType).arg(l.text));
            break;
        case PrintedLine::Kind::Bitmap:
            out.append(QStringLiteral("[BITMAP %1]").arg(l.bitmapSlot));
            break;
        case PrintedLine::Kind::Feed:
            for (int k = 0; k < l.feedLines; ++k)
                out.append(QString());
            break;
        }
    }
    return out.join(u'\n');
}

void PaperRoll::Clear() {
    m_lines.clear();
}

} // namespace sim
