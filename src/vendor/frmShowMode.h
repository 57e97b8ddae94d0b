#pragma once

#include <QDialog>

#include <cstdint>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

// Composes the show mode of a display bitmap: a rotation and a blink bit.
class frmShowMode : public QDialog {
    Q_OBJECT
public:
    explicit frmShowMode(QWidget* parent = nullptr);

    int32_t selectedShowMode = 0;

    QComboBox* cbShMRotate;
    QCheckBox* chkBlink;
    QLabel* lblShowMode;
    QPushButton* cmdOK;

private:
    void UpdateShowMode();
};
