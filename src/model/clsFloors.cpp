#include "model/clsFloors.h"

#include <exception>

#include "model/RuntimeError.h"

namespace kalvrooms {

namespace {

// The storey of rooms without a storey code.
constexpr const wchar_t* unassignedStory = L"unbelegt";

bool isEven(wchar_t c) {
    return c % 2 == 0;
}
bool isBetween(wchar_t c, unsigned first, unsigned last) {
    return static_cast<unsigned>(c) >= first && static_cast<unsigned>(c) <= last;
}
wchar_t plus(wchar_t c, int distance) {
    return static_cast<wchar_t>(c + distance);
}

wchar_t foldLatin(wchar_t c) {
    if (isBetween(c, 'A', 'Z') || (isBetween(c, 0x00C0, 0x00DE) && c != 0x00D7))
        return plus(c, 32);
    if (c == 0x0178) // its small letter is the only one that lies in another block
        return 0x00FF;
    if (isBetween(c, 0x0139, 0x0148) || isBetween(c, 0x0179, 0x017E))
        return isEven(c) ? c : plus(c, 1);
    // The dotted and the dotless i are letters of their own in any case.
    if (isBetween(c, 0x0100, 0x0137) && c != 0x0130)
        return isEven(c) ? plus(c, 1) : c;
    if (isBetween(c, 0x014A, 0x0177))
        return isEven(c) ? plus(c, 1) : c;
    return c;
}

wchar_t foldGreek(wchar_t c) {
    if (c == 0x0386)
        return 0x03AC;
    if (isBetween(c, 0x0388, 0x038A))
        return plus(c, 37);
    if (c == 0x038C)
        return 0x03CC;
    if (isBetween(c, 0x038E, 0x038F))
        return plus(c, 63);
    if (isBetween(c, 0x0391, 0x03AB) && c != 0x03A2)
        return plus(c, 32);
    if (c == 0x03C2) // the small sigma at the end of a word
        return 0x03C3;
    if (isBetween(c, 0x03D8, 0x03EF))
        return isEven(c) ? plus(c, 1) : c;
    return c;
}

wchar_t foldCyrillic(wchar_t c) {
    if (isBetween(c, 0x0400, 0x040F))
        return plus(c, 80);
    if (isBetween(c, 0x0410, 0x042F))
        return plus(c, 32);
    if (isBetween(c, 0x0460, 0x0481) || isBetween(c, 0x048A, 0x04BF) ||
        isBetween(c, 0x04D0, 0x052F))
        return isEven(c) ? plus(c, 1) : c;
    if (c == 0x04C0)
        return 0x04CF;
    if (isBetween(c, 0x04C1, 0x04CE))
        return isEven(c) ? c : plus(c, 1);
    return c;
}

// The same on every machine, whatever its locale: a list must fall into the same storeys
// wherever it is opened.
std::wstring keyOf(std::wstring storyCode) {
    for (wchar_t& c : storyCode)
        if (isBetween(c, 0x0000, 0x017F))
            c = foldLatin(c);
        else if (isBetween(c, 0x0370, 0x03FF))
            c = foldGreek(c);
        else if (isBetween(c, 0x0400, 0x052F))
            c = foldCyrillic(c);
    return storyCode;
}

} // namespace

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
        room.StoryCode(unassignedStory);
    forgetCursor();
    const std::wstring key = keyOf(room.StoryCode());
    const auto known = floorByKey_.find(key);
    const auto floor =
        known != floorByKey_.end() ? floors_[known->second] : std::make_shared<clsFloor>();
    bool complete = false;
    try {
        adding(*floor);
        complete = true;
    } catch (const std::exception&) {
        // The numbering ran out in the middle: the rooms before that are good.
    }
    if (known == floorByKey_.end() && (complete || floor->GetCountOfRooms() > 0)) {
        floorByKey_.emplace(key, floors_.size());
        floors_.push_back(floor);
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

void clsFloors::forgetCursor() {
    cursorFloor_ = 0;
    cursorBefore_ = 0;
}

clsFloor* clsFloors::findFloor(const std::wstring& storyCode) const {
    const auto at = floorByKey_.find(keyOf(storyCode));
    return at == floorByKey_.end() ? nullptr : floors_[at->second].get();
}

} // namespace kalvrooms
