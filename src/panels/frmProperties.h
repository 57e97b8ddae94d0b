#pragma once

#include "PanelContext.h"

#include <QWidget>

class QPushButton;
class QTableWidget;

// A read-only dump of every property of the device, one per row of a two-column grid.
class frmProperties : public QWidget {
    Q_OBJECT
public:
    explicit frmProperties(PanelContext& ctx, QWidget* parent = nullptr);

    // The grid's fixed top row and the empty row below it, which nothing ever fills.
    static constexpr int InitialRows = 2;

    QPushButton* cmdReadProps;
    QTableWidget* flexProperties;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cmdReadProps_Click();
    void ClearCells();
    void AddItem(const QString& rowText);
    void SplitColumns();

    PanelContext& m_ctx;
};
