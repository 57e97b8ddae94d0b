#pragma once

#include "OposTypes.h"
#include "PanelContext.h"

#include <QWidget>

#include <functional>

#include <cstdint>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QScrollBar;
class QTimer;

// The fiscal receipt built by hand: one device method per button. Between the lines of a
// receipt a short timer brings the device's running total back into the total and payment fields.
class frmFiscalTicket : public QWidget {
    Q_OBJECT
public:
    explicit frmFiscalTicket(PanelContext& ctx, QWidget* parent = nullptr);

    // Run by the toolbar's Enable, in this order with frmReports::RebuildTotalizerVatList between.
    void RebuildVatList();
    void RebuildPaymentForms();
    // Run by every tick of the main window's tmrUpdateControls.
    void MirrorReceiptOptions();

    // Where the additional header and trailer texts come from: the settings panel's fields, which
    // the main window connects here so that the panels never reach into each other. Without a
    // source the text is empty.
    using TextSource = std::function<QString()>;
    void SetAdditionalTextSources(TextSource header, TextSource trailer) {
        m_headerSource = std::move(header);
        m_trailerSource = std::move(trailer);
    }

    int32_t itemCounter() const { return m_itemCounter; }
    int32_t lastResult() const { return m_lastResult; }

    // Range of the spinner beside txtPrintRecRpt.
    static constexpr int RepeatMin = 1;
    static constexpr int RepeatMax = 99;

    // Method's parameters
    QGroupBox* fraParameters;
    QLineEdit* txtItemName;
    QLineEdit* txtItemAmount;
    QLineEdit* txtItemQty;
    QLineEdit* txtItemUnitPrice;
    QLineEdit* txtUnitName;
    QLabel* lblVatID;
    QComboBox* cbVatId;
    QLabel* lblDeptID;
    QComboBox* cbDeptId;
    QCheckBox* chkDeptSelect;
    QComboBox* cbAdjustmentType;
    QLineEdit* txtAdjustmentAmount;
    QLineEdit* txtTicketTotal;
    QComboBox* cbPaymentForm;
    QLineEdit* txtPayment;
    QLineEdit* txtNotPaidDesc;
    QPlainTextEdit* txtRecMessage;

    // Options
    QGroupBox* fraOptions;
    QCheckBox* chkBegFiscalHeader;
    QCheckBox* chkDupReceipt;
    QCheckBox* chkAsyncMode;
    QCheckBox* chkFlagWhenIdle;
    QPushButton* cmdClearOutput;

    // Nota di Credito
    QGroupBox* fraCreditNote;
    QCheckBox* chkReceiptRefund;
    QLineEdit* txtPraticadiReso;

    // Methods
    QGroupBox* fraMethods;
    QPushButton* cmdBeginFiscRecpt;
    QPushButton* cmdPrintRecItem;
    QPushButton* cmdPrintRecVoidItem;
    QPushButton* cmdItemAdjustment;
    QPushButton* cmdPrintRecVoidItemAdj;
    QPushButton* cmdPrintRecRefund;
    QPushButton* cmdPrintRecRefundVoid;
    QPushButton* cmdSbtAdjustment;
    QPushButton* cmdSbtAdjustmentVoid;
    QPushButton* cmdPrintRecSbt;
    QPushButton* cmdPrintRecTotal;
    QPushButton* cmdPrintRecNotPaid;
    QPushButton* cmdRecVoid;
    QPushButton* cmdPrintRecMessage;
    QPushButton* cmdDupReceipt;
    QPushButton* cmdEndFiscRcpt;
    QPushButton* cmdPrintRecItemX;
    QLineEdit* txtPrintRecRpt;
    QScrollBar* UpDownPrintRecRpt;

    QTimer* tmrUpdateReceiptTotal;

private:
    void Form_Load();
    void StartReceiptTotalRefresh();
    void UpdateReceiptTotal();
    void tmrUpdateReceiptTotal_Timer();

    int32_t VatInfo() const;
    int32_t AdjustmentType() const;
    QString ItemName() const;
    QString CounterText() const;
    Amount FieldAmount(QLineEdit* field) const;
    QString AdditionalHeaderText() const;
    QString AdditionalTrailerText() const;
    // Ends a button action: keeps the result, refreshes, and arms the total refresh as asked.
    enum class Refresh { No, IfZero, Always };
    void Finish(int32_t result, Refresh refresh);

    void cmdBeginFiscRecpt_Click();
    void cmdEndFiscRcpt_Click();
    void cmdPrintRecItem_Click();
    void cmdPrintRecVoidItem_Click();
    void cmdItemAdjustment_Click();
    void cmdPrintRecVoidItemAdj_Click();
    void cmdPrintRecRefund_Click();
    void cmdPrintRecRefundVoid_Click();
    void cmdSbtAdjustment_Click();
    void cmdSbtAdjustmentVoid_Click();
    void cmdPrintRecSbt_Click();
    void cmdPrintRecTotal_Click();
    void cmdPrintRecNotPaid_Click();
    void cmdRecVoid_Click();
    void cmdPrintRecMessage_Click();
    void cmdDupReceipt_Click();
    void cmdClearOutput_Click();
    void cmdPrintRecItemX_Click();
    void chkDeptSelect_Click(bool checked);

    PanelContext& m_ctx;
    TextSource m_headerSource;
    TextSource m_trailerSource;
    int32_t m_itemCounter = 0;
    int32_t m_lastResult = 0;
};
