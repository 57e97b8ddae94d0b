#include "DirectIOSettingsTab.h"

#include "VendorWidgets.h"
#include "Zorvane6DirectIO.h"
#include "panel_util.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>

using namespace Zorvane6DirectIO;

DirectIOSettingsTab::DirectIOSettingsTab(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("tabDirectIOSettings"));
    cmdDirectGetLinkToDepartment =
        panel::Button(this, "cmdDirectGetLinkToDepartment", QStringLiteral("Get Department/Vat Links"));
    cmdDirectSetLinkToDepartment =
        panel::Button(this, "cmdDirectSetLinkToDepartment", QStringLiteral("Set Department/Vat Links"));
    txtDeptVatLinks = panel::LineEdit(this, "txtDeptVatLinks", QStringLiteral("1A,2B"));

    auto* grid = new QGridLayout(this);
    grid->addWidget(cmdDirectGetLinkToDepartment, 0, 0);
    grid->addWidget(cmdDirectSetLinkToDepartment, 1, 0);
    grid->addWidget(txtDeptVatLinks, 0, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(2, 1);

    connect(cmdDirectGetLinkToDepartment, &QPushButton::clicked, this,
            &DirectIOSettingsTab::cmdDirectGetLinkToDepartment_Click);
    connect(cmdDirectSetLinkToDepartment, &QPushButton::clicked, this,
            &DirectIOSettingsTab::cmdDirectSetLinkToDepartment_Click);
}

void DirectIOSettingsTab::cmdDirectGetLinkToDepartment_Click() {
    // Whatever came back replaces the field, also after a failure.
    const auto reply = vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_DEPARTMENTCFG, {0});
    txtDeptVatLinks->setText(reply.text);
    m_ctx.refreshAfterCommand();
}

void DirectIOSettingsTab::cmdDirectSetLinkToDepartment_Click() {
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_DEPARTMENTCFG, {1}, txtDeptVatLinks->text());
    m_ctx.refreshAfterCommand();
}
