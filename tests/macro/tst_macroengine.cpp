#include "ScriptedPrinter.h"
#include "Seams.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"

#include <QFile>
#include <QItemSelectionModel>
#include <QLocale>
#include <QStringListModel>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <memory>

namespace {

// One call as "Name(arg|arg|...)", with a DirectIO block spelled out, so that calls made by hand
// and calls made by a replay can be compared as text.
QString Describe(const ScriptedPrinter::Call& call) {
    QStringList args;
    for (const QVariant& a : call.args) {
        if (a.metaType() == QMetaType::fromType<DirectIOData>()) {
            QStringList items;
            for (int32_t v : a.value<DirectIOData>())
                items.append(QString::number(v));
            args.append(QLatin1Char('{') + items.join(QLatin1Char(',')) + QLatin1Char('}'));
        } else {
            args.append(a.toString());
        }
    }
    return call.name + QLatin1Char('(') + args.join(QLatin1Char('|')) + QLatin1Char(')');
}

QStringList Describe(const QList<ScriptedPrinter::Call>& calls) {
    QStringList out;
    for (const auto& c : calls)
        out.append(Describe(c));
    return out;
}

struct Bench {
    ScriptedPrinter printer;
    clsFprtWrapper wrapper{printer};
    clsMacroEngine engine{wrapper};

    int32_t Play(const QString& line) {
        engine.Construct();
        QString l = line;
        engine.AddCommand(l);
        engine.StartSavedMacro();
        printer.calls.clear();
        return engine.PlayLineMacro();
    }
    void Record(const QStringList& lines) {
        for (QString l : lines)
            engine.AddCommand(l);
    }
    int SelectedRow() const {
        const QModelIndexList rows = engine.lstMacroCodeSelection()->selectedIndexes();
        return rows.isEmpty() ? -1 : rows.first().row();
    }
};

QByteArray ReadAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<unreadable>");
}

bool WriteAll(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

} // namespace

class tst_MacroEngine : public QObject {
    Q_OBJECT

    QStringList m_messages;
    QTemporaryDir m_dir;

    QString Path(const QString& name) const { return m_dir.filePath(name); }

private slots:
    void init() {
        m_messages.clear();
        SetMessageBoxHandler([this](const QString& text, MsgButtons, const QString&) {
            m_messages.append(text);
            return MsgResult::Ok;
        });
        SetDebugOutputHandler([](const QString&) {});
        ClearDefaultLog();
        QLocale::setDefault(QLocale::c());
    }
    void cleanup() {
        SetMessageBoxHandler({});
        SetDebugOutputHandler({});
        QLocale::setDefault(QLocale::c());
    }

    // Calls made by hand, saved, loaded and replayed reach the control again with the same
    // arguments.
    void roundTripThroughFile() {
        Bench b;
        b.wrapper.WOpen(QStringLiteral("Tessorim"));
        b.wrapper.SetFreezeEvents(false);
        b.wrapper.ClaimDevice(2000);
        b.wrapper.SetDeviceEnabled(true);
        b.wrapper.SetAsyncMode(true);
        b.wrapper.SetFiscalReceiptType(4);
        b.wrapper.SetAdditionalHeader(QString());
        b.wrapper.SetHeaderLine(1, QStringLiteral("NEGOZIO"), true);
        b.wrapper.SetTrailerLine(2, QStringLiteral("Grazie"), false);
        b.wrapper.BeginFiscalReceipt(true);
        b.wrapper.PrintRecItem(QStringLiteral("Articolo test 1"), 10000, 0, 0, 0, QStringLiteral("Kg"));
        b.wrapper.PrintRecItem(QStringLiteral("Pane \x1b|2C"), 25000, 2000, 1, 12500, QString());
        b.wrapper.PrintRecItemAdjustment(1, QStringLiteral("Sconto"), 5000, 1);
        b.wrapper.PrintRecSubtotalAdjustVoid(2, -1500);
        b.wrapper.PrintRecRefund(QStringLiteral("Reso"), 3000, 2);
        b.wrapper.PrintRecSubtotal(0);
        b.wrapper.PrintRecTotal(45000, 50000, QStringLiteral("0"));
        b.wrapper.EndFiscalReceipt(false);
        int32_t cmd = 9003;
        DirectIOData data{1, 500, -1, -1, 0, 0, 0, 0, 0, 0, 7};
        QString text = QStringLiteral("abc");
        b.wrapper.DirectIO(cmd, data, text);
        int32_t rate = 0;
        b.wrapper.GetVatEntry(1, 0, rate);
        QString out;
        b.wrapper.GetData(6, 0, out);
        b.wrapper.PrintNormal(2, QStringLiteral("riga"));
        b.wrapper.SetVatValue(1, QStringLiteral("22.00"));
        b.wrapper.SetVatTable();
        b.wrapper.SetPOSID(QStringLiteral("1"), QStringLiteral("2"));
        b.wrapper.PrintReport(1, QStringLiteral("1"), QStringLiteral("3"));
        b.wrapper.SetDate(QStringLiteral("010120251200"));
        b.wrapper.WClose();
        const QStringList byHand = Describe(b.printer.calls);
        QCOMPARE(b.engine.LineCount(), 28);
        QCOMPARE(b.engine.Line(10), QStringLiteral("F_PrintRecItem$Articolo test 1$1.00$0$0$0.00$Kg"));
        QCOMPARE(b.engine.Line(23), QStringLiteral("F_SetVatTable$"));

        QVERIFY(b.engine.SaveToFile(Path("roundtrip.oposcmd")) == 0);
        b.engine.Construct();
        QCOMPARE(b.engine.LoadFromFile(Path("roundtrip.oposcmd")), 0);
        b.printer.calls.clear();
        b.engine.StartSavedMacro();
        int played = 0;
        while (b.engine.IsRunningMacro()) {
            QCOMPARE(b.engine.PlayLineMacro(), 0);
            ++played;
        }
        QCOMPARE(played, 28);
        QCOMPARE(Describe(b.printer.calls), byHand);
        QVERIFY(m_messages.isEmpty());
        // The replay was not recorded a second time.
        QCOMPARE(b.engine.LineCount(), 28);
    }

    void replayLine_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("calls");
        QTest::addColumn<int>("result");
        QTest::addColumn<int>("messages");

        const auto row = [](const char* name, const QString& line, const QStringList& calls, int result = 0,
                            int messages = 0) { QTest::newRow(name) << line << calls << result << messages; };
        row("sale with default fields", "F_PrintRecItem$Articolo test 1$1.00$0$0$0.00$Kg",
            {"PrintRecItem(Articolo test 1|10000|0|0|0|Kg)"});
        row("begin with header -1", "F_BeginFiscalReceipt$-1", {"BeginFiscalReceipt(true)"});
        row("begin without header", "F_BeginFiscalReceipt$0", {"BeginFiscalReceipt(false)"});
        row("begin with header 2", "F_BeginFiscalReceipt$2", {"BeginFiscalReceipt(true)"});
        row("end fiscal receipt", "F_EndFiscalReceipt$-1", {"EndFiscalReceipt(true)"});
        row("dollar in description", "F_PrintRecItem$Pane$caldo$1.00$0$1$0.00$pz",
            {"PrintRecItem(Pane|0|1|0|10000|0.00)"}, 0, 1);
        row("vat table with dollar", "F_SetVatTable$", {"SetVatTable()"});
        row("vat table without dollar", "F_SetVatTable", {"SetVatTable()"});
        row("trailer line", "F_SetTrailerLine$2$Grazie$-1", {"SetTrailerLine(2|Grazie|true)"});
        row("header line", "F_SetHeaderLine$1$Negozio$0", {"SetHeaderLine(1|Negozio|false)"});
        row("directio", "F_DirectIO$9003$1$500$-1$-1$0$0$0$0$0$0$0$",
            {"DirectIO(9003|{1,500,-1,-1,0,0,0,0,0,0,0}|)"});
        row("directio text cut at dollar", "F_DirectIO$1302$1$0$0$0$0$0$0$0$0$0$0$Ciao$mondo",
            {"DirectIO(1302|{1,0,0,0,0,0,0,0,0,0,0}|Ciao)"});
        row("directio too few fields", "F_DirectIO$1001", {"DirectIO(1001|{0,0,0,0,0,0,0,0,0,0,0}|)"});
        row("open second model", "F_Open$Tessorim", {"Open(Tessorim)"});
        row("open first model", "F_Open$ZorvaneFPU", {}, 111);
        row("open case differs", "F_Open$tessorim", {}, 111);
        row("close", "F_Close", {"Close()"});
        row("get date", "F_GetDate", {});
        row("get totalizer", "F_GetTotalizer$1$2", {});
        row("get data", "F_GetData$6$0", {"GetData(6|0|)"});
        row("get vat entry", "F_GetVatEntry$1$0", {"GetVatEntry(1|0|0)"});
        row("claim", "F_ClaimDevice$2000", {"ClaimDevice(2000)"});
        row("junk behind number", "F_ClaimDevice$12abc", {"ClaimDevice(12)"});
        row("junk before number", "F_ClaimDevice$abc12", {"ClaimDevice(0)"});
        row("hexadecimal", "F_ClaimDevice$&H30", {"ClaimDevice(48)"});
        row("tie to even down", "F_ClaimDevice$2.5", {"ClaimDevice(2)"});
        row("tie to even up", "F_ClaimDevice$3.5", {"ClaimDevice(4)"});
        row("number beyond 32 bits", "F_ClaimDevice$99999999999", {}, 111);
        row("missing number", "F_CheckHealth", {"CheckHealth(0)"});
        row("missing amount", "F_PrintRecSubtotal", {"PrintRecSubtotal(0)"}, 0, 1);
        row("bad amount", "F_PrintRecTotal$abc$2.00$0", {"PrintRecTotal(0|20000|0)"}, 0, 1);
        row("negative amount", "F_PrintRecSubtotalAdjustVoid$2$-1.50",
            {"PrintRecSubtotalAdjustVoid(2|-15000)"});
        row("normal", "F_PrintNormal$2$testo", {"PrintNormal(2|testo)"});
        row("set date", "F_SetDate$010120251200", {"SetDate(010120251200)"});
        row("vat value", "F_SetVatValue$1$22.00", {"SetVatValue(1|22.00)"});
        row("delay", "F_Delay$0", {});
        row("async true", "P_AsyncMode$True", {"SetAsyncMode(true)"});
        row("async false", "P_AsyncMode$False", {"SetAsyncMode(false)"});
        row("async -1", "P_AsyncMode$-1", {"SetAsyncMode(true)"});
        row("async 0", "P_AsyncMode$0", {"SetAsyncMode(false)"});
        row("flag neither word nor number", "P_AsyncMode$yes", {}, 111);
        row("flag word in other case", "P_DeviceEnabled$true", {}, 111);
        row("enable", "P_DeviceEnabled$True", {"SetDeviceEnabled(true)"});
        row("number property", "P_FiscalReceiptType$4", {"SetFiscalReceiptType(4)"});
        row("number property beyond 32 bits", "P_DateType$4294967296", {}, 111);
        row("change due", "P_ChangeDue$1.50", {"SetChangeDue(1.5)"});
        row("change due junk", "P_ChangeDue$x", {"SetChangeDue(0)"});
        row("contractor id", "P_ContractorId$12", {"SetContractorId(12)"});
        row("contractor id with junk", "P_ContractorId$12abc", {}, 111);
        row("text property", "P_PreLine$riga pre", {"SetPreLine(riga pre)"});
        row("empty text property", "P_AdditionalHeader$", {"SetAdditionalHeader()"});
    }
    void replayLine() {
        QFETCH(QString, line);
        QFETCH(QStringList, calls);
        QFETCH(int, result);
        QFETCH(int, messages);
        Bench b;
        QCOMPARE(b.Play(line), result);
        QCOMPARE(Describe(b.printer.calls), calls);
        QCOMPARE(m_messages.size(), messages);
        if (messages)
            QVERIFY(m_messages.first().startsWith(QStringLiteral("Bad Format for ")));
    }

    void unknownLines_data() {
        QTest::addColumn<QString>("line");
        QTest::newRow("unknown word") << "F_Bogus$1";
        QTest::newRow("empty line") << "";
        QTest::newRow("blank before word") << " F_Close";
        QTest::newRow("wrong case") << "f_close";
        QTest::newRow("read-only property") << "P_State$1";
        QTest::newRow("no such property") << "P_Bogus$1";
    }
    void unknownLines() {
        QFETCH(QString, line);
        Bench b;
        QCOMPARE(b.Play(line), 0);
        QVERIFY(b.printer.calls.isEmpty());
        QCOMPARE(m_messages, QStringList{QStringLiteral("Unknown command ") + line});
    }

    void resultsOfCallsAndWrites() {
        Bench b;
        b.printer.Script("PrintXReport", 114, 203, "Paper out");
        QCOMPARE(b.Play("F_PrintXReport"), 114);
        b.printer.Script("SetDeviceEnabled", 103);
        QCOMPARE(b.Play("P_DeviceEnabled$True"), 0);
        QCOMPARE(b.printer.CallNames(), QStringList{"SetDeviceEnabled"});
        // A replayed call is logged like one made by hand.
        QVERIFY(DefaultLogLines().contains(QStringLiteral("PrintXReport()     -> OposEExtended(114)  "
                                                          "OposEfptrRecEmpty(203)  Paper out")));
    }

    void surplusFieldsIgnored() {
        QString line = QStringLiteral("F_X");
        for (int i = 1; i < 120; ++i)
            line += QLatin1Char('$') + QString::number(i);
        const QStringList fields = clsMacroEngine::FieldSplit(line);
        QCOMPARE(fields.size(), clsMacroEngine::MaxFields);
        QCOMPARE(fields.last(), QStringLiteral("100"));
        QCOMPARE(clsMacroEngine::FieldSplit(QStringLiteral("a$")), (QStringList{"a", ""}));
        QCOMPARE(clsMacroEngine::FieldSplit(QStringLiteral("a")), QStringList{"a"});

        Bench b;
        QString io = QStringLiteral("F_DirectIO$1000$1$2$3$4$5$6$7$8$9$10$11$t");
        for (int i = 0; i < 100; ++i)
            io += QStringLiteral("$x");
        QCOMPARE(b.Play(io), 0);
        QCOMPARE(Describe(b.printer.calls), QStringList{"DirectIO(1000|{1,2,3,4,5,6,7,8,9,10,11}|t)"});
    }

    void recordingTokensAndList() {
        Bench b;
        QString cmd = QStringLiteral("F_PrintRecMessage$a\r\nb\x1b|2C");
        QCOMPARE(b.engine.AddCommand(cmd), 0);
        const QString stored = QStringLiteral("F_PrintRecMessage$a[CR][LF]b\x1b|2C");
        QCOMPARE(cmd, stored);
        QCOMPARE(b.engine.Line(0), stored);
        QCOMPARE(b.engine.lstMacroCode()->stringList(), QStringList{stored});
        QCOMPARE(b.SelectedRow(), -1);

        b.Record({"F_Close", "F_PrintXReport"});
        b.engine.StartSavedMacro();
        QCOMPARE(b.SelectedRow(), 0);
        QString more = QStringLiteral("F_Close");
        QCOMPARE(b.engine.AddCommand(more), 1);
        QCOMPARE(b.engine.LineCount(), 3);
        QCOMPARE(b.engine.lstMacroCode()->rowCount(), 3);
    }

    void storeLimit() {
        Bench b;
        for (int32_t i = 0; i < clsMacroEngine::StoreSize; ++i) {
            QString l = QStringLiteral("F_CheckHealth$") + QString::number(i);
            QCOMPARE(b.engine.AddCommand(l), 0);
        }
        QString extra = QStringLiteral("F_Close");
        QCOMPARE(b.engine.AddCommand(extra), 1);
        QCOMPARE(b.engine.LineCount(), 10001);
        QCOMPARE(b.engine.Line(10000), QStringLiteral("F_CheckHealth$10000"));
        QCOMPARE(b.engine.lstMacroCode()->rowCount(), 10001);

        QByteArray big;
        for (int i = 0; i < 10002; ++i)
            big += "L" + QByteArray::number(i) + "\r\n";
        QVERIFY(WriteAll(Path("big.oposcmd"), big));
        QCOMPARE(b.engine.LoadFromFile(Path("big.oposcmd")), 111);
        QCOMPARE(b.engine.LineCount(), 10001);
        QCOMPARE(b.engine.Line(10000), QStringLiteral("L10000"));
        QCOMPARE(b.engine.lstMacroCode()->rowCount(), 10001);
    }

    void cursorStatesAndTransitions() {
        Bench b;
        QVERIFY(!b.engine.IsRunningMacro());
        QCOMPARE(b.engine.PlayLineMacro(), 111);
        b.Record({"F_Close", "F_PrintXReport", "F_PrintZReport"});
        QCOMPARE(b.engine.LineCount(), 3);

        b.engine.StartSavedMacro();
        QCOMPARE(b.engine.LineCursor(), int16_t(0));
        QVERIFY(b.engine.IsRunningMacro());
        QString refused = QStringLiteral("F_Close");
        QCOMPARE(b.engine.AddCommand(refused), 1);

        int16_t line = 2;
        QCOMPARE(b.engine.SetLineMacro(line), 0);
        QCOMPARE(b.engine.LineCursor(), int16_t(2));
        QCOMPARE(b.SelectedRow(), 0); // the selection isn't touched

        b.printer.Script("PrintZReport", 106);
        QCOMPARE(b.engine.PlayLineMacro(), 106); // the last line gives its own result
        QVERIFY(!b.engine.IsRunningMacro());
        QCOMPARE(b.SelectedRow(), -1);
        QCOMPARE(b.engine.PlayLineMacro(), 111);

        // Recording is on again and appends behind the macro.
        b.wrapper.PrintXReport();
        QCOMPARE(b.engine.LineCount(), 4);
        QCOMPARE(b.engine.lstMacroCode()->rowCount(), 4);

        b.engine.StartSavedMacro();
        QCOMPARE(b.engine.PlayLineMacro(), 0);
        QCOMPARE(b.engine.LineCursor(), int16_t(1));
        QCOMPARE(b.SelectedRow(), 1);
        line = -1;
        b.engine.SetLineMacro(line);
        QVERIFY(!b.engine.IsRunningMacro());

        b.engine.StartSavedMacro();
        b.engine.StopMacro();
        QVERIFY(!b.engine.IsRunningMacro());

        b.engine.StartSavedMacro();
        QCOMPARE(b.engine.Construct(), 0);
        QVERIFY(!b.engine.IsRunningMacro());
        QCOMPARE(b.engine.LineCount(), 0);
        QCOMPARE(b.engine.lstMacroCode()->rowCount(), 0);
    }

    void cursorBeyondTheMacro() {
        Bench b;
        b.engine.StartSavedMacro(); // empty macro
        QVERIFY(b.engine.IsRunningMacro());
        QCOMPARE(b.engine.PlayLineMacro(), 111);
        QVERIFY(!b.engine.IsRunningMacro());

        b.Record({"F_Close", "F_Close", "F_Close", "F_Close", "F_PrintXReport"});
        QVERIFY(WriteAll(Path("two.oposcmd"), "F_Close\r\nF_Close\r\n"));
        b.engine.StartSavedMacro();
        int16_t line = 4;
        b.engine.SetLineMacro(line);
        QCOMPARE(b.engine.LoadFromFile(Path("two.oposcmd")), 0);
        QCOMPARE(b.engine.LineCursor(), int16_t(4)); // a load leaves the cursor alone
        b.printer.calls.clear();
        QCOMPARE(b.engine.PlayLineMacro(), 111);
        QVERIFY(b.printer.calls.isEmpty()); // the stale F_PrintXReport slot isn't played
        QVERIFY(!b.engine.IsRunningMacro());
    }

    void loadFromFile_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("crlf") << QByteArray("a\r\nb\r\n") << QStringList{"a", "b"};
        QTest::newRow("no final line end") << QByteArray("a\r\nb") << QStringList{"a", "b"};
        QTest::newRow("empty last line") << QByteArray("a\r\n\r\n") << QStringList{"a", ""};
        QTest::newRow("lone cr") << QByteArray("a\rb\r") << QStringList{"a", "b"};
        QTest::newRow("lone lf") << QByteArray("a\nb\n") << QStringList{"a", "b"};
        QTest::newRow("mixed") << QByteArray("a\r\rb\nc") << QStringList{"a", "", "b", "c"};
        QTest::newRow("empty file") << QByteArray() << QStringList{};
        QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF"
                                                       "F_Close\r\n")
                                         << QStringList{"F_Close"};
        QTest::newRow("utf-8") << QByteArray("F_PrintRecMessage$caff\xc3\xa8\r\n")
                               << QStringList{QStringLiteral("F_PrintRecMessage$caff\u00e8")};
        QTest::newRow("not utf-8") << QByteArray("F_PrintRecMessage$caff\xe8\r\nF_Close\r\n")
                                   << QStringList{QStringLiteral("F_PrintRecMessage$caff\u00e8"), "F_Close"};
    }
    void loadFromFile() {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, lines);
        Bench b;
        b.Record({"F_Close", "F_Close", "F_Close", "F_Close", "F_Close"});
        QVERIFY(WriteAll(Path("load.oposcmd"), bytes));
        QCOMPARE(b.engine.LoadFromFile(Path("load.oposcmd")), 0);
        QCOMPARE(b.engine.Lines(), lines);
        QCOMPARE(b.engine.lstMacroCode()->stringList(), lines);
        QCOMPARE(b.SelectedRow(), lines.isEmpty() ? -1 : 0);
        QVERIFY(!b.engine.IsRunningMacro());
    }

    void loadFailures() {
        Bench b;
        b.Record({"F_Close", "F_PrintXReport"});
        QCOMPARE(b.engine.LoadFromFile(QString()), 111);
        QCOMPARE(b.engine.LineCount(), 0);

        b.Record({"F_Close", "F_PrintXReport"});
        QCOMPARE(b.engine.LoadFromFile(Path("does-not-exist.oposcmd")), 111);
        QCOMPARE(b.engine.Lines(), (QStringList{"F_Close", "F_PrintXReport"}));
        QCOMPARE(b.engine.LoadFromFile(m_dir.path()), 111);
        QCOMPARE(b.engine.Lines(), (QStringList{"F_Close", "F_PrintXReport"}));
    }

    void saveToFile() {
        Bench b;
        QCOMPARE(b.engine.SaveToFile(Path("empty.oposcmd")), 0);
        QCOMPARE(ReadAll(Path("empty.oposcmd")), QByteArray());

        b.Record({"F_PrintRecMessage$caff\u00e8", "", "F_PrintRecMessage$\x1b|2C"});
        b.engine.StartSavedMacro();
        b.engine.PlayLineMacro();
        QCOMPARE(b.engine.SaveToFile(Path("m.oposcmd")), 0);
        QCOMPARE(ReadAll(Path("m.oposcmd")),
                 QByteArray("F_PrintRecMessage$caff\xc3\xa8\r\n\r\nF_PrintRecMessage$\x1b|2C\r\n"));
        QCOMPARE(b.engine.LineCursor(), int16_t(1)); // a save leaves the cursor

        // A second save replaces the whole file.
        b.engine.Construct();
        b.Record({"F_Close"});
        QCOMPARE(b.engine.SaveToFile(Path("m.oposcmd")), 0);
        QCOMPARE(ReadAll(Path("m.oposcmd")), QByteArray("F_Close\r\n"));

        QCOMPARE(b.engine.SaveToFile(QString()), 111);
        QCOMPARE(b.engine.SaveToFile(Path("no-such-folder/m.oposcmd")), 111);
        QVERIFY(!QFile::exists(Path("no-such-folder/m.oposcmd")));
        QCOMPARE(b.engine.SaveToFile(m_dir.path()), 111);
        QVERIFY(QFileInfo(m_dir.path()).isDir());
        QCOMPARE(b.engine.Lines(), QStringList{"F_Close"});
    }

    void amountsOnCommaLocale() {
        QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
        Bench b;
        b.wrapper.PrintRecItem(QStringLiteral("x"), 15000, 0, 1, 0, QString());
        QCOMPARE(b.engine.Line(0), QStringLiteral("F_PrintRecItem$x$1.50$0$1$0.00$"));
        b.wrapper.SetChangeDue(QStringLiteral("1.50"));
        b.printer.calls.clear();
        b.engine.StartSavedMacro();
        QCOMPARE(b.engine.PlayLineMacro(), 0);
        QCOMPARE(b.engine.PlayLineMacro(), 0);
        QCOMPARE(Describe(b.printer.calls),
                 (QStringList{"PrintRecItem(x|15000|0|1|0|)", "SetChangeDue(1.5)"}));
        QVERIFY(m_messages.isEmpty());
    }

    // The wait lets the event loop run: a timer fires inside it, and the line ends afterwards.
    void delayRunsTheEventLoop() {
        Bench b;
        b.Record({"F_Delay$300", "F_Close"});
        b.engine.StartSavedMacro();
        bool firedDuringWait = false;
        QTimer::singleShot(0, this, [&] {
            firedDuringWait = b.engine.tmrDelayForMacroCls()->isActive() && b.engine.LineCursor() == 0;
        });
        QCOMPARE(b.engine.PlayLineMacro(), 0);
        QVERIFY(firedDuringWait);
        QVERIFY(!b.engine.tmrDelayForMacroCls()->isActive());
        QCOMPARE(b.engine.LineCursor(), int16_t(1));
        QVERIFY(b.printer.calls.isEmpty());
    }

    void delayWithoutWait_data() {
        QTest::addColumn<QString>("line");
        QTest::newRow("zero") << "F_Delay$0";
        QTest::newRow("negative") << "F_Delay$-500";
        QTest::newRow("missing") << "F_Delay";
        QTest::newRow("junk") << "F_Delay$soon";
    }
    void delayWithoutWait() {
        QFETCH(QString, line);
        Bench b;
        bool ran = false;
        QTimer::singleShot(0, this, [&] { ran = true; });
        QCOMPARE(b.Play(line), 0);
        QVERIFY(!ran); // the event loop never ran: there was no wait
        QVERIFY(!b.engine.tmrDelayForMacroCls()->isActive());
        QTRY_VERIFY(ran);
    }

    // A huge wait is cut to a finite one, and a Stop, Run or Clear ends it at once.
    void delayEndedByOperator_data() {
        QTest::addColumn<int>("action");
        QTest::addColumn<int>("cursorAfter");
        QTest::addColumn<int>("countAfter");
        QTest::newRow("StopMacro") << 0 << -1 << 3;
        QTest::newRow("StartSavedMacro") << 1 << 0 << 3;
        QTest::newRow("Construct") << 2 << -1 << 0;
        QTest::newRow("SetLineMacro") << 3 << 2 << 3;
    }
    void delayEndedByOperator() {
        QFETCH(int, action);
        QFETCH(int, cursorAfter);
        QFETCH(int, countAfter);
        Bench b;
        b.Record({"F_Close", "F_Delay$99999999999999", "F_Close"});
        b.engine.StartSavedMacro();
        QCOMPARE(b.engine.PlayLineMacro(), 0);
        int interval = -1;
        QTimer::singleShot(1, this, [&] {
            interval = b.engine.tmrDelayForMacroCls()->interval();
            int16_t two = 2;
            switch (action) {
            case 0:
                b.engine.StopMacro();
                break;
            case 1:
                b.engine.StartSavedMacro();
                break;
            case 2:
                b.engine.Construct();
                break;
            default:
                b.engine.SetLineMacro(two);
                break;
            }
        });
        QCOMPARE(b.engine.PlayLineMacro(), 0);
        QVERIFY(interval > 0);
        QVERIFY(interval <= 3600000);
        QCOMPARE(int(b.engine.LineCursor()), cursorAfter);
        QCOMPARE(int(b.engine.LineCount()), countAfter);
    }

    void processMacro() {
        Bench b;
        QStringList lines{"F_PrintXReport", "P_AsyncMode$True", "F_Bogus"};
        b.printer.Script("PrintXReport", 111);
        QCOMPARE(b.engine.ProcessMacro(lines), 0);
        QCOMPARE(m_messages,
                 (QStringList{"F_PrintXReport", "P_AsyncMode$True", "F_Bogus", "Unknown command F_Bogus"}));
        QCOMPARE(Describe(b.printer.calls), (QStringList{"PrintXReport()", "SetAsyncMode(true)"}));
        // It ignores the cursor, so a stopped engine records what it plays.
        QCOMPARE(b.engine.Lines(), (QStringList{"F_PrintXReport", "P_AsyncMode$True"}));
    }
};

QTEST_GUILESS_MAIN(tst_MacroEngine)
#include "tst_macroengine.moc"
