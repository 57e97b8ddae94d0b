#pragma once

#include "PanelContext.h"

#include <QWidget>

class BitmapFileBrowser;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

// Bitmaps in the printer's memory with their file browser, and the deprecated print commands,
// whose fields stay hidden so that they send their defaults.
class DirectIOPrinterTab : public QWidget {
    Q_OBJECT
public:
    explicit DirectIOPrinterTab(PanelContext& ctx, QWidget* parent = nullptr);

    // Fills the lists and selects their first rows; run by the panel's load.
    void FillLists();
    void HideDeprecatedButtons();

    QPushButton* cmdLoadBitmap;
    QLineEdit* txtLoadBmpID;
    QLineEdit* txtLoadBmpFileName;
    BitmapFileBrowser* browser;
    QListWidget* filelistTicketIcon;
    QPushButton* cmdTicketSetFolder;
    QLabel* imgTicketIcons;
    QPushButton* cmdDirEraseBitmap;
    QLineEdit* edtDirEraseBitmapID;
    QPushButton* cmdPrintBitmap;
    QComboBox* cbDirBmpPrintStations;
    QLineEdit* txtDirPrintBmpPrintMode;
    QLineEdit* edtBitmapID;
    QPushButton* cmdDirPrintBarcode;
    QComboBox* cbDirBarcodePrintStations;
    QComboBox* cbDirBarcodeType;
    QLineEdit* edtBarcode;
    QPushButton* cmdDirBeginCreditNote;
    QLineEdit* txtCreditNoteNumber;
    QPushButton* cmdDirEndCreditNote;

private:
    void cmdLoadBitmap_Click();
    void cmdDirEraseBitmap_Click();
    void cmdPrintBitmap_Click();
    void cmdDirPrintBarcode_Click();
    void cmdDirBeginCreditNote_Click();
    void cmdDirEndCreditNote_Click();

    PanelContext& m_ctx;
    QWidget* m_deprecated;
};
