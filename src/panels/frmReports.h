#pragma once

#include "PanelContext.h"

#include <QWidget>

class frmReports : public QWidget {
    Q_OBJECT
public:
    explicit frmReports(PanelContext& ctx, QWidget* parent = nullptr);

    // Run by the toolbar's Enable.
    void RebuildTotalizerVatList();

private:
    PanelContext& m_ctx;
};
