#include "PaperListing.h"

#include <QRegularExpression>
#include <QStringList>

namespace sim {

namespace {

QString TypeName(int type) {
    static const char* const names[] = {"EAN13", "UPC", "ITLV2of5", "CODE39"};
    return type >= 1 && type <= 4 ? QString::fromLatin1(names[type - 1]) : QStringLiteral("TYPE%1").arg(type);
}

QString Attributes(const PrintAttributes& a) {
    QStringList out;
    const auto add = [&out](bool on, const char* name) {
        if (on)
            out << QLatin1String(name);
    };
    add(a.doubleWidth, "double-width");
    add(a.doubleHeight, "double-height");
    add(a.halfHeight, "half-height");
    add(a.boxed, "boxed");
    add(a.bold, "bold");
    add(a.italic, "italic");
    if (a.underline == 1)
        out << QStringLiteral("underline");
    else if (a.underline > 1)
        out << QStringLiteral("underline=%1").arg(a.underline);
    add(a.reverse, "reverse");
    add(a.font == 2, "font-b");
    add(a.blink, "blink");
    add(a.align == Align::Center, "center");
    add(a.align == Align::Right, "right");
    add(a.rotation == Rotation::Left, "rotate-left");
    add(a.rotation == Rotation::Right, "rotate-right");
    add(a.rotation == Rotation::UpsideDown, "upside-down");
    add(a.rotation == Rotation::Down, "rotate-down");
    return out.isEmpty() ? QString() : u'{' + out.join(u',') + QStringLiteral("} ");
}

QString Escaped(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (QChar c : text) {
        if (c == u'\\')
            out += QStringLiteral("\\\\");
        else if (c.unicode() < 0x20 || c.unicode() == 0x7F)
            out += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
        else
            out += c;
    }
    if (out.startsWith(u'[') || out.startsWith(u'{'))
        out.prepend(u'\\');
    return out;
}

bool IsDocumentTime(const QString& text) {
    static const QRegularExpression time(QStringLiteral("^\\d\\d-\\d\\d-\\d{4} \\d\\d:\\d\\d$"));
    return time.match(text).hasMatch();
}

void ListRoll(const PaperRoll& roll, QString& out) {
    if (roll.TornOff() > 0)
        out += QStringLiteral("[TORN OFF %1]\n").arg(roll.TornOff());
    for (const PrintedLine& l : roll.Lines()) {
        out += PaperListingLine(l);
        out += u'\n';
        if (l.cutAfter)
            out += QStringLiteral("[CUT]\n");
    }
}

} // namespace

QString PaperListingLine(const PrintedLine& l) {
    const QString attr = Attributes(l.attr);
    switch (l.kind) {
    case PrintedLine::Kind::Text:
        if (IsDocumentTime(l.text))
            return attr + QStringLiteral("[DOCUMENT TIME]");
        return attr + Escaped(l.text);
    case PrintedLine::Kind::Barcode:
        return attr + QStringLiteral("[BARCODE %1 %2]").arg(TypeName(l.barcodeType), Escaped(l.text));
    case PrintedLine::Kind::Bitmap:
        return attr + QStringLiteral("[BITMAP %1]").arg(l.bitmapSlot);
    case PrintedLine::Kind::Feed:
        return attr + QStringLiteral("[FEED %1]").arg(l.feedLines);
    case PrintedLine::Kind::Logo:
        return attr + QStringLiteral("[FISCAL LOGO %1]").arg(l.text);
    }
    return {};
}

QString PaperListing(const PaperRoll& receipt, const PaperRoll& journal) {
    QString out = QStringLiteral("== receipt ==\n");
    ListRoll(receipt, out);
    out += QStringLiteral("== journal ==\n");
    ListRoll(journal, out);
    return out;
}

} // namespace sim
