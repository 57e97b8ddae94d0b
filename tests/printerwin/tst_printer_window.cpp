// The printer window on the bench: opened from the main window, following the simulator live,
// its faults reaching the device through the simulator's rules and back to the main window; its
// new fiscal memory, whose files live under the test's own XDG_DATA_HOME.
#include "BarcodeSymbol.h"
#include "FiscalMemoryFile.h"
#include "MDITestFPOPOS.h"
#include "PaperView.h"
#include "PrinterBench.h"
#include "PrinterPanels.h"
#include "ScriptedPrinter.h"
#include "Seams.h"
#include "SqliteFiscalMemory.h"
#include "TestRow.h"
#include "clsBenchCore.h"
#include "clsFprtWrapper.h"
#include "frmAutoTests.h"
#include "frmFiscalTicket.h"
#include "frmPrinter.h"
#include "frmStatusBar.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSettings>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

using namespace pw;
using namespace OposAll;
using sim::PaperLevel;

namespace {

using Steps = std::function<void(SimulatedFiscalPrinter&)>;
const QString kModel = QStringLiteral("ZorvaneFPU");

// The main window over a simulated printer (its memory in the process, or the bench's own file),
// with the printer window open, then the device opened, claimed and enabled: the file comes with
// Open, and the new memory button with it. Message boxes are recorded; Yes / No ones get `answer`.
struct Bench {
    QStringList boxes;
    QList<MsgButtons> buttons;
    MsgResult answer = MsgResult::Ok;
    SimulatedFiscalPrinter* printer = nullptr;
    std::unique_ptr<MDITestFPOPOS> window;
    frmPrinter* pw = nullptr;

    explicit Bench(bool inFile = false) {
        auto device = std::make_unique<SimulatedFiscalPrinter>();
        printer = device.get();
        if (inFile)
            printer->SetFiscalMemoryFactory(sim::PersistentFiscalMemories({}));
        window = std::make_unique<MDITestFPOPOS>(std::move(device));
        // After the window, which installs the real dialogs.
        SetMessageBoxHandler([this](const QString& text, MsgButtons kind, const QString&) {
            boxes << text;
            buttons << kind;
            return kind == MsgButtons::YesNo ? answer : MsgResult::Ok;
        });
        window->cmdPrinterWindow()->click();
        pw = window->PrinterWindow();
        window->Core().OpenClaimEnable(kModel);
        Settle();
    }
    ~Bench() {
        window.reset();
        SetMessageBoxHandler({});
    }
    // The views lay out on the event loop, a frame at most after new paper.
    // What the printer did reaches the window on its next update and the views' next layout.
    void Settle() const {
        QTest::qWait(1);
        QVERIFY(QTest::qWaitFor([this] { return !pw->UpdatesPending(); }));
    }
    int32_t Sale() {
        const int32_t rc = pw::Sale(*printer, {QStringLiteral("Pane")});
        Settle();
        return rc;
    }
    QColor MainLamp(const char* name) const {
        return window->StatusBar()->findChild<LampShape*>(QLatin1String(name))->FillColor();
    }
};

void SelectData(QComboBox* cb, int value) {
    cb->setCurrentIndex(cb->findData(value));
}

QStringList OldFiles() {
    return QDir(sim::FiscalMemoryFolder()).entryList({kModel + QStringLiteral(".sqlite.old-*")});
}

void TwoItemSale(SimulatedFiscalPrinter& p) {
    QCOMPARE(pw::Sale(p, {QStringLiteral("Pane"), QStringLiteral("Latte")}), 0);
}

} // namespace

Q_DECLARE_METATYPE(Steps)
Q_DECLARE_METATYPE(MsgResult)

class tst_PrinterWindow : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QCoreApplication::setOrganizationName(QStringLiteral("fpubench-tests"));
        QCoreApplication::setApplicationName(QStringLiteral("tst_printer_window"));
        QSettings().clear();
    }
    void init() { QDir(sim::FiscalMemoryFolder()).removeRecursively(); }

    void opensFromTheStatusBar() {
        Bench b;
        QToolButton* button = b.window->cmdPrinterWindow();
        QCOMPARE(button->shortcut(), QKeySequence(Qt::Key_F9));
        QVERIFY(button->toolTip().contains(QStringLiteral("F9")));
        QVERIFY(b.window->StatusBar()->isAncestorOf(button));
        QVERIFY(b.pw->isWindow() && b.pw->isVisible());
        QCOMPARE(b.pw->Printer(), b.printer);
        QVERIFY(b.pw->lblDevice->text().contains(QStringLiteral("ZorvaneFPU: open, claimed, enabled")));
        b.window->cmdPrinterWindow()->click(); // a second press shows the same window
        QCOMPARE(b.window->PrinterWindow(), b.pw);
    }

    void otherDevicesStayEmpty() {
        auto scripted = std::make_unique<ScriptedPrinter>();
        MDITestFPOPOS window(std::move(scripted));
        SetMessageBoxHandler([](const QString&, MsgButtons, const QString&) { return MsgResult::Ok; });
        window.ShowPrinterWindow();
        frmPrinter* pw = window.PrinterWindow();
        QCOMPARE(pw->Printer(), nullptr);
        QVERIFY(pw->lblDevice->text().contains(QStringLiteral("not the simulated printer")));
        QCOMPARE(pw->viewReceipt->ShownCount(), 0);
        QVERIFY(!pw->panFaults->isEnabled() && !pw->panStatus->isEnabled());
        QVERIFY(!pw->cmdNewFiscalMemory->isEnabled());
        QVERIFY2(pw->cmdNewFiscalMemory->toolTip().contains("not the simulated printer"),
                 qPrintable(pw->cmdNewFiscalMemory->toolTip()));
        SetMessageBoxHandler({});
    }

    // New paper shows at once and the view goes along with it, unless the user scrolled up.
    void paperFollowsTheRolls() {
        Bench b;
        QCOMPARE(b.Sale(), 0);
        PaperView* view = b.pw->viewReceipt;
        QCOMPARE(view->ShownCount(), b.printer->ReceiptRoll().Count());
        QCOMPARE(b.pw->viewJournal->ShownCount(), b.printer->JournalRoll().Count());
        QScrollBar* bar = view->verticalScrollBar();
        for (int i = 0; i < 4; ++i) // more than the view holds
            QCOMPARE(b.Sale(), 0);
        QVERIFY(bar->maximum() > 0);
        QCOMPARE(bar->value(), bar->maximum());

        bar->setValue(0);
        QVERIFY(!view->FollowsEnd());
        QCOMPARE(b.Sale(), 0);
        QCOMPARE(bar->value(), 0);
        b.pw->cmdFollowEnd->click();
        QCOMPARE(bar->value(), bar->maximum());

        // The view keeps a bounded part of the roll; the roll keeps all.
        view->SetKeep(40);
        for (int i = 0; i < 10; ++i)
            QCOMPARE(b.Sale(), 0);
        QVERIFY(view->ShownCount() <= 40 + 40 / 8);
        QVERIFY(view->FirstShown() > 0);
        QCOMPARE(view->FirstShown() + view->ShownCount(), b.printer->ReceiptRoll().Count());
        QCOMPARE(bar->value(), bar->maximum());
    }

    // A roll that tears off its oldest half leaves the view on the same paper, its selection too.
    void viewThroughATearOff() {
        sim::PaperRoll roll;
        PaperView view;
        view.SetRoll(&roll, {});
        view.SetKeep(100);
        sim::PrintedLine line;
        for (qsizetype i = 0; i < sim::PaperRoll::kCapacity; ++i) {
            line.text = QString::number(i);
            line.cutAfter = i % 10 == 9;
            roll.Append(line);
        }
        view.SelectDocumentAt(roll.Count() - 15);
        const auto texts = [&] {
            const PaperView::Range r = *view.Selection();
            return roll.Lines()[r.first].text + u'-' + roll.Lines()[r.last].text;
        };
        const QString selected = texts();
        QCOMPARE(selected, QString::number(sim::PaperRoll::kCapacity - 20) + u'-' +
                               QString::number(sim::PaperRoll::kCapacity - 11));
        roll.Append(line);
        QVERIFY(roll.TornOff() > 0);
        QCOMPARE(texts(), selected);
        QCOMPARE(view.FirstShown() + view.ShownCount(), roll.Count());
        QCOMPARE(roll.Lines()[view.FirstShown()].text, QString::number(roll.TornOff() + view.FirstShown()));
        QVERIFY(view.FollowsEnd());
    }

    // Queued output shows when the printer gets to it, not when the call returns.
    void asynchronousOutputShowsWhenPrinted() {
        Bench b;
        b.printer->SetAsyncMode(true);
        QCOMPARE(b.printer->BeginNonFiscal(), 0); // its heading is queued too
        QTRY_COMPARE(b.printer->PendingJobs(), 0);
        b.Settle();
        const qsizetype before = b.pw->viewReceipt->ShownCount();
        int32_t station = FPTR_S_RECEIPT;
        QString text = QStringLiteral("queued line");
        QCOMPARE(b.printer->PrintNormal(station, text), 0);
        QCOMPARE(b.printer->PendingJobs(), 1);
        b.Settle();
        QCOMPARE(b.pw->viewReceipt->ShownCount(), b.printer->ReceiptRoll().Count());
        QTRY_COMPARE(b.printer->PendingJobs(), 0);
        QTRY_COMPARE(b.pw->viewReceipt->ShownCount(), before + 1);
        QCOMPARE(b.printer->ReceiptRoll().Lines().last().text, QStringLiteral("queued line"));
    }

    void drawerAndDisplayFollow() {
        Bench b;
        PrinterStatusPanel* status = b.pw->panStatus;
        QCOMPARE(status->lmpDrawer->Text(), QStringLiteral("closed"));
        QCOMPARE(DirectIO(*b.printer, 1000, {}, {}), 0);
        QCOMPARE(status->lmpDrawer->Text(), QStringLiteral("open"));
        status->cmdCloseDrawer->click();
        QVERIFY(!b.printer->Drawer().IsOpen());
        QCOMPARE(status->lmpDrawer->Text(), QStringLiteral("closed"));

        DirectIOData row{};
        row[0] = 2;
        QCOMPARE(DirectIO(*b.printer, 1302, row, QStringLiteral("HELLO CUSTOMER")), 0);
        // The display, like the labels, is shown a moment later: it changes with every line.
        QTRY_COMPARE(status->displayView->Rows(), (QStringList{QString(), QStringLiteral("HELLO CUSTOMER")}));
        DirectIOData mode{};
        mode[0] = 2; // 3 rows of 22
        QCOMPARE(DirectIO(*b.printer, 1300, mode, {}), 0);
        QTRY_COMPARE(status->displayView->Rows().size(), 3);
        QVERIFY(status->lblDisplayMode->text().contains(QStringLiteral("3 rows (22+22+22)")));

        // During a receipt the printer shows the item by itself.
        bool header = false;
        QCOMPARE(b.printer->BeginFiscalReceipt(header), 0);
        QString desc = QStringLiteral("Pane");
        Amount price = Euros(250), unitPrice = 0;
        int32_t qty = 0, vat = 1;
        QString unit;
        QCOMPARE(b.printer->PrintRecItem(desc, price, qty, vat, unitPrice, unit), 0);
        QTRY_COMPARE(status->displayView->Rows().first(), QStringLiteral("Pane"));
        QVERIFY(status->displayView->Rows().at(1).contains(QStringLiteral("2,50")));
    }

    // Each fault goes to the simulator, whose status event turns the main window's lamp.
    void faultsFromTheWindow_data() {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("mainLamp"); // the main window's lamp that turns red, if any
        Row("cover open", "cover", "shpCoverOpen");
        Row("receipt paper empty", "receipt empty", "shpPaperOut");
        Row("receipt paper near end", "receipt near end", "shpPaperNearEmpty");
        Row("journal paper empty", "journal empty", QString());
        Row("offline", "offline", QString());
        Row("power off", "power off", QString());
    }
    void faultsFromTheWindow() {
        QFETCH(QString, fault);
        QFETCH(QString, mainLamp);
        Bench b;
        PrinterFaultPanel* f = b.pw->panFaults;
        PrinterStatusPanel* s = b.pw->panStatus;
        PrinterLamp* lamp = nullptr;
        if (fault == "cover") {
            f->chkCoverOpen->setChecked(true);
            QVERIFY(b.printer->IsCoverOpen());
            lamp = s->lmpCover;
        } else if (fault == "receipt empty" || fault == "receipt near end") {
            const bool empty = fault == "receipt empty";
            SelectData(f->cbReceiptPaper, int(empty ? PaperLevel::Empty : PaperLevel::NearEnd));
            QCOMPARE(b.printer->ReceiptPaper(), empty ? PaperLevel::Empty : PaperLevel::NearEnd);
            lamp = s->lmpReceiptPaper;
        } else if (fault == "journal empty") {
            SelectData(f->cbJournalPaper, int(PaperLevel::Empty));
            QCOMPARE(b.printer->JournalPaper(), PaperLevel::Empty);
            lamp = s->lmpJournalPaper;
        } else if (fault == "offline") {
            f->chkOffline->setChecked(true);
            QVERIFY(b.printer->IsOffline());
            QCOMPARE(b.printer->PrintXReport(), OPOS_E_OFFLINE); // the device refuses from now on
            lamp = s->lmpOnline;
        } else {
            f->chkPowerOff->setChecked(true);
            QVERIFY(b.printer->IsPowerOff());
            lamp = s->lmpPower;
        }
        QVERIFY(lamp->CurrentLevel() != PrinterLamp::Level::Ok);
        if (!mainLamp.isEmpty())
            QCOMPARE(b.MainLamp(qPrintable(mainLamp)), frmStatusBar::Red);
    }

    void failTheNextCall() {
        Bench b;
        PrinterFaultPanel* f = b.pw->panFaults;
        f->cbFailMethod->setCurrentText(QStringLiteral("PrintXReport"));
        SelectData(f->cbFailCode, OPOS_E_EXTENDED);
        QVERIFY(f->cbFailExtended->isEnabled());
        SelectData(f->cbFailExtended, OPOS_EFPTR_JRN_EMPTY);
        f->cmdFailNext->click();
        QVERIFY(f->lblFailPending->text().contains(QStringLiteral("PrintXReport")));
        QCOMPARE(b.window->FprtWrapper().PrintXReport(), OPOS_E_EXTENDED);
        QCOMPARE(b.printer->ResultCodeExtended(), OPOS_EFPTR_JRN_EMPTY);
        QCOMPARE(b.window->FprtWrapper().PrintXReport(), 0); // once only
        QCOMPARE(f->lblFailPending->text(), QStringLiteral("No call set to fail."));
        SelectData(f->cbFailCode, OPOS_E_ILLEGAL);
        QVERIFY(!f->cbFailExtended->isEnabled()); // an extended code goes with 114 only
    }

    // The receipt paper runs out in the middle of a receipt printed from the fiscal panel.
    void paperPulledMidReceipt() {
        Bench b;
        frmFiscalTicket* fiscal = b.window->FiscalTicket();
        fiscal->cmdBeginFiscRecpt->click();
        fiscal->cmdPrintRecItem->click();
        QCOMPARE(b.printer->PrinterState(), FPTR_PS_FISCAL_RECEIPT);
        QVERIFY(b.boxes.isEmpty());
        SelectData(b.pw->panFaults->cbReceiptPaper, int(PaperLevel::Empty));
        QCOMPARE(b.MainLamp("shpPaperOut"), frmStatusBar::Red);
        fiscal->cmdPrintRecItem->click();
        QCOMPARE(b.boxes.size(), 1);
        QVERIFY2(
            b.boxes.first().startsWith(QStringLiteral("ERRORS: OposEExtended(114)  OposEfptrRecEmpty(203)")),
            qPrintable(b.boxes.first()));
        QCOMPARE(b.window->StatusBar()->lblErrorCodeExt->text(), QStringLiteral("OposEfptrRecEmpty(203)"));
        QTRY_VERIFY(b.pw->lblDevice->text().contains(QStringLiteral("FPTR_PS_FISCAL_RECEIPT")));
    }

    // The full non-fiscal script of the automatic tests panel: its barcodes encode and draw, its
    // bitmap (nftest.bmp beside the program) comes from the printer's memory.
    void nonFiscalScriptOnPaper() {
        Bench b;
        auto* tests = qobject_cast<frmAutoTests*>(b.window->Panel(frmToolbar::AutoTests));
        QVERIFY(tests);
        const qsizetype start = b.printer->ReceiptRoll().Count();
        tests->cmdFullNonFiscalTicket->click();
        b.Settle();
        PaperView* view = b.pw->viewReceipt;
        QCOMPARE(view->FirstShown() + view->ShownCount(), b.printer->ReceiptRoll().Count());
        int barcodes = 0, bitmaps = 0;
        for (qsizetype i = start; i < b.printer->ReceiptRoll().Count(); ++i) {
            const sim::PrintedLine& line = b.printer->ReceiptRoll().Lines()[i];
            if (line.kind == sim::PrintedLine::Kind::Barcode) {
                const BarcodeSymbol& symbol = view->Painter().Symbol(line.barcodeType, line.text);
                QVERIFY2(symbol.IsValid() && view->Painter().ModulePixels(symbol) > 0,
                         qPrintable(symbol.error));
                ++barcodes;
            } else if (line.kind == sim::PrintedLine::Kind::Bitmap) {
                QVERIFY(!view->BitmapOf(i).isNull());
                ++bitmaps;
            }
        }
        QCOMPARE(barcodes, 4); // one of each type
        QCOMPARE(bitmaps, 1);
    }

    void copyAndExport() {
        Bench b;
        QCOMPARE(b.Sale(), 0);
        PaperView* view = b.pw->viewReceipt;
        QVERIFY(!b.pw->cmdCopyReceipt->isEnabled());
        view->SelectDocumentAt(view->FirstShown() + view->ShownCount() - 1);
        QVERIFY(b.pw->cmdCopyReceipt->isEnabled());
        QVERIFY(b.pw->CopySelectedDocument());
        const QStringList text = QGuiApplication::clipboard()->text().split(u'\n');
        // Centred on 46 columns: 25 free around "DOCUMENTO COMMERCIALE", 22 around the logo's text.
        QCOMPARE(text.first(), QString(12, u' ') + QStringLiteral("DOCUMENTO COMMERCIALE"));
        QVERIFY(text.contains(QStringLiteral("Pane") + QString(38, u' ') + QStringLiteral("1,50")));
        QCOMPARE(text.at(text.size() - 2), QString(11, u' ') + QStringLiteral("[FISCAL LOGO 99ZS000123]"));

        QTemporaryDir dir;
        const QString png = dir.filePath(QStringLiteral("receipt.png"));
        QVERIFY(b.pw->ExportSelectedPng(png));
        const QImage picture(png);
        QCOMPARE(picture.width(), view->Painter().PaperWidth());
        QVERIFY(picture.height() > 10 * view->Painter().LineHeight());
        const QString pdf = dir.filePath(QStringLiteral("roll.pdf"));
        QVERIFY(b.pw->ExportRollPdf(pdf));
        QFile file(pdf);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.read(5) == "%PDF-");
        QVERIFY(b.boxes.isEmpty());
    }

    // A folder that cannot be written: a clear message, and nothing left behind.
    void exportToAnUnwritableFolder_data() {
        QTest::addColumn<bool>("pdf");
        Row("roll as PDF", true);
        Row("receipt as PNG", false);
    }
    void exportToAnUnwritableFolder() {
        QFETCH(bool, pdf);
        Bench b;
        QCOMPARE(b.Sale(), 0);
        b.pw->viewReceipt->SelectDocumentAt(b.pw->viewReceipt->FirstShown());
        QTemporaryDir dir;
        QFile blocker(dir.filePath(QStringLiteral("not-a-folder")));
        QVERIFY(blocker.open(QIODevice::WriteOnly)); // a file where the folder should be
        blocker.close();
        const QString target = dir.filePath(QStringLiteral("not-a-folder/out.") + (pdf ? "pdf" : "png"));
        QVERIFY(!(pdf ? b.pw->ExportRollPdf(target) : b.pw->ExportSelectedPng(target)));
        QCOMPARE(b.boxes.size(), 1);
        QVERIFY2(b.boxes.first().startsWith(QStringLiteral("Cannot write ")), qPrintable(b.boxes.first()));
        QCOMPARE(QDir(dir.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
                 QStringList{QStringLiteral("not-a-folder")});
    }

    // A 10 MB bitmap file is refused by the printer, and its slot then prints as a placeholder;
    // a bitmap taller than any picture prints, scrolls and paints, and its PNG export is refused.
    void hugeBitmaps() {
        Bench b;
        QTemporaryDir dir;
        const auto write = [&dir](const char* name, int height) {
            QImage img(576, height, QImage::Format_Mono);
            img.setColor(0, qRgb(0, 0, 0));
            img.setColor(1, qRgb(255, 255, 255));
            img.fill(1);
            for (int y = 0; y < height; y += 50)
                for (int x = 0; x < 576; ++x)
                    img.setPixel(x, y, 0);
            const QString path = dir.filePath(QLatin1String(name));
            return img.save(path, "BMP") ? path : QString();
        };
        const QString huge = write("huge.bmp", 140000);
        QVERIFY(QFileInfo(huge).size() >= 10 * 1000 * 1000);
        DirectIOData slot{};
        slot[0] = 2;
        QCOMPARE(DirectIO(*b.printer, 1100, slot, huge), OPOS_E_ILLEGAL);
        QCOMPARE(NonFiscal(*b.printer, {Seq("|2B")}), 0);
        b.Settle();
        PaperView* view = b.pw->viewReceipt;
        QVERIFY(!view->grab().isNull());
        QVERIFY(b.pw->SelectedDocumentText().isEmpty());
        view->SelectDocumentAt(view->FirstShown());
        QVERIFY(b.pw->SelectedDocumentText().contains(QStringLiteral("[BITMAP 2]")));

        QCOMPARE(DirectIO(*b.printer, 1100, slot, write("tall.bmp", 50000)), 0);
        QCOMPARE(NonFiscal(*b.printer, {Seq("|2B")}), 0);
        b.Settle();
        view->resize(500, 600);
        view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum() / 2);
        QVERIFY(!view->grab().isNull()); // a slice of the bitmap in sight
        view->SelectDocumentAt(view->FirstShown() + view->ShownCount() - 1);
        const QString png = dir.filePath(QStringLiteral("tall.png"));
        QVERIFY(!b.pw->ExportSelectedPng(png));
        QCOMPARE(b.boxes.size(), 1);
        QVERIFY2(b.boxes.first().contains(QStringLiteral("pixels long")), qPrintable(b.boxes.first()));
        QVERIFY(!QFile::exists(png));
    }

    // The window's own state comes back in the next run.
    void remembersItsState() {
        {
            Bench b;
            b.pw->chkShowJournal->setChecked(false);
            b.pw->resize(1500, 700);
        }
        Bench again;
        QVERIFY(again.pw->HasSavedGeometry());
        QVERIFY(!again.pw->chkShowJournal->isChecked());
        QCOMPARE(again.pw->size(), QSize(1500, 700));
        QVERIFY(QSettings().contains(frmPrinter::SettingsPrefix + QStringLiteral("showJournal")));
        again.pw->chkShowJournal->setChecked(true);
    }
    void newFiscalMemory_data() {
        QTest::addColumn<Steps>("steps");
        QTest::addColumn<MsgResult>("answer");
        QTest::addColumn<bool>("asked");
        QTest::addColumn<bool>("moved");
        QTest::addColumn<QString>("told");
        const Steps aDay = [](SimulatedFiscalPrinter& p) {
            TwoItemSale(p);
            QCOMPARE(p.PrintZReport(), 0);
            TwoItemSale(p);
        };
        const Steps receipt = [](SimulatedFiscalPrinter& p) {
            TwoItemSale(p);
            bool header = true;
            QCOMPARE(p.BeginFiscalReceipt(header), 0);
        };
        const Steps queued = [](SimulatedFiscalPrinter& p) {
            p.SetPrintTimePerLineMs(5000);
            p.SetAsyncMode(true);
            QCOMPARE(pw::NonFiscal(p, {QStringLiteral("slow")}), 0);
            QCOMPARE(p.PrinterState(), OposAll::FPTR_PS_MONITOR);
        };
        const Steps nonFiscal = [](SimulatedFiscalPrinter& p) { QCOMPARE(p.BeginNonFiscal(), 0); };
        Row("answered No", aDay, MsgResult::No, true, false, QString());
        Row("answered Yes", aDay, MsgResult::Yes, true, true, QStringLiteral("moved aside"));
        Row("receipt open", receipt, MsgResult::Yes, false, false, QStringLiteral("document open"));
        Row("non-fiscal open", nonFiscal, MsgResult::Yes, false, false, QStringLiteral("document open"));
        Row("output queued", queued, MsgResult::Yes, false, false, QStringLiteral("output queued"));
    }
    void newFiscalMemory() {
        QFETCH(Steps, steps);
        QFETCH(MsgResult, answer);
        QFETCH(bool, asked);
        QFETCH(bool, moved);
        QFETCH(QString, told);
        const QString path = sim::FiscalMemoryPath(kModel);
        Bench b(true);
        b.answer = answer;
        QVERIFY2(b.boxes.isEmpty(), qPrintable(b.boxes.join(u'\n')));
        steps(*b.printer);
        b.Settle();
        const sim::IFiscalMemory* memory = &b.printer->Memory();
        const sim::Counters counters = memory->GrandCounters();
        const QString zCount = b.pw->panFiscalMemory->lblZCount->text();
        QVERIFY(b.pw->cmdNewFiscalMemory->isEnabled());

        b.pw->cmdNewFiscalMemory->click();
        b.Settle();

        QCOMPARE(b.buttons.contains(MsgButtons::YesNo), asked);
        if (asked) {
            const QString question = b.boxes[b.buttons.indexOf(MsgButtons::YesNo)];
            QVERIFY2(question.contains(kModel) && question.contains(path) &&
                         question.contains(QStringLiteral(".old-")),
                     qPrintable(question));
        }
        QCOMPARE(b.boxes.size(), int(asked) + int(!told.isEmpty()));
        if (!told.isEmpty())
            QVERIFY2(b.boxes.last().contains(told), qPrintable(b.boxes.last()));
        const QStringList old = OldFiles();
        QCOMPARE(old.size(), int(moved));
        const auto* file = dynamic_cast<const sim::SqliteFiscalMemory*>(&b.printer->Memory());
        QVERIFY(file && file->FilePath() == path);
        if (!moved) {
            QCOMPARE(&b.printer->Memory(), memory);
            QCOMPARE(b.printer->Memory().GrandCounters(), counters);
            QCOMPARE(b.pw->panFiscalMemory->lblZCount->text(), zCount);
            return;
        }
        // The content of the old file and the lock of the new one are the simulator suite's.
        QVERIFY2(b.boxes.last().contains(QDir(sim::FiscalMemoryFolder()).filePath(old[0])),
                 qPrintable(b.boxes.last()));
        QCOMPARE(b.printer->Memory().GrandCounters(), sim::Counters{});
        QCOMPARE(b.pw->panFiscalMemory->lblZCount->text(), QStringLiteral("0"));
        QCOMPARE(b.pw->panFiscalMemory->lblDocuments->text(), QStringLiteral("0"));
        QVERIFY2(b.pw->panFiscalMemory->lblReceiptNumber->text().startsWith(QStringLiteral("1 of day 1")),
                 qPrintable(b.pw->panFiscalMemory->lblReceiptNumber->text()));
    }

    // The button stands only over a memory in a file; otherwise its tooltip says why.
    void offeredOnlyForAFile_data() {
        QTest::addColumn<int>("setup");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<QString>("tip");
        Row("the bench's file", 0, true, "asked first");
        Row("a memory in the process", 1, false, "not in a file");
        Row("the file held by another bench", 2, false, "not in a file");
    }
    void offeredOnlyForAFile() {
        QFETCH(int, setup);
        sim::FiscalMemoryOpening holder;
        if (setup == 2)
            holder = sim::OpenFiscalMemoryFile(sim::FiscalMemoryPath(kModel), *sim::FindModel(kModel));
        Bench bench(setup != 1);
        QCOMPARE(bench.boxes.size(), setup == 2 ? 1 : 0); // the second bench is told at Open
        QTEST(bench.pw->cmdNewFiscalMemory->isEnabled(), "enabled");
        QFETCH(QString, tip);
        QVERIFY2(bench.pw->cmdNewFiscalMemory->toolTip().contains(tip),
                 qPrintable(bench.pw->cmdNewFiscalMemory->toolTip()));
    }
};

QTEST_MAIN(tst_PrinterWindow)
#include "tst_printer_window.moc"
