#include "FullCreditNote.h"

#include "FullTicketSteps.h"
#include "OposAll.h"
#include "ScriptText.h"
#include "clsFprtWrapper.h"

using namespace OposAll;

namespace AutoScripts {

void PrintFullCreditNote(clsFprtWrapper& fprt) {
    const QString blank = QStringLiteral(" ");
    int16_t item = 5;
    int32_t last = 0;

    fprt.SetAdditionalHeader(QStringLiteral("Additional Text"));
    fprt.SetFiscalReceiptType(FPTR_RT_REFUND);
    fprt.SetPreLine(QStringLiteral("8953986357")); // the return document's number
    last = fprt.BeginFiscalReceipt(false);
    fprt.SetAsyncMode(false);
    SellAdjustedItems(fprt, last);

    item = 10;
    last = fprt.PrintRecItem(Numbered("TEST ITEM ", item), 7.00_cur, 0, 3, 0.00_cur, QString());
    last = fprt.PrintRecMessage(blank);
    last = fprt.PrintRecMessage(QStringLiteral("PrintRecMessage (out of std)"));
    last = fprt.PrintRecMessage(blank);

    AdjustSubtotal(fprt, last, 43.00_cur);

    const Amount total = 38.00_cur;
    last = fprt.PrintRecTotal(total, 0.00_cur, QString());
    PayOnTenForms(fprt, last, total, 30.00_cur);
    PrintStylesAndClose(fprt, last);
    fprt.SetFiscalReceiptType(FPTR_RT_SALES);
}

} // namespace AutoScripts
