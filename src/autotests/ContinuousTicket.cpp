#include "ContinuousTicket.h"

#include "OposAll.h"
#include "ScriptText.h"
#include "Seams.h"
#include "clsFprtWrapper.h"

#include <cmath>

using namespace OposAll;

namespace AutoScripts {

std::optional<Amount> PrinterTotal(const QString& reply) {
    bool ok = false;
    const double number = reply.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(number))
        return std::nullopt;
    const double whole = std::nearbyint(number);
    if (whole < -2147483648.0 || whole > 2147483647.0)
        return std::nullopt;
    // Whole hundredths: exact in ten-thousandths.
    return static_cast<Amount>(whole) * (AmountScale / 100);
}

void PrintContinuousTicket(clsFprtWrapper& fprt, int32_t lines, Drain drain, const EventPass& pass) {
    fprt.BeginFiscalReceipt(false);
    for (int64_t line = 1; line <= lines; ++line) {
        fprt.PrintRecItem(Numbered("TEST ITEM ", line), 1.00_cur, 0, 1, 0.00_cur, QString());
        pass();
    }

    if (drain == Drain::UntilIdle) {
        fprt.SetAsyncMode(false);
        while (fprt.State() == OPOS_S_BUSY)
            for (int i = 0; i < DrainPasses; ++i)
                pass();
    }

    QString total;
    fprt.GetData(FPTR_GD_CURRENT_TOTAL, 0, total);
    const std::optional<Amount> printed = PrinterTotal(total);
    const Amount expected = static_cast<Amount>(lines) * AmountScale;
    if (printed && *printed == expected) {
        if (fprt.PrintRecTotal(*printed, expected, QStringLiteral("CENTO!!")) != 0)
            fprt.PrintRecVoid(QStringLiteral("PrintRecTotal FAILURE"));
        else
            fprt.EndFiscalReceipt(false);
    } else {
        ShowMessage(QStringLiteral("TOTAL FAILURE ... FPU SAYS:") + total);
        fprt.PrintRecVoid(QStringLiteral("FPU TOTAL WRONG"));
    }
}

} // namespace AutoScripts
