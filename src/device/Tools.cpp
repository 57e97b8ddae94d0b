#include "Tools.h"

#include "Seams.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace Tools {

namespace {

struct NamedValue {
    int32_t value;
    const char* name;
};

template <size_t N> QString Lookup(const NamedValue (&table)[N], int32_t value, const char* fallback) {
    for (const auto& row : table)
        if (row.value == value)
            return QString::fromLatin1(row.name);
    return QString::fromLatin1(fallback);
}

constexpr NamedValue ResultCodes[] = {
    {0, "OposSuccess"},      {101, "OposEClosed"},   {102, "OposEClaimed"},  {103, "OposENotclaimed"},
    {104, "OposENoservice"}, {105, "OposEDisabled"}, {106, "OposEIllegal"},  {107, "OposENohardware"},
    {108, "OposEOffline"},   {109, "OposENoexist"},  {110, "OposEExists"},   {111, "OposEFailure"},
    {112, "OposETimeout"},   {113, "OposEBusy"},     {114, "OposEExtended"}, {115, "OposEDeprecated"},
};

constexpr NamedValue ExtendedCodes[] = {
    {201, "OposEfptrCoverOpen"},
    {202, "OposEfptrJrnEmpty"},
    {203, "OposEfptrRecEmpty"},
    {204, "OposEfptrSlpEmpty"},
    {205, "OposEfptrSlpForm"},
    {206, "OposEfptrMissingDevices"},
    {207, "OposEfptrWrongState"},
    {208, "OposEfptrTechnicalAssistance"},
    {209, "OposEfptrClockError"},
    {210, "OposEfptrFiscalMemoryFull"},
    {211, "OposEfptrFiscalMemoryDisconnected"},
    {212, "OposEfptrFiscalTotalsError"},
    {213, "OposEfptrBadItemQuantity"},
    {214, "OposEfptrBadItemAmount"},
    {215, "OposEfptrBadItemDescription"},
    {216, "OposEfptrReceiptTotalOverflow"},
    {217, "OposEfptrBadVat"},
    {218, "OposEfptrBadPrice"},
    {219, "OposEfptrBadDate"},
    {220, "OposEfptrNegativeTotal"},
    {221, "OposEfptrWordNotAllowed"},
    {222, "OposEfptrBadLength"},
    {223, "OposEfptrMissingSetCurrency"},
};

constexpr NamedValue AdjustmentTypes[] = {
    {1, "FPTR_AT_AMOUNT_DISCOUNT"},
    {2, "FPTR_AT_AMOUNT_SURCHARGE"},
    {3, "FPTR_AT_PERCENTAGE_DISCOUNT"},
    {4, "FPTR_AT_PERCENTAGE_SURCHARGE"},
};

constexpr NamedValue States[] = {
    {1, "OPOS_S_CLOSED"},
    {2, "OPOS_S_IDLE"},
    {3, "OPOS_S_BUSY"},
    {4, "OPOS_S_ERROR"},
};

constexpr NamedValue PrinterStates[] = {
    {0, "UNKNOWN!!! "},
    {1, "FPTR_PS_MONITOR"},
    {2, "FPTR_PS_FISCAL_RECEIPT"},
    {3, "FPTR_PS_FISCAL_RECEIPT_TOTAL"},
    {4, "FPTR_PS_FISCAL_RECEIPT_ENDING"},
    {5, "FPTR_PS_FISCAL_DOCUMENT"},
    {6, "FPTR_PS_FIXED_OUTPUT"},
    {7, "FPTR_PS_ITEM_LIST"},
    {8, "FPTR_PS_LOCKED"},
    {9, "FPTR_PS_NONFISCAL"},
    {10, "FPTR_PS_REPORT"},
};

constexpr NamedValue DirectIOCommands[] = {
    {1000, "DIRECTIO_FPTR_DRAWER_OPEN"},
    {1001, "DIRECTIO_FPTR_DRAWER_GET"},
    {1002, "DIRECTIO_FPTR_DRAWER_WAIT"},
    {1100, "DIRECTIO_FPTR_BMPLOAD"},
    {1101, "DIRECTIO_FPTR_BMPPRINT"},
    {1102, "DIRECTIO_FPTR_BMPERASE"},
    {1200, "DIRECTIO_FPTR_BARCODEPRINT"},
    {1300, "DIRECTIO_FPTR_DY_SETMODE"},
    {1301, "DIRECTIO_FPTR_DY_CLEAR"},
    {1302, "DIRECTIO_FPTR_DY_PRINTTEXT"},
    {1303, "DIRECTIO_FPTR_DY_BMPLOAD"},
    {1304, "DIRECTIO_FPTR_DY_BMPERASE"},
    {1305, "DIRECTIO_FPTR_DY_BMPSHOW"},
    {1306, "DIRECTIO_FPTR_DY_BMPNOW"},
    {1307, "DIRECTIO_FPTR_DY_SBYTEXT"},
    {1308, "DIRECTIO_FPTR_DY_SBYBMP"},
    {1400, "DIRECTIO_FPTR_CREDITNOTE_BEGIN"},
    {1401, "DIRECTIO_FPTR_CREDITNOTE_END"},
    {1500, "DIRECTIO_FPTR_REPORT_EJ"},
    {1501, "DIRECTIO_FPTR_REPORT_X"},
    {1502, "DIRECTIO_FPTR_REPORT_REQUEST"},
    {1600, "DIRECTIO_FPTR_RESET_TOTALIZERS"},
    {9000, "DIRECTIO_FPTR_SIMULATE_KEYBOARD"},
    {9001, "DIRECTIO_FPTR_DEPARTMENTCFG"},
    {9002, "DIRECTIO_FPTR_GETVIRTUALTICKET"},
    {9003, "DIRECTIO_FPTR_SETPOLLINGTIME"},
    {9999, "DIRECTIO_FPTR_DEBUG"},
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
std::optional<double> ReadHex(const QString& text, qsizetype pos) {
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

bool StartsWithHexPrefix(const QString& text, qsizetype pos) {
    return pos + 1 < text.size() && text.at(pos) == u'&' &&
           (text.at(pos + 1) == u'H' || text.at(pos + 1) == u'h');
}

// Decimal text to ten-thousandths, exactly. Blanks may stand around the number only.
std::optional<Amount> ParseAmount(const QString& text, const QLocale& locale) {
    const QString t = text.trimmed();
    const QString sep = locale.decimalPoint();
    const QString minus = locale.negativeSign();
    const QString plus = locale.positiveSign();

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
    if (i < t.size() && !sep.isEmpty() && QStringView(t).mid(i).startsWith(sep)) {
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

bool LocaleWritesPoint() {
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(1000.55, 'f', 2).contains(QLatin1StringView(".55"));
}

} // namespace

QString ResultCodeName(int32_t code) {
    return Lookup(ResultCodes, code, "Opos#undefined#");
}
QString ResultCodeExtendedName(int32_t code) {
    return Lookup(ExtendedCodes, code, "");
}
QString AdjustmentTypeName(int32_t type) {
    return Lookup(AdjustmentTypes, type, "INVALID AdjutmentType");
}
QString StateName(int32_t state) {
    return Lookup(States, state, "STATE OUT OF RANGE");
}
QString PrinterStateName(int32_t state) {
    return Lookup(PrinterStates, state, "");
}
QString DirectIOCommandName(int32_t command) {
    return Lookup(DirectIOCommands, command, "UNDEFINED DIRECTIO COMMAND");
}

QString AmountToText(Amount value) {
    const bool negative = value < 0;
    // Unsigned, so that the most negative amount has a magnitude too.
    const uint64_t magnitude = negative ? uint64_t(0) - uint64_t(value) : uint64_t(value);
    const uint64_t cents = magnitude / 100 + (magnitude % 100 >= 50 ? 1 : 0);
    QString text;
    if (negative && cents != 0)
        text += u'-';
    text += QString::number(cents / 100);
    text += u'.';
    const uint64_t rest = cents % 100;
    if (rest < 10)
        text += u'0';
    text += QString::number(rest);
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
    if (LocaleWritesPoint()) {
        const qsizetype at = text.indexOf(u',');
        if (at >= 0)
            text[at] = u'.';
    } else {
        const qsizetype at = text.indexOf(u'.');
        if (at >= 0)
            text[at] = u',';
    }
    if (const auto value = ParseAmount(text, QLocale()))
        return *value;
    ShowMessage(QStringLiteral("Bad Format for ") + text + QStringLiteral("...returning 0"), MsgButtons::Ok);
    return 0;
}

double LeadingNumber(const QString& text) {
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

std::optional<int32_t> LeadingInteger(const QString& text) {
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
