#pragma once
// One storey: its rooms in the order of adding, found by position or by ID.

#include <cstdint>
#include <memory>
#include <vector>

#include "model/clsRoom.h"

namespace kalvrooms {

using RoomList = std::vector<std::shared_ptr<clsRoom>>;

class clsFloor {
  public:
    std::int32_t GetCountOfRooms() const;
    // Copies the room at the 1-based position; beyond the last it does nothing.
    // Error: SubscriptOutOfRange below 1.
    void GetRoomByIndex(std::int32_t index, clsRoom& room) const;
    // Hands out the stored object itself. Error: InvalidProcedureCall for an unknown ID.
    void GetRoomByID(std::int32_t id, std::shared_ptr<clsRoom>& room) const;
    // Error: InvalidProcedureCall for an unknown ID.
    void DeleteRoomByID(std::int32_t id);
    // Adds a copy. Error: Overflow of the numbering.
    void AddRoom(const clsRoom& room);
    // Adds copies; the caller's room is renumbered after each. Error: Overflow of the numbering.
    void AddRooms(clsRoom& room, std::int32_t quantity);
    // The stored objects of the rooms that were added last, in the order of adding.
    RoomList LastRooms(std::int32_t count) const;
    // Puts a room that was deleted back where it was.
    void RestoreRoom(const std::shared_ptr<clsRoom>& room);

    // Drops the rooms behind that many.
    void KeepFirst(std::int32_t count);

  private:
    // The key stays what the ID was on adding, whatever a holder of the room writes into it.
    struct Entry {
        std::int32_t key;
        std::shared_ptr<clsRoom> room;
    };

    static void CopyRoom(const clsRoom& source, clsRoom& target);
    // The first room whose key is no lower.
    std::vector<Entry>::const_iterator place(std::int32_t id) const;
    std::vector<Entry>::const_iterator find(std::int32_t id) const;

    // Keys only grow, so the order of adding is the order of the keys.
    std::vector<Entry> rooms_;
    std::int32_t nextID_ = 1;
};

} // namespace kalvrooms
