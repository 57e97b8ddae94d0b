#include "DirectIODisplayTab.h"
#include "DirectIOGenericTab.h"
#include "DirectIOPrinterTab.h"
#include "DirectIOReportsTab.h"
#include "DirectIOSettingsTab.h"
#include "PanelBench.h"
#include "SimulatedFiscalPrinter.h"
#include "frmDirectIO.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QTabWidget>
#include <QTemporaryDir>

namespace {

// The panel on the simulated printer, opened, claimed and enabled. The refresh notes each
// result; a failure also counts as an "ERRORS: " box.
struct SimBench {
    SimulatedFiscalPrinter printer;
    clsBenchLog log;
    clsFprtWrapper wrapper{printer, log};
    clsMacroEngine macro{wrapper};
    QList<int32_t> results;
    int errorBoxes = 0;
    PanelContext ctx{printer, wrapper, macro, [this] {
                         results.append(printer.ResultCode());
                         if (results.last() != 0)
                             ++errorBoxes;
                     }};
    frmDirectIO panel{ctx, QStringLiteral("ZorvaneFPU")};
    qsizetype mark = 0;

    SimBench() {
        wrapper.SetRecorder(&macro);
        macro.Construct();
        wrapper.WOpen(QStringLiteral("ZorvaneFPU"));
        wrapper.ClaimDevice(2000);
        wrapper.SetDeviceEnabled(true);
        mark = LinesOf(log).size();
    }
    ~SimBench() { SetFilePickerHandlers({}); }

    void Press(const char* button) {
        auto* b = panel.findChild<QPushButton*>(QLatin1StringView(button));
        QVERIFY2(b, button);
        mark = LinesOf(log).size();
        b->click();
    }
    // The DirectIO lines since the last press.
    QStringList DirectIOLines() const {
        return LinesOf(log).mid(mark).filter(QRegularExpression(QStringLiteral("^DirectIO\\(")));
    }
    // The text the control handed back, as the last DirectIO line shows it.
    QString ReturnedText() const {
        const QString line = DirectIOLines().value(0);
        const qsizetype from = line.indexOf(QStringLiteral("}, ")) + 3;
        return line.mid(from, line.lastIndexOf(QStringLiteral(")     -> ")) - from);
    }
    void Set(const char* field, const QString& text) {
        panel.findChild<QLineEdit*>(QLatin1StringView(field))->setText(text);
    }
    QString Text(const char* field) const {
        return panel.findChild<QLineEdit*>(QLatin1StringView(field))->text();
    }
    // Points both bitmap browsers at `folder` through their "Folder" buttons.
    void Browse(const QString& folder) {
        FilePickerHandlers pickers;
        pickers.pickFolder = [folder](const QString&, QWidget*, const QString&) { return folder; };
        SetFilePickerHandlers(pickers);
        panel.display->cmdLoadBmpSelectFile->click();
        panel.printer->cmdTicketSetFolder->click();
    }
    void ClickFile(QListWidget* list, const QString& name) {
        const auto items = list->findItems(name, Qt::MatchExactly);
        QVERIFY2(!items.isEmpty(), qPrintable(name));
        emit list->itemClicked(items.first());
    }
};

constexpr int Any = -1;     // the simulator page leaves the answer open
constexpr int Refused = -2; // any failure

} // namespace

class DirectIOSimulatedTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QLocale::setDefault(QLocale::c());
        SetMessageBoxHandler([](const QString&, MsgButtons, const QString&) { return MsgResult::Ok; });
    }
    void cleanupTestCase() { SetMessageBoxHandler({}); }

    // Every button of the five tabs, hidden ones included, with its default fields.
    void everyButtonReachesThePrinter_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("command");
        QTest::addColumn<int>("result");
        auto row = [](const char* button, const char* command, int result) {
            QTest::newRow(button) << button << command << result;
        };
        row("cmdDirOpenDrawer", "DIRECTIO_FPTR_DRAWER_OPEN", 0);
        row("cmdDirGetDrawer", "DIRECTIO_FPTR_DRAWER_GET", 0);
        row("cmdResetTotalizers", "DIRECTIO_FPTR_RESET_TOTALIZERS", 0);
        row("cmdSetPollingTime", "DIRECTIO_FPTR_SETPOLLINGTIME", 0);
        row("cmdSimKb", "DIRECTIO_FPTR_SIMULATE_KEYBOARD", 0);
        row("cmd_Debug_Test", "DIRECTIO_FPTR_GETVIRTUALTICKET", 0);
        row("cmdDirectGetLinkToDepartment", "DIRECTIO_FPTR_DEPARTMENTCFG", 0);
        row("cmdDirectSetLinkToDepartment", "DIRECTIO_FPTR_DEPARTMENTCFG", 0);
        row("cmdDirReportZ", "DIRECTIO_FPTR_REPORT_X", 0);
        row("cmdDirReportEJ", "DIRECTIO_FPTR_REPORT_EJ", 0);
        row("cmdDirReportOnFile", "DIRECTIO_FPTR_REPORT_REQUEST", 0);
        row("cmdDirDisplayClear", "DIRECTIO_FPTR_DY_CLEAR", 0);
        row("cmdDirDyPrintText", "DIRECTIO_FPTR_DY_PRINTTEXT", 0);
        row("cmdDirSetVideoMode", "DIRECTIO_FPTR_DY_SETMODE", 0);
        row("cmdDirDyBmpLoad", "DIRECTIO_FPTR_DY_BMPLOAD", Refused); // no file picked
        row("cmdDriDyEraseBmp", "DIRECTIO_FPTR_DY_BMPERASE", Any);
        row("cmdDirDyBmpShow", "DIRECTIO_FPTR_DY_BMPSHOW", Any);
        row("cmdDirPtBmpNow", "DIRECTIO_FPTR_DY_BMPNOW", Refused);
        row("cmdDirDySbyText", "DIRECTIO_FPTR_DY_SBYTEXT", 0);
        row("cmdSbyBmp", "DIRECTIO_FPTR_DY_SBYBMP", Any);
        row("cmdLoadBitmap", "DIRECTIO_FPTR_BMPLOAD", 109);
        row("cmdDirEraseBitmap", "DIRECTIO_FPTR_BMPERASE", 0);
        row("cmdPrintBitmap", "DIRECTIO_FPTR_BMPPRINT", 106); // nothing in the slot
        row("cmdDirPrintBarcode", "DIRECTIO_FPTR_BARCODEPRINT", 0);
        row("cmdDirBeginCreditNote", "DIRECTIO_FPTR_CREDITNOTE_BEGIN", 0);
        row("cmdDirEndCreditNote", "DIRECTIO_FPTR_CREDITNOTE_END", Any);
    }
    void everyButtonReachesThePrinter() {
        QFETCH(QString, button);
        QFETCH(QString, command);
        QFETCH(int, result);
        SimBench s;
        QVERIFY(s.results.isEmpty());
        s.Press(qPrintable(button));
        const QStringList lines = s.DirectIOLines();
        QCOMPARE(lines.size(), 1);
        QVERIFY2(lines[0].startsWith("DirectIO(" + command + ", {"), qPrintable(lines[0]));
        QCOMPARE(s.results.size(), 1);
        const int32_t code = s.results.last();
        QVERIFY2(
            lines[0].contains("     -> " + Tools::ResultCodeName(code) + "(" + QString::number(code) + ")"),
            qPrintable(lines[0]));
        if (result == Refused)
            QVERIFY(code != 0);
        else if (result != Any)
            QCOMPARE(code, result);
        QCOMPARE(s.errorBoxes, code != 0 ? 1 : 0);
    }

    void drawerOpensAndReadsBackOpened() {
        SimBench s;
        QLabel* shown = s.panel.generic->lblDirGetDrawer;
        s.Press("cmdDirGetDrawer");
        QCOMPARE(shown->text(), QStringLiteral("Closed"));
        s.Press("cmdDirOpenDrawer");
        s.Press("cmdDirGetDrawer");
        QCOMPARE(shown->text(), QStringLiteral("Opened"));
        QVERIFY(s.DirectIOLines().value(0).startsWith(
            QStringLiteral("DirectIO(DIRECTIO_FPTR_DRAWER_GET, {1, 0,")));
        s.printer.CloseDrawer();
        s.Press("cmdDirGetDrawer");
        QCOMPARE(shown->text(), QStringLiteral("Closed"));
        QCOMPARE(s.results, (QList<int32_t>{0, 0, 0, 0}));
    }

    void departmentLinksRoundTrip() {
        SimBench s;
        s.Press("cmdDirectGetLinkToDepartment");
        QCOMPARE(s.Text("txtDeptVatLinks"), QStringLiteral("1A,2B"));
        s.Press("cmdDirectSetLinkToDepartment"); // written back unedited
        QCOMPARE(s.results.last(), 0);
        s.Set("txtDeptVatLinks", QStringLiteral("3C,4A"));
        s.Press("cmdDirectSetLinkToDepartment");
        QCOMPARE(s.results.last(), 0);
        s.Set("txtDeptVatLinks", QStringLiteral("1A,,9Z")); // refused, nothing changes
        s.Press("cmdDirectSetLinkToDepartment");
        QCOMPARE(s.results.last(), 106);
        QCOMPARE(s.errorBoxes, 1);
        s.Set("txtDeptVatLinks", QString());
        s.Press("cmdDirectGetLinkToDepartment");
        QCOMPARE(s.Text("txtDeptVatLinks"), QStringLiteral("3C,4A"));
    }

    void xReportLandsInTheReportsFolder() {
        SimBench s;
        const QString dataHome = QDir(qEnvironmentVariable("XDG_DATA_HOME")).canonicalPath();
        QVERIFY(!dataHome.isEmpty());
        s.Set("txtDirReportZFile", QStringLiteral("x-bench.txt"));
        s.panel.reports->cbDirReportZFileMode->setCurrentIndex(1); // create or rewrite
        s.Press("cmdDirReportZ");
        QCOMPARE(s.results.last(), 0);
        const QString path = s.ReturnedText(); // the log shows where the file went
        QCOMPARE(QFileInfo(path).fileName(), QStringLiteral("x-bench.txt"));
        QVERIFY2(QFileInfo(path).canonicalFilePath().startsWith(dataHome + u'/'), qPrintable(path));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
        const QByteArray once = file.readAll();
        file.close();
        QVERIFY(!once.trimmed().isEmpty());

        s.panel.reports->cbDirReportZFileMode->setCurrentIndex(0); // append
        s.Press("cmdDirReportZ");
        QCOMPARE(s.results.last(), 0);
        QVERIFY(QFileInfo(path).size() > once.size());
        s.panel.reports->cbDirReportZFileMode->setCurrentIndex(1);
        s.Press("cmdDirReportZ");
        QVERIFY(QFileInfo(path).size() < 2 * once.size());
    }

    void reportNamesLeavingTheFolderAreRefused_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("throughLink");
        QTest::newRow("parent folder") << "../escape.txt" << false;
        QTest::newRow("absolute path") << "" << false;
        QTest::newRow("300 characters") << QString(300, u'x') << false;
        QTest::newRow("symbolic link inside") << "out/escape.txt" << true;
        QTest::newRow("control character") << "bad\x01name.txt" << false;
    }
    void reportNamesLeavingTheFolderAreRefused() {
        QFETCH(QString, name);
        QFETCH(bool, throughLink);
        SimBench s;
        QTemporaryDir outside;
        QVERIFY(outside.isValid());
        // The reports folder, from where a plain name went.
        s.Set("txtDirReportOFFile", QStringLiteral("probe.txt"));
        s.Press("cmdDirReportOnFile");
        QCOMPARE(s.results.last(), 0);
        const QString folder = QFileInfo(s.ReturnedText()).absolutePath();
        if (name.isEmpty())
            name = outside.filePath(QStringLiteral("escape.txt"));
        if (throughLink) {
            QFile::remove(folder + "/out");
            QVERIFY(QFile::link(outside.path(), folder + "/out"));
        }

        for (const char* button : {"cmdDirReportZ", "cmdDirReportOnFile", "cmdDirReportEJ"}) {
            const int boxes = s.errorBoxes;
            s.Set("txtDirReportZFile", name);
            s.Set("txtDirReportOFFile", name);
            s.Set("txtDirReportEJFileName", name);
            s.Press(button);
            QVERIFY2(s.results.last() != 0, button);
            QCOMPARE(s.DirectIOLines().size(), 1);
            if (s.results.last() != 0) {
                QVERIFY(!s.DirectIOLines()[0].contains(QStringLiteral("-> OposSuccess")));
                QCOMPARE(s.errorBoxes, boxes + 1);
            }
        }
        QVERIFY(QDir(outside.path()).isEmpty());
        if (throughLink)
            QFile::remove(folder + "/out");
    }

    void displayRowsReadableFromTheSimulator() {
        SimBench s;
        s.Press("cmdDirDyPrintText");
        QCOMPARE(s.printer.Display().Rows().value(0), QStringLiteral("This is a test"));
        s.Set("txtDyPtRow", QStringLiteral("2"));
        s.Set("txtDirPtString", QStringLiteral("Grazie"));
        s.Press("cmdDirDyPrintText");
        QCOMPARE(s.printer.Display().Rows().value(1), QStringLiteral("Grazie"));
        QCOMPARE(s.results, (QList<int32_t>{0, 0}));
        s.Set("txtDyPtRow", QStringLiteral("3")); // 2x20 has two rows
        s.Press("cmdDirDyPrintText");
        QCOMPARE(s.results.last(), 106);
        QVERIFY(s.DirectIOLines().value(0).contains(QStringLiteral("-> OposEIllegal(106)")));
        s.panel.display->cbVideoMode->setCurrentIndex(1); // 3x22
        s.Press("cmdDirSetVideoMode");
        s.Press("cmdDirDyPrintText");
        QCOMPARE(s.results.last(), 0);
        QCOMPARE(s.printer.Display().Rows().value(2), QStringLiteral("Grazie"));
        s.Press("cmdDirDisplayClear");
        for (const QString& row : s.printer.Display().Rows())
            QVERIFY(row.trimmed().isEmpty());
    }

    void bitmapsGoIntoMemory() {
        SimBench s;
        QTemporaryDir dir;
        QImage logo(32, 16, QImage::Format_Mono);
        logo.fill(0);
        QVERIFY(logo.save(dir.filePath(QStringLiteral("logo.bmp")), "BMP"));
        QFile text(dir.filePath(QStringLiteral("fake.bmp")));
        QVERIFY(text.open(QIODevice::WriteOnly) && text.write("no picture") > 0);
        text.close();
        s.Browse(dir.path());

        // Printer memory: load, print, erase.
        s.ClickFile(s.panel.printer->filelistTicketIcon, QStringLiteral("logo.bmp"));
        QCOMPARE(s.Text("txtLoadBmpFileName"), dir.filePath(QStringLiteral("logo.bmp")));
        s.Press("cmdLoadBitmap");
        QCOMPARE(s.results.last(), 0);
        QVERIFY(s.printer.Bitmaps().Has(1));
        s.Press("cmdPrintBitmap");
        QCOMPARE(s.results.last(), 0);
        s.Press("cmdDirEraseBitmap");
        QCOMPARE(s.results.last(), 0);
        QVERIFY(!s.printer.Bitmaps().Has(1));
        s.ClickFile(s.panel.printer->filelistTicketIcon, QStringLiteral("fake.bmp"));
        s.Press("cmdLoadBitmap");
        QCOMPARE(s.results.last(), 106);

        // Display memory: load and show; a picture straight from a file that isn't one.
        s.ClickFile(s.panel.display->filelistDisplayIcon, QStringLiteral("logo.bmp"));
        s.Press("cmdDirDyBmpLoad");
        QCOMPARE(s.results.last(), 0);
        QVERIFY(s.printer.Display().HasBitmap(1));
        s.Set("txtDirDyBmpShowID", QStringLiteral("1"));
        s.Press("cmdDirDyBmpShow");
        QCOMPARE(s.results.last(), 0);
        QCOMPARE(s.printer.Display().ShownBitmap(), 1);
        for (const QString& file :
             {dir.filePath(QStringLiteral("none.gif")), dir.filePath(QStringLiteral("fake.bmp"))}) {
            s.Set("txtDirDyBmpNowFileName", file);
            s.Press("cmdDirPtBmpNow");
            QVERIFY(s.results.last() != 0);
            QCOMPARE(s.DirectIOLines().size(), 1);
        }
    }
};

QTEST_MAIN(DirectIOSimulatedTest)
#include "tst_directio_simulated.moc"
