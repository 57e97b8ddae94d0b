#pragma once

#include <QString>

#include <cstdint>
#include <optional>

class QBoxLayout;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QWidget;

// Small helpers shared by the operator panels: building named controls and reading them the
// way the old text boxes gave them.
namespace panel {

// A button, line edit or label whose objectName is its member name.
QPushButton* Button(QWidget* parent, const char* name, const QString& caption);
QLineEdit* LineEdit(QWidget* parent, const char* name, const QString& text = {});
QPlainTextEdit* MultiLine(QWidget* parent, const char* name, const QString& text = {});
QLabel* Label(QWidget* parent, const QString& caption, const char* name = nullptr);

// A multi-line box's text with its line ends as CR LF, as the printer and the log expect them.
QString MultiLineText(const QPlainTextEdit* box);

// An amount (ten-thousandths) rounded to a whole number, ties to the even neighbour; nullopt
// when the whole number does not fit 32 bits.
std::optional<int32_t> AmountToWhole(int64_t amount);

// Today as "DDMMYYYY" and now as "DDMMYYYYhhmm".
QString TodayDigits();
QString NowDigits();

} // namespace panel
