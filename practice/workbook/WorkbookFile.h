#pragma once
// Workbooks as files: the spreadsheet form of 2003 in XML, one readable file. Other programs open
// it whatever the ending of its name; types and formats of the cells survive.

#include "practice/workbook/Sheet.h"

#include <string>

namespace kalvrooms::practice::spreadsheet {

std::string WriteWorkbook(const Workbook& workbook);
// Raises a SheetError for a file that is no workbook or holds more than a sheet can.
Workbook ReadWorkbook(std::string bytes);

} // namespace kalvrooms::practice::spreadsheet
