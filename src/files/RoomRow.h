#pragma once
// A room as the row of a list: the eleven columns that text files and sheets have in common, and
// how they are filled and read.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "app/TextNumbers.h"
#include "model/clsRoom.h"

namespace kalvrooms {

enum RoomColumn : std::size_t {
    NameColumn,
    FunctionColumn,
    AreaColumn,
    StoryColumn,
    EnclosureColumn,
    OccupancyColumn,
    AreaTypeColumn,
    FileColumn,
    DxColumn,
    DyColumn,
    RoomIDColumn,
    RoomColumnCount
};

inline constexpr std::array<std::int32_t, RoomColumnCount> RoomColumnTitles = {
    TextNumber::Name,      TextNumber::Function,  TextNumber::Area,     TextNumber::Story,
    TextNumber::Enclosure, TextNumber::Occupancy, TextNumber::AreaType, TextNumber::Geometry,
    TextNumber::Dx,        TextNumber::Dy,        TextNumber::RoomID};

// Numbers in the columns of numbers, texts in all others. Errors: those of the room's sides.
using RoomRow = std::array<std::variant<std::wstring, double>, RoomColumnCount>;
void ToRow(clsRoom& room, const NumberLocale& locale, RoomRow& row);

// What a row says, as texts; and its area, which a sheet has as a number. Everything that a list
// holds of a room is set. Errors: those of SetRoomID.
using RoomTexts = std::array<std::wstring_view, RoomColumnCount>;
void FromRow(const RoomTexts& row, double area, const NumberLocale& locale, clsRoom& room);

} // namespace kalvrooms
