#include "model/clsFloor.h"

#include <algorithm>
#include <string>

#include "model/NumberText.h"
#include "model/RuntimeError.h"

namespace kalvrooms {

std::vector<clsFloor::Entry>::const_iterator clsFloor::place(std::int32_t id) const {
    return std::lower_bound(
        rooms_.begin(), rooms_.end(), id,
        [](const Entry& entry, std::int32_t wanted) { return entry.key < wanted; });
}

std::vector<clsFloor::Entry>::const_iterator clsFloor::find(std::int32_t id) const {
    const auto at = place(id);
    if (at == rooms_.end() || at->key != id)
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    return at;
}

std::int32_t clsFloor::GetCountOfRooms() const {
    return static_cast<std::int32_t>(rooms_.size());
}

void clsFloor::GetRoomByIndex(std::int32_t index, clsRoom& room) const {
    if (index > GetCountOfRooms())
        return;
    if (index < 1)
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    CopyRoom(*rooms_[static_cast<std::size_t>(index - 1)].room, room);
}

void clsFloor::GetRoomByID(std::int32_t id, std::shared_ptr<clsRoom>& room) const {
    room = find(id)->room;
}

void clsFloor::DeleteRoomByID(std::int32_t id) {
    rooms_.erase(find(id));
}

RoomList clsFloor::LastRooms(std::int32_t count) const {
    RoomList rooms;
    for (auto entry = rooms_.end() - count; entry != rooms_.end(); ++entry)
        rooms.push_back(entry->room);
    return rooms;
}

void clsFloor::RestoreRoom(const std::shared_ptr<clsRoom>& room) {
    rooms_.insert(place(room->ID()), {room->ID(), room});
}

void clsFloor::AddRooms(clsRoom& room, std::int32_t quantity) {
    for (std::int32_t i = 0; i < quantity; ++i) {
        AddRoom(room);
        // The copy is made already: it keeps the empty name, only those that follow are numbered.
        if (room.Name().empty())
            room.Name(FromLong(nextID_));
        room.IncrementRoomNumber();
    }
}

void clsFloor::AddRoom(const clsRoom& room) {
    const auto added = std::make_shared<clsRoom>();
    CopyRoom(room, *added);
    nextID_ = AddLong(nextID_, 1);
    added->ID(nextID_);
    rooms_.push_back({nextID_, added});
}

void clsFloor::KeepFirst(std::int32_t count) {
    rooms_.erase(rooms_.begin() + count, rooms_.end());
}

void clsFloor::CopyRoom(const clsRoom& source, clsRoom& target) {
    target.ComponentID(source.ComponentID());
    target.FileID(source.FileID());
    target.ProjectNumber(source.ProjectNumber());
    target.FileNumber(source.FileNumber());
    target.AreaType(source.AreaType());
    target.Enclosure(source.Enclosure());
    target.FunctionName(source.FunctionName());
    // A room of the list is never new.
    target.IsNew(false);
    target.Name(source.Name());
    target.Occupancy(source.Occupancy());
    target.StoryCode(source.StoryCode());
    target.ID(source.ID());
    if (!source.Geometry || !target.Geometry)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    target.Geometry->Area(source.Geometry->Area());
    target.Geometry->SetTypeAndValue(source.Geometry->CalculationType(),
                                     source.Geometry->CalculationValue());
}

} // namespace kalvrooms
