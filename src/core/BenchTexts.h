#pragma once

#include <QString>

#include <cstdint>
#include <optional>

// The bench's own texts that both programs show or log alike: the lines of the control's
// events, the question an ErrorEvent puts to the operator, and what the refresh after a
// command paints and reports.
namespace BenchTexts {

// "OposErrorEvent(114 OposEExtended, 203 OposEfptrRecEmpty)"
QString ErrorEventQuestion(int32_t resultCode, int32_t resultCodeExtended);
// "ErrorEvent(114 OposEExtended, 203 OposEfptrRecEmpty)  Resp = 11"
QString ErrorEventLogLine(int32_t resultCode, int32_t resultCodeExtended, int32_t errorResponse);
// "OutputCompleteEvent(5)"
QString OutputCompleteEventLogLine(int32_t outputId);
// "StatusUpdateEvent(PtrSueCoverOpen)"; nullopt for a status that leaves no trace.
std::optional<QString> StatusUpdateEventLogLine(int32_t status);

// "OposEExtended(114)", "OposEfptrRecEmpty(203)", "(0)": a code's name and its number.
QString ResultCodeLabel(int32_t code);
QString ResultCodeExtendedLabel(int32_t extended);
// "ERRORS: OposEExtended(114)  OposEfptrRecEmpty(203)  Paper out"
QString ErrorsText(int32_t code, int32_t extended, const QString& errorString);
// A state label: the name, three blanks and the number in brackets with a blank for its sign.
QString StateLabelText(const QString& name, int32_t value);

} // namespace BenchTexts
