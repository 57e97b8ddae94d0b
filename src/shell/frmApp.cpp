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
    setFixedWidth(Px(ShellLayout::LeftColumnTwips));

    Frame1 = new QGroupBox(this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    cmdResetPrinter = new QPushButton(QStringLiteral("Reset Printer"), Frame1);
    cmdResetPrinter->setObjectName(QStringLiteral("cmdResetPrinter"));
    auto* frameLayout = new QVBoxLayout(Frame1);
    frameLayout->addWidget(cmdResetPrinter);

    QFont arial(QStringLiteral("Arial"));
    arial.setStyleHint(QFont::SansSerif);
    lblFPState = new StateLabel(QStringLiteral("lblFPState"), this);
    lblFPState->setObjectName(QStringLiteral("lblFPState"));
    lblOposState = new StateLabel(QStringLiteral("lblOposState"), this);
    lblOposState->setObjectName(QStringLiteral("lblOposState"));

    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addWidget(Frame1);
    for (QLabel* l : {lblFPState, lblOposState}) {
        l->setFont(arial);
        l->setFrameShape(QFrame::Panel);
        l->setFrameShadow(QFrame::Sunken);
        // Room for a long state name broken over two lines.
        l->setFixedHeight(2 * l->fontMetrics().lineSpacing() + 12);
        layout->addWidget(l);
    }
    layout->addStretch();

    // Markers only: outside the layout and never shown.
    lblHidden = new QLabel(QStringLiteral("Label lblHidden per posizionamento forms!"), this);
    lblHidden->setObjectName(QStringLiteral("lblHidden"));
    lblHidden->setVisible(false);
    lblHiddenBOTTOM = new QLabel(QStringLiteral("Label lblHiddenBOTTOM per posizionamento forms!"), this);
    lblHiddenBOTTOM->setObjectName(QStringLiteral("lblHiddenBOTTOM"));
    lblHiddenBOTTOM->setVisible(false);

    connect(cmdResetPrinter, &QPushButton::clicked, this, [this] {
        m_ctx.wrapper.ResetPrinter();
        m_ctx.refreshAfterCommand();
    });
}

void frmApp::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    lblHidden->move(width(), 0);
    lblHiddenBOTTOM->move(0, height());
}
