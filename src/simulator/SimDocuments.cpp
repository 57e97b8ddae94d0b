#include "SimulatedFiscalPrinter.h"

#include "Money.h"
#include "OposAll.h"
#include "Reports.h"

using namespace OposAll;
using sim::PrintAttributes;
using sim::PrintedLine;
using sim::TotalKind;

namespace {
constexpr int kBoth = FPTR_S_JOURNAL_RECEIPT;
constexpr unsigned In(int32_t s) {
    return 1u << s;
}
constexpr unsigned kMonitor = In(FPTR_PS_MONITOR);
constexpr unsigned kEnding = In(FPTR_PS_FISCAL_RECEIPT_ENDING);
constexpr unsigned kNonFiscal = In(FPTR_PS_NONFISCAL);
constexpr unsigned kAny = 0xFFFFFFFFu & ~In(FPTR_PS_LOCKED);

PrintAttributes Centered(bool doubleWidth = false) {
    PrintAttributes a;
    a.align = sim::Align::Center;
    a.doubleWidth = doubleWidth;
    return a;
}
} // namespace

void SimulatedFiscalPrinter::EnterState(int32_t state) {
    if (m_printerState == state)
        return;
    m_printerState = state;
    emit printerStateChanged(state);
}

// ---------------------------------------------------------------- fiscal receipts

void SimulatedFiscalPrinter::PrintReceiptHead() {
    for (const auto& h : m_memory->HeaderLines())
        if (!h.text.isEmpty())
            Emit(kBoth, h.text, Centered(h.doubleWidth));
    if (!m_session.additionalHeader.isEmpty())
        Emit(kBoth, m_session.additionalHeader);
    if (m_training)
        Emit(kBoth, QStringLiteral("NON FISCALE"), Centered(true));
    if (m_doc.receipt->ReceiptType() == FPTR_RT_REFUND)
        Emit(kBoth, (QStringLiteral("NOTA DI CREDITO ") + m_doc.creditNoteNumber).trimmed(), Centered());
    else
        Emit(kBoth, QStringLiteral("DOCUMENTO COMMERCIALE"), Centered());
    if (!m_posId.isEmpty() || !m_cashierId.isEmpty())
        Emit(kBoth, QStringLiteral("CASSA ") + m_posId + QStringLiteral(" OPERATORE ") + m_cashierId);
}

void SimulatedFiscalPrinter::StartReceipt(int32_t type, const QString& creditNoteNumber) {
    m_doc = Document{};
    m_doc.receipt.emplace(type);
    m_doc.creditNoteNumber = creditNoteNumber;
    m_doc.begunAt = Now();
    m_doc.number = m_training ? 0 : sim::NextReceiptNumber(*m_memory);
    if (!m_training)
        m_memory->CommitDocumentBegun({type == FPTR_RT_REFUND ? sim::JournalDocument::Kind::CreditNote
                                                              : sim::JournalDocument::Kind::Fiscal,
                                       m_doc.number, m_doc.begunAt, creditNoteNumber});
    PrintReceiptHead();
    EnterState(FPTR_PS_FISCAL_RECEIPT);
}

int32_t SimulatedFiscalPrinter::BeginFiscalReceipt(bool& PrintHeader) {
    Q_UNUSED(PrintHeader);
    if (Check("BeginFiscalReceipt", kMonitor, kBoth, AlwaysSync | NewDay))
        return m_resultCode;
    StartReceipt(m_session.fiscalReceiptType, QString());
    return Flush(AlwaysSync);
}

void SimulatedFiscalPrinter::FinishReceipt() {
    const QDateTime now = Now();
    const bool creditNote = m_doc.receipt->ReceiptType() == FPTR_RT_REFUND;
    const bool voided = m_doc.voided;
    const sim::Totals totals = m_doc.receipt->FinalTotals(m_memory->VatRates());
    if (voided) {
        Emit(kBoth, QStringLiteral("ANNULLATO"), Centered(true));
    } else {
        for (int v = 1; v <= m_model.numVatRates; ++v)
            if (totals.Get(TotalKind::Net, v) != 0)
                EmitMoney(kBoth, QStringLiteral("IVA ") + sim::PercentText(m_memory->VatRates().value(v - 1)),
                          totals.Get(TotalKind::Vat, v));
        for (const auto& h : m_memory->TrailerLines())
            if (!h.text.isEmpty())
                Emit(kBoth, h.text, Centered(h.doubleWidth));
        if (!m_session.additionalTrailer.isEmpty())
            Emit(kBoth, m_session.additionalTrailer);
    }
    if (m_training)
        Emit(kBoth, QStringLiteral("NON FISCALE"), Centered(true));
    else
        Emit(kBoth, (creditNote ? QStringLiteral("NOTA DI CREDITO N. ") : QStringLiteral("SCONTRINO N. ")) +
                        QString::number(m_doc.number).rightJustified(4, u'0'));
    Emit(kBoth, sim::DocumentTime(now));
    if (!m_training)
        EmitFiscalLogo();
    CutPaper();

    if (m_training) {
        ++m_trainingReceipts;
    } else {
        using O = sim::ReceiptRecord::Outcome;
        sim::ReceiptRecord record;
        record.outcome = voided ? O::Voided : creditNote ? O::CreditNote : O::Sale;
        record.begunAt = m_doc.begunAt;
        record.voidedTotal = m_doc.receipt->Total();
        if (record.outcome == O::Sale) {
            record.totals = totals;
            record.tenders = m_doc.receipt->AllTenders();
        } else if (record.outcome == O::CreditNote) {
            // A credit note gives money back: its amounts count as refunds only.
            for (int v = 0; v < sim::kVatSlots; ++v)
                record.totals.At(TotalKind::Refund, v) = totals.Get(TotalKind::Net, v);
        }
        record.document.kind =
            creditNote ? sim::JournalDocument::Kind::CreditNote : sim::JournalDocument::Kind::Fiscal;
        record.document.number = m_doc.number;
        record.document.when = now;
        record.document.lines = m_doc.text;
        m_memory->CommitReceipt(record);
        CommitNotice();
    }
    if (m_session.duplicateReceipt && !voided)
        m_kept = m_doc.printed;
    m_lastDocText = m_doc.text;
    m_doc = Document{};
    m_display.ShowTwoLines(QString(), QString());
    EnterState(FPTR_PS_MONITOR);
}

int32_t SimulatedFiscalPrinter::EndFiscalReceipt(bool& PrintHeader) {
    Q_UNUSED(PrintHeader);
    if (Check("EndFiscalReceipt", kEnding, kBoth, AlwaysSync))
        return m_resultCode;
    FinishReceipt();
    return Flush(AlwaysSync);
}

bool SimulatedFiscalPrinter::CancelledByTotalCheck(Amount total) {
    if (!m_session.checkTotal || sim::RoundToCents(total) == m_doc.receipt->Total())
        return false;
    // UnifiedPOS cancels the receipt: it waits, voided, for EndFiscalReceipt.
    m_doc.voided = true;
    EnterState(FPTR_PS_FISCAL_RECEIPT_ENDING);
    Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_ITEM_AMOUNT,
           QStringLiteral("Total differs from the printer's total: receipt cancelled"));
    return true;
}

int32_t SimulatedFiscalPrinter::PrintRecVoid(QString& Description) {
    if (Check("PrintRecVoid", In(FPTR_PS_FISCAL_RECEIPT) | In(FPTR_PS_FISCAL_RECEIPT_TOTAL), kBoth))
        return m_resultCode;
    if (CheckDescription(Description))
        return m_resultCode;
    if (!Description.isEmpty())
        Emit(kBoth, Description);
    m_doc.voided = true;
    if (m_model.voidClosesReceipt)
        FinishReceipt();
    else
        EnterState(FPTR_PS_FISCAL_RECEIPT_ENDING);
    return Flush();
}

// ---------------------------------------------------------------- non-fiscal, training, duplicate

int32_t SimulatedFiscalPrinter::BeginNonFiscal() {
    if (Check("BeginNonFiscal", kMonitor, kBoth))
        return m_resultCode;
    m_doc = Document{};
    m_doc.nonFiscal = true;
    m_doc.begunAt = Now();
    m_memory->CommitDocumentBegun({sim::JournalDocument::Kind::NonFiscal,
                                   m_memory->DayCounters().nonFiscalDocs + 1,
                                   m_doc.begunAt,
                                   {}});
    for (const auto& h : m_memory->HeaderLines())
        if (!h.text.isEmpty())
            Emit(kBoth, h.text, Centered(h.doubleWidth));
    Emit(kBoth, QStringLiteral("DOCUMENTO NON FISCALE"), Centered());
    EnterState(FPTR_PS_NONFISCAL);
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintNormal(int32_t& Station, QString& Data) {
    const int station = Station >= FPTR_S_JOURNAL && Station <= FPTR_S_JOURNAL_RECEIPT ? Station : 0;
    if (Check("PrintNormal", kNonFiscal, station ? station : kBoth))
        return m_resultCode;
    if (!station)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad station"));
    if (!sim::IsValidPrintControl(Data))
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad barcode in the text"));
    Emit(station, Data);
    return Flush();
}

void SimulatedFiscalPrinter::FinishNonFiscal() {
    const QDateTime now = Now();
    Emit(kBoth, QStringLiteral("DOCUMENTO NON FISCALE"), Centered());
    Emit(kBoth, sim::DocumentTime(now));
    CutPaper();
    sim::JournalDocument doc;
    doc.kind = sim::JournalDocument::Kind::NonFiscal;
    doc.when = now;
    doc.number = m_memory->DayCounters().nonFiscalDocs + 1;
    doc.lines = m_doc.text;
    m_memory->CommitNonFiscal(doc);
    CommitNotice();
    m_lastDocText = m_doc.text;
    m_doc = Document{};
    EnterState(FPTR_PS_MONITOR);
}

int32_t SimulatedFiscalPrinter::EndNonFiscal() {
    if (Check("EndNonFiscal", kNonFiscal, kBoth))
        return m_resultCode;
    FinishNonFiscal();
    return Flush();
}

int32_t SimulatedFiscalPrinter::BeginTraining() {
    if (Check("BeginTraining", kMonitor, 0))
        return m_resultCode;
    if (m_training)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Already in training mode"));
    m_training = true;
    emit sessionChanged();
    return Ok();
}

int32_t SimulatedFiscalPrinter::EndTraining() {
    if (Check("EndTraining", kMonitor, 0))
        return m_resultCode;
    if (!m_training)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Not in training mode"));
    m_training = false;
    emit sessionChanged();
    return Ok();
}

int32_t SimulatedFiscalPrinter::PrintDuplicateReceipt() {
    if (Check("PrintDuplicateReceipt", kMonitor, kBoth, AlwaysSync))
        return m_resultCode;
    if (!m_kept)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("No receipt kept for a duplicate"));
    const QList<PrintedLine> kept = *m_kept;
    m_doc = Document{};
    m_doc.nonFiscal = true;
    Emit(kBoth, QStringLiteral("COPIA"), Centered(true));
    for (const auto& l : kept)
        EmitLine(kBoth, l);
    Emit(kBoth, QStringLiteral("COPIA"), Centered(true));
    CutPaper();
    // The copy is a document like any other: journaled, and counted as a non-fiscal one.
    sim::JournalDocument doc;
    doc.kind = sim::JournalDocument::Kind::NonFiscal;
    doc.when = Now();
    doc.number = m_memory->DayCounters().nonFiscalDocs + 1;
    doc.lines = m_doc.text;
    m_memory->CommitNonFiscal(doc);
    CommitNotice();
    m_lastDocText = m_doc.text;
    m_doc = Document{};
    m_kept.reset();
    m_session.duplicateReceipt = false;
    return Flush(AlwaysSync);
}

// ---------------------------------------------------------------- reset and power

int32_t SimulatedFiscalPrinter::ResetPrinter() {
    if (Check("ResetPrinter", kAny, 0))
        return m_resultCode;
    if (m_doc.receipt) {
        // An open receipt ends as voided, adding nothing to the totals.
        m_doc.voided = true;
        FinishReceipt();
    } else if (m_doc.nonFiscal) {
        FinishNonFiscal();
    }
    Apply(m_out);
    m_out.clear();
    m_training = false;
    m_session.preLine.clear();
    m_session.postLine.clear();
    EnterState(FPTR_PS_MONITOR);
    return Ok();
}

void SimulatedFiscalPrinter::AfterPowerCut() {
    m_memory->CommitRestart();
    CommitNotice();
    m_out.clear();
    if (m_doc.receipt || m_doc.nonFiscal) {
        Emit(kBoth, QStringLiteral("INTERRUZIONE ALIMENTAZIONE"), Centered());
        if (m_doc.receipt) {
            m_doc.voided = true;
            FinishReceipt();
        } else {
            FinishNonFiscal();
        }
        Apply(m_out);
        m_out.clear();
    }
    m_training = false;
    EnterState(FPTR_PS_MONITOR);
}

void SimulatedFiscalPrinter::EndUnfinishedDocument(const sim::OpenDocument& unfinished) {
    // What was printed of it before the cut is gone with the process: the printer ends it with
    // nothing in it, voided, and counts the restart.
    m_doc = Document{};
    m_doc.begunAt = unfinished.begunAt;
    if (unfinished.kind == sim::JournalDocument::Kind::NonFiscal) {
        m_doc.nonFiscal = true;
    } else {
        m_doc.receipt.emplace(unfinished.kind == sim::JournalDocument::Kind::CreditNote ? FPTR_RT_REFUND
                                                                                        : FPTR_RT_SALES);
        m_doc.number = unfinished.number;
        m_doc.creditNoteNumber = unfinished.creditNoteNumber;
    }
    AfterPowerCut();
}
