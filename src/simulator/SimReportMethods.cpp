#include "SimulatedFiscalPrinter.h"

#include "Money.h"
#include "OposAll.h"
#include "Reports.h"

using namespace OposAll;
using sim::TotalKind;

namespace {
constexpr int kBoth = FPTR_S_JOURNAL_RECEIPT;
constexpr unsigned In(int32_t s) {
    return 1u << s;
}
constexpr unsigned kMonitor = In(FPTR_PS_MONITOR);
constexpr unsigned kAny = 0xFFFFFFFFu & ~In(FPTR_PS_LOCKED);

sim::PrintAttributes Title() {
    sim::PrintAttributes a;
    a.align = sim::Align::Center;
    a.doubleWidth = true;
    return a;
}
} // namespace

// Reports print at once, in the REPORT state while they print; training marks them as not fiscal.
int32_t SimulatedFiscalPrinter::PrintReportDocument(const QString& title, const QStringList& lines,
                                                    QStringList* text, bool fiscal) {
    m_doc = Document{};
    EnterState(FPTR_PS_REPORT);
    if (m_training)
        Emit(kBoth, QStringLiteral("NON FISCALE"), Title());
    Emit(kBoth, title, Title());
    for (const QString& l : lines)
        EmitLine(kBoth, sim::PrintedLine::Plain(l));
    Emit(kBoth, sim::DocumentTime(Now()));
    if (fiscal && !m_training)
        EmitFiscalLogo();
    CutPaper();
    if (text)
        *text = m_doc.text;
    m_doc = Document{};
    Flush(AlwaysSync);
    EnterState(FPTR_PS_MONITOR);
    return Ok();
}

int32_t SimulatedFiscalPrinter::PrintXReport() {
    if (Check("PrintXReport", kMonitor, kBoth, AlwaysSync))
        return m_resultCode;
    return PrintReportDocument(QStringLiteral("LETTURA GIORNALIERA"),
                               sim::DayReportLines(*m_memory, m_model));
}

int32_t SimulatedFiscalPrinter::PrintZReport() {
    if (Check("PrintZReport", kMonitor, kBoth, AlwaysSync))
        return m_resultCode;
    const int number = sim::CurrentDayNumber(*m_memory);
    const QStringList lines = sim::DayReportLines(*m_memory, m_model);
    QStringList text;
    PrintReportDocument(QStringLiteral("CHIUSURA GIORNALIERA N. ") + QString::number(number), lines, &text,
                        true);
    // Training never touches the fiscal memory: the Z is on paper only.
    if (m_training)
        return Ok();
    sim::JournalDocument doc;
    doc.kind = sim::JournalDocument::Kind::ZReport;
    doc.number = number;
    doc.when = Now();
    doc.lines = text;
    m_memory->CommitZReport(doc.when, doc);
    CommitNotice();
    return Ok();
}

int32_t SimulatedFiscalPrinter::PrintReport(int32_t& ReportType, QString& StartNum, QString& EndNum) {
    if (Check("PrintReport", kMonitor, kBoth, AlwaysSync))
        return m_resultCode;
    QList<sim::ZRecord> records;
    if (ReportType == FPTR_RT_ORDINAL) {
        bool ok1 = false, ok2 = false;
        const int from = StartNum.trimmed().toInt(&ok1);
        const int to = EndNum.trimmed().toInt(&ok2);
        if (!ok1 || !ok2 || from < 1 || to < from)
            return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad report range"));
        records = sim::RecordsByNumber(*m_memory, from, to);
    } else if (ReportType == FPTR_RT_DATE) {
        const auto from = sim::ParseFiscalDate(StartNum), to = sim::ParseFiscalDate(EndNum);
        if (!from || !to)
            return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_DATE, QStringLiteral("Bad date"));
        if (*to < *from)
            return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad report range"));
        records = sim::RecordsByDate(*m_memory, *from, *to);
    } else {
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad report type"));
    }
    return PrintReportDocument(QStringLiteral("LETTURA MEMORIA FISCALE"), sim::RecordReportLines(records));
}

int32_t SimulatedFiscalPrinter::PrintPeriodicTotalsReport(QString& Date1, QString& Date2) {
    if (Check("PrintPeriodicTotalsReport", kMonitor, kBoth, AlwaysSync))
        return m_resultCode;
    const auto from = sim::ParseFiscalDate(Date1), to = sim::ParseFiscalDate(Date2);
    if (!from || !to)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_DATE, QStringLiteral("Bad date"));
    if (*to < *from)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad report range"));
    return PrintReportDocument(
        QStringLiteral("TOTALI PERIODICI"),
        sim::PeriodicReportLines(sim::RecordsByDate(*m_memory, *from, *to), *from, *to));
}

// ---------------------------------------------------------------- data

int32_t SimulatedFiscalPrinter::GetData(int32_t& DataItem, int32_t& OptArgs, QString& Data) {
    if (Check("GetData", kAny, 0))
        return m_resultCode;
    const auto& day = m_memory->DayTotals();
    const auto& dc = m_memory->DayCounters();
    const auto number = [](qsizetype n) { return QString::number(n); };
    QString answer;
    switch (DataItem) {
    case FPTR_GD_CURRENT_TOTAL:
        answer = sim::CentsText(m_doc.receipt ? m_doc.receipt->Total() : 0);
        break;
    case FPTR_GD_DAILY_TOTAL:
        answer = sim::CentsText(day.Sum(TotalKind::Net));
        break;
    case FPTR_GD_RECEIPT_NUMBER:
        answer = number(m_doc.receipt ? m_doc.number : sim::NextReceiptNumber(*m_memory) - 1);
        break;
    case FPTR_GD_REFUND:
        answer = sim::CentsText(day.Sum(TotalKind::Refund));
        break;
    case FPTR_GD_NOT_PAID:
        answer = sim::CentsText(day.Sum(TotalKind::NotPaid));
        break;
    case FPTR_GD_MID_VOID:
        answer = sim::CentsText(m_memory->DayVoided());
        break;
    case FPTR_GD_Z_REPORT:
    case FPTR_GD_NUMB_RESET_BLOCK:
        answer = number(m_memory->ZRecords().size());
        break;
    case FPTR_GD_GRAND_TOTAL:
        answer = sim::CentsText(m_memory->GrandTotals().Sum(TotalKind::Net));
        break;
    case FPTR_GD_PRINTER_ID:
        answer = QStringLiteral("99ZS000123");
        break;
    case FPTR_GD_FIRMWARE:
        answer = QStringLiteral("1.11.0");
        break;
    case FPTR_GD_RESTART:
        answer = number(m_memory->GrandCounters().restarts);
        break;
    case FPTR_GD_REFUND_VOID:
        answer = sim::CentsText(day.Sum(TotalKind::RefundVoid));
        break;
    case FPTR_GD_NUMB_HDR_BLOCK:
        answer = number(m_memory->HeaderChanges());
        break;
    case FPTR_GD_NUMB_VAT_BLOCK:
        answer = number(m_memory->VatChanges());
        break;
    case FPTR_GD_FISCAL_DOC:
        answer = number(dc.fiscalReceipts + dc.voidedReceipts + dc.creditNotes);
        break;
    case FPTR_GD_FISCAL_DOC_VOID:
    case FPTR_GD_FISCAL_REC_VOID:
        answer = number(dc.voidedReceipts);
        break;
    case FPTR_GD_FISCAL_REC:
        answer = number(dc.fiscalReceipts);
        break;
    case FPTR_GD_NONFISCAL_DOC:
    case FPTR_GD_NONFISCAL_REC:
        answer = number(dc.nonFiscalDocs);
        break;
    case FPTR_GD_NUMB_CONFIG_BLOCK:
    case FPTR_GD_NUMB_CURRENCY_BLOCK:
    case FPTR_GD_NONFISCAL_DOC_VOID:
    case FPTR_GD_SIMP_INVOICE:
        answer = QStringLiteral("0");
        break;
    case FPTR_GD_TENDER:
        if (OptArgs < 1 || OptArgs > sim::kTenders)
            return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad tender"));
        answer = sim::CentsText(m_memory->DayTenders()[OptArgs]);
        break;
    case FPTR_GD_LINECOUNT:
        if (OptArgs < 1 || OptArgs > sim::FiscalReceipt::kLineKinds)
            return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad line kind"));
        answer = number(m_doc.receipt ? m_doc.receipt->LineCount(OptArgs) : 0);
        break;
    case FPTR_GD_DESCRIPTION_LENGTH:
        if (OptArgs < 1 || OptArgs > FPTR_DL_VOID_ITEM)
            return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad description kind"));
        // Fuel items and package adjustments are not printed by this printer.
        answer = (OptArgs == FPTR_DL_ITEM_FUEL || OptArgs == FPTR_DL_ITEM_FUEL_VOID ||
                  OptArgs == FPTR_DL_PACKAGE_ADJUSTMENT)
                     ? QStringLiteral("0")
                     : QStringLiteral("38");
        break;
    default:
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Unknown data item"));
    }
    Data = answer;
    return Ok();
}

int32_t SimulatedFiscalPrinter::GetTotalizer(int32_t& VatID, int32_t& OptArgs, QString& Data) {
    if (Check("GetTotalizer", kAny, 0))
        return m_resultCode;
    if (VatID < 0 || VatID > m_model.numVatRates)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad VAT id"));
    if (OptArgs < FPTR_GT_GROSS || OptArgs > FPTR_GT_VAT_CATEGORY)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad totalizer"));
    sim::Totals t;
    switch (m_session.totalizerType) {
    case FPTR_TT_DOCUMENT:
    case FPTR_TT_RECEIPT:
        if (m_doc.receipt)
            t = m_doc.receipt->FinalTotals(m_memory->VatRates());
        break;
    case FPTR_TT_DAY:
        t = m_memory->DayTotals();
        if (m_model.vatOnDayTotals)
            t.byKind[static_cast<int>(TotalKind::Vat)] =
                sim::DayVat(*m_memory, m_model).byKind[static_cast<int>(TotalKind::Vat)];
        break;
    case FPTR_TT_GRAND:
        t = m_memory->GrandTotals();
        break;
    }
    const auto kind = static_cast<TotalKind>(OptArgs);
    Data = sim::CentsText(VatID == 0 ? t.Sum(kind) : t.Get(kind, VatID));
    return Ok();
}
