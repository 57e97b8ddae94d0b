#pragma once

#include "OposTypes.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <initializer_list>
#include <optional>

class QComboBox;
class QWidget;
class clsFprtWrapper;

// What the vendor tabs share: their drop-down lists, the controls that stay hidden, and the one
// way they send a DirectIO command.
namespace vendor {

// A drop-down list without free typing; with rows, filled and on its first row.
QComboBox* List(QWidget* parent, const char* name, const QStringList& rows = {});
// Replaces the rows of a list and selects the first.
void Fill(QComboBox* list, const QStringList& rows);

// Controls that exist and work but are never shown.
void KeepHidden(std::initializer_list<QWidget*> widgets);

// What came back from one DirectIO call.
struct Reply {
    int32_t result = 0;
    DirectIOData data{};
    QString text;
};

// One DirectIO call with its own block: the elements not given stay 0.
Reply Send(clsFprtWrapper& wrapper, int32_t command, const DirectIOData& data = {}, const QString& text = {});

// Year, month and day read by the leading-number rule into one YYYYMMDD number, rounded half to
// even after the sum, so a month of 100 carries into the year. nullopt beyond 32 bits.
std::optional<int32_t> DateNumber(const QString& year, const QString& month, const QString& day);

// The four barcode types by the text of their list row; 0 for any other text.
int32_t BarcodeTypeOf(const QString& rowText);
QStringList BarcodeTypeRows();
QStringList StationRows();

} // namespace vendor
