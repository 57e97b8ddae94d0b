#include "FullTicketSteps.h"

#include "EscStrings.h"
#include "OposAll.h"
#include "ScriptText.h"
#include "clsFprtWrapper.h"

using namespace OposAll;

namespace AutoScripts {

namespace {
const QString Blank = QStringLiteral(" ");
const QString None;
} // namespace

void SellAdjustedItems(clsFprtWrapper& fprt, int32_t& last) {
    int16_t item = 5;
    for (int16_t i = 1; i <= item; ++i)
        last = fprt.PrintRecItem(Numbered("TEST ITEM ", i), i * 1.00_cur, 0, 1, 0.00_cur, None);
    last = fprt.PrintRecMessage(QStringLiteral("VOID ITEM"));
    last = fprt.PrintRecItemVoid(Numbered("TEST ITEM ", 5), 5.00_cur, 0, 1, 0.00_cur, None);
    last = fprt.PrintRecMessage(Blank);

    item = 6;
    last = fprt.PrintRecItem(Numbered("TEST ITEM ", item), 8.00_cur, 0, 1, 0.00_cur, None);
    last = fprt.PrintRecItemAdjustment(FPTR_AT_PERCENTAGE_DISCOUNT, QStringLiteral("Perc Discount"),
                                       25.00_cur, 1);
    item = 7;
    last = fprt.PrintRecItem(Numbered("TEST ITEM ", item), 10.00_cur, 0, 2, 0.00_cur, None);
    last = fprt.PrintRecItemAdjustment(FPTR_AT_PERCENTAGE_DISCOUNT, QStringLiteral("Perc Discount"),
                                       40.00_cur, 2);
    last = fprt.PrintRecItemAdjustmentVoid(FPTR_AT_PERCENTAGE_DISCOUNT, None, 40.00_cur, 2);
    last = fprt.PrintRecMessage(Blank);

    item = 8;
    last = fprt.PrintRecItem(Numbered("TEST ITEM ", item), 5.00_cur, 0, 5, 0.00_cur, None);
    last =
        fprt.PrintRecItemAdjustment(FPTR_AT_AMOUNT_DISCOUNT, QStringLiteral("Amount Discount"), 2.00_cur, 5);
    item = 9;
    last = fprt.PrintRecItem(Numbered("TEST ITEM ", item), 7.00_cur, 0, 5, 0.00_cur, None);
    last =
        fprt.PrintRecItemAdjustment(FPTR_AT_AMOUNT_DISCOUNT, QStringLiteral("Amount Discount"), 3.50_cur, 5);
    last = fprt.PrintRecItemAdjustmentVoid(FPTR_AT_AMOUNT_DISCOUNT, None, 3.50_cur, 5);
    last = fprt.PrintRecMessage(Blank);
}

void AdjustSubtotal(clsFprtWrapper& fprt, int32_t& last, Amount subtotal) {
    last = fprt.PrintRecSubtotal(subtotal);
    last = fprt.PrintRecMessage(Blank);
    last =
        fprt.PrintRecSubtotalAdjustment(FPTR_AT_PERCENTAGE_DISCOUNT, QStringLiteral("DISC% SBT"), 10.00_cur);
    // A subtotal adjustment can't be voided: an amount surcharge stands in for the void.
    fprt.SetPreLine(QStringLiteral("SBT VOIDDISC% NOT POSSIBLE\r\nDONE WITH AmountSurcharge"));
    last = fprt.PrintRecSubtotalAdjustment(FPTR_AT_AMOUNT_SURCHARGE, QStringLiteral("VOID DISC%"), 4.30_cur);
    last = fprt.PrintRecMessage(Blank);
    last = fprt.PrintRecSubtotalAdjustment(FPTR_AT_AMOUNT_DISCOUNT, QStringLiteral("AMOUNT DISC"), 4.00_cur);
    fprt.SetPreLine(QStringLiteral("SBT VOIDDISCAMT NOT POSSIBLE\r\nDONE WITH AmountSurcharge"));
    last = fprt.PrintRecSubtotalAdjustment(FPTR_AT_AMOUNT_SURCHARGE, QStringLiteral("VOID AMOUNT DISC"),
                                           4.00_cur);
    last = fprt.PrintRecMessage(Blank);
    last = fprt.PrintRecSubtotal(subtotal);
    last =
        fprt.PrintRecSubtotalAdjustment(FPTR_AT_AMOUNT_DISCOUNT, QStringLiteral("AMOUNT DISC SBT"), 5.00_cur);
}

void PayOnTenForms(clsFprtWrapper& fprt, int32_t& last, Amount total, Amount lastPayment) {
    const Amount payments[] = {8.00_cur, 0.50_cur, 0.50_cur, 0.60_cur, 0.70_cur,
                               0.80_cur, 0.90_cur, 0.40_cur, 0.30_cur, lastPayment};
    for (int form = 0; form < 10; ++form)
        last = fprt.PrintRecTotal(total, payments[form], QString::number(form));
}

void PrintStylesAndClose(clsFprtWrapper& fprt, int32_t& last) {
    last = fprt.PrintRecMessage(Blank);
    last = fprt.PrintRecMessage(EscString(2) + QStringLiteral("Double width"));
    last = fprt.PrintRecMessage(EscString(3) + QStringLiteral("Double height"));
    last = fprt.PrintRecMessage(EscString(4) + QStringLiteral("Half height"));
    last = fprt.PrintRecMessage(EscString(5) + QStringLiteral("Framed text"));
    last = fprt.PrintRecMessage(Blank);

    // Only the last message decides: every earlier result has been overwritten.
    if (last != 0)
        fprt.PrintRecVoid(QStringLiteral("PrintRecTotal FAILURE"));
    else
        fprt.EndFiscalReceipt(false);
}

} // namespace AutoScripts
