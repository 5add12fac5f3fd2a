#pragma once
// The rooms of a drawing as they are listed.

#include "console/ConsoleRoom.h"
#include "console/Files.h"

namespace kalvrooms {

ConsoleRooms RoomsOfDrawing(const OpenDrawing& drawing);

} // namespace kalvrooms
