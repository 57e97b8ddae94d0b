#include "Peripherals.h"
#include "PrintControl.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace sim;

namespace {

// A 1x1 GIF (white and black palette, one black pixel). Qt can read GIF but not write it.
const QByteArray kTinyGif = QByteArray::fromHex("47494638396101000100800000ffffff000000"
                                                "2c00000000010001000002024c01003b");

} // namespace

class TestPeripherals : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

    QString MakeBmp(const QString& name, int w, int h) const {
        QImage img(w, h, QImage::Format_RGB32);
        img.fill(Qt::white);
        const QString path = m_dir.filePath(name);
        return img.save(path, "BMP") ? path : QString();
    }
    void WriteFile(const QString& name, const QByteArray& bytes) const {
        QFile f(m_dir.filePath(name));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    }

private slots:
    void initTestCase() {
        QVERIFY(m_dir.isValid());
        QVERIFY(!MakeBmp("ok.bmp", 100, 40).isEmpty());
        QVERIFY(!MakeBmp("widest.bmp", 576, 8).isEmpty());
        QVERIFY(!MakeBmp("wide.bmp", 577, 8).isEmpty());
        WriteFile("notes.txt", "this is text, not a picture\n");
        WriteFile("tiny.gif", kTinyGif);
        QImage png(8, 8, QImage::Format_RGB32);
        png.fill(Qt::black);
        QVERIFY(png.save(m_dir.filePath("pic.png"), "PNG"));
    }

    void displayModes_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QList<int>>("widths");
        QTest::newRow("2x20") << 1 << QList<int>{20, 20};
        QTest::newRow("3x22") << 2 << QList<int>{22, 22, 22};
        QTest::newRow("1x9 + 1x22") << 3 << QList<int>{9, 22};
        QTest::newRow("1x10 + 1x22") << 4 << QList<int>{10, 22};
    }
    void displayModes() {
        QFETCH(int, mode);
        QFETCH(QList<int>, widths);
        CustomerDisplay d;
        QCOMPARE(d.Mode(), 1); // the display is 2x20 until told otherwise
        QVERIFY(d.SetMode(mode));
        QCOMPARE(d.RowCount(), widths.size());
        QCOMPARE(d.Rows().size(), widths.size());
        for (int row = 1; row <= widths.size(); ++row) {
            QVERIFY(d.PrintText(row, QString(40, u'X')));
            QCOMPARE(d.Rows()[row - 1], QString(widths[row - 1], u'X'));
        }
        QVERIFY(!d.PrintText(0, "zero"));
        QVERIFY(!d.PrintText(widths.size() + 1, "beyond"));
        QVERIFY(!d.SetMode(0));
        QVERIFY(!d.SetMode(5));
        QCOMPARE(d.Mode(), mode);
    }

    void displayRows() {
        CustomerDisplay d;
        QSignalSpy changed(&d, &CustomerDisplay::changed);
        QVERIFY(d.PrintText(1, "This is a test"));
        QVERIFY(d.PrintText(2, "second"));
        QCOMPARE(d.Rows(), (QStringList{"This is a test", "second"}));
        d.Clear();
        QCOMPARE(d.Rows(), (QStringList{"", ""}));
        QVERIFY(d.SetMode(2));
        QVERIFY(d.PrintText(3, "third row"));
        const int before = changed.count();
        d.ShowTwoLines("TOTALE", "12.50");
        QCOMPARE(d.Rows(), (QStringList{"TOTALE", "12.50", ""}));
        QCOMPARE(changed.count(), before + 1); // one announcement for the two rows
        QVERIFY(d.SetMode(3));
        d.ShowTwoLines("Articolo test 1", "1.00");
        QCOMPARE(d.Rows(), (QStringList{"Articolo ", "1.00"}));
    }

    void displayBitmaps() {
        const QString bmp = m_dir.filePath("ok.bmp");
        CustomerDisplay d;
        QCOMPARE(d.LoadBitmap(1, m_dir.filePath("notes.txt")), 106);
        QCOMPARE(d.LoadBitmap(11, bmp), 106);
        QCOMPARE(d.LoadBitmap(1, bmp), 0);
        QCOMPARE(d.ShowBitmap(5, 2, 1), 0);
        QCOMPARE(d.ShownBitmapPos(), QPoint(5, 2));
        QCOMPARE(d.SetStandbyBitmap(0, 0, 1), 0);
        QCOMPARE(d.EraseBitmap(1), 0);
        QCOMPARE(d.ShownBitmap(), 0);
        QCOMPARE(d.StandbyBitmap(), 0);
        QCOMPARE(d.ShowBitmapFile(1, 1, bmp), 0);
        QCOMPARE(d.ShownImage().size(), QSize(100, 40));
    }

    void drawerClosesByItself() {
        CashDrawer drawer;
        QCOMPARE(drawer.AutoCloseMs(), 5000);
        QSignalSpy closed(&drawer, &CashDrawer::closed);
        drawer.SetAutoCloseMs(30);
        drawer.Open();
        QVERIFY(drawer.IsOpen());
        QTRY_VERIFY(!drawer.IsOpen());
        QCOMPARE(closed.count(), 1);
        // Closed by command while waiting: one signal, and a second close is no event.
        drawer.SetAutoCloseMs(0);
        drawer.Open();
        QVERIFY(!drawer.WaitClosed(20));
        QTimer::singleShot(10, &drawer, &CashDrawer::Close);
        QVERIFY(drawer.WaitClosed(10000));
        drawer.Close();
        QCOMPARE(closed.count(), 2);
    }

    void bitmapLoad_data() {
        QTest::addColumn<int>("slot");
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("result");
        QTest::newRow("BMP") << 1 << "ok.bmp" << 0;
        QTest::newRow("GIF") << 2 << "tiny.gif" << 0;
        QTest::newRow("576 dots") << 10 << "widest.bmp" << 0;
        QTest::newRow("577 dots") << 1 << "wide.bmp" << 106;
        QTest::newRow("missing file") << 1 << "missing.bmp" << 109;
        QTest::newRow("text file") << 1 << "notes.txt" << 106;
        QTest::newRow("PNG is neither") << 1 << "pic.png" << 106;
        QTest::newRow("slot 0") << 0 << "ok.bmp" << 106;
        QTest::newRow("slot 11") << 11 << "ok.bmp" << 106;
    }
    void bitmapLoad() {
        QFETCH(int, slot);
        QFETCH(QString, file);
        QFETCH(int, result);
        BitmapStore store;
        QCOMPARE(store.Load(slot, m_dir.filePath(file)), result);
        QCOMPARE(store.Has(slot), result == 0);
        QCOMPARE(store.Get(slot).isNull(), result != 0);
    }

    void bitmapMonochromeAndErase() {
        QImage img(64, 8, QImage::Format_RGB32);
        img.fill(Qt::white);
        QPainter(&img).fillRect(0, 0, 32, 8, Qt::black);
        const QString path = m_dir.filePath("half.bmp");
        QVERIFY(img.save(path, "BMP"));
        BitmapStore store;
        QCOMPARE(store.Load(3, path), 0);
        const QImage mono = store.Get(3);
        QCOMPARE(mono.format(), QImage::Format_Mono);
        QCOMPARE(QColor(mono.pixel(0, 0)), QColor(Qt::black));
        QCOMPARE(QColor(mono.pixel(63, 7)), QColor(Qt::white));
        // A failed load leaves the slot's picture alone.
        QCOMPARE(store.Load(3, m_dir.filePath("missing.bmp")), 109);
        QVERIFY(store.Has(3));
        QCOMPARE(store.Erase(3), 0);
        QVERIFY(!store.Has(3));
        QCOMPARE(store.Erase(3), 0); // erasing an empty slot is no error
        QCOMPARE(store.Erase(11), 106);
    }

    void barcodeValidation_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("data");
        QTest::addColumn<bool>("valid");
        // 5901234123457 and 036000291452 carry their right check digits.
        QTest::newRow("EAN13 12 digits") << 1 << "590123412345" << true;
        QTest::newRow("EAN13 right check") << 1 << "5901234123457" << true;
        QTest::newRow("EAN13 wrong check") << 1 << "5901234123458" << false;
        QTest::newRow("EAN13 11 digits") << 1 << "40078175045" << false;
        QTest::newRow("EAN13 letter") << 1 << "40078175045A" << false;
        QTest::newRow("UPC 11 digits") << 2 << "03600029145" << true;
        QTest::newRow("UPC right check") << 2 << "036000291452" << true;
        QTest::newRow("UPC wrong check") << 2 << "036000291455" << false;
        QTest::newRow("UPC 13 digits") << 2 << "0360002914521" << false;
        QTest::newRow("ITF even") << 3 << "01234567" << true;
        QTest::newRow("ITF odd") << 3 << "0123456" << false;
        QTest::newRow("ITF letter") << 3 << "1A" << false;
        QTest::newRow("CODE39 full set") << 4 << "AZ09 -.$/+%" << true;
        QTest::newRow("CODE39 lower case") << 4 << "abc" << false;
        QTest::newRow("CODE39 empty") << 4 << "" << false;
        QTest::newRow("type 5") << 5 << "12" << false;
    }
    void barcodeValidation() {
        QFETCH(int, type);
        QFETCH(QString, data);
        QFETCH(bool, valid);
        QCOMPARE(IsValidBarcode(type, data), valid);
    }
};

QTEST_MAIN(TestPeripherals)
#include "test_peripherals.moc"
