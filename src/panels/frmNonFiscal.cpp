#include "frmNonFiscal.h"

#include "Tools.h"
#include "clsFprtWrapper.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QPushButton* NamedButton(const char* name, const char* caption, QWidget* parent) {
    auto* b = new QPushButton(QString::fromLatin1(caption), parent);
    b->setObjectName(QString::fromLatin1(name));
    return b;
}

} // namespace

frmNonFiscal::frmNonFiscal(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("frmNonFiscal"));

    auto* nonFiscal = new QGroupBox(QStringLiteral("Non Fiscal"), this);
    cmdNFRecpt = NamedButton("cmdNFRecpt", "BeginNonFiscal", nonFiscal);
    cmdPrintNormal = NamedButton("cmdPrintNormal", "PrintNormal", nonFiscal);
    cmdEndNonFiscal = NamedButton("cmdEndNonFiscal", "EndNonFiscal", nonFiscal);
    cbPrintNorStation = new QComboBox(nonFiscal);
    cbPrintNorStation->setObjectName(QStringLiteral("cbPrintNorStation"));
    txtPrintNormal = new QPlainTextEdit(nonFiscal);
    txtPrintNormal->setObjectName(QStringLiteral("txtPrintNormal"));

    auto* grid = new QGridLayout(nonFiscal);
    grid->addWidget(cmdNFRecpt, 0, 0);
    grid->addWidget(new QLabel(QStringLiteral("Printer station"), nonFiscal), 0, 1);
    grid->addWidget(cbPrintNorStation, 0, 2);
    grid->addWidget(cmdPrintNormal, 1, 0);
    grid->addWidget(new QLabel(QStringLiteral("Text message"), nonFiscal), 1, 1, Qt::AlignTop);
    grid->addWidget(txtPrintNormal, 1, 2, 2, 1);
    grid->addWidget(cmdEndNonFiscal, 2, 0, Qt::AlignTop);
    grid->setColumnStretch(2, 1);

    auto* training = new QGroupBox(QStringLiteral("Training Mode"), this);
    cmdBeginTraining = NamedButton("cmdBeginTraining", "Begin Training Mode", training);
    cmdEndTraining = NamedButton("cmdEndTraining", "End Training Mode", training);
    auto* row = new QHBoxLayout(training);
    row->addWidget(cmdBeginTraining);
    row->addWidget(cmdEndTraining);
    row->addStretch();

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(nonFiscal, 1);
    layout->addWidget(training);
    layout->addStretch();

    // Load: the station list, first entry selected, and the default text.
    cbPrintNorStation->addItems({QStringLiteral("FPTR_S_RECEIPT"), QStringLiteral("FPTR_S_JOURNAL"),
                                 QStringLiteral("FPTR_S_JOURNAL_RECEIPT")});
    cbPrintNorStation->setCurrentIndex(0);
    txtPrintNormal->setPlainText(QStringLiteral("Test Print"));

    connect(cmdNFRecpt, &QPushButton::clicked, this, [this] {
        m_ctx.wrapper.BeginNonFiscal();
        m_ctx.refreshAfterCommand();
    });
    connect(cmdEndNonFiscal, &QPushButton::clicked, this, [this] {
        m_ctx.wrapper.EndNonFiscal();
        m_ctx.refreshAfterCommand();
    });
    connect(cmdBeginTraining, &QPushButton::clicked, this, [this] {
        m_ctx.wrapper.BeginTraining();
        m_ctx.refreshAfterCommand();
    });
    connect(cmdEndTraining, &QPushButton::clicked, this, [this] {
        m_ctx.wrapper.EndTraining();
        m_ctx.refreshAfterCommand();
    });
    connect(cmdPrintNormal, &QPushButton::clicked, this, &frmNonFiscal::PrintNormal);
}

void frmNonFiscal::PrintNormal() {
    // The station is the entry's position, not its name.
    const int32_t station = cbPrintNorStation->currentIndex() + 1;
    // A typed line break goes out as CR LF, as the printer's text expects it.
    QString text = txtPrintNormal->toPlainText();
    text.replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
    m_ctx.wrapper.PrintNormal(station, Tools::EscTokensToBytes(text));
    m_ctx.refreshAfterCommand();
}
