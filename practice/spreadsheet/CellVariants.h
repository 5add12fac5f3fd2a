#pragma once
// Cells as they travel.

#include "practice/server/Com.h"
#include "practice/workbook/Sheet.h"

namespace kalvrooms::practice::spreadsheet {

// Dates and amounts of money travel as such, unless the plain number is wanted.
Variant VariantOf(const Cell& cell, bool plain);
// Of several cells an array (1 to rows, 1 to columns).
Variant VariantOf(const Sheet& sheet, const Area& area, bool plain);

bool IsArray(const Variant& variant);
// Both raise a ComError for what a cell cannot hold.
Value ValueOf(const VARIANT& variant);
// An array of one dimension is a row.
Block BlockOf(const Variant& array);

} // namespace kalvrooms::practice::spreadsheet
