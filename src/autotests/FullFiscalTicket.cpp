#include "FullFiscalTicket.h"

#include "FullTicketSteps.h"
#include "ScriptText.h"
#include "clsFprtWrapper.h"

namespace AutoScripts {

void PrintFullFiscalTicket(clsFprtWrapper& fprt) {
    const QString blank = QStringLiteral(" ");
    int16_t item = 5;
    int32_t last = 0;

    last = fprt.BeginFiscalReceipt(false);
    fprt.SetAsyncMode(false);
    SellAdjustedItems(fprt, last);

    item = 10;
    fprt.SetPreLine(QStringLiteral("PreLine: refund follows"));
    fprt.SetPostLine(QStringLiteral("PostLine: refund done\r\n "));
    last = fprt.PrintRecRefund(Numbered("REFUND ITEM ", item), 4.00_cur, 5);
    item = 11;
    last = fprt.PrintRecItem(Numbered("TEST ITEM ", item), 7.00_cur, 0, 3, 0.00_cur, QString());
    last = fprt.PrintRecMessage(blank);
    last = fprt.PrintRecMessage(QStringLiteral("PrintRecMessage (out of std)"));
    last = fprt.PrintRecMessage(blank);
    item = 12;
    last = fprt.PrintRecRefund(Numbered("REFUND TEST ITEM ", item), 5.00_cur, 3);
    last = fprt.PrintRecRefundVoid(Numbered("REFUND VOID ITEM ", item), 5.00_cur, 3);
    last = fprt.PrintRecMessage(blank);

    AdjustSubtotal(fprt, last, 39.00_cur);

    const Amount total = 34.00_cur;
    last = fprt.PrintRecTotal(total, 0.00_cur, QString());
    last = fprt.PrintRecNotPaid(QStringLiteral("Missed payment"), 10.00_cur);
    PayOnTenForms(fprt, last, total, 20.00_cur);
    PrintStylesAndClose(fprt, last);
}

} // namespace AutoScripts
