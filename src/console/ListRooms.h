#pragma once
// The rooms of a list as the program would have them after opening it.

#include <filesystem>
#include <string>

#include "console/ConsoleRoom.h"
#include "console/RoomRows.h"
#include "model/NumberText.h"
#include "model/clsFloors.h"

namespace kalvrooms {

// The marks with which the list's numbers were written. Quartino writes a decimal mark and no
// grouping, so the first of "," and "." that stands alone in them tells; the user's marks
// otherwise.
NumberLocale LocaleOf(const RoomRows& rows, const NumberLocale& user);

ConsoleRooms RoomsOfList(const RoomRows& rows, const NumberLocale& locale);

// The rooms as the bridge takes them, storeys in their order; point files are looked for where the
// list says, then beside the list.
void FillFloors(clsFloors& floors, const RoomRows& rows, const NumberLocale& locale,
                const std::filesystem::path& listFolder);

// The list that the program would write.
RoomRows RowsOf(const clsFloors& floors, const NumberLocale& locale);

// The file itself where it stands, one of the same name in the folder where not, else as it was
// named.
std::wstring PointFileFor(const std::wstring& named, const std::filesystem::path& listFolder);

} // namespace kalvrooms
