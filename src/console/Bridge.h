#pragma once
// What the program's commands "read the rooms of the drawing" and "create rooms in the drawing" do,
// without a window: the same bridge, with the drawing as its host.

#include <string>
#include <vector>

#include "app/Options.h"
#include "console/Speech.h"
#include "drawing/DrawingHost.h"
#include "files/FileServices.h"
#include "headless/AbsentServers.h"
#include "headless/HeadlessPlatform.h"
#include "model/RuntimeError.h"
#include "model/clsFloors.h"

namespace kalvrooms {

// What files and bridge ask of the program around them. Messages are kept for whoever shows them.
class ConsoleServices final : private RoomTable {
  public:
    explicit ConsoleServices(const Speech& say);
    const FileServices& Files() const { return files_; }
    std::vector<std::string> Messages() const; // UTF-8
    std::string Description(const RuntimeError& error) const;

  private:
    class MessageTexts;
    void UpdateTable(bool) override {}

    HeadlessPlatform platform_;
    std::unique_ptr<Texts> texts_;
    AbsentSpreadsheetServer spreadsheets_;
    FileServices files_;
};

struct WrittenRooms {
    std::int32_t atPosition = 0;
    std::int32_t updated = 0;
    std::int32_t placed = 0;
};

// Adds the drawing's rooms; their point files go into the project folder of the drawing.
void ReadFromDrawing(DrawingHost& host, const FileServices& files, clsFloors& floors);
WrittenRooms WriteIntoDrawing(DrawingHost& host, const FileServices& files, const clsFloors& floors,
                              const Placement& placement);

} // namespace kalvrooms
