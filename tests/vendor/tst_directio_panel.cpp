#include "BitmapFileBrowser.h"
#include "DirectIODisplayTab.h"
#include "DirectIOReportsTab.h"
#include "PanelBench.h"
#include "frmDirectIO.h"
#include "frmEscSequences.h"
#include "frmPrintMode.h"
#include "frmShowMode.h"

#include <QApplication>
#include <QClipboard>
#include <QDate>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTemporaryDir>

#include <initializer_list>

namespace {

// One press of a panel button after its edits: "field=value" separated by ";", a list takes "#row".
// Command 0 means that nothing may reach the control. Expected values are worked out by hand.
struct Action {
    const char* button;
    int32_t command;
    std::initializer_list<int32_t> data; // leading elements; the rest are 0
    const char* text;
    const char* edits;
};

// clang-format off
const Action kActions[] = {
    // DirectIO - Generic
    {"cmdDirOpenDrawer", 1000, {}, "", ""},
    {"cmdDirGetDrawer", 1001, {}, "", ""},
    {"cmdResetTotalizers", 1600, {}, "", ""},
    {"cmdResetTotalizers", 1600, {}, "Chiusura cassa", "txtAdditionalResetTotalizers=Chiusura cassa"},
    {"cmdSetPollingTime", 9003, {1, 1000, -1, -1}, "", ""},
    {"cmdSetPollingTime", 9003, {1, 32767, -1, -1}, "", "txtPollingTime=32767"},
    {"cmdSetPollingTime", 9003, {1, 150, -1, -1}, "", "txtPollingTime=150.5"},
    {"cmdSetPollingTime", 0, {}, "", "txtPollingTime=32768"},
    {"cmdSetPollingTime", 0, {}, "", "txtPollingTime=abc"},
    {"cmdSetPollingTime", 0, {}, "", "txtPollingTime="},
    {"cmdSimKb", 9000, {}, "49,48,48,65,102", ""},
    {"cmdSimKb", 9000, {}, "1,,x", "txtSimKeys=1,,x"},
    {"cmd_Debug_Test", 9002, {}, "", ""},
    // Settings
    {"cmdDirectGetLinkToDepartment", 9001, {0}, "", ""},
    {"cmdDirectSetLinkToDepartment", 9001, {1}, "1A,2B", ""},
    {"cmdDirectSetLinkToDepartment", 9001, {1}, "1A,,9Z", "txtDeptVatLinks=1A,,9Z"},
    // DirectIO - Reports
    {"cmdDirReportZ", 1501, {0}, "reportZ.txt", ""},
    {"cmdDirReportZ", 1501, {1}, "../up.txt", "cbDirReportZFileMode=#1;txtDirReportZFile=../up.txt"},
    {"cmdDirReportEJ", 1500, {0, 0, 0, 20071212, 20071212, 1, 1}, "reportEJ.txt", ""},
    {"cmdDirReportEJ", 1500, {2, 3, 4, 20071212, 20071212, 1, 1}, "reportEJ.txt",
     "cbDirReportFileMode=#2;cbDirReportEJMode=#3;cbDirReportEJType=#4"},
    {"cmdDirReportEJ", 1500, {0, 0, 0, 20071232, 20071230, 1, 1}, "reportEJ.txt",
     "txtDirReportEJStartDatD=31.5;txtDirReportEJEndDateD=30.5"},
    {"cmdDirReportEJ", 1500, {0, 0, 0, 20071253, 20071212, 1, 1}, "reportEJ.txt",
     "txtDirReportEJStartDateM=12.5;txtDirReportEJStartDatD=3"},
    {"cmdDirReportEJ", 1500, {0, 0, 0, 20080012, 20071312, 1, 1}, "reportEJ.txt",
     "txtDirReportEJStartDateM=100;txtDirReportEJEndDateM=13"},
    {"cmdDirReportEJ", 1500, {0, 0, 0, 5, 20071212, 1, 1}, "reportEJ.txt",
     "txtDirReportEJStartDateY=;txtDirReportEJStartDateM=x;txtDirReportEJStartDatD=5abc"},
    {"cmdDirReportEJ", 1500, {0, 0, 0, 20071212, 20071212, 12, 16}, "reportEJ.txt",
     "txtDirReportEJStartNum=12abc;txtDirReportEJEndNum=&H10"},
    {"cmdDirReportEJ", 0, {}, "", "txtDirReportEJEndDateY=300000"},
    {"cmdDirReportOnFile", 1502, {0, 20}, "report.txt", ""},
    {"cmdDirReportOnFile", 1502, {1, 22}, "report.txt", "cbDirReportOnFileMode=#1;txtDirReportOFType=21.5"},
    // DirectIO - Display
    {"cmdDirDisplayClear", 1301, {}, "", ""},
    {"cmdDirDyPrintText", 1302, {1}, "This is a test", ""},
    {"cmdDirDyPrintText", 1302, {2}, "Buongiorno", "txtDyPtRow=2;txtDirPtString=Buongiorno"},
    {"cmdDirDyPrintText", 0, {}, "", "txtDyPtRow=70000"},
    {"cmdDirDyBmpLoad", 1303, {1}, "", ""},
    {"cmdDirDyBmpLoad", 1303, {3}, "/no/logo.bmp",
     "txtDirDyBmpLoadID=3;txtDirDyBmpLoadFileName=/no/logo.bmp"},
    {"cmdDriDyEraseBmp", 1304, {1}, "", ""},
    {"cmdDirDyBmpShow", 1305, {0, 0, 0}, "", ""},
    {"cmdDirDyBmpShow", 1305, {10, -2, 4}, "\x1b|rR\x1b|K",
     "txtDirDyBmpShowX=10;txtDirDyBmpShowY=-2;txtDirDyBmpShowID=4.5 px;txtDirDyBmpShowESC=\x1b|rR\x1b|K"},
    {"cmdDirDyBmpShow", 0, {}, "", "txtDirDyBmpShowX=left"},
    {"cmdDirPtBmpNow", 1306, {0, 0}, "", ""},
    {"cmdDirPtBmpNow", 1306, {1, 2}, "/no/such.gif",
     "txtDirDyBmpNowX=1;txtDirDyBmpNowY=2;txtDirDyBmpNowFileName=/no/such.gif"},
    {"cmdDirSetVideoMode", 1300, {1}, "", ""},
    {"cmdDirSetVideoMode", 1300, {4}, "", "cbVideoMode=#3"},
    {"cmdDirDySbyText", 1307, {}, "This is a test", ""},
    {"cmdSbyBmp", 1308, {0, 0, 0}, "", ""},
    {"cmdSbyBmp", 1308, {3, 4, 7}, "\x1b|K",
     "txtDirDySbyBmpX=3;txtDirDySbyBmpY=4;txtDirDySbyBmpID=7 logos;txtDirDyBmpSbyESC=\x1b|K"},
    // DirectIO - Printer
    {"cmdLoadBitmap", 1100, {1}, "", ""},
    {"cmdLoadBitmap", 1100, {0}, "", "txtLoadBmpID=abc"},
    {"cmdLoadBitmap", 0, {}, "", "txtLoadBmpID=99999999999"},
    {"cmdDirEraseBitmap", 1102, {1}, "", ""},
    {"cmdPrintBitmap", 1101, {1, 48, 1}, "", ""},
    {"cmdPrintBitmap", 1101, {3, 126, 2}, "",
     "cbDirBmpPrintStations=#2;txtDirPrintBmpPrintMode=7E;edtBitmapID=2"},
    {"cmdDirPrintBarcode", 1200, {1, 1}, "4007817504598", ""},
    {"cmdDirPrintBarcode", 1200, {2, 4}, "AB-1",
     "cbDirBarcodePrintStations=#1;cbDirBarcodeType=#3;edtBarcode=AB-1"},
    {"cmdDirBeginCreditNote", 1400, {}, "123456", ""},
    {"cmdDirEndCreditNote", 1401, {}, "", ""},
};
// clang-format on

DirectIOData Block(std::initializer_list<int32_t> leading) {
    DirectIOData data{};
    std::copy(leading.begin(), leading.end(), data.begin());
    return data;
}

QString Shown(const QWidget* w) {
    if (auto* label = qobject_cast<const QLabel*>(w))
        return label->text();
    if (auto* line = qobject_cast<const QLineEdit*>(w))
        return line->text();
    return qobject_cast<const QPlainTextEdit*>(w)->toPlainText();
}

// A GIF of one pixel, written out byte by byte.
const char kOnePixelGif[] =
    "GIF89a\x01\x00\x01\x00\x80\x00\x00\xff\xff\xff\x00\x00\x00!\xf9\x04\x01\x00\x00\x00\x00"
    ",\x00\x00\x00\x00\x01\x00\x01\x00\x00\x02\x02"
    "D\x01\x00;";

bool WriteFile(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

} // namespace

class DirectIOPanelTest : public QObject {
    Q_OBJECT

    std::unique_ptr<PanelBench> bench;

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void init() { bench = std::make_unique<PanelBench>(); }
    void cleanup() {
        SetFilePickerHandlers({});
        bench.reset();
    }

    void actions_data() {
        QTest::addColumn<int>("row");
        for (int i = 0; i < int(std::size(kActions)); ++i)
            QTest::addRow("%s %s", kActions[i].button, kActions[i].edits) << i;
    }
    void actions() {
        QFETCH(int, row);
        const Action& a = kActions[row];
        frmDirectIO panel(bench->ctx, QStringLiteral("Tessorim"));
        PanelBench::Apply(&panel, QString::fromLatin1(a.edits).split(u';', Qt::SkipEmptyParts));
        auto* button = panel.findChild<QPushButton*>(QLatin1StringView(a.button));
        QVERIFY(button);
        button->click();

        const auto calls = bench->CallsOf("DirectIO");
        if (a.command == 0) {
            QVERIFY(bench->Calls().isEmpty());
            QVERIFY(bench->MacroLines().isEmpty());
            QCOMPARE(bench->refreshes, 0);
            return;
        }
        const DirectIOData data = Block(a.data);
        const QString text = QString::fromLatin1(a.text);
        QCOMPARE(calls.size(), 1);
        QCOMPARE(calls[0].args[0].toInt(), a.command);
        QCOMPARE(calls[0].args[1].value<DirectIOData>(), data);
        QCOMPARE(calls[0].args[2].toString(), text);
        QStringList fields{QStringLiteral("F_DirectIO"), QString::number(a.command)};
        for (int32_t e : data)
            fields.append(QString::number(e));
        fields.append(text);
        QCOMPARE(bench->MacroLines().last(), fields.join(u'$'));
        QCOMPARE(bench->Log().filter(QStringLiteral("DirectIO(")).size(), 1);
        QCOMPARE(bench->refreshes, 1);
        QVERIFY(bench->messages.isEmpty());
        // The credit note first puts its own additional header on the receipt.
        const bool creditNote = a.command == 1400;
        QCOMPARE(bench->Calls(),
                 creditNote ? bench->Words("SetAdditionalHeader DirectIO") : bench->Words("DirectIO"));
        if (creditNote)
            QCOMPARE(bench->Arg("SetAdditionalHeader", 0).toString(), QStringLiteral("Test Addit. CCNOTA!"));
    }

    void refusalShowsInLogAndStatus() {
        frmDirectIO panel(bench->ctx, QStringLiteral("ZorvaneFPU"));
        bench->printer.Script(QStringLiteral("DirectIO"), 106, 0, QStringLiteral("Bad display row"));
        panel.display->cmdDirDyPrintText->click();
        QVERIFY(bench->Log().last().endsWith(QStringLiteral("-> OposEIllegal(106)  (0)  Bad display row")));
        QCOMPARE(bench->ErrorBoxes(), 1);
    }

    // What comes back is shown, and before or after the refresh as each button does it.
    void answersAndRefreshOrder_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("element0");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<bool>("shownBeforeRefresh");
        auto row = [](const char* tag, const char* button, const char* field, int element0,
                      const char* answer, int result, const char* shown, bool before) {
            QTest::newRow(tag) << QString(button) << QString(field) << element0 << QString(answer) << result
                               << QString(shown) << before;
        };
        // clang-format off
        row("drawer open", "cmdDirGetDrawer", "lblDirGetDrawer", 1, "", 0, "Opened", true);
        row("drawer closed", "cmdDirGetDrawer", "lblDirGetDrawer", 0, "", 0, "Closed", true);
        row("drawer, other value", "cmdDirGetDrawer", "lblDirGetDrawer", 2, "", 0, "Closed", true);
        row("drawer read fails", "cmdDirGetDrawer", "lblDirGetDrawer", 0, "", 111, "Closed", true);
        row("links", "cmdDirectGetLinkToDepartment", "txtDeptVatLinks", 0, "3C,4D", 0, "3C,4D", true);
        row("links read fails", "cmdDirectGetLinkToDepartment", "txtDeptVatLinks", 0, "", 111, "", true);
        row("virtual ticket", "cmd_Debug_Test", "txtDirectIoDebugTest", 0, "TOTALE 1,50", 0, "TOTALE 1,50", false);
        row("virtual ticket fails", "cmd_Debug_Test", "txtDirectIoDebugTest", 0, "", 111, "", false);
        // clang-format on
    }
    void answersAndRefreshOrder() {
        QFETCH(QString, button);
        QFETCH(QString, field);
        QFETCH(int, element0);
        QFETCH(QString, answer);
        QFETCH(int, result);
        QFETCH(QString, shown);
        QFETCH(bool, shownBeforeRefresh);
        QStringList atRefresh;
        QWidget* target = nullptr;
        PanelContext ctx{bench->printer, bench->wrapper, bench->macro,
                         [&] { atRefresh.append(Shown(target)); }};
        frmDirectIO panel(ctx, QStringLiteral("ZorvaneFPU"));
        target = panel.findChild<QWidget*>(field);
        const QString before = Shown(target);
        bench->printer.handlers[QStringLiteral("DirectIO")] = [=](QVariantList& a) {
            if (result == 0) {
                a[1] = QVariant::fromValue(Block({element0}));
                a[2] = answer;
            }
            return result;
        };
        panel.findChild<QPushButton*>(button)->click();
        QCOMPARE(Shown(target), shown);
        QCOMPARE(atRefresh, QStringList{shownBeforeRefresh ? shown : before});
    }

    void deprecatedButtonsFollowTheServiceObject_data() {
        QTest::addColumn<QString>("serviceObject");
        QTest::addColumn<bool>("offered");
        QTest::newRow("ZorvaneFPU") << "ZorvaneFPU" << false;
        QTest::newRow("Tessorim") << "Tessorim" << true;
        QTest::newRow("another case") << "zorvaneFPU" << true;
        QTest::newRow("empty") << "" << true;
    }
    void deprecatedButtonsFollowTheServiceObject() {
        QFETCH(QString, serviceObject);
        QFETCH(bool, offered);
        frmDirectIO panel(bench->ctx, serviceObject);
        // clang-format off
        const QStringList deprecated = bench->Words(
            "cmdPrintBitmap cmdDirPrintBarcode cmdDirBeginCreditNote cmdDirEndCreditNote");
        const QStringList hidden = bench->Words(
            "cbDirBmpPrintStations txtDirPrintBmpPrintMode edtBitmapID cbDirBarcodePrintStations cbDirBarcodeType "
            "edtBarcode txtCreditNoteNumber cmdSimKb txtSimKeys cmd_Debug_Test txtDirectIoDebugTest "
            "cmdDirReportZSelectFile cmdDirReportEJSelectFile cmdDirReportOFSelectFile cmdDirSetVideoMode "
            "cbVideoMode cmdDirPtBmpNow txtDirDyBmpNowX txtDirDyBmpNowY txtDirDyBmpNowFileName cmdBitmapFile "
            "cmdDirDySbyText txtDirDySbyText cmdSbyBmp txtDirDySbyBmpX txtDirDySbyBmpY txtDirDySbyBmpID "
            "txtDirDyBmpSbyESC");
        // clang-format on
        // Seen from its own tab, since the tab control hides the pages not on show.
        auto visible = [&](const QString& name) {
            auto* w = panel.findChild<QWidget*>(name);
            if (!w)
                return QStringLiteral("missing");
            for (int t = 0; t < panel.SSTabDirectIO->count(); ++t)
                if (panel.SSTabDirectIO->widget(t)->isAncestorOf(w))
                    return w->isVisibleTo(panel.SSTabDirectIO->widget(t)) ? QStringLiteral("shown")
                                                                          : QStringLiteral("hidden");
            return QStringLiteral("off the tabs");
        };
        for (const QString& name : deprecated)
            QCOMPARE(visible(name), offered ? QStringLiteral("shown") : QStringLiteral("hidden"));
        for (const QString& name : hidden)
            QCOMPARE(visible(name), QStringLiteral("hidden"));
        // Every other control of the tabs is on show.
        int others = 0;
        static const QRegularExpression control(QStringLiteral("^(cmd|txt|cb|lbl|edt|filelist|img)"));
        for (const QWidget* w : panel.SSTabDirectIO->findChildren<QWidget*>(control)) {
            if (deprecated.contains(w->objectName()) || hidden.contains(w->objectName()))
                continue;
            QVERIFY2(visible(w->objectName()) == QStringLiteral("shown"), qPrintable(w->objectName()));
            ++others;
        }
        QVERIFY(others > 40); // the tabs hold dozens
        QCOMPARE(panel.SSTabDirectIO->currentIndex(), 0);
    }

    void startYearDoubleClickFillsBothDates() {
        frmDirectIO panel(bench->ctx, QStringLiteral("ZorvaneFPU"));
        panel.show();
        panel.SSTabDirectIO->setCurrentIndex(1);
        DirectIOReportsTab* r = panel.reports;
        QTest::mouseDClick(r->txtDirReportEJEndDateY, Qt::LeftButton); // only the start year reacts
        QCOMPARE(r->txtDirReportEJEndDateY->text(), QStringLiteral("2007"));
        const QDate before = QDate::currentDate();
        QTest::mouseDClick(r->txtDirReportEJStartDateY, Qt::LeftButton);
        QVERIFY(bench->Calls().isEmpty());
        const QDate day =
            QDate(r->txtDirReportEJStartDateY->text().toInt(), r->txtDirReportEJStartDateM->text().toInt(),
                  r->txtDirReportEJStartDatD->text().toInt());
        QVERIFY(day == before || day == QDate::currentDate());
        QCOMPARE(r->txtDirReportEJStartDateM->text().size(), 2);
        QCOMPARE(r->txtDirReportEJStartDatD->text().size(), 2);
        r->cmdDirReportEJ->click();
        const auto data = bench->Arg("DirectIO", 1).value<DirectIOData>();
        const int32_t expected = day.year() * 10000 + day.month() * 100 + day.day();
        QCOMPARE(data[3], expected);
        QCOMPARE(data[4], expected);
    }

    // Both bitmap tabs browse a folder of pictures the same way.
    void bitmapBrowser_data() {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QStringList>("names"); // list, folder button, picture, path, ID, load button
        QTest::addColumn<int>("loadCommand");
        QTest::newRow("display") << 2
                                 << PanelBench::Words(
                                        "filelistDisplayIcon cmdLoadBmpSelectFile imgDisplayIcons "
                                        "txtDirDyBmpLoadFileName txtDirDyBmpLoadID "
                                        "cmdDirDyBmpLoad")
                                 << 1303;
        QTest::newRow("printer") << 3
                                 << PanelBench::Words("filelistTicketIcon cmdTicketSetFolder imgTicketIcons "
                                                      "txtLoadBmpFileName txtLoadBmpID cmdLoadBitmap")
                                 << 1100;
    }
    void bitmapBrowser() {
        QFETCH(int, tab);
        QFETCH(QStringList, names);
        QFETCH(int, loadCommand);
        const QString folderButton = names[1];
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString folder = dir.path();
        QVERIFY(WriteFile(folder + "/one.gif", QByteArray(kOnePixelGif, sizeof kOnePixelGif - 1)));
        QImage bmp(4, 3, QImage::Format_RGB32);
        bmp.fill(Qt::black);
        QVERIFY(bmp.save(folder + "/Logo.BMP", "BMP"));
        QVERIFY(WriteFile(folder + "/notes.txt", "not a picture"));
        QVERIFY(WriteFile(folder + "/fake.bmp", "not a picture either"));

        QStringList pickerCalls;
        QString answer = folder;
        FilePickerHandlers pickers;
        pickers.pickFolder = [&](const QString& start, QWidget* owner, const QString& title) {
            pickerCalls.append(start + u'|' + (owner ? "owner" : "") + u'|' + title);
            return answer;
        };
        SetFilePickerHandlers(pickers);

        frmDirectIO panel(bench->ctx, QStringLiteral("ZorvaneFPU"));
        panel.resize(900, 700);
        panel.show();
        panel.SSTabDirectIO->setCurrentIndex(tab);
        auto* files = panel.findChild<QListWidget*>(names[0]);
        auto* image = panel.findChild<QLabel*>(names[2]);
        auto* path = panel.findChild<QLineEdit*>(names[3]);
        auto* id = panel.findChild<QLineEdit*>(names[4]);
        QVERIFY(files && image && path && id);
        const QString appFolder = Tools::AppFolder();

        panel.findChild<QPushButton*>(folderButton)->click();
        QCOMPARE(pickerCalls, QStringList{appFolder + "||"});
        QStringList listed;
        for (int i = 0; i < files->count(); ++i)
            listed.append(files->item(i)->text());
        QCOMPARE(listed, bench->Words("fake.bmp Logo.BMP one.gif"));

        auto click = [&](int row) {
            QTest::mouseClick(files->viewport(), Qt::LeftButton, {},
                              files->visualItemRect(files->item(row)).center());
        };
        QVERIFY(image->pixmap().isNull());
        click(2);
        QCOMPARE(path->text(), folder + "/one.gif");
        QCOMPARE(image->pixmap().size(), QSize(1, 1));
        click(1);
        QCOMPARE(path->text(), folder + "/Logo.BMP");
        QCOMPARE(image->pixmap().size(), QSize(4, 3));
        const qint64 preview = image->pixmap().cacheKey();
        click(0); // no picture: the preview stays, the path still goes in
        QCOMPARE(path->text(), folder + "/fake.bmp");
        QCOMPARE(image->pixmap().cacheKey(), preview);
        QCOMPARE(id->text(), QStringLiteral("1"));
        if (tab == 2)
            QCOMPARE(panel.display->txtDirDyBmpShowID->text(), QString());
        QVERIFY(bench->Calls().isEmpty());

        // A cancelled picker, or an answer that is no folder, keeps the list where it is.
        for (const QString& other : {QString(), folder + "/notes.txt"}) {
            answer = other;
            panel.findChild<QPushButton*>(folderButton)->click();
            QCOMPARE(pickerCalls.last(), folder + "||");
            QCOMPARE(files->count(), 3);
        }

        panel.findChild<QPushButton*>(names[5])->click();
        QCOMPARE(bench->Arg("DirectIO", 0).toInt(), loadCommand);
        QCOMPARE(bench->Arg("DirectIO", 2).toString(), folder + "/fake.bmp");
    }

    void escFieldOpensTheGeneratorBesideThePanel() {
        frmDirectIO panel(bench->ctx, QStringLiteral("ZorvaneFPU"));
        panel.show();
        panel.SSTabDirectIO->setCurrentIndex(2);
        QVERIFY(!panel.display->EscGenerator());
        QTest::mouseDClick(panel.display->txtDirDyBmpSbyESC, Qt::LeftButton); // the standby field has none
        QVERIFY(!panel.display->EscGenerator());
        QTest::mouseDClick(panel.display->txtDirDyBmpShowESC, Qt::LeftButton);
        frmEscSequences* generator = panel.display->EscGenerator();
        QVERIFY(generator);
        QVERIFY(generator->isVisible());
        QVERIFY(!generator->isModal());
        QVERIFY(!QApplication::activeModalWidget());
        // A second double click brings the same window up again.
        QTest::mouseDClick(panel.display->txtDirDyBmpShowESC, Qt::LeftButton);
        QCOMPARE(panel.display->EscGenerator(), generator);
        QCOMPARE(panel.display->txtDirDyBmpShowESC->text(), QString()); // it never writes there
        generator->Command4->click();
        generator->Command15->click();
        QTRY_VERIFY(!panel.display->EscGenerator()); // closing unloads it
        QCOMPARE(QGuiApplication::clipboard()->text(), QString(QChar(27)) + "|2C");
        QVERIFY(bench->Calls().isEmpty());
    }

    // The two mode dialogs: what is picked, then the value and the hexadecimal label it shows.
    void modeDialogs_data() {
        QTest::addColumn<bool>("print");
        QTest::addColumn<QString>("steps");
        QTest::addColumn<int>("value");
        QTest::addColumn<QString>("label");
        // clang-format off
        QTest::newRow("print: left")                 << true << "cbJustify=#0" << 48 << "30";
        QTest::newRow("print: right, double height") << true << "cbJustify=#1 chkDblHeight" << 53 << "35";
        QTest::newRow("print: center, double width") << true << "cbJustify=#2 chkDblWidth" << 58 << "3A";
        QTest::newRow("print: left, reverse")        << true << "cbJustify=#0 chkReverseMode" << 112 << "70";
        QTest::newRow("print: center, everything")   << true << "chkDblHeight chkDblWidth chkReverseMode cbJustify=#2" << 126 << "7E";
        QTest::newRow("show: no rotate")             << false << "cbShMRotate=#0" << 0 << "0";
        QTest::newRow("show: no rotate, blink")      << false << "cbShMRotate=#0 chkBlink" << 8 << "8";
        QTest::newRow("show: right")                 << false << "cbShMRotate=#1" << 4 << "4";
        QTest::newRow("show: left")                  << false << "cbShMRotate=#2" << 5 << "5";
        QTest::newRow("show: up, blink")             << false << "cbShMRotate=#3 chkBlink" << 14 << "E";
        QTest::newRow("show: down, blink")           << false << "chkBlink cbShMRotate=#4" << 15 << "F";
        // clang-format on
    }
    void modeDialogs() {
        QFETCH(bool, print);
        QFETCH(QString, steps);
        QFETCH(int, value);
        QFETCH(QString, label);
        frmPrintMode printMode;
        frmShowMode showMode;
        QDialog* dialog = print ? static_cast<QDialog*>(&printMode) : &showMode;
        QLabel* shown = print ? printMode.lblPrintMode : showMode.lblShowMode;
        const int& selected = print ? printMode.selectedPrintMode : showMode.selectedShowMode;
        QCOMPARE(shown->text(), print ? QStringLiteral("30") : QStringLiteral("0"));
        dialog->show();
        PanelBench::Apply(dialog, steps.split(u' '));
        QCOMPARE(selected, value);
        QCOMPARE(shown->text(), label);
        dialog->findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
        QVERIFY(!dialog->isVisible());
        QCOMPARE(selected, value);
    }
};

QTEST_MAIN(DirectIOPanelTest)
#include "tst_directio_panel.moc"
