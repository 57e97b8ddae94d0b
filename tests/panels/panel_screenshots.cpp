// Grabs the operator panels, the DirectIO panel, the Esc sequences generator and the automatic
// tests panel offscreen, on the simulated printer, for the documentation:
// panel_screenshots <output folder>.
#include "BitmapFileBrowser.h"
#include "DirectIODisplayTab.h"
#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "clsBenchLog.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"
#include "frmAutoTests.h"
#include "frmDirectIO.h"
#include "frmEscSequences.h"
#include "frmFiscalTicket.h"
#include "frmProperties.h"
#include "frmSettings.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QString folder = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath();
    SetMessageBoxHandler([](const QString& text, MsgButtons, const QString&) {
        std::fprintf(stderr, "message: %s\n", qPrintable(text));
        return MsgResult::Ok;
    });

    SimulatedFiscalPrinter printer;
    clsBenchLog log;
    clsFprtWrapper wrapper(printer, log);
    clsMacroEngine macro(wrapper);
    wrapper.SetRecorder(&macro);
    macro.Construct();
    PanelContext ctx{printer, wrapper, macro, [] {}};

    wrapper.WOpen(QStringLiteral("ZorvaneFPU"));
    wrapper.ClaimDevice(2000);
    wrapper.SetDeviceEnabled(true);

    frmSettings settings(ctx);
    frmFiscalTicket fiscal(ctx);
    fiscal.SetAdditionalTextSources([&] { return settings.AdditionalHeaderText(); },
                                    [&] { return settings.AdditionalTrailerText(); });
    fiscal.RebuildVatList();
    fiscal.RebuildPaymentForms();
    fiscal.resize(1000, 560);
    fiscal.show();
    fiscal.cmdBeginFiscRecpt->click();
    fiscal.cmdPrintRecItem->click();
    fiscal.cmdPrintRecItem->click();
    // Let the receipt total come back into its fields.
    QElapsedTimer waited;
    waited.start();
    while (fiscal.tmrUpdateReceiptTotal->isActive() && waited.elapsed() < 5000)
        QApplication::processEvents(QEventLoop::AllEvents, 50);

    frmProperties props(ctx);
    props.resize(640, 560);
    props.show();
    props.cmdReadProps->click();
    QApplication::processEvents();

    // The DirectIO panel's display tab, browsing a folder with two pictures.
    QTemporaryDir pictures;
    QImage logo(120, 60, QImage::Format_RGB32);
    logo.fill(Qt::white);
    QPainter paint(&logo);
    paint.setFont(QFont(QStringLiteral("Sans"), 20, QFont::Bold));
    paint.drawRect(0, 0, 119, 59);
    paint.drawText(logo.rect(), Qt::AlignCenter, QStringLiteral("SHOP"));
    paint.end();
    logo.save(pictures.filePath(QStringLiteral("shop-logo.bmp")), "BMP");
    logo.mirrored(true, false).save(pictures.filePath(QStringLiteral("mirror.bmp")), "BMP");
    frmDirectIO directIO(ctx, QStringLiteral("ZorvaneFPU"));
    directIO.resize(900, 560);
    directIO.show();
    directIO.SSTabDirectIO->setCurrentIndex(2);
    directIO.display->browser->SetFolder(pictures.path());
    emit directIO.display->filelistDisplayIcon->itemClicked(directIO.display->filelistDisplayIcon->item(1));
    directIO.display->filelistDisplayIcon->setCurrentRow(1);
    directIO.display->cmdDirDyBmpLoad->click();
    directIO.display->cmdDirDyPrintText->click();

    frmEscSequences generator;
    generator.show();
    generator.Command4->click();
    generator.Command8->click();
    generator.Command2->click();

    frmAutoTests autoTests(ctx);
    autoTests.resize(640, 320);
    autoTests.show();
    QApplication::processEvents();

    const QList<std::pair<QWidget*, const char*>> shots{{&fiscal, "fiscal-panel.png"},
                                                        {&props, "properties-panel.png"},
                                                        {&directIO, "directio-panel.png"},
                                                        {&generator, "esc-sequences.png"},
                                                        {&autoTests, "autotests-panel.png"}};
    bool ok = true;
    for (const auto& [w, file] : shots)
        ok = w->grab().save(QDir(folder).filePath(QLatin1StringView(file))) && ok;
    wrapper.ResetPrinter();
    return ok ? 0 : 1;
}
