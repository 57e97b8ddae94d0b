#include "Money.h"
#include "Paper.h"
#include "PaperListing.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>

using namespace sim;

namespace {

const QString Esc(QChar(27));

QString Seq(const char* token) {
    return Esc + QLatin1String(token);
}

// One line as "text{flags}", "<R type:data>", "<B slot>", "<F lines>" or "<L serial>", "%" behind
// when the paper is cut below it; flags: w double width, h double height, s half height, b boxed,
// k blink, v reverse, B bold, I italic, U<n> underline, f<n> font, c centre, r right, L/R/U/D
// rotation.
QString Describe(const PrintedLine& l) {
    const PrintAttributes& a = l.attr;
    const QString f =
        QString(a.doubleWidth ? "w" : "") + (a.doubleHeight ? "h" : "") + (a.halfHeight ? "s" : "") +
        (a.boxed ? "b" : "") + (a.blink ? "k" : "") + (a.reverse ? "v" : "") + (a.bold ? "B" : "") +
        (a.italic ? "I" : "") + (a.underline ? "U" + QString::number(a.underline) : "") +
        (a.font != 1 ? "f" + QString::number(a.font) : "") + QStringList{"", "c", "r"}[int(a.align)] +
        QStringList{"", "L", "R", "U", "D"}[int(a.rotation)];
    const QString attr = f.isEmpty() ? QString() : u'{' + f + u'}';
    const QString body[] = {l.text, QStringLiteral("<R%1:%2>").arg(l.barcodeType).arg(l.text),
                            QStringLiteral("<B%1>").arg(l.bitmapSlot),
                            QStringLiteral("<F%1>").arg(l.feedLines), QStringLiteral("<L%1>").arg(l.text)};
    return body[int(l.kind)] + attr + (l.cutAfter ? "%" : ""); // Text, Barcode, Bitmap, Feed, Logo
}
QString Describe(const QList<PrintedLine>& lines) {
    QStringList out;
    for (const PrintedLine& l : lines)
        out << Describe(l);
    return out.join(u'/');
}

} // namespace

// The money-line formatter, the print-control interpreter and the rolls.
class TestPaper : public QObject {
    Q_OBJECT

private slots:
    void money_data() {
        QTest::addColumn<Amount>("amount");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("cents");
        QTest::newRow("zero") << Amount{0} << "0,00"
                              << "0";
        QTest::newRow("25.00") << Amount{250000} << "25,00"
                               << "2500";
        QTest::newRow("below zero") << Amount{-35000} << "-3,50"
                                    << "-350";
        QTest::newRow("half a cent rounds up") << Amount{50} << "0,01"
                                               << "1";
        QTest::newRow("just below half a cent") << Amount{49} << "0,00"
                                                << "0";
        QTest::newRow("half a cent below zero rounds away") << Amount{-50} << "-0,01"
                                                            << "-1";
        QTest::newRow("large") << Amount{12345678900} << "1234567,89"
                               << "123456789";
        QTest::newRow("64-bit top") << std::numeric_limits<Amount>::max() << "922337203685477,58"
                                    << "92233720368547758";
        QTest::newRow("64-bit bottom") << std::numeric_limits<Amount>::min() << "-922337203685477,58"
                                       << "-92233720368547758";
    }
    void money() {
        QFETCH(Amount, amount);
        QFETCH(QString, text);
        QFETCH(QString, cents);
        QCOMPARE(MoneyText(amount), text);
        QCOMPARE(CentsText(amount), cents);
    }

    // A printed money line is 46 characters: the label on the left, the amount on the right.
    void moneyLine_data() {
        QTest::addColumn<QString>("label");
        QTest::addColumn<Amount>("amount");
        QTest::addColumn<QString>("line");
        const auto pad = [](int n) { return QString(n, u' '); };
        QTest::newRow("short label") << "TOTALE" << Amount{125000} << "TOTALE" + pad(35) + "12,50";
        QTest::newRow("empty label") << "" << Amount{-10000} << pad(41) + "-1,00";
        QTest::newRow("label cut, one blank kept")
            << QString(50, u'x') << Amount{10000} << QString(41, u'x') + " 1,00";
        QTest::newRow("label that just fits")
            << QString(40, u'y') << Amount{10000} << QString(40, u'y') + pad(2) + "1,00";
    }
    void moneyLine() {
        QFETCH(QString, label);
        QFETCH(Amount, amount);
        QFETCH(QString, line);
        QCOMPARE(MoneyLine(label, amount), line);
        QCOMPARE(MoneyLine(label, amount).size(), 46);
    }

    void printControl_data() {
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("expected"); // as Describe() writes it
        QTest::addColumn<bool>("valid");
        const auto row = [](const char* name, const QString& in, const QString& out, bool valid = true) {
            QTest::newRow(name) << in << out << valid;
        };
        row("double width", Seq("|2C") + "x", "x{w}");
        row("double height", Seq("|3C") + "x", "x{h}");
        row("double both", Seq("|4C") + "x", "x{wh}");
        row("half height", Seq("|5C") + "x", "x{s}");
        row("boxed", Seq("|6C") + "x", "x{b}");
        row("reverse", Seq("|rvC") + "x", "x{v}");
        row("normal after double width", Seq("|2C") + Seq("|1C") + "x", "x");
        row("later size wins", Seq("|2C") + Seq("|3C") + "x", "x{h}");
        row("centre", Seq("|cA") + "x", "x{c}");
        row("right", Seq("|rA") + "x", "x{r}");
        row("left after right", Seq("|rA") + Seq("|lA") + "x", "x");
        row("rotate left", Seq("|lR") + "x", "x{L}");
        row("rotate upside down", Seq("|uR") + "x", "x{U}");
        row("blink", Seq("|K") + "x", "x{k}");
        row("sequence inside the text", "Dou" + Seq("|2C") + "ble", "Double{w}");
        row("attributes reset per line",
            Seq("|2C") + Seq("|cA") + "Big\r\nSmall\r\n" + Seq("|K") + "Blink\r\nPlain",
            "Big{wc}/Small/Blink{k}/Plain");
        row("LF and CR", "a\nb\rc", "a/b/c");
        row("empty line kept", "a\r\n\r\nb", "a//b");
        row("trailing break", "a\r\n", "a");
        row("bitmap, feed, in order", "A" + Seq("|10B") + "B" + Seq("|3F") + "C", "A/<B10>/B/<F3>/C");
        row("a feed of two billion is one element", Seq("|2000000000F"), "<F2000000000>");
        row("centred bitmap", Seq("|cA") + Seq("|1B"), "<B1>{c}");
        // EAN-13 4007817504598: 4+21+8+3+7+15+12+5+27 = 102, check digit 8.
        row("barcode", Esc + "|14R14007817504598", "<R1:4007817504598>");
        row("barcode, leading blank", Esc + "| 9R301234567", "<R3:01234567>");
        row("barcode, text behind", Esc + "|4R4ABCxyz", "<R4:ABC>/xyz");
        row("barcode, wrong check digit", Esc + "|14R14007817504597", "", false);
        row("barcode of type 0", Esc + "|5R01234", "", false);
        row("barcode of type 5", Esc + "|5R51234", "", false);
        row("barcode with no type digit", Esc + "|3RABC", "", false);
        row("barcode cut short", Esc + "|14R1400781", "", false);
        row("barcode swallowing a sequence", Esc + "|5R4" + Seq("|2C") + "x", "x", false);
        row("bold", Seq("|bC") + "x", "x{B}");
        row("italic", Seq("|iC") + "x", "x{I}");
        row("underline", Seq("|uC") + "x", "x{U1}");
        row("underline two dots", Seq("|2uC") + "x", "x{U2}");
        row("font B", Seq("|2fT") + "x", "x{f2}");
        row("font A after B", Seq("|2fT") + Seq("|1fT") + "x", "x");
        row("each style off again",
            Seq("|bC") + Seq("|uC") + Seq("|iC") + Seq("|rvC") + Seq("|!bC") + Seq("|!uC") + Seq("|!iC") +
                Seq("|!rvC") + "x",
            "x");
        row("normal clears the styles", Seq("|bC") + Seq("|2fT") + Seq("|2C") + Seq("|N") + "x", "x");
        row("cut below the line", "A" + Seq("|P") + "\r\nB", "A%/B");
        row("cut splits a line", "A" + Seq("|50P") + "B", "A%/B");
        row("feed and cut", "A" + Seq("|100fP"), "A%");
        row("cut before anything", Seq("|P") + "A", "%/A");
        row("unknown: unused size", "A" + Seq("|9C") + "B", "AB");
        row("unknown: a third font", "A" + Seq("|3fT") + "B", "AB");
        row("unknown: letters and number", "A" + Seq("|3bC") + "B", "AB");
        row("unknown: off for a size", "A" + Seq("|!2C") + "B", "AB");
        row("unknown: blank before bitmap", "A" + Seq("| 1B") + "B", "AB");
        row("unknown: a feed beyond 32 bits", "A" + Seq("|99999999999F") + "B", "AB");
        // Without its closing capital it is no sequence: only ESC and the bar go.
        row("unterminated", "A" + Seq("|12") + ", B", "A12, B");
        row("ESC at the end", "AB" + Esc, "AB");
    }
    void printControl() {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        QFETCH(bool, valid);
        bool ok = !valid;
        QCOMPARE(Describe(InterpretPrintControl(input, {}, &ok)), expected);
        QCOMPARE(ok, valid);
        QCOMPARE(IsValidPrintControl(input), valid);
    }

    void rollBaseAttributes() {
        // With base attributes every line starts again from the base.
        PrintAttributes base;
        base.align = Align::Right;
        PaperRoll roll;
        roll.AppendText(Seq("|lA") + "left\r\nbase", base);
        QCOMPARE(Describe(roll.Lines()), QStringLiteral("left/base{r}"));
    }

    // One text line per element of the roll, a feed as one line however long it is.
    void plainText() {
        PaperRoll roll;
        QSignalSpy appended(&roll, &PaperRoll::appended);
        roll.AppendText("Hello\r\n" + Esc + "|14R14007817504598" + Seq("|3B") + Seq("|2000000000F") + "Bye" +
                        Seq("|P"));
        PrintedLine logo;
        logo.kind = PrintedLine::Kind::Logo;
        logo.text = QStringLiteral("99ZS000123");
        roll.Append(logo);
        QCOMPARE(roll.Count(), 6);
        QCOMPARE(appended.count(), 6);
        QCOMPARE(appended.last().at(0).value<qsizetype>(), 5);
        QCOMPARE(roll.PlainText(), QStringLiteral("Hello\n[BARCODE 1:4007817504598]\n[BITMAP 3]\n"
                                                  "[FEED 2000000000]\nBye\n[FISCAL LOGO 99ZS000123]"));
        QCOMPARE(roll.PlainText(2),
                 QStringLiteral("[BITMAP 3]\n[FEED 2000000000]\nBye\n[FISCAL LOGO 99ZS000123]"));
        QCOMPARE(roll.Lines().at(3).PaperLines(), 2000000000);
        roll.Clear();
        QCOMPARE(roll.PlainText(), QString());
    }

    // A full roll loses its oldest half, up to the end of the document there when one ends near.
    void tearOff_data() {
        QTest::addColumn<qsizetype>("cutAfter"); // the element a cut follows, -1 none
        QTest::addColumn<qsizetype>("expected");
        const qsizetype half = PaperRoll::kCapacity / 2;
        QTest::newRow("no cut") << qsizetype(-1) << half;
        QTest::newRow("cut ends the half") << half - 1 << half;
        QTest::newRow("cut just before the half") << half - 2 << half;
        QTest::newRow("cut within reach") << half + 99 << half + 100;
        QTest::newRow("cut out of reach") << half + PaperRoll::kCutSearch + 5 << half;
    }
    void tearOff() {
        QFETCH(qsizetype, cutAfter);
        QFETCH(qsizetype, expected);
        PaperRoll roll;
        PrintedLine line;
        for (qsizetype i = 0; i < PaperRoll::kCapacity; ++i) {
            line.text = QString::number(i);
            line.cutAfter = i == cutAfter;
            roll.Append(line);
        }
        QCOMPARE(roll.TornOff(), 0);
        QSignalSpy tornOff(&roll, &PaperRoll::tornOff);
        QSignalSpy appended(&roll, &PaperRoll::appended);
        line.text = QStringLiteral("last");
        line.cutAfter = false;
        roll.Append(line);
        QCOMPARE(tornOff.count(), 1);
        QCOMPARE(tornOff.first().at(0).value<qsizetype>(), expected);
        QCOMPARE(roll.TornOff(), expected);
        QCOMPARE(roll.Count(), PaperRoll::kCapacity - expected + 1);
        QCOMPARE(roll.Lines().first().text, QString::number(expected));
        QCOMPARE(appended.first().at(0).value<qsizetype>(), roll.Count() - 1);
        QVERIFY(PaperListing(roll, PaperRoll())
                    .startsWith("== receipt ==\n[TORN OFF " + QString::number(expected) + "]\n" +
                                QString::number(expected) + "\n"));
        roll.Clear();
        QCOMPARE(roll.TornOff(), 0);
    }
};

QTEST_GUILESS_MAIN(TestPaper)
#include "test_paper.moc"
