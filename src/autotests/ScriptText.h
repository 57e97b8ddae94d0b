#pragma once

#include "OposTypes.h"
#include "Tools.h"

#include <QString>

#include <cstdint>

// Small pieces the scripts share, so that each script reads like the ticket it prints.
namespace AutoScripts {

// A literal followed by a number in its blank-led form: "TEST ITEM " and 6 give "TEST ITEM  6".
inline QString Numbered(const char* text, int64_t number) {
    return QLatin1StringView(text) + Tools::NumberText(number);
}

// A currency literal: 3.50_cur is 3.50 as an amount.
consteval Amount operator""_cur(long double value) {
    return static_cast<Amount>(value * AmountScale + 0.5L);
}

} // namespace AutoScripts
