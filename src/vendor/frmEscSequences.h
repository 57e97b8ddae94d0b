#pragma once

#include <QDialog>

class QComboBox;
class QLineEdit;
class QPushButton;

// Builds a print-control sequence from buttons, one token appended per press, and hands it
// over through the clipboard. It never talks to the device.
class frmEscSequences : public QDialog {
    Q_OBJECT
public:
    explicit frmEscSequences(QWidget* parent = nullptr);

    QPushButton* cmdPrintBmp;
    QLineEdit* txtBmpID;
    QPushButton* Command1;
    QLineEdit* txtFeedLines;
    QPushButton* Command2;
    QComboBox* cbDirBarcodeType;
    QLineEdit* txtBarcodeString;
    QPushButton* Command3;
    QPushButton* Command4;
    QPushButton* Command5;
    QPushButton* Command6;
    QPushButton* Command7;
    QPushButton* Command9;
    QPushButton* Command8;
    QPushButton* Command10;
    QPushButton* Command11;
    QPushButton* Command12;
    QPushButton* Command13;
    QPushButton* Command14;
    QPushButton* Command16;
    QLineEdit* txtEscSequence;
    QPushButton* cmdClear;
    QPushButton* Command15;

private:
    void Append(const QString& token);
    // "|", the field's number and the letter; a field with no number appends nothing.
    void AppendNumbered(const QLineEdit* field, QChar letter);
    void Command2_Click();
    void Command15_Click();
};
