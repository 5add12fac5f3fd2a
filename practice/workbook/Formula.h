#pragma once
// Formulas, as far as a practice ground needs them: numbers, the four kinds of calculation, powers
// and parentheses. Everything that has a name is unknown here.

#include "practice/workbook/Cell.h"

#include <string>

namespace kalvrooms::practice::spreadsheet {

// Takes the formula with its "=". Raises a SheetError when it is none.
Value Evaluated(const std::wstring& formula);

} // namespace kalvrooms::practice::spreadsheet
