#pragma once

#include "PanelContext.h"

#include <QWidget>

class frmFiscalTicket : public QWidget {
    Q_OBJECT
public:
    explicit frmFiscalTicket(PanelContext& ctx, QWidget* parent = nullptr);

    // Run by the toolbar's Enable, in this order with frmReports::RebuildTotalizerVatList between.
    void RebuildVatList();
    void RebuildPaymentForms();
    // Run by every tick of the main window's tmrUpdateControls.
    void MirrorReceiptOptions();

private:
    PanelContext& m_ctx;
};
