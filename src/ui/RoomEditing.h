#pragma once
// The room that the room dialog edits in place, and the list that it belongs to.

#include <cstdint>
#include <memory>

#include "app/RoomTable.h"
#include "model/clsRoom.h"

namespace kalvrooms {

class RoomEditing : public RoomTable {
  public:
    virtual std::shared_ptr<clsRoom> GetCurrentRoom() const = 0;
    virtual void AddCurrentRoomsToListOfFloors(std::int32_t quantity) = 0;
};

} // namespace kalvrooms
