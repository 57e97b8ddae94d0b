#include "SimTestSupport.h"
#include "Zorvane6DirectIO.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

using namespace OposAll;
using namespace Zorvane6DirectIO;
using namespace t;

namespace {
constexpr Amount M(int cents) {
    return Amount{cents} * 100;
}

struct Call {
    int32_t rc;
    DirectIOData data;
    QString text;
};
Call Run(SimulatedFiscalPrinter& p, int32_t cmd, DirectIOData data = {}, QString text = {}) {
    const int32_t rc = Dio(p, cmd, data, text);
    return {rc, data, text};
}
DirectIOData D(std::initializer_list<int32_t> values) {
    DirectIOData d{};
    int i = 0;
    for (int32_t v : values)
        d[i++] = v;
    return d;
}
} // namespace

class TestSimulatedDirectIO : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

    QString Image(const QString& name, int width) {
        QImage img(width, 16, QImage::Format_Mono);
        img.fill(1);
        const QString path = m_dir.filePath(name);
        img.save(path, "BMP");
        return path;
    }

private slots:
    void unknownCommand() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(Run(p, 4242).rc, OPOS_E_ILLEGAL);
        QCOMPARE(Run(p, 1503).rc, OPOS_E_ILLEGAL);
    }

    void drawer() {
        SimulatedFiscalPrinter p;
        Ready(p);
        p.Drawer().SetAutoCloseMs(20);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DRAWER_GET).data[0], 0);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DRAWER_OPEN).rc, 0);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DRAWER_GET).data[0], 1);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DRAWER_WAIT, D({5000})).rc, 0);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DRAWER_GET).data[0], 0);
        p.Drawer().SetAutoCloseMs(60000);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DRAWER_OPEN).rc, 0);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DRAWER_WAIT, D({10})).rc, OPOS_E_TIMEOUT);
        p.CloseDrawer();
    }

    void bitmaps() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(Run(p, DIRECTIO_FPTR_BMPLOAD, D({1}), m_dir.filePath(QStringLiteral("none.bmp"))).rc,
                 OPOS_E_NOEXIST);
        QCOMPARE(Run(p, DIRECTIO_FPTR_BMPLOAD, D({1}), Image(QStringLiteral("wide.bmp"), 577)).rc,
                 OPOS_E_ILLEGAL);
        QCOMPARE(Run(p, DIRECTIO_FPTR_BMPLOAD, D({11}), Image(QStringLiteral("ok.bmp"), 100)).rc,
                 OPOS_E_ILLEGAL);
        QCOMPARE(Run(p, DIRECTIO_FPTR_BMPPRINT, D({1, 0x30, 1})).rc, OPOS_E_ILLEGAL); // empty slot
        QCOMPARE(Run(p, DIRECTIO_FPTR_BMPLOAD, D({1}), Image(QStringLiteral("ok.bmp"), 576)).rc, 0);
        QVERIFY(p.Bitmaps().Has(1));
        // Receipt station, centred, double width and height.
        QCOMPARE(Run(p, DIRECTIO_FPTR_BMPPRINT, D({1, 50 + 4 + 8, 1})).rc, 0);
        const auto& line = p.ReceiptRoll().Lines().last();
        QCOMPARE(line.kind, sim::PrintedLine::Kind::Bitmap);
        QCOMPARE(line.bitmapSlot, 1);
        QCOMPARE(line.attr.align, sim::Align::Center);
        QVERIFY(line.attr.doubleWidth && line.attr.doubleHeight && !line.attr.reverse);
        QCOMPARE(p.JournalRoll().Count(), 0);
        QCOMPARE(Run(p, DIRECTIO_FPTR_BMPPRINT, D({1, 0x20, 1})).rc, OPOS_E_ILLEGAL); // bad mode
        QCOMPARE(Run(p, DIRECTIO_FPTR_BMPERASE, D({1})).rc, 0);
        QVERIFY(!p.Bitmaps().Has(1));
        QCOMPARE(Run(p, DIRECTIO_FPTR_BMPERASE, D({0})).rc, OPOS_E_ILLEGAL);
        // No loads while the day is open.
        Sale(p, M(100));
        const auto r = Run(p, DIRECTIO_FPTR_BMPLOAD, D({2}), Image(QStringLiteral("ok.bmp"), 100));
        QCOMPARE(r.rc, OPOS_E_EXTENDED);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_WRONG_STATE);
    }

    void barcodes_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("data");
        QTest::addColumn<bool>("ok");
        QTest::newRow("EAN13 with check digit") << 1 << QStringLiteral("4006381333931") << true;
        QTest::newRow("EAN13 wrong check digit") << 1 << QStringLiteral("4006381333932") << false;
        QTest::newRow("EAN13 12 digits") << 1 << QStringLiteral("400638133393") << true;
        QTest::newRow("UPC 11 digits") << 2 << QStringLiteral("03600029145") << true;
        QTest::newRow("ITLV2of5 odd") << 3 << QStringLiteral("123") << false;
        QTest::newRow("ITLV2of5 even") << 3 << QStringLiteral("1234") << true;
        QTest::newRow("CODE39 set") << 4 << QStringLiteral("ABC-12 $") << true;
        QTest::newRow("CODE39 lower case") << 4 << QStringLiteral("abc") << false;
        QTest::newRow("unknown type") << 5 << QStringLiteral("1234") << false;
    }
    void barcodes() {
        QFETCH(int, type);
        QFETCH(QString, data);
        QFETCH(bool, ok);
        SimulatedFiscalPrinter p;
        Ready(p);
        const auto r = Run(p, DIRECTIO_FPTR_BARCODEPRINT, D({3, type}), data);
        QCOMPARE(r.rc, ok ? 0 : OPOS_E_ILLEGAL);
        QCOMPARE(p.ReceiptRoll().Count(), ok ? 1 : 0);
        QCOMPARE(p.JournalRoll().Count(), ok ? 1 : 0);
        if (ok) {
            QCOMPARE(p.ReceiptRoll().Lines().last().kind, sim::PrintedLine::Kind::Barcode);
            QCOMPARE(p.ReceiptRoll().Lines().last().text, data);
        }
    }

    void barcodeRefusedWithCoverOpen() {
        SimulatedFiscalPrinter p;
        Ready(p);
        p.SetCoverOpen(true);
        QCOMPARE(Run(p, DIRECTIO_FPTR_BARCODEPRINT, D({1, 3}), QStringLiteral("12")).rc, OPOS_E_EXTENDED);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_COVER_OPEN);
    }

    void display() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DY_SETMODE, D({2})).rc, 0);
        QCOMPARE(p.Display().RowCount(), 3);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DY_SETMODE, D({5})).rc, OPOS_E_ILLEGAL);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DY_PRINTTEXT, D({3}), QStringLiteral("BUONGIORNO")).rc, 0);
        QVERIFY(p.Display().Rows().at(2).contains(QStringLiteral("BUONGIORNO")));
        QCOMPARE(Run(p, DIRECTIO_FPTR_DY_PRINTTEXT, D({4}), QStringLiteral("x")).rc, OPOS_E_ILLEGAL);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DY_CLEAR).rc, 0);
        QVERIFY(!p.Display().Rows().join(QString()).contains(QStringLiteral("BUONGIORNO")));
        QCOMPARE(Run(p, DIRECTIO_FPTR_DY_SBYTEXT, {}, QStringLiteral("CHIUSO")).rc, 0);
        QCOMPARE(p.Display().StandbyText(), QStringLiteral("CHIUSO"));
        QCOMPARE(Run(p, DIRECTIO_FPTR_DY_BMPSHOW, D({0, 0, 3})).rc, OPOS_E_ILLEGAL);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DY_BMPLOAD, D({3}), Image(QStringLiteral("d.bmp"), 64)).rc, 0);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DY_BMPSHOW, D({0, 0, 3})).rc, 0);
        QCOMPARE(p.Display().ShownBitmap(), 3);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DY_BMPERASE, D({3})).rc, 0);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DY_BMPNOW, D({0, 0}), m_dir.filePath(QStringLiteral("nope.bmp"))).rc,
                 OPOS_E_NOEXIST);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DY_SBYBMP, D({0, 0, 3})).rc, OPOS_E_ILLEGAL);
    }

    void displayFollowsReceipt() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("PANE"), M(250)), 0);
        QVERIFY(p.Display().Rows().join(u' ').contains(QStringLiteral("PANE")));
        QVERIFY(p.Display().Rows().join(u' ').contains(QStringLiteral("2,50")));
    }

    void creditNote() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(Run(p, DIRECTIO_FPTR_CREDITNOTE_END).rc, OPOS_E_EXTENDED);
        QCOMPARE(Run(p, DIRECTIO_FPTR_CREDITNOTE_BEGIN, {}, QStringLiteral("123456")).rc, 0);
        QCOMPARE(p.PrinterState(), FPTR_PS_FISCAL_RECEIPT);
        QCOMPARE(p.CurrentReceipt()->ReceiptType(), FPTR_RT_REFUND);
        QCOMPARE(Run(p, DIRECTIO_FPTR_CREDITNOTE_BEGIN, {}, QStringLiteral("1")).rc, OPOS_E_EXTENDED);
        QCOMPARE(Item(p, QStringLiteral("RESO"), M(500)), 0);
        QCOMPARE(Run(p, DIRECTIO_FPTR_CREDITNOTE_END).rc, OPOS_E_EXTENDED); // not paid yet
        QCOMPARE(Total(p, M(500), M(500)), 0);
        QCOMPARE(Run(p, DIRECTIO_FPTR_CREDITNOTE_END).rc, 0);
        QCOMPARE(p.PrinterState(), FPTR_PS_MONITOR);
        QVERIFY(p.ReceiptRoll().PlainText().contains(QStringLiteral("123456")));
        QCOMPARE(Data(p, FPTR_GD_REFUND), QStringLiteral("500"));
    }

    void reportFiles() {
        SimulatedFiscalPrinter p;
        Ready(p);
        Sale(p, M(990));
        QCOMPARE(p.BeginNonFiscal(), 0);
        QCOMPARE(Normal(p, FPTR_S_RECEIPT, QStringLiteral("NOTA")), 0);
        QCOMPARE(p.EndNonFiscal(), 0);

        auto r = Run(p, DIRECTIO_FPTR_REPORT_EJ, D({1, 0, 0}), QStringLiteral("reportEJ.txt"));
        QCOMPARE(r.rc, 0);
        QVERIFY(QDir::isAbsolutePath(r.text));
        QVERIFY(r.text.endsWith(QStringLiteral("reportEJ.txt")));
        QFile f(r.text);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QString all = QString::fromUtf8(f.readAll());
        QVERIFY(all.contains(QStringLiteral("9,90")));
        QVERIFY(all.contains(QStringLiteral("NOTA")));
        f.close();

        // Only non-fiscal documents.
        r = Run(p, DIRECTIO_FPTR_REPORT_EJ, D({1, 0, 3}), QStringLiteral("nf.txt"));
        QCOMPARE(r.rc, 0);
        QFile nf(r.text);
        QVERIFY(nf.open(QIODevice::ReadOnly));
        const QString onlyNf = QString::fromUtf8(nf.readAll());
        QVERIFY(onlyNf.contains(QStringLiteral("NOTA")));
        QVERIFY(!onlyNf.contains(QStringLiteral("9,90")));

        // Printed instead of written.
        const auto before = p.ReceiptRoll().Count();
        QCOMPARE(Run(p, DIRECTIO_FPTR_REPORT_EJ, D({2, 3, 0}), QStringLiteral("x.txt")).rc, 0);
        QVERIFY(p.ReceiptRoll().Count() > before);

        QCOMPARE(Run(p, DIRECTIO_FPTR_REPORT_EJ, D({1, 9, 0}), QStringLiteral("x.txt")).rc, OPOS_E_ILLEGAL);
        QCOMPARE(Run(p, DIRECTIO_FPTR_REPORT_EJ, D({1, 0, 0}), QStringLiteral("../escape.txt")).rc,
                 OPOS_E_ILLEGAL);

        r = Run(p, DIRECTIO_FPTR_REPORT_X, D({1}), QStringLiteral("reportZ.txt"));
        QCOMPARE(r.rc, 0);
        QVERIFY(QFile::exists(r.text));
        QCOMPARE(Run(p, DIRECTIO_FPTR_REPORT_X, D({2}), QStringLiteral("reportZ.txt")).rc, OPOS_E_ILLEGAL);

        r = Run(p, DIRECTIO_FPTR_REPORT_REQUEST, D({1, 20}), QStringLiteral("report.txt"));
        QCOMPARE(r.rc, 0);
        QVERIFY(QFile::exists(r.text));
        QCOMPARE(Run(p, DIRECTIO_FPTR_REPORT_REQUEST, D({1, 21}), QStringLiteral("report.txt")).rc,
                 OPOS_E_ILLEGAL);
    }

    void resetTotalizers() {
        SimulatedFiscalPrinter p;
        Ready(p);
        Sale(p, M(100));
        QCOMPARE(Run(p, DIRECTIO_FPTR_RESET_TOTALIZERS, {}, QStringLiteral("RESET")).rc, OPOS_E_EXTENDED);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_WRONG_STATE);
        QCOMPARE(p.PrintZReport(), 0);
        QCOMPARE(Run(p, DIRECTIO_FPTR_RESET_TOTALIZERS, {}, QStringLiteral("RESET")).rc, 0);
        QVERIFY(p.ReceiptRoll().PlainText().endsWith(QStringLiteral("RESET")));
    }

    void keyboard() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(Run(p, DIRECTIO_FPTR_SIMULATE_KEYBOARD, {}, QStringLiteral("49,48,48,65,102")).rc, 0);
        QVERIFY(p.Display().Rows().first().startsWith(QStringLiteral("100Af")));
        QVERIFY(p.JournalRoll().PlainText().contains(QStringLiteral("49,48,48,65,102")));
        QCOMPARE(Run(p, DIRECTIO_FPTR_SIMULATE_KEYBOARD, {}, QStringLiteral("49,x")).rc, OPOS_E_ILLEGAL);
    }

    void departmentLinks() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DEPARTMENTCFG, D({0})).text, QStringLiteral("1A,2B"));
        QCOMPARE(Run(p, DIRECTIO_FPTR_DEPARTMENTCFG, D({1}), QStringLiteral("1A,2")).rc, OPOS_E_ILLEGAL);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DEPARTMENTCFG, D({0})).text, QStringLiteral("1A,2B"));
        QCOMPARE(Run(p, DIRECTIO_FPTR_DEPARTMENTCFG, D({1}), QStringLiteral("3C,7D")).rc, 0);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DEPARTMENTCFG, D({0})).text, QStringLiteral("3C,7D"));
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("A"), M(100), 10007), 0);
        QCOMPARE(p.CurrentReceipt()->RateTotal(4), M(100));
        QCOMPARE(Item(p, QStringLiteral("A"), M(100), 10001), OPOS_E_EXTENDED);
    }

    void virtualTicket() {
        SimulatedFiscalPrinter p;
        Ready(p);
        Sale(p, M(4321));
        QVERIFY(Run(p, DIRECTIO_FPTR_GETVIRTUALTICKET).text.contains(QStringLiteral("43,21")));
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("OPEN"), M(100)), 0);
        const QString open = Run(p, DIRECTIO_FPTR_GETVIRTUALTICKET).text;
        QVERIFY(open.contains(QStringLiteral("OPEN")));
        QVERIFY(!open.contains(QStringLiteral("43,21")));
    }

    void pollingAndDump() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(Run(p, DIRECTIO_FPTR_SETPOLLINGTIME, D({1, 99, -1, -1})).rc, OPOS_E_ILLEGAL);
        QCOMPARE(Run(p, DIRECTIO_FPTR_SETPOLLINGTIME, D({1, 32768, -1, -1})).rc, OPOS_E_ILLEGAL);
        QCOMPARE(Run(p, DIRECTIO_FPTR_SETPOLLINGTIME, D({1, 500, -1, -1})).rc, 0);
        QCOMPARE(p.PollingTimeMs(), 500);
        const QString dump = Run(p, DIRECTIO_FPTR_DEBUG).text;
        QVERIFY(!dump.isEmpty());
        QVERIFY(!dump.contains(u'\n'));
        QVERIFY(dump.contains(QStringLiteral("ZorvaneFPU")));
    }

    void refusedWhenNotEnabled() {
        SimulatedFiscalPrinter p;
        QCOMPARE(Open(p), 0);
        QCOMPARE(Claim(p), 0);
        QCOMPARE(Run(p, DIRECTIO_FPTR_DRAWER_OPEN).rc, OPOS_E_DISABLED);
    }

    // ------------------------------------------------ print-control sequences on the rolls
    void printControl() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(p.BeginNonFiscal(), 0);
        const QString esc(QChar(27));
        QCOMPARE(Normal(p, FPTR_S_RECEIPT, esc + QStringLiteral("|2CDouble width")), 0);
        QCOMPARE(
            Normal(p, FPTR_S_RECEIPT, esc + QStringLiteral("|cA") + esc + QStringLiteral("|3CBig centre")),
            0);
        QCOMPARE(Normal(p, FPTR_S_JOURNAL, QStringLiteral("Journal only")), 0);
        QCOMPARE(Normal(p, FPTR_S_RECEIPT, QStringLiteral("Plain")), 0);
        QCOMPARE(Normal(p, 4, QStringLiteral("x")), OPOS_E_ILLEGAL);
        const auto& lines = p.ReceiptRoll().Lines();
        auto find = [&](const QString& text) -> const sim::PrintedLine* {
            for (const auto& l : lines)
                if (l.text == text)
                    return &l;
            return nullptr;
        };
        const auto* dw = find(QStringLiteral("Double width"));
        QVERIFY(dw);
        QVERIFY(dw->attr.doubleWidth);
        const auto* big = find(QStringLiteral("Big centre"));
        QVERIFY(big);
        QVERIFY(big->attr.doubleHeight);
        QCOMPARE(big->attr.align, sim::Align::Center);
        const auto* plain = find(QStringLiteral("Plain"));
        QVERIFY(plain);
        QCOMPARE(plain->attr, sim::PrintAttributes{});
        QVERIFY(!find(QStringLiteral("Journal only")));
        QVERIFY(p.JournalRoll().PlainText().contains(QStringLiteral("Journal only")));
        QVERIFY(!p.ReceiptRoll().PlainText().contains(esc));
    }
};

QTEST_GUILESS_MAIN(TestSimulatedDirectIO)
#include "test_directio.moc"
