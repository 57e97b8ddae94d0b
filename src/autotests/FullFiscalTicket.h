#pragma once

class clsFprtWrapper;

namespace AutoScripts {

// One fixed fiscal ticket through the whole sale side of the device: items and their voids,
// percentage and amount adjustments and their voids, refunds, messages, pre and post lines,
// subtotal adjustments, a not-paid amount, ten payments and the four print styles. No step
// stops the ticket; only the last message decides between closing and voiding it.
void PrintFullFiscalTicket(clsFprtWrapper& fprt);

} // namespace AutoScripts
