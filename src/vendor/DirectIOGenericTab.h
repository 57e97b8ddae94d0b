#pragma once

#include "PanelContext.h"

#include <QWidget>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

// Cash drawer, totalizer reset and polling time; the keyboard and virtual ticket commands are
// here too, hidden.
class DirectIOGenericTab : public QWidget {
    Q_OBJECT
public:
    explicit DirectIOGenericTab(PanelContext& ctx, QWidget* parent = nullptr);

    QPushButton* cmdDirOpenDrawer;
    QPushButton* cmdDirGetDrawer;
    QLabel* lblDirGetDrawer;
    QPushButton* cmdResetTotalizers;
    QLineEdit* txtAdditionalResetTotalizers;
    QPushButton* cmdSetPollingTime;
    QLineEdit* txtPollingTime;
    QPushButton* cmdSimKb;
    QLineEdit* txtSimKeys;
    QPushButton* cmd_Debug_Test;
    QPlainTextEdit* txtDirectIoDebugTest;

private:
    void cmdDirOpenDrawer_Click();
    void cmdDirGetDrawer_Click();
    void cmdResetTotalizers_Click();
    void cmdSetPollingTime_Click();
    void cmdSimKb_Click();
    void cmd_Debug_Test_Click();

    PanelContext& m_ctx;
};
