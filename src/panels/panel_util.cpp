#include "panel_util.h"

#include <QDateTime>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include <limits>

namespace panel {

QPushButton* Button(QWidget* parent, const char* name, const QString& caption) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(QLatin1StringView(name));
    b->setAutoDefault(false);
    return b;
}

QLineEdit* LineEdit(QWidget* parent, const char* name, const QString& text) {
    auto* e = new QLineEdit(text, parent);
    e->setObjectName(QLatin1StringView(name));
    return e;
}

QPlainTextEdit* MultiLine(QWidget* parent, const char* name, const QString& text) {
    auto* e = new QPlainTextEdit(text, parent);
    e->setObjectName(QLatin1StringView(name));
    e->setTabChangesFocus(true);
    return e;
}

QLabel* Label(QWidget* parent, const QString& caption, const char* name) {
    auto* l = new QLabel(caption, parent);
    if (name)
        l->setObjectName(QLatin1StringView(name));
    return l;
}

QString MultiLineText(const QPlainTextEdit* box) {
    QString text = box->toPlainText();
    text.replace(QLatin1Char('\n'), QLatin1StringView("\r\n"));
    return text;
}

std::optional<int32_t> AmountToWhole(int64_t amount) {
    constexpr int64_t scale = 10000;
    int64_t whole = amount / scale;
    const int64_t rest = amount % scale; // carries the sign of amount
    const int64_t twice = rest < 0 ? -2 * rest : 2 * rest;
    if (twice > scale || (twice == scale && whole % 2 != 0))
        whole += amount < 0 ? -1 : 1;
    if (whole < std::numeric_limits<int32_t>::min() || whole > std::numeric_limits<int32_t>::max())
        return std::nullopt;
    return static_cast<int32_t>(whole);
}

QString TodayDigits() {
    return QDate::currentDate().toString(QStringLiteral("ddMMyyyy"));
}

QString NowDigits() {
    return QDateTime::currentDateTime().toString(QStringLiteral("ddMMyyyyHHmm"));
}

} // namespace panel
