#pragma once

#include "PanelContext.h"

#include <QWidget>

class QComboBox;
class QPlainTextEdit;
class QPushButton;

// A non-fiscal document with free text, and training mode: each button is one device call.
class frmNonFiscal : public QWidget {
    Q_OBJECT
public:
    explicit frmNonFiscal(PanelContext& ctx, QWidget* parent = nullptr);

    QPushButton* cmdNFRecpt;
    QPushButton* cmdPrintNormal;
    QPushButton* cmdEndNonFiscal;
    QComboBox* cbPrintNorStation;
    QPlainTextEdit* txtPrintNormal;
    QPushButton* cmdBeginTraining;
    QPushButton* cmdEndTraining;

private:
    void PrintNormal();

    PanelContext& m_ctx;
};
