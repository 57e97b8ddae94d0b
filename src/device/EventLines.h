#pragma once

#include <QString>

#include <cstdint>
#include <optional>

// The texts that the control's three events leave in the log, and the question that an
// ErrorEvent puts to the operator. Shared by every event sink of the bench.
namespace EventLines {

// "OposErrorEvent(114 OposEExtended, 203 OposEfptrRecEmpty)"
QString ErrorEventQuestion(int32_t resultCode, int32_t resultCodeExtended);
// "ErrorEvent(114 OposEExtended, 203 OposEfptrRecEmpty)  Resp = 11"
QString ErrorEventLogLine(int32_t resultCode, int32_t resultCodeExtended, int32_t errorResponse);
// "OutputCompleteEvent(5)"
QString OutputCompleteEventLogLine(int32_t outputId);
// "StatusUpdateEvent(PtrSueCoverOpen)"; nullopt for a status that leaves no trace.
std::optional<QString> StatusUpdateEventLogLine(int32_t status);

} // namespace EventLines
