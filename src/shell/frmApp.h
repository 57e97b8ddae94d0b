#pragma once

#include "PanelContext.h"

#include <QWidget>

#include <QLabel>

class QGroupBox;
class QPushButton;

// A state label: long state names break anywhere rather than run out of the narrow column.
class StateLabel : public QLabel {
    Q_OBJECT
public:
    using QLabel::QLabel;
    QSize minimumSizeHint() const override { return {0, 0}; }

protected:
    void paintEvent(QPaintEvent* e) override;
};

// The left column: the two state labels and the one device action it offers, Reset Printer.
// Its width is fixed; its height is that of the panels beside it. The two invisible labels mark
// those measures, lblHidden's Left the column's width and lblHiddenBOTTOM's Top its height, and
// follow the column when the frame's layout resizes it.
class frmApp : public QWidget {
    Q_OBJECT
public:
    explicit frmApp(PanelContext& ctx, QWidget* parent = nullptr);

    QGroupBox* Frame1;
    QPushButton* cmdResetPrinter;
    QLabel* lblFPState;
    QLabel* lblOposState;
    QLabel* lblHidden;
    QLabel* lblHiddenBOTTOM;

protected:
    void resizeEvent(QResizeEvent* e) override;

private:
    PanelContext& m_ctx;
};
