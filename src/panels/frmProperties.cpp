#include "frmProperties.h"

#include "PropertyTable.h"
#include "Tools.h"
#include "clsFprtWrapper.h"
#include "panel_util.h"

#include <QEvent>
#include <QHeaderView>
#include <QPushButton>
#include <QResizeEvent>
#include <QTableWidget>

#include <algorithm>
#include <cmath>

namespace {

// The value as the grid shows it: numbers with a blank for the sign, numeric texts likewise,
// texts as they are, Booleans as words.
QString ValueText(PropKind kind, const QVariant& value) {
    if (IsBenchBoolean(kind))
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    if (kind == PropKind::NumberAsText)
        return Tools::NumberText(std::llround(Tools::LeadingNumber(value.toString())));
    if (IsBenchText(kind))
        return value.toString();
    return Tools::NumberText(value.value<int32_t>());
}

// Grid order: alphabetical without regard to case, capabilities among the rest.
QList<const PropertyInfo*> GridOrder() {
    QList<const PropertyInfo*> order;
    for (const auto& p : Properties)
        order.append(&p);
    std::stable_sort(order.begin(), order.end(), [](const PropertyInfo* a, const PropertyInfo* b) {
        return QLatin1StringView(a->name).compare(QLatin1StringView(b->name), Qt::CaseInsensitive) < 0;
    });
    return order;
}

} // namespace

frmProperties::frmProperties(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("frmProperties"));
    setWindowTitle(QStringLiteral("Props"));

    cmdReadProps = panel::Button(this, "cmdReadProps", QStringLiteral("Read Properties"));
    cmdReadProps->move(0, 0);
    cmdReadProps->resize(cmdReadProps->sizeHint().expandedTo(QSize(140, 0)));

    flexProperties = new QTableWidget(InitialRows, 2, this);
    flexProperties->setObjectName(QStringLiteral("flexProperties"));
    flexProperties->horizontalHeader()->hide();
    flexProperties->verticalHeader()->hide();
    flexProperties->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    flexProperties->horizontalHeader()->setStretchLastSection(false);
    flexProperties->setEditTriggers(QAbstractItemView::NoEditTriggers);
    flexProperties->setSelectionMode(QAbstractItemView::SingleSelection);
    // The columns always fill the grid exactly, so only rows ever scroll.
    flexProperties->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    flexProperties->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    flexProperties->move(0, cmdReadProps->geometry().bottom() + 1 + 6);
    flexProperties->viewport()->installEventFilter(this);

    connect(cmdReadProps, &QPushButton::clicked, this, &frmProperties::cmdReadProps_Click);

    ClearCells();
    resize(480, 400);
}

void frmProperties::ClearCells() {
    flexProperties->clearContents();
    // The top row is fixed: shaded, and never selected.
    const QBrush shade = palette().brush(QPalette::Button);
    for (int column = 0; column < flexProperties->columnCount(); ++column) {
        auto* cell = new QTableWidgetItem;
        cell->setFlags(Qt::NoItemFlags);
        cell->setBackground(shade);
        flexProperties->setItem(0, column, cell);
    }
}

void frmProperties::AddItem(const QString& rowText) {
    const QStringList cells = rowText.split(QLatin1Char('\t'));
    const int row = flexProperties->rowCount();
    flexProperties->insertRow(row);
    for (int column = 0; column < flexProperties->columnCount(); ++column)
        flexProperties->setItem(row, column, new QTableWidgetItem(cells.value(column)));
}

void frmProperties::cmdReadProps_Click() {
    ClearCells();
    flexProperties->setRowCount(InitialRows);
    // One read, one row: the grid fills in the order the log shows the reads.
    for (const PropertyInfo* p : GridOrder()) {
        const QVariant value = m_ctx.wrapper.ReadProperty(p->id);
        AddItem(QLatin1StringView(p->name) + QLatin1Char('\t') + ValueText(p->kind, value));
    }
}

void frmProperties::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const int top = flexProperties->y();
    // A panel too small for the grid leaves it collapsed rather than negative.
    flexProperties->resize(std::max(0, width()), std::max(0, height() - top));
    SplitColumns();
}

bool frmProperties::eventFilter(QObject* watched, QEvent* event) {
    // The cell area shrinks when the grid is resized or its scroll bar shows; keep the split.
    if (watched == flexProperties->viewport() && event->type() == QEvent::Resize)
        SplitColumns();
    return QWidget::eventFilter(watched, event);
}

void frmProperties::SplitColumns() {
    const int width = flexProperties->viewport()->width();
    if (width <= 0)
        return;
    flexProperties->setColumnWidth(0, static_cast<int>(std::nearbyint(width / 3.0)));
    flexProperties->setColumnWidth(1, std::max(0, width - flexProperties->columnWidth(0)));
}
