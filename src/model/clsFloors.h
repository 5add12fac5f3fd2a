#pragma once
// The room list: storeys in the order of their first appearance, keyed by storey code without
// regard to letter case.

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/clsFloor.h"

namespace kalvrooms {

class clsFloors {
  public:
    // The storey of rooms without a storey code.
    static constexpr const wchar_t* UnassignedStory = L"unbelegt";

    std::int32_t GetCountOfFloors() const;
    std::int32_t GetCountOfRooms() const;
    // Copies the room at the 1-based running index over all storeys; beyond the total it does
    // nothing. Walking the list from 1 to the count costs the same per room however many storeys
    // there are. Error: SubscriptOutOfRange below 1 (when there is a storey at all).
    void GetRoomByIndex(std::int32_t index, clsRoom& room) const;
    // Adds copies to the storey of the room's StoryCode ("unbelegt" when it is empty). Never fails.
    // The caller's room is renumbered after each.
    void AddRooms(clsRoom& room, std::int32_t quantity);
    // One copy; the caller's room keeps its name.
    void AddRoom(clsRoom& room);
    // Hands out the stored object; unknown storey or ID leaves the reference as it was.
    void GetRoomByID(const std::wstring& storyCode, std::int32_t id,
                     std::shared_ptr<clsRoom>& room) const;
    // An empty code does nothing. Error: InvalidProcedureCall for an unknown storey or ID.
    void DeleteRoom(const std::wstring& storyCode, std::int32_t id);
    // The stored objects of the rooms that were added to a storey last, in the order of adding.
    RoomList LastRooms(const std::wstring& storyCode, std::int32_t count) const;
    // Puts a room that was deleted back where it was, under its own ID. Error: InvalidProcedureCall
    // for an unknown storey.
    void RestoreRoom(const std::shared_ptr<clsRoom>& room);

  private:
    template <class Adding>
    void add(clsRoom& room, Adding adding);
    clsFloor* findFloor(const std::wstring& storyCode) const;
    void forgetCursor();

    std::vector<std::shared_ptr<clsFloor>> floors_;
    std::unordered_map<std::wstring, std::size_t> floorByKey_;
    // Where the last walk by running index stood: a storey and the rooms before it.
    mutable std::size_t cursorFloor_ = 0;
    mutable std::int32_t cursorBefore_ = 0;
};

} // namespace kalvrooms
