#include "PrinterScript.h"
#include "Zorvane6DirectIO.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <memory>

using namespace OposAll;
using namespace Zorvane6DirectIO; // the command numbers in the table below are documented ones
using namespace t;
using P = SimulatedFiscalPrinter;

namespace {
struct Call {
    int32_t rc;
    DirectIOData data;
    QString text;
};
Call Run(P& p, int32_t cmd, const QList<int>& values = {}, QString text = {}) {
    DirectIOData data{};
    for (int i = 0; i < values.size(); ++i)
        data[i] = values[i];
    const int32_t rc = p.DirectIO(cmd, data, text);
    return {rc, data, text};
}
QString FileText(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QStringLiteral("<unreadable>");
}
using Check = std::function<void(P&, const Call&)>;
} // namespace

class TestSimulatedDirectIO : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    QString m_bmp, m_missing;

private slots:
    void initTestCase() {
        QVERIFY(m_dir.isValid());
        m_bmp = m_dir.filePath(QStringLiteral("ok.bmp"));
        m_missing = m_dir.filePath(QStringLiteral("none.bmp"));
        QImage img(100, 16, QImage::Format_Mono);
        img.fill(1);
        QVERIFY(img.save(m_bmp, "BMP"));
    }

    // Each command once answered and once refused.
    void commands_data() {
        QTest::addColumn<int>("cmd");
        QTest::addColumn<QList<int>>("data");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("prep"); // printer steps; BMP is a good bitmap file
        QTest::addColumn<int>("rc");
        QTest::addColumn<int>("extended");
        QTest::addColumn<Check>("check");
        const QString bmp = m_bmp, missing = m_missing;
        const QString sale = QStringLiteral("begin; item 1 9.90; total 9.90 9.90; end");
        const QString creditNote = QStringLiteral("dio 1400 123456; item 1 5.00");
        const auto row = [](const char* name, int cmd, QList<int> data, QString text, int rc,
                            int extended = 0, QString prep = {}, Check check = {}) {
            QTest::newRow(name) << cmd << data << text << prep << rc << extended << check;
        };
        row("unknown", 4242, {}, {}, 106);
        row("drawer open", 1000, {}, {}, 0, 0, {}, [](P& p, auto&) { QVERIFY(p.Drawer().IsOpen()); });
        row("drawer open, not enabled", 1000, {}, {}, 105, 0, "set DeviceEnabled=0");
        row("drawer state open", 1001, {}, {}, 0, 0, "dio 1000",
            [](P&, const Call& c) { QCOMPARE(c.data[0], 1); });
        row("drawer state closed", 1001, {}, {}, 0, 0, {}, [](P&, const Call& c) { QCOMPARE(c.data[0], 0); });
        row("drawer wait, closed", 1002, {5000}, {}, 0, 0, {},
            [](P& p, auto&) { QVERIFY(!p.Drawer().IsOpen()); });
        row("drawer wait, timeout", 1002, {10}, {}, 112, 0, "dio 1000",
            [](P& p, auto&) { QVERIFY(p.Drawer().IsOpen()); });
        row("bitmap load", 1100, {1}, bmp, 0, 0, {}, [](P& p, auto&) { QVERIFY(p.Bitmaps().Has(1)); });
        row("bitmap load, missing", 1100, {1}, missing, 109);
        row("bitmap load, day open", 1100, {1}, bmp, 114, 207, sale);
        row("bitmap load, the day's first receipt printing", 1100, {1}, bmp, 114, 207, "begin");
        // Receipt station, centred, double width and height.
        row("bitmap print", 1101, {1, 50 + 4 + 8, 1}, {}, 0, 0, "dio 1100:1 BMP", [](P& p, auto&) {
            const auto& line = p.ReceiptRoll().Lines().last();
            QCOMPARE(line.kind, sim::PrintedLine::Kind::Bitmap);
            QCOMPARE(line.bitmapSlot, 1);
            QCOMPARE(line.attr.align, sim::Align::Center);
            QVERIFY(line.attr.doubleWidth && line.attr.doubleHeight && !line.attr.reverse);
            QCOMPARE(p.JournalRoll().Count(), 0);
        });
        row("bitmap print, empty slot", 1101, {1, 0x30, 1}, {}, 106);
        row("bitmap erase", 1102, {1}, {}, 0, 0, "dio 1100:1 BMP",
            [](P& p, auto&) { QVERIFY(!p.Bitmaps().Has(1)); });
        row("barcode", 1200, {3, 1}, "4006381333931", 0, 0, {}, [](P& p, auto&) {
            QCOMPARE(p.ReceiptRoll().Lines().last().kind, sim::PrintedLine::Kind::Barcode);
            QCOMPARE(p.ReceiptRoll().Lines().last().text, QStringLiteral("4006381333931"));
            QCOMPARE(p.JournalRoll().Count(), 1);
        });
        row("barcode, wrong check digit", 1200, {3, 1}, "4006381333932", 106, 0, {},
            [](P& p, auto&) { QCOMPARE(p.ReceiptRoll().Count(), 0); });
        row("barcode, cover open", 1200, {3, 1}, "4006381333931", 114, 201, "fault cover open");
        row("display mode", 1300, {2}, {}, 0, 0, {},
            [](P& p, auto&) { QCOMPARE(p.Display().RowCount(), 3); });
        row("display mode 5", 1300, {5}, {}, 106);
        row("display text", 1302, {2}, "BUONGIORNO", 0, 0, {},
            [](P& p, auto&) { QCOMPARE(p.Display().Rows().at(1), QStringLiteral("BUONGIORNO")); });
        row("display text, row 3 of 2", 1302, {3}, "x", 106);
        row("display clear", 1301, {}, {}, 0, 0, "dio 1302:1 HELLO",
            [](P& p, auto&) { QCOMPARE(p.Display().Rows().join(QString()), QString()); });
        row("display bitmap load", 1303, {3}, bmp, 0);
        row("display bitmap erase", 1304, {3}, {}, 0, 0, "dio 1303:3 BMP");
        row("display bitmap show", 1305, {0, 0, 3}, {}, 0, 0, "dio 1303:3 BMP",
            [](P& p, auto&) { QCOMPARE(p.Display().ShownBitmap(), 3); });
        row("display bitmap now", 1306, {0, 0}, bmp, 0);
        row("standby text", 1307, {}, "CHIUSO", 0, 0, {},
            [](P& p, auto&) { QCOMPARE(p.Display().StandbyText(), QStringLiteral("CHIUSO")); });
        row("standby bitmap", 1308, {0, 0, 3}, {}, 0, 0, "dio 1303:3 BMP");
        row("credit note begin", 1400, {}, "123456", 0, 0, {}, [](P& p, auto&) {
            QCOMPARE(p.PrinterState(), FPTR_PS_FISCAL_RECEIPT);
            QCOMPARE(p.CurrentReceipt()->ReceiptType(), FPTR_RT_REFUND);
        });
        row("credit note begin, receipt open", 1400, {}, "1", 114, 207, "begin");
        row("credit note end", 1401, {}, {}, 0, 0, creditNote + "; total 5.00 5.00", [](P& p, auto&) {
            QCOMPARE(p.PrinterState(), FPTR_PS_MONITOR);
            QVERIFY(p.ReceiptRoll().PlainText().contains(QStringLiteral("123456")));
            QCOMPARE(Data(p, FPTR_GD_REFUND), QStringLiteral("500"));
        });
        row("credit note end, not paid", 1401, {}, {}, 114, 207, creditNote);
        row("journal report", 1500, {1, 0, 0}, "reportEJ.txt", 0, 0, sale + "; nfbegin; normal 2 NOTA; nfend",
            [](P&, const Call& c) {
                QVERIFY(QDir::isAbsolutePath(c.text));
                QVERIFY(c.text.endsWith(QStringLiteral("/reportEJ.txt")));
                const QString all = FileText(c.text);
                QVERIFY(all.contains(QStringLiteral("9,90")) && all.contains(QStringLiteral("NOTA")));
            });
        row("journal report, non-fiscal only", 1500, {1, 0, 3}, "nf.txt", 0, 0,
            sale + "; nfbegin; normal 2 NOTA; nfend", [](P&, const Call& c) {
                const QString nf = FileText(c.text);
                QVERIFY(nf.contains(QStringLiteral("NOTA")) && !nf.contains(QStringLiteral("9,90")));
            });
        row("journal report printed", 1500, {2, 3, 0}, "x.txt", 0, 0, sale, [](P& p, auto&) {
            QVERIFY(p.ReceiptRoll().PlainText().contains(QStringLiteral("---- SF 0001")));
        });
        row("journal report, leaves the folder", 1500, {1, 0, 0}, "../escape.txt", 106);
        row("journal report, EJ mode 9", 1500, {1, 9, 0}, "x.txt", 106);
        row("X report", 1501, {1}, "reportZ.txt", 0, 0, {},
            [](P&, const Call& c) { QVERIFY(QFile::exists(c.text)); });
        row("X report, leaves the folder", 1501, {1}, "../x.txt", 106);
        row("report request", 1502, {1, 20}, "report.txt", 0, 0, {},
            [](P&, const Call& c) { QVERIFY(QFile::exists(c.text)); });
        row("report request 21", 1502, {1, 21}, "report.txt", 106);
        row("reset totalizers", 1600, {}, "RESET", 0, 0, {},
            [](P& p, auto&) { QVERIFY(p.ReceiptRoll().PlainText().endsWith(QStringLiteral("RESET"))); });
        row("reset totalizers, day open", 1600, {}, "RESET", 114, 207, sale);
        row("keyboard", 9000, {}, "49,48,48,65,102", 0, 0, {}, [](P& p, auto&) {
            QVERIFY(p.Display().Rows().first().startsWith(QStringLiteral("100Af")));
            QVERIFY(p.JournalRoll().PlainText().contains(QStringLiteral("49,48,48,65,102")));
        });
        row("keyboard, not a number", 9000, {}, "49,x", 106);
        row("departments read", 9001, {0}, {}, 0, 0, {},
            [](P&, const Call& c) { QCOMPARE(c.text, QStringLiteral("1A,2B")); });
        row("departments write", 9001, {1}, "3C,7D", 0, 0, {}, [](P& p, auto&) {
            QCOMPARE(Run(p, 9001, {0}).text, QStringLiteral("3C,7D"));
            QCOMPARE(Begin(p), 0);
            QCOMPARE(Item(p, QStringLiteral("A"), M(100), 10007), 0);
            QCOMPARE(p.CurrentReceipt()->RateTotal(4), M(100));
            QCOMPARE(Item(p, QStringLiteral("A"), M(100), 10001), OPOS_E_EXTENDED);
            QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_BAD_VAT);
        });
        row("departments write, bad syntax", 9001, {1}, "1A,2", 106, 0, {},
            [](P& p, auto&) { QCOMPARE(Run(p, 9001, {0}).text, QStringLiteral("1A,2B")); });
        row("virtual ticket, last", 9002, {}, {}, 0, 0, sale,
            [](P&, const Call& c) { QVERIFY(c.text.contains(QStringLiteral("9,90"))); });
        row("virtual ticket, open", 9002, {}, {}, 0, 0, sale + "; begin; item 1 1.00 0 0 OPEN",
            [](P&, const Call& c) {
                QVERIFY(c.text.contains(QStringLiteral("OPEN")));
                QVERIFY(!c.text.contains(QStringLiteral("9,90")));
            });
        row("polling time", 9003, {1, 500, -1, -1}, {}, 0, 0, {},
            [](P& p, auto&) { QCOMPARE(p.PollingTimeMs(), 500); });
        row("polling time 99", 9003, {1, 99, -1, -1}, {}, 106);
        row("polling time 32768", 9003, {1, 32768, -1, -1}, {}, 106);
        row("dump", 9999, {}, {}, 0, 0, {}, [](P&, const Call& c) {
            QVERIFY(!c.text.contains(u'\n'));
            QVERIFY(c.text.startsWith(QStringLiteral("model=ZorvaneFPU state=1 ")));
        });
        row("simulator: cover open", 9999, {}, "cover open", 0, 0, {}, [](P& p, const Call& c) {
            QVERIFY(p.IsCoverOpen());
            QVERIFY(c.text.contains(QStringLiteral(" cover=open ")));
        });
        row("simulator: a bad command changes nothing", 9999, {}, "cover ajar", 106, 0, {},
            [](P& p, const Call& c) {
                QVERIFY(!p.IsCoverOpen());
                QCOMPARE(c.text, QStringLiteral("cover ajar"));
            });
        row("simulator: answers while powered off", 9999, {}, "power on", 0, 0, "fault power off",
            [](P& p, auto&) { QVERIFY(!p.IsPowerOff()); });
        row("simulator: answers while offline", 9999, {}, "online", 0, 0, "fault offline",
            [](P& p, auto&) { QVERIFY(!p.IsOffline()); });
        row("other commands while offline", 1001, {}, {}, 108, 0, "fault offline");
        row("simulator: answers while output is queued", 9999, {}, "receipt empty", 0, 0,
            "begin; fault print time 5000; set AsyncMode=1; item 1 1.00 0 0 SLOW",
            [](P& p, auto&) { QCOMPARE(p.ReceiptPaper(), PaperLevel::Empty); });
        row("other commands while output is queued", 1001, {}, {}, 113, 0,
            "begin; fault print time 5000; set AsyncMode=1; item 1 1.00 0 0 SLOW");
        row("simulator: fail a call", 9999, {}, "fail PrintRecItem 114 214", 0, 0, {}, [](P& p, auto&) {
            QCOMPARE(Begin(p), 0);
            QCOMPARE(Item(p, QStringLiteral("A"), M(100)), OPOS_E_EXTENDED);
            QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_BAD_ITEM_AMOUNT);
            QCOMPARE(Item(p, QStringLiteral("A"), M(100)), 0);
        });
        row("simulator: print time", 9999, {}, "print time 7", 0, 0, {},
            [](P& p, auto&) { QCOMPARE(p.PrintTimePerLineMs(), 7); });
        row("simulator: clock", 9999, {}, "clock +1h", 0, 0, {},
            [](P& p, auto&) { QCOMPARE(p.ClockOffsetSeconds(), 3600); });
    }
    void commands() {
        QFETCH(int, cmd);
        QFETCH(QList<int>, data);
        QFETCH(QString, text);
        QFETCH(QString, prep);
        QFETCH(int, rc);
        QFETCH(int, extended);
        QFETCH(Check, check);
        P p;
        Ready(p);
        p.Drawer().SetAutoCloseMs(60000);
        prep.replace(QStringLiteral("BMP"), m_bmp);
        QCOMPARE(printer_script::Run(p, prep), printer_script::AllZero(prep));
        const Call c = Run(p, cmd, data, text);
        QCOMPARE(c.rc, rc);
        if (rc == OPOS_E_EXTENDED)
            QCOMPARE(p.ResultCodeExtended(), extended);
        if (check)
            check(p, c);
        p.CloseDrawer();
    }

    void displayFollowsReceipt() {
        P p;
        Ready(p);
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("PANE"), M(250)), 0);
        const QString shown = p.Display().Rows().join(u' ');
        QVERIFY(shown.contains(QStringLiteral("PANE")) && shown.contains(QStringLiteral("2,50")));
    }

    // Print-control sequences in PrintNormal reach the rolls as attributes.
    void printNormalStations() {
        P p;
        Ready(p);
        QCOMPARE(p.BeginNonFiscal(), 0);
        const auto before = p.ReceiptRoll().Count();
        const QString esc(QChar(27));
        QCOMPARE(Normal(p, FPTR_S_RECEIPT, esc + QStringLiteral("|cA") + esc + QStringLiteral("|3CBig")), 0);
        QCOMPARE(Normal(p, FPTR_S_JOURNAL, QStringLiteral("Journal only")), 0);
        QCOMPARE(Normal(p, FPTR_S_RECEIPT, QStringLiteral("Plain")), 0);
        QCOMPARE(Normal(p, 4, QStringLiteral("x")), OPOS_E_ILLEGAL);
        const auto lines = p.ReceiptRoll().Lines().mid(before);
        QCOMPARE(lines.size(), 2); // nothing of the journal-only line
        QCOMPARE(lines[0].text, QStringLiteral("Big"));
        QVERIFY(lines[0].attr.doubleHeight);
        QCOMPARE(lines[0].attr.align, sim::Align::Center);
        QCOMPARE(lines[1].text, QStringLiteral("Plain"));
        QCOMPARE(lines[1].attr, sim::PrintAttributes{});
        QVERIFY(p.JournalRoll().PlainText().contains(QStringLiteral("Journal only")));
    }
};

QTEST_GUILESS_MAIN(TestSimulatedDirectIO)
#include "test_directio.moc"
