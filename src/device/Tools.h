#pragma once

#include "OposTypes.h"

#include <QString>

#include <cstdint>
#include <optional>

// The stateless routines that every part of the bench shares: names of codes and states and
// conversions between typed text and values.
namespace Tools {

// Names of codes and states. Pure functions; unknown values get the tables' fallbacks.
QString ResultCodeName(int32_t code);
QString ResultCodeExtendedName(int32_t code);
QString AdjustmentTypeName(int32_t type);
QString StateName(int32_t state);
QString PrinterStateName(int32_t state);
QString DirectIOCommandName(int32_t command);

// An amount as it stands in macro and log lines: point, two decimals, half away from zero.
QString AmountToText(Amount value);
// The same text, and a number as plain decimal, appended in place: lines of the log are built in
// one piece.
void AppendAmountText(QString& out, Amount value);
void AppendLongText(QString& out, int64_t value);

QString EscBytesToTokens(const QString& text);
QString CrLfToTokens(const QString& text);
QString EscTokensToBytes(const QString& text);

// Reads an amount the operator typed, with a point or a comma, by the default locale's rules.
// Rewrites `text` to the locale's separator. On failure shows "Bad Format for ...returning 0"
// and gives 0.
Amount TextToAmount(QString& text);

// The number at the start of a text (point as separator, "&H" for hexadecimal); 0 when none.
double LeadingNumber(QStringView text);
// LeadingNumber rounded half to even; nullopt when it does not fit 32 bits, so the caller can
// skip its device call.
std::optional<int32_t> LeadingInteger(QStringView text);
// The whole text as a number, rounded half to even; nullopt when it can't be read or does not
// fit 16 bits: the caller then sends nothing.
std::optional<int16_t> StrictInteger(const QString& text);

// " 5", "-1", " 0": a blank where a positive number's sign would stand.
QString NumberText(int64_t value);

// Where the files the bench ships (nftest.bmp, the sample macro) are, without a trailing
// separator: the folder of the running program in a build, and the data folder that an install
// puts beside the programs' folder (../share/fpubench) once installed.
QString AppFolder();
// The same for a program in `programFolder`.
QString AppFolderFor(const QString& programFolder);

} // namespace Tools
