#include "DeviceDoubles.h"
#include "EscStrings.h"
#include "Seams.h"
#include "TestRow.h"
#include "Tools.h"

#include <QTest>

#include <limits>

using namespace Tools;

namespace {

const QChar Esc(27);
constexpr Amount MaxAmount = std::numeric_limits<Amount>::max(),
                 MinAmount = std::numeric_limits<Amount>::min();

// One system with a point and one with a comma as decimal separator, each grouping with the other mark.
const QList<QLocale> Systems{QLocale(QLocale::English, QLocale::UnitedStates),
                             QLocale(QLocale::German, QLocale::Germany)};

// Adds each row once on each system: the system, then the row's values after its name.
template <typename... T> void ForEachSystem(const QList<std::tuple<const char*, T...>>& rows) {
    for (const QLocale& l : Systems)
        for (const auto& row : rows)
            std::apply(
                [&](const char* name, const T&... v) {
                    (QTest::addRow("%s: %s", qPrintable(l.name()), name) << l << ... << v);
                },
                row);
}

} // namespace

class TestTools : public QObject {
    Q_OBJECT

private slots:
    void names_data() {
        QTest::addColumn<QString>("table");
        QTest::addColumn<int>("value");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* table, int value, const char* expected) {
            QTest::addRow("%s %d", table, value)
                << QString::fromLatin1(table) << value << QString::fromLatin1(expected);
        };
        row("result", 0, "OposSuccess");
        row("result", 115, "OposEDeprecated");
        row("result", 100, "Opos#undefined#");
        row("result", 116, "Opos#undefined#");
        row("extended", 201, "OposEfptrCoverOpen");
        row("extended", 223, "OposEfptrMissingSetCurrency");
        row("extended", 224, "");
        row("adjustment", 1, "FPTR_AT_AMOUNT_DISCOUNT");
        row("adjustment", 4, "FPTR_AT_PERCENTAGE_SURCHARGE");
        row("adjustment", 0, "INVALID AdjutmentType");
        row("adjustment", 5, "INVALID AdjutmentType");
        row("state", 1, "OPOS_S_CLOSED");
        row("state", 4, "OPOS_S_ERROR");
        row("state", 0, "STATE OUT OF RANGE");
        row("state", 5, "STATE OUT OF RANGE");
        row("printer", 0, "UNKNOWN!!! ");
        row("printer", 1, "FPTR_PS_MONITOR");
        row("printer", 10, "FPTR_PS_REPORT");
        row("printer", 11, "");
        row("directio", 1000, "DIRECTIO_FPTR_DRAWER_OPEN");
        row("directio", 1308, "DIRECTIO_FPTR_DY_SBYBMP");
        row("directio", 9999, "DIRECTIO_FPTR_DEBUG");
        row("directio", 1003, "UNDEFINED DIRECTIO COMMAND");
        row("directio", 1309, "UNDEFINED DIRECTIO COMMAND");
    }
    void names() {
        QFETCH(QString, table);
        QFETCH(int, value);
        const QHash<QString, QString (*)(int32_t)> tables{
            {"result", ResultCodeName},         {"extended", ResultCodeExtendedName},
            {"adjustment", AdjustmentTypeName}, {"state", StateName},
            {"printer", PrinterStateName},      {"directio", DirectIOCommandName}};
        QTEST(tables.value(table)(value), "expected");
    }

    void amountToText_data() {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<qint64>("value");
        QTest::addColumn<QString>("expected");
        ForEachSystem<qint64, QString>({{"one and a half", 15000, "1.50"},
                                        {"minus two and a half", -25000, "-2.50"},
                                        {"half a cent rounds up", 50, "0.01"},
                                        {"below half a cent", 49, "0.00"},
                                        {"negative half a cent away from zero", -50, "-0.01"},
                                        {"no group separators", 12345670000, "1234567.00"},
                                        {"largest", MaxAmount, "922337203685477.58"},
                                        {"smallest", MinAmount, "-922337203685477.58"}});
    }
    void amountToText() {
        QFETCH(QLocale, locale);
        QFETCH(qint64, value);
        LocaleScope scope(locale);
        QTEST(AmountToText(value), "expected");
    }

    // A refused text gives 0 and the "Bad Format" box; the caller's text gets the system's separator.
    void textToAmount_data() {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("amount");
        QTest::addColumn<QString>("onPoint"); // the caller's text afterwards on a point system
        QTest::addColumn<QString>("onComma"); // ... on a comma system
        QTest::addColumn<bool>("refused");
        ForEachSystem<QString, qint64, QString, QString, bool>({
            {"point", "1.50", 15000, "1.50", "1,50", false},
            {"comma", "1,50", 15000, "1.50", "1,50", false},
            {"blanks around", " 7.25 ", 72500, " 7.25 ", " 7,25 ", false},
            {"minus", "-2.5", -25000, "-2.5", "-2,5", false},
            {"fifth decimal half rounds away", "0.00005", 1, "0.00005", "0,00005", false},
            {"fifth decimal below half", "0.00004", 0, "0.00004", "0,00004", false},
            {"negative half rounds away", "-0.00005", -1, "-0.00005", "-0,00005", false},
            {"largest", "922337203685477.5807", MaxAmount, "922337203685477.5807", "922337203685477,5807",
             false},
            {"smallest", "-922337203685477.5808", MinAmount, "-922337203685477.5808", "-922337203685477,5808",
             false},
            {"beyond largest", "922337203685477.5808", 0, "922337203685477.5808", "922337203685477,5808",
             true},
            {"both separators", "1,234.50", 0, "1.234.50", "1,234,50", true},
            {"second comma stays", "1,2,3", 0, "1.2,3", "1,2,3", true},
            {"empty", "", 0, "", "", true},
            {"trailing letters", "12abc", 0, "12abc", "12abc", true},
        });
    }
    void textToAmount() {
        QFETCH(QLocale, locale);
        QFETCH(QString, text);
        QFETCH(bool, refused);
        QFETCH(QString, onPoint);
        QFETCH(QString, onComma);
        const QString rewritten = locale.decimalPoint() == u"," ? onComma : onPoint;
        LocaleScope scope(locale);
        QStringList boxes;
        const auto previous = SetMessageBoxHandler([&](const QString& t, MsgButtons b, const QString& title) {
            boxes.append(t + u'|' + QString::number(int(b)) + u'|' + title);
            return MsgResult::Ok;
        });
        const Amount got = TextToAmount(text);
        SetMessageBoxHandler(previous);
        QTEST(qint64(got), "amount");
        QCOMPARE(text, rewritten);
        QCOMPARE(boxes, refused ? QStringList{"Bad Format for " + rewritten + "...returning 0|" +
                                              QString::number(int(MsgButtons::Ok)) + "|ZorvaneFPUTest"}
                                : QStringList{});
    }

    void leadingNumber_data() {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("expected");
        ForEachSystem<QString, double>({{"hexadecimal", "&H30", 48},
                                        {"hexadecimal lower case", "&h1f", 31},
                                        {"digits then letters", "12abc", 12},
                                        {"letters", "abc", 0},
                                        {"sign and point", "-3.5x", -3.5},
                                        {"comma is no separator", "1,5", 1},
                                        {"second point stops", "1.2.3", 1.2},
                                        {"double sign", "--5", 0},
                                        {"blanks inside are passed over", "1 2", 12}});
    }
    void leadingNumber() {
        QFETCH(QLocale, locale);
        QFETCH(QString, text);
        LocaleScope scope(locale);
        QTEST(LeadingNumber(text), "expected");
    }

    // 0 stands for "no value" in both integer tables.
    void leadingInteger_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("expected");
        Row("tie to even down", "2.5", 2);
        Row("tie to even up", "3.5", 4);
        Row("smallest", "-2147483648", int(std::numeric_limits<int32_t>::min()));
        Row("above largest", "2147483648", 0);
        Row("below smallest", "-2147483649", 0);
    }
    void leadingInteger() {
        QFETCH(QString, text);
        QFETCH(int, expected);
        const auto value = LeadingInteger(text);
        QCOMPARE(value.has_value(), expected != 0);
        QCOMPARE(value.value_or(0), expected);
    }

    void strictInteger_data() {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("expected");
        ForEachSystem<QString, int>({{"blanks around", "  42 ", 42},
                                     {"largest", "32767", 32767},
                                     {"smallest", "-32768", -32768},
                                     {"above 16 bits", "32768", 0},
                                     {"below 16 bits", "-32769", 0},
                                     {"tie to even down", "2.5", 2}, // "." stands for the system's separator
                                     {"tie to even up", "3.5", 4},
                                     {"rounds beyond 16 bits", "32767.5", 0},
                                     {"rounds onto smallest", "-32768.5", -32768},
                                     {"hexadecimal", "&H10", 16},
                                     {"empty", "", 0},
                                     {"trailing letters", "12abc", 0},
                                     {"blank inside", "1 2", 0}});
    }
    void strictInteger() {
        QFETCH(QLocale, locale);
        QFETCH(QString, text);
        QFETCH(int, expected);
        LocaleScope scope(locale);
        const auto value = StrictInteger(text.replace(u'.', locale.decimalPoint()));
        QCOMPARE(value.has_value(), expected != 0);
        QCOMPARE(int(value.value_or(0)), expected);
    }

    void numberText() {
        QCOMPARE(NumberText(0), QStringLiteral(" 0"));
        QCOMPARE(NumberText(-1), QStringLiteral("-1"));
        QCOMPARE(NumberText(5000000000), QStringLiteral(" 5000000000"));
    }

    void tokens() {
        QCOMPARE(EscBytesToTokens(Esc + QStringLiteral("|2Cab") + Esc), QStringLiteral("[ESC]|2Cab[ESC]"));
        QCOMPARE(EscBytesToTokens(QStringLiteral("a\r\nb")), QStringLiteral("a\r\nb"));
        QCOMPARE(CrLfToTokens(QStringLiteral("a\r\nb")), QStringLiteral("a[CR][LF]b"));
        QCOMPARE(CrLfToTokens(QStringLiteral("\n\r") + Esc), QStringLiteral("[LF][CR]") + Esc);
        QCOMPARE(EscTokensToBytes(QStringLiteral("[ESC]|1C[ESC]x")),
                 Esc + QStringLiteral("|1C") + Esc + u'x');
        QCOMPARE(EscTokensToBytes(QStringLiteral("[esc]|1C")), QStringLiteral("[esc]|1C"));
        QCOMPARE(EscTokensToBytes(QStringLiteral("[[ESC]ESC]")), u'[' + Esc + QStringLiteral("ESC]"));
    }

    // Without a handler installed, boxes answer on their own and pickers pick nothing.
    void seamDefaults() {
        const auto previousBox = SetMessageBoxHandler({});
        QCOMPARE(ShowMessage(QStringLiteral("box"), MsgButtons::Ok), MsgResult::Ok);
        QCOMPARE(ShowMessage(QStringLiteral("box"), MsgButtons::OkCancel), MsgResult::Ok);
        QCOMPARE(ShowMessage(QStringLiteral("box"), MsgButtons::RetryCancel), MsgResult::Cancel);
        QCOMPARE(ShowMessage(QStringLiteral("box"), MsgButtons::YesNo), MsgResult::No);
        SetMessageBoxHandler(previousBox);

        const auto previous = SetFilePickerHandlers({});
        QVERIFY(PickFolder(QStringLiteral("/tmp"), nullptr, QStringLiteral("t")).isEmpty());
        QVERIFY(PickOpenFile(nullptr, QStringLiteral("*.oposcmd"), QStringLiteral("t"), {}).isEmpty());
        QVERIFY(PickSaveFile(nullptr, QStringLiteral("*.log"), {}, {}).isEmpty());
        SetFilePickerHandlers(previous);
    }

    void escStrings() {
        InitEscStrings();
        QCOMPARE(EscString(1), Esc + QStringLiteral("|1C"));
        QCOMPARE(EscStringEffect(1), QStringLiteral("Normal Mode"));
        QCOMPARE(EscString(4), Esc + QStringLiteral("|5C"));
        QCOMPARE(EscStringEffect(4), QStringLiteral("Half Height"));
        QCOMPARE(EscString(8), Esc + QStringLiteral("|rA"));
        QCOMPARE(EscStringEffect(8), QStringLiteral("Right Just"));
        QVERIFY(EscString(0).isEmpty() && EscString(9).isEmpty() && EscStringEffect(9).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestTools)
#include "tst_tools.moc"
