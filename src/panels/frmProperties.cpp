#include "frmProperties.h"

frmProperties::frmProperties(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("frmProperties"));
}
