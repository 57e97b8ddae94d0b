#pragma once

#include <QString>

#include <functional>

class clsFprtWrapper;

namespace AutoScripts {

// Shows the latest result to the operator; the non-fiscal scripts run it after every call.
using Refresh = std::function<void()>;

// The text that prints a barcode: ESC "|", the length of the code with its blank, "R", the code.
// The code is the type digit followed by the digits, and the length counts both.
QString BarcodeText(const QString& code);

// The fixed non-fiscal ticket: text in each print style, five barcodes and bitmap 1, all on both
// stations. It loads nothing: bitmap 1 is whatever the printer holds.
void PrintNonFiscalTicket(clsFprtWrapper& fprt, const Refresh& refresh);

} // namespace AutoScripts
