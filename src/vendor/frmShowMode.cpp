#include "frmShowMode.h"

#include "panel_util.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include <array>

namespace {
// By row; 1 to 3 are not used by the display.
constexpr std::array<int32_t, 5> RotationValues{0, 4, 5, 6, 7};
} // namespace

frmShowMode::frmShowMode(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmShowMode"));
    setWindowTitle(QStringLiteral("Select ShowMode"));
    cbShMRotate = new QComboBox(this);
    cbShMRotate->setObjectName(QStringLiteral("cbShMRotate"));
    chkBlink = new QCheckBox(QStringLiteral("Blink"), this);
    chkBlink->setObjectName(QStringLiteral("chkBlink"));
    lblShowMode = panel::Label(this, QString(), "lblShowMode");
    cmdOK = panel::Button(this, "cmdOK", QStringLiteral("OK"));

    auto* grid = new QGridLayout(this);
    grid->addWidget(cbShMRotate, 0, 0);
    grid->addWidget(lblShowMode, 0, 1);
    grid->addWidget(chkBlink, 1, 0);
    grid->addWidget(cmdOK, 1, 1);

    connect(cbShMRotate, &QComboBox::currentIndexChanged, this, &frmShowMode::UpdateShowMode);
    connect(chkBlink, &QCheckBox::toggled, this, &frmShowMode::UpdateShowMode);
    connect(cmdOK, &QPushButton::clicked, this, &QWidget::hide);

    cbShMRotate->addItems({QStringLiteral("No rotate"), QStringLiteral("Rotate right"),
                           QStringLiteral("Rotate left"), QStringLiteral("Rotate up"),
                           QStringLiteral("Rotate down")});
    cbShMRotate->setCurrentIndex(0);
    UpdateShowMode();
}

void frmShowMode::UpdateShowMode() {
    const int row = cbShMRotate->currentIndex();
    int32_t mode = row >= 0 && row < int(RotationValues.size()) ? RotationValues[row] : 0;
    if (chkBlink->isChecked())
        mode |= 8;
    selectedShowMode = mode;
    lblShowMode->setText(QString::number(mode, 16).toUpper());
}
