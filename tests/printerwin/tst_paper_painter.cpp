// The paper as drawn: each print attribute against a plain line, by a property only a correct
// drawing has; barcodes read back bar by bar against the symbologies' own tables; what the
// printer is given that it cannot print.
#include "BarcodeSymbol.h"
#include "PaperPainter.h"
#include "TestRow.h"

#include <QPainter>
#include <QtTest>

using sim::PrintedLine;

namespace {

const QString Esc(QChar(27));

bool Dark(QRgb c) {
    return qGray(c) < 128;
}

QImage Render(const PaperPainter& painter, const PrintedLine& line, const QImage& bitmap = {}) {
    QImage img(painter.PaperWidth(), painter.Height(line, bitmap), QImage::Format_RGB32);
    img.fill(Qt::white);
    QPainter p(&img);
    painter.Draw(p, line, 0, bitmap);
    return img;
}

QImage RenderText(const PaperPainter& painter, const QString& textWithSequences) {
    const QList<PrintedLine> lines = sim::InterpretPrintControl(textWithSequences);
    return Render(painter, lines.first());
}

// The ink: dark pixels on the line, and the box around them.
struct Ink {
    QRect box;
    int count = 0;
    int darkInBox = 0;
    int lightInBox = 0;
};

Ink Measure(const QImage& img) {
    Ink ink;
    int left = img.width(), right = -1, top = img.height(), bottom = -1;
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x)
            if (Dark(img.pixel(x, y))) {
                ++ink.count;
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
    if (right < 0)
        return ink;
    ink.box = QRect(QPoint(left, top), QPoint(right, bottom));
    for (int y = top; y <= bottom; ++y)
        for (int x = left; x <= right; ++x)
            (Dark(img.pixel(x, y)) ? ink.darkInBox : ink.lightInBox)++;
    return ink;
}

// Mean x (or y) of the ink in the rows [from, to).
double Mean(const QImage& img, bool x, int from = 0, int to = -1) {
    double sum = 0;
    int n = 0;
    for (int row = from; row < (to < 0 ? img.height() : to); ++row)
        for (int col = 0; col < img.width(); ++col)
            if (Dark(img.pixel(col, row)))
                sum += x ? col : row, ++n;
    return n ? sum / n : -1;
}

// Runs of equal colour along one row through the bars, from the first bar to the last.
QList<int> Runs(const QImage& img, int y) {
    QList<int> runs;
    int x = 0;
    while (x < img.width() && !Dark(img.pixel(x, y)))
        ++x;
    int last = img.width() - 1;
    while (last > x && !Dark(img.pixel(last, y)))
        --last;
    bool dark = true;
    int run = 0;
    for (; x <= last; ++x) {
        if (Dark(img.pixel(x, y)) == dark) {
            ++run;
        } else {
            runs << run;
            run = 1;
            dark = !dark;
        }
    }
    runs << run;
    return runs;
}

// ---- EAN-13 / UPC-A, from the GS1 tables: L codes, G codes (L reversed and inverted), R codes.
const char* const kL[10] = {"0001101", "0011001", "0010011", "0111101", "0100011",
                            "0110001", "0101111", "0111011", "0110111", "0001011"};
const char* const kG[10] = {"0100111", "0110011", "0011011", "0100001", "0011101",
                            "0111001", "0000101", "0010001", "0001001", "0010111"};
const char* const kR[10] = {"1110010", "1100110", "1101100", "1000010", "1011100",
                            "1001110", "1010000", "1000100", "1001000", "1110100"};
// Which of the six left digits use G codes, by the first digit.
const char* const kParity[10] = {"LLLLLL", "LLGLGG", "LLGGLG", "LLGGGL", "LGLLGG",
                                 "LGGLLG", "LGGGLL", "LGLGLG", "LGLGGL", "LGGLGL"};

int Digit(const QString& s, int i) {
    return s[i].unicode() - u'0';
}

// The 95 modules of a 13-digit EAN (a UPC-A is an EAN-13 with a leading 0).
QString Ean13Modules(const QString& digits) {
    QString m = QStringLiteral("101");
    const char* parity = kParity[Digit(digits, 0)];
    for (int i = 1; i <= 6; ++i)
        m += QLatin1String(parity[i - 1] == 'L' ? kL[Digit(digits, i)] : kG[Digit(digits, i)]);
    m += QStringLiteral("01010");
    for (int i = 7; i <= 12; ++i)
        m += QLatin1String(kR[Digit(digits, i)]);
    return m + QStringLiteral("101");
}

// ---- Code 39: nine elements a character, bar first, 1 for a wide element.
QString Code39Widths(QChar c) {
    static const QHash<QChar, QString> table{
        {u'0', "000110100"}, {u'1', "100100001"}, {u'2', "001100001"}, {u'3', "101100000"},
        {u'4', "000110001"}, {u'5', "100110000"}, {u'6', "001110000"}, {u'7', "000100101"},
        {u'8', "100100100"}, {u'9', "001100100"}, {u'A', "100001001"}, {u'B', "001001001"},
        {u'C', "101001000"}, {u'D', "000011001"}, {u'E', "100011000"}, {u'F', "001011000"},
        {u'O', "100010010"}, {u'-', "010000101"}, {u'*', "010010100"}, {u'.', "110000100"},
        {u' ', "011000100"},
    };
    return table.value(c);
}

} // namespace

class tst_PaperPainter : public QObject {
    Q_OBJECT

    PaperPainter painter{20}; // large enough for a slant to show by whole pixels

private slots:
    void attributes_data() {
        QTest::addColumn<QString>("sequences");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("property");
        Row("double width", "|2C", "HELLO", "twice as wide");
        Row("double height", "|3C", "HELLO", "twice as tall");
        Row("double width and height", "|4C", "HELLO", "twice as wide and tall");
        Row("half height", "|5C", "HELLO", "half as tall");
        Row("bold", "|bC", "HELLO", "more ink, same width");
        Row("underline", "|uC", "HELLO", "a line below the letters");
        Row("italic", "|iC", "IIIII", "leans to the right");
        Row("reverse", "|rvC", "HELLO", "dark behind light letters");
        Row("boxed", "|6C", "HELLO", "a frame around");
        Row("centred", "|cA", "HELLO", "ink centred on the paper");
        Row("right", "|rA", "HELLO", "ink at the right edge");
        Row("font B", "|2fT", "HELLO", "three quarters as wide");
        Row("rotated left", "|lR", "-----", "strokes stand up");
        Row("rotated right", "|rR", "-----", "strokes stand up");
        Row("upside down", "|uR", "_____", "ink at the top");
        Row("blink", "|K", "HELLO", "a mark in the margin");
    }
    void attributes() {
        QFETCH(QString, sequences);
        QFETCH(QString, text);
        QFETCH(QString, property);
        const QImage plainImage = RenderText(painter, text);
        const QImage styledImage = RenderText(painter, Esc + sequences + text);
        const Ink plain = Measure(plainImage), styled = Measure(styledImage);
        QVERIFY(plain.count > 0 && styled.count > 0);
        const double wide = double(styled.box.width()) / plain.box.width();
        const double tall = double(styled.box.height()) / plain.box.height();
        const qreal inner = painter.InnerWidth(), left = painter.InnerLeft(), cw = painter.CharWidth();
        const auto near = [](double value, double target) { return std::abs(value - target) < 0.2 * target; };

        if (property == "twice as wide") {
            QVERIFY2(near(wide, 2) && near(tall, 1), qPrintable(QString::number(wide)));
        } else if (property == "twice as tall") {
            QVERIFY2(near(tall, 2) && near(wide, 1), qPrintable(QString::number(tall)));
        } else if (property == "twice as wide and tall") {
            QVERIFY(near(wide, 2) && near(tall, 2));
        } else if (property == "half as tall") {
            QVERIFY2(near(tall, 0.5) && near(wide, 1), qPrintable(QString::number(tall)));
        } else if (property == "more ink, same width") {
            QVERIFY(styled.count > plain.count * 1.2);
            QVERIFY(std::abs(styled.box.width() - plain.box.width()) <= 3);
        } else if (property == "a line below the letters") {
            QVERIFY(styled.box.bottom() > plain.box.bottom());
            const int y = styled.box.bottom();
            int dark = 0;
            for (int x = plain.box.left(); x <= plain.box.right(); ++x)
                dark += Dark(styledImage.pixel(x, y));
            QVERIFY(dark >= 0.9 * plain.box.width());
        } else if (property == "leans to the right") {
            const int t = plain.box.top(), b = plain.box.bottom(), q = (b - t) / 4;
            const double plainLean = Mean(plainImage, true, t, t + q) - Mean(plainImage, true, b - q, b + 1);
            const double lean = Mean(styledImage, true, t, t + q) - Mean(styledImage, true, b - q, b + 1);
            QVERIFY2(std::abs(plainLean) < 0.5 && lean > 1.0, qPrintable(QString::number(lean)));
        } else if (property == "dark behind light letters") {
            QVERIFY(styled.darkInBox > 2 * styled.lightInBox);
            QVERIFY(styled.lightInBox > plain.count / 2); // the letters, in paper colour
            QVERIFY(styled.box.contains(plain.box));
        } else if (property == "a frame around") {
            QVERIFY(styled.box.contains(plain.box.adjusted(-1, -1, 1, 1)));
            for (int y : {styled.box.top(), styled.box.bottom()}) {
                int dark = 0;
                for (int x = styled.box.left(); x <= styled.box.right(); ++x)
                    dark += Dark(styledImage.pixel(x, y));
                QVERIFY(dark > 0.9 * styled.box.width());
            }
        } else if (property == "ink centred on the paper") {
            QVERIFY(plain.box.left() < left + cw);
            QVERIFY(std::abs(styled.box.center().x() - (left + inner / 2)) < cw / 2);
        } else if (property == "ink at the right edge") {
            QVERIFY(std::abs(styled.box.right() - (left + inner)) < cw / 2 + 1);
            QVERIFY(std::abs(styled.box.width() - plain.box.width()) <= 1); // sub-pixel placement
        } else if (property == "three quarters as wide") {
            QVERIFY2(near(wide, 0.75), qPrintable(QString::number(wide)));
        } else if (property == "strokes stand up") {
            QVERIFY(plain.box.width() > 4 * plain.box.height());
            QVERIFY(styled.box.height() > 2 * plain.box.height());
        } else if (property == "ink at the top") {
            QVERIFY(Mean(plainImage, false) > plainImage.height() / 2.0);
            QVERIFY(Mean(styledImage, false) < styledImage.height() / 2.0);
        } else if (property == "a mark in the margin") {
            QVERIFY(plain.box.left() >= left - 1);
            QVERIFY(styled.box.left() < left - 1);
        } else {
            QFAIL("no such property");
        }
    }

    // A line longer than the paper goes on below, like on a printer; a feed takes its lines.
    void sizes() {
        const int lh = painter.LineHeight();
        QCOMPARE(painter.Height(PrintedLine::Plain(QString(46, u'x'))), lh);
        QCOMPARE(painter.Height(PrintedLine::Plain(QString(47, u'x'))), 2 * lh);
        QCOMPARE(painter.Height(sim::InterpretPrintControl(Esc + "|2C" + QString(24, u'x')).first()), 2 * lh);
        PrintedLine feed;
        feed.kind = PrintedLine::Kind::Feed;
        feed.feedLines = 3;
        QCOMPARE(painter.Height(feed), 3 * lh);
        feed.feedLines = 2000000000; // drawn short, with its count
        QCOMPARE(painter.Height(feed), PaperPainter::kMaxFeedLinesShown * lh);
        PrintedLine cut = PrintedLine::Plain(QStringLiteral("x"));
        cut.cutAfter = true;
        QCOMPARE(painter.Height(cut), lh + painter.CutGap());
    }

    void barcodes_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("data");
        QTest::addColumn<QString>("modules"); // "" for Code 39, read by element widths
        Row("EAN-13, check digit given", 1, "4006381333931", Ean13Modules("4006381333931"));
        Row("EAN-13, check digit added", 1, "400638133393", Ean13Modules("4006381333931"));
        Row("UPC-A", 2, "03600029145", Ean13Modules("0036000291452"));
        Row("CODE39", 4, "CODE-39", QString());
    }
    void barcodes() {
        QFETCH(int, type);
        QFETCH(QString, data);
        QFETCH(QString, modules);
        PrintedLine line;
        line.kind = PrintedLine::Kind::Barcode;
        line.barcodeType = type;
        line.text = data;
        const QImage img = Render(painter, line);
        const QList<int> runs = Runs(img, painter.LineHeight()); // through the bars, above the digits
        QVERIFY(runs.size() > 20);
        const int narrow = *std::min_element(runs.begin(), runs.end());
        QVERIFY(narrow >= 1);
        if (!modules.isEmpty()) {
            QString read;
            bool bar = true;
            for (int run : runs) {
                QCOMPARE(run % narrow, 0); // whole modules: nothing smeared
                read += QString(run / narrow, bar ? u'1' : u'0');
                bar = !bar;
            }
            QCOMPARE(read, modules);
            return;
        }
        // Code 39: each character nine elements, then a narrow gap; wide is two to three narrow.
        QString expected = Code39Widths(u'*');
        for (QChar c : data)
            expected += Code39Widths(c);
        expected += Code39Widths(u'*');
        QString read, element;
        for (qsizetype i = 0; i < runs.size(); ++i) {
            if (i % 10 == 9) {
                QCOMPARE(runs[i], narrow); // the gap between characters
                continue;
            }
            QVERIFY(runs[i] == narrow || (runs[i] >= 2 * narrow && runs[i] <= 3 * narrow));
            read += runs[i] == narrow ? u'0' : u'1';
        }
        QCOMPARE(read, expected);
    }

    // What cannot be printed is shown as a readable placeholder with the reason, never a crash.
    void placeholders_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("data");
        QTest::addColumn<QString>("reason");
        Row("unknown type", 9, "123", "unknown barcode type 9");
        Row("EAN with a wrong check digit", 1, "4006381333932", "check digit");
        Row("CODE39 longer than zint takes", 4, QString(200, u'A'), "too long");
        Row("no data", 4, "", "no data");
    }
    void placeholders() {
        QFETCH(int, type);
        QFETCH(QString, data);
        QFETCH(QString, reason);
        const BarcodeSymbol symbol = EncodeBarcode(type, data);
        QVERIFY(!symbol.IsValid());
        QVERIFY2(symbol.error.contains(reason, Qt::CaseInsensitive), qPrintable(symbol.error));
        PrintedLine line;
        line.kind = PrintedLine::Kind::Barcode;
        line.barcodeType = type;
        line.text = data;
        QCOMPARE(painter.Height(line), 2 * painter.LineHeight());
        QVERIFY(Measure(Render(painter, line)).count > 0);
    }

    void unprintableInput() {
        // Every control character: each drawn as its picture, one column each.
        QString controls;
        for (char16_t c = 0; c < 0x20; ++c)
            if (c != u'\r' && c != u'\n' && c != 27)
                controls += QChar(c);
        controls += QChar(0x7f);
        const PrintedLine text = PrintedLine::Plain(controls);
        QCOMPARE(PrintableText(controls).size(), controls.size());
        for (QChar c : PrintableText(controls))
            QVERIFY(c.unicode() >= 0x2400 && c.unicode() <= 0x2421);
        QCOMPARE(painter.Height(text), painter.LineHeight());
        QVERIFY(Measure(Render(painter, text)).box.width() > (controls.size() - 2) * painter.CharWidth());

        // A bitmap whose slot was never loaded.
        PrintedLine bitmap;
        bitmap.kind = PrintedLine::Kind::Bitmap;
        bitmap.bitmapSlot = 7;
        QCOMPARE(painter.Height(bitmap), 2 * painter.LineHeight());
        QVERIFY(Measure(Render(painter, bitmap)).count > 0);
    }

    // A loaded bitmap fills the printable width at 576 dots, dot for dot, aligned as asked.
    void bitmap() {
        QImage picture(288, 20, QImage::Format_Mono);
        picture.fill(1);
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 144; ++x)
                picture.setPixel(x, y, 0); // black left half, white right half
        picture.setColor(0, qRgb(0, 0, 0));
        picture.setColor(1, qRgb(255, 255, 255));
        PrintedLine line;
        line.kind = PrintedLine::Kind::Bitmap;
        line.bitmapSlot = 1;
        line.attr.align = sim::Align::Center;
        const Ink ink = Measure(Render(painter, line, picture));
        const qreal dot = painter.InnerWidth() / PaperPainter::kPrinterDots;
        QVERIFY(std::abs(ink.box.width() - 144 * dot) <= 2);
        QVERIFY(std::abs(ink.box.height() - 20 * dot) <= 2);
        // Centred: the picture's middle, where the black half ends, is the paper's middle.
        QVERIFY(std::abs(ink.box.right() + 1 - (painter.InnerLeft() + painter.InnerWidth() / 2)) <= 2);
    }
};

QTEST_MAIN(tst_PaperPainter)
#include "tst_paper_painter.moc"
