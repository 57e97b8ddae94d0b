#pragma once

#include "PanelContext.h"

#include <QWidget>

#include <cstdint>
#include <optional>
#include <utility>

class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;

// Totals and data read out of the printer, the fiscal reports and the health check.
class frmReports : public QWidget {
    Q_OBJECT
public:
    explicit frmReports(PanelContext& ctx, QWidget* parent = nullptr);

    // Run by the toolbar's Enable.
    void RebuildTotalizerVatList();

    // The dataitem and optArgs that a row text of cbGetDataDataItem stands for.
    static std::optional<std::pair<int32_t, int32_t>> DataItemOf(const QString& rowText);

    QGroupBox* fraReports;
    QComboBox* cbReportType;
    QLineEdit* txtPrtRptStart;
    QLineEdit* txtPrtRptEnd;
    QPushButton* cmdPrintReport;
    QLineEdit* txtPeriodReptStart;
    QLineEdit* txtPeriodReptEnd;
    QPushButton* cmdPrintPeriodicTotalsReport;
    QPushButton* cmdXReport;
    QPushButton* cmdZReport;

    QGroupBox* fraTotalizers;
    QComboBox* cbTotalizerType;
    QPushButton* cmdGetTotalyzer;
    QComboBox* cbGetTotVatID;
    QComboBox* cbGetTotOptArgs;
    QLineEdit* txtGetTotResult;
    QPushButton* cmdGetData;
    QComboBox* cbGetDataDataItem;
    QLineEdit* txtGetDataResult;

    QGroupBox* fraVarious;
    QPushButton* cmdCheckHealth;
    QComboBox* cbCheckHealth;
    QLineEdit* txtCheckHealth;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Form_Load();
    void FillTotalizerVatList();
    void cmdGetData_Click();
    void cmdGetTotalyzer_Click();
    void cmdPrintReport_Click();
    void cmdPrintPeriodicTotalsReport_Click();
    void cmdXReport_Click();
    void cmdZReport_Click();
    void cmdCheckHealth_Click();

    PanelContext& m_ctx;
};
