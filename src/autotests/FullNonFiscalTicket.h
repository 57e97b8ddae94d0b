#pragma once

#include "NonFiscalTicket.h"

#include <QString>

class clsFprtWrapper;

namespace AutoScripts {

// Where the full non-fiscal ticket takes its bitmap from: nftest.bmp beside the program.
QString NonFiscalBitmapPath();

// The non-fiscal ticket after getting the printer ready for it: an open fiscal day is closed
// with a Z report, and nftest.bmp is loaded as bitmap 1. A refused load gets one more Z report
// and one more load, whose result is passed over.
void PrintFullNonFiscalTicket(clsFprtWrapper& fprt, const Refresh& refresh);

} // namespace AutoScripts
