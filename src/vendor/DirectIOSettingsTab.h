#pragma once

#include "PanelContext.h"

#include <QWidget>

class QLineEdit;
class QPushButton;

// The printer's links between departments and VAT rates, read and written as one text.
class DirectIOSettingsTab : public QWidget {
    Q_OBJECT
public:
    explicit DirectIOSettingsTab(PanelContext& ctx, QWidget* parent = nullptr);

    QPushButton* cmdDirectGetLinkToDepartment;
    QPushButton* cmdDirectSetLinkToDepartment;
    QLineEdit* txtDeptVatLinks;

private:
    void cmdDirectGetLinkToDepartment_Click();
    void cmdDirectSetLinkToDepartment_Click();

    PanelContext& m_ctx;
};
