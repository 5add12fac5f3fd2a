#include "files/RoomRow.h"

namespace kalvrooms {
namespace {

void set(RoomRow& row, RoomColumn column, std::wstring_view text) {
    // A row that serves one room after the other keeps its memory.
    if (auto* const before = std::get_if<std::wstring>(&row[column]))
        before->assign(text);
    else
        row[column] = std::wstring(text);
}

} // namespace

void ToRow(clsRoom& room, const NumberLocale& locale, RoomRow& row) {
    clsGeometry& geometry = *room.Geometry;
    set(row, NameColumn, room.Name());
    set(row, FunctionColumn, room.FunctionName());
    row[AreaColumn] = geometry.Area();
    set(row, StoryColumn, room.StoryCode());
    set(row, EnclosureColumn, room.Enclosure());
    set(row, OccupancyColumn, room.Occupancy());
    set(row, AreaTypeColumn, room.AreaType());
    // Asking for a side may change the type: the path comes before that.
    set(row, FileColumn, geometry.FileName());
    row[DxColumn] = geometry.dx(locale);
    row[DyColumn] = geometry.dy(locale);
    set(row, RoomIDColumn, room.GetRoomID());
}

void FromRow(const RoomTexts& row, double area, const NumberLocale& locale, clsRoom& room) {
    room.Name(row[NameColumn]);
    room.FunctionName(row[FunctionColumn]);
    room.Geometry->Area(area);
    room.StoryCode(row[StoryColumn]);
    room.Enclosure(row[EnclosureColumn]);
    room.Occupancy(row[OccupancyColumn]);
    room.AreaType(row[AreaTypeColumn]);
    room.SetRoomID(row[RoomIDColumn], locale);
    if (TrimmedView(row[FileColumn]).empty())
        room.Geometry->SetAspectRatio(row[DxColumn], row[DyColumn], locale);
    else
        room.Geometry->SetTypeAndValue(CalculationByFile, row[FileColumn]);
}

} // namespace kalvrooms
