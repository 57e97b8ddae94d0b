#include "frmReports.h"

#include "clsFprtWrapper.h"
#include "panel_util.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <array>

using namespace panel;

namespace {

struct DataItemRow {
    const char* text;
    int32_t dataitem;
    int32_t optArgs;
};

// The rows of cbGetDataDataItem in order: 25 plain items, then the three families that take
// an option (tender 26, line count 27, description length 28), numbered from 1 within each.
constexpr std::array<DataItemRow, 74> DataItems{{
    {"GD_CURRENT_TOTAL", 1, 0},
    {"GD_DAILY_TOTAL", 2, 0},
    {"GD_RECEIPT_NUMBER", 3, 0},
    {"GD_REFUND", 4, 0},
    {"GD_NOT_PAID", 5, 0},
    {"GD_MID_VOID", 6, 0},
    {"GD_Z_REPORT", 7, 0},
    {"GD_GRAND_TOTAL", 8, 0},
    {"GD_PRINTER_ID", 9, 0},
    {"GD_FIRMWARE", 10, 0},
    {"GD_RESTART", 11, 0},
    {"GD_REFUND_VOID", 12, 0},
    {"GD_NUMB_CONFIG_BLOCK", 13, 0},
    {"GD_NUMB_CURRENCY_BLOCK", 14, 0},
    {"GD_NUMB_HDR_BLOCK", 15, 0},
    {"GD_NUMB_RESET_BLOCK", 16, 0},
    {"GD_NUMB_VAT_BLOCK", 17, 0},
    {"GD_FISCAL_DOC", 18, 0},
    {"GD_FISCAL_DOC_VOID", 19, 0},
    {"GD_FISCAL_REC", 20, 0},
    {"GD_FISCAL_REC_VOID", 21, 0},
    {"GD_NONFISCAL_DOC", 22, 0},
    {"GD_NONFISCAL_DOC_VOID", 23, 0},
    {"GD_NONFISCAL_REC", 24, 0},
    {"GD_SIMP_INVOICE", 25, 0},
    {"GD_TENDER - PDL_CASH", 26, 1},
    {"GD_TENDER - PDL_CHEQUE", 26, 2},
    {"GD_TENDER - PDL_CHITTY", 26, 3},
    {"GD_TENDER - PDL_COUPON", 26, 4},
    {"GD_TENDER - PDL_CURRENCY", 26, 5},
    {"GD_TENDER - PDL_DRIVEN_OFF", 26, 6},
    {"GD_TENDER - PDL_EFT_IMPRINTER", 26, 7},
    {"GD_TENDER - PDL_EFT_TERMINAL", 26, 8},
    {"GD_TENDER - PDL_TERMINAL_IMPRINTER", 26, 9},
    {"GD_TENDER - PDL_FREE_GIFT", 26, 10},
    {"GD_TENDER - PDL_GIRO", 26, 11},
    {"GD_TENDER - PDL_HOME", 26, 12},
    {"GD_TENDER - PDL_IMPRINTER_WITH_ISSUER", 26, 13},
    {"GD_TENDER - PDL_LOCAL_ACCOUNT", 26, 14},
    {"GD_TENDER - PDL_LOCAL_ACCOUNT_CARD", 26, 15},
    {"GD_TENDER - PDL_PAY_CARD", 26, 16},
    {"GD_TENDER - PDL_PAY_CARD_MANUAL", 26, 17},
    {"GD_TENDER - PDL_PREPAY", 26, 18},
    {"GD_TENDER - PDL_PUMP_TEST", 26, 19},
    {"GD_TENDER - PDL_SHORT_CREDIT", 26, 20},
    {"GD_TENDER - PDL_STAFF", 26, 21},
    {"GD_TENDER - PDL_VOUCHER", 26, 22},
    {"GD_LINECOUNT - LC_ITEM", 27, 1},
    {"GD_LINECOUNT - LC_ITEM_VOID", 27, 2},
    {"GD_LINECOUNT - LC_DISCOUNT", 27, 3},
    {"GD_LINECOUNT - LC_DISCOUNT_VOID", 27, 4},
    {"GD_LINECOUNT - LC_SURCHARGE", 27, 5},
    {"GD_LINECOUNT - LC_SURCHARGE_VOID", 27, 6},
    {"GD_LINECOUNT - LC_REFUND", 27, 7},
    {"GD_LINECOUNT - LC_REFUND_VOID", 27, 8},
    {"GD_LINECOUNT - LC_SUBTOTAL_DISCOUNT", 27, 9},
    {"GD_LINECOUNT - LC_SUBTOTAL_DISCOUNT_VOID", 27, 10},
    {"GD_LINECOUNT - LC_SUBTOTAL_SURCHARGE", 27, 11},
    {"GD_LINECOUNT - LC_SUBTOTAL_SURCHARGE_VOID", 27, 12},
    {"GD_LINECOUNT - LC_COMMENT", 27, 13},
    {"GD_LINECOUNT - LC_SUBTOTAL", 27, 14},
    {"GD_LINECOUNT - LC_TOTAL", 27, 15},
    {"GD_DESCRIPTION_LENGTH - DL_ITEM", 28, 1},
    {"GD_DESCRIPTION_LENGTH - DL_ITEM_ADJUSTMENT", 28, 2},
    {"GD_DESCRIPTION_LENGTH - DL_ITEM_FUEL", 28, 3},
    {"GD_DESCRIPTION_LENGTH - DL_ITEM_FUEL_VOID", 28, 4},
    {"GD_DESCRIPTION_LENGTH - DL_NOT_PAID", 28, 5},
    {"GD_DESCRIPTION_LENGTH - DL_PACKAGE_ADJUSTMENT", 28, 6},
    {"GD_DESCRIPTION_LENGTH - DL_REFUND", 28, 7},
    {"GD_DESCRIPTION_LENGTH - DL_REFUND_VOID", 28, 8},
    {"GD_DESCRIPTION_LENGTH - DL_SUBTOTAL_ADJUSTMENT", 28, 9},
    {"GD_DESCRIPTION_LENGTH - DL_TOTAL", 28, 10},
    {"GD_DESCRIPTION_LENGTH - DL_VOID", 28, 11},
    {"GD_DESCRIPTION_LENGTH - DL_VOID_ITEM", 28, 12},
}};

const char* const TotalizerOptions[] = {
    "FPTR_GT_GROSS",
    "FPTR_GT_NET",
    "FPTR_GT_DISCOUNT",
    "FPTR_GT_DISCOUNT_VOID",
    "FPTR_GT_ITEM",
    "FPTR_GT_ITEM_VOID",
    "FPTR_GT_NOT_PAID",
    "FPTR_GT_REFUND",
    "FPTR_GT_REFUND_VOID",
    "FPTR_GT_SUBTOTAL_DISCOUNT",
    "FPTR_GT_SUBTOTAL_DISCOUNT_VOID",
    "FPTR_GT_SUBTOTAL_SURCHARGES",
    "FPTR_GT_SUBTOTAL_SURCHARGES_VOID",
    "FPTR_GT_SURCHARGE",
    "FPTR_GT_SURCHARGE_VOID",
    "FPTR_GT_VAT",
    "FPTR_GT_VAT_CATEGORY",
};

QComboBox* List(QWidget* parent, const char* name) {
    auto* c = new QComboBox(parent);
    c->setObjectName(QLatin1StringView(name));
    c->setEditable(false);
    return c;
}

void Fill(QComboBox* list, const QStringList& rows) {
    list->clear();
    list->addItems(rows);
    list->setCurrentIndex(0);
}

} // namespace

frmReports::frmReports(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("frmReports"));
    setWindowTitle(QStringLiteral("Reports"));

    // Reports
    fraReports = new QGroupBox(QStringLiteral("Reports"), this);
    fraReports->setObjectName(QStringLiteral("fraReports"));
    QWidget* r = fraReports;
    cbReportType = List(r, "cbReportType");
    txtPrtRptStart = LineEdit(r, "txtPrtRptStart");
    txtPrtRptEnd = LineEdit(r, "txtPrtRptEnd");
    cmdPrintReport = Button(r, "cmdPrintReport", QStringLiteral("PrintReport"));
    txtPeriodReptStart = LineEdit(r, "txtPeriodReptStart");
    txtPeriodReptEnd = LineEdit(r, "txtPeriodReptEnd");
    cmdPrintPeriodicTotalsReport =
        Button(r, "cmdPrintPeriodicTotalsReport", QStringLiteral("Print PeriodicTotalsReport"));
    cmdXReport = Button(r, "cmdXReport", QStringLiteral("X Report"));
    cmdZReport = Button(r, "cmdZReport", QStringLiteral("Z Report"));
    auto* reports = new QGridLayout(fraReports);
    reports->addWidget(Label(r, QStringLiteral("Type ")), 0, 0);
    reports->addWidget(cbReportType, 0, 1);
    reports->addWidget(Label(r, QStringLiteral("Start num / date ddmmyyyyhhmm")), 1, 0);
    reports->addWidget(txtPrtRptStart, 1, 1);
    reports->addWidget(Label(r, QStringLiteral("End num / date ddmmyyyyhhmm")), 2, 0);
    reports->addWidget(txtPrtRptEnd, 2, 1);
    reports->addWidget(cmdPrintReport, 2, 2);
    reports->addWidget(Label(r, QStringLiteral("Start date ddmmyyyyhhmm")), 3, 0);
    reports->addWidget(txtPeriodReptStart, 3, 1);
    reports->addWidget(Label(r, QStringLiteral("End date ddmmyyyyhhmm")), 4, 0);
    reports->addWidget(txtPeriodReptEnd, 4, 1);
    reports->addWidget(cmdPrintPeriodicTotalsReport, 4, 2);
    auto* xz = new QHBoxLayout;
    xz->addWidget(cmdXReport);
    xz->addWidget(cmdZReport);
    reports->addLayout(xz, 5, 0, 1, 3);

    // Totalizers
    fraTotalizers = new QGroupBox(QStringLiteral("Totalizers"), this);
    fraTotalizers->setObjectName(QStringLiteral("fraTotalizers"));
    QWidget* t = fraTotalizers;
    cbTotalizerType = List(t, "cbTotalizerType");
    cmdGetTotalyzer = Button(t, "cmdGetTotalyzer", QStringLiteral("GetTotalyzer"));
    cbGetTotVatID = List(t, "cbGetTotVatID");
    cbGetTotOptArgs = List(t, "cbGetTotOptArgs");
    txtGetTotResult = LineEdit(t, "txtGetTotResult");
    cmdGetData = Button(t, "cmdGetData", QStringLiteral("GetData"));
    cbGetDataDataItem = List(t, "cbGetDataDataItem");
    txtGetDataResult = LineEdit(t, "txtGetDataResult");
    auto* totals = new QGridLayout(fraTotalizers);
    totals->addWidget(cbTotalizerType, 0, 1);
    totals->addWidget(cmdGetTotalyzer, 1, 0);
    totals->addWidget(cbGetTotVatID, 1, 1);
    totals->addWidget(cbGetTotOptArgs, 1, 2);
    totals->addWidget(txtGetTotResult, 1, 3);
    totals->addWidget(cmdGetData, 2, 0);
    totals->addWidget(cbGetDataDataItem, 2, 1, 1, 2);
    totals->addWidget(txtGetDataResult, 2, 3);
    totals->setColumnStretch(3, 1);

    // Various
    fraVarious = new QGroupBox(QStringLiteral("Various"), this);
    fraVarious->setObjectName(QStringLiteral("fraVarious"));
    cmdCheckHealth = Button(fraVarious, "cmdCheckHealth", QStringLiteral("CheckHealth"));
    cbCheckHealth = List(fraVarious, "cbCheckHealth");
    txtCheckHealth = LineEdit(fraVarious, "txtCheckHealth");
    auto* various = new QHBoxLayout(fraVarious);
    various->addWidget(cmdCheckHealth);
    various->addWidget(cbCheckHealth);
    various->addWidget(txtCheckHealth, 1);

    auto* top = new QVBoxLayout(this);
    top->addWidget(fraReports);
    top->addWidget(fraTotalizers);
    top->addWidget(fraVarious);
    top->addStretch(1);

    connect(cmdGetData, &QPushButton::clicked, this, &frmReports::cmdGetData_Click);
    connect(cmdGetTotalyzer, &QPushButton::clicked, this, &frmReports::cmdGetTotalyzer_Click);
    connect(cmdPrintReport, &QPushButton::clicked, this, &frmReports::cmdPrintReport_Click);
    connect(cmdPrintPeriodicTotalsReport, &QPushButton::clicked, this,
            &frmReports::cmdPrintPeriodicTotalsReport_Click);
    connect(cmdXReport, &QPushButton::clicked, this, &frmReports::cmdXReport_Click);
    connect(cmdZReport, &QPushButton::clicked, this, &frmReports::cmdZReport_Click);
    connect(cmdCheckHealth, &QPushButton::clicked, this, &frmReports::cmdCheckHealth_Click);
    for (QLineEdit* date : {txtPrtRptStart, txtPrtRptEnd, txtPeriodReptStart, txtPeriodReptEnd}) {
        date->setToolTip(QStringLiteral("Double click: today"));
        date->installEventFilter(this);
    }

    Form_Load();
}

std::optional<std::pair<int32_t, int32_t>> frmReports::DataItemOf(const QString& rowText) {
    for (const auto& row : DataItems)
        if (rowText == QLatin1StringView(row.text))
            return std::pair{row.dataitem, row.optArgs};
    return std::nullopt;
}

void frmReports::Form_Load() {
    Fill(cbReportType, {QStringLiteral("RT_ORDINAL"), QStringLiteral("RT_DATE")});
    FillTotalizerVatList();
    cbGetTotVatID->setCurrentIndex(0);
    QStringList rows;
    for (const char* option : TotalizerOptions)
        rows.append(QLatin1StringView(option));
    Fill(cbGetTotOptArgs, rows);
    rows.clear();
    for (const auto& item : DataItems)
        rows.append(QLatin1StringView(item.text));
    Fill(cbGetDataDataItem, rows);
    Fill(cbCheckHealth,
         {QStringLiteral("INTERNAL"), QStringLiteral("EXTERNAL"), QStringLiteral("INTERACTIVE")});
    Fill(cbTotalizerType, {QStringLiteral("FPTR_TT_DOCUMENT"), QStringLiteral("FPTR_TT_DAY"),
                           QStringLiteral("FPTR_TT_RECEIPT"), QStringLiteral("FPTR_TT_GRAND")});
}

void frmReports::FillTotalizerVatList() {
    QStringList rows{QStringLiteral("VAT Exempt")};
    const int32_t rates = m_ctx.wrapper.NumVatRates();
    for (int32_t n = 1; n <= rates; ++n)
        rows.append(QStringLiteral("VAT #") + QString::number(n));
    Fill(cbGetTotVatID, rows);
}

void frmReports::RebuildTotalizerVatList() {
    FillTotalizerVatList();
    // Rate 1 when there is one; a device without rates keeps the exempt row.
    cbGetTotVatID->setCurrentIndex(cbGetTotVatID->count() > 1 ? 1 : 0);
}

bool frmReports::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonDblClick) {
        for (QLineEdit* date : {txtPrtRptStart, txtPrtRptEnd, txtPeriodReptStart, txtPeriodReptEnd}) {
            if (watched == date) {
                // Midnight at the start of today, whatever the labels say about hours.
                date->setText(TodayDigits() + QStringLiteral("0000"));
                return true;
            }
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmReports::cmdGetData_Click() {
    const auto pair = DataItemOf(cbGetDataDataItem->currentText()).value_or(std::pair{0, 0});
    QString data;
    m_ctx.wrapper.GetData(pair.first, pair.second, data);
    txtGetDataResult->setText(data);
    m_ctx.refreshAfterCommand();
}

void frmReports::cmdGetTotalyzer_Click() {
    m_ctx.wrapper.ClearError();
    m_ctx.wrapper.SetTotalizerType(cbTotalizerType->currentIndex() + 1);
    m_ctx.refreshAfterCommand();
    if (m_ctx.wrapper.ResultCode() != 0)
        return;
    const int32_t vatId = cbGetTotVatID->currentIndex();
    const int32_t optArgs = cbGetTotOptArgs->currentIndex() + 1;
    QString data;
    m_ctx.wrapper.GetTotalizer(vatId, optArgs, data);
    m_ctx.refreshAfterCommand();
    txtGetTotResult->setText(data);
    m_ctx.refreshAfterCommand();
}

void frmReports::cmdPrintReport_Click() {
    const int32_t type = cbReportType->currentIndex() == 0 ? 1 : 2;
    m_ctx.wrapper.PrintReport(type, txtPrtRptStart->text(), txtPrtRptEnd->text());
    m_ctx.refreshAfterCommand();
}

void frmReports::cmdPrintPeriodicTotalsReport_Click() {
    m_ctx.wrapper.PrintPeriodicTotalsReport(txtPeriodReptStart->text(), txtPeriodReptEnd->text());
    m_ctx.refreshAfterCommand();
}

void frmReports::cmdXReport_Click() {
    m_ctx.wrapper.PrintXReport();
    m_ctx.refreshAfterCommand();
}

void frmReports::cmdZReport_Click() {
    m_ctx.wrapper.PrintZReport();
    m_ctx.refreshAfterCommand();
}

void frmReports::cmdCheckHealth_Click() {
    m_ctx.wrapper.CheckHealth(cbCheckHealth->currentIndex() + 1);
    m_ctx.refreshAfterCommand();
    txtCheckHealth->setText(m_ctx.wrapper.CheckHealthText());
}
