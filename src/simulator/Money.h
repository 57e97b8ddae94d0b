#pragma once

#include "OposTypes.h"

#include <QString>
#include <QStringView>

namespace sim {

// The most the printer takes as one amount and as a receipt total: 99,999,999.99.
inline constexpr Amount kMaxAmount = Amount{9'999'999'999} * 100;
// Percentages are held like amounts: 25.00 is 25 %; at most 100 %.
inline constexpr Amount kMaxPercent = 100 * AmountScale;
// Width of a printed line in characters.
inline constexpr int kLineWidth = 46;

// Round to whole hundredths, halves away from zero: the printer's own precision. Saturates at the
// ends of the 64-bit range instead of overflowing.
Amount RoundToCents(Amount a);
// num / den rounded half away from zero; den > 0.
Amount RoundDiv(__int128 num, __int128 den);
// An amount the printer can hold: above zero and at most kMaxAmount.
inline bool InRange(Amount a) {
    return a > 0 && a <= kMaxAmount;
}

// Whole hundredths as decimal text: 25.00 gives "2500".
QString CentsText(Amount a);
// The printed form: "25,00", "-3,50", "1234567,89".
QString MoneyText(Amount a);
// One printed line of `width` characters: the label on the left (cut to leave one blank), the
// money on the right.
QString MoneyLine(QStringView label, Amount amount, int width = kLineWidth);
// A VAT rate held in hundredths of a percent as printed: 2200 gives "22,00%".
QString PercentText(int32_t hundredths);

} // namespace sim
