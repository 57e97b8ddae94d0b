#pragma once

#include "IFiscalPrinter.h"

#include <QByteArray>
#include <QString>

class SimulatedFiscalPrinter;

// What the fuzz targets share. libFuzzer calls one input at a time on one thread; everything here
// assumes that.
namespace fuzz {

// Before the first input: an application object, message boxes and the debug output answered by
// nobody, Qt's own warnings dropped, and the data folder (so the simulator's report folder) in a
// private temporary folder that goes at exit.
void Init();

// Ends the run as a finding, with the reason on stderr.
[[noreturn]] void Fail(const char* what, const QString& detail = {});

// The books of the simulated printer must add up, whatever came in: the grand totals are the
// closed days plus the open one, kind by kind and rate by rate; each Z record's grand total is the
// running sum of the days; the day's cash is never below zero; an open receipt's total lies between
// zero and the largest total the printer takes.
void CheckBooks(const SimulatedFiscalPrinter& printer);

// Report files written by one input are gone before they pile up over millions of inputs.
void TidyReports();

// Answers every error event with Clear, so that a fault met by queued output never loops.
class ClearingSink : public IFiscalPrinterEvents {
public:
    void ErrorEvent(int32_t, int32_t, int32_t, int32_t& response) override { response = 12; }
    void OutputCompleteEvent(int32_t) override {}
    void StatusUpdateEvent(int32_t) override {}
};

// Input bytes as text: UTF-8 when they are, Latin-1 otherwise, as the macro files are read.
QString Text(const QByteArray& bytes);

} // namespace fuzz
