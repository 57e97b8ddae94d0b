// Grabs the DirectIO panel (display tab) and the Esc sequences generator offscreen, on the
// simulated printer, for the documentation: vendor_screenshots <output folder>.
#include "BitmapFileBrowser.h"
#include "DirectIODisplayTab.h"
#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "clsBenchLog.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"
#include "frmDirectIO.h"
#include "frmEscSequences.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QString folder = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QDir::currentPath();

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

    // A folder with two pictures to browse.
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

    frmDirectIO panel(ctx, QStringLiteral("ZorvaneFPU"));
    panel.resize(900, 560);
    panel.show();
    panel.SSTabDirectIO->setCurrentIndex(2);
    panel.display->browser->SetFolder(pictures.path());
    emit panel.display->filelistDisplayIcon->itemClicked(panel.display->filelistDisplayIcon->item(1));
    panel.display->filelistDisplayIcon->setCurrentRow(1);
    panel.display->cmdDirDyBmpLoad->click();
    panel.display->cmdDirDyPrintText->click();
    QApplication::processEvents();

    frmEscSequences generator;
    generator.show();
    generator.Command4->click();
    generator.Command8->click();
    generator.Command2->click();
    QApplication::processEvents();

    const bool ok = panel.grab().save(QDir(folder).filePath(QStringLiteral("directio-panel.png"))) &&
                    generator.grab().save(QDir(folder).filePath(QStringLiteral("esc-sequences.png")));
    return ok ? 0 : 1;
}
