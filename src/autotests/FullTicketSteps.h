#pragma once

#include "OposTypes.h"

#include <cstdint>

class clsFprtWrapper;

// The stretches that the full fiscal ticket and the full credit note print alike. Each call's
// result goes into `last`, the scripts' one last-result slot.
namespace AutoScripts {

// Items 1 to 5 with the void of item 5, then items 6 to 9 with their adjustments and voids.
void SellAdjustedItems(clsFprtWrapper& fprt, int32_t& last);
// The subtotal, its percentage and amount discounts with the surcharges that stand in for their
// voids, the subtotal again and a last amount discount.
void AdjustSubtotal(clsFprtWrapper& fprt, int32_t& last, Amount subtotal);
// Payments on the ten forms "0" to "9"; the last form pays `lastPayment`.
void PayOnTenForms(clsFprtWrapper& fprt, int32_t& last, Amount total, Amount lastPayment);
// The four print styles between blank lines, then the close that only the last message decides.
void PrintStylesAndClose(clsFprtWrapper& fprt, int32_t& last);

} // namespace AutoScripts
