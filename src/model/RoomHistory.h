#pragma once
// What was done to a room list, step by step, so that it can be taken back and done again.

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>

#include "model/clsFloors.h"

namespace kalvrooms {

class RoomHistory {
  public:
    static constexpr std::size_t UsualLimit = std::size_t{64} << 20;

    // The steps take no more than this many bytes together; the oldest ones go first.
    explicit RoomHistory(std::size_t limit = UsualLimit) : limit_(limit) {}

    // Rooms that the list now holds.
    void Added(RoomList rooms);
    // A room that the list no longer holds.
    void Removed(std::shared_ptr<clsRoom> room);
    // A room of the list, and a copy of what it was before. Nothing when both say the same.
    void Changed(std::shared_ptr<clsRoom> before, std::shared_ptr<clsRoom> now);
    void Clear();

    // The last step taken back, or the last one taken back done again. The rooms of that step that
    // the list holds now; no value when there was no step.
    std::optional<RoomList> Undo(clsFloors& floors);
    std::optional<RoomList> Redo(clsFloors& floors);

  private:
    enum class Kind { Added, Removed, Changed };
    struct Step {
        Kind kind;
        // The objects that the list holds or held; they stay the same ones through all steps.
        RoomList rooms;
        // What the room of a change does not say now.
        std::shared_ptr<clsRoom> other;
        std::size_t size = 0;
    };
    void record(Step step);
    static RoomList turn(Step& step, clsFloors& floors, bool back);

    std::size_t limit_;
    std::size_t size_ = 0; // of all steps
    // The last step of each is the next one.
    std::deque<Step> done_;
    std::deque<Step> undone_;
};

} // namespace kalvrooms
