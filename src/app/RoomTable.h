#pragma once
// The table that shows the room list.

namespace kalvrooms {

class RoomTable {
  public:
    virtual ~RoomTable() = default;
    // Fills the table anew; warn shows the room-limit warning where the list is over it.
    virtual void UpdateTable(bool warn) = 0;
};

} // namespace kalvrooms
