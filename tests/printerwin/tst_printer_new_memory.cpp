// The printer window's new fiscal memory: asked through the message box, refused while the printer
// is busy, offered only for a memory kept in a file. The files live under the test's own
// XDG_DATA_HOME.
#include "FiscalMemoryFile.h"
#include "MDITestFPOPOS.h"
#include "PaperView.h"
#include "PrinterBench.h"
#include "PrinterPanels.h"
#include "ScriptedPrinter.h"
#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "SqliteFiscalMemory.h"
#include "clsBenchCore.h"
#include "frmPrinter.h"

#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

using Steps = std::function<void(SimulatedFiscalPrinter&)>;
Q_DECLARE_METATYPE(Steps)
Q_DECLARE_METATYPE(MsgResult)

namespace {

const QString kModel = QStringLiteral("ZorvaneFPU");

// The main window over a simulated printer whose memory is the bench's own file (or one in the
// process), with the printer window open, then the device opened, claimed and enabled. Message boxes are
// answered with `answer` and recorded.
struct Bench {
    QStringList boxes;
    QList<MsgButtons> buttons;
    MsgResult answer = MsgResult::Ok;
    SimulatedFiscalPrinter* printer = nullptr;
    std::unique_ptr<MDITestFPOPOS> window;
    frmPrinter* pw = nullptr;

    explicit Bench(bool inFile) {
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
        // The window first: the file comes with the device's Open, and the button with it.
        window->ShowPrinterWindow();
        pw = window->PrinterWindow();
        window->Core().OpenClaimEnable(kModel);
        Settle();
    }
    ~Bench() {
        window.reset();
        SetMessageBoxHandler({});
    }
    static void Settle() { QTest::qWait(PaperView::kFrameMs + 60); }
};

QStringList OldFiles() {
    return QDir(sim::FiscalMemoryFolder()).entryList({kModel + QStringLiteral(".sqlite.old-*")});
}

void Sale(SimulatedFiscalPrinter& p) {
    QCOMPARE(pw::Sale(p, {QStringLiteral("Pane"), QStringLiteral("Latte")}), 0);
}

} // namespace

class tst_PrinterNewMemory : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QCoreApplication::setOrganizationName(QStringLiteral("fpubench-tests"));
        QCoreApplication::setApplicationName(QStringLiteral("tst_printer_new_memory"));
    }
    void init() { QDir(sim::FiscalMemoryFolder()).removeRecursively(); }

    void newFiscalMemory_data() {
        QTest::addColumn<Steps>("steps");
        QTest::addColumn<MsgResult>("answer");
        QTest::addColumn<bool>("asked");
        QTest::addColumn<bool>("moved");
        QTest::addColumn<QString>("told");
        const Steps aDay = [](SimulatedFiscalPrinter& p) {
            Sale(p);
            QCOMPARE(p.PrintZReport(), 0);
            Sale(p);
        };
        QTest::newRow("answered No") << aDay << MsgResult::No << true << false << QString();
        QTest::newRow("answered Yes")
            << aDay << MsgResult::Yes << true << true << QStringLiteral("moved aside");
        QTest::newRow("receipt open") << Steps([](SimulatedFiscalPrinter& p) {
            Sale(p);
            bool header = true;
            QCOMPARE(p.BeginFiscalReceipt(header), 0);
        }) << MsgResult::Yes << false << false
                                      << QStringLiteral("document open");
        QTest::newRow("non-fiscal open")
            << Steps([](SimulatedFiscalPrinter& p) { QCOMPARE(p.BeginNonFiscal(), 0); }) << MsgResult::Yes
            << false << false << QStringLiteral("document open");
        QTest::newRow("output queued") << Steps([](SimulatedFiscalPrinter& p) {
            p.SetPrintTimePerLineMs(5000);
            p.SetAsyncMode(true);
            QCOMPARE(pw::NonFiscal(p, {QStringLiteral("slow")}), 0);
            QCOMPARE(p.PrinterState(), OposAll::FPTR_PS_MONITOR);
        }) << MsgResult::Yes << false << false
                                       << QStringLiteral("output queued");
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
        Bench::Settle();
        const sim::IFiscalMemory* memory = &b.printer->Memory();
        const sim::Counters counters = memory->GrandCounters();
        const QString zCount = b.pw->panFiscalMemory->lblZCount->text();
        QVERIFY(b.pw->cmdNewFiscalMemory->isEnabled());

        b.pw->cmdNewFiscalMemory->click();
        Bench::Settle();

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
        QVERIFY(file);
        QCOMPARE(file->FilePath(), path);
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
        QTest::newRow("the bench's file") << 0 << true << QStringLiteral("asked first");
        QTest::newRow("a memory in the process") << 1 << false << QStringLiteral("not in a file");
        QTest::newRow("the file held by another bench") << 2 << false << QStringLiteral("not in a file");
        QTest::newRow("a device that is not the simulator")
            << 3 << false << QStringLiteral("not the simulated printer");
    }
    void offeredOnlyForAFile() {
        QFETCH(int, setup);
        QFETCH(bool, enabled);
        QFETCH(QString, tip);
        QPushButton* button = nullptr;
        std::unique_ptr<Bench> bench;
        std::unique_ptr<MDITestFPOPOS> other;
        sim::FiscalMemoryOpening holder;
        if (setup == 3) {
            other = std::make_unique<MDITestFPOPOS>(std::make_unique<ScriptedPrinter>());
            SetMessageBoxHandler([](const QString&, MsgButtons, const QString&) { return MsgResult::Ok; });
            other->ShowPrinterWindow();
            button = other->PrinterWindow()->cmdNewFiscalMemory;
        } else {
            if (setup == 2)
                holder = sim::OpenFiscalMemoryFile(sim::FiscalMemoryPath(kModel), *sim::FindModel(kModel));
            bench = std::make_unique<Bench>(setup != 1);
            QCOMPARE(bench->boxes.size(), setup == 2 ? 1 : 0); // the second bench is told at Open
            button = bench->pw->cmdNewFiscalMemory;
        }
        QCOMPARE(button->isEnabled(), enabled);
        QVERIFY2(button->toolTip().contains(tip), qPrintable(button->toolTip()));
        if (other) {
            other.reset();
            SetMessageBoxHandler({});
        }
    }
};

QTEST_MAIN(tst_PrinterNewMemory)
#include "tst_printer_new_memory.moc"
