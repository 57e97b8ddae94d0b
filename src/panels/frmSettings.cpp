#include "frmSettings.h"

#include "Tools.h"
#include "clsFprtWrapper.h"
#include "panel_util.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace panel;

frmSettings::frmSettings(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("frmSettings"));

    // Configuration
    fraConfiguration = new QGroupBox(QStringLiteral("Configuration"), this);
    fraConfiguration->setObjectName(QStringLiteral("fraConfiguration"));
    cmdSetDate = Button(fraConfiguration, "cmdSetDate", QStringLiteral("SetDate"));
    cmdGetDate = Button(fraConfiguration, "cmdGetDate", QStringLiteral("GetDate"));
    txtSetDate = LineEdit(fraConfiguration, "txtSetDate");
    txtSetDate->setToolTip(QStringLiteral("Double click: now"));
    cmdSetPosID = Button(fraConfiguration, "cmdSetPosID", QStringLiteral("SetPosID"));
    txtPOSID = LineEdit(fraConfiguration, "txtPOSID");
    txtCASHIERID = LineEdit(fraConfiguration, "txtCASHIERID");
    cmdSetHeaderLine = Button(fraConfiguration, "cmdSetHeaderLine", QStringLiteral("SetHeaderLine"));
    txtSetHeaderLineNum = LineEdit(fraConfiguration, "txtSetHeaderLineNum", QStringLiteral("1"));
    txtSetHeaderLineText = LineEdit(fraConfiguration, "txtSetHeaderLineText", QStringLiteral("1"));
    chkDoubleWidthHeader = new QCheckBox(QStringLiteral("Double Width"), fraConfiguration);
    chkDoubleWidthHeader->setObjectName(QStringLiteral("chkDoubleWidthHeader"));
    cmdSetTrailerLine = Button(fraConfiguration, "cmdSetTrailerLine", QStringLiteral("SetTrailerLine"));
    txtSetTrailerLineNum = LineEdit(fraConfiguration, "txtSetTrailerLineNum", QStringLiteral("1"));
    txtSetTrailerLineText = LineEdit(fraConfiguration, "txtSetTrailerLineText", QStringLiteral("1"));
    chkDoubleWidthTrailer = new QCheckBox(QStringLiteral("Double Width"), fraConfiguration);
    chkDoubleWidthTrailer->setObjectName(QStringLiteral("chkDoubleWidthTrailer"));
    for (QLineEdit* num : {txtSetHeaderLineNum, txtSetTrailerLineNum})
        num->setMaximumWidth(60);

    auto* conf = new QGridLayout(fraConfiguration);
    conf->addWidget(cmdSetDate, 0, 0);
    conf->addWidget(cmdGetDate, 0, 1);
    conf->addWidget(Label(fraConfiguration, QStringLiteral("ddmmyyyyhhmm")), 0, 2);
    conf->addWidget(txtSetDate, 0, 3, 1, 2);
    conf->addWidget(cmdSetPosID, 1, 0);
    conf->addWidget(Label(fraConfiguration, QStringLiteral("POSID")), 1, 1);
    conf->addWidget(txtPOSID, 1, 2);
    conf->addWidget(Label(fraConfiguration, QStringLiteral("CashierID")), 1, 3);
    conf->addWidget(txtCASHIERID, 1, 4);
    conf->addWidget(cmdSetHeaderLine, 2, 0);
    conf->addWidget(Label(fraConfiguration, QStringLiteral("NUM")), 2, 1);
    conf->addWidget(txtSetHeaderLineNum, 2, 2);
    conf->addWidget(Label(fraConfiguration, QStringLiteral("TEXT")), 2, 3);
    conf->addWidget(txtSetHeaderLineText, 2, 4);
    conf->addWidget(chkDoubleWidthHeader, 2, 5);
    conf->addWidget(cmdSetTrailerLine, 3, 0);
    conf->addWidget(Label(fraConfiguration, QStringLiteral("NUM")), 3, 1);
    conf->addWidget(txtSetTrailerLineNum, 3, 2);
    conf->addWidget(Label(fraConfiguration, QStringLiteral("TEXT")), 3, 3);
    conf->addWidget(txtSetTrailerLineText, 3, 4);
    conf->addWidget(chkDoubleWidthTrailer, 3, 5);
    conf->setColumnStretch(4, 1);

    // VatRates
    fraVatRates = new QGroupBox(QStringLiteral("VatRates"), this);
    fraVatRates->setObjectName(QStringLiteral("fraVatRates"));
    cmdGetVatRate = Button(fraVatRates, "cmdGetVatRate", QStringLiteral("GetVatRates"));
    cmdSetVatRates = Button(fraVatRates, "cmdSetVatRates", QStringLiteral("SetVatRateTable"));
    lstVatRates = new QListWidget(fraVatRates);
    lstVatRates->setObjectName(QStringLiteral("lstVatRates"));
    txtVatRate = LineEdit(fraVatRates, "txtVatRate");
    txtVatIndex = LineEdit(fraVatRates, "txtVatIndex");
    txtVatIndex->setEnabled(false);

    auto* vat = new QGridLayout(fraVatRates);
    vat->addWidget(cmdGetVatRate, 0, 0);
    vat->addWidget(cmdSetVatRates, 1, 0);
    vat->addWidget(lstVatRates, 0, 1, 4, 1);
    vat->addWidget(Label(fraVatRates, QStringLiteral("VAT rate")), 0, 2);
    vat->addWidget(txtVatRate, 1, 2);
    vat->addWidget(Label(fraVatRates, QStringLiteral("VAT index")), 2, 2);
    vat->addWidget(txtVatIndex, 3, 2);
    vat->setRowStretch(3, 1);

    // Additional header and trailer (the caption's spelling is the operators' own)
    fraAdditional = new QGroupBox(QStringLiteral("Aditional trailers - headers"), this);
    fraAdditional->setObjectName(QStringLiteral("fraAdditional"));
    txtAdditionalHeader = MultiLine(fraAdditional, "txtAdditionalHeader");
    txtAdditionalTrailer = MultiLine(fraAdditional, "txtAdditionalTrailer");
    auto* add = new QGridLayout(fraAdditional);
    add->addWidget(Label(fraAdditional, QStringLiteral("Additional header")), 0, 0);
    add->addWidget(Label(fraAdditional, QStringLiteral("Additional trailer")), 0, 1);
    add->addWidget(txtAdditionalHeader, 1, 0);
    add->addWidget(txtAdditionalTrailer, 1, 1);

    auto* top = new QVBoxLayout(this);
    top->addWidget(fraConfiguration);
    top->addWidget(fraVatRates);
    top->addWidget(fraAdditional);

    connect(cmdGetDate, &QPushButton::clicked, this, &frmSettings::cmdGetDate_Click);
    connect(cmdSetDate, &QPushButton::clicked, this, &frmSettings::cmdSetDate_Click);
    connect(cmdSetPosID, &QPushButton::clicked, this, &frmSettings::cmdSetPosID_Click);
    connect(cmdSetHeaderLine, &QPushButton::clicked, this, &frmSettings::cmdSetHeaderLine_Click);
    connect(cmdSetTrailerLine, &QPushButton::clicked, this, &frmSettings::cmdSetTrailerLine_Click);
    connect(cmdGetVatRate, &QPushButton::clicked, this, &frmSettings::cmdGetVatRate_Click);
    connect(cmdSetVatRates, &QPushButton::clicked, this, &frmSettings::cmdSetVatRates_Click);
    // A row selected by code counts like a click: the writing loop relies on it.
    connect(lstVatRates, &QListWidget::currentRowChanged, this, &frmSettings::lstVatRates_Click);
    txtSetDate->installEventFilter(this);
    txtVatRate->installEventFilter(this);
}

QString frmSettings::AdditionalHeaderText() const {
    return MultiLineText(txtAdditionalHeader);
}
QString frmSettings::AdditionalTrailerText() const {
    return MultiLineText(txtAdditionalTrailer);
}

bool frmSettings::eventFilter(QObject* watched, QEvent* event) {
    if (watched == txtSetDate && event->type() == QEvent::MouseButtonDblClick) {
        txtSetDate_DblClick();
        return true;
    }
    if (watched == txtVatRate && event->type() == QEvent::FocusOut)
        txtVatRate_LostFocus();
    return QWidget::eventFilter(watched, event);
}

void frmSettings::cmdGetDate_Click() {
    txtSetDate->clear();
    QString date;
    if (m_ctx.wrapper.GetDate(date) == 0)
        txtSetDate->setText(date);
    m_ctx.refreshAfterCommand();
}

void frmSettings::cmdSetDate_Click() {
    m_ctx.wrapper.SetDate(txtSetDate->text());
    m_ctx.refreshAfterCommand();
}

void frmSettings::txtSetDate_DblClick() {
    txtSetDate->setText(NowDigits());
}

void frmSettings::cmdSetPosID_Click() {
    m_ctx.wrapper.SetPOSID(txtPOSID->text(), txtCASHIERID->text());
    m_ctx.refreshAfterCommand();
}

void frmSettings::cmdSetHeaderLine_Click() {
    const auto line = Tools::StrictInteger(txtSetHeaderLineNum->text());
    if (!line)
        return; // nothing readable to send
    m_ctx.wrapper.SetHeaderLine(*line, Tools::EscTokensToBytes(txtSetHeaderLineText->text()),
                                chkDoubleWidthHeader->isChecked());
    m_ctx.refreshAfterCommand();
}

void frmSettings::cmdSetTrailerLine_Click() {
    const auto line = Tools::StrictInteger(txtSetTrailerLineNum->text());
    if (!line)
        return;
    m_ctx.wrapper.SetTrailerLine(*line, Tools::EscTokensToBytes(txtSetTrailerLineText->text()),
                                 chkDoubleWidthTrailer->isChecked());
    m_ctx.refreshAfterCommand();
}

void frmSettings::cmdGetVatRate_Click() {
    lstVatRates->clear();
    const int32_t count = m_ctx.wrapper.NumVatRates();
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    for (int32_t id = 1; id <= count; ++id) {
        int32_t rate = 0;
        m_ctx.wrapper.GetVatEntry(id, 0, rate); // a failed read still gives its row
        lstVatRates->addItem(locale.toString(rate / 100.0, 'f', QLocale::FloatingPointShortest));
    }
    m_ctx.refreshAfterCommand();
}

void frmSettings::cmdSetVatRates_Click() {
    const int32_t count = m_ctx.wrapper.NumVatRates();
    // Without a row for every rate there is nothing sound to send: the table was never read.
    if (count > lstVatRates->count())
        return;
    for (int32_t id = 1; id <= count; ++id) {
        lstVatRates->setCurrentRow(id - 1);
        m_ctx.wrapper.SetVatValue(id, lstVatRates->item(id - 1)->text());
        m_ctx.refreshAfterCommand();
        if (m_ctx.wrapper.ResultCode() != 0)
            break;
    }
    lstVatRates->setCurrentRow(-1);
    lstVatRates->clearSelection();
    m_ctx.wrapper.SetVatTable();
    m_ctx.refreshAfterCommand();
}

void frmSettings::lstVatRates_Click(int row) {
    if (row < 0 || row >= lstVatRates->count())
        return;
    txtVatRate->setText(lstVatRates->item(row)->text());
    txtVatIndex->setText(QString::number(row + 1));
}

void frmSettings::txtVatRate_LostFocus() {
    bool ok = false;
    const int position = txtVatIndex->text().toInt(&ok) - 1;
    if (!ok || position < 0 || position >= lstVatRates->count())
        return;
    const QString rate = txtVatRate->text();
    // Replace the row in place; the selection stays on it.
    QSignalBlocker quiet(lstVatRates);
    delete lstVatRates->takeItem(position);
    lstVatRates->insertItem(position, rate);
    lstVatRates->setCurrentRow(position);
}
