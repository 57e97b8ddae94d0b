#pragma once

#include <QString>

// The eight program-wide print-control strings: the character 27 followed by a style or
// justification token. Built once at start-up and constant from then on.
inline constexpr int EscStringCount = 8;

void InitEscStrings();

// String n, 1 to 8; the empty text for any other n. Builds the strings if nobody has yet.
const QString& EscString(int n);

// What string n does to the print ("Normal Mode", "Double Width", ...); empty outside 1 to 8.
QString EscStringEffect(int n);
