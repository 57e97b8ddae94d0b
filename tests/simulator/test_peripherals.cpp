#include "Paper.h"
#include "Peripherals.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace sim;

namespace {

const QString Esc(QChar(27));

QString Seq(const char* token) {
    return Esc + QLatin1String(token);
}

// Barcode token as the sequence generator writes it: length of type digit + data, no blank.
QString BarcodeToken(int type, const QString& data, bool leadingBlank = false) {
    const QString body = QString::number(type) + data;
    return Esc + u'|' + (leadingBlank ? QStringLiteral(" ") : QString()) + QString::number(body.size()) +
           u'R' + body;
}

// EAN-13 check digit, the textbook way: digits in odd places weigh 1, in even places 3.
int Ean13CheckDigit(const QString& twelve) {
    int sum = 0;
    for (int i = 0; i < 12; ++i)
        sum += twelve[i].digitValue() * (i % 2 == 0 ? 1 : 3);
    return (10 - sum % 10) % 10;
}

// UPC-A check digit: odd places weigh 3, even places 1.
int UpcCheckDigit(const QString& eleven) {
    int sum = 0;
    for (int i = 0; i < 11; ++i)
        sum += eleven[i].digitValue() * (i % 2 == 0 ? 3 : 1);
    return (10 - sum % 10) % 10;
}

PrintAttributes Attr(void (*set)(PrintAttributes&)) {
    PrintAttributes a;
    set(a);
    return a;
}

// A 1x1 GIF (white and black palette, one black pixel). Qt can read GIF but not write it.
const QByteArray kTinyGif = QByteArray::fromHex("47494638396101000100800000ffffff000000"
                                                "2c00000000010001000002024c01003b");

} // namespace

class TestPeripherals : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString MakeBmp(const QString& name, int w, int h) const;

private slots:
    void initTestCase();

    // Print-control interpretation and the paper roll
    void styleTokens_data();
    void styleTokens();
    void lineBreaks_data();
    void lineBreaks();
    void attributesLastToEndOfLine();
    void barcodeToken_data();
    void barcodeToken();
    void bitmapAndFeedTokens();
    void unknownSequenceDropped_data();
    void unknownSequenceDropped();
    void everyGeneratedTokenIsInterpreted();
    void plainTextRendering();

    // Customer display
    void displayModes_data();
    void displayModes();
    void displayRowLimits();
    void displayBitmaps();

    // Cash drawer
    void drawerClosesByItself();
    void drawerWaitClosed();

    // Printer bitmaps
    void bitmapLoad_data();
    void bitmapLoad();
    void bitmapIsMonochrome();
    void bitmapErase();

    // Barcode data
    void barcodeValidation_data();
    void barcodeValidation();

    // Report files
    void reportFolderIsPrivateDataFolder();
    void reportPath_data();
    void reportPath();
    void reportWriteAppendAndCreate();
};

QString TestPeripherals::MakeBmp(const QString& name, int w, int h) const {
    QImage img(w, h, QImage::Format_RGB32);
    img.fill(Qt::white);
    const QString path = m_dir.filePath(name);
    if (!img.save(path, "BMP"))
        return QString();
    return path;
}

void TestPeripherals::initTestCase() {
    QVERIFY(m_dir.isValid());
    // Outside ctest nobody set a private data folder: never write into the user's.
    if (qEnvironmentVariableIsEmpty("XDG_DATA_HOME"))
        qputenv("XDG_DATA_HOME", m_dir.filePath(QStringLiteral("xdg-data")).toLocal8Bit());
}

// ---------------------------------------------------------------------------------------------------
// Print-control interpretation

void TestPeripherals::styleTokens_data() {
    QTest::addColumn<QString>("input");
    QTest::addColumn<PrintAttributes>("expected");

    QTest::newRow("double width") << Seq("|2C") + "Double width"
                                  << Attr([](PrintAttributes& a) { a.doubleWidth = true; });
    QTest::newRow("double height") << Seq("|3C") + "Double height"
                                   << Attr([](PrintAttributes& a) { a.doubleHeight = true; });
    QTest::newRow("half height") << Seq("|5C") + "Half height"
                                 << Attr([](PrintAttributes& a) { a.halfHeight = true; });
    QTest::newRow("boxed") << Seq("|6C") + "Framed" << Attr([](PrintAttributes& a) { a.boxed = true; });
    QTest::newRow("normal after double width") << Seq("|2C") + Seq("|1C") + "Normal" << PrintAttributes{};
    QTest::newRow("normal after boxed") << Seq("|6C") + Seq("|1C") + "Normal" << PrintAttributes{};
    QTest::newRow("centre") << Seq("|cA") + "x" << Attr([](PrintAttributes& a) { a.align = Align::Center; });
    QTest::newRow("right") << Seq("|rA") + "x" << Attr([](PrintAttributes& a) { a.align = Align::Right; });
    QTest::newRow("left after right") << Seq("|rA") + Seq("|lA") + "x" << PrintAttributes{};
    QTest::newRow("rotate left") << Seq("|lR") + "x"
                                 << Attr([](PrintAttributes& a) { a.rotation = Rotation::Left; });
    QTest::newRow("rotate right") << Seq("|rR") + "x"
                                  << Attr([](PrintAttributes& a) { a.rotation = Rotation::Right; });
    QTest::newRow("rotate up") << Seq("|uR") + "x"
                               << Attr([](PrintAttributes& a) { a.rotation = Rotation::UpsideDown; });
    QTest::newRow("rotate down") << Seq("|dR") + "x"
                                 << Attr([](PrintAttributes& a) { a.rotation = Rotation::Down; });
    QTest::newRow("blink") << Seq("|K") + "x" << Attr([](PrintAttributes& a) { a.blink = true; });
    QTest::newRow("boxed and centred") << Seq("|6C") + Seq("|cA") + "x" << Attr([](PrintAttributes& a) {
        a.boxed = true;
        a.align = Align::Center;
    });
    // UnifiedPOS sizes: one size at a time, "|4C" both doubled; "|rvC" is its reverse video.
    QTest::newRow("later size wins") << Seq("|2C") + Seq("|3C") + "x"
                                     << Attr([](PrintAttributes& a) { a.doubleHeight = true; });
    QTest::newRow("double both") << Seq("|4C") + "x" << Attr([](PrintAttributes& a) {
        a.doubleWidth = true;
        a.doubleHeight = true;
    });
    QTest::newRow("reverse") << Seq("|rvC") + "x" << Attr([](PrintAttributes& a) { a.reverse = true; });
    QTest::newRow("sequence inside the text")
        << "Dou" + Seq("|2C") + "ble" << Attr([](PrintAttributes& a) { a.doubleWidth = true; });
}

void TestPeripherals::styleTokens() {
    QFETCH(QString, input);
    QFETCH(PrintAttributes, expected);
    const QList<PrintedLine> lines = InterpretPrintControl(input);
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines[0].kind, PrintedLine::Kind::Text);
    QVERIFY(!lines[0].text.contains(QChar(27)));
    QVERIFY(!lines[0].text.contains(u'|'));
    QVERIFY(lines[0].attr == expected);
}

void TestPeripherals::lineBreaks_data() {
    QTest::addColumn<QString>("input");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("CR LF") << "THE QUICK BROWN FOX JUMPS OVER\r\nTHE LAZY DOG'S BACK"
                           << QStringList{"THE QUICK BROWN FOX JUMPS OVER", "THE LAZY DOG'S BACK"};
    QTest::newRow("LF") << "a\nb" << QStringList{"a", "b"};
    QTest::newRow("CR") << "a\rb" << QStringList{"a", "b"};
    QTest::newRow("empty line kept") << "a\r\n\r\nb" << QStringList{"a", "", "b"};
    QTest::newRow("three lines") << "1\r\n2\r\n3" << QStringList{"1", "2", "3"};
    QTest::newRow("plain") << "one line" << QStringList{"one line"};
    // A break ends its line; it doesn't start a blank one behind it.
    QTest::newRow("trailing CR LF") << "a\r\n" << QStringList{"a"};
    QTest::newRow("only a break") << "\r\n" << QStringList{""};
    QTest::newRow("only a style") << Seq("|2C") << QStringList{""};
}

void TestPeripherals::lineBreaks() {
    QFETCH(QString, input);
    QFETCH(QStringList, expected);
    const QList<PrintedLine> lines = InterpretPrintControl(input);
    QStringList texts;
    for (const PrintedLine& l : lines) {
        QCOMPARE(l.kind, PrintedLine::Kind::Text);
        texts << l.text;
    }
    QCOMPARE(texts, expected);
    for (const QString& t : texts)
        QVERIFY(!t.contains(u'\r') && !t.contains(u'\n'));
}

void TestPeripherals::attributesLastToEndOfLine() {
    // A sequence styles its own printed line and no further.
    const QList<PrintedLine> lines =
        InterpretPrintControl(Seq("|2C") + Seq("|cA") + "Big\r\nSmall\r\n" + Seq("|K") + "Blink\r\nPlain");
    QCOMPARE(lines.size(), 4);
    QVERIFY(lines[0].attr.doubleWidth);
    QCOMPARE(lines[0].attr.align, Align::Center);
    QVERIFY(lines[1].attr == PrintAttributes{});
    QVERIFY(lines[2].attr.blink);
    QVERIFY(!lines[2].attr.doubleWidth);
    QVERIFY(lines[3].attr == PrintAttributes{});

    // With base attributes every line starts again from the base.
    PrintAttributes base;
    base.align = Align::Right;
    PaperRoll roll;
    roll.AppendText(Seq("|lA") + "left\r\nbase", base);
    QCOMPARE(roll.Count(), 2);
    QCOMPARE(roll.Lines()[0].attr.align, Align::Left);
    QVERIFY(roll.Lines()[1].attr == base);
}

void TestPeripherals::barcodeToken_data() {
    QTest::addColumn<QString>("input");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("data");
    QTest::addColumn<QString>("after"); // text printed behind the barcode, if any

    // The generator's default token, written out by hand.
    QTest::newRow("generator default") << Esc + "|14R14007817504598" << 1 << "4007817504598"
                                       << "";
    // The non-fiscal ticket's five barcodes carry one blank before the length.
    QTest::newRow("ticket EAN13") << Esc + "| 14R14007817504598" << 1 << "4007817504598"
                                  << "";
    QTest::newRow("ticket UPC 11") << BarcodeToken(2, "26443247343", true) << 2 << "26443247343"
                                   << "";
    QTest::newRow("ticket UPC short") << BarcodeToken(2, "641223", true) << 2 << "641223"
                                      << "";
    QTest::newRow("ticket ITF keeps zero") << BarcodeToken(3, "01234567", true) << 3 << "01234567"
                                           << "";
    QTest::newRow("ticket CODE39") << BarcodeToken(4, "1234567890", true) << 4 << "1234567890"
                                   << "";
    QTest::newRow("empty barcode field") << BarcodeToken(1, "") << 1 << ""
                                         << "";
    QTest::newRow("length bounds the data") << BarcodeToken(4, "ABC") + "xyz" << 4 << "ABC"
                                            << "xyz";
    QTest::newRow("data looks like a sequence") << Esc + "|5R4" + Esc + "|2C" << 4 << Esc + "|2C"
                                                << "";
}

void TestPeripherals::barcodeToken() {
    QFETCH(QString, input);
    QFETCH(int, type);
    QFETCH(QString, data);
    QFETCH(QString, after);
    const QList<PrintedLine> lines = InterpretPrintControl(input);
    QCOMPARE(lines.size(), after.isEmpty() ? 1 : 2);
    QCOMPARE(lines[0].kind, PrintedLine::Kind::Barcode);
    QCOMPARE(lines[0].barcodeType, type);
    QCOMPARE(lines[0].text, data);
    if (!after.isEmpty()) {
        QCOMPARE(lines[1].kind, PrintedLine::Kind::Text);
        QCOMPARE(lines[1].text, after);
    }
}

void TestPeripherals::bitmapAndFeedTokens() {
    QList<PrintedLine> lines = InterpretPrintControl(Seq("|1B"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines[0].kind, PrintedLine::Kind::Bitmap);
    QCOMPARE(lines[0].bitmapSlot, 1);

    lines = InterpretPrintControl(Seq("|10B"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines[0].bitmapSlot, 10);

    lines = InterpretPrintControl(Seq("|3F"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines[0].kind, PrintedLine::Kind::Feed);
    QCOMPARE(lines[0].feedLines, 3);

    // Pictures and feeds stand on their own, between the text around them, in order.
    lines = InterpretPrintControl("Before" + Seq("|2B") + "Middle" + Seq("|2F") + "After");
    QCOMPARE(lines.size(), 5);
    QCOMPARE(lines[0].text, QStringLiteral("Before"));
    QCOMPARE(lines[1].kind, PrintedLine::Kind::Bitmap);
    QCOMPARE(lines[1].bitmapSlot, 2);
    QCOMPARE(lines[2].text, QStringLiteral("Middle"));
    QCOMPARE(lines[3].kind, PrintedLine::Kind::Feed);
    QCOMPARE(lines[3].feedLines, 2);
    QCOMPARE(lines[4].text, QStringLiteral("After"));

    // A centred bitmap is centred.
    lines = InterpretPrintControl(Seq("|cA") + Seq("|1B"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines[0].attr.align, Align::Center);
}

void TestPeripherals::unknownSequenceDropped_data() {
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("expected");
    QTest::newRow("bold") << "A" + Seq("|bC") + "B"
                          << "AB";
    QTest::newRow("unused size") << "A" + Seq("|9C") + "B"
                                 << "AB";
    QTest::newRow("paper cut") << "A" + Seq("|100P") + "B"
                               << "AB";
    QTest::newRow("letters and number") << "A" + Seq("|100fP") + "B"
                                        << "AB";
    QTest::newRow("unknown alignment") << "A" + Seq("|xA") + "B"
                                       << "AB";
    QTest::newRow("blank before bitmap") << "A" + Seq("| 1B") + "B"
                                         << "AB";
    // Without its closing capital it is no sequence: only ESC and the bar go.
    QTest::newRow("unterminated") << "A" + Seq("|12") + ", B"
                                  << "A12, B";
    QTest::newRow("ESC without bar") << "A" + Esc + "B"
                                     << "AB";
    QTest::newRow("ESC at the end") << "AB" + Esc << "AB";
}

void TestPeripherals::unknownSequenceDropped() {
    QFETCH(QString, input);
    QFETCH(QString, expected);
    const QList<PrintedLine> lines = InterpretPrintControl(input);
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines[0].kind, PrintedLine::Kind::Text);
    QCOMPARE(lines[0].text, expected);
    QVERIFY(lines[0].attr == PrintAttributes{});
}

void TestPeripherals::everyGeneratedTokenIsInterpreted() {
    // Every token the bench can generate, each on a line of its own behind a marker word:
    // nothing of a token may reach the paper.
    const QStringList tokens{Seq("|1C"),
                             Seq("|2C"),
                             Seq("|3C"),
                             Seq("|5C"),
                             Seq("|6C"),
                             Seq("|cA"),
                             Seq("|lA"),
                             Seq("|rA"),
                             Seq("|lR"),
                             Seq("|rR"),
                             Seq("|uR"),
                             Seq("|dR"),
                             Seq("|K"),
                             Seq("|7B"),
                             Seq("|4F"),
                             BarcodeToken(1, "4007817504598"),
                             BarcodeToken(2, "26443247343", true)};
    PaperRoll roll;
    for (const QString& t : tokens)
        roll.AppendText(t + "word");
    int words = 0;
    for (const PrintedLine& l : roll.Lines()) {
        if (l.kind == PrintedLine::Kind::Text) {
            QCOMPARE(l.text, QStringLiteral("word"));
            ++words;
        }
    }
    QCOMPARE(words, tokens.size());
    QVERIFY(!roll.PlainText().contains(QChar(27)));
    QVERIFY(!roll.PlainText().contains(u'|'));
}

void TestPeripherals::plainTextRendering() {
    PaperRoll roll;
    roll.AppendText("Hello\r\n" + BarcodeToken(1, "4007817504598") + Seq("|3B") + Seq("|2F") + "Bye");
    QCOMPARE(roll.Count(), 5);
    QCOMPARE(roll.PlainText(), QStringLiteral("Hello\n[BARCODE 1:4007817504598]\n[BITMAP 3]\n\n\nBye"));
    QCOMPARE(roll.PlainText(2), QStringLiteral("[BITMAP 3]\n\n\nBye"));
    QCOMPARE(roll.PlainText(roll.Count()), QString());

    PrintedLine manual;
    manual.text = QStringLiteral("appended");
    roll.Append(manual);
    QCOMPARE(roll.Count(), 6);
    QVERIFY(roll.PlainText().endsWith(QStringLiteral("Bye\nappended")));

    roll.Clear();
    QCOMPARE(roll.Count(), 0);
    QCOMPARE(roll.PlainText(), QString());
}

// ---------------------------------------------------------------------------------------------------
// Customer display

void TestPeripherals::displayModes_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<QList<int>>("widths");
    QTest::newRow("2x20") << 1 << QList<int>{20, 20};
    QTest::newRow("3x22") << 2 << QList<int>{22, 22, 22};
    QTest::newRow("1x9 + 1x22") << 3 << QList<int>{9, 22};
    QTest::newRow("1x10 + 1x22") << 4 << QList<int>{10, 22};
}

void TestPeripherals::displayModes() {
    QFETCH(int, mode);
    QFETCH(QList<int>, widths);
    CustomerDisplay d;
    QCOMPARE(d.Mode(), 1); // the display is 2x20 until told otherwise
    QVERIFY(d.SetMode(mode));
    QCOMPARE(d.Mode(), mode);
    QCOMPARE(d.RowCount(), widths.size());
    QCOMPARE(d.Rows().size(), widths.size());
    const QString longText(40, u'X');
    for (int row = 1; row <= widths.size(); ++row) {
        QCOMPARE(d.Width(row), widths[row - 1]);
        QVERIFY(d.PrintText(row, longText));
        QCOMPARE(d.Rows()[row - 1], QString(widths[row - 1], u'X'));
    }
    QVERIFY(!d.PrintText(widths.size() + 1, "beyond"));

    QVERIFY(!d.SetMode(0));
    QVERIFY(!d.SetMode(5));
    QCOMPARE(d.Mode(), mode);
}

void TestPeripherals::displayRowLimits() {
    CustomerDisplay d;
    QVERIFY(!d.PrintText(0, "zero"));
    QVERIFY(!d.PrintText(3, "three"));
    QVERIFY(!d.PrintText(-1, "negative"));
    QVERIFY(d.PrintText(1, "This is a test"));
    QVERIFY(d.PrintText(2, "second"));
    QCOMPARE(d.Rows(), (QStringList{"This is a test", "second"}));
    QVERIFY(d.PrintText(1, "again"));
    QCOMPARE(d.Rows()[0], QStringLiteral("again"));

    d.Clear();
    for (const QString& r : d.Rows())
        QVERIFY(r.isEmpty());

    QVERIFY(d.SetMode(2));
    QVERIFY(d.PrintText(3, "third row"));
    d.ShowTwoLines("TOTALE", "12.50");
    QCOMPARE(d.Rows(), (QStringList{"TOTALE", "12.50", ""}));

    QVERIFY(d.SetMode(3));
    d.ShowTwoLines("Articolo test 1", "1.00");
    QCOMPARE(d.Rows(), (QStringList{"Articolo ", "1.00"}));
}

void TestPeripherals::displayBitmaps() {
    const QString bmp = MakeBmp("display.bmp", 32, 16);
    QVERIFY(!bmp.isEmpty());
    QFile text(m_dir.filePath("display.txt"));
    QVERIFY(text.open(QIODevice::WriteOnly));
    text.write("not a picture\n");
    text.close();

    CustomerDisplay d;
    QCOMPARE(d.ShowBitmap(0, 0, 1), 106); // nothing loaded yet
    QCOMPARE(d.LoadBitmap(1, m_dir.filePath("missing.bmp")), 109);
    QCOMPARE(d.LoadBitmap(1, text.fileName()), 106);
    QCOMPARE(d.LoadBitmap(0, bmp), 106);
    QCOMPARE(d.LoadBitmap(11, bmp), 106);
    QCOMPARE(d.LoadBitmap(1, bmp), 0);
    QCOMPARE(d.ShowBitmap(5, 2, 1), 0);
    QCOMPARE(d.ShownBitmap(), 1);
    QCOMPARE(d.ShownBitmapPos(), QPoint(5, 2));
    QCOMPARE(d.ShowBitmap(0, 0, 2), 106);
    QCOMPARE(d.ShownBitmap(), 1);

    QCOMPARE(d.SetStandbyBitmap(0, 0, 2), 106);
    QCOMPARE(d.SetStandbyBitmap(0, 0, 1), 0);
    QCOMPARE(d.StandbyBitmap(), 1);
    d.SetStandbyText("Welcome");
    QCOMPARE(d.StandbyText(), QStringLiteral("Welcome"));

    QCOMPARE(d.EraseBitmap(1), 0);
    QCOMPARE(d.ShownBitmap(), 0);
    QCOMPARE(d.StandbyBitmap(), 0);
    QCOMPARE(d.ShowBitmap(0, 0, 1), 106);
    QCOMPARE(d.EraseBitmap(0), 106);

    QCOMPARE(d.ShowBitmapFile(0, 0, m_dir.filePath("missing.bmp")), 109);
    QCOMPARE(d.ShowBitmapFile(0, 0, text.fileName()), 106);
    QCOMPARE(d.ShowBitmapFile(1, 1, bmp), 0);
    QCOMPARE(d.ShownImage().size(), QSize(32, 16));
}

// ---------------------------------------------------------------------------------------------------
// Cash drawer

void TestPeripherals::drawerClosesByItself() {
    CashDrawer drawer;
    QCOMPARE(drawer.AutoCloseMs(), 5000);
    QVERIFY(!drawer.IsOpen());
    QSignalSpy closed(&drawer, &CashDrawer::closed);
    drawer.SetAutoCloseMs(30);
    drawer.Open();
    QVERIFY(drawer.IsOpen());
    QTRY_VERIFY(!drawer.IsOpen());
    QCOMPARE(closed.count(), 1);

    // Closed by command: one signal, and a second close is no event.
    drawer.SetAutoCloseMs(0);
    drawer.Open();
    QVERIFY(drawer.IsOpen());
    drawer.Close();
    QVERIFY(!drawer.IsOpen());
    drawer.Close();
    QCOMPARE(closed.count(), 2);
}

void TestPeripherals::drawerWaitClosed() {
    CashDrawer drawer;
    QVERIFY(drawer.WaitClosed(10)); // already closed

    drawer.SetAutoCloseMs(20);
    drawer.Open();
    QVERIFY(drawer.WaitClosed(10000));
    QVERIFY(!drawer.IsOpen());

    // Nobody closes it: the wait gives up and the drawer stays open.
    drawer.SetAutoCloseMs(0);
    drawer.Open();
    QVERIFY(!drawer.WaitClosed(20));
    QVERIFY(drawer.IsOpen());

    // Closed from elsewhere on the event loop while waiting.
    QTimer::singleShot(10, &drawer, &CashDrawer::Close);
    QVERIFY(drawer.WaitClosed(10000));
}

// ---------------------------------------------------------------------------------------------------
// Printer bitmaps

void TestPeripherals::bitmapLoad_data() {
    QTest::addColumn<int>("slot");
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("result");

    QVERIFY(!MakeBmp("ok.bmp", 100, 40).isEmpty());
    QVERIFY(!MakeBmp("widest.bmp", 576, 8).isEmpty());
    QVERIFY(!MakeBmp("wide.bmp", 600, 8).isEmpty());
    QFile text(m_dir.filePath("notes.txt"));
    QVERIFY(text.open(QIODevice::WriteOnly));
    text.write("this is text, not a picture\n");
    text.close();
    QFile gif(m_dir.filePath("tiny.gif"));
    QVERIFY(gif.open(QIODevice::WriteOnly));
    gif.write(kTinyGif);
    gif.close();
    QImage png(8, 8, QImage::Format_RGB32);
    png.fill(Qt::black);
    QVERIFY(png.save(m_dir.filePath("pic.png"), "PNG"));

    QTest::newRow("valid BMP") << 1 << "ok.bmp" << 0;
    QTest::newRow("576 dots") << 10 << "widest.bmp" << 0;
    QTest::newRow("600 dots") << 1 << "wide.bmp" << 106;
    QTest::newRow("missing file") << 1 << "missing.bmp" << 109;
    QTest::newRow("text file") << 1 << "notes.txt" << 106;
    QTest::newRow("GIF") << 2 << "tiny.gif" << 0;
    QTest::newRow("PNG is neither") << 1 << "pic.png" << 106;
    QTest::newRow("slot 0") << 0 << "ok.bmp" << 106;
    QTest::newRow("slot 11") << 11 << "ok.bmp" << 106;
}

void TestPeripherals::bitmapLoad() {
    QFETCH(int, slot);
    QFETCH(QString, file);
    QFETCH(int, result);
    BitmapStore store;
    QCOMPARE(store.Load(slot, m_dir.filePath(file)), result);
    QCOMPARE(store.Has(slot), result == 0);
    QCOMPARE(store.Get(slot).isNull(), result != 0);
}

void TestPeripherals::bitmapIsMonochrome() {
    QImage img(64, 8, QImage::Format_RGB32);
    img.fill(Qt::white);
    QPainter(&img).fillRect(0, 0, 32, 8, Qt::black);
    const QString path = m_dir.filePath("half.bmp");
    QVERIFY(img.save(path, "BMP"));

    BitmapStore store;
    QCOMPARE(store.Load(3, path), 0);
    const QImage mono = store.Get(3);
    QCOMPARE(mono.format(), QImage::Format_Mono);
    QCOMPARE(mono.size(), QSize(64, 8));
    QCOMPARE(QColor(mono.pixel(0, 0)), QColor(Qt::black));
    QCOMPARE(QColor(mono.pixel(63, 7)), QColor(Qt::white));

    // A failed load leaves the slot's picture alone.
    QCOMPARE(store.Load(3, m_dir.filePath("missing.bmp")), 109);
    QVERIFY(store.Has(3));
}

void TestPeripherals::bitmapErase() {
    const QString bmp = MakeBmp("erase.bmp", 16, 16);
    BitmapStore store;
    QCOMPARE(store.Load(5, bmp), 0);
    QVERIFY(!store.Has(4));
    QCOMPARE(store.Erase(5), 0);
    QVERIFY(!store.Has(5));
    QCOMPARE(store.Erase(5), 0); // erasing an empty slot is no error
    QCOMPARE(store.Erase(0), 106);
    QCOMPARE(store.Erase(11), 106);
}

// ---------------------------------------------------------------------------------------------------
// Barcode data

void TestPeripherals::barcodeValidation_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("data");
    QTest::addColumn<bool>("valid");

    const QString ean12 = QStringLiteral("590123412345");
    const int eanCheck = Ean13CheckDigit(ean12);
    const QString upc11 = QStringLiteral("03600029145");
    const int upcCheck = UpcCheckDigit(upc11);

    QTest::newRow("EAN13 12 digits") << 1 << ean12 << true;
    QTest::newRow("EAN13 right check") << 1 << ean12 + QString::number(eanCheck) << true;
    QTest::newRow("EAN13 wrong check") << 1 << ean12 + QString::number((eanCheck + 1) % 10) << false;
    QTest::newRow("EAN13 ticket digits") << 1 << "4007817504598" << (Ean13CheckDigit("400781750459") == 8);
    QTest::newRow("EAN13 11 digits") << 1 << "40078175045" << false;
    QTest::newRow("EAN13 14 digits") << 1 << "40078175045981" << false;
    QTest::newRow("EAN13 letter") << 1 << "40078175045A" << false;
    QTest::newRow("EAN13 empty") << 1 << "" << false;

    QTest::newRow("UPC 11 digits") << 2 << upc11 << true;
    QTest::newRow("UPC right check") << 2 << upc11 + QString::number(upcCheck) << true;
    QTest::newRow("UPC wrong check") << 2 << upc11 + QString::number((upcCheck + 3) % 10) << false;
    QTest::newRow("UPC 6 digits") << 2 << "641223" << false;
    QTest::newRow("UPC 13 digits") << 2 << "0360002914521" << false;

    QTest::newRow("ITF even") << 3 << "01234567" << true;
    QTest::newRow("ITF two") << 3 << "12" << true;
    QTest::newRow("ITF odd") << 3 << "0123456" << false;
    QTest::newRow("ITF empty") << 3 << "" << false;
    QTest::newRow("ITF letter") << 3 << "1A" << false;

    QTest::newRow("CODE39 digits") << 4 << "1234567890" << true;
    QTest::newRow("CODE39 full set") << 4 << "AZ09 -.$/+%" << true;
    QTest::newRow("CODE39 lower case") << 4 << "abc" << false;
    QTest::newRow("CODE39 star") << 4 << "A*B" << false;
    QTest::newRow("CODE39 empty") << 4 << "" << false;

    QTest::newRow("type 0") << 0 << "12" << false;
    QTest::newRow("type 5") << 5 << "12" << false;
}

void TestPeripherals::barcodeValidation() {
    QFETCH(int, type);
    QFETCH(QString, data);
    QFETCH(bool, valid);
    QCOMPARE(IsValidBarcode(type, data), valid);
}

// ---------------------------------------------------------------------------------------------------
// Report files

void TestPeripherals::reportFolderIsPrivateDataFolder() {
    const QString folder = ReportFolder();
    const QString data = QDir::cleanPath(qEnvironmentVariable("XDG_DATA_HOME"));
    QVERIFY2(folder.startsWith(data + u'/'), qPrintable(folder));
    QVERIFY(folder.endsWith(QStringLiteral("/fpubench/reports")));
    QVERIFY(QFileInfo(folder).isDir());
}

void TestPeripherals::reportPath_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected"); // relative to the report folder; empty: refused

    const QString folder = ReportFolder();
    QTest::newRow("bare name") << "reportEJ.txt"
                               << "reportEJ.txt";
    QTest::newRow("default X name") << "reportZ.txt"
                                    << "reportZ.txt";
    QTest::newRow("absolute inside") << folder + "/report.txt"
                                     << "report.txt";
    QTest::newRow("absolute elsewhere") << QDir::tempPath() + "/report.txt"
                                        << "";
    QTest::newRow("root") << "/etc/passwd"
                          << "";
    QTest::newRow("parent") << "../report.txt"
                            << "";
    QTest::newRow("parent deeper") << "a/../../report.txt"
                                   << "";
    QTest::newRow("parent that comes back") << "sub/../report.txt"
                                            << "";
    QTest::newRow("backslash parent") << "..\\report.txt"
                                      << "";
    QTest::newRow("absolute with parent") << folder + "/../report.txt"
                                          << "";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("folder only") << "sub/"
                                 << "";
}

void TestPeripherals::reportPath() {
    QFETCH(QString, name);
    QFETCH(QString, expected);
    const std::optional<QString> path = ResolveReportPath(name);
    if (expected.isEmpty()) {
        QVERIFY2(!path.has_value(), qPrintable(path.value_or(QString())));
        return;
    }
    QVERIFY(path.has_value());
    QCOMPARE(*path, ReportFolder() + u'/' + expected);
}

void TestPeripherals::reportWriteAppendAndCreate() {
    const std::optional<QString> path = ResolveReportPath(QStringLiteral("report.txt"));
    QVERIFY(path.has_value());
    auto content = [&] {
        QFile f(*path);
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QStringLiteral("<unreadable>");
    };

    QVERIFY(WriteReportFile(*path, 1, {"first", "second"}));
    QCOMPARE(content(), QStringLiteral("first\nsecond\n"));
    QVERIFY(WriteReportFile(*path, 0, {"third"}));
    QCOMPARE(content(), QStringLiteral("first\nsecond\nthird\n"));
    QVERIFY(WriteReportFile(*path, 1, {"fresh"}));
    QCOMPARE(content(), QStringLiteral("fresh\n"));
    QVERIFY(!WriteReportFile(*path, 2, {"printed instead"}));
    QCOMPARE(content(), QStringLiteral("fresh\n"));

    // Appending to a file that doesn't exist yet creates it.
    const std::optional<QString> other = ResolveReportPath(QStringLiteral("appended.txt"));
    QVERIFY(other.has_value());
    QFile::remove(*other);
    QVERIFY(WriteReportFile(*other, 0, {"only"}));
    QVERIFY(QFileInfo::exists(*other));

    // A file can't be written below another file.
    QVERIFY(!WriteReportFile(*path + "/inside.txt", 1, {"x"}));
}

QTEST_MAIN(TestPeripherals)
#include "test_peripherals.moc"
