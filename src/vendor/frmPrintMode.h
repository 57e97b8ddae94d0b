#pragma once

#include <QDialog>

#include <cstdint>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

// Composes the print mode byte of a printed bitmap: a justify base and three flag bits.
class frmPrintMode : public QDialog {
    Q_OBJECT
public:
    explicit frmPrintMode(QWidget* parent = nullptr);

    int32_t selectedPrintMode = 0;

    QComboBox* cbJustify;
    QCheckBox* chkDblHeight;
    QCheckBox* chkDblWidth;
    QCheckBox* chkReverseMode;
    QLabel* lblPrintMode;
    QPushButton* cmdOK;

private:
    void UpdatePrintMode();
};
