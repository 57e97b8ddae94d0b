#pragma once

class clsFprtWrapper;

namespace AutoScripts {

// The full fiscal ticket as a credit note: receipt type 7 with the return document's number in
// the pre line, no refunds and no not-paid amount. The receipt type goes back to sales (4) at the
// end, whichever way the note closed.
void PrintFullCreditNote(clsFprtWrapper& fprt);

} // namespace AutoScripts
