#include "model/RoomHistory.h"

#include <utility>

namespace kalvrooms {
namespace {

std::size_t sizeOf(const clsRoom& room) {
    std::size_t characters = room.Geometry->CalculationValue().size();
    for (const std::wstring* text :
         {&room.Name(), &room.FunctionName(), &room.StoryCode(), &room.Enclosure(),
          &room.Occupancy(), &room.AreaType(), &room.FileID()})
        characters += text->size();
    return sizeof(clsRoom) + sizeof(clsGeometry) + characters * sizeof(wchar_t);
}

} // namespace

void RoomHistory::Added(RoomList rooms) {
    if (!rooms.empty())
        record({Kind::Added, std::move(rooms), nullptr});
}

void RoomHistory::Removed(std::shared_ptr<clsRoom> room) {
    record({Kind::Removed, {std::move(room)}, nullptr});
}

void RoomHistory::Changed(std::shared_ptr<clsRoom> before, std::shared_ptr<clsRoom> now) {
    if (!before->SaysTheSameAs(*now))
        record({Kind::Changed, {std::move(now)}, std::move(before)});
}

void RoomHistory::Clear() {
    done_.clear();
    undone_.clear();
    size_ = 0;
}

void RoomHistory::record(Step step) {
    for (const Step& gone : undone_)
        size_ -= gone.size;
    undone_.clear();
    for (const auto& room : step.rooms)
        step.size += sizeOf(*room);
    if (step.other)
        step.size += sizeOf(*step.other);
    size_ += step.size;
    done_.push_back(std::move(step));
    while (size_ > limit_) {
        size_ -= done_.front().size;
        done_.pop_front();
    }
}

RoomList RoomHistory::turn(Step& step, clsFloors& floors, bool back) {
    if (step.kind == Kind::Changed) {
        std::swap(*step.rooms.front(), *step.other);
        return step.rooms;
    }
    if ((step.kind == Kind::Removed) == back) {
        for (const auto& room : step.rooms)
            floors.RestoreRoom(room);
        return step.rooms;
    }
    // From the end: the storey then has nothing to move up.
    for (auto room = step.rooms.rbegin(); room != step.rooms.rend(); ++room)
        floors.DeleteRoom((*room)->StoryCode(), (*room)->ID());
    return {};
}

std::optional<RoomList> RoomHistory::Undo(clsFloors& floors) {
    if (done_.empty())
        return std::nullopt;
    undone_.push_back(std::move(done_.back()));
    done_.pop_back();
    return turn(undone_.back(), floors, true);
}

std::optional<RoomList> RoomHistory::Redo(clsFloors& floors) {
    if (undone_.empty())
        return std::nullopt;
    done_.push_back(std::move(undone_.back()));
    undone_.pop_back();
    return turn(done_.back(), floors, false);
}

} // namespace kalvrooms
