#include "BenchTexts.h"

#include "Tools.h"

namespace BenchTexts {

namespace {

QString ErrorEventArguments(int32_t resultCode, int32_t resultCodeExtended) {
    return QLatin1Char('(') + QString::number(resultCode) + QLatin1Char(' ') +
           Tools::ResultCodeName(resultCode) + QStringLiteral(", ") + QString::number(resultCodeExtended) +
           QLatin1Char(' ') + Tools::ResultCodeExtendedName(resultCodeExtended) + QLatin1Char(')');
}

} // namespace

QString ErrorEventQuestion(int32_t resultCode, int32_t resultCodeExtended) {
    return QStringLiteral("OposErrorEvent") + ErrorEventArguments(resultCode, resultCodeExtended);
}

QString ErrorEventLogLine(int32_t resultCode, int32_t resultCodeExtended, int32_t errorResponse) {
    return QStringLiteral("ErrorEvent") + ErrorEventArguments(resultCode, resultCodeExtended) +
           QStringLiteral("  Resp = ") + QString::number(errorResponse);
}

QString OutputCompleteEventLogLine(int32_t outputId) {
    return QStringLiteral("OutputCompleteEvent(") + QString::number(outputId) + QLatin1Char(')');
}

std::optional<QString> StatusUpdateEventLogLine(int32_t status) {
    const char* name = nullptr;
    switch (status) {
    case 0:
        name = "0";
        break;
    case 11:
        name = "PtrSueCoverOpen";
        break;
    case 12:
        name = "PtrSueCoverOk";
        break;
    case 21:
        name = "PtrSueJrnEmpty";
        break;
    case 22:
        name = "PtrSueJrnNearempty";
        break;
    case 23:
        name = "PtrSueJrnPaperok";
        break;
    case 24:
        name = "PtrSueRecEmpty";
        break;
    case 25:
        name = "PtrSueRecNearempty";
        break;
    case 26:
        name = "PtrSueRecPaperok";
        break;
    case 1001:
        name = "PtrSueIdle";
        break;
    default:
        return std::nullopt;
    }
    return QStringLiteral("StatusUpdateEvent(") + QLatin1StringView(name) + QLatin1Char(')');
}

QString ResultCodeLabel(int32_t code) {
    return Tools::ResultCodeName(code) + QLatin1Char('(') + QString::number(code) + QLatin1Char(')');
}

QString ResultCodeExtendedLabel(int32_t extended) {
    return Tools::ResultCodeExtendedName(extended) + QLatin1Char('(') + QString::number(extended) +
           QLatin1Char(')');
}

QString ErrorsText(int32_t code, int32_t extended, const QString& errorString) {
    return QStringLiteral("ERRORS: ") + ResultCodeLabel(code) + QStringLiteral("  ") +
           ResultCodeExtendedLabel(extended) + QStringLiteral("  ") + errorString;
}

QString StateLabelText(const QString& name, int32_t value) {
    return name + QStringLiteral("   (") + Tools::NumberText(value) + QLatin1Char(')');
}

} // namespace BenchTexts
