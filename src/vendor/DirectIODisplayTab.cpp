#include "DirectIODisplayTab.h"

#include "BitmapFileBrowser.h"
#include "Tools.h"
#include "VendorWidgets.h"
#include "Zorvane6DirectIO.h"
#include "frmEscSequences.h"
#include "panel_util.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace panel;
using namespace Zorvane6DirectIO;

DirectIODisplayTab::DirectIODisplayTab(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("tabDirectIODisplay"));

    // Text
    auto* fraText = new QGroupBox(this);
    QWidget* t = fraText;
    cmdDirSetVideoMode = Button(t, "cmdDirSetVideoMode", QStringLiteral("SetVideoMode"));
    cbVideoMode = vendor::List(t, "cbVideoMode");
    cmdDirDisplayClear = Button(t, "cmdDirDisplayClear", QStringLiteral("ClearDisplay"));
    cmdDirDyPrintText = Button(t, "cmdDirDyPrintText", QStringLiteral("PrintText"));
    txtDyPtRow = LineEdit(t, "txtDyPtRow", QStringLiteral("1"));
    txtDirPtString = LineEdit(t, "txtDirPtString", QStringLiteral("This is a test"));
    auto* text = new QGridLayout(fraText);
    text->addWidget(cmdDirDisplayClear, 0, 0);
    text->addWidget(cmdDirSetVideoMode, 0, 1);
    text->addWidget(cbVideoMode, 0, 2);
    text->addWidget(cmdDirDyPrintText, 1, 0);
    text->addWidget(Label(t, QStringLiteral("Row")), 1, 1);
    text->addWidget(txtDyPtRow, 1, 2);
    text->addWidget(Label(t, QStringLiteral("Text")), 1, 3);
    text->addWidget(txtDirPtString, 1, 4);
    text->setColumnStretch(4, 1);

    // Bitmaps in the display's memory
    auto* fraBitmaps = new QGroupBox(this);
    QWidget* b = fraBitmaps;
    cmdDirDyBmpLoad = Button(b, "cmdDirDyBmpLoad", QStringLiteral("DisplayBitmapLoad"));
    txtDirDyBmpLoadID = LineEdit(b, "txtDirDyBmpLoadID", QStringLiteral("1"));
    txtDirDyBmpLoadFileName = LineEdit(b, "txtDirDyBmpLoadFileName");
    browser = new BitmapFileBrowser("filelistDisplayIcon", "cmdLoadBmpSelectFile", "imgDisplayIcons", b);
    filelistDisplayIcon = browser->fileList;
    cmdLoadBmpSelectFile = browser->cmdFolder;
    imgDisplayIcons = browser->picture;
    cmdDriDyEraseBmp = Button(b, "cmdDriDyEraseBmp", QStringLiteral("EraseBitmap"));
    txtDirDyBmpEraseID = LineEdit(b, "txtDirDyBmpEraseID", QStringLiteral("1"));
    cmdDirDyBmpShow = Button(b, "cmdDirDyBmpShow", QStringLiteral("DisplayBitmapShow"));
    txtDirDyBmpShowX = LineEdit(b, "txtDirDyBmpShowX", QStringLiteral("0"));
    txtDirDyBmpShowY = LineEdit(b, "txtDirDyBmpShowY", QStringLiteral("0"));
    txtDirDyBmpShowID = LineEdit(b, "txtDirDyBmpShowID");
    txtDirDyBmpShowESC = LineEdit(b, "txtDirDyBmpShowESC");
    txtDirDyBmpShowESC->setToolTip(QStringLiteral("Double click: Esc sequences generator"));
    cmdDirPtBmpNow = Button(b, "cmdDirPtBmpNow", QStringLiteral("DisplayBitmapNow"));
    txtDirDyBmpNowX = LineEdit(b, "txtDirDyBmpNowX", QStringLiteral("0"));
    txtDirDyBmpNowY = LineEdit(b, "txtDirDyBmpNowY", QStringLiteral("0"));
    txtDirDyBmpNowFileName = LineEdit(b, "txtDirDyBmpNowFileName");
    cmdBitmapFile = Button(b, "cmdBitmapFile", QStringLiteral("..."));
    QLabel* nowLabels[] = {Label(b, QStringLiteral("X")), Label(b, QStringLiteral("Y")),
                           Label(b, QStringLiteral("Bitmap file name"))};

    auto* bmp = new QGridLayout(fraBitmaps);
    bmp->addWidget(cmdDirDyBmpLoad, 0, 0);
    bmp->addWidget(Label(b, QStringLiteral("ID")), 0, 1);
    bmp->addWidget(txtDirDyBmpLoadID, 0, 2);
    bmp->addWidget(Label(b, QStringLiteral("Bitmap file name")), 0, 3);
    bmp->addWidget(txtDirDyBmpLoadFileName, 0, 4, 1, 3);
    bmp->addWidget(browser, 1, 0, 1, 7);
    bmp->addWidget(cmdDriDyEraseBmp, 2, 0);
    bmp->addWidget(Label(b, QStringLiteral("ID")), 2, 1);
    bmp->addWidget(txtDirDyBmpEraseID, 2, 2);
    bmp->addWidget(cmdDirDyBmpShow, 3, 0);
    bmp->addWidget(Label(b, QStringLiteral("X")), 3, 1);
    bmp->addWidget(txtDirDyBmpShowX, 3, 2);
    bmp->addWidget(Label(b, QStringLiteral("Y")), 3, 3);
    bmp->addWidget(txtDirDyBmpShowY, 3, 4);
    bmp->addWidget(Label(b, QStringLiteral("Bitmap ID")), 3, 5);
    bmp->addWidget(txtDirDyBmpShowID, 3, 6);
    bmp->addWidget(Label(b, QStringLiteral("ESC Sequences")), 4, 1);
    bmp->addWidget(txtDirDyBmpShowESC, 4, 2, 1, 5);
    bmp->addWidget(cmdDirPtBmpNow, 5, 0);
    bmp->addWidget(nowLabels[0], 5, 1);
    bmp->addWidget(txtDirDyBmpNowX, 5, 2);
    bmp->addWidget(nowLabels[1], 5, 3);
    bmp->addWidget(txtDirDyBmpNowY, 5, 4);
    bmp->addWidget(nowLabels[2], 6, 1);
    bmp->addWidget(txtDirDyBmpNowFileName, 6, 2, 1, 4);
    bmp->addWidget(cmdBitmapFile, 6, 6);
    bmp->setColumnStretch(6, 1);

    // Standby
    auto* fraStandby = new QGroupBox(this);
    QWidget* s = fraStandby;
    cmdDirDySbyText = Button(s, "cmdDirDySbyText", QStringLiteral("StandbyText"));
    txtDirDySbyText = LineEdit(s, "txtDirDySbyText", QStringLiteral("This is a test"));
    cmdSbyBmp = Button(s, "cmdSbyBmp", QStringLiteral("StandbyBitmap"));
    txtDirDySbyBmpX = LineEdit(s, "txtDirDySbyBmpX", QStringLiteral("0"));
    txtDirDySbyBmpY = LineEdit(s, "txtDirDySbyBmpY", QStringLiteral("0"));
    txtDirDySbyBmpID = LineEdit(s, "txtDirDySbyBmpID");
    txtDirDyBmpSbyESC = LineEdit(s, "txtDirDyBmpSbyESC");
    auto* sby = new QGridLayout(fraStandby);
    sby->addWidget(cmdDirDySbyText, 0, 0);
    sby->addWidget(Label(s, QStringLiteral("Text")), 0, 1);
    sby->addWidget(txtDirDySbyText, 0, 2, 1, 5);
    sby->addWidget(cmdSbyBmp, 1, 0);
    sby->addWidget(Label(s, QStringLiteral("X")), 1, 1);
    sby->addWidget(txtDirDySbyBmpX, 1, 2);
    sby->addWidget(Label(s, QStringLiteral("Y")), 1, 3);
    sby->addWidget(txtDirDySbyBmpY, 1, 4);
    sby->addWidget(Label(s, QStringLiteral("Bitmap ID")), 1, 5);
    sby->addWidget(txtDirDySbyBmpID, 1, 6);
    sby->addWidget(Label(s, QStringLiteral("ESC Sequences")), 2, 1);
    sby->addWidget(txtDirDyBmpSbyESC, 2, 2, 1, 5);

    auto* top = new QVBoxLayout(this);
    top->addWidget(fraText);
    top->addWidget(fraBitmaps, 1);
    top->addWidget(fraStandby);

    // Every standby control is hidden, so its frame goes too.
    vendor::KeepHidden({cmdDirSetVideoMode, cbVideoMode, cmdDirPtBmpNow, txtDirDyBmpNowX, txtDirDyBmpNowY,
                        txtDirDyBmpNowFileName, cmdBitmapFile, nowLabels[0], nowLabels[1], nowLabels[2],
                        fraStandby});

    connect(cmdDirSetVideoMode, &QPushButton::clicked, this, &DirectIODisplayTab::cmdDirSetVideoMode_Click);
    connect(cmdDirDisplayClear, &QPushButton::clicked, this, &DirectIODisplayTab::cmdDirDisplayClear_Click);
    connect(cmdDirDyPrintText, &QPushButton::clicked, this, &DirectIODisplayTab::cmdDirDyPrintText_Click);
    connect(cmdDirDyBmpLoad, &QPushButton::clicked, this, &DirectIODisplayTab::cmdDirDyBmpLoad_Click);
    connect(cmdDriDyEraseBmp, &QPushButton::clicked, this, &DirectIODisplayTab::cmdDriDyEraseBmp_Click);
    connect(cmdDirDyBmpShow, &QPushButton::clicked, this, &DirectIODisplayTab::cmdDirDyBmpShow_Click);
    connect(cmdDirPtBmpNow, &QPushButton::clicked, this, &DirectIODisplayTab::cmdDirPtBmpNow_Click);
    connect(cmdDirDySbyText, &QPushButton::clicked, this, &DirectIODisplayTab::cmdDirDySbyText_Click);
    connect(cmdSbyBmp, &QPushButton::clicked, this, &DirectIODisplayTab::cmdSbyBmp_Click);
    connect(browser, &BitmapFileBrowser::fileChosen, txtDirDyBmpLoadFileName, &QLineEdit::setText);
    txtDirDyBmpShowESC->installEventFilter(this);
}

void DirectIODisplayTab::FillLists() {
    vendor::Fill(cbVideoMode, {QStringLiteral("2x20"), QStringLiteral("3x22"), QStringLiteral("1x9 + 1x22"),
                               QStringLiteral("1x10 + 1x22")});
}

frmEscSequences* DirectIODisplayTab::EscGenerator() const {
    return m_generator;
}

bool DirectIODisplayTab::eventFilter(QObject* watched, QEvent* event) {
    if (watched == txtDirDyBmpShowESC && event->type() == QEvent::MouseButtonDblClick) {
        txtDirDyBmpShowESC_DblClick();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void DirectIODisplayTab::txtDirDyBmpShowESC_DblClick() {
    // Beside the panel, not over it: the operator pastes what it leaves on the clipboard.
    if (!m_generator) {
        m_generator = new frmEscSequences(this);
        m_generator->setAttribute(Qt::WA_DeleteOnClose);
        m_generator->setModal(false);
    }
    m_generator->show();
    m_generator->raise();
    m_generator->activateWindow();
}

void DirectIODisplayTab::cmdDirSetVideoMode_Click() {
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_DY_SETMODE, {cbVideoMode->currentIndex() + 1});
    m_ctx.refreshAfterCommand();
}

void DirectIODisplayTab::cmdDirDisplayClear_Click() {
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_DY_CLEAR);
    m_ctx.refreshAfterCommand();
}

void DirectIODisplayTab::cmdDirDyPrintText_Click() {
    const auto row = Tools::StrictInteger(txtDyPtRow->text());
    if (!row)
        return;
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_DY_PRINTTEXT, {*row}, txtDirPtString->text());
    m_ctx.refreshAfterCommand();
}

void DirectIODisplayTab::cmdDirDyBmpLoad_Click() {
    const auto id = Tools::StrictInteger(txtDirDyBmpLoadID->text());
    if (!id)
        return;
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_DY_BMPLOAD, {*id}, txtDirDyBmpLoadFileName->text());
    m_ctx.refreshAfterCommand();
}

void DirectIODisplayTab::cmdDriDyEraseBmp_Click() {
    const auto id = Tools::StrictInteger(txtDirDyBmpEraseID->text());
    if (!id)
        return;
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_DY_BMPERASE, {*id});
    m_ctx.refreshAfterCommand();
}

void DirectIODisplayTab::cmdDirDyBmpShow_Click() {
    const auto x = Tools::StrictInteger(txtDirDyBmpShowX->text());
    const auto y = Tools::StrictInteger(txtDirDyBmpShowY->text());
    const auto id = Tools::LeadingInteger(txtDirDyBmpShowID->text());
    if (!x || !y || !id)
        return;
    // The ESC field goes out raw: the character 27 pasted from the generator stays as it is.
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_DY_BMPSHOW, {*x, *y, *id}, txtDirDyBmpShowESC->text());
    m_ctx.refreshAfterCommand();
}

void DirectIODisplayTab::cmdDirPtBmpNow_Click() {
    const auto x = Tools::StrictInteger(txtDirDyBmpNowX->text());
    const auto y = Tools::StrictInteger(txtDirDyBmpNowY->text());
    if (!x || !y)
        return;
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_DY_BMPNOW, {*x, *y}, txtDirDyBmpNowFileName->text());
    m_ctx.refreshAfterCommand();
}

void DirectIODisplayTab::cmdDirDySbyText_Click() {
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_DY_SBYTEXT, {}, txtDirDySbyText->text());
    m_ctx.refreshAfterCommand();
}

void DirectIODisplayTab::cmdSbyBmp_Click() {
    const auto x = Tools::StrictInteger(txtDirDySbyBmpX->text());
    const auto y = Tools::StrictInteger(txtDirDySbyBmpY->text());
    const auto id = Tools::LeadingInteger(txtDirDySbyBmpID->text());
    if (!x || !y || !id)
        return;
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_DY_SBYBMP, {*x, *y, *id}, txtDirDyBmpSbyESC->text());
    m_ctx.refreshAfterCommand();
}
