#include "frmReports.h"

frmReports::frmReports(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("frmReports"));
}

void frmReports::RebuildTotalizerVatList() {}
