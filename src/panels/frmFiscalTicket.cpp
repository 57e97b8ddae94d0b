#include "frmFiscalTicket.h"

frmFiscalTicket::frmFiscalTicket(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("frmFiscalTicket"));
}

void frmFiscalTicket::RebuildVatList() {}
void frmFiscalTicket::RebuildPaymentForms() {}
void frmFiscalTicket::MirrorReceiptOptions() {}
