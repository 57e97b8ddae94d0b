#include "SimulatedFiscalPrinter.h"

#include "Money.h"
#include "OposAll.h"

using namespace OposAll;

namespace {
constexpr int kBoth = FPTR_S_JOURNAL_RECEIPT;
constexpr unsigned In(int32_t s) {
    return 1u << s;
}
constexpr unsigned kReceipt = In(FPTR_PS_FISCAL_RECEIPT);
constexpr unsigned kTotal = In(FPTR_PS_FISCAL_RECEIPT_TOTAL);
constexpr unsigned kEnding = In(FPTR_PS_FISCAL_RECEIPT_ENDING);

bool IsDiscount(int32_t type) {
    return type == FPTR_AT_AMOUNT_DISCOUNT || type == FPTR_AT_PERCENTAGE_DISCOUNT;
}

// "2,000 x 1,20 pz": the quantity in thousandths, three decimals.
QString QuantityLine(int32_t quantity, Amount unitPrice, const QString& unitName) {
    const QString q =
        QString::number(quantity / 1000) + u',' + QString::number(quantity % 1000).rightJustified(3, u'0');
    return (q + QStringLiteral(" x ") + sim::MoneyText(unitPrice) + u' ' + unitName).trimmed();
}

// The tender a payment description names: "0".."10" are the predefined lines (tenders 1..11), 0 for
// anything else, which pays cash under its own name.
int PredefinedTender(const QString& description) {
    bool numeric = false;
    const int line = description.toInt(&numeric);
    if (numeric && line >= 0 && line <= 10 && description == QString::number(line))
        return line + 1;
    return 0;
}

QString TenderName(int tender) {
    static const char* const names[] = {"",         "CONTANTI",  "ASSEGNI",    "CHITTY",
                                        "BUONI",    "VALUTA",    "CARBURANTE", "CARTA",
                                        "BANCOMAT", "TERMINALE", "OMAGGIO",    "GIRO"};
    return tender >= 1 && tender <= 11 ? QString::fromLatin1(names[tender]) : QString();
}
} // namespace

// The arguments an item line and its void share; sets the result and answers non-zero on the first bad one.
int32_t SimulatedFiscalPrinter::CheckItemArguments(const QString& description, int32_t vatInfo,
                                                   int32_t quantity, Amount price, Amount unitPrice,
                                                   int* vat) {
    if (CheckDescription(description) || ResolveVat(vatInfo, vat))
        return m_resultCode;
    if (quantity < 0)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_ITEM_QUANTITY, QStringLiteral("Bad quantity"));
    if (unitPrice < 0 || unitPrice > sim::kMaxAmount)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_PRICE, QStringLiteral("Bad unit price"));
    if (quantity != 0 && unitPrice != 0) {
        const Amount product = sim::RoundDiv(static_cast<__int128>(quantity) * unitPrice, 1000);
        if (sim::RoundToCents(product) != sim::RoundToCents(price))
            return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_PRICE,
                          QStringLiteral("Price is not quantity times unit price"));
    }
    return 0;
}

int32_t SimulatedFiscalPrinter::PrintRecItem(QString& Description, Amount& Price, int32_t& Quantity,
                                             int32_t& VatInfo, Amount& UnitPrice, QString& UnitName) {
    if (Check("PrintRecItem", kReceipt, kBoth))
        return m_resultCode;
    int vat = 0;
    if (CheckItemArguments(Description, VatInfo, Quantity, Price, UnitPrice, &vat))
        return m_resultCode;
    if (auto r = m_doc.receipt->AddItem(vat, Price))
        return Refuse(r);
    const Amount price = sim::RoundToCents(Price);
    EmitPreLine();
    if (Quantity != 0 || UnitPrice != 0)
        Emit(kBoth, QuantityLine(Quantity == 0 ? 1000 : Quantity, UnitPrice, UnitName));
    EmitMoney(kBoth, Description, price);
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
    if (CheckItemArguments(Description, VatInfo, Quantity, Price, UnitPrice, &vat))
        return m_resultCode;
    QList<sim::FiscalReceipt::Reversed> adjustments;
    if (auto r = m_doc.receipt->VoidItem(vat, Price, &adjustments))
        return Refuse(r);
    const Amount price = sim::RoundToCents(Price);
    EmitPreLine();
    EmitMoney(kBoth, QStringLiteral("STORNO ") + Description, -price);
    for (const auto& a : adjustments)
        EmitMoney(kBoth, QStringLiteral("STORNO ") + a.description, a.printed);
    EmitPostLine();
    ShowOnDisplay(QStringLiteral("STORNO ") + Description, -price);
    return Flush();
}

// An item adjustment and its void differ in the rule they follow, the sign they print and in the
// display, which shows the adjustment but not its cancellation.
int32_t SimulatedFiscalPrinter::ItemAdjustment(const char* method, int32_t type, const QString& description,
                                               Amount amount, int32_t vatInfo, bool isVoid) {
    if (Check(method, kReceipt, kBoth))
        return m_resultCode;
    int vat = 0;
    if (CheckDescription(description) || ResolveVat(vatInfo, &vat))
        return m_resultCode;
    Amount applied = 0;
    if (auto r = isVoid ? m_doc.receipt->VoidItemAdjustment(type, amount, vat, &applied)
                        : m_doc.receipt->AdjustItem(type, amount, vat, description, &applied))
        return Refuse(r);
    const Amount printed = (IsDiscount(type) != isVoid) ? -applied : applied;
    EmitPreLine();
    EmitMoney(kBoth, isVoid ? QStringLiteral("STORNO ") + description : description, printed);
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
    if (auto r = isVoid ? m_doc.receipt->VoidRefund(vat, amount) : m_doc.receipt->Refund(vat, amount))
        return Refuse(r);
    const Amount rounded = sim::RoundToCents(amount);
    EmitPreLine();
    EmitMoney(kBoth, (isVoid ? QStringLiteral("STORNO RESO ") : QStringLiteral("RESO ")) + description,
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
    if (Check("PrintRecSubtotal", kReceipt, kBoth))
        return m_resultCode;
    if (CancelledByTotalCheck(Amount_))
        return m_resultCode;
    m_doc.receipt->CountSubtotal();
    EmitMoney(kBoth, QStringLiteral("SUBTOTALE"), m_doc.receipt->Total());
    ShowOnDisplay(QStringLiteral("SUBTOTALE"), m_doc.receipt->Total());
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintRecSubtotalAdjustment(int32_t& AdjustmentType, QString& Description,
                                                           Amount& Amount_) {
    if (Check("PrintRecSubtotalAdjustment", kReceipt, kBoth))
        return m_resultCode;
    if (CheckDescription(Description))
        return m_resultCode;
    Amount applied = 0;
    if (auto r = m_doc.receipt->AdjustSubtotal(AdjustmentType, Amount_, &applied))
        return Refuse(r);
    EmitPreLine();
    EmitMoney(kBoth, Description, IsDiscount(AdjustmentType) ? -applied : applied);
    EmitPostLine();
    ShowOnDisplay(QStringLiteral("SUBTOTALE"), m_doc.receipt->Total());
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintRecSubtotalAdjustVoid(int32_t& AdjustmentType, Amount& Amount_) {
    if (Check("PrintRecSubtotalAdjustVoid", kReceipt, kBoth))
        return m_resultCode;
    Amount applied = 0;
    if (auto r = m_doc.receipt->VoidSubtotalAdjustment(AdjustmentType, Amount_, &applied))
        return Refuse(r);
    EmitPreLine();
    EmitMoney(kBoth, QStringLiteral("STORNO SUBTOTALE"), IsDiscount(AdjustmentType) ? applied : -applied);
    EmitPostLine();
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintRecTotal(Amount& Total, Amount& Payment, QString& Description) {
    if (Check("PrintRecTotal", kReceipt | kTotal, kBoth))
        return m_resultCode;
    if (Description.size() > 38)
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_ITEM_DESCRIPTION,
                      QStringLiteral("Description too long"));
    if (!sim::IsValidPrintControl(Description))
        return Result(OPOS_E_ILLEGAL, 0, QStringLiteral("Bad barcode in the text"));
    if (Payment != 0 && (!sim::InRange(Payment) || sim::RoundToCents(Payment) == 0))
        return Result(OPOS_E_EXTENDED, OPOS_EFPTR_BAD_ITEM_AMOUNT, QStringLiteral("Bad amount"));
    if (CancelledByTotalCheck(Total))
        return m_resultCode;
    if (Payment == 0) {
        // No payment: the total is printed and the tender phase opens, as drivers use it before
        // a not-paid amount.
        const bool first = !m_doc.receipt->PaymentStarted();
        if (auto r = m_doc.receipt->OpenTender())
            return Refuse(r);
        if (first)
            EmitMoney(kBoth, QStringLiteral("TOTALE EURO"), m_doc.receipt->Total());
        ShowOnDisplay(QStringLiteral("TOTALE"), m_doc.receipt->Total());
        EnterState(FPTR_PS_FISCAL_RECEIPT_TOTAL);
        return Flush();
    }
    const int predefined = PredefinedTender(Description);
    const int tender = predefined ? predefined : FPTR_PDL_CASH;
    const QString name = predefined || Description.isEmpty() ? TenderName(tender) : Description;
    const bool first = !m_doc.receipt->PaymentStarted();
    if (auto r = m_doc.receipt->Pay(Payment, tender))
        return Refuse(r);
    if (first)
        EmitMoney(kBoth, QStringLiteral("TOTALE EURO"), m_doc.receipt->Total());
    EmitMoney(kBoth, name, sim::RoundToCents(Payment));
    if (m_doc.receipt->FullyPaid()) {
        if (m_doc.receipt->Change() > 0) {
            const QString label =
                m_session.changeDue.isEmpty() ? QStringLiteral("RESTO") : m_session.changeDue;
            EmitMoney(kBoth, label, m_doc.receipt->Change());
            ShowOnDisplay(label, m_doc.receipt->Change());
        } else {
            ShowOnDisplay(QStringLiteral("TOTALE"), m_doc.receipt->Total());
        }
        EnterState(FPTR_PS_FISCAL_RECEIPT_ENDING);
    } else {
        ShowOnDisplay(QStringLiteral("TOTALE"), m_doc.receipt->Total());
        EnterState(FPTR_PS_FISCAL_RECEIPT_TOTAL);
    }
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintRecNotPaid(QString& Description, Amount& Amount_) {
    if (Check("PrintRecNotPaid", kTotal, kBoth))
        return m_resultCode;
    if (CheckDescription(Description))
        return m_resultCode;
    if (auto r = m_doc.receipt->PayNotPaid(Amount_))
        return Refuse(r);
    EmitMoney(kBoth, Description.isEmpty() ? QStringLiteral("NON RISCOSSO") : Description,
              sim::RoundToCents(Amount_));
    if (m_doc.receipt->FullyPaid())
        EnterState(FPTR_PS_FISCAL_RECEIPT_ENDING);
    return Flush();
}

int32_t SimulatedFiscalPrinter::PrintRecMessage(QString& Message) {
    if (Check("PrintRecMessage", kReceipt | kTotal | kEnding, kBoth))
        return m_resultCode;
    if (CheckPrintedText(Message, 46))
        return m_resultCode;
    m_doc.receipt->CountComment();
    Emit(kBoth, Message);
    return Flush();
}
