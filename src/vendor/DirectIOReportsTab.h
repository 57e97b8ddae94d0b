#pragma once

#include "PanelContext.h"

#include <QWidget>

class QComboBox;
class QLineEdit;
class QPushButton;

// Reports that the device writes to a file: the electronic journal, the X report and a report
// chosen by number.
class DirectIOReportsTab : public QWidget {
    Q_OBJECT
public:
    explicit DirectIOReportsTab(PanelContext& ctx, QWidget* parent = nullptr);

    // Fills the lists and selects their first rows; run by the panel's load.
    void FillLists();

    QPushButton* cmdDirReportZ;
    QComboBox* cbDirReportZFileMode;
    QLineEdit* txtDirReportZFile;
    QPushButton* cmdDirReportZSelectFile;
    QPushButton* cmdDirReportEJ;
    QComboBox* cbDirReportFileMode;
    QLineEdit* txtDirReportEJFileName;
    QPushButton* cmdDirReportEJSelectFile;
    QComboBox* cbDirReportEJMode;
    QComboBox* cbDirReportEJType;
    QLineEdit* txtDirReportEJStartDateY;
    QLineEdit* txtDirReportEJStartDateM;
    QLineEdit* txtDirReportEJStartDatD;
    QLineEdit* txtDirReportEJEndDateY;
    QLineEdit* txtDirReportEJEndDateM;
    QLineEdit* txtDirReportEJEndDateD;
    QLineEdit* txtDirReportEJStartNum;
    QLineEdit* txtDirReportEJEndNum;
    QPushButton* cmdDirReportOnFile;
    QComboBox* cbDirReportOnFileMode;
    QLineEdit* txtDirReportOFFile;
    QPushButton* cmdDirReportOFSelectFile;
    QLineEdit* txtDirReportOFType;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cmdDirReportZ_Click();
    void cmdDirReportEJ_Click();
    void cmdDirReportOnFile_Click();
    void txtDirReportEJStartDateY_DblClick();

    PanelContext& m_ctx;
};
