#include "frmDirectIO.h"

#include "BitmapFileBrowser.h"
#include "DirectIODisplayTab.h"
#include "DirectIOGenericTab.h"
#include "DirectIOPrinterTab.h"
#include "DirectIOReportsTab.h"
#include "DirectIOSettingsTab.h"
#include "Tools.h"

#include <QTabWidget>
#include <QVBoxLayout>

frmDirectIO::frmDirectIO(PanelContext& ctx, const QString& serviceObjectName, QWidget* parent)
    : QWidget(parent) {
    setObjectName(QStringLiteral("frmDirectIO"));
    setWindowTitle(QStringLiteral("DirectIO"));

    SSTabDirectIO = new QTabWidget(this);
    SSTabDirectIO->setObjectName(QStringLiteral("SSTabDirectIO"));
    generic = new DirectIOGenericTab(ctx);
    reports = new DirectIOReportsTab(ctx);
    display = new DirectIODisplayTab(ctx);
    printer = new DirectIOPrinterTab(ctx);
    settings = new DirectIOSettingsTab(ctx);
    SSTabDirectIO->addTab(generic, QStringLiteral("DirectIO - Generic"));
    SSTabDirectIO->addTab(reports, QStringLiteral("DirectIO - Reports"));
    SSTabDirectIO->addTab(display, QStringLiteral("DirectIO - Display"));
    SSTabDirectIO->addTab(printer, QStringLiteral("DirectIO - Printer"));
    SSTabDirectIO->addTab(settings, QStringLiteral("Settings"));

    // The tabs take the panel's whole inner area.
    auto* top = new QVBoxLayout(this);
    top->setContentsMargins(0, 0, 0, 0);
    top->addWidget(SSTabDirectIO);

    Form_Load(serviceObjectName);
}

void frmDirectIO::Form_Load(const QString& serviceObjectName) {
    const QString folder = Tools::AppFolder();
    display->browser->SetFolder(folder);
    printer->browser->SetFolder(folder);
    printer->FillLists();
    display->FillLists();
    reports->FillLists();
    SSTabDirectIO->setCurrentIndex(0);
    if (serviceObjectName == CurrentServiceObject())
        printer->HideDeprecatedButtons();
}
