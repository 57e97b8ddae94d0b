#include "frmPrintMode.h"

#include "panel_util.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

frmPrintMode::frmPrintMode(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmPrintMode"));
    setWindowTitle(QStringLiteral("Select PrintMode"));
    cbJustify = new QComboBox(this);
    cbJustify->setObjectName(QStringLiteral("cbJustify"));
    chkDblHeight = new QCheckBox(QStringLiteral("Double Height"), this);
    chkDblHeight->setObjectName(QStringLiteral("chkDblHeight"));
    chkDblWidth = new QCheckBox(QStringLiteral("Double Width"), this);
    chkDblWidth->setObjectName(QStringLiteral("chkDblWidth"));
    chkReverseMode = new QCheckBox(QStringLiteral("Reverse Mode"), this);
    chkReverseMode->setObjectName(QStringLiteral("chkReverseMode"));
    lblPrintMode = panel::Label(this, QString(), "lblPrintMode");
    cmdOK = panel::Button(this, "cmdOK", QStringLiteral("OK"));

    auto* grid = new QGridLayout(this);
    grid->addWidget(cbJustify, 0, 0);
    grid->addWidget(lblPrintMode, 0, 1);
    grid->addWidget(chkDblHeight, 1, 0);
    grid->addWidget(chkDblWidth, 2, 0);
    grid->addWidget(chkReverseMode, 3, 0);
    grid->addWidget(cmdOK, 3, 1);

    connect(cbJustify, &QComboBox::currentIndexChanged, this, &frmPrintMode::UpdatePrintMode);
    connect(cbJustify, &QComboBox::currentTextChanged, this, &frmPrintMode::UpdatePrintMode);
    for (QCheckBox* flag : {chkDblHeight, chkDblWidth, chkReverseMode})
        connect(flag, &QCheckBox::toggled, this, &frmPrintMode::UpdatePrintMode);
    connect(cmdOK, &QPushButton::clicked, this, &QWidget::hide);

    // Filling selects the first row, which computes the value once.
    cbJustify->addItems({QStringLiteral("Left"), QStringLiteral("Right"), QStringLiteral("Center")});
    cbJustify->setCurrentIndex(0);
    UpdatePrintMode();
}

void frmPrintMode::UpdatePrintMode() {
    const QString justify = cbJustify->currentText();
    int32_t mode = justify == QLatin1StringView("Right")    ? 49
                   : justify == QLatin1StringView("Center") ? 50
                                                            : 48;
    if (chkDblHeight->isChecked())
        mode |= 4;
    if (chkDblWidth->isChecked())
        mode |= 8;
    if (chkReverseMode->isChecked())
        mode |= 64;
    selectedPrintMode = mode;
    lblPrintMode->setText(QString::number(mode, 16).toUpper());
}
