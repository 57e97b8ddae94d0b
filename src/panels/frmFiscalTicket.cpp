#include "frmFiscalTicket.h"

#include "Seams.h"
#include "Tools.h"
#include "clsFprtWrapper.h"
#include "panel_util.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

#include <limits>

using namespace panel;

namespace {

constexpr int32_t BusyState = 3;
constexpr int32_t FiscalReceiptTypeSales = 4;
constexpr int32_t FiscalReceiptTypeRefund = 7;
constexpr int32_t FirstDepartment = 10001;
constexpr int ReceiptTotalInterval = 500;

QCheckBox* CheckBox(QWidget* parent, const char* name, const QString& caption) {
    auto* c = new QCheckBox(caption, parent);
    c->setObjectName(QLatin1StringView(name));
    return c;
}

QComboBox* ComboBox(QWidget* parent, const char* name) {
    auto* c = new QComboBox(parent);
    c->setObjectName(QLatin1StringView(name));
    return c;
}

} // namespace

frmFiscalTicket::frmFiscalTicket(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("frmFiscalTicket"));

    // Method's parameters
    fraParameters = new QGroupBox(QStringLiteral("Method's parameters"), this);
    fraParameters->setObjectName(QStringLiteral("fraParameters"));
    QWidget* p = fraParameters;
    txtItemName = LineEdit(p, "txtItemName", QStringLiteral("Articolo test"));
    txtItemAmount = LineEdit(p, "txtItemAmount");
    txtItemQty = LineEdit(p, "txtItemQty");
    txtItemUnitPrice = LineEdit(p, "txtItemUnitPrice", QStringLiteral("0"));
    txtUnitName = LineEdit(p, "txtUnitName", QStringLiteral("Kg"));
    lblVatID = Label(p, QStringLiteral("Vat ID"), "lblVatID");
    cbVatId = ComboBox(p, "cbVatId");
    lblDeptID = Label(p, QStringLiteral("Dept ID"), "lblDeptID");
    cbDeptId = ComboBox(p, "cbDeptId");
    chkDeptSelect = CheckBox(p, "chkDeptSelect", QStringLiteral("Dept Mode"));
    cbAdjustmentType = ComboBox(p, "cbAdjustmentType");
    txtAdjustmentAmount = LineEdit(p, "txtAdjustmentAmount");
    txtTicketTotal = LineEdit(p, "txtTicketTotal", QStringLiteral("0"));
    cbPaymentForm = ComboBox(p, "cbPaymentForm");
    cbPaymentForm->setEditable(true);
    cbPaymentForm->setInsertPolicy(QComboBox::NoInsert);
    cbPaymentForm->setEditText(QStringLiteral("cbPaymentForm"));
    txtPayment = LineEdit(p, "txtPayment", QStringLiteral("0"));
    txtNotPaidDesc = LineEdit(p, "txtNotPaidDesc", QStringLiteral("<<Not Paid!>>"));
    txtRecMessage = MultiLine(p, "txtRecMessage", QStringLiteral("This is a message"));
    txtRecMessage->setMaximumHeight(60);
    lblDeptID->hide();
    cbDeptId->hide();

    auto* params = new QGridLayout(fraParameters);
    int row = 0;
    auto addRow = [&](QWidget* label, QWidget* field) {
        params->addWidget(label, row, 0);
        params->addWidget(field, row, 1);
        ++row;
    };
    addRow(Label(p, QStringLiteral("Description")), txtItemName);
    addRow(Label(p, QStringLiteral("Price")), txtItemAmount);
    addRow(Label(p, QStringLiteral("Qty")), txtItemQty);
    addRow(Label(p, QStringLiteral("Unit Price (not checked)")), txtItemUnitPrice);
    addRow(Label(p, QStringLiteral("Unit Description")), txtUnitName);
    // The VAT and department lists share one place; Dept Mode decides which one shows.
    params->addWidget(lblVatID, row, 0);
    params->addWidget(lblDeptID, row, 0);
    params->addWidget(cbVatId, row, 1);
    params->addWidget(cbDeptId, row, 1);
    ++row;
    params->addWidget(chkDeptSelect, row++, 1);
    addRow(Label(p, QStringLiteral("Adjustment Type")), cbAdjustmentType);
    addRow(Label(p, QStringLiteral("Adjustment amount")), txtAdjustmentAmount);
    addRow(Label(p, QStringLiteral("Ticket Total")), txtTicketTotal);
    addRow(Label(p, QStringLiteral("Payment Form")), cbPaymentForm);
    addRow(Label(p, QStringLiteral("Payment")), txtPayment);
    addRow(Label(p, QStringLiteral("Not Paid Description")), txtNotPaidDesc);
    addRow(Label(p, QStringLiteral("RecMessage")), txtRecMessage);
    params->setRowStretch(row, 1);

    // Options
    fraOptions = new QGroupBox(QStringLiteral("Options"), this);
    fraOptions->setObjectName(QStringLiteral("fraOptions"));
    chkBegFiscalHeader = CheckBox(fraOptions, "chkBegFiscalHeader", QStringLiteral("printHeader"));
    chkDupReceipt = CheckBox(fraOptions, "chkDupReceipt", QStringLiteral("DuplicateReceipt"));
    chkAsyncMode = CheckBox(fraOptions, "chkAsyncMode", QStringLiteral("Async Mode"));
    chkFlagWhenIdle = CheckBox(fraOptions, "chkFlagWhenIdle", QStringLiteral("FlagWhenIdle"));
    cmdClearOutput = Button(fraOptions, "cmdClearOutput", QStringLiteral("ClearOutput"));
    auto* options = new QVBoxLayout(fraOptions);
    for (QWidget* w : std::initializer_list<QWidget*>{chkBegFiscalHeader, chkDupReceipt, chkAsyncMode,
                                                      chkFlagWhenIdle, cmdClearOutput})
        options->addWidget(w);

    // Nota di Credito
    fraCreditNote = new QGroupBox(QStringLiteral("Nota di Credito"), this);
    fraCreditNote->setObjectName(QStringLiteral("fraCreditNote"));
    chkReceiptRefund = CheckBox(fraCreditNote, "chkReceiptRefund", QStringLiteral("\"Nota di Credito\""));
    txtPraticadiReso = LineEdit(fraCreditNote, "txtPraticadiReso");
    auto* credit = new QVBoxLayout(fraCreditNote);
    credit->addWidget(chkReceiptRefund);
    credit->addWidget(Label(fraCreditNote, QStringLiteral("Pratica diReso")));
    credit->addWidget(txtPraticadiReso);

    // Methods
    fraMethods = new QGroupBox(QStringLiteral("Methods"), this);
    fraMethods->setObjectName(QStringLiteral("fraMethods"));
    QWidget* m = fraMethods;
    cmdBeginFiscRecpt = Button(m, "cmdBeginFiscRecpt", QStringLiteral("BeginFiscalReceipt"));
    cmdPrintRecItem = Button(m, "cmdPrintRecItem", QStringLiteral("PrintRecItem"));
    cmdPrintRecVoidItem = Button(m, "cmdPrintRecVoidItem", QStringLiteral("PrintRecItemVoid"));
    cmdItemAdjustment = Button(m, "cmdItemAdjustment", QStringLiteral("ItemAdjustment"));
    cmdPrintRecVoidItemAdj =
        Button(m, "cmdPrintRecVoidItemAdj", QStringLiteral("PrintRecItemAdjustmentVoid"));
    cmdPrintRecRefund = Button(m, "cmdPrintRecRefund", QStringLiteral("PrintRecRefund"));
    cmdPrintRecRefundVoid = Button(m, "cmdPrintRecRefundVoid", QStringLiteral("PrintRecRefundVoid"));
    cmdSbtAdjustment = Button(m, "cmdSbtAdjustment", QStringLiteral("SBT Adjustment"));
    cmdSbtAdjustmentVoid = Button(m, "cmdSbtAdjustmentVoid", QStringLiteral("SBT Adjustment Void"));
    cmdPrintRecSbt = Button(m, "cmdPrintRecSbt", QStringLiteral("PrintRecSubtotal"));
    cmdPrintRecTotal = Button(m, "cmdPrintRecTotal", QStringLiteral("PrintRecTotal"));
    cmdPrintRecNotPaid = Button(m, "cmdPrintRecNotPaid", QStringLiteral("PrintRecNotPaid"));
    cmdRecVoid = Button(m, "cmdRecVoid", QStringLiteral("PrintRecVoid"));
    cmdPrintRecMessage = Button(m, "cmdPrintRecMessage", QStringLiteral("PrintRecMessage"));
    cmdDupReceipt = Button(m, "cmdDupReceipt", QStringLiteral("PrintDuplicateReceipt"));
    cmdEndFiscRcpt = Button(m, "cmdEndFiscRcpt", QStringLiteral("EndFiscalReceipt"));
    cmdPrintRecItemX = Button(m, "cmdPrintRecItemX", QStringLiteral("PrintRecItemX"));
    txtPrintRecRpt = LineEdit(m, "txtPrintRecRpt", QStringLiteral("5"));
    txtPrintRecRpt->setMaximumWidth(50);
    // The spinner only steps the count field; the field is what the action reads.
    UpDownPrintRecRpt = new QScrollBar(Qt::Vertical, m);
    UpDownPrintRecRpt->setObjectName(QStringLiteral("UpDownPrintRecRpt"));
    UpDownPrintRecRpt->setRange(RepeatMin, RepeatMax);
    UpDownPrintRecRpt->setValue(5);
    UpDownPrintRecRpt->setPageStep(1);
    UpDownPrintRecRpt->setInvertedAppearance(true); // the upper arrow counts up
    UpDownPrintRecRpt->setFixedHeight(txtPrintRecRpt->sizeHint().height());

    auto* methods = new QGridLayout(fraMethods);
    const QList<QPushButton*> left{cmdBeginFiscRecpt,     cmdPrintRecItem,        cmdPrintRecVoidItem,
                                   cmdItemAdjustment,     cmdPrintRecVoidItemAdj, cmdPrintRecRefund,
                                   cmdPrintRecRefundVoid, cmdSbtAdjustment,       cmdSbtAdjustmentVoid};
    const QList<QPushButton*> right{cmdPrintRecSbt,     cmdPrintRecTotal, cmdPrintRecNotPaid, cmdRecVoid,
                                    cmdPrintRecMessage, cmdDupReceipt,    cmdEndFiscRcpt};
    for (int i = 0; i < left.size(); ++i)
        methods->addWidget(left[i], i, 0);
    for (int i = 0; i < right.size(); ++i)
        methods->addWidget(right[i], i, 1);
    auto* repeat = new QHBoxLayout;
    repeat->addWidget(cmdPrintRecItemX, 1);
    repeat->addWidget(txtPrintRecRpt);
    repeat->addWidget(UpDownPrintRecRpt);
    methods->addLayout(repeat, int(right.size()), 1);
    methods->setRowStretch(int(left.size()), 1);

    auto* side = new QVBoxLayout;
    side->addWidget(fraOptions);
    side->addWidget(fraCreditNote);
    side->addStretch(1);
    auto* top = new QHBoxLayout(this);
    top->addWidget(fraParameters, 3);
    top->addWidget(fraMethods, 3);
    top->addLayout(side, 2);

    tmrUpdateReceiptTotal = new QTimer(this);
    tmrUpdateReceiptTotal->setObjectName(QStringLiteral("tmrUpdateReceiptTotal"));

    connect(tmrUpdateReceiptTotal, &QTimer::timeout, this, &frmFiscalTicket::tmrUpdateReceiptTotal_Timer);
    connect(cmdBeginFiscRecpt, &QPushButton::clicked, this, &frmFiscalTicket::cmdBeginFiscRecpt_Click);
    connect(cmdEndFiscRcpt, &QPushButton::clicked, this, &frmFiscalTicket::cmdEndFiscRcpt_Click);
    connect(cmdPrintRecItem, &QPushButton::clicked, this, &frmFiscalTicket::cmdPrintRecItem_Click);
    connect(cmdPrintRecVoidItem, &QPushButton::clicked, this, &frmFiscalTicket::cmdPrintRecVoidItem_Click);
    connect(cmdItemAdjustment, &QPushButton::clicked, this, &frmFiscalTicket::cmdItemAdjustment_Click);
    connect(cmdPrintRecVoidItemAdj, &QPushButton::clicked, this,
            &frmFiscalTicket::cmdPrintRecVoidItemAdj_Click);
    connect(cmdPrintRecRefund, &QPushButton::clicked, this, &frmFiscalTicket::cmdPrintRecRefund_Click);
    connect(cmdPrintRecRefundVoid, &QPushButton::clicked, this,
            &frmFiscalTicket::cmdPrintRecRefundVoid_Click);
    connect(cmdSbtAdjustment, &QPushButton::clicked, this, &frmFiscalTicket::cmdSbtAdjustment_Click);
    connect(cmdSbtAdjustmentVoid, &QPushButton::clicked, this, &frmFiscalTicket::cmdSbtAdjustmentVoid_Click);
    connect(cmdPrintRecSbt, &QPushButton::clicked, this, &frmFiscalTicket::cmdPrintRecSbt_Click);
    connect(cmdPrintRecTotal, &QPushButton::clicked, this, &frmFiscalTicket::cmdPrintRecTotal_Click);
    connect(cmdPrintRecNotPaid, &QPushButton::clicked, this, &frmFiscalTicket::cmdPrintRecNotPaid_Click);
    connect(cmdRecVoid, &QPushButton::clicked, this, &frmFiscalTicket::cmdRecVoid_Click);
    connect(cmdPrintRecMessage, &QPushButton::clicked, this, &frmFiscalTicket::cmdPrintRecMessage_Click);
    connect(cmdDupReceipt, &QPushButton::clicked, this, &frmFiscalTicket::cmdDupReceipt_Click);
    connect(cmdClearOutput, &QPushButton::clicked, this, &frmFiscalTicket::cmdClearOutput_Click);
    connect(cmdPrintRecItemX, &QPushButton::clicked, this, &frmFiscalTicket::cmdPrintRecItemX_Click);

    // A change by code counts like the operator's click, as the mirror of the device relies on.
    connect(chkAsyncMode, &QCheckBox::toggled, this, [this](bool on) { m_ctx.wrapper.SetAsyncMode(on); });
    connect(chkDupReceipt, &QCheckBox::toggled, this,
            [this](bool on) { m_ctx.wrapper.SetDuplicateReceipt(on); });
    connect(chkFlagWhenIdle, &QCheckBox::toggled, this,
            [this](bool on) { m_ctx.wrapper.SetFlagWhenIdle(on); });
    connect(chkDeptSelect, &QCheckBox::toggled, this, &frmFiscalTicket::chkDeptSelect_Click);

    connect(UpDownPrintRecRpt, &QScrollBar::valueChanged, this,
            [this](int value) { txtPrintRecRpt->setText(QString::number(value)); });
    connect(txtPrintRecRpt, &QLineEdit::textEdited, this, [this](const QString& text) {
        bool ok = false;
        const int value = text.trimmed().toInt(&ok);
        if (ok && value >= RepeatMin && value <= RepeatMax) {
            QSignalBlocker quiet(UpDownPrintRecRpt);
            UpDownPrintRecRpt->setValue(value);
        }
    });

    Form_Load();
}

void frmFiscalTicket::Form_Load() {
    cbVatId->clear();
    cbVatId->addItem(QStringLiteral("VAT Exempt"));
    const int32_t rates = m_ctx.wrapper.NumVatRates();
    for (int32_t n = 1; n <= rates; ++n)
        cbVatId->addItem(QStringLiteral("VAT #") + QString::number(n));
    cbVatId->setCurrentIndex(0);

    cbDeptId->clear();
    for (int n = 1; n <= 250; ++n)
        cbDeptId->addItem(QStringLiteral("DEPT #") + QString::number(n));
    cbDeptId->setCurrentIndex(0);

    cbAdjustmentType->clear();
    cbAdjustmentType->addItems(
        {QStringLiteral("FPTR_AT_AMOUNT_DISCOUNT"), QStringLiteral("FPTR_AT_AMOUNT_SURCHARGE"),
         QStringLiteral("FPTR_AT_PERCENTAGE_DISCOUNT"), QStringLiteral("FPTR_AT_PERCENTAGE_SURCHARGE")});
    cbAdjustmentType->setCurrentIndex(0);

    txtItemAmount->setText(Tools::AmountToText(1 * AmountScale));
    txtAdjustmentAmount->setText(Tools::AmountToText(AmountScale / 10));
    txtItemQty->setText(Tools::AmountToText(0));
}

void frmFiscalTicket::RebuildVatList() {
    cbVatId->clear();
    cbVatId->addItem(QStringLiteral("VAT Exempt"));
    const int32_t rates = m_ctx.wrapper.NumVatRates();
    for (int32_t n = 1; n <= rates; ++n)
        cbVatId->addItem(QStringLiteral("VAT #") + QString::number(n));
    // VAT 1 when the device has one; otherwise the exempt row keeps the list usable.
    cbVatId->setCurrentIndex(cbVatId->count() > 1 ? 1 : 0);
}

void frmFiscalTicket::RebuildPaymentForms() {
    cbPaymentForm->clear();
    for (int n = 0; n <= 10; ++n)
        cbPaymentForm->addItem(QString::number(n));
    cbPaymentForm->setCurrentIndex(0);
}

void frmFiscalTicket::MirrorReceiptOptions() {
    chkDupReceipt->setChecked(m_ctx.control.DuplicateReceipt());
    chkFlagWhenIdle->setChecked(m_ctx.control.FlagWhenIdle());
}

// ---- derived values

int32_t frmFiscalTicket::VatInfo() const {
    if (chkDeptSelect->isChecked())
        return cbDeptId->currentIndex() + FirstDepartment;
    return cbVatId->currentIndex();
}

int32_t frmFiscalTicket::AdjustmentType() const {
    return cbAdjustmentType->currentIndex() + 1;
}

QString frmFiscalTicket::ItemName() const {
    return Tools::EscTokensToBytes(txtItemName->text());
}

QString frmFiscalTicket::CounterText() const {
    return Tools::NumberText(m_itemCounter);
}

Amount frmFiscalTicket::FieldAmount(QLineEdit* field) const {
    QString text = field->text(); // the field itself keeps what the operator typed
    return Tools::TextToAmount(text);
}

QString frmFiscalTicket::AdditionalHeaderText() const {
    return m_headerSource ? m_headerSource() : QString();
}

QString frmFiscalTicket::AdditionalTrailerText() const {
    return m_trailerSource ? m_trailerSource() : QString();
}

void frmFiscalTicket::Finish(int32_t result, Refresh refresh) {
    m_lastResult = result;
    m_ctx.refreshAfterCommand();
    if (refresh == Refresh::Always || (refresh == Refresh::IfZero && result == 0))
        StartReceiptTotalRefresh();
}

// ---- receipt total refresh

void frmFiscalTicket::StartReceiptTotalRefresh() {
    tmrUpdateReceiptTotal->setInterval(ReceiptTotalInterval);
    tmrUpdateReceiptTotal->start();
}

void frmFiscalTicket::tmrUpdateReceiptTotal_Timer() {
    if (m_ctx.wrapper.State() == BusyState)
        return;
    UpdateReceiptTotal();
    tmrUpdateReceiptTotal->stop();
}

void frmFiscalTicket::UpdateReceiptTotal() {
    QString data;
    m_ctx.wrapper.GetData(1, 0, data);
    // The device answers whole hundredths.
    bool ok = false;
    const qlonglong hundredths = data.trimmed().toLongLong(&ok);
    constexpr qlonglong limit = std::numeric_limits<Amount>::max() / 100;
    if (ok && hundredths <= limit && hundredths >= -limit)
        txtTicketTotal->setText(Tools::AmountToText(Amount(hundredths) * 100));
    txtPayment->setText(txtTicketTotal->text());
}

// ---- buttons

void frmFiscalTicket::cmdBeginFiscRecpt_Click() {
    if (chkReceiptRefund->isChecked()) {
        m_ctx.wrapper.SetFiscalReceiptType(FiscalReceiptTypeRefund);
        m_ctx.wrapper.SetPreLine(txtPraticadiReso->text());
    } else {
        m_ctx.wrapper.SetFiscalReceiptType(FiscalReceiptTypeSales);
    }
    m_ctx.wrapper.SetAdditionalHeader(Tools::EscTokensToBytes(AdditionalHeaderText()));
    m_ctx.wrapper.BeginFiscalReceipt(chkBegFiscalHeader->isChecked());
    m_ctx.refreshAfterCommand();
    m_itemCounter = 0;
    StartReceiptTotalRefresh();
}

void frmFiscalTicket::cmdEndFiscRcpt_Click() {
    m_ctx.wrapper.SetAdditionalTrailer(Tools::EscTokensToBytes(AdditionalTrailerText()));
    m_lastResult = m_ctx.wrapper.EndFiscalReceipt(chkBegFiscalHeader->isChecked());
    m_ctx.refreshAfterCommand();
}

void frmFiscalTicket::cmdPrintRecItem_Click() {
    ++m_itemCounter;
    const QString description = ItemName() + CounterText();
    const Amount price = FieldAmount(txtItemAmount);
    const auto quantity = AmountToWhole(FieldAmount(txtItemQty));
    const int32_t vatInfo = VatInfo();
    const Amount unitPrice = FieldAmount(txtItemUnitPrice);
    if (!quantity)
        return; // a quantity beyond 32 bits has no whole number to send
    Finish(m_ctx.wrapper.PrintRecItem(description, price, *quantity, vatInfo, unitPrice, txtUnitName->text()),
           Refresh::IfZero);
}

void frmFiscalTicket::cmdPrintRecVoidItem_Click() {
    const QString description = QStringLiteral("**** ") + ItemName() + CounterText();
    const Amount price = FieldAmount(txtItemAmount);
    const auto quantity = AmountToWhole(FieldAmount(txtItemQty));
    const int32_t vatInfo = VatInfo();
    const Amount unitPrice = FieldAmount(txtItemUnitPrice);
    if (!quantity)
        return;
    Finish(m_ctx.wrapper.PrintRecItemVoid(description, price, *quantity, vatInfo, unitPrice,
                                          txtUnitName->text()),
           Refresh::IfZero);
}

void frmFiscalTicket::cmdItemAdjustment_Click() {
    const int32_t type = AdjustmentType();
    const QString description = Tools::EscTokensToBytes(cbAdjustmentType->currentText());
    const Amount amount = FieldAmount(txtAdjustmentAmount);
    Finish(m_ctx.wrapper.PrintRecItemAdjustment(type, description, amount, VatInfo()), Refresh::IfZero);
}

void frmFiscalTicket::cmdPrintRecVoidItemAdj_Click() {
    const int32_t type = AdjustmentType();
    const QString description = QStringLiteral("**** ") + ItemName() + CounterText();
    const Amount amount = FieldAmount(txtAdjustmentAmount);
    Finish(m_ctx.wrapper.PrintRecItemAdjustmentVoid(type, description, amount, VatInfo()), Refresh::IfZero);
}

void frmFiscalTicket::cmdPrintRecRefund_Click() {
    const QString description = QStringLiteral("REFUND>>") + ItemName();
    const Amount amount = FieldAmount(txtItemAmount);
    Finish(m_ctx.wrapper.PrintRecRefund(description, amount, VatInfo()), Refresh::Always);
}

void frmFiscalTicket::cmdPrintRecRefundVoid_Click() {
    const QString description = QStringLiteral("REFUNDVOID>>") + ItemName();
    const Amount amount = FieldAmount(txtItemAmount);
    Finish(m_ctx.wrapper.PrintRecRefundVoid(description, amount, VatInfo()), Refresh::IfZero);
}

void frmFiscalTicket::cmdSbtAdjustment_Click() {
    const int32_t type = AdjustmentType();
    const Amount amount = FieldAmount(txtAdjustmentAmount);
    Finish(m_ctx.wrapper.PrintRecSubtotalAdjustment(type, cbAdjustmentType->currentText(), amount),
           Refresh::IfZero);
}

void frmFiscalTicket::cmdSbtAdjustmentVoid_Click() {
    const int32_t type = AdjustmentType();
    Finish(m_ctx.wrapper.PrintRecSubtotalAdjustVoid(type, FieldAmount(txtAdjustmentAmount)), Refresh::IfZero);
}

void frmFiscalTicket::cmdPrintRecSbt_Click() {
    Finish(m_ctx.wrapper.PrintRecSubtotal(FieldAmount(txtTicketTotal)), Refresh::No);
}

void frmFiscalTicket::cmdPrintRecTotal_Click() {
    const Amount total = FieldAmount(txtTicketTotal);
    const Amount payment = FieldAmount(txtPayment);
    const QString description = Tools::EscTokensToBytes(cbPaymentForm->currentText());
    Finish(m_ctx.wrapper.PrintRecTotal(total, payment, description), Refresh::No);
}

void frmFiscalTicket::cmdPrintRecNotPaid_Click() {
    const QString description = Tools::EscTokensToBytes(txtNotPaidDesc->text());
    Finish(m_ctx.wrapper.PrintRecNotPaid(description, FieldAmount(txtPayment)), Refresh::No);
}

void frmFiscalTicket::cmdRecVoid_Click() {
    Finish(m_ctx.wrapper.PrintRecVoid(Tools::EscTokensToBytes(txtNotPaidDesc->text())), Refresh::No);
}

void frmFiscalTicket::cmdPrintRecMessage_Click() {
    Finish(m_ctx.wrapper.PrintRecMessage(Tools::EscTokensToBytes(MultiLineText(txtRecMessage))), Refresh::No);
}

void frmFiscalTicket::cmdDupReceipt_Click() {
    Finish(m_ctx.wrapper.PrintDuplicateReceipt(), Refresh::No);
}

void frmFiscalTicket::cmdClearOutput_Click() {
    Finish(m_ctx.wrapper.ClearOutput(), Refresh::No);
}

void frmFiscalTicket::cmdPrintRecItemX_Click() {
    const int16_t count = Tools::StrictInteger(txtPrintRecRpt->text()).value_or(0);
    if (count == 0)
        ShowMessage(QStringLiteral("BAD NUMBERO OF REPETITION"));
    for (int i = 1; i <= count; ++i) {
        cmdPrintRecItem_Click();
        if (m_ctx.wrapper.ResultCode() != 0)
            break;
    }
}

void frmFiscalTicket::chkDeptSelect_Click(bool checked) {
    cbVatId->setVisible(!checked);
    lblVatID->setVisible(!checked);
    cbDeptId->setVisible(checked);
    lblDeptID->setVisible(checked);
}
