#pragma once

#include "PanelContext.h"

#include <QWidget>

class frmSettings : public QWidget {
    Q_OBJECT
public:
    explicit frmSettings(PanelContext& ctx, QWidget* parent = nullptr);


private:
    PanelContext& m_ctx;
};
