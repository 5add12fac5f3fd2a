#pragma once
// The application's automation objects.

#include "practice/server/DispatchObject.h"
#include "practice/spreadsheet/SheetProcess.h"

namespace kalvrooms::practice::spreadsheet {

// The caller owns its first reference.
IDispatch* NewApplicationObject(SheetProcess& process);

} // namespace kalvrooms::practice::spreadsheet
