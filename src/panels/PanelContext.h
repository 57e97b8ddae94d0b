#pragma once

#include <functional>

class IFiscalPrinter;
class clsFprtWrapper;
class clsMacroEngine;

// What a panel needs from the bench. The panel calls the device only through the wrapper; the
// control itself is there for the few reads that must leave no log line (ResultCode,
// ResultCodeExtended, ErrorString, PrinterState, DuplicateReceipt, FlagWhenIdle).
struct PanelContext {
    IFiscalPrinter& control;
    clsFprtWrapper& wrapper;
    clsMacroEngine& macro;
    // Shows the latest result in the status bar (and the "ERRORS: " box) and repaints the
    // two state labels. Every panel button ends with it.
    std::function<void()> refreshAfterCommand;
};
