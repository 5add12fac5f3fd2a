#pragma once
// Cells as they travel.

#include "practice/server/Com.h"
#include "practice/workbook/Sheet.h"

namespace kalvrooms::practice::spreadsheet {

// Dates and amounts of money travel as such. Of several cells an array (1 to rows, 1 to columns).
Variant VariantOf(const Sheet& sheet, const CellRange& range);

// A value for all cells of the range, or an array with one for each. Raises a SheetError or
// ComError for what cells cannot hold.
void Enter(Sheet& sheet, const CellRange& range, const Variant& value);

} // namespace kalvrooms::practice::spreadsheet
