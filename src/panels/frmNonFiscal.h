#pragma once

#include "PanelContext.h"

#include <QWidget>

class frmNonFiscal : public QWidget {
    Q_OBJECT
public:
    explicit frmNonFiscal(PanelContext& ctx, QWidget* parent = nullptr);


private:
    PanelContext& m_ctx;
};
