#pragma once
// What files are read and written with where nobody looks at a window: the built-in texts, the
// headless system, and no spreadsheet application.

#include <vector>

#include "app/clsText.h"
#include "files/FileServices.h"
#include "headless/AbsentServers.h"
#include "headless/HeadlessPlatform.h"

namespace kalvrooms {

// A table that notes the argument of every refreshing.
class RecordedTable final : public RoomTable {
  public:
    std::vector<bool> Updates;
    void UpdateTable(bool warn) override { Updates.push_back(warn); }
};

struct FileLayer {
    HeadlessPlatform platform;
    clsText texts{platform.libraries, platform.environment};
    RecordedTable table;
    AbsentSpreadsheetServer spreadsheets;
    FileServices services{texts, table, platform.desktop, platform.ansi, spreadsheets};
};

} // namespace kalvrooms
