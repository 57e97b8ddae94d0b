#include "SimulatedFiscalPrinter.h"

#include "OposAll.h"

#include <QRegularExpression>

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
constexpr unsigned kReceipt = In(FPTR_PS_FISCAL_RECEIPT);
constexpr unsigned kTotal = In(FPTR_PS_FISCAL_RECEIPT_TOTAL);
constexpr unsigned kEnding = In(FPTR_PS_FISCAL_RECEIPT_ENDING);
constexpr unsigned kNonFiscal = In(FPTR_PS_NONFISCAL);
constexpr unsigned kAny = 0xFFFFFFFFu & ~In(FPTR_PS_LOCKED);

PrintAttributes Centered(bool doubleWidth = false) {
    PrintAttributes a;
    a.align = sim::Align::Center;
    a.doubleWidth = doubleWidth;
    return a;
}

QString QuantityText(int32_t q) {
    return QStringLiteral("%1,%2").arg(q / 1000).arg(q % 1000, 3, 10, QLatin1Char('0'));
}
} // namespace

void SimulatedFiscalPrinter::EnterState(int32_t state) {
    m_printerState = state;
    emit changed();
}

void SimulatedFiscalPrinter::ShowOnDisplay(const QString& top, Amount amount) {
    m_display.ShowTwoLines(top, sim::MoneyText(amount));
}

bool SimulatedFiscalPrinter::ParseDate(const QString& text, QDateTime* out) const {
    static const QRegularExpression re(QStringLiteral("^\\d{12}$"));
    if (!re.match(text).hasMatch())
        return false;
    const QDateTime dt = QDateTime::fromString(text, QStringLiteral("ddMMyyyyHHmm"));
    if (!dt.isValid())
        return false;
    *out = dt;
    return true;
}

QString SimulatedFiscalPrinter::TenderName(int tender) const {
    static const char* const names[] = {"",         "CONTANTI",  "ASSEGNI",    "CHITTY",
                                        "BUONI",    "VALUTA",    "CARBURANTE", "CARTA",
                                        "BANCOMAT", "TERMINALE", "OMAGGIO",    "GIRO"};
    return tender >= 1 && tender <= 11 ? QString::fromLatin1(names[tender]) : QString();
}

// ---------------------------------------------------------------- receipts

void SimulatedFiscalPrinter::PrintReceiptHead() {
    for (const auto& h : m_header)
        if (!h.text.isEmpty())
            Emit(kBoth, h.text, Centered(h.doubleWidth));
    if (!m_additionalHeader.isEmpty())
        Emit(kBoth, m_additionalHeader);
    if (m_training)
        Emit(kBoth, QStringLiteral("NON FISCALE"), Centered(true));
    if (m_receipt->ReceiptType() == FPTR_RT_REFUND)
        Emit(kBoth, QStringLiteral("NOTA DI CREDITO %1").arg(m_creditNoteNumber).trimmed(), Centered());
    else
        Emit(kBoth, QStringLiteral("DOCUMENTO COMMERCIALE"), Centered());
    if (!m_posId.isEmpty() || !m_cashierId.isEmpty())
        Emit(kBoth, QStringLiteral("CASSA %1 OPERATORE %2").arg(m_posId, m_cashierId));
}

int32_t SimulatedFiscalPrinter::BeginReceiptOfType(int32_t type, const QString& creditNoteNumber) {
    StartReceipt(type, creditNoteNumber);
    return Flush();
}

void SimulatedFiscalPrinter::StartReceipt(int32_t type, const QString& creditNoteNumber) {
    m_receipt.emplace(m_vatRates, type);
    m_receiptVoided = false;
    m_creditNoteNumber = creditNoteNumber;
    m_docLines.clear();
    m_docPrinted.clear();
    if (!m_training) {
        const auto& c = m_memory->DayCounters();
        m_receiptNumber = c.fiscalReceipts + c.voidedReceipts + c.creditNotes + 1;
        m_dayOpened = true;
    }
    PrintReceiptHead();
    EnterState(FPTR_PS_FISCAL_RECEIPT);
}

int32_t SimulatedFiscalPrinter::BeginFiscalReceipt(bool& PrintHeader) {
    Q_UNUSED(PrintHeader);
    if (Check("BeginFiscalReceipt", kMonitor, kBoth))
        return m_resultCode;
    return BeginReceiptOfType(m_fiscalReceiptType, QString());
}

void SimulatedFiscalPrinter::FinishReceipt(bool voided) {
    const QDateTime now = Now();
    auto& day = m_memory->MutableDayCounters();
    auto& grand = m_memory->MutableGrandCounters();
    sim::JournalDocument doc;
    doc.when = now;
    doc.zNumber = static_cast<int>(m_memory->ZRecords().size()) + 1;
    doc.number = m_receiptNumber;
    const bool creditNote = m_receipt->ReceiptType() == FPTR_RT_REFUND;
    doc.kind = creditNote ? sim::JournalDocument::Kind::CreditNote : sim::JournalDocument::Kind::Fiscal;

    if (voided) {
        Emit(kBoth, QStringLiteral("ANNULLATO"), Centered(true));
    } else {
        const sim::Totals t = m_receipt->FinalTotals();
        for (int v = 1; v <= m_model.numVatRates; ++v)
            if (t.Get(TotalKind::Net, v) != 0)
                EmitAmountLine(
                    kBoth,
                    QStringLiteral("IVA %1%").arg(sim::MoneyText(Amount{m_vatRates.value(v - 1)} * 100)),
                    t.Get(TotalKind::Vat, v));
        for (const auto& h : m_trailer)
            if (!h.text.isEmpty())
                Emit(kBoth, h.text, Centered(h.doubleWidth));
        if (!m_additionalTrailer.isEmpty())
            Emit(kBoth, m_additionalTrailer);
    }
    if (m_training)
        Emit(kBoth, QStringLiteral("NON FISCALE"), Centered(true));
    else
        Emit(kBoth, QStringLiteral("%1 N. %2")
                        .arg(creditNote ? QStringLiteral("NOTA DI CREDITO") : QStringLiteral("SCONTRINO"))
                        .arg(m_receiptNumber, 4, 10, QLatin1Char('0')));
    Emit(kBoth, now.toString(QStringLiteral("dd-MM-yyyy HH:mm")));

    if (m_training) {
        ++day.trainingReceipts;
        ++grand.trainingReceipts;
    } else if (voided) {
        ++day.voidedReceipts;
        ++grand.voidedReceipts;
        m_memory->AddVoided(m_receipt->Total());
    } else {
        sim::Totals t = m_receipt->FinalTotals();
        std::array<Amount, 23> tenders{};
        for (int i = 1; i <= sim::FiscalReceipt::kTenders; ++i)
            tenders[i] = m_receipt->Tender(i);
        if (creditNote) {
            // A credit note gives money back: its amounts count as refunds only.
            sim::Totals refund;
            for (int v = 0; v < sim::kVatSlots; ++v)
                refund.At(TotalKind::Refund, v) = t.Get(TotalKind::Net, v);
            t = refund;
            tenders = {};
            ++day.creditNotes;
            ++grand.creditNotes;
        } else {
            ++day.fiscalReceipts;
            ++grand.fiscalReceipts;
        }
        m_memory->AddReceipt(t, tenders);
    }
    if (!m_training) {
        doc.lines = m_docLines;
        m_memory->AppendJournal(doc);
    }
    if (m_duplicateReceipt && !voided) {
        m_kept = m_docPrinted;
        m_hasKept = true;
    }
    m_lastReceiptLines = m_docLines;
    m_receipt.reset();
    m_receiptVoided = false;
    m_display.ShowTwoLines(QString(), QString());
    EnterState(FPTR_PS_MONITOR);
}

int32_t SimulatedFiscalPrinter::EndReceipt() {
    FinishReceipt(m_receiptVoided);
    return Flush();
}

int32_t SimulatedFiscalPrinter::EndFiscalReceipt(bool& PrintHeader) {
    Q_UNUSED(PrintHeader);
    if (Check("EndFiscalReceipt", kEnding, kBoth))
        return m_resultCode;
    return EndReceipt();
}

// The arguments an item line and its void share; sets the result and answers non-zero on the first bad one.
int32_t SimulatedFiscalPrinter::CheckItemArguments(const QString& description, int32_t vatInfo,
                                                   int32_t quantity, Amount unitPrice, int* vat) {
    if (CheckDescription(description) || ResolveVat(vatInfo, vat))
        return m_resultCode;
    if (quantity < 0)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_ITEM_QUANTITY, QStringLiteral("Bad quantity"));
    if (unitPrice < 0)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_PRICE, QStringLiteral("Bad price"));
    return 0;
}

int32_t SimulatedFiscalPrinter::PrintRecItem(QString& Description, Amount& Price, int32_t& Quantity,
                                             int32_t& VatInfo, Amount& UnitPrice, QString& UnitName) {
    if (Check("PrintRecItem", kReceipt, kBoth))
        return m_resultCode;
    int vat = 0;
    if (CheckItemArguments(Description, VatInfo, Quantity, UnitPrice, &vat))
        return m_resultCode;
    const Amount price = sim::RoundToCents(Price);
    if (auto r = m_receipt->AddItem(vat, price))
        return Refuse(r);
    EmitPreLine();
    if (Quantity != 0 || UnitPrice != 0)
        Emit(kBoth,
             QStringLiteral("%1 x %2 %3")
                 .arg(QuantityText(Quantity == 0 ? 1000 : Quantity), sim::MoneyText(UnitPrice), UnitName)
                 .trimmed());
    EmitAmountLine(kBoth, Description, price);
    EmitPostLine();
    ShowOnDisplay(Description, price);
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintRecItemVoid(QString& Description, Amount& Price, int32_t& Quantity,
                                                 int32_t& VatInfo, Amount& UnitPrice, QString& UnitName) {
    Q_UNUSED(UnitName);
    if (Check("PrintRecItemVoid", kReceipt, kBoth))
        return m_resultCode;
    int vat = 0;
    if (CheckItemArguments(Description, VatInfo, Quantity, UnitPrice, &vat))
        return m_resultCode;
    const Amount price = sim::RoundToCents(Price);
    if (auto r = m_receipt->VoidItem(vat, price))
        return Refuse(r);
    EmitPreLine();
    EmitAmountLine(kBoth, QStringLiteral("STORNO ") + Description, -price);
    EmitPostLine();
    ShowOnDisplay(QStringLiteral("STORNO ") + Description, -price);
    return Flush();
}

static int32_t AdjustmentCheck(int32_t type, QString* text) {
    if (type < FPTR_AT_AMOUNT_DISCOUNT || type > FPTR_AT_PERCENTAGE_SURCHARGE) {
        *text = QStringLiteral("Unknown adjustment type");
        return OPOS_E_ILLEGAL;
    }
    return 0;
}

// An item adjustment and its void differ only in the sign they print and in the display, which
// shows the adjustment but not its cancellation.
int32_t SimulatedFiscalPrinter::ItemAdjustment(const char* method, int32_t type, const QString& description,
                                               Amount amount, int32_t vatInfo, bool isVoid) {
    if (Check(method, kReceipt, kBoth))
        return m_resultCode;
    QString why;
    if (AdjustmentCheck(type, &why))
        return Result(OPOS_E_ILLEGAL, 0, why);
    int vat = 0;
    if (CheckDescription(description) || ResolveVat(vatInfo, &vat))
        return m_resultCode;
    Amount applied = 0;
    if (auto r = m_receipt->AdjustItem(type, sim::RoundToCents(amount), isVoid, &applied))
        return Refuse(r);
    const bool discount = type == FPTR_AT_AMOUNT_DISCOUNT || type == FPTR_AT_PERCENTAGE_DISCOUNT;
    const Amount printed = (discount != isVoid) ? -applied : applied;
    EmitPreLine();
    EmitAmountLine(kBoth, isVoid ? QStringLiteral("STORNO ") + description : description, printed);
    EmitPostLine();
    if (!isVoid)
        ShowOnDisplay(description, printed);
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintRecItemAdjustment(int32_t& AdjustmentType, QString& Description,
                                                       Amount& Amount_, int32_t& VatInfo) {
    return ItemAdjustment("PrintRecItemAdjustment", AdjustmentType, Description, Amount_, VatInfo, false);
}

int32_t SimulatedFiscalPrinter::PrintRecItemAdjustmentVoid(int32_t& AdjustmentType, QString& Description,
                                                           Amount& Amount_, int32_t& VatInfo) {
    return ItemAdjustment("PrintRecItemAdjustmentVoid", AdjustmentType, Description, Amount_, VatInfo, true);
}

int32_t SimulatedFiscalPrinter::RefundLine(const char* method, const QString& description, Amount amount,
                                           int32_t vatInfo, bool isVoid) {
    if (Check(method, kReceipt, kBoth))
        return m_resultCode;
    int vat = 0;
    if (CheckDescription(description) || ResolveVat(vatInfo, &vat))
        return m_resultCode;
    const Amount rounded = sim::RoundToCents(amount);
    if (auto r = m_receipt->Refund(vat, rounded, isVoid))
        return Refuse(r);
    EmitPreLine();
    EmitAmountLine(kBoth, (isVoid ? QStringLiteral("STORNO RESO ") : QStringLiteral("RESO ")) + description,
                   isVoid ? rounded : -rounded);
    EmitPostLine();
    if (!isVoid)
        ShowOnDisplay(description, -rounded);
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintRecRefund(QString& Description, Amount& Amount_, int32_t& VatInfo) {
    return RefundLine("PrintRecRefund", Description, Amount_, VatInfo, false);
}

int32_t SimulatedFiscalPrinter::PrintRecRefundVoid(QString& Description, Amount& Amount_, int32_t& VatInfo) {
    return RefundLine("PrintRecRefundVoid", Description, Amount_, VatInfo, true);
}

int32_t SimulatedFiscalPrinter::PrintRecSubtotal(Amount& Amount_) {
    Q_UNUSED(Amount_);
    if (Check("PrintRecSubtotal", kReceipt, kBoth))
        return m_resultCode;
    m_receipt->CountSubtotal();
    EmitAmountLine(kBoth, QStringLiteral("SUBTOTALE"), m_receipt->Total());
    ShowOnDisplay(QStringLiteral("SUBTOTALE"), m_receipt->Total());
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintRecSubtotalAdjustment(int32_t& AdjustmentType, QString& Description,
                                                           Amount& Amount_) {
    if (Check("PrintRecSubtotalAdjustment", kReceipt, kBoth))
        return m_resultCode;
    QString why;
    if (AdjustmentCheck(AdjustmentType, &why))
        return Result(OPOS_E_ILLEGAL, 0, why);
    if (CheckDescription(Description))
        return m_resultCode;
    Amount applied = 0;
    if (auto r = m_receipt->AdjustSubtotal(AdjustmentType, sim::RoundToCents(Amount_), false, &applied))
        return Refuse(r);
    const bool discount =
        AdjustmentType == FPTR_AT_AMOUNT_DISCOUNT || AdjustmentType == FPTR_AT_PERCENTAGE_DISCOUNT;
    EmitPreLine();
    EmitAmountLine(kBoth, Description, discount ? -applied : applied);
    EmitPostLine();
    ShowOnDisplay(QStringLiteral("SUBTOTALE"), m_receipt->Total());
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintRecSubtotalAdjustVoid(int32_t& AdjustmentType, Amount& Amount_) {
    if (Check("PrintRecSubtotalAdjustVoid", kReceipt, kBoth))
        return m_resultCode;
    QString why;
    if (AdjustmentCheck(AdjustmentType, &why))
        return Result(OPOS_E_ILLEGAL, 0, why);
    Amount applied = 0;
    if (auto r = m_receipt->AdjustSubtotal(AdjustmentType, sim::RoundToCents(Amount_), true, &applied))
        return Refuse(r);
    const bool discount =
        AdjustmentType == FPTR_AT_AMOUNT_DISCOUNT || AdjustmentType == FPTR_AT_PERCENTAGE_DISCOUNT;
    EmitPreLine();
    EmitAmountLine(kBoth, QStringLiteral("STORNO SUBTOTALE"), discount ? applied : -applied);
    EmitPostLine();
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintRecTotal(Amount& Total, Amount& Payment, QString& Description) {
    if (Check("PrintRecTotal", kReceipt | kTotal, kBoth))
        return m_resultCode;
    if (m_checkTotal && sim::RoundToCents(Total) != m_receipt->Total())
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_ITEM_AMOUNT,
                      QStringLiteral("Total differs from the printer's total"));
    if (Description.size() > 38)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_ITEM_DESCRIPTION,
                      QStringLiteral("Description too long"));
    // A predefined line "0".."10" names tender 1..11; any other text is cash.
    int tender = FPTR_PDL_CASH;
    QString name = Description;
    bool numeric = false;
    const int line = Description.toInt(&numeric);
    if (numeric && line >= 0 && line <= 10 && Description == QString::number(line)) {
        tender = line + 1;
        name = TenderName(tender);
    } else if (name.isEmpty()) {
        name = TenderName(FPTR_PDL_CASH);
    }
    const Amount payment = sim::RoundToCents(Payment);
    const bool first = !m_receipt->PaymentStarted();
    if (auto r = m_receipt->Pay(payment, tender, false))
        return Refuse(r);
    if (first)
        EmitAmountLine(kBoth, QStringLiteral("TOTALE EURO"), m_receipt->Total());
    EmitAmountLine(kBoth, name, payment);
    if (m_receipt->FullyPaid()) {
        if (m_receipt->Change() > 0) {
            const QString label = m_changeDue.isEmpty() ? QStringLiteral("RESTO") : m_changeDue;
            EmitAmountLine(kBoth, label, m_receipt->Change());
            ShowOnDisplay(label, m_receipt->Change());
        } else {
            ShowOnDisplay(QStringLiteral("TOTALE"), m_receipt->Total());
        }
        EnterState(FPTR_PS_FISCAL_RECEIPT_ENDING);
    } else {
        ShowOnDisplay(QStringLiteral("TOTALE"), m_receipt->Total());
        EnterState(FPTR_PS_FISCAL_RECEIPT_TOTAL);
    }
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintRecNotPaid(QString& Description, Amount& Amount_) {
    if (Check("PrintRecNotPaid", kTotal, kBoth))
        return m_resultCode;
    if (Description.size() > 38)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_ITEM_DESCRIPTION,
                      QStringLiteral("Description too long"));
    const Amount amount = sim::RoundToCents(Amount_);
    if (auto r = m_receipt->Pay(amount, 0, true))
        return Refuse(r);
    EmitAmountLine(kBoth, Description.isEmpty() ? QStringLiteral("NON RISCOSSO") : Description, amount);
    if (m_receipt->FullyPaid()) {
        if (m_receipt->Change() > 0)
            EmitAmountLine(kBoth, m_changeDue.isEmpty() ? QStringLiteral("RESTO") : m_changeDue,
                           m_receipt->Change());
        EnterState(FPTR_PS_FISCAL_RECEIPT_ENDING);
    }
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintRecMessage(QString& Message) {
    if (Check("PrintRecMessage", kReceipt | kTotal | kEnding, kBoth))
        return m_resultCode;
    if (Message.size() > 46)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_LENGTH, QStringLiteral("Message too long"));
    m_receipt->CountComment();
    Emit(kBoth, Message);
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintRecVoid(QString& Description) {
    if (Check("PrintRecVoid", kReceipt | kTotal, kBoth))
        return m_resultCode;
    if (Description.size() > 38)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_ITEM_DESCRIPTION,
                      QStringLiteral("Description too long"));
    if (!Description.isEmpty())
        Emit(kBoth, Description);
    if (m_model.voidClosesReceipt) {
        FinishReceipt(true);
    } else {
        m_receiptVoided = true;
        EnterState(FPTR_PS_FISCAL_RECEIPT_ENDING);
    }
    return Flush();
}

// ---------------------------------------------------------------- non-fiscal, training, duplicate

int32_t SimulatedFiscalPrinter::BeginNonFiscal() {
    if (Check("BeginNonFiscal", kMonitor, kBoth))
        return m_resultCode;
    m_docLines.clear();
    m_docPrinted.clear();
    for (const auto& h : m_header)
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
    Emit(station, Data);
    return Flush();
}

int32_t SimulatedFiscalPrinter::EndNonFiscal() {
    if (Check("EndNonFiscal", kNonFiscal, kBoth))
        return m_resultCode;
    Emit(kBoth, QStringLiteral("DOCUMENTO NON FISCALE"), Centered());
    Emit(kBoth, Now().toString(QStringLiteral("dd-MM-yyyy HH:mm")));
    ++m_memory->MutableDayCounters().nonFiscalDocs;
    ++m_memory->MutableGrandCounters().nonFiscalDocs;
    sim::JournalDocument doc;
    doc.kind = sim::JournalDocument::Kind::NonFiscal;
    doc.when = Now();
    doc.number = m_memory->DayCounters().nonFiscalDocs;
    doc.zNumber = static_cast<int>(m_memory->ZRecords().size()) + 1;
    doc.lines = m_docLines;
    m_memory->AppendJournal(doc);
    m_lastReceiptLines = m_docLines;
    EnterState(FPTR_PS_MONITOR);
    return Flush();
}

int32_t SimulatedFiscalPrinter::BeginTraining() {
    if (Check("BeginTraining", kMonitor, 0))
        return m_resultCode;
    if (m_training)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Already in training mode"));
    m_training = true;
    emit changed();
    return Ok();
}

int32_t SimulatedFiscalPrinter::EndTraining() {
    if (Check("EndTraining", kMonitor, 0))
        return m_resultCode;
    if (!m_training)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Not in training mode"));
    m_training = false;
    emit changed();
    return Ok();
}

int32_t SimulatedFiscalPrinter::PrintDuplicateReceipt() {
    if (Check("PrintDuplicateReceipt", kMonitor, FPTR_S_RECEIPT))
        return m_resultCode;
    if (!m_hasKept)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("No receipt kept for a duplicate"));
    Emit(FPTR_S_RECEIPT, QStringLiteral("COPIA"), Centered(true));
    for (const auto& l : m_kept)
        EmitLine(FPTR_S_RECEIPT, l);
    Emit(FPTR_S_RECEIPT, QStringLiteral("COPIA"), Centered(true));
    m_kept.clear();
    m_hasKept = false;
    m_duplicateReceipt = false;
    return Flush();
}

int32_t SimulatedFiscalPrinter::ResetPrinter() {
    if (Check("ResetPrinter", kAny, 0))
        return m_resultCode;
    if (m_receipt) {
        // An open receipt ends as voided, adding nothing to the totals.
        FinishReceipt(true);
        Apply(m_out);
        m_out.clear();
    }
    m_training = false;
    m_preLine.clear();
    m_postLine.clear();
    EnterState(FPTR_PS_MONITOR);
    return Ok();
}

// ---------------------------------------------------------------- reports

QStringList SimulatedFiscalPrinter::XReportLines() const {
    QStringList lines;
    const auto& t = m_memory->DayTotals();
    const auto& c = m_memory->DayCounters();
    auto money = [](const QString& label, Amount a) {
        const QString m = sim::MoneyText(a);
        return label.leftJustified(46 - m.size()) + m;
    };
    lines << money(QStringLiteral("TOTALE GIORNALIERO"), t.Sum(TotalKind::Net));
    for (int v = 0; v <= m_model.numVatRates; ++v)
        if (t.Get(TotalKind::Net, v) != 0)
            lines << money(v == 0 ? QStringLiteral("ESENTE")
                                  : QStringLiteral("ALIQUOTA %1").arg(QChar(u'A' + v - 1)),
                           t.Get(TotalKind::Net, v));
    lines << money(QStringLiteral("SCONTI"), t.Sum(TotalKind::Discount) + t.Sum(TotalKind::SubtotalDiscount));
    lines << money(QStringLiteral("MAGGIORAZIONI"),
                   t.Sum(TotalKind::Surcharge) + t.Sum(TotalKind::SubtotalSurcharge));
    lines << money(QStringLiteral("STORNI"), t.Sum(TotalKind::ItemVoid));
    lines << money(QStringLiteral("RESI"), t.Sum(TotalKind::Refund));
    lines << money(QStringLiteral("NON RISCOSSO"), t.Sum(TotalKind::NotPaid));
    lines << money(QStringLiteral("IVA"), t.Sum(TotalKind::Vat));
    lines << QStringLiteral("SCONTRINI FISCALI %1").arg(c.fiscalReceipts);
    lines << QStringLiteral("SCONTRINI ANNULLATI %1").arg(c.voidedReceipts);
    lines << QStringLiteral("NOTE DI CREDITO %1").arg(c.creditNotes);
    lines << QStringLiteral("DOCUMENTI NON FISCALI %1").arg(c.nonFiscalDocs);
    lines << money(QStringLiteral("GRAN TOTALE"), m_memory->GrandTotals().Sum(TotalKind::Net));
    return lines;
}

int32_t SimulatedFiscalPrinter::PrintXReport() {
    if (Check("PrintXReport", kMonitor, kBoth))
        return m_resultCode;
    Emit(kBoth, QStringLiteral("LETTURA GIORNALIERA"), Centered(true));
    for (const auto& l : XReportLines())
        Emit(kBoth, l);
    Emit(kBoth, Now().toString(QStringLiteral("dd-MM-yyyy HH:mm")));
    EnterState(FPTR_PS_REPORT);
    return Flush([this] { EnterState(FPTR_PS_MONITOR); });
}

int32_t SimulatedFiscalPrinter::PrintZReport() {
    if (Check("PrintZReport", kMonitor, kBoth))
        return m_resultCode;
    const QDateTime now = Now();
    const int number = static_cast<int>(m_memory->ZRecords().size()) + 1;
    m_docLines.clear();
    Emit(kBoth, QStringLiteral("CHIUSURA GIORNALIERA N. %1").arg(number), Centered(true));
    for (const auto& l : XReportLines())
        Emit(kBoth, l);
    Emit(kBoth, now.toString(QStringLiteral("dd-MM-yyyy HH:mm")));
    sim::JournalDocument doc;
    doc.kind = sim::JournalDocument::Kind::ZReport;
    doc.number = number;
    doc.zNumber = number;
    doc.when = now;
    doc.lines = m_docLines;
    m_memory->AppendJournal(doc);
    m_memory->CloseDay(now);
    m_dayOpened = false;
    EnterState(FPTR_PS_REPORT);
    return Flush([this] { EnterState(FPTR_PS_MONITOR); });
}

int32_t SimulatedFiscalPrinter::PrintReport(int32_t& ReportType, QString& StartNum, QString& EndNum) {
    if (Check("PrintReport", kMonitor, kBoth))
        return m_resultCode;
    QList<sim::ZRecord> records;
    if (ReportType == FPTR_RT_ORDINAL) {
        bool ok1 = false, ok2 = false;
        const int from = StartNum.trimmed().toInt(&ok1);
        const int to = EndNum.trimmed().toInt(&ok2);
        if (!ok1 || !ok2 || from < 1 || to < from)
            return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad report range"));
        for (const auto& z : m_memory->ZRecords())
            if (z.number >= from && z.number <= to)
                records << z;
    } else if (ReportType == FPTR_RT_DATE) {
        QDateTime from, to;
        if (!ParseDate(StartNum, &from) || !ParseDate(EndNum, &to))
            return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_DATE, QStringLiteral("Bad date"));
        if (to < from)
            return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad report range"));
        for (const auto& z : m_memory->ZRecords())
            if (z.when >= from && z.when <= to.addSecs(59))
                records << z;
    } else {
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad report type"));
    }
    Emit(kBoth, QStringLiteral("LETTURA MEMORIA FISCALE"), Centered(true));
    for (const auto& z : records) {
        const QString m = sim::MoneyText(z.day.Sum(TotalKind::Net));
        const QString label = QStringLiteral("Z %1 %2")
                                  .arg(z.number, 4, 10, QLatin1Char('0'))
                                  .arg(z.when.toString(QStringLiteral("dd-MM-yyyy")));
        Emit(kBoth, label.leftJustified(46 - m.size()) + m);
    }
    Emit(kBoth, QStringLiteral("RECORD %1").arg(records.size()));
    EnterState(FPTR_PS_REPORT);
    return Flush([this] { EnterState(FPTR_PS_MONITOR); });
}

int32_t SimulatedFiscalPrinter::PrintPeriodicTotalsReport(QString& Date1, QString& Date2) {
    if (Check("PrintPeriodicTotalsReport", kMonitor, kBoth))
        return m_resultCode;
    QDateTime from, to;
    if (!ParseDate(Date1, &from) || !ParseDate(Date2, &to))
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_DATE, QStringLiteral("Bad date"));
    if (to < from)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad report range"));
    sim::Totals sum;
    int count = 0;
    for (const auto& z : m_memory->ZRecords())
        if (z.when >= from && z.when <= to.addSecs(59)) {
            sum.Add(z.day);
            ++count;
        }
    Emit(kBoth, QStringLiteral("TOTALI PERIODICI"), Centered(true));
    Emit(kBoth,
         QStringLiteral("DAL %1 AL %2")
             .arg(from.toString(QStringLiteral("dd-MM-yyyy")), to.toString(QStringLiteral("dd-MM-yyyy"))));
    EmitAmountLine(kBoth, QStringLiteral("TOTALE"), sum.Sum(TotalKind::Net));
    EmitAmountLine(kBoth, QStringLiteral("IVA"), sum.Sum(TotalKind::Vat));
    Emit(kBoth, QStringLiteral("CHIUSURE %1").arg(count));
    EnterState(FPTR_PS_REPORT);
    return Flush([this] { EnterState(FPTR_PS_MONITOR); });
}

// ---------------------------------------------------------------- data, dates, settings

int32_t SimulatedFiscalPrinter::GetData(int32_t& DataItem, int32_t& OptArgs, QString& Data) {
    if (Check("GetData", kAny, 0))
        return m_resultCode;
    const auto& day = m_memory->DayTotals();
    const auto& dc = m_memory->DayCounters();
    QString answer;
    switch (DataItem) {
    case FPTR_GD_CURRENT_TOTAL:
        answer = sim::CentsText(m_receipt ? m_receipt->Total() : 0);
        break;
    case FPTR_GD_DAILY_TOTAL:
        answer = sim::CentsText(day.Sum(TotalKind::Net));
        break;
    case FPTR_GD_RECEIPT_NUMBER:
        answer = QString::number(m_receiptNumber);
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
        answer = QString::number(m_memory->ZRecords().size());
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
        answer = QString::number(m_memory->GrandCounters().restarts);
        break;
    case FPTR_GD_REFUND_VOID:
        answer = sim::CentsText(day.Sum(TotalKind::RefundVoid));
        break;
    case FPTR_GD_NUMB_CONFIG_BLOCK:
    case FPTR_GD_NUMB_CURRENCY_BLOCK:
        answer = QStringLiteral("0");
        break;
    case FPTR_GD_NUMB_HDR_BLOCK:
        answer = QString::number(m_memory->HeaderChanges());
        break;
    case FPTR_GD_NUMB_RESET_BLOCK:
        answer = QString::number(m_memory->ZRecords().size());
        break;
    case FPTR_GD_NUMB_VAT_BLOCK:
        answer = QString::number(m_memory->VatChanges());
        break;
    case FPTR_GD_FISCAL_DOC:
        answer = QString::number(dc.fiscalReceipts + dc.voidedReceipts + dc.creditNotes);
        break;
    case FPTR_GD_FISCAL_DOC_VOID:
    case FPTR_GD_FISCAL_REC_VOID:
        answer = QString::number(dc.voidedReceipts);
        break;
    case FPTR_GD_FISCAL_REC:
        answer = QString::number(dc.fiscalReceipts);
        break;
    case FPTR_GD_NONFISCAL_DOC:
    case FPTR_GD_NONFISCAL_REC:
        answer = QString::number(dc.nonFiscalDocs);
        break;
    case FPTR_GD_NONFISCAL_DOC_VOID:
    case FPTR_GD_SIMP_INVOICE:
        answer = QStringLiteral("0");
        break;
    case FPTR_GD_TENDER:
        if (OptArgs < 1 || OptArgs > sim::FiscalReceipt::kTenders)
            return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad tender"));
        answer = sim::CentsText(m_memory->DayTender(OptArgs));
        break;
    case FPTR_GD_LINECOUNT:
        if (OptArgs < 1 || OptArgs > sim::FiscalReceipt::kLineKinds)
            return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad line kind"));
        answer = QString::number(m_receipt ? m_receipt->LineCount(OptArgs) : 0);
        break;
    case FPTR_GD_DESCRIPTION_LENGTH:
        if (OptArgs < 1 || OptArgs > 12)
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
    switch (m_totalizerType) {
    case FPTR_TT_DOCUMENT:
    case FPTR_TT_RECEIPT:
        if (m_receipt)
            t = m_receipt->FinalTotals();
        break;
    case FPTR_TT_DAY:
        t = m_memory->DayTotals();
        break;
    case FPTR_TT_GRAND:
        t = m_memory->GrandTotals();
        break;
    }
    const auto kind = static_cast<TotalKind>(OptArgs);
    Data = sim::CentsText(VatID == 0 ? t.Sum(kind) : t.Get(kind, VatID));
    return Ok();
}

int32_t SimulatedFiscalPrinter::GetVatEntry(int32_t& VatID, int32_t& OptArgs, int32_t& VatRate) {
    Q_UNUSED(OptArgs);
    if (Check("GetVatEntry", kAny, 0))
        return m_resultCode;
    if (VatID < 1 || VatID > m_model.numVatRates)
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad VAT id"));
    VatRate = m_vatRates.value(VatID - 1);
    return Ok();
}

int32_t SimulatedFiscalPrinter::SetVatValue(int32_t& VatID, QString& VatValue) {
    if (Check("SetVatValue", kMonitor, 0, true))
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
    if (Check("SetVatTable", kMonitor, 0, true))
        return m_resultCode;
    for (auto it = m_pendingVat.cbegin(); it != m_pendingVat.cend(); ++it)
        m_vatRates[it.key() - 1] = it.value();
    if (!m_pendingVat.isEmpty())
        m_memory->CountVatChange();
    m_pendingVat.clear();
    emit changed();
    return Ok();
}

int32_t SimulatedFiscalPrinter::SetDate(QString& Date) {
    if (Check("SetDate", kMonitor, 0, true))
        return m_resultCode;
    QDateTime when;
    if (!ParseDate(Date, &when))
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_DATE, QStringLiteral("Bad date"));
    // The fiscal memory never goes back in time.
    if (!m_memory->ZRecords().isEmpty() && when.addSecs(59) < m_memory->ZRecords().last().when)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_DATE, QStringLiteral("Date before the last Z report"));
    m_clockOffset = QDateTime::currentDateTime().secsTo(when);
    emit changed();
    return Ok();
}

int32_t SimulatedFiscalPrinter::GetDate(QString& Date) {
    if (Check("GetDate", kAny, 0))
        return m_resultCode;
    QDateTime when = Now();
    if (m_dateType == FPTR_DT_EOD && !m_memory->ZRecords().isEmpty())
        when = m_memory->ZRecords().last().when;
    Date = when.toString(QStringLiteral("ddMMyyyyHHmm"));
    return Ok();
}

int32_t SimulatedFiscalPrinter::SetHeaderLine(int32_t& LineNumber, QString& Text, bool& DoubleWidth) {
    if (Check("SetHeaderLine", kMonitor, 0, true))
        return m_resultCode;
    if (LineNumber < 1 || LineNumber > m_header.size())
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad line number"));
    if (Text.size() > 46)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_LENGTH, QStringLiteral("Text too long"));
    m_header[LineNumber - 1] = {Text, DoubleWidth};
    m_memory->CountHeaderChange();
    return Ok();
}

int32_t SimulatedFiscalPrinter::SetTrailerLine(int32_t& LineNumber, QString& Text, bool& DoubleWidth) {
    if (Check("SetTrailerLine", kMonitor, 0))
        return m_resultCode;
    if (LineNumber < 1 || LineNumber > m_trailer.size())
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad line number"));
    if (Text.size() > 46)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_LENGTH, QStringLiteral("Text too long"));
    m_trailer[LineNumber - 1] = {Text, DoubleWidth};
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
        m_checkHealthText = QStringLiteral("Internal HCheck: Successful");
    else if (Level == OPOS_CH_EXTERNAL)
        m_checkHealthText = QStringLiteral("External HCheck: Successful");
    else
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Health check level not supported"));
    return Ok();
}

int32_t SimulatedFiscalPrinter::ClearOutput() {
    if (CheckSession("ClearOutput", Session::Claimed))
        return m_resultCode;
    ClearQueue();
    emit changed();
    return Ok();
}

int32_t SimulatedFiscalPrinter::ClearError() {
    if (CheckSession("ClearError", Session::Enabled))
        return m_resultCode;
    if (m_inError)
        ClearQueue();
    m_errorLevel = FPTR_EL_NONE;
    emit changed();
    return Ok();
}
