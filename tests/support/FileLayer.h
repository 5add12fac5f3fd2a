#pragma once
// What files are read and written with where nobody looks at a window: the built-in texts, the
// headless system, and no spreadsheet application.

#include <vector>

#include "app/clsText.h"
#include "files/FileServices.h"
#include "headless/AbsentServers.h"
#include "headless/HeadlessPlatform.h"
#include "model/RuntimeError.h"

namespace kalvrooms {

// A table that notes the argument of every refreshing.
class RecordedTable final : public RoomTable {
  public:
    std::vector<bool> Updates;
    // Stands for a table that cannot be refreshed.
    long FailingUpdate = 0;
    void UpdateTable(bool warn) override {
        Updates.push_back(warn);
        if (FailingUpdate != 0)
            throw RuntimeError(FailingUpdate);
    }
};

struct FileLayer {
    HeadlessPlatform platform;
    clsText texts{platform.libraries, platform.environment};
    RecordedTable table;
    AbsentSpreadsheetServer spreadsheets;
    FileServices services{texts, table, platform.desktop, platform.ansi, spreadsheets};
};

} // namespace kalvrooms
