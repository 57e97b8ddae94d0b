#include "DirectIOReportsTab.h"

#include "Tools.h"
#include "VendorWidgets.h"
#include "Zorvane6DirectIO.h"
#include "panel_util.h"

#include <QComboBox>
#include <QDate>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace panel;
using namespace Zorvane6DirectIO;

namespace {

const QStringList AppendOrRewrite{QStringLiteral("Write file in append"),
                                  QStringLiteral("Create or rewrite")};

QLineEdit* Narrow(QLineEdit* field, int chars) {
    field->setMaximumWidth(field->fontMetrics().horizontalAdvance(QLatin1Char('0')) * chars + 16);
    return field;
}

} // namespace

DirectIOReportsTab::DirectIOReportsTab(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("tabDirectIOReports"));

    // X report
    auto* fraX = new QGroupBox(this);
    cmdDirReportZ = Button(fraX, "cmdDirReportZ", QStringLiteral("X Report"));
    cbDirReportZFileMode = vendor::List(fraX, "cbDirReportZFileMode");
    txtDirReportZFile = LineEdit(fraX, "txtDirReportZFile", QStringLiteral("reportZ.txt"));
    cmdDirReportZSelectFile = Button(fraX, "cmdDirReportZSelectFile", QStringLiteral("..."));
    auto* x = new QGridLayout(fraX);
    x->addWidget(cmdDirReportZ, 0, 0);
    x->addWidget(Label(fraX, QStringLiteral("Mode")), 0, 1);
    x->addWidget(cbDirReportZFileMode, 0, 2);
    x->addWidget(Label(fraX, QStringLiteral("Report file name")), 1, 1);
    x->addWidget(txtDirReportZFile, 1, 2);
    x->addWidget(cmdDirReportZSelectFile, 1, 3);
    x->setColumnStretch(2, 1);

    // Electronic journal
    auto* fraEJ = new QGroupBox(this);
    cmdDirReportEJ = Button(fraEJ, "cmdDirReportEJ", QStringLiteral("EJ Report"));
    cbDirReportFileMode = vendor::List(fraEJ, "cbDirReportFileMode");
    txtDirReportEJFileName = LineEdit(fraEJ, "txtDirReportEJFileName", QStringLiteral("reportEJ.txt"));
    cmdDirReportEJSelectFile = Button(fraEJ, "cmdDirReportEJSelectFile", QStringLiteral("..."));
    cbDirReportEJMode = vendor::List(fraEJ, "cbDirReportEJMode");
    cbDirReportEJType = vendor::List(fraEJ, "cbDirReportEJType");
    txtDirReportEJStartDateY = Narrow(LineEdit(fraEJ, "txtDirReportEJStartDateY", QStringLiteral("2007")), 5);
    txtDirReportEJStartDateM = Narrow(LineEdit(fraEJ, "txtDirReportEJStartDateM", QStringLiteral("12")), 3);
    txtDirReportEJStartDatD = Narrow(LineEdit(fraEJ, "txtDirReportEJStartDatD", QStringLiteral("12")), 3);
    txtDirReportEJEndDateY = Narrow(LineEdit(fraEJ, "txtDirReportEJEndDateY", QStringLiteral("2007")), 5);
    txtDirReportEJEndDateM = Narrow(LineEdit(fraEJ, "txtDirReportEJEndDateM", QStringLiteral("12")), 3);
    txtDirReportEJEndDateD = Narrow(LineEdit(fraEJ, "txtDirReportEJEndDateD", QStringLiteral("12")), 3);
    txtDirReportEJStartNum = LineEdit(fraEJ, "txtDirReportEJStartNum", QStringLiteral("1"));
    txtDirReportEJEndNum = LineEdit(fraEJ, "txtDirReportEJEndNum", QStringLiteral("1"));
    txtDirReportEJStartDateY->setToolTip(QStringLiteral("Double click: today"));
    auto* ej = new QGridLayout(fraEJ);
    ej->addWidget(cmdDirReportEJ, 0, 0);
    ej->addWidget(Label(fraEJ, QStringLiteral("Mode")), 0, 1);
    ej->addWidget(cbDirReportFileMode, 0, 2);
    ej->addWidget(Label(fraEJ, QStringLiteral("Report file name")), 1, 1);
    ej->addWidget(txtDirReportEJFileName, 1, 2);
    ej->addWidget(cmdDirReportEJSelectFile, 1, 3);
    ej->addWidget(Label(fraEJ, QStringLiteral("Mode")), 2, 1);
    ej->addWidget(cbDirReportEJMode, 2, 2);
    ej->addWidget(Label(fraEJ, QStringLiteral("Type")), 3, 1);
    ej->addWidget(cbDirReportEJType, 3, 2);
    auto* startDate = new QHBoxLayout;
    for (QLineEdit* f : {txtDirReportEJStartDateY, txtDirReportEJStartDateM, txtDirReportEJStartDatD})
        startDate->addWidget(f);
    startDate->addStretch(1);
    auto* endDate = new QHBoxLayout;
    for (QLineEdit* f : {txtDirReportEJEndDateY, txtDirReportEJEndDateM, txtDirReportEJEndDateD})
        endDate->addWidget(f);
    endDate->addStretch(1);
    ej->addWidget(Label(fraEJ, QStringLiteral("Start date YYYYMMDD")), 4, 1);
    ej->addLayout(startDate, 4, 2);
    ej->addWidget(Label(fraEJ, QStringLiteral("End Date YYYYMMDD")), 5, 1);
    ej->addLayout(endDate, 5, 2);
    ej->addWidget(Label(fraEJ, QStringLiteral("Start Num")), 6, 1);
    ej->addWidget(txtDirReportEJStartNum, 6, 2);
    ej->addWidget(Label(fraEJ, QStringLiteral("End Num")), 7, 1);
    ej->addWidget(txtDirReportEJEndNum, 7, 2);
    ej->setColumnStretch(2, 1);

    // Report by number
    auto* fraOF = new QGroupBox(this);
    cmdDirReportOnFile = Button(fraOF, "cmdDirReportOnFile", QStringLiteral("ReportOnFile"));
    cbDirReportOnFileMode = vendor::List(fraOF, "cbDirReportOnFileMode");
    txtDirReportOFFile = LineEdit(fraOF, "txtDirReportOFFile", QStringLiteral("report.txt"));
    cmdDirReportOFSelectFile = Button(fraOF, "cmdDirReportOFSelectFile", QStringLiteral("..."));
    txtDirReportOFType = LineEdit(fraOF, "txtDirReportOFType", QStringLiteral("20"));
    auto* of = new QGridLayout(fraOF);
    of->addWidget(cmdDirReportOnFile, 0, 0);
    of->addWidget(Label(fraOF, QStringLiteral("Mode")), 0, 1);
    of->addWidget(cbDirReportOnFileMode, 0, 2);
    of->addWidget(Label(fraOF, QStringLiteral("Report file name")), 1, 1);
    of->addWidget(txtDirReportOFFile, 1, 2);
    of->addWidget(cmdDirReportOFSelectFile, 1, 3);
    of->addWidget(Label(fraOF, QStringLiteral("Report Type")), 2, 1);
    of->addWidget(txtDirReportOFType, 2, 2);
    of->setColumnStretch(2, 1);

    auto* top = new QVBoxLayout(this);
    top->addWidget(fraX);
    top->addWidget(fraEJ);
    top->addWidget(fraOF);
    top->addStretch(1);

    // The "..." buttons beside the file names have no action.
    vendor::KeepHidden({cmdDirReportZSelectFile, cmdDirReportEJSelectFile, cmdDirReportOFSelectFile});

    connect(cmdDirReportZ, &QPushButton::clicked, this, &DirectIOReportsTab::cmdDirReportZ_Click);
    connect(cmdDirReportEJ, &QPushButton::clicked, this, &DirectIOReportsTab::cmdDirReportEJ_Click);
    connect(cmdDirReportOnFile, &QPushButton::clicked, this, &DirectIOReportsTab::cmdDirReportOnFile_Click);
    txtDirReportEJStartDateY->installEventFilter(this);
}

void DirectIOReportsTab::FillLists() {
    vendor::Fill(cbDirReportEJMode, {QStringLiteral("Entire EJ"), QStringLiteral("For date"),
                                     QStringLiteral("For number"), QStringLiteral("Current day")});
    vendor::Fill(cbDirReportFileMode,
                 AppendOrRewrite + QStringList{QStringLiteral("No file, output to FPU")});
    vendor::Fill(cbDirReportZFileMode, AppendOrRewrite);
    vendor::Fill(cbDirReportOnFileMode, AppendOrRewrite);
    vendor::Fill(cbDirReportEJType,
                 {QStringLiteral("AllReports"), QStringLiteral("Z-Closure number"),
                  QStringLiteral("Fiscal ticket number"), QStringLiteral("Non-Fiscal ticket number"),
                  QStringLiteral("Credit note number")});
}

bool DirectIOReportsTab::eventFilter(QObject* watched, QEvent* event) {
    if (watched == txtDirReportEJStartDateY && event->type() == QEvent::MouseButtonDblClick) {
        txtDirReportEJStartDateY_DblClick();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void DirectIOReportsTab::txtDirReportEJStartDateY_DblClick() {
    const QDate today = QDate::currentDate();
    const QString year = today.toString(QStringLiteral("yyyy"));
    const QString month = today.toString(QStringLiteral("MM"));
    const QString day = today.toString(QStringLiteral("dd"));
    txtDirReportEJStartDateY->setText(year);
    txtDirReportEJStartDateM->setText(month);
    txtDirReportEJStartDatD->setText(day);
    txtDirReportEJEndDateY->setText(year);
    txtDirReportEJEndDateM->setText(month);
    txtDirReportEJEndDateD->setText(day);
}

void DirectIOReportsTab::cmdDirReportZ_Click() {
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_REPORT_X, {cbDirReportZFileMode->currentIndex()},
                 txtDirReportZFile->text());
    m_ctx.refreshAfterCommand();
}

void DirectIOReportsTab::cmdDirReportEJ_Click() {
    // Every element goes out whatever the EJ mode: the device picks what it needs.
    const auto start = vendor::DateNumber(txtDirReportEJStartDateY->text(), txtDirReportEJStartDateM->text(),
                                          txtDirReportEJStartDatD->text());
    const auto end = vendor::DateNumber(txtDirReportEJEndDateY->text(), txtDirReportEJEndDateM->text(),
                                        txtDirReportEJEndDateD->text());
    const auto first = Tools::LeadingInteger(txtDirReportEJStartNum->text());
    const auto last = Tools::LeadingInteger(txtDirReportEJEndNum->text());
    if (!start || !end || !first || !last)
        return; // a number beyond 32 bits: nothing is sent
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_REPORT_EJ,
                 {cbDirReportFileMode->currentIndex(), cbDirReportEJMode->currentIndex(),
                  cbDirReportEJType->currentIndex(), *start, *end, *first, *last},
                 txtDirReportEJFileName->text());
    m_ctx.refreshAfterCommand();
}

void DirectIOReportsTab::cmdDirReportOnFile_Click() {
    const auto type = Tools::LeadingInteger(txtDirReportOFType->text());
    if (!type)
        return;
    vendor::Send(m_ctx.wrapper, DIRECTIO_FPTR_REPORT_REQUEST, {cbDirReportOnFileMode->currentIndex(), *type},
                 txtDirReportOFFile->text());
    m_ctx.refreshAfterCommand();
}
