#include "frmEscSequences.h"

#include "EscStrings.h"
#include "Tools.h"
#include "VendorWidgets.h"
#include "panel_util.h"

#include <QClipboard>
#include <QComboBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using panel::Button;
using panel::Label;
using panel::LineEdit;

namespace {
const QChar Esc(27);
} // namespace

frmEscSequences::frmEscSequences(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmEscSequences"));
    setWindowTitle(QStringLiteral("Esc Sequences Generator"));

    cmdPrintBmp = Button(this, "cmdPrintBmp", QStringLiteral("PrintBitmap"));
    txtBmpID = LineEdit(this, "txtBmpID", QStringLiteral("1"));
    Command1 = Button(this, "Command1", QStringLiteral("Feed Lines"));
    txtFeedLines = LineEdit(this, "txtFeedLines", QStringLiteral("1"));
    Command2 = Button(this, "Command2", QStringLiteral("Print Barcode"));
    cbDirBarcodeType = vendor::List(this, "cbDirBarcodeType", vendor::BarcodeTypeRows());
    txtBarcodeString = LineEdit(this, "txtBarcodeString", QStringLiteral("4007817504598"));
    Command3 = Button(this, "Command3", QStringLiteral("Normal Mode"));
    Command4 = Button(this, "Command4", QStringLiteral("Double Width"));
    Command5 = Button(this, "Command5", QStringLiteral("Double Height"));
    Command6 = Button(this, "Command6", QStringLiteral("Half Height"));
    Command7 = Button(this, "Command7", QStringLiteral("Boxed Text"));
    Command9 = Button(this, "Command9", QStringLiteral("Left Just"));
    Command8 = Button(this, "Command8", QStringLiteral("Center Just"));
    Command10 = Button(this, "Command10", QStringLiteral("Right Just"));
    Command11 = Button(this, "Command11", QStringLiteral("Rotate Left"));
    Command12 = Button(this, "Command12", QStringLiteral("Rotate Right"));
    Command13 = Button(this, "Command13", QStringLiteral("Rotate Up"));
    Command14 = Button(this, "Command14", QStringLiteral("Rotate Down"));
    Command16 = Button(this, "Command16", QStringLiteral("Blink"));
    txtEscSequence = LineEdit(this, "txtEscSequence");
    cmdClear = Button(this, "cmdClear", QStringLiteral("&Clear"));
    Command15 = Button(this, "Command15", QStringLiteral("Copy To Clipboard && Close Window"));

    auto* withFields = new QGridLayout;
    withFields->addWidget(cmdPrintBmp, 0, 0);
    withFields->addWidget(Label(this, QStringLiteral("Bitmap ID")), 0, 1);
    withFields->addWidget(txtBmpID, 0, 2);
    withFields->addWidget(Command1, 1, 0);
    withFields->addWidget(Label(this, QStringLiteral("# Lines")), 1, 1);
    withFields->addWidget(txtFeedLines, 1, 2);
    withFields->addWidget(Command2, 2, 0);
    withFields->addWidget(cbDirBarcodeType, 2, 1);
    withFields->addWidget(Label(this, QStringLiteral("Barcode")), 3, 1);
    withFields->addWidget(txtBarcodeString, 3, 2);
    withFields->setColumnStretch(2, 1);

    auto* styles = new QGridLayout;
    const QList<QPushButton*> columns[] = {
        {Command3, Command4, Command5, Command6, Command7},
        {Command9, Command8, Command10, Command16},
        {Command11, Command12, Command13, Command14},
    };
    for (int c = 0; c < 3; ++c)
        for (int r = 0; r < columns[c].size(); ++r)
            styles->addWidget(columns[c][r], r, c);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(cmdClear);
    bottom->addStretch(1);
    bottom->addWidget(Command15);

    auto* top = new QVBoxLayout(this);
    top->addLayout(withFields);
    top->addLayout(styles);
    top->addWidget(txtEscSequence);
    top->addLayout(bottom);

    // The style and justify tokens are the bench's print-control strings; the rest live here.
    const std::pair<QPushButton*, QString> tokens[] = {
        {Command3, EscString(1)},
        {Command4, EscString(2)},
        {Command5, EscString(3)},
        {Command6, EscString(4)},
        {Command7, EscString(5)},
        {Command8, EscString(6)},
        {Command9, EscString(7)},
        {Command10, EscString(8)},
        {Command11, Esc + QStringLiteral("|lR")},
        {Command12, Esc + QStringLiteral("|rR")},
        {Command13, Esc + QStringLiteral("|uR")},
        {Command14, Esc + QStringLiteral("|dR")},
        {Command16, Esc + QStringLiteral("|K")},
    };
    for (const auto& [button, token] : tokens)
        connect(button, &QPushButton::clicked, this, [this, token] { Append(token); });
    connect(cmdPrintBmp, &QPushButton::clicked, this, [this] { AppendNumbered(txtBmpID, u'B'); });
    connect(Command1, &QPushButton::clicked, this, [this] { AppendNumbered(txtFeedLines, u'F'); });
    connect(Command2, &QPushButton::clicked, this, &frmEscSequences::Command2_Click);
    connect(cmdClear, &QPushButton::clicked, txtEscSequence, &QLineEdit::clear);
    connect(Command15, &QPushButton::clicked, this, &frmEscSequences::Command15_Click);
}

void frmEscSequences::Append(const QString& token) {
    // Whatever the operator typed stays; the token goes behind it.
    txtEscSequence->setText(txtEscSequence->text() + token);
}

void frmEscSequences::AppendNumbered(const QLineEdit* field, QChar letter) {
    const auto number = Tools::StrictInteger(field->text());
    if (!number)
        return;
    Append(Esc + u'|' + QString::number(*number) + letter);
}

void frmEscSequences::Command2_Click() {
    const QString body =
        QString::number(vendor::BarcodeTypeOf(cbDirBarcodeType->currentText())) + txtBarcodeString->text();
    Append(Esc + u'|' + QString::number(body.size()) + u'R' + body);
}

void frmEscSequences::Command15_Click() {
    QGuiApplication::clipboard()->setText(txtEscSequence->text(), QClipboard::Clipboard);
    txtEscSequence->clear();
    close();
}
