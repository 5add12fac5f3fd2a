#pragma once
// The spreadsheet application's automation server ("Excel.Application") behind the abstract
// spreadsheet interface.

#include <memory>

#include "files/SpreadsheetApplication.h"
#include "win32/ComObject.h"

namespace kalvrooms {

// The session counts the calls and says how long a rejected call is tried again.
std::unique_ptr<SpreadsheetServer> MakeComSpreadsheetServer(std::shared_ptr<ComSession> session);
std::unique_ptr<SpreadsheetServer> MakeComSpreadsheetServer();

} // namespace kalvrooms
