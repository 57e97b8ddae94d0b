#include "BenchLogLines.h"
#include "ScriptedPrinter.h"
#include "Seams.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"

#include <QFile>
#include <QItemSelectionModel>
#include <QLocale>
#include <QSignalSpy>
#include <QStringListModel>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

Q_DECLARE_METATYPE(clsMacroEngine::LoadError)

namespace {
// Calls as "Name(arg|arg)", a DirectIO block as "{1,2,...}", so that calls compare as text.
QStringList Describe(const QList<ScriptedPrinter::Call>& calls) {
    QStringList out;
    for (const auto& call : calls) {
        QStringList args;
        for (const QVariant& a : call.args)
            args.append(a.toString());
        out.append(call.name + '(' + args.join('|') + ')');
    }
    return out;
}

struct Bench {
    ScriptedPrinter printer;
    clsBenchLog log;
    clsFprtWrapper wrapper{printer, log};
    clsMacroEngine engine{wrapper};
    int32_t Play(QString line) {
        engine.Construct();
        engine.AddCommand(line);
        engine.StartSavedMacro();
        printer.calls.clear();
        return engine.PlayLineMacro();
    }
    int32_t Add(QString line) { return engine.AddCommand(line); }
    int32_t SetLine(int16_t line) { return engine.SetLineMacro(line); }
    void Record(const QStringList& lines) {
        for (const QString& l : lines)
            Add(l);
    }
    int SelectedRow() const {
        const QModelIndexList rows = engine.lstMacroCodeSelection()->selectedIndexes();
        return rows.isEmpty() ? -1 : rows.first().row();
    }
};
} // namespace

class tst_MacroEngine : public QObject {
    Q_OBJECT
    QStringList m_messages;
    QTemporaryDir m_dir;
    QString Path(const QString& name) const { return m_dir.filePath(name); }
    bool Write(const QString& name, const QByteArray& bytes) {
        QFile f(Path(name));
        return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
    }

private slots:
    void initTestCase() {
        QMetaType::registerConverter<DirectIOData, QString>([](const DirectIOData& data) {
            QStringList items;
            for (int32_t v : data)
                items.append(QString::number(v));
            return '{' + items.join(',') + '}';
        });
        SetMessageBoxHandler([this](const QString& text, MsgButtons, const QString&) {
            m_messages.append(text);
            return MsgResult::Ok;
        });
        SetDebugOutputHandler([](const QString&) {});
    }
    void init() {
        m_messages.clear();
        QLocale::setDefault(QLocale::c());
    }

    void roundTripThroughFile() {
        Bench b;
        auto& w = b.wrapper;
        w.WOpen(QStringLiteral("Tessorim"));
        w.SetDeviceEnabled(true);
        w.SetFiscalReceiptType(4);
        w.SetAdditionalHeader(QString());
        w.SetHeaderLine(1, QStringLiteral("NEGOZIO"), true);
        w.BeginFiscalReceipt(true);
        w.PrintRecItem(QStringLiteral("Pane \x1b|2C"), 25000, 2000, 1, 12500, QStringLiteral("Kg"));
        w.PrintRecSubtotalAdjustVoid(2, -1500);
        w.PrintRecTotal(45000, 50000, QStringLiteral("0"));
        int32_t cmd = 9003, rate = 0;
        DirectIOData data{1, 500, -1, -1, 0, 0, 0, 0, 0, 0, 7};
        QString text = QStringLiteral("abc");
        w.DirectIO(cmd, data, text);
        w.GetVatEntry(1, 0, rate);
        QString got;
        w.GetData(1, 0, got);
        w.ClaimDevice(2000);
        w.CheckHealth(1);
        w.ClearError();
        w.ClearOutput();
        w.BeginNonFiscal();
        w.PrintNormal(2, QStringLiteral("riga"));
        w.EndNonFiscal();
        w.BeginTraining();
        w.EndTraining();
        w.PrintDuplicateReceipt();
        w.PrintPeriodicTotalsReport(QStringLiteral("01012026"), QStringLiteral("31012026"));
        w.PrintRecItemAdjustment(1, QStringLiteral("Sconto"), 5000, 1);
        w.PrintRecItemAdjustmentVoid(3, QStringLiteral("Sconto"), 100000, 2);
        w.PrintRecItemVoid(QStringLiteral("Pane"), 25000, 2000, 1, 12500, QStringLiteral("Kg"));
        w.PrintRecMessage(QStringLiteral("Grazie"));
        w.PrintRecNotPaid(QStringLiteral("Non pagato"), 10000);
        w.PrintRecRefund(QStringLiteral("Reso"), 20000, 2);
        w.PrintRecRefundVoid(QStringLiteral("Reso"), 20000, 10002);
        w.PrintRecSubtotal(45000);
        w.PrintRecSubtotalAdjustment(4, QStringLiteral("Magg"), 1000);
        w.PrintRecVoid(QStringLiteral("Annullo"));
        w.EndFiscalReceipt(false);
        w.PrintReport(1, QStringLiteral("1"), QStringLiteral("3"));
        w.PrintXReport();
        w.PrintZReport();
        w.ResetPrinter();
        w.SetDate(QStringLiteral("010120261200"));
        w.SetPOSID(QStringLiteral("1"), QStringLiteral("2"));
        w.SetTrailerLine(2, QStringLiteral("Ciao"), false);
        w.SetVatValue(1, QStringLiteral("22"));
        w.SetVatTable();
        for (const PropertyInfo& p : Properties) // every property write, one value of its kind each
            if (p.writable)
                w.WriteProperty(p.id, IsBenchText(p.kind)      ? QVariant(QStringLiteral("7"))
                                      : IsBenchBoolean(p.kind) ? QVariant(true)
                                                               : QVariant(3));
        w.ReleaseDevice();
        w.WClose();
        const QStringList byHand = Describe(b.printer.calls);
        QCOMPARE(b.engine.SaveToFile(Path("roundtrip.oposcmd")), 0);
        b.engine.Construct();
        QCOMPARE(b.engine.LoadFromFile(Path("roundtrip.oposcmd")), 0);
        b.printer.calls.clear();
        b.engine.StartSavedMacro();
        while (b.engine.IsRunningMacro())
            QCOMPARE(b.engine.PlayLineMacro(), 0);
        QCOMPARE(Describe(b.printer.calls), byHand);
        QVERIFY(m_messages.isEmpty());
        QCOMPARE(b.engine.LineCount(), byHand.size()); // the replay was not recorded a second time
    }

    void replayLine_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("calls");
        QTest::addColumn<int>("result");
        QTest::addColumn<QStringList>("messages");
        const auto row = [](const char* name, const QString& line, const QStringList& calls, int result = 0,
                            const QStringList& messages = {}) {
            QTest::newRow(name) << line << calls << result << messages;
        };
        row("begin without header", "F_BeginFiscalReceipt$0", {"BeginFiscalReceipt(false)"});
        row("begin with header 2", "F_BeginFiscalReceipt$2", {"BeginFiscalReceipt(true)"});
        row("dollar in description", "F_PrintRecItem$Pane$caldo$1.00$0$1$0.00$pz",
            {"PrintRecItem(Pane|0|1|0|10000|0.00)"}, 0, {"Bad Format for caldo...returning 0"});
        row("vat table with dollar", "F_SetVatTable$", {"SetVatTable()"});
        row("vat table without dollar", "F_SetVatTable", {"SetVatTable()"});
        row("too few fields", "F_DirectIO$1001", {"DirectIO(1001|{0,0,0,0,0,0,0,0,0,0,0}|)"});
        row("too many fields", "F_DirectIO$1000$1$2$3$4$5$6$7$8$9$10$11$t" + QString("$x").repeated(200),
            {"DirectIO(1000|{1,2,3,4,5,6,7,8,9,10,11}|t)"});
        row("no amount", "F_PrintRecSubtotal", {"PrintRecSubtotal(0)"}, 0, {"Bad Format for ...returning 0"});
        row("open first model", "F_Open$ZorvaneFPU", {}, 111);
        row("open case differs", "F_Open$tessorim", {}, 111);
        row("get date", "F_GetDate", {});
        row("get totalizer", "F_GetTotalizer$1$2", {});
        row("junk behind number", "F_ClaimDevice$12abc", {"ClaimDevice(12)"});
        row("junk before number", "F_ClaimDevice$abc12", {"ClaimDevice(0)"});
        row("number beyond 32 bits", "F_ClaimDevice$99999999999", {}, 111);
        row("async True", "P_AsyncMode$True", {"SetAsyncMode(true)"});
        row("async False", "P_AsyncMode$False", {"SetAsyncMode(false)"});
        row("async -1", "P_AsyncMode$-1", {"SetAsyncMode(true)"});
        row("async 0", "P_AsyncMode$0", {"SetAsyncMode(false)"});
        row("flag neither word nor number", "P_AsyncMode$yes", {}, 111);
        row("flag word in other case", "P_DeviceEnabled$true", {}, 111);
        row("number property beyond 32 bits", "P_DateType$4294967296", {}, 111);
        row("contractor id with junk", "P_ContractorId$12abc", {}, 111);
        row("change due", "P_ChangeDue$1.50", {"SetChangeDue(1.5)"});
        row("unknown word", "F_Bogus$1", {}, 0, {"Unknown command F_Bogus$1"});
        row("empty line", "", {}, 0, {"Unknown command "});
        row("blank before word", " F_Close", {}, 0, {"Unknown command  F_Close"});
        row("read-only property", "P_State$1", {}, 0, {"Unknown command P_State$1"});
    }
    void replayLine() {
        QFETCH(QString, line);
        QFETCH(QStringList, calls);
        QFETCH(int, result);
        QFETCH(QStringList, messages);
        QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy)); // lines don't follow the locale
        Bench b;
        QCOMPARE(b.Play(line), result);
        QCOMPARE(Describe(b.printer.calls), calls);
        QCOMPARE(m_messages, messages);
    }

    void storeLimitAndTokens() {
        Bench b;
        QString cmd = QStringLiteral("F_PrintRecMessage$a\r\nb\x1b|2C");
        QCOMPARE(b.engine.AddCommand(cmd), 0);
        QCOMPARE(cmd, QStringLiteral("F_PrintRecMessage$a[CR][LF]b\x1b|2C"));
        QCOMPARE(b.engine.lstMacroCode()->stringList(), QStringList{cmd});
        QCOMPARE(b.engine.Line(0), cmd);
        for (int32_t i = 1; i < clsMacroEngine::StoreSize; ++i)
            QCOMPARE(b.Add("F_CheckHealth$" + QString::number(i)), 0);
        QCOMPARE(b.Add("F_Close"), 1);
        QCOMPARE(b.engine.LineCount(), 10001);
        QCOMPARE(b.engine.Line(10000), QStringLiteral("F_CheckHealth$10000"));
        QCOMPARE(b.engine.lstMacroCode()->rowCount(), 10001);
        QByteArray big;
        for (int i = 0; i < 10002; ++i)
            big += "L" + QByteArray::number(i) + "\r\n";
        QVERIFY(Write("big.oposcmd", big));
        QCOMPARE(b.engine.LoadFromFile(Path("big.oposcmd")), 111);
        QCOMPARE(b.engine.LastLoadError(), clsMacroEngine::LoadError::TooManyLines);
        QCOMPARE(b.engine.LineCount(), 10001);
        QCOMPARE(b.engine.Line(10000), QStringLiteral("L10000"));
        QCOMPARE(b.engine.lstMacroCode()->rowCount(), 10001);
    }

    void cursorStatesAndTransitions() {
        Bench b;
        b.Record({"P_DeviceEnabled$True", "F_PrintXReport", "F_PrintZReport"});
        QCOMPARE(b.SelectedRow(), -1);
        QCOMPARE(b.engine.PlayLineMacro(), 111);
        b.engine.StartSavedMacro();
        QCOMPARE(b.engine.LineCursor(), int16_t(0));
        QCOMPARE(b.SelectedRow(), 0);
        QCOMPARE(b.Add("F_Close"), 1);
        QCOMPARE(b.SetLine(2), 0);
        QCOMPARE(b.engine.LineCursor(), int16_t(2));
        QCOMPARE(b.SelectedRow(), 0); // the selection isn't touched
        b.printer.Script("PrintZReport", 114, 203, "Paper out");
        QCOMPARE(b.engine.PlayLineMacro(), 114); // the last line gives its own result, logged as by hand
        QVERIFY(LinesOf(b.log).contains(
            QStringLiteral("PrintZReport()     -> OposEExtended(114)  OposEfptrRecEmpty(203)  Paper out")));
        QVERIFY(!b.engine.IsRunningMacro());
        QCOMPARE(b.SelectedRow(), -1);
        QCOMPARE(b.engine.PlayLineMacro(), 111);
        b.wrapper.PrintXReport(); // recording again, behind the macro
        QCOMPARE(b.engine.LineCount(), 4);
        b.engine.StartSavedMacro();
        b.printer.Script("SetDeviceEnabled", 103);
        QCOMPARE(b.engine.PlayLineMacro(), 0); // a write gives 0 whatever the control says
        QCOMPARE(b.engine.LineCursor(), int16_t(1));
        QCOMPARE(b.SelectedRow(), 1);
        b.SetLine(-1);
        QVERIFY(!b.engine.IsRunningMacro());
        // Beyond lineCount the stale slot isn't played: the replay ends.
        QCOMPARE(b.engine.Construct(), 0);
        b.engine.StartSavedMacro();
        QVERIFY(b.engine.IsRunningMacro());
        b.printer.calls.clear();
        QCOMPARE(b.engine.PlayLineMacro(), 111);
        QVERIFY(b.printer.calls.isEmpty());
        QVERIFY(!b.engine.IsRunningMacro());
    }

    // A replay moves the list's selection line by line only while a view on screen follows the
    // list; otherwise the move is made when someone asks for the selection or a view shows again.
    void selectionMovesOnlyWhileFollowed_data() {
        QTest::addColumn<bool>("followed");
        QTest::newRow("a view on screen") << true;
        QTest::newRow("no view") << false;
    }
    void selectionMovesOnlyWhileFollowed() {
        QFETCH(bool, followed);
        Bench b;
        b.Record({"F_PrintXReport", "F_PrintXReport", "F_PrintXReport"});
        b.engine.SetListFollowed(followed);
        b.engine.StartSavedMacro();
        QItemSelectionModel* selection = b.engine.lstMacroCodeSelection();
        QCOMPARE(selection->currentIndex().row(), 0);
        QSignalSpy moves(selection, &QItemSelectionModel::currentChanged);
        b.engine.PlayLineMacro();
        b.engine.PlayLineMacro();
        QCOMPARE(moves.size(), followed ? 2 : 0);
        QCOMPARE(b.SelectedRow(), 2);
        QCOMPARE(moves.size(), followed ? 2 : 1);
        b.engine.PlayLineMacro();
        QVERIFY(!b.engine.IsRunningMacro());
        b.engine.SetListFollowed(true);
        QVERIFY(!selection->currentIndex().isValid());
        QVERIFY(selection->selectedIndexes().isEmpty());
    }

    void loadFromFile_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("crlf") << QByteArray("a\r\nb\r\nc\r\n") << QStringList{"a", "b", "c"};
        QTest::newRow("no final line end") << QByteArray("a\r\nb") << QStringList{"a", "b"};
        QTest::newRow("empty last line") << QByteArray("a\r\n\r\n") << QStringList{"a", ""};
        QTest::newRow("lone cr and lf") << QByteArray("a\r\rb\nc") << QStringList{"a", "", "b", "c"};
        QTest::newRow("empty file") << QByteArray() << QStringList{};
        QTest::newRow("bom") << QByteArray("\xEF\xBB\xBF") + "F_Close\r\n" << QStringList{"F_Close"};
        QTest::newRow("not utf-8") << QByteArray("F_PrintRecMessage$caff\xe8\r\nF_Close\r\n")
                                   << QStringList{QStringLiteral("F_PrintRecMessage$caff\u00e8"), "F_Close"};
    }
    void loadFromFile() {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, lines);
        Bench b;
        b.Record({"F_Close", "F_Close", "F_Close", "F_Close", "F_Close"});
        QVERIFY(Write("load.oposcmd", bytes));
        QCOMPARE(b.engine.LoadFromFile(Path("load.oposcmd")), 0);
        QCOMPARE(b.engine.Lines(), lines);
        QCOMPARE(b.engine.lstMacroCode()->stringList(), lines);
        QCOMPARE(b.SelectedRow(), lines.isEmpty() ? -1 : 0);
        QVERIFY(!b.engine.IsRunningMacro());
    }

    void saveAndFileFailures() {
        Bench b;
        const QStringList macro{"F_PrintRecMessage$caff\u00e8", "", "F_PrintRecMessage$\x1b|2C"};
        b.Record(macro);
        b.engine.StartSavedMacro();
        b.engine.PlayLineMacro();
        QCOMPARE(b.engine.SaveToFile(Path("m.oposcmd")), 0);
        QCOMPARE(b.engine.LineCursor(), int16_t(1)); // a save leaves the cursor
        QFile saved(Path("m.oposcmd"));
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(saved.readAll(),
                 QByteArray("F_PrintRecMessage$caff\xc3\xa8\r\n\r\nF_PrintRecMessage$\x1b|2C\r\n"));
        QCOMPARE(b.engine.SaveToFile(QString()), 111);
        QCOMPARE(b.engine.SaveToFile(Path("no-such-folder/m.oposcmd")), 111);
        QCOMPARE(b.engine.LoadFromFile(QString()), 111);
        QCOMPARE(b.engine.LineCount(), 0);
        QCOMPARE(b.engine.LastLoadError(), clsMacroEngine::LoadError::NoFileName);
    }

    // A file that can't be read, or is larger than 16 MB, loads nothing: the macro stays as it was.
    void loadRefusals_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("result");
        QTest::addColumn<clsMacroEngine::LoadError>("error");
        QTest::addColumn<QStringList>("lines");
        const QStringList kept{"F_Close", "F_PrintXReport"};
        const qsizetype limit = 16 * 1024 * 1024;
        QVERIFY(Write("limit.oposcmd", QByteArray(limit, 'x')));
        QVERIFY(Write("over.oposcmd", QByteArray(limit - 2, 'x') + "\r\nF"));
        using E = clsMacroEngine::LoadError;
        QTest::newRow("missing") << Path("does-not-exist.oposcmd") << 111 << E::Unreadable << kept;
        QTest::newRow("a folder") << m_dir.path() << 111 << E::Unreadable << kept;
        QTest::newRow("one byte over 16 MB") << Path("over.oposcmd") << 111 << E::TooLarge << kept;
        QTest::newRow("a device with no end") << "/dev/zero" << 111 << E::TooLarge << kept;
        QTest::newRow("16 MB exactly")
            << Path("limit.oposcmd") << 0 << E::None << QStringList{QString(limit, u'x')};
    }
    void loadRefusals() {
        QFETCH(QString, path);
        QFETCH(QStringList, lines);
        Bench b;
        b.Record({"F_Close", "F_PrintXReport"});
        QTEST(int(b.engine.LoadFromFile(path)), "result");
        QTEST(b.engine.LastLoadError(), "error");
        QCOMPARE(b.engine.Lines(), lines);
        QCOMPARE(b.engine.lstMacroCode()->rowCount(), lines.size());
    }

    // A wait of 0 or less runs nothing; a wait runs the event loop and ends; a Stop ends a huge one.
    void delayRunsTheEventLoop() {
        Bench b;
        b.Record({"F_Delay$0", "F_Delay$-500", "F_Delay$50", "F_Delay$99999999999999", "F_Close"});
        b.engine.StartSavedMacro();
        int seenCursor = -9;
        QTimer::singleShot(0, this, [&] {
            seenCursor = b.engine.tmrDelayForMacroCls()->isActive() ? b.engine.LineCursor() : -2;
        });
        QCOMPARE(b.engine.PlayLineMacro(), 0);
        QCOMPARE(b.engine.PlayLineMacro(), 0);
        QCOMPARE(seenCursor, -9);
        QCOMPARE(b.engine.PlayLineMacro(), 0);
        QCOMPARE(seenCursor, 2);
        QCOMPARE(b.engine.LineCursor(), int16_t(3));
        int interval = -1;
        QTimer::singleShot(1, this, [&] {
            interval = b.engine.tmrDelayForMacroCls()->interval();
            b.engine.StopMacro();
        });
        QCOMPARE(b.engine.PlayLineMacro(), 0);
        QVERIFY(interval > 0 && interval <= 3600000);
        QCOMPARE(b.engine.LineCursor(), int16_t(-1));
        QVERIFY(b.printer.calls.isEmpty());

        // A wait put in its place gets the waits that would run, bounded, and the timer stays off.
        QList<int> waits;
        b.engine.SetDelayWait([&](int ms) {
            waits.append(ms);
            QVERIFY(!b.engine.tmrDelayForMacroCls()->isActive());
        });
        b.engine.StartSavedMacro();
        while (b.engine.IsRunningMacro())
            b.engine.PlayLineMacro();
        QCOMPARE(waits.size(), 2);
        QCOMPARE(waits.first(), 50);
        QVERIFY(waits.last() > 0 && waits.last() <= 3600000);
    }
};

QTEST_GUILESS_MAIN(tst_MacroEngine)
#include "tst_macroengine.moc"
