#include "model/RoomHistory.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kalvrooms {
namespace {

using Names = std::vector<std::wstring>;

// A list whose changes are recorded as the main window records them.
class History : public testing::Test {
  protected:
    void add(const std::wstring& storyCode, const std::wstring& name, std::int32_t quantity = 1) {
        clsRoom room;
        room.StoryCode(storyCode);
        room.Name(name);
        floors.AddRooms(room, quantity);
        history.Added(floors.LastRooms(storyCode, quantity));
    }
    std::shared_ptr<clsRoom> stored(const std::wstring& storyCode, std::int32_t id) const {
        std::shared_ptr<clsRoom> room;
        floors.GetRoomByID(storyCode, id, room);
        return room;
    }
    void remove(const std::wstring& storyCode, std::int32_t id) {
        const auto room = stored(storyCode, id);
        floors.DeleteRoom(storyCode, id);
        history.Removed(room);
    }
    void rename(const std::wstring& storyCode, std::int32_t id, const std::wstring& name) {
        const auto room = stored(storyCode, id);
        const auto before = room->Copy();
        room->Name(name);
        history.Changed(before, room);
    }
    Names names() const {
        Names all;
        clsRoom room;
        for (std::int32_t i = 1; i <= floors.GetCountOfRooms(); ++i) {
            floors.GetRoomByIndex(i, room);
            all.push_back(room.Name());
        }
        return all;
    }

    clsFloors floors;
    RoomHistory history;
};

TEST_F(History, EveryStepIsTakenBackAndDoneAgain) {
    add(L"EG", L"1", 3);
    add(L"OG", L"7");
    remove(L"EG", 3);
    rename(L"EG", 4, L"Flur");
    remove(L"OG", 2);
    const std::vector<Names> states = {{},
                                       {L"1", L"2", L"3"},
                                       {L"1", L"2", L"3", L"7"},
                                       {L"1", L"3", L"7"},
                                       {L"1", L"Flur", L"7"},
                                       {L"1", L"Flur"}};
    for (int round = 0; round < 2; ++round) {
        for (std::size_t step = states.size() - 1; step > 0; --step) {
            ASSERT_EQ(names(), states[step]);
            EXPECT_TRUE(history.Undo(floors));
        }
        EXPECT_EQ(names(), states.front());
        EXPECT_FALSE(history.Undo(floors));
        for (std::size_t step = 1; step < states.size(); ++step) {
            EXPECT_TRUE(history.Redo(floors));
            ASSERT_EQ(names(), states[step]);
        }
        EXPECT_FALSE(history.Redo(floors));
    }
}

TEST_F(History, AStepTellsWhichOfItsRoomsTheListHolds) {
    add(L"EG", L"1", 2);
    remove(L"EG", 3);
    RoomList rooms = history.Undo(floors).value();
    ASSERT_EQ(rooms.size(), 1u);
    EXPECT_EQ(rooms[0], stored(L"EG", 3));
    EXPECT_TRUE(history.Undo(floors).value().empty());
    EXPECT_EQ(history.Redo(floors).value().size(), 2u);
    EXPECT_TRUE(history.Redo(floors).value().empty());
}

TEST_F(History, AChangeKeepsEverythingOfTheRoomAsItWas) {
    add(L"EG", L"1");
    const auto room = stored(L"EG", 2);
    const auto before = room->Copy();
    const auto untouched = room->Copy();
    room->FunctionName(L"Büro");
    room->Enclosure(L"a");
    room->Occupancy(L" NF");
    room->AreaType(L" N");
    room->Geometry->Area(30.0);
    room->Geometry->SetTypeAndValue(CalculationByDx, L"5");
    history.Changed(before, room);
    history.Undo(floors);
    EXPECT_TRUE(stored(L"EG", 2)->SaysTheSameAs(*untouched));
    EXPECT_EQ(stored(L"EG", 2)->Geometry->Area(), 16.0);
    EXPECT_EQ(stored(L"EG", 2)->FunctionName(), L"");
    history.Redo(floors);
    EXPECT_EQ(stored(L"EG", 2)->Geometry->CalculationValue(), L"5");
    EXPECT_EQ(stored(L"EG", 2)->FunctionName(), L"Büro");
}

TEST_F(History, ARoomThatSaysTheSameIsNoStep) {
    add(L"EG", L"1");
    const auto room = stored(L"EG", 2);
    history.Changed(room->Copy(), room);
    history.Undo(floors);
    EXPECT_EQ(floors.GetCountOfRooms(), 0);
}

TEST_F(History, EveryFieldMakesADifference) {
    const clsRoom room;
    const std::vector<void (*)(clsRoom&)> changes = {
        [](clsRoom& r) { r.Name(L"x"); },
        [](clsRoom& r) { r.FunctionName(L"x"); },
        [](clsRoom& r) { r.StoryCode(L"x"); },
        [](clsRoom& r) { r.Enclosure(L"x"); },
        [](clsRoom& r) { r.Occupancy(L"x"); },
        [](clsRoom& r) { r.AreaType(L"x"); },
        [](clsRoom& r) { r.FileID(L"x"); },
        [](clsRoom& r) { r.FileNumber(1); },
        [](clsRoom& r) { r.ComponentID(1); },
        [](clsRoom& r) { r.ProjectNumber(1); },
        [](clsRoom& r) { r.ID(1); },
        [](clsRoom& r) { r.Geometry->Area(1.0); },
        [](clsRoom& r) { r.Geometry->SetTypeAndValue(CalculationByRatio, L"2"); },
        [](clsRoom& r) { r.Geometry->SetTypeAndValue(CalculationByDx, L" 1"); }};
    for (const auto change : changes) {
        const auto other = room.Copy();
        EXPECT_TRUE(room.SaysTheSameAs(*other));
        change(*other);
        EXPECT_FALSE(room.SaysTheSameAs(*other));
    }
}

TEST_F(History, WhatIsDoneAfterAnUndoTakesThePlaceOfWhatWasTakenBack) {
    add(L"EG", L"1");
    add(L"EG", L"2");
    history.Undo(floors);
    add(L"EG", L"3");
    EXPECT_FALSE(history.Redo(floors));
    EXPECT_EQ(names(), (Names{L"1", L"3"}));
    history.Undo(floors);
    history.Undo(floors);
    EXPECT_EQ(names(), Names{});
}

TEST_F(History, ClearedItKnowsNoStep) {
    add(L"EG", L"1");
    history.Undo(floors);
    add(L"EG", L"1");
    history.Clear();
    EXPECT_FALSE(history.Undo(floors));
    EXPECT_FALSE(history.Redo(floors));
}

TEST_F(History, TheOldestStepsGoWhenTheLimitIsReached) {
    EXPECT_EQ(RoomHistory::UsualLimit, 64u * 1024 * 1024);
    // Room for two rooms with such a name, and not for three.
    const std::wstring name(10000, L'x');
    history = RoomHistory(25000 * sizeof(wchar_t));
    for (int i = 0; i < 3; ++i)
        add(L"EG", name);
    EXPECT_TRUE(history.Undo(floors));
    // What was taken back counts as well, until it cannot be done again.
    EXPECT_TRUE(history.Undo(floors));
    EXPECT_FALSE(history.Undo(floors));
    add(L"EG", name);
    add(L"EG", name);
    EXPECT_TRUE(history.Undo(floors));
    EXPECT_TRUE(history.Undo(floors));
    EXPECT_FALSE(history.Undo(floors));
    // A step that is larger than the limit goes, and with it all that it was built upon.
    add(L"EG", L"1");
    add(L"EG", name + name + name);
    EXPECT_FALSE(history.Undo(floors));
}

} // namespace
} // namespace kalvrooms
