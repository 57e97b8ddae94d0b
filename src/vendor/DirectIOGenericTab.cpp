#include "DirectIOGenericTab.h"

#include "Tools.h"
#include "VendorWidgets.h"
#include "Zorvane6DirectIO.h"
#include "panel_util.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

using namespace panel;
using namespace Zorvane6DirectIO;

DirectIOGenericTab::DirectIOGenericTab(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("tabDirectIOGeneric"));
    cmdDirOpenDrawer = Button(this, "cmdDirOpenDrawer", QStringLiteral("OpenDrawer"));
    cmdDirGetDrawer = Button(this, "cmdDirGetDrawer", QStringLiteral("GetDrawer"));
    lblDirGetDrawer = Label(this, QStringLiteral("n.a."), "lblDirGetDrawer");
    cmdResetTotalizers = Button(this, "cmdResetTotalizers", QStringLiteral("ResetTotalizers"));
    txtAdditionalResetTotalizers = LineEdit(this, "txtAdditionalResetTotalizers");
    cmdSetPollingTime = Button(this, "cmdSetPollingTime", QStringLiteral("SetPollingTime"));
    txtPollingTime = LineEdit(this, "txtPollingTime", QStringLiteral("1000"));
    cmdSimKb = Button(this, "cmdSimKb", QStringLiteral("SimulateKeys"));
    txtSimKeys = LineEdit(this, "txtSimKeys", QStringLiteral("49,48,48,65,102"));
    cmd_Debug_Test = Button(this, "cmd_Debug_Test", QStringLiteral("GetVirtualTicket"));
    txtDirectIoDebugTest = MultiLine(this, "txtDirectIoDebugTest", QStringLiteral("Text1"));
    txtDirectIoDebugTest->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtDirectIoDebugTest->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    txtDirectIoDebugTest->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    txtDirectIoDebugTest->setFont(QFont(QStringLiteral("Courier New")));
    QLabel* simKeysLabel = Label(this, QStringLiteral("Keys sequence"));

    auto* grid = new QGridLayout(this);
    grid->addWidget(cmdDirOpenDrawer, 0, 0);
    grid->addWidget(cmdDirGetDrawer, 1, 0);
    grid->addWidget(lblDirGetDrawer, 1, 1);
    grid->addWidget(cmdResetTotalizers, 2, 0);
    grid->addWidget(Label(this, QStringLiteral("Additional text")), 2, 1);
    grid->addWidget(txtAdditionalResetTotalizers, 2, 2);
    grid->addWidget(cmdSetPollingTime, 3, 0);
    grid->addWidget(Label(this, QStringLiteral("Time in millisecs")), 3, 1);
    grid->addWidget(txtPollingTime, 3, 2);
    grid->addWidget(cmdSimKb, 4, 0);
    grid->addWidget(simKeysLabel, 4, 1);
    grid->addWidget(txtSimKeys, 4, 2);
    grid->addWidget(cmd_Debug_Test, 5, 0, Qt::AlignTop);
    grid->addWidget(txtDirectIoDebugTest, 5, 1, 1, 2);
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(6, 1);

    vendor::KeepHidden({cmdSimKb, simKeysLabel, txtSimKeys, cmd_Debug_Test, txtDirectIoDebugTest});

    connect(cmdDirOpenDrawer, &QPushButton::clicked, this, &DirectIOGenericTab::cmdDirOpenDrawer_Click);
    connect(cmdDirGetDrawer, &QPushButton::clicked, this, &DirectIOGenericTab::cmdDirGetDrawer_Click);
    connect(cmdResetTotalizers, &QPushButton::clicked, this, &DirectIOGenericTab::cmdResetTotalizers_Click);
    connect(cmdSetPollingTime, &QPushButton::clicked, this, &DirectIOGenericTab::cmdSetPollingTime_Click);
    connect(cmdSimKb, &QPushButton::clicked, this, &DirectIOGenericTab::cmdSimKb_Click);
    connect(cmd_Debug_Test, &QPushButton::clicked, this, &DirectIOGenericTab::cmd_Debug_Test_Click);
}

void DirectIOGenericTab::cmdDirOpenDrawer_Click() {
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_DRAWER_OPEN);
    m_ctx.refreshAfterCommand();
}

void DirectIOGenericTab::cmdDirGetDrawer_Click() {
    // A failed read leaves element 0 at 0: the drawer shows as closed.
    const auto reply = vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_DRAWER_GET);
    lblDirGetDrawer->setText(reply.data[0] == 1 ? QStringLiteral("Opened") : QStringLiteral("Closed"));
    m_ctx.refreshAfterCommand();
}

void DirectIOGenericTab::cmdResetTotalizers_Click() {
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_RESET_TOTALIZERS, {}, txtAdditionalResetTotalizers->text());
    m_ctx.refreshAfterCommand();
}

void DirectIOGenericTab::cmdSetPollingTime_Click() {
    // A 16-bit field: beyond 32767, or no number at all, nothing is sent.
    const auto time = Tools::StrictInteger(txtPollingTime->text());
    if (!time)
        return;
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_SETPOLLINGTIME, {1, *time, -1, -1});
    m_ctx.refreshAfterCommand();
}

void DirectIOGenericTab::cmdSimKb_Click() {
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_SIMULATE_KEYBOARD, {}, txtSimKeys->text());
    m_ctx.refreshAfterCommand();
}

void DirectIOGenericTab::cmd_Debug_Test_Click() {
    const auto reply = vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_GETVIRTUALTICKET);
    // This one refreshes before it shows the answer.
    m_ctx.refreshAfterCommand();
    txtDirectIoDebugTest->setPlainText(reply.text);
}
