#pragma once
// What becomes of a text that is typed into a cell: the application guesses, as a user in the
// United States would mean it.

#include "practice/workbook/Cell.h"

#include <string>

namespace kalvrooms::practice::spreadsheet {

// The cell that had `format` before, after `text` was typed into it. `thisYear` completes dates
// that name none. Raises a SheetError for a text that is too long and for a formula that cannot be
// read.
Cell Typed(const std::wstring& text, const std::wstring& format, int thisYear);

inline constexpr std::size_t LongestText = 32767;

} // namespace kalvrooms::practice::spreadsheet
