#include "SimulatedFiscalPrinter.h"

#include "OposAll.h"
#include "Reports.h"

#include <QRegularExpression>

using namespace OposAll;

namespace {
constexpr unsigned In(int32_t s) {
    return 1u << s;
}
constexpr unsigned kMonitor = In(FPTR_PS_MONITOR);
constexpr unsigned kAny = 0xFFFFFFFFu & ~In(FPTR_PS_LOCKED);
} // namespace

int32_t SimulatedFiscalPrinter::GetVatEntry(int32_t& VatID, int32_t& OptArgs, int32_t& VatRate) {
    Q_UNUSED(OptArgs);
    if (Check("GetVatEntry", kAny, 0))
        return m_resultCode;
    if (VatID < 1 || VatID > m_model.numVatRates)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad VAT id"));
    VatRate = m_memory->VatRates().value(VatID - 1);
    return Ok();
}

int32_t SimulatedFiscalPrinter::SetVatValue(int32_t& VatID, QString& VatValue) {
    if (Check("SetVatValue", kMonitor, 0, DayClosed | NotTraining))
        return m_resultCode;
    if (VatID < 1 || VatID > m_model.numVatRates)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad VAT id"));
    static const QRegularExpression re(QStringLiteral("^(\\d{1,2})(?:[.,](\\d{1,2}))?$"));
    const auto m = re.match(VatValue.trimmed());
    if (!m.hasMatch())
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad VAT value"));
    const QString frac = m.captured(2).leftJustified(2, u'0');
    m_pendingVat[VatID] = m.captured(1).toInt() * 100 + frac.toInt();
    return Ok();
}

int32_t SimulatedFiscalPrinter::SetVatTable() {
    if (Check("SetVatTable", kMonitor, 0, DayClosed | NotTraining))
        return m_resultCode;
    if (!m_pendingVat.isEmpty()) {
        QList<int32_t> rates = m_memory->VatRates();
        for (auto it = m_pendingVat.cbegin(); it != m_pendingVat.cend(); ++it)
            rates[it.key() - 1] = it.value();
        m_memory->CommitVatTable(rates);
        CommitNotice();
    }
    m_pendingVat.clear();
    return Ok();
}

int32_t SimulatedFiscalPrinter::SetDate(QString& Date) {
    if (Check("SetDate", kMonitor, 0, DayClosed | NotTraining))
        return m_resultCode;
    const auto when = sim::ParseFiscalDate(Date);
    if (!when)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_DATE, QStringLiteral("Bad date"));
    if (!SetClockOffsetSeconds(QDateTime::currentDateTime().secsTo(*when)))
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_DATE,
                      QStringLiteral("Date before the last fiscal document"));
    return Ok();
}

int32_t SimulatedFiscalPrinter::GetDate(QString& Date) {
    if (Check("GetDate", kAny, 0))
        return m_resultCode;
    QDateTime when = Now();
    if (m_session.dateType == FPTR_DT_EOD && !m_memory->ZRecords().isEmpty())
        when = m_memory->ZRecords().last().when;
    Date = when.toString(QStringLiteral("ddMMyyyyHHmm"));
    return Ok();
}

int32_t SimulatedFiscalPrinter::SetHeaderLine(int32_t& LineNumber, QString& Text, bool& DoubleWidth) {
    if (Check("SetHeaderLine", kMonitor, 0, DayClosed | NotTraining))
        return m_resultCode;
    if (LineNumber < 1 || LineNumber > m_memory->HeaderLines().size())
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad line number"));
    if (CheckPrintedText(Text, 46))
        return m_resultCode;
    m_memory->CommitHeaderLine(LineNumber - 1, {Text, DoubleWidth});
    CommitNotice();
    return Ok();
}

int32_t SimulatedFiscalPrinter::SetTrailerLine(int32_t& LineNumber, QString& Text, bool& DoubleWidth) {
    if (Check("SetTrailerLine", kMonitor, 0))
        return m_resultCode;
    if (LineNumber < 1 || LineNumber > m_memory->TrailerLines().size())
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad line number"));
    if (CheckPrintedText(Text, 46))
        return m_resultCode;
    m_memory->CommitTrailerLine(LineNumber - 1, {Text, DoubleWidth});
    CommitNotice();
    return Ok();
}

int32_t SimulatedFiscalPrinter::SetPOSID(QString& POSID, QString& CashierID) {
    if (Check("SetPOSID", kMonitor, 0))
        return m_resultCode;
    m_posId = POSID;
    m_cashierId = CashierID;
    return Ok();
}

int32_t SimulatedFiscalPrinter::CheckHealth(int32_t& Level) {
    if (Check("CheckHealth", kAny, 0))
        return m_resultCode;
    if (Level == OPOS_CH_INTERNAL)
        m_session.checkHealthText = QStringLiteral("Internal HCheck: Successful");
    else if (Level == OPOS_CH_EXTERNAL)
        m_session.checkHealthText = QStringLiteral("External HCheck: Successful");
    else
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Health check level not supported"));
    return Ok();
}

int32_t SimulatedFiscalPrinter::ClearOutput() {
    if (CheckSession("ClearOutput", Need::Claimed))
        return m_resultCode;
    if (EffectivePrinterState() == FPTR_PS_LOCKED)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_WRONG_STATE,
                      QStringLiteral("Printer locked: fiscal memory full"));
    m_queue.Clear();
    m_session.errorLevel = FPTR_EL_NONE;
    return Ok();
}

int32_t SimulatedFiscalPrinter::ClearError() {
    if (CheckSession("ClearError", Need::Enabled))
        return m_resultCode;
    if (EffectivePrinterState() == FPTR_PS_LOCKED)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_WRONG_STATE,
                      QStringLiteral("Printer locked: fiscal memory full"));
    if (m_queue.InError())
        m_queue.Clear();
    m_session.errorLevel = FPTR_EL_NONE;
    return Ok();
}
