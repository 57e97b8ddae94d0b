#pragma once

#include "PanelContext.h"

#include <QWidget>

class frmProperties : public QWidget {
    Q_OBJECT
public:
    explicit frmProperties(PanelContext& ctx, QWidget* parent = nullptr);


private:
    PanelContext& m_ctx;
};
