#pragma once

#include <QList>
#include <QString>

#include <cstdint>

namespace sim {

// What sets one printer model apart from the others. A new model is one more row in Models().
struct ModelSwitches {
    QString deviceName;
    bool voidClosesReceipt = true; // PrintRecVoid ends the receipt at once instead of waiting for the close
    bool capCheckTotal = false;
    bool checkTotalAtOpen = false;
    int numVatRates = 8;
    QList<int32_t> defaultVatRates; // hundredths of a percent, one per rate
    // The day's VAT worked out on the day's totals per rate instead of summed from the receipts.
    bool vatOnDayTotals = false;
};

const QList<ModelSwitches>& Models();
// nullptr for a name that no model answers to.
const ModelSwitches* FindModel(const QString& deviceName);

} // namespace sim
