#include "frmNonFiscal.h"

frmNonFiscal::frmNonFiscal(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("frmNonFiscal"));
}
