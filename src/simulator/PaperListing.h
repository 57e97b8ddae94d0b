#pragma once

#include "Paper.h"

#include <QString>

namespace sim {

// The rolls as a plain text listing that a script can keep and compare: one printed element a
// line, under "== receipt ==" and "== journal ==".
//   plain text                     as printed; "\" doubles, control characters as "\xNN", and a
//                                  line that would start with "[", "{" or "\" gets a "\" in front
//   {bold,center} text             the element's attributes in braces before it
//   [BARCODE EAN13 4006381333931]  a barcode: its type by name and its data
//   [BITMAP 3]  [FEED 2]  [FISCAL LOGO 99ZS000123]
//   [CUT]                          the receipt paper is cut here
//   [DOCUMENT TIME]                the date and time a document carries, which no two runs share
QString PaperListingLine(const PrintedLine& line);
QString PaperListing(const PaperRoll& receipt, const PaperRoll& journal);

} // namespace sim
