#include "frmApp.h"

#include "ShellLayout.h"
#include "clsFprtWrapper.h"

#include <QGroupBox>
#include <QPainter>
#include <QPushButton>
#include <QTextOption>
#include <QVBoxLayout>

using ShellLayout::Px;

void StateLabel::paintEvent(QPaintEvent* e) {
    QFrame::paintEvent(e); // the sunken frame
    QPainter p(this);
    QTextOption option(Qt::AlignLeft | Qt::AlignTop);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    p.setPen(palette().color(QPalette::WindowText));
    p.drawText(QRectF(contentsRect().adjusted(3, 2, -3, -2)), text(), option);
}

frmApp::frmApp(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("frmApp"));
    resize(Px(ShellLayout::AppWidthTwips), Px(ShellLayout::AppHeightTwips));

    const int column = Px(ShellLayout::LeftColumnTwips);
    const int margin = 8;

    Frame1 = new QGroupBox(this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    cmdResetPrinter = new QPushButton(QStringLiteral("Reset Printer"), Frame1);
    cmdResetPrinter->setObjectName(QStringLiteral("cmdResetPrinter"));
    auto* frameLayout = new QVBoxLayout(Frame1);
    frameLayout->addWidget(cmdResetPrinter);
    Frame1->setGeometry(margin, margin, column - 2 * margin, 56);

    QFont arial(QStringLiteral("Arial"));
    arial.setStyleHint(QFont::SansSerif);
    lblFPState = new StateLabel(QStringLiteral("lblFPState"), this);
    lblFPState->setObjectName(QStringLiteral("lblFPState"));
    lblOposState = new StateLabel(QStringLiteral("lblOposState"), this);
    lblOposState->setObjectName(QStringLiteral("lblOposState"));
    int top = margin + 56 + 12;
    for (QLabel* l : {lblFPState, lblOposState}) {
        l->setFont(arial);
        l->setFrameShape(QFrame::Panel);
        l->setFrameShadow(QFrame::Sunken);
        l->setGeometry(margin, top, column - 2 * margin, 48);
        top += 56;
    }

    lblHidden = new QLabel(QStringLiteral("Label lblHidden per posizionamento forms!"), this);
    lblHidden->setObjectName(QStringLiteral("lblHidden"));
    lblHidden->move(column, 0);
    lblHidden->setVisible(false);
    lblHiddenBOTTOM = new QLabel(QStringLiteral("Label lblHiddenBOTTOM per posizionamento forms!"), this);
    lblHiddenBOTTOM->setObjectName(QStringLiteral("lblHiddenBOTTOM"));
    lblHiddenBOTTOM->move(0, Px(ShellLayout::PanelHeightTwips));
    lblHiddenBOTTOM->setVisible(false);

    connect(cmdResetPrinter, &QPushButton::clicked, this, [this] {
        m_ctx.wrapper.ResetPrinter();
        m_ctx.refreshAfterCommand();
    });
}

int frmApp::LeftMarker() const {
    return lblHidden->x();
}

int frmApp::BottomMarker() const {
    return lblHiddenBOTTOM->y();
}

void frmApp::SetBottomMarker(int top) {
    lblHiddenBOTTOM->move(lblHiddenBOTTOM->x(), top);
}
