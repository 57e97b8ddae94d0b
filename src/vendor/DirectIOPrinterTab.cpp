#include "DirectIOPrinterTab.h"

#include "BitmapFileBrowser.h"
#include "Tools.h"
#include "VendorWidgets.h"
#include "Zorvane6DirectIO.h"
#include "clsFprtWrapper.h"
#include "panel_util.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace panel;
using namespace Zorvane6DirectIO;

DirectIOPrinterTab::DirectIOPrinterTab(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("tabDirectIOPrinter"));

    // Bitmaps in the printer's memory
    auto* fraBitmaps = new QGroupBox(this);
    QWidget* b = fraBitmaps;
    cmdLoadBitmap = Button(b, "cmdLoadBitmap", QStringLiteral("LoadBitmap"));
    txtLoadBmpID = LineEdit(b, "txtLoadBmpID", QStringLiteral("1"));
    txtLoadBmpFileName = LineEdit(b, "txtLoadBmpFileName");
    browser = new BitmapFileBrowser("filelistTicketIcon", "cmdTicketSetFolder", "imgTicketIcons", b);
    filelistTicketIcon = browser->fileList;
    cmdTicketSetFolder = browser->cmdFolder;
    imgTicketIcons = browser->picture;
    cmdDirEraseBitmap = Button(b, "cmdDirEraseBitmap", QStringLiteral("EraseBitmap"));
    edtDirEraseBitmapID = LineEdit(b, "edtDirEraseBitmapID", QStringLiteral("1"));
    auto* bmp = new QGridLayout(fraBitmaps);
    bmp->addWidget(cmdLoadBitmap, 0, 0);
    bmp->addWidget(Label(b, QStringLiteral("ID")), 0, 1);
    bmp->addWidget(txtLoadBmpID, 0, 2);
    bmp->addWidget(Label(b, QStringLiteral("Bitmap file name")), 0, 3);
    bmp->addWidget(txtLoadBmpFileName, 0, 4);
    bmp->addWidget(browser, 1, 0, 1, 5);
    bmp->addWidget(cmdDirEraseBitmap, 2, 0);
    bmp->addWidget(Label(b, QStringLiteral("ID")), 2, 1);
    bmp->addWidget(edtDirEraseBitmapID, 2, 2);
    bmp->setColumnStretch(4, 1);

    // Deprecated commands
    auto* fraDeprecated = new QGroupBox(this);
    m_deprecated = fraDeprecated;
    QWidget* d = fraDeprecated;
    cmdPrintBitmap = Button(d, "cmdPrintBitmap", QStringLiteral("PrintBitmap (deprecated)"));
    cbDirBmpPrintStations = vendor::List(d, "cbDirBmpPrintStations");
    txtDirPrintBmpPrintMode = LineEdit(d, "txtDirPrintBmpPrintMode", QStringLiteral("30"));
    edtBitmapID = LineEdit(d, "edtBitmapID", QStringLiteral("1"));
    cmdDirPrintBarcode = Button(d, "cmdDirPrintBarcode", QStringLiteral("PrintBarcode (deprecated)"));
    cbDirBarcodePrintStations = vendor::List(d, "cbDirBarcodePrintStations");
    cbDirBarcodeType = vendor::List(d, "cbDirBarcodeType");
    edtBarcode = LineEdit(d, "edtBarcode", QStringLiteral("4007817504598"));
    cmdDirBeginCreditNote =
        Button(d, "cmdDirBeginCreditNote", QStringLiteral("BeginCreditNote (deprecated)"));
    txtCreditNoteNumber = LineEdit(d, "txtCreditNoteNumber", QStringLiteral("123456"));
    cmdDirEndCreditNote = Button(d, "cmdDirEndCreditNote", QStringLiteral("EndCreditNote (deprecated)"));
    QLabel* fieldLabels[] = {Label(d, QStringLiteral("Printer station")),
                             Label(d, QStringLiteral("PrintMode")), Label(d, QStringLiteral("ID"))};
    auto* dep = new QGridLayout(fraDeprecated);
    dep->addWidget(cmdPrintBitmap, 0, 0);
    dep->addWidget(fieldLabels[0], 0, 1);
    dep->addWidget(cbDirBmpPrintStations, 0, 2);
    dep->addWidget(fieldLabels[1], 0, 3);
    dep->addWidget(txtDirPrintBmpPrintMode, 0, 4);
    dep->addWidget(fieldLabels[2], 0, 5);
    dep->addWidget(edtBitmapID, 0, 6);
    dep->addWidget(cmdDirPrintBarcode, 1, 0);
    dep->addWidget(cbDirBarcodePrintStations, 1, 2);
    dep->addWidget(cbDirBarcodeType, 1, 4);
    dep->addWidget(edtBarcode, 1, 6);
    dep->addWidget(cmdDirBeginCreditNote, 2, 0);
    dep->addWidget(txtCreditNoteNumber, 2, 2);
    dep->addWidget(cmdDirEndCreditNote, 3, 0);
    dep->setColumnStretch(7, 1);

    auto* top = new QVBoxLayout(this);
    top->addWidget(fraBitmaps, 1);
    top->addWidget(fraDeprecated);

    vendor::KeepHidden({cbDirBmpPrintStations, txtDirPrintBmpPrintMode, edtBitmapID,
                        cbDirBarcodePrintStations, cbDirBarcodeType, edtBarcode, txtCreditNoteNumber,
                        fieldLabels[0], fieldLabels[1], fieldLabels[2]});

    connect(cmdLoadBitmap, &QPushButton::clicked, this, &DirectIOPrinterTab::cmdLoadBitmap_Click);
    connect(cmdDirEraseBitmap, &QPushButton::clicked, this, &DirectIOPrinterTab::cmdDirEraseBitmap_Click);
    connect(cmdPrintBitmap, &QPushButton::clicked, this, &DirectIOPrinterTab::cmdPrintBitmap_Click);
    connect(cmdDirPrintBarcode, &QPushButton::clicked, this, &DirectIOPrinterTab::cmdDirPrintBarcode_Click);
    connect(cmdDirBeginCreditNote, &QPushButton::clicked, this,
            &DirectIOPrinterTab::cmdDirBeginCreditNote_Click);
    connect(cmdDirEndCreditNote, &QPushButton::clicked, this, &DirectIOPrinterTab::cmdDirEndCreditNote_Click);
    connect(browser, &BitmapFileBrowser::fileChosen, txtLoadBmpFileName, &QLineEdit::setText);
}

void DirectIOPrinterTab::FillLists() {
    vendor::Fill(cbDirBmpPrintStations, vendor::StationRows());
    vendor::Fill(cbDirBarcodePrintStations, vendor::StationRows());
    vendor::Fill(cbDirBarcodeType, vendor::BarcodeTypeRows());
}

void DirectIOPrinterTab::HideDeprecatedButtons() {
    // Their fields are hidden anyway, so the frame would stand empty.
    vendor::KeepHidden(
        {cmdPrintBitmap, cmdDirPrintBarcode, cmdDirBeginCreditNote, cmdDirEndCreditNote, m_deprecated});
}

void DirectIOPrinterTab::cmdLoadBitmap_Click() {
    const auto id = Tools::LeadingInteger(txtLoadBmpID->text());
    if (!id)
        return;
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_BMPLOAD, {*id}, txtLoadBmpFileName->text());
    m_ctx.refreshAfterCommand();
}

void DirectIOPrinterTab::cmdDirEraseBitmap_Click() {
    const auto id = Tools::LeadingInteger(edtDirEraseBitmapID->text());
    if (!id)
        return;
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_BMPERASE, {*id});
    m_ctx.refreshAfterCommand();
}

void DirectIOPrinterTab::cmdPrintBitmap_Click() {
    // The print mode field holds hexadecimal digits: "30" is 48.
    const auto mode = Tools::LeadingInteger(QStringLiteral("&H") + txtDirPrintBmpPrintMode->text());
    const auto id = Tools::LeadingInteger(edtBitmapID->text());
    if (!mode || !id)
        return;
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_BMPPRINT,
                 {cbDirBmpPrintStations->currentIndex() + 1, *mode, *id});
    m_ctx.refreshAfterCommand();
}

void DirectIOPrinterTab::cmdDirPrintBarcode_Click() {
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_BARCODEPRINT,
                 {cbDirBarcodePrintStations->currentIndex() + 1,
                  vendor::BarcodeTypeOf(cbDirBarcodeType->currentText())},
                 edtBarcode->text());
    m_ctx.refreshAfterCommand();
}

void DirectIOPrinterTab::cmdDirBeginCreditNote_Click() {
    m_ctx.wrapper.SetAdditionalHeader(QStringLiteral("Test Addit. CCNOTA!"));
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_CREDITNOTE_BEGIN, {}, txtCreditNoteNumber->text());
    m_ctx.refreshAfterCommand();
}

void DirectIOPrinterTab::cmdDirEndCreditNote_Click() {
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_CREDITNOTE_END);
    m_ctx.refreshAfterCommand();
}
