// The text-to-number conversions, on a system that writes a point and on one that writes a comma,
// held to what they promise: the one separator swapped in the caller's text, amounts that come back
// from their own text, leading numbers that stop where the number stops, tokens that come and go.

#include "FuzzSupport.h"

#include "DebugCommand.h"
#include "Money.h"
#include "Tools.h"

#include <QLocale>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {

// Ten-thousandths rounded to whole hundredths, halves away from zero.
Amount ToCents(Amount a) {
    const Amount magnitude = a < 0 ? -a : a;
    const Amount rounded = (magnitude + 50) / 100 * 100;
    return a < 0 ? -rounded : rounded;
}

bool SameNumber(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || a == b;
}

void Amounts(const QString& text, bool writesPoint) {
    QString typed = text;
    const Amount amount = Tools::TextToAmount(typed);
    // Only the first separator of the other kind is swapped.
    QString expected = text;
    const qsizetype at = expected.indexOf(writesPoint ? u',' : u'.');
    if (at >= 0)
        expected[at] = writesPoint ? u'.' : u',';
    if (typed != expected)
        fuzz::Fail("TextToAmount changed the text beyond its separator", text);
    // With one separator at most, which one it is makes no difference.
    if (text.count(u'.') + text.count(u',') <= 1) {
        QString other = text;
        other.replace(u',', u'.');
        if (Tools::TextToAmount(other) != amount)
            fuzz::Fail("TextToAmount reads a point and a comma apart", text);
    }
    // What an amount writes reads back as that amount to the cent.
    if (amount > std::numeric_limits<Amount>::min() + 100 &&
        amount < std::numeric_limits<Amount>::max() - 100) {
        QString written = Tools::AmountToText(amount);
        if (Tools::TextToAmount(written) != ToCents(amount))
            fuzz::Fail("AmountToText does not read back", text);
    }
}

void Numbers(const QString& text) {
    const double leading = Tools::LeadingNumber(text);
    if (std::isnan(leading))
        fuzz::Fail("LeadingNumber gave NaN", text);
    // Reading stops at the first character that can't continue a number.
    if (!SameNumber(Tools::LeadingNumber(text + QStringLiteral("xyz")), leading))
        fuzz::Fail("LeadingNumber read beyond the number", text);
    const auto integer = Tools::LeadingInteger(text);
    const double rounded = std::nearbyint(leading);
    if (integer.has_value() != (rounded >= -2147483648.0 && rounded <= 2147483647.0) ||
        (integer && *integer != rounded))
        fuzz::Fail("LeadingInteger is not LeadingNumber rounded to 32 bits", text);
    if (const auto strict = Tools::StrictInteger(text)) {
        if (Tools::StrictInteger(QStringLiteral(" ") + text + QStringLiteral("\t")) != strict)
            fuzz::Fail("StrictInteger minds blanks around", text);
        if (Tools::StrictInteger(QString::number(*strict)) != strict)
            fuzz::Fail("StrictInteger does not read its own number", text);
    }
}

void Tokens(const QString& text) {
    const QString esc(QChar(27));
    if (Tools::EscTokensToBytes(text).contains(QStringLiteral("[ESC]")))
        fuzz::Fail("an [ESC] token is left", text);
    if (Tools::EscBytesToTokens(text).contains(esc))
        fuzz::Fail("an Esc character is left", text);
    const QString crlf = Tools::CrLfToTokens(text);
    if (crlf.contains(QChar(13)) || crlf.contains(QChar(10)))
        fuzz::Fail("a line break is left", text);
    if (!text.contains(QStringLiteral("[ESC]")) &&
        Tools::EscTokensToBytes(Tools::EscBytesToTokens(text)) != text)
        fuzz::Fail("Esc tokens do not come back as they went", text);
}

// Eight input bytes as one value for the routines that go from a number to text.
void FromNumbers(int64_t value, bool writesPoint) {
    const QString numberText = Tools::NumberText(value);
    if (!(numberText.startsWith(u' ') || numberText.startsWith(u'-')))
        fuzz::Fail("NumberText has no sign place", numberText);
    if (std::llabs(value) <= (int64_t{1} << 53) && Tools::LeadingNumber(numberText) != double(value))
        fuzz::Fail("NumberText does not read back", numberText);
    if (value >= -sim::kMaxAmount && value <= sim::kMaxAmount) {
        if (sim::CentsText(value).toLongLong() * 100 != sim::RoundToCents(value))
            fuzz::Fail("CentsText is not the hundredths", sim::CentsText(value));
        QString printed = sim::MoneyText(value);
        if (!writesPoint && Tools::TextToAmount(printed) != sim::RoundToCents(value))
            fuzz::Fail("MoneyText does not read back", printed);
        if (sim::MoneyLine(QStringLiteral("TOTALE"), value).size() != sim::kLineWidth)
            fuzz::Fail("a money line is not one line wide", sim::MoneyText(value));
    }
}

void SimulatorCommand(const QString& text) {
    const auto command = sim::ParseDebugCommand(text);
    if (!command)
        return;
    using K = sim::DebugCommand::Kind;
    constexpr qint64 century = qint64{36525} * 24 * 3600;
    if ((command->kind == K::Fail &&
         (command->code < 101 || command->code > 115 || !sim::IsFailableName(command->method) ||
          (command->extended != 0 && (command->code != 114 || command->extended > 9999)))) ||
        (command->kind == K::Clock && (command->seconds < 0 || command->seconds > century)) ||
        (command->kind == K::PrintTime && (command->ms < 0 || command->ms > 5000)))
        fuzz::Fail("a simulator command out of its range was taken", text);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::Init();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString text =
        fuzz::Text(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    int64_t value = 0;
    std::memcpy(&value, data, std::min(size, sizeof value));
    for (const QLocale& system :
         {QLocale(QLocale::English, QLocale::UnitedStates), QLocale(QLocale::Italian, QLocale::Italy)}) {
        QLocale::setDefault(system);
        const bool writesPoint = system.decimalPoint() == QStringLiteral(".");
        Amounts(text, writesPoint);
        Numbers(text);
        FromNumbers(value, writesPoint);
    }
    Tokens(text);
    SimulatorCommand(text);
    return 0;
}
