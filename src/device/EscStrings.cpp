#include "EscStrings.h"

#include <array>

namespace {

struct EscRow {
    const char* token;
    const char* effect;
};

constexpr std::array<EscRow, EscStringCount> Rows{{
    {"|1C", "Normal Mode"},
    {"|2C", "Double Width"},
    {"|3C", "Double Height"},
    {"|5C", "Half Height"},
    {"|6C", "Boxed Text"},
    {"|cA", "Center Just"},
    {"|lA", "Left Just"},
    {"|rA", "Right Just"},
}};

std::array<QString, EscStringCount>& Strings() {
    static std::array<QString, EscStringCount> strings;
    return strings;
}

bool& Built() {
    static bool built = false;
    return built;
}

bool InRange(int n) {
    return n >= 1 && n <= EscStringCount;
}

} // namespace

void InitEscStrings() {
    auto& strings = Strings();
    for (int i = 0; i < EscStringCount; ++i)
        strings[i] = QString(QChar(27)) + QLatin1StringView(Rows[i].token);
    Built() = true;
}

const QString& EscString(int n) {
    static const QString none;
    if (!InRange(n))
        return none;
    if (!Built())
        InitEscStrings();
    return Strings()[n - 1];
}

QString EscStringEffect(int n) {
    return InRange(n) ? QString::fromLatin1(Rows[n - 1].effect) : QString();
}
