#include "DeviceDoubles.h"
#include "EscStrings.h"
#include "Seams.h"
#include "Tools.h"

#include <QFileInfo>
#include <QLoggingCategory>
#include <QTest>

#include <limits>

Q_DECLARE_METATYPE(MsgButtons)
Q_DECLARE_METATYPE(MsgResult)

using namespace Tools;

namespace {

const QChar Esc(27);

// The two kinds of system the bench runs on: a point and a comma as decimal separator.
const QList<std::pair<const char*, QLocale>>& Systems() {
    static const QList<std::pair<const char*, QLocale>> systems{
        {"point", QLocale::c()},
        {"point-en", QLocale(QLocale::English, QLocale::UnitedStates)},
        {"comma-de", QLocale(QLocale::German, QLocale::Germany)},
        {"comma-it", QLocale(QLocale::Italian, QLocale::Italy)},
    };
    return systems;
}

bool IsCommaSystem(const QLocale& l) {
    return l.decimalPoint() == QLatin1String(",");
}

// Records the message boxes shown while it lives.
struct MessageRecorder {
    struct Box {
        QString text;
        MsgButtons buttons;
        QString title;
    };
    MessageRecorder() {
        previous = SetMessageBoxHandler([this](const QString& t, MsgButtons b, const QString& title) {
            boxes.append({t, b, title});
            return MsgResult::Ok;
        });
    }
    ~MessageRecorder() { SetMessageBoxHandler(previous); }
    QList<Box> boxes;
    MessageBoxHandler previous;
};

} // namespace

class TestTools : public QObject {
    Q_OBJECT

private slots:
    void names_data();
    void names();
    void amountToText_data();
    void amountToText();
    void textToAmount_data();
    void textToAmount();
    void textToAmountFailureMessage();
    void leadingNumber_data();
    void leadingNumber();
    void leadingInteger_data();
    void leadingInteger();
    void strictInteger_data();
    void strictInteger();
    void numberText_data();
    void numberText();
    void tokens_data();
    void tokens();
    void writeLogMakesOneLineAndDebugOutput();
    void writeLogDefaultSinkKeepsLines();
    void defaultDebugOutputGoesToCategory();
    void defaultMessageBoxAnswers_data();
    void defaultMessageBoxAnswers();
    void pickersDefaultToEmpty();
    void escStrings_data();
    void escStrings();
    void appFolderHoldsProgram();
};

void TestTools::names_data() {
    QTest::addColumn<QString>("table");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char* table, int value, const char* expected) {
        QTest::addRow("%s %d", table, value)
            << QString::fromLatin1(table) << value << QString::fromLatin1(expected);
    };
    row("result", 0, "OposSuccess");
    row("result", 101, "OposEClosed");
    row("result", 103, "OposENotclaimed");
    row("result", 106, "OposEIllegal");
    row("result", 111, "OposEFailure");
    row("result", 114, "OposEExtended");
    row("result", 115, "OposEDeprecated");
    row("result", 100, "Opos#undefined#");
    row("result", 116, "Opos#undefined#");
    row("result", -1, "Opos#undefined#");
    row("result", std::numeric_limits<int32_t>::min(), "Opos#undefined#");

    row("extended", 201, "OposEfptrCoverOpen");
    row("extended", 203, "OposEfptrRecEmpty");
    row("extended", 211, "OposEfptrFiscalMemoryDisconnected");
    row("extended", 223, "OposEfptrMissingSetCurrency");
    row("extended", 0, "");
    row("extended", 200, "");
    row("extended", 224, "");

    row("adjustment", 1, "FPTR_AT_AMOUNT_DISCOUNT");
    row("adjustment", 2, "FPTR_AT_AMOUNT_SURCHARGE");
    row("adjustment", 3, "FPTR_AT_PERCENTAGE_DISCOUNT");
    row("adjustment", 4, "FPTR_AT_PERCENTAGE_SURCHARGE");
    row("adjustment", 0, "INVALID AdjutmentType");
    row("adjustment", 5, "INVALID AdjutmentType");

    row("state", 1, "OPOS_S_CLOSED");
    row("state", 2, "OPOS_S_IDLE");
    row("state", 3, "OPOS_S_BUSY");
    row("state", 4, "OPOS_S_ERROR");
    row("state", 0, "STATE OUT OF RANGE");
    row("state", 5, "STATE OUT OF RANGE");

    row("printer", 0, "UNKNOWN!!! ");
    row("printer", 1, "FPTR_PS_MONITOR");
    row("printer", 4, "FPTR_PS_FISCAL_RECEIPT_ENDING");
    row("printer", 9, "FPTR_PS_NONFISCAL");
    row("printer", 10, "FPTR_PS_REPORT");
    row("printer", 11, "");
    row("printer", -1, "");

    row("directio", 1000, "DIRECTIO_FPTR_DRAWER_OPEN");
    row("directio", 1002, "DIRECTIO_FPTR_DRAWER_WAIT");
    row("directio", 1101, "DIRECTIO_FPTR_BMPPRINT");
    row("directio", 1308, "DIRECTIO_FPTR_DY_SBYBMP");
    row("directio", 1401, "DIRECTIO_FPTR_CREDITNOTE_END");
    row("directio", 1502, "DIRECTIO_FPTR_REPORT_REQUEST");
    row("directio", 1600, "DIRECTIO_FPTR_RESET_TOTALIZERS");
    row("directio", 9003, "DIRECTIO_FPTR_SETPOLLINGTIME");
    row("directio", 9999, "DIRECTIO_FPTR_DEBUG");
    row("directio", 1003, "UNDEFINED DIRECTIO COMMAND");
    row("directio", 1309, "UNDEFINED DIRECTIO COMMAND");
    row("directio", 0, "UNDEFINED DIRECTIO COMMAND");
}

void TestTools::names() {
    QFETCH(QString, table);
    QFETCH(int, value);
    QFETCH(QString, expected);
    QString got;
    if (table == u"result")
        got = ResultCodeName(value);
    else if (table == u"extended")
        got = ResultCodeExtendedName(value);
    else if (table == u"adjustment")
        got = AdjustmentTypeName(value);
    else if (table == u"state")
        got = StateName(value);
    else if (table == u"printer")
        got = PrinterStateName(value);
    else
        got = DirectIOCommandName(value);
    QCOMPARE(got, expected);
}

void TestTools::amountToText_data() {
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<qint64>("value");
    QTest::addColumn<QString>("expected");
    struct Row {
        const char* name;
        Amount value;
        const char* expected;
    };
    const Row rows[] = {
        {"zero", 0, "0.00"},
        {"one and a half", 15000, "1.50"},
        {"minus two and a half", -25000, "-2.50"},
        {"half a cent rounds up", 50, "0.01"},
        {"below half a cent", 49, "0.00"},
        {"negative half a cent away from zero", -50, "-0.01"},
        {"four decimals", 12345678, "1234.57"},
        {"no group separators", 12345670000, "1234567.00"},
        {"largest", std::numeric_limits<Amount>::max(), "922337203685477.58"},
        {"smallest", std::numeric_limits<Amount>::min(), "-922337203685477.58"},
    };
    for (const auto& [sys, locale] : Systems())
        for (const Row& r : rows)
            QTest::addRow("%s: %s", sys, r.name)
                << locale << qint64(r.value) << QString::fromLatin1(r.expected);
}

void TestTools::amountToText() {
    QFETCH(QLocale, locale);
    QFETCH(qint64, value);
    QFETCH(QString, expected);
    LocaleScope scope(locale);
    QCOMPARE(AmountToText(value), expected);
}

void TestTools::textToAmount_data() {
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("amount");
    QTest::addColumn<QString>("rewritten");
    QTest::addColumn<bool>("refused");

    struct Row {
        const char* name;
        const char* text;
        Amount amount;
        const char* onPoint; // the caller's text afterwards on a point system
        const char* onComma; // ... on a comma system
        bool refused;
    };
    const Row rows[] = {
        {"point", "1.50", 15000, "1.50", "1,50", false},
        {"comma", "1,50", 15000, "1.50", "1,50", false},
        {"whole", "12", 120000, "12", "12", false},
        {"blanks around", " 7.25 ", 72500, " 7.25 ", " 7,25 ", false},
        {"minus", "-2.5", -25000, "-2.5", "-2,5", false},
        {"plus", "+3", 30000, "+3", "+3", false},
        {"four decimals", "0.0001", 1, "0.0001", "0,0001", false},
        {"fifth decimal half rounds away", "0.00005", 1, "0.00005", "0,00005", false},
        {"fifth decimal below half", "0.00004", 0, "0.00004", "0,00004", false},
        {"negative half rounds away", "-0.00005", -1, "-0.00005", "-0,00005", false},
        {"many decimals", "1.234567", 12346, "1.234567", "1,234567", false},
        {"largest", "922337203685477.5807", std::numeric_limits<Amount>::max(), "922337203685477.5807",
         "922337203685477,5807", false},
        {"smallest", "-922337203685477.5808", std::numeric_limits<Amount>::min(), "-922337203685477.5808",
         "-922337203685477,5808", false},
        {"beyond largest", "922337203685477.5808", 0, "922337203685477.5808", "922337203685477,5808", true},
        {"far beyond", "99999999999999999999", 0, "99999999999999999999", "99999999999999999999", true},
        {"both separators", "1,234.50", 0, "1.234.50", "1,234,50", true},
        {"second comma stays", "1,2,3", 0, "1.2,3", "1,2,3", true},
        {"empty", "", 0, "", "", true},
        {"letters", "abc", 0, "abc", "abc", true},
        {"trailing letters", "12abc", 0, "12abc", "12abc", true},
        {"sign alone", "-", 0, "-", "-", true},
    };
    for (const auto& [sys, locale] : Systems())
        for (const Row& r : rows)
            QTest::addRow("%s: %s", sys, r.name)
                << locale << QString::fromLatin1(r.text) << qint64(r.amount)
                << QString::fromLatin1(IsCommaSystem(locale) ? r.onComma : r.onPoint) << r.refused;
}

void TestTools::textToAmount() {
    QFETCH(QLocale, locale);
    QFETCH(QString, text);
    QFETCH(qint64, amount);
    QFETCH(QString, rewritten);
    QFETCH(bool, refused);
    LocaleScope scope(locale);
    MessageRecorder messages;

    QCOMPARE(TextToAmount(text), amount);
    QCOMPARE(text, rewritten);
    if (refused) {
        QCOMPARE(messages.boxes.size(), 1);
        QCOMPARE(messages.boxes[0].text,
                 QStringLiteral("Bad Format for ") + rewritten + QStringLiteral("...returning 0"));
    } else {
        QVERIFY(messages.boxes.isEmpty());
    }
}

void TestTools::textToAmountFailureMessage() {
    LocaleScope scope(QLocale::c());
    MessageRecorder messages;
    QString empty;
    QCOMPARE(TextToAmount(empty), 0);
    QString letters = QStringLiteral("abc");
    QCOMPARE(TextToAmount(letters), 0);

    QCOMPARE(messages.boxes.size(), 2);
    QCOMPARE(messages.boxes[0].text, QStringLiteral("Bad Format for ...returning 0"));
    QCOMPARE(messages.boxes[1].text, QStringLiteral("Bad Format for abc...returning 0"));
    for (const auto& box : messages.boxes) {
        QCOMPARE(box.buttons, MsgButtons::Ok);
        QCOMPARE(box.title, QStringLiteral("ZorvaneFPUTest"));
    }
}

void TestTools::leadingNumber_data() {
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("expected");
    struct Row {
        const char* name;
        const char* text;
        double expected;
    };
    const Row rows[] = {
        {"hexadecimal", "&H30", 48},
        {"hexadecimal lower case", "&h1f", 31},
        {"hexadecimal without digits", "&H", 0},
        {"digits then letters", "12abc", 12},
        {"letters", "abc", 0},
        {"empty", "", 0},
        {"leading blanks", "   42", 42},
        {"sign and point", "-3.5x", -3.5},
        {"plus", "+7", 7},
        {"point only decimal", ".25", 0.25},
        {"comma is no separator", "1,5", 1},
        {"second point stops", "1.2.3", 1.2},
        {"sign alone", "-", 0},
        {"double sign", "--5", 0},
        {"blanks inside are passed over", "1 2", 12},
    };
    for (const auto& [sys, locale] : Systems())
        for (const Row& r : rows)
            QTest::addRow("%s: %s", sys, r.name) << locale << QString::fromLatin1(r.text) << r.expected;
}

void TestTools::leadingNumber() {
    QFETCH(QLocale, locale);
    QFETCH(QString, text);
    QFETCH(double, expected);
    LocaleScope scope(locale);
    QCOMPARE(LeadingNumber(text), expected);
}

void TestTools::leadingInteger_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("fits");
    QTest::addColumn<int>("expected");
    QTest::newRow("tie to even down") << "2.5" << true << 2;
    QTest::newRow("tie to even up") << "3.5" << true << 4;
    QTest::newRow("negative tie") << "-2.5" << true << -2;
    QTest::newRow("above half") << "2.51" << true << 3;
    QTest::newRow("hexadecimal") << "&H30" << true << 48;
    QTest::newRow("letters") << "abc" << true << 0;
    QTest::newRow("largest") << "2147483647" << true << 2147483647;
    QTest::newRow("smallest") << "-2147483648" << true << int(std::numeric_limits<int32_t>::min());
    QTest::newRow("above largest") << "2147483648" << false << 0;
    QTest::newRow("below smallest") << "-2147483649" << false << 0;
    QTest::newRow("huge") << QString(400, u'9') << false << 0;
}

void TestTools::leadingInteger() {
    QFETCH(QString, text);
    QFETCH(bool, fits);
    QFETCH(int, expected);
    const auto value = LeadingInteger(text);
    QCOMPARE(value.has_value(), fits);
    if (fits)
        QCOMPARE(*value, expected);
}

void TestTools::strictInteger_data() {
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("readable");
    QTest::addColumn<int>("expected");
    for (const auto& [sys, locale] : Systems()) {
        const QString dp = locale.decimalPoint();
        const auto row = [&](const char* name, const QString& text, bool ok, int expected) {
            QTest::addRow("%s: %s", sys, name) << locale << text << ok << expected;
        };
        row("plain", "123", true, 123);
        row("blanks around", "  42 ", true, 42);
        row("negative", "-7", true, -7);
        row("largest", "32767", true, 32767);
        row("smallest", "-32768", true, -32768);
        row("above 16 bits", "32768", false, 0);
        row("below 16 bits", "-32769", false, 0);
        row("tie to even down", "2" + dp + "5", true, 2);
        row("tie to even up", "3" + dp + "5", true, 4);
        row("rounds beyond 16 bits", "32767" + dp + "5", false, 0);
        row("rounds onto smallest", "-32768" + dp + "5", true, -32768);
        row("hexadecimal", "&H10", true, 16);
        row("empty", "", false, 0);
        row("letters", "abc", false, 0);
        row("trailing letters", "12abc", false, 0);
        row("blank inside", "1 2", false, 0);
    }
}

void TestTools::strictInteger() {
    QFETCH(QLocale, locale);
    QFETCH(QString, text);
    QFETCH(bool, readable);
    QFETCH(int, expected);
    LocaleScope scope(locale);
    const auto value = StrictInteger(text);
    QCOMPARE(value.has_value(), readable);
    if (readable)
        QCOMPARE(int(*value), expected);
}

void TestTools::numberText_data() {
    QTest::addColumn<qint64>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("zero") << qint64(0) << " 0";
    QTest::newRow("positive") << qint64(5) << " 5";
    QTest::newRow("negative") << qint64(-1) << "-1";
    QTest::newRow("beyond 32 bits") << qint64(5000000000) << " 5000000000";
}

void TestTools::numberText() {
    QFETCH(qint64, value);
    QFETCH(QString, expected);
    QCOMPARE(NumberText(value), expected);
}

void TestTools::tokens_data() {
    QTest::addColumn<QString>("routine");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("esc to token") << "EscBytesToTokens" << (QString(Esc) + "|2Cab" + Esc)
                                  << "[ESC]|2Cab[ESC]";
    QTest::newRow("esc leaves CR LF") << "EscBytesToTokens"
                                      << "a\r\nb"
                                      << "a\r\nb";
    QTest::newRow("cr lf") << "CrLfToTokens"
                           << "a\r\nb"
                           << "a[CR][LF]b";
    QTest::newRow("lf cr") << "CrLfToTokens"
                           << "\n\r"
                           << "[LF][CR]";
    QTest::newRow("cr lf leaves esc") << "CrLfToTokens" << QString(Esc) << QString(Esc);
    QTest::newRow("token to esc") << "EscTokensToBytes"
                                  << "[ESC]|1C[ESC]x" << (QString(Esc) + "|1C" + Esc + "x");
    QTest::newRow("small letters stay") << "EscTokensToBytes"
                                        << "[esc]|1C"
                                        << "[esc]|1C";
    QTest::newRow("nested token") << "EscTokensToBytes"
                                  << "[[ESC]ESC]" << ("[" + QString(Esc) + "ESC]");
}

void TestTools::tokens() {
    QFETCH(QString, routine);
    QFETCH(QString, text);
    QFETCH(QString, expected);
    if (routine == u"EscBytesToTokens")
        QCOMPARE(EscBytesToTokens(text), expected);
    else if (routine == u"CrLfToTokens")
        QCOMPARE(CrLfToTokens(text), expected);
    else
        QCOMPARE(EscTokensToBytes(text), expected);
}

void TestTools::writeLogMakesOneLineAndDebugOutput() {
    CollectingSink sink;
    QStringList debug;
    const auto previous = SetDebugOutputHandler([&](const QString& l) { debug.append(l); });

    WriteLog(QStringLiteral("PrintNormal(1, a") + Esc + QStringLiteral("|2Cb\r\nc)"));
    WriteLog(QStringLiteral("ResetPrinter()     -> OposSuccess(0)"));
    SetDebugOutputHandler(previous);

    QCOMPARE(sink.lines, QStringList({QStringLiteral("PrintNormal(1, a[ESC]|2Cb[CR][LF]c)"),
                                      QStringLiteral("ResetPrinter()     -> OposSuccess(0)")}));
    QCOMPARE(debug, QStringList({QStringLiteral("PrintNormal(1, a[ESC]|2Cb[CR][LF]c)\r\n"),
                                 QStringLiteral("ResetPrinter()     -> OposSuccess(0)\r\n")}));
}

void TestTools::writeLogDefaultSinkKeepsLines() {
    const auto previous = SetDebugOutputHandler([](const QString&) {});
    ClearDefaultLog();
    WriteLog(QStringLiteral("one"));
    WriteLog(QStringLiteral("two\n"));
    QCOMPARE(DefaultLogLines(), QStringList({QStringLiteral("one"), QStringLiteral("two[LF]")}));
    {
        CollectingSink elsewhere;
        WriteLog(QStringLiteral("three"));
        QCOMPARE(elsewhere.lines, QStringList{QStringLiteral("three")});
    }
    QCOMPARE(DefaultLogLines().size(), 2);
    ClearDefaultLog();
    QVERIFY(DefaultLogLines().isEmpty());
    SetDebugOutputHandler(previous);
}

namespace {
QList<std::pair<QString, QString>> g_debugMessages;
QLoggingCategory::CategoryFilter g_previousFilter = nullptr;

void EnableOposLog(QLoggingCategory* category) {
    if (g_previousFilter)
        g_previousFilter(category);
    if (qstrcmp(category->categoryName(), "opos.log") == 0)
        category->setEnabled(QtDebugMsg, true);
}

void CollectMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type == QtDebugMsg)
        g_debugMessages.append({QString::fromLatin1(context.category), text});
}
} // namespace

void TestTools::defaultDebugOutputGoesToCategory() {
    const auto previousHandler = SetDebugOutputHandler({});
    g_debugMessages.clear();
    g_previousFilter = QLoggingCategory::installFilter(EnableOposLog);
    const QtMessageHandler previousMessages = qInstallMessageHandler(CollectMessage);

    DebugOutput(QStringLiteral("ResetPrinter()     -> OposSuccess(0)\r\n"));

    qInstallMessageHandler(previousMessages);
    QLoggingCategory::installFilter(g_previousFilter);
    SetDebugOutputHandler(previousHandler);
    QCOMPARE(g_debugMessages.size(), 1);
    QCOMPARE(g_debugMessages[0].first, QStringLiteral("opos.log"));
    QCOMPARE(g_debugMessages[0].second, QStringLiteral("ResetPrinter()     -> OposSuccess(0)"));
}

void TestTools::defaultMessageBoxAnswers_data() {
    QTest::addColumn<MsgButtons>("buttons");
    QTest::addColumn<MsgResult>("answer");
    QTest::newRow("ok") << MsgButtons::Ok << MsgResult::Ok;
    QTest::newRow("ok cancel") << MsgButtons::OkCancel << MsgResult::Ok;
    QTest::newRow("retry cancel") << MsgButtons::RetryCancel << MsgResult::Cancel;
    QTest::newRow("yes no") << MsgButtons::YesNo << MsgResult::No;
}

void TestTools::defaultMessageBoxAnswers() {
    QFETCH(MsgButtons, buttons);
    QFETCH(MsgResult, answer);
    const auto previous = SetMessageBoxHandler({});
    QCOMPARE(ShowMessage(QStringLiteral("default box"), buttons), answer);
    SetMessageBoxHandler(previous);
}

void TestTools::pickersDefaultToEmpty() {
    const auto previous = SetFilePickerHandlers({});
    QVERIFY(PickFolder(QStringLiteral("/tmp"), nullptr, QStringLiteral("t")).isEmpty());
    QVERIFY(PickOpenFile(nullptr, QStringLiteral("*.oposcmd"), QStringLiteral("t"), {}).isEmpty());
    QVERIFY(PickSaveFile(nullptr, QStringLiteral("*.log"), QStringLiteral("t"), {}).isEmpty());

    FilePickerHandlers chosen;
    chosen.pickOpenFile = [](QWidget*, const QString& filter, const QString&, const QString&) {
        return QStringLiteral("/x/a") + filter.mid(1);
    };
    SetFilePickerHandlers(chosen);
    QCOMPARE(PickOpenFile(nullptr, QStringLiteral("*.oposcmd"), {}, {}), QStringLiteral("/x/a.oposcmd"));
    QVERIFY(PickSaveFile(nullptr, QStringLiteral("*.log"), {}, {}).isEmpty());
    SetFilePickerHandlers(previous);
}

void TestTools::escStrings_data() {
    QTest::addColumn<int>("n");
    QTest::addColumn<QString>("token");
    QTest::addColumn<QString>("effect");
    QTest::newRow("1") << 1 << "|1C"
                       << "Normal Mode";
    QTest::newRow("2") << 2 << "|2C"
                       << "Double Width";
    QTest::newRow("3") << 3 << "|3C"
                       << "Double Height";
    QTest::newRow("4") << 4 << "|5C"
                       << "Half Height";
    QTest::newRow("5") << 5 << "|6C"
                       << "Boxed Text";
    QTest::newRow("6") << 6 << "|cA"
                       << "Center Just";
    QTest::newRow("7") << 7 << "|lA"
                       << "Left Just";
    QTest::newRow("8") << 8 << "|rA"
                       << "Right Just";
}

void TestTools::escStrings() {
    QFETCH(int, n);
    QFETCH(QString, token);
    QFETCH(QString, effect);
    InitEscStrings();
    QCOMPARE(EscString(n), QString(Esc) + token);
    QCOMPARE(EscStringEffect(n), effect);
    QVERIFY(EscString(0).isEmpty());
    QVERIFY(EscString(9).isEmpty());
    QVERIFY(EscStringEffect(9).isEmpty());
}

void TestTools::appFolderHoldsProgram() {
    const QString folder = AppFolder();
    QVERIFY(!folder.endsWith(u'/'));
    QVERIFY(QFileInfo(folder + QStringLiteral("/tst_tools")).isExecutable());
}

QTEST_GUILESS_MAIN(TestTools)
#include "tst_tools.moc"
