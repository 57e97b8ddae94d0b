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
// Its two invisible labels are the measures of the whole layout: lblHidden's Left is the
// column's width, lblHiddenBOTTOM's Top the panels' height.
class frmApp : public QWidget {
    Q_OBJECT
public:
    explicit frmApp(PanelContext& ctx, QWidget* parent = nullptr);

    int LeftMarker() const;
    int BottomMarker() const;
    void SetBottomMarker(int top);

    QGroupBox* Frame1;
    QPushButton* cmdResetPrinter;
    QLabel* lblFPState;
    QLabel* lblOposState;
    QLabel* lblHidden;
    QLabel* lblHiddenBOTTOM;

private:
    PanelContext& m_ctx;
};
