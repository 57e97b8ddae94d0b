#pragma once

#include "PanelContext.h"

#include <QString>
#include <QWidget>

class DirectIODisplayTab;
class DirectIOGenericTab;
class DirectIOPrinterTab;
class DirectIOReportsTab;
class DirectIOSettingsTab;
class QTabWidget;

// The vendor commands behind the control's DirectIO entry, sent by hand from five tabs.
class frmDirectIO : public QWidget {
    Q_OBJECT
public:
    // The service object name decides whether the deprecated print commands are offered.
    frmDirectIO(PanelContext& ctx, const QString& serviceObjectName, QWidget* parent = nullptr);

    // The name whose service object no longer takes the deprecated commands.
    static QString CurrentServiceObject() { return QStringLiteral("ZorvaneFPU"); }

    QTabWidget* SSTabDirectIO;
    DirectIOGenericTab* generic;
    DirectIOReportsTab* reports;
    DirectIODisplayTab* display;
    DirectIOPrinterTab* printer;
    DirectIOSettingsTab* settings;

private:
    void Form_Load(const QString& serviceObjectName);
};
