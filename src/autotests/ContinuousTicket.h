#pragma once

#include "OposTypes.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

class clsFprtWrapper;

namespace AutoScripts {

// One pass of the event queue, so that other handlers can run between two lines.
using EventPass = std::function<void()>;

// Whether the ticket waits for queued output before it asks for the total.
enum class Drain { None, UntilIdle };

// Passes of the event queue between two reads of State while the device is busy.
inline constexpr int DrainPasses = 5000;

// The printer's running total, whole hundredths as text, as an amount. No value for a text that
// is not a number or does not fit 32 bits: such a total never equals the count of lines.
std::optional<Amount> PrinterTotal(const QString& reply);

// One ticket of the continuous test: `lines` lines of 1.00 each, one event pass after each, then
// the printer's total. The ticket is paid when that total is the count of lines; otherwise the
// "TOTAL FAILURE" box shows the total as the printer gave it and the ticket is voided.
void PrintContinuousTicket(clsFprtWrapper& fprt, int32_t lines, Drain drain, const EventPass& pass);

} // namespace AutoScripts
