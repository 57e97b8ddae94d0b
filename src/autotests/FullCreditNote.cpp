#include "FullCreditNote.h"

#include "EscStrings.h"
#include "OposAll.h"
#include "ScriptText.h"
#include "clsFprtWrapper.h"

using namespace OposAll;

namespace AutoScripts {

void PrintFullCreditNote(clsFprtWrapper& fprt) {
    const QString blank = QStringLiteral(" ");
    const QString none;
    int16_t item = 5;
    int32_t last = 0;

    fprt.SetAdditionalHeader(QStringLiteral("Additional Text"));
    fprt.SetFiscalReceiptType(FPTR_RT_REFUND);
    fprt.SetPreLine(QStringLiteral("8953986357")); // the return document's number
    last = fprt.BeginFiscalReceipt(false);
    fprt.SetAsyncMode(false);
    for (int16_t i = 1; i <= item; ++i)
        last = fprt.PrintRecItem(Numbered("TEST ITEM ", i), i * 1.00_cur, 0, 1, 0.00_cur, none);
    last = fprt.PrintRecMessage(QStringLiteral("VOID ITEM"));
    last = fprt.PrintRecItemVoid(Numbered("TEST ITEM ", 5), 5.00_cur, 0, 1, 0.00_cur, none);
    last = fprt.PrintRecMessage(blank);

    item = 6;
    last = fprt.PrintRecItem(Numbered("TEST ITEM ", item), 8.00_cur, 0, 1, 0.00_cur, none);
    last = fprt.PrintRecItemAdjustment(FPTR_AT_PERCENTAGE_DISCOUNT, QStringLiteral("Perc Discount"),
                                       25.00_cur, 1);
    item = 7;
    last = fprt.PrintRecItem(Numbered("TEST ITEM ", item), 10.00_cur, 0, 2, 0.00_cur, none);
    last = fprt.PrintRecItemAdjustment(FPTR_AT_PERCENTAGE_DISCOUNT, QStringLiteral("Perc Discount"),
                                       40.00_cur, 2);
    last = fprt.PrintRecItemAdjustmentVoid(FPTR_AT_PERCENTAGE_DISCOUNT, none, 40.00_cur, 2);
    last = fprt.PrintRecMessage(blank);

    item = 8;
    last = fprt.PrintRecItem(Numbered("TEST ITEM ", item), 5.00_cur, 0, 5, 0.00_cur, none);
    last =
        fprt.PrintRecItemAdjustment(FPTR_AT_AMOUNT_DISCOUNT, QStringLiteral("Amount Discount"), 2.00_cur, 5);
    item = 9;
    last = fprt.PrintRecItem(Numbered("TEST ITEM ", item), 7.00_cur, 0, 5, 0.00_cur, none);
    last =
        fprt.PrintRecItemAdjustment(FPTR_AT_AMOUNT_DISCOUNT, QStringLiteral("Amount Discount"), 3.50_cur, 5);
    last = fprt.PrintRecItemAdjustmentVoid(FPTR_AT_AMOUNT_DISCOUNT, none, 3.50_cur, 5);
    last = fprt.PrintRecMessage(blank);

    item = 10;
    last = fprt.PrintRecItem(Numbered("TEST ITEM ", item), 7.00_cur, 0, 3, 0.00_cur, none);
    last = fprt.PrintRecMessage(blank);
    last = fprt.PrintRecMessage(QStringLiteral("PrintRecMessage (out of std)"));
    last = fprt.PrintRecMessage(blank);

    last = fprt.PrintRecSubtotal(43.00_cur);
    last = fprt.PrintRecMessage(blank);
    last =
        fprt.PrintRecSubtotalAdjustment(FPTR_AT_PERCENTAGE_DISCOUNT, QStringLiteral("DISC% SBT"), 10.00_cur);
    // A subtotal adjustment can't be voided: an amount surcharge stands in for the void.
    fprt.SetPreLine(QStringLiteral("SBT VOIDDISC% NOT POSSIBLE\r\nDONE WITH AmountSurcharge"));
    last = fprt.PrintRecSubtotalAdjustment(FPTR_AT_AMOUNT_SURCHARGE, QStringLiteral("VOID DISC%"), 4.30_cur);
    last = fprt.PrintRecMessage(blank);
    last = fprt.PrintRecSubtotalAdjustment(FPTR_AT_AMOUNT_DISCOUNT, QStringLiteral("AMOUNT DISC"), 4.00_cur);
    fprt.SetPreLine(QStringLiteral("SBT VOIDDISCAMT NOT POSSIBLE\r\nDONE WITH AmountSurcharge"));
    last = fprt.PrintRecSubtotalAdjustment(FPTR_AT_AMOUNT_SURCHARGE, QStringLiteral("VOID AMOUNT DISC"),
                                           4.00_cur);
    last = fprt.PrintRecMessage(blank);
    last = fprt.PrintRecSubtotal(43.00_cur);
    last =
        fprt.PrintRecSubtotalAdjustment(FPTR_AT_AMOUNT_DISCOUNT, QStringLiteral("AMOUNT DISC SBT"), 5.00_cur);

    const Amount total = 38.00_cur;
    last = fprt.PrintRecTotal(total, 0.00_cur, none);
    last = fprt.PrintRecTotal(total, 8.00_cur, QStringLiteral("0"));
    last = fprt.PrintRecTotal(total, 0.50_cur, QStringLiteral("1"));
    last = fprt.PrintRecTotal(total, 0.50_cur, QStringLiteral("2"));
    last = fprt.PrintRecTotal(total, 0.60_cur, QStringLiteral("3"));
    last = fprt.PrintRecTotal(total, 0.70_cur, QStringLiteral("4"));
    last = fprt.PrintRecTotal(total, 0.80_cur, QStringLiteral("5"));
    last = fprt.PrintRecTotal(total, 0.90_cur, QStringLiteral("6"));
    last = fprt.PrintRecTotal(total, 0.40_cur, QStringLiteral("7"));
    last = fprt.PrintRecTotal(total, 0.30_cur, QStringLiteral("8"));
    last = fprt.PrintRecTotal(total, 30.00_cur, QStringLiteral("9"));

    last = fprt.PrintRecMessage(blank);
    last = fprt.PrintRecMessage(EscString(2) + QStringLiteral("Double width"));
    last = fprt.PrintRecMessage(EscString(3) + QStringLiteral("Double height"));
    last = fprt.PrintRecMessage(EscString(4) + QStringLiteral("Half height"));
    last = fprt.PrintRecMessage(EscString(5) + QStringLiteral("Framed text"));
    last = fprt.PrintRecMessage(blank);

    // Only the last message decides: every earlier result has been overwritten.
    if (last != 0)
        fprt.PrintRecVoid(QStringLiteral("PrintRecTotal FAILURE"));
    else
        fprt.EndFiscalReceipt(false);
    fprt.SetFiscalReceiptType(FPTR_RT_SALES);
}

} // namespace AutoScripts
