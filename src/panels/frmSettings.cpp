#include "frmSettings.h"

frmSettings::frmSettings(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("frmSettings"));
}
