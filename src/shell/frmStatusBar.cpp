#include "frmStatusBar.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

LampShape::LampShape(QWidget* parent) : QWidget(parent) {
    setFixedSize(16, 16);
}

void LampShape::SetFillColor(const QColor& color) {
    m_fill = color;
    update();
}

void LampShape::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(Qt::black, 1));
    p.setBrush(m_fill);
    p.drawEllipse(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5));
}

namespace {

QLabel* NamedLabel(const QString& name, const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    return label;
}

LampShape* NamedLamp(const QString& name, QWidget* parent) {
    auto* lamp = new LampShape(parent);
    lamp->setObjectName(name);
    return lamp;
}

} // namespace

frmStatusBar::frmStatusBar(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmStatusBar"));
    setAutoFillBackground(true);

    lblErrorCode = NamedLabel(QStringLiteral("lblErrorCode"), QStringLiteral("Label1"), this);
    lblErrorCodeExt = NamedLabel(QStringLiteral("lblErrorCodeExt"), QStringLiteral("Label1"), this);
    lblErrorCodeDescription =
        NamedLabel(QStringLiteral("lblErrorCodeDescription"), QStringLiteral("Label1"), this);
    lblErrorCodeDescription->setWordWrap(true);
    for (QLabel* l : {lblErrorCode, lblErrorCodeExt, lblErrorCodeDescription})
        l->setTextInteractionFlags(Qt::TextSelectableByMouse);

    // Pure green text is unreadable on a light face, so the lamps sit on a dark plate.
    auto* lamps = new QFrame(this);
    lamps->setObjectName(QStringLiteral("fraLamps"));
    lamps->setAutoFillBackground(true);
    QPalette plate = lamps->palette();
    plate.setColor(QPalette::Window, QColor(40, 40, 40));
    lamps->setPalette(plate);
    lamps->setFrameShape(QFrame::StyledPanel);

    lblCoverOpen = NamedLabel(QStringLiteral("lblCoverOpen"), QStringLiteral("Cover Open"), lamps);
    lblPaperOut = NamedLabel(QStringLiteral("lblPaperOut"), QStringLiteral("Paper Out"), lamps);
    lblPaperNearEmpty =
        NamedLabel(QStringLiteral("lblPaperNearEmpty"), QStringLiteral("Paper Near Empty"), lamps);
    shpCoverOpen = NamedLamp(QStringLiteral("shpCoverOpen"), lamps);
    shpPaperOut = NamedLamp(QStringLiteral("shpPaperOut"), lamps);
    shpPaperNearEmpty = NamedLamp(QStringLiteral("shpPaperNearEmpty"), lamps);

    auto* lampGrid = new QGridLayout(lamps);
    lampGrid->setContentsMargins(8, 4, 8, 4);
    lampGrid->setVerticalSpacing(2);
    int row = 0;
    for (auto [shape, label] : {std::pair{shpCoverOpen, lblCoverOpen}, std::pair{shpPaperOut, lblPaperOut},
                                std::pair{shpPaperNearEmpty, lblPaperNearEmpty}}) {
        lampGrid->addWidget(shape, row, 0);
        lampGrid->addWidget(label, row, 1);
        ++row;
    }

    auto* results = new QGridLayout;
    results->addWidget(new QLabel(QStringLiteral("Result:"), this), 0, 0);
    results->addWidget(lblErrorCode, 0, 1);
    results->addWidget(new QLabel(QStringLiteral("Extended:"), this), 1, 0);
    results->addWidget(lblErrorCodeExt, 1, 1);
    results->addWidget(lblErrorCodeDescription, 0, 2, 2, 1);
    results->setColumnStretch(1, 1);
    results->setColumnStretch(2, 2);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->addLayout(results, 1);
    layout->addWidget(lamps);

    // Load: no alarm shown until a status event says otherwise.
    SetAlarm(Alarm::CoverOpen, false);
    SetAlarm(Alarm::PaperOut, false);
    SetAlarm(Alarm::PaperNearEmpty, false);
}

void frmStatusBar::Paint(LampShape* shape, QLabel* label, const QColor& color) {
    shape->SetFillColor(color);
    QPalette pal = label->palette();
    pal.setColor(QPalette::WindowText, color);
    label->setPalette(pal);
}

void frmStatusBar::SetAlarm(Alarm alarm, bool raised) {
    const QColor& color = raised ? Red : Green;
    switch (alarm) {
    case Alarm::CoverOpen:
        Paint(shpCoverOpen, lblCoverOpen, color);
        break;
    case Alarm::PaperOut:
        Paint(shpPaperOut, lblPaperOut, color);
        break;
    case Alarm::PaperNearEmpty:
        Paint(shpPaperNearEmpty, lblPaperNearEmpty, color);
        break;
    }
}

void frmStatusBar::AddAtRightEnd(QWidget* widget) {
    widget->setParent(this);
    static_cast<QHBoxLayout*>(layout())->addWidget(widget, 0, Qt::AlignBottom);
}

void frmStatusBar::ShowResult(const QString& code, const QString& extended, const QString& description) {
    lblErrorCode->setText(code);
    lblErrorCodeExt->setText(extended);
    lblErrorCodeDescription->setText(description);
}
