#pragma once
// Number and area of rooms by storey, by DIN 277 use and by function.

#include "console/ConsoleRoom.h"
#include "console/RoomRows.h"
#include "console/Table.h"
#include "model/NumberText.h"

namespace kalvrooms {

// Columns by, group, count, area (target of a list, actual of a drawing), share of all area in per
// cent. Sums of the norm stand behind the uses that they are made of.
Table SumsOf(const ConsoleRooms& rooms, const Speech& say);
// The same of a list, with no more of it looked at than its sums take.
Table SumsOf(const RoomRows& rows, const NumberLocale& locale, const Speech& say);

} // namespace kalvrooms
