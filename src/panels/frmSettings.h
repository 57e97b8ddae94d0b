#pragma once

#include "PanelContext.h"

#include <QWidget>

class QCheckBox;
class QGroupBox;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

// Date, point-of-sale identity, header and trailer lines, the VAT table, and the two texts that
// the fiscal panel puts on a receipt as additional header and trailer.
class frmSettings : public QWidget {
    Q_OBJECT
public:
    explicit frmSettings(PanelContext& ctx, QWidget* parent = nullptr);

    // The two texts the fiscal panel sends when it opens and closes a receipt, line ends as CR LF.
    QString AdditionalHeaderText() const;
    QString AdditionalTrailerText() const;

    QGroupBox* fraConfiguration;
    QPushButton* cmdSetDate;
    QPushButton* cmdGetDate;
    QLineEdit* txtSetDate;
    QPushButton* cmdSetPosID;
    QLineEdit* txtPOSID;
    QLineEdit* txtCASHIERID;
    QPushButton* cmdSetHeaderLine;
    QLineEdit* txtSetHeaderLineNum;
    QLineEdit* txtSetHeaderLineText;
    QCheckBox* chkDoubleWidthHeader;
    QPushButton* cmdSetTrailerLine;
    QLineEdit* txtSetTrailerLineNum;
    QLineEdit* txtSetTrailerLineText;
    QCheckBox* chkDoubleWidthTrailer;

    QGroupBox* fraVatRates;
    QPushButton* cmdGetVatRate;
    QPushButton* cmdSetVatRates;
    QListWidget* lstVatRates;
    QLineEdit* txtVatRate;
    QLineEdit* txtVatIndex;

    QGroupBox* fraAdditional;
    QPlainTextEdit* txtAdditionalHeader;
    QPlainTextEdit* txtAdditionalTrailer;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cmdGetDate_Click();
    void cmdSetDate_Click();
    void txtSetDate_DblClick();
    void cmdSetPosID_Click();
    void cmdSetHeaderLine_Click();
    void cmdSetTrailerLine_Click();
    void cmdGetVatRate_Click();
    void cmdSetVatRates_Click();
    void lstVatRates_Click(int row);
    void txtVatRate_LostFocus();

    PanelContext& m_ctx;
};
