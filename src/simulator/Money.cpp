#include "Money.h"

#include <algorithm>
#include <limits>

namespace sim {

namespace {
// Writes |cents| with a decimal comma into the end of buf; returns the first character used.
// Built by hand: this runs for every printed amount, and chained arg() calls cost a replay dearly.
char16_t* WriteMoney(char16_t* end, Amount cents) {
    const bool negative = cents < 0;
    unsigned long long v =
        negative ? 0ull - static_cast<unsigned long long>(cents) : static_cast<unsigned long long>(cents);
    char16_t* p = end;
    *--p = static_cast<char16_t>(u'0' + v % 10);
    v /= 10;
    *--p = static_cast<char16_t>(u'0' + v % 10);
    v /= 10;
    *--p = u',';
    do {
        *--p = static_cast<char16_t>(u'0' + v % 10);
        v /= 10;
    } while (v != 0);
    if (negative)
        *--p = u'-';
    return p;
}
constexpr int kMoneyBuffer = 32; // 19 digits, comma, sign
} // namespace

Amount RoundToCents(Amount a) {
    const Amount r = a % 100;
    Amount base = a - r;
    if (r >= 50)
        base = base > std::numeric_limits<Amount>::max() - 100 ? base : base + 100;
    else if (r <= -50)
        base = base < std::numeric_limits<Amount>::min() + 100 ? base : base - 100;
    return base;
}

Amount RoundDiv(__int128 num, __int128 den) {
    const __int128 q = num / den;
    const __int128 r = num % den;
    if (2 * (r < 0 ? -r : r) >= den)
        return static_cast<Amount>(num < 0 ? q - 1 : q + 1);
    return static_cast<Amount>(q);
}

QString CentsText(Amount a) {
    return QString::number(RoundToCents(a) / 100);
}

QString MoneyText(Amount a) {
    char16_t buf[kMoneyBuffer];
    char16_t* end = buf + kMoneyBuffer;
    const char16_t* begin = WriteMoney(end, RoundToCents(a) / 100);
    return QString(reinterpret_cast<const QChar*>(begin), end - begin);
}

QString MoneyLine(QStringView label, Amount amount, int width) {
    char16_t buf[kMoneyBuffer];
    char16_t* end = buf + kMoneyBuffer;
    const char16_t* money = WriteMoney(end, RoundToCents(amount) / 100);
    const qsizetype moneySize = end - money;
    const qsizetype room = width - moneySize - 1;
    const qsizetype take = room <= 0 ? 0 : (label.size() < room ? label.size() : room);
    // One allocation: blanks, the label over the start, the money over the end.
    const qsizetype size = qMax<qsizetype>(width, take + 1 + moneySize);
    QString line(size, u' ');
    QChar* out = line.data();
    std::copy(label.data(), label.data() + take, out);
    std::copy(money, static_cast<const char16_t*>(end), reinterpret_cast<char16_t*>(out + size - moneySize));
    return line;
}

QString PercentText(int32_t hundredths) {
    return MoneyText(Amount{hundredths} * 100) + u'%';
}

} // namespace sim
