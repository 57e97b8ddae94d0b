#pragma once

#include "PanelContext.h"

#include <QPointer>
#include <QWidget>

class BitmapFileBrowser;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class frmEscSequences;

// The customer display: clear, a row of text, bitmaps in its memory. Video mode, the bitmap
// shown straight from a file and the standby commands are here too, hidden.
class DirectIODisplayTab : public QWidget {
    Q_OBJECT
public:
    explicit DirectIODisplayTab(PanelContext& ctx, QWidget* parent = nullptr);

    // Fills the list and selects its first row; run by the panel's load.
    void FillLists();
    // The generator opened from the ESC field, while it is open.
    frmEscSequences* EscGenerator() const;

    QPushButton* cmdDirSetVideoMode;
    QComboBox* cbVideoMode;
    QPushButton* cmdDirDisplayClear;
    QPushButton* cmdDirDyPrintText;
    QLineEdit* txtDyPtRow;
    QLineEdit* txtDirPtString;
    QPushButton* cmdDirPtBmpNow;
    QLineEdit* txtDirDyBmpNowX;
    QLineEdit* txtDirDyBmpNowY;
    QLineEdit* txtDirDyBmpNowFileName;
    QPushButton* cmdBitmapFile;
    QPushButton* cmdDirDyBmpLoad;
    QLineEdit* txtDirDyBmpLoadID;
    QLineEdit* txtDirDyBmpLoadFileName;
    BitmapFileBrowser* browser;
    QListWidget* filelistDisplayIcon;
    QPushButton* cmdLoadBmpSelectFile;
    QLabel* imgDisplayIcons;
    QPushButton* cmdDriDyEraseBmp;
    QLineEdit* txtDirDyBmpEraseID;
    QPushButton* cmdDirDyBmpShow;
    QLineEdit* txtDirDyBmpShowX;
    QLineEdit* txtDirDyBmpShowY;
    QLineEdit* txtDirDyBmpShowID;
    QLineEdit* txtDirDyBmpShowESC;
    QPushButton* cmdDirDySbyText;
    QLineEdit* txtDirDySbyText;
    QPushButton* cmdSbyBmp;
    QLineEdit* txtDirDySbyBmpX;
    QLineEdit* txtDirDySbyBmpY;
    QLineEdit* txtDirDySbyBmpID;
    QLineEdit* txtDirDyBmpSbyESC;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cmdDirSetVideoMode_Click();
    void cmdDirDisplayClear_Click();
    void cmdDirDyPrintText_Click();
    void cmdDirDyBmpLoad_Click();
    void cmdDriDyEraseBmp_Click();
    void cmdDirDyBmpShow_Click();
    void cmdDirPtBmpNow_Click();
    void cmdDirDySbyText_Click();
    void cmdSbyBmp_Click();
    void txtDirDyBmpShowESC_DblClick();

    PanelContext& m_ctx;
    QPointer<frmEscSequences> m_generator;
};
