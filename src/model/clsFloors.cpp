#include "model/clsFloors.h"

#include <exception>
#include <new>

#include "model/LetterRules.h"
#include "model/RuntimeError.h"

namespace kalvrooms {

std::int32_t clsFloors::GetCountOfFloors() const {
    return static_cast<std::int32_t>(floors_.size());
}

std::int32_t clsFloors::GetCountOfRooms() const {
    std::int32_t count = 0;
    for (const auto& floor : floors_)
        count += floor->GetCountOfRooms();
    return count;
}

void clsFloors::GetRoomByIndex(std::int32_t index, clsRoom& room) const {
    if (floors_.empty())
        return;
    if (index < 1)
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    while (index <= cursorBefore_) {
        --cursorFloor_;
        cursorBefore_ -= floors_[cursorFloor_]->GetCountOfRooms();
    }
    while (index - cursorBefore_ > floors_[cursorFloor_]->GetCountOfRooms()) {
        if (cursorFloor_ + 1 == floors_.size())
            return;
        cursorBefore_ += floors_[cursorFloor_]->GetCountOfRooms();
        ++cursorFloor_;
    }
    floors_[cursorFloor_]->GetRoomByIndex(index - cursorBefore_, room);
}

void clsFloors::AddRooms(clsRoom& room, std::int32_t quantity) {
    add(
        room, [&](clsFloor& floor) { floor.AddRooms(room, quantity); });
}

void clsFloors::AddRoom(clsRoom& room) {
    add(
        room, [&](clsFloor& floor) { floor.AddRoom(room); });
}

template <class Adding>
void clsFloors::add(clsRoom& room, Adding adding) {
    if (room.StoryCode().empty())
        room.StoryCode(UnassignedStory);
    forgetCursor();
    const std::wstring key = FoldedCase(room.StoryCode());
    const auto known = floorByKey_.find(key);
    const auto floor =
        known != floorByKey_.end() ? floors_[known->second] : std::make_shared<clsFloor>();
    bool complete = false;
    const std::int32_t before = floor->GetCountOfRooms();
    try {
        adding(*floor);
        complete = true;
    } catch (const std::bad_alloc&) {
        // Half of what was asked for helps nobody, and its memory is needed for saying so.
        floor->KeepFirst(before);
        throw;
    } catch (const std::exception&) {
        // The numbering ran out in the middle: the rooms before that are good.
    }
    if (known == floorByKey_.end() && (complete || floor->GetCountOfRooms() > 0)) {
        floors_.push_back(floor);
        try {
            floorByKey_.emplace(key, floors_.size() - 1);
        } catch (const std::bad_alloc&) {
            floors_.pop_back();
            throw;
        }
    }
}

void clsFloors::GetRoomByID(const std::wstring& storyCode, std::int32_t id,
                            std::shared_ptr<clsRoom>& room) const {
    if (const clsFloor* const floor = findFloor(storyCode)) {
        try {
            floor->GetRoomByID(id, room);
        } catch (const RuntimeError&) {
            // The caller sees it by its reference, which stays as it was.
        }
    }
}

void clsFloors::DeleteRoom(const std::wstring& storyCode, std::int32_t id) {
    if (storyCode.empty())
        return;
    clsFloor* const floor = findFloor(storyCode);
    if (floor == nullptr)
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    floor->DeleteRoomByID(id);
    forgetCursor();
}

RoomList clsFloors::LastRooms(const std::wstring& storyCode, std::int32_t count) const {
    const clsFloor* const floor = findFloor(storyCode);
    return floor ? floor->LastRooms(count) : RoomList();
}

void clsFloors::RestoreRoom(const std::shared_ptr<clsRoom>& room) {
    clsFloor* const floor = findFloor(room->StoryCode());
    if (floor == nullptr)
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    floor->RestoreRoom(room);
    forgetCursor();
}

void clsFloors::forgetCursor() {
    cursorFloor_ = 0;
    cursorBefore_ = 0;
}

clsFloor* clsFloors::findFloor(const std::wstring& storyCode) const {
    const auto at = floorByKey_.find(FoldedCase(storyCode));
    return at == floorByKey_.end() ? nullptr : floors_[at->second].get();
}

} // namespace kalvrooms
