#include "Tools.h"

#include "Seams.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <string>

namespace Tools {

namespace {

struct NamedValue {
    int32_t value;
    QStringView name;
};

// The names are static UTF-16 text: a name handed out costs no allocation, which counts on a
// path that runs for every logged call.
QString Static(QStringView text) {
    return QString::fromRawData(text.data(), text.size());
}

template <size_t N> QString Lookup(const NamedValue (&table)[N], int32_t value, QStringView fallback) {
    for (const auto& row : table)
        if (row.value == value)
            return Static(row.name);
    return Static(fallback);
}

constexpr NamedValue ResultCodes[] = {
    {0, u"OposSuccess"},      {101, u"OposEClosed"},   {102, u"OposEClaimed"},  {103, u"OposENotclaimed"},
    {104, u"OposENoservice"}, {105, u"OposEDisabled"}, {106, u"OposEIllegal"},  {107, u"OposENohardware"},
    {108, u"OposEOffline"},   {109, u"OposENoexist"},  {110, u"OposEExists"},   {111, u"OposEFailure"},
    {112, u"OposETimeout"},   {113, u"OposEBusy"},     {114, u"OposEExtended"}, {115, u"OposEDeprecated"},
};

constexpr NamedValue ExtendedCodes[] = {
    {201, u"OposEfptrCoverOpen"},
    {202, u"OposEfptrJrnEmpty"},
    {203, u"OposEfptrRecEmpty"},
    {204, u"OposEfptrSlpEmpty"},
    {205, u"OposEfptrSlpForm"},
    {206, u"OposEfptrMissingDevices"},
    {207, u"OposEfptrWrongState"},
    {208, u"OposEfptrTechnicalAssistance"},
    {209, u"OposEfptrClockError"},
    {210, u"OposEfptrFiscalMemoryFull"},
    {211, u"OposEfptrFiscalMemoryDisconnected"},
    {212, u"OposEfptrFiscalTotalsError"},
    {213, u"OposEfptrBadItemQuantity"},
    {214, u"OposEfptrBadItemAmount"},
    {215, u"OposEfptrBadItemDescription"},
    {216, u"OposEfptrReceiptTotalOverflow"},
    {217, u"OposEfptrBadVat"},
    {218, u"OposEfptrBadPrice"},
    {219, u"OposEfptrBadDate"},
    {220, u"OposEfptrNegativeTotal"},
    {221, u"OposEfptrWordNotAllowed"},
    {222, u"OposEfptrBadLength"},
    {223, u"OposEfptrMissingSetCurrency"},
};

constexpr NamedValue AdjustmentTypes[] = {
    {1, u"FPTR_AT_AMOUNT_DISCOUNT"},
    {2, u"FPTR_AT_AMOUNT_SURCHARGE"},
    {3, u"FPTR_AT_PERCENTAGE_DISCOUNT"},
    {4, u"FPTR_AT_PERCENTAGE_SURCHARGE"},
};

constexpr NamedValue States[] = {
    {1, u"OPOS_S_CLOSED"},
    {2, u"OPOS_S_IDLE"},
    {3, u"OPOS_S_BUSY"},
    {4, u"OPOS_S_ERROR"},
};

constexpr NamedValue PrinterStates[] = {
    {0, u"UNKNOWN!!! "},
    {1, u"FPTR_PS_MONITOR"},
    {2, u"FPTR_PS_FISCAL_RECEIPT"},
    {3, u"FPTR_PS_FISCAL_RECEIPT_TOTAL"},
    {4, u"FPTR_PS_FISCAL_RECEIPT_ENDING"},
    {5, u"FPTR_PS_FISCAL_DOCUMENT"},
    {6, u"FPTR_PS_FIXED_OUTPUT"},
    {7, u"FPTR_PS_ITEM_LIST"},
    {8, u"FPTR_PS_LOCKED"},
    {9, u"FPTR_PS_NONFISCAL"},
    {10, u"FPTR_PS_REPORT"},
};

constexpr NamedValue DirectIOCommands[] = {
    {1000, u"DIRECTIO_FPTR_DRAWER_OPEN"},
    {1001, u"DIRECTIO_FPTR_DRAWER_GET"},
    {1002, u"DIRECTIO_FPTR_DRAWER_WAIT"},
    {1100, u"DIRECTIO_FPTR_BMPLOAD"},
    {1101, u"DIRECTIO_FPTR_BMPPRINT"},
    {1102, u"DIRECTIO_FPTR_BMPERASE"},
    {1200, u"DIRECTIO_FPTR_BARCODEPRINT"},
    {1300, u"DIRECTIO_FPTR_DY_SETMODE"},
    {1301, u"DIRECTIO_FPTR_DY_CLEAR"},
    {1302, u"DIRECTIO_FPTR_DY_PRINTTEXT"},
    {1303, u"DIRECTIO_FPTR_DY_BMPLOAD"},
    {1304, u"DIRECTIO_FPTR_DY_BMPERASE"},
    {1305, u"DIRECTIO_FPTR_DY_BMPSHOW"},
    {1306, u"DIRECTIO_FPTR_DY_BMPNOW"},
    {1307, u"DIRECTIO_FPTR_DY_SBYTEXT"},
    {1308, u"DIRECTIO_FPTR_DY_SBYBMP"},
    {1400, u"DIRECTIO_FPTR_CREDITNOTE_BEGIN"},
    {1401, u"DIRECTIO_FPTR_CREDITNOTE_END"},
    {1500, u"DIRECTIO_FPTR_REPORT_EJ"},
    {1501, u"DIRECTIO_FPTR_REPORT_X"},
    {1502, u"DIRECTIO_FPTR_REPORT_REQUEST"},
    {1600, u"DIRECTIO_FPTR_RESET_TOTALIZERS"},
    {9000, u"DIRECTIO_FPTR_SIMULATE_KEYBOARD"},
    {9001, u"DIRECTIO_FPTR_DEPARTMENTCFG"},
    {9002, u"DIRECTIO_FPTR_GETVIRTUALTICKET"},
    {9003, u"DIRECTIO_FPTR_SETPOLLINGTIME"},
    {9999, u"DIRECTIO_FPTR_DEBUG"},
};

bool IsBlank(QChar c) {
    return c == u' ' || c == u'\t';
}

int DigitValue(QChar c) {
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    return -1;
}

int HexValue(QChar c) {
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return -1;
}

// Reads "&Hxxxx" (the prefix already at `pos`); nullopt when no hex digit follows.
std::optional<double> ReadHex(QStringView text, qsizetype pos) {
    double value = 0;
    bool any = false;
    for (qsizetype i = pos + 2; i < text.size(); ++i) {
        const int d = HexValue(text.at(i));
        if (d < 0)
            break;
        value = value * 16 + d;
        any = true;
    }
    if (!any)
        return std::nullopt;
    return value;
}

bool StartsWithHexPrefix(QStringView text, qsizetype pos) {
    return pos + 1 < text.size() && text.at(pos) == u'&' &&
           (text.at(pos + 1) == u'H' || text.at(pos + 1) == u'h');
}

// What the default locale's number rules need, learnt once per locale: formatting a test number
// for every amount typed or replayed would cost more than the rest of the conversion.
struct LocaleNumbers {
    QLocale locale;
    bool writesPoint = true;
    QString decimal;
    QString minus;
    QString plus;
};

const LocaleNumbers& CurrentNumbers() {
    thread_local std::optional<LocaleNumbers> cached;
    const QLocale current;
    if (!cached || cached->locale != current) {
        QLocale probe = current;
        probe.setNumberOptions(QLocale::OmitGroupSeparator);
        const bool point = probe.toString(1000.55, 'f', 2).contains(QLatin1StringView(".55"));
        cached = LocaleNumbers{current, point, current.decimalPoint(), current.negativeSign(),
                               current.positiveSign()};
    }
    return *cached;
}

// Decimal text to ten-thousandths, exactly. Blanks may stand around the number only.
std::optional<Amount> ParseAmount(QStringView text, const LocaleNumbers& numbers) {
    const QStringView t = text.trimmed();
    const QString& sep = numbers.decimal;
    const QString& minus = numbers.minus;
    const QString& plus = numbers.plus;

    qsizetype i = 0;
    bool negative = false;
    if (t.startsWith(u'-') || (!minus.isEmpty() && t.startsWith(minus))) {
        negative = true;
        i = t.startsWith(u'-') ? 1 : minus.size();
    } else if (t.startsWith(u'+') || (!plus.isEmpty() && t.startsWith(plus))) {
        i = t.startsWith(u'+') ? 1 : plus.size();
    }

    // Magnitude in ten-thousandths; 2^63 is still allowed for the most negative amount.
    constexpr uint64_t limit = uint64_t(std::numeric_limits<int64_t>::max()) + 1;
    uint64_t whole = 0;
    int digits = 0;
    bool overflow = false;
    for (; i < t.size() && DigitValue(t.at(i)) >= 0; ++i, ++digits) {
        if (__builtin_mul_overflow(whole, 10u, &whole) ||
            __builtin_add_overflow(whole, DigitValue(t.at(i)), &whole))
            overflow = true;
    }
    uint64_t fraction = 0; // the first four decimals
    int fractionDigits = 0;
    bool roundUp = false;
    if (i < t.size() && !sep.isEmpty() && t.mid(i).startsWith(sep)) {
        i += sep.size();
        for (; i < t.size() && DigitValue(t.at(i)) >= 0; ++i, ++digits) {
            if (fractionDigits < 4) {
                fraction = fraction * 10 + DigitValue(t.at(i));
                ++fractionDigits;
            } else if (fractionDigits == 4) {
                roundUp = DigitValue(t.at(i)) >= 5;
                ++fractionDigits;
            }
        }
    }
    if (i != t.size() || digits == 0 || overflow)
        return std::nullopt;
    for (; fractionDigits < 4; ++fractionDigits)
        fraction *= 10;

    uint64_t magnitude = 0;
    if (__builtin_mul_overflow(whole, uint64_t(AmountScale), &magnitude) ||
        __builtin_add_overflow(magnitude, fraction + (roundUp ? 1 : 0), &magnitude))
        return std::nullopt;
    if (magnitude > limit || (!negative && magnitude == limit))
        return std::nullopt;
    if (negative)
        return magnitude == limit ? std::numeric_limits<int64_t>::min() : -int64_t(magnitude);
    return int64_t(magnitude);
}

// Writes the decimal digits of `value` before `end` and returns where they begin.
char16_t* WriteDigits(char16_t* end, uint64_t value) {
    do {
        *--end = char16_t(u'0' + value % 10);
        value /= 10;
    } while (value != 0);
    return end;
}

} // namespace

QString ResultCodeName(int32_t code) {
    return Lookup(ResultCodes, code, u"Opos#undefined#");
}
QString ResultCodeExtendedName(int32_t code) {
    return Lookup(ExtendedCodes, code, u"");
}
QString AdjustmentTypeName(int32_t type) {
    return Lookup(AdjustmentTypes, type, u"INVALID AdjutmentType");
}
QString StateName(int32_t state) {
    return Lookup(States, state, u"STATE OUT OF RANGE");
}
QString PrinterStateName(int32_t state) {
    return Lookup(PrinterStates, state, u"");
}
QString DirectIOCommandName(int32_t command) {
    return Lookup(DirectIOCommands, command, u"UNDEFINED DIRECTIO COMMAND");
}

void AppendAmountText(QString& out, Amount value) {
    const bool negative = value < 0;
    // Unsigned, so that the most negative amount has a magnitude too.
    const uint64_t magnitude = negative ? uint64_t(0) - uint64_t(value) : uint64_t(value);
    const uint64_t cents = magnitude / 100 + (magnitude % 100 >= 50 ? 1 : 0);
    char16_t buffer[32];
    char16_t* const end = buffer + std::size(buffer);
    char16_t* p = end;
    *--p = char16_t(u'0' + cents % 10);
    *--p = char16_t(u'0' + cents / 10 % 10);
    *--p = u'.';
    p = WriteDigits(p, cents / 100);
    if (negative && cents != 0)
        *--p = u'-';
    out.append(reinterpret_cast<const QChar*>(p), end - p);
}

void AppendLongText(QString& out, int64_t value) {
    const bool negative = value < 0;
    char16_t buffer[24];
    char16_t* const end = buffer + std::size(buffer);
    char16_t* p = WriteDigits(end, negative ? uint64_t(0) - uint64_t(value) : uint64_t(value));
    if (negative)
        *--p = u'-';
    out.append(reinterpret_cast<const QChar*>(p), end - p);
}

QString AmountToText(Amount value) {
    QString text;
    text.reserve(24);
    AppendAmountText(text, value);
    return text;
}

QString EscBytesToTokens(const QString& text) {
    QString out = text;
    out.replace(QChar(27), QLatin1StringView("[ESC]"));
    return out;
}

QString CrLfToTokens(const QString& text) {
    QString out = text;
    out.replace(QChar(13), QLatin1StringView("[CR]"));
    out.replace(QChar(10), QLatin1StringView("[LF]"));
    return out;
}

QString EscTokensToBytes(const QString& text) {
    // One pass is enough: the character put in place can never complete a new token.
    QString out = text;
    out.replace(QLatin1StringView("[ESC]"), QString(QChar(27)), Qt::CaseSensitive);
    return out;
}

Amount TextToAmount(QString& text) {
    const LocaleNumbers& numbers = CurrentNumbers();
    if (numbers.writesPoint) {
        const qsizetype at = text.indexOf(u',');
        if (at >= 0)
            text[at] = u'.';
    } else {
        const qsizetype at = text.indexOf(u'.');
        if (at >= 0)
            text[at] = u',';
    }
    if (const auto value = ParseAmount(text, numbers))
        return *value;
    ShowMessage(QStringLiteral("Bad Format for ") + text + QStringLiteral("...returning 0"), MsgButtons::Ok);
    return 0;
}

double LeadingNumber(QStringView text) {
    qsizetype i = 0;
    while (i < text.size() && IsBlank(text.at(i)))
        ++i;
    if (StartsWithHexPrefix(text, i))
        return ReadHex(text, i).value_or(0.0);

    // Blanks inside the number are passed over, as the old basic readers did.
    std::string ascii;
    if (i < text.size() && (text.at(i) == u'-' || text.at(i) == u'+')) {
        if (text.at(i) == u'-')
            ascii += '-';
        ++i;
    }
    bool point = false;
    bool digits = false;
    for (; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (IsBlank(c))
            continue;
        if (DigitValue(c) >= 0) {
            ascii += char(c.unicode());
            digits = true;
        } else if (c == u'.' && !point) {
            ascii += '.';
            point = true;
        } else {
            break;
        }
    }
    if (!digits)
        return 0.0;
    double value = 0.0;
    const char* first = ascii.data();
    const auto [end, ec] = std::from_chars(first, first + ascii.size(), value);
    if (ec == std::errc::result_out_of_range) {
        // Either too large or too small for a double; only the whole part tells which.
        const std::string whole = ascii.substr(0, ascii.find('.'));
        if (whole.find_first_not_of("-0") == std::string::npos)
            return 0.0;
        const double inf = std::numeric_limits<double>::infinity();
        return ascii.front() == '-' ? -inf : inf;
    }
    return ec == std::errc() ? value : 0.0;
}

std::optional<int32_t> LeadingInteger(QStringView text) {
    const double rounded = std::nearbyint(LeadingNumber(text));
    if (!std::isfinite(rounded) || rounded < -2147483648.0 || rounded > 2147483647.0)
        return std::nullopt;
    return static_cast<int32_t>(rounded);
}

std::optional<int16_t> StrictInteger(const QString& text) {
    const QString t = text.trimmed();
    if (t.isEmpty())
        return std::nullopt;
    double value = 0;
    bool ok = false;
    if (StartsWithHexPrefix(t, 0)) {
        const auto hex = ReadHex(t, 0);
        // The hex digits must run to the end of the text.
        ok = hex.has_value() && std::all_of(t.begin() + 2, t.end(), [](QChar c) { return HexValue(c) >= 0; });
        value = hex.value_or(0);
    } else {
        value = QLocale().toDouble(t, &ok);
    }
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    const double rounded = std::nearbyint(value);
    if (rounded < -32768.0 || rounded > 32767.0)
        return std::nullopt;
    return static_cast<int16_t>(rounded);
}

QString NumberText(int64_t value) {
    return value < 0 ? QString::number(value) : QStringLiteral(" ") + QString::number(value);
}

QString AppFolderFor(const QString& programFolder) {
    const QString installed =
        QDir::cleanPath(programFolder + QLatin1Char('/') + QStringLiteral(FPU_DATA_FROM_BIN));
    return QFileInfo(installed).isDir() ? installed : programFolder;
}

QString AppFolder() {
    if (QCoreApplication::instance())
        return AppFolderFor(QCoreApplication::applicationDirPath());
    const QFileInfo exe(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath());
    return AppFolderFor(exe.absolutePath());
}

} // namespace Tools
