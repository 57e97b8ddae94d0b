#include "VendorWidgets.h"

#include "Tools.h"
#include "clsFprtWrapper.h"

#include <QComboBox>
#include <QWidget>

#include <cmath>

namespace vendor {

QComboBox* List(QWidget* parent, const char* name, const QStringList& rows) {
    auto* c = new QComboBox(parent);
    c->setObjectName(QLatin1StringView(name));
    c->setEditable(false);
    if (!rows.isEmpty())
        Fill(c, rows);
    return c;
}

void Fill(QComboBox* list, const QStringList& rows) {
    list->clear();
    list->addItems(rows);
    list->setCurrentIndex(0);
}

void KeepHidden(std::initializer_list<QWidget*> widgets) {
    for (QWidget* w : widgets)
        w->setVisible(false);
}

Reply Send(clsFprtWrapper& wrapper, int32_t command, const DirectIOData& data, const QString& text) {
    Reply reply{0, data, text};
    reply.result = wrapper.DirectIO(command, reply.data, reply.text);
    return reply;
}

std::optional<int32_t> DateNumber(const QString& year, const QString& month, const QString& day) {
    const double sum = Tools::LeadingNumber(year) * 10000.0 + Tools::LeadingNumber(month) * 100.0 +
                       Tools::LeadingNumber(day);
    const double rounded = std::nearbyint(sum);
    if (!std::isfinite(rounded) || rounded < -2147483648.0 || rounded > 2147483647.0)
        return std::nullopt;
    return static_cast<int32_t>(rounded);
}

QStringList BarcodeTypeRows() {
    return {QStringLiteral("EAN13"), QStringLiteral("UPC"), QStringLiteral("ITLV2of5"),
            QStringLiteral("CODE39")};
}

int32_t BarcodeTypeOf(const QString& rowText) {
    return static_cast<int32_t>(BarcodeTypeRows().indexOf(rowText) + 1);
}

QStringList StationRows() {
    return {QStringLiteral("FPTR_S_RECEIPT"), QStringLiteral("FPTR_S_JOURNAL"),
            QStringLiteral("FPTR_S_JOURNAL_RECEIPT")};
}

} // namespace vendor
