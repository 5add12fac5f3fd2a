#include "model/clsFloors.h"

#include <new>
#include <random>
#include <utility>
#include <vector>

#include "model/LetterRules.h"
#include "support/MemoryLimit.h"
#include "support/UserLocaleForTest.h"

namespace kalvrooms {

namespace {

clsRoom roomOf(const std::wstring& storyCode, const std::wstring& name) {
    clsRoom room;
    room.StoryCode(storyCode);
    room.Name(name);
    return room;
}

void add(clsFloors& floors, const std::wstring& storyCode, const std::wstring& name,
         std::int32_t quantity = 1) {
    clsRoom room = roomOf(storyCode, name);
    floors.AddRooms(room, quantity);
}

std::wstring nameAt(const clsFloors& floors, std::int32_t index) {
    clsRoom room = roomOf(L"", L"untouched");
    floors.GetRoomByIndex(index, room);
    return room.Name();
}

std::vector<std::wstring> namesOf(const clsFloors& floors) {
    std::vector<std::wstring> names;
    for (std::int32_t i = 1; i <= floors.GetCountOfRooms(); ++i)
        names.push_back(nameAt(floors, i));
    return names;
}

using Names = std::vector<std::wstring>;

bool fallTogether(const std::wstring& one, const std::wstring& other) {
    clsFloors floors;
    add(floors, one, L"A");
    add(floors, other, L"B");
    return floors.GetCountOfFloors() == 1;
}

} // namespace

TEST(clsFloors, StartsEmpty) {
    const clsFloors floors;
    EXPECT_EQ(floors.GetCountOfFloors(), 0);
    EXPECT_EQ(floors.GetCountOfRooms(), 0);
}

TEST(clsFloors, WithoutMemoryForAllOfThemNoRoomIsAddedAndTheCallerLearnsOfIt) {
    for (const wchar_t* storyCode :
         {L"EG", L"the code of a storey that the list does not know yet"}) {
        int failures = 0;
        for (std::size_t bytes = 0;; bytes += 100) {
            clsFloors floors;
            add(floors, L"EG", L"A");
            clsRoom room = roomOf(storyCode, L"B");
            try {
                const MemoryLimit limit(bytes);
                floors.AddRooms(room, 5);
                EXPECT_EQ(floors.GetCountOfRooms(), 6);
                break;
            } catch (const std::bad_alloc&) {
                ++failures;
            }
            ASSERT_EQ(namesOf(floors), Names{L"A"});
            ASSERT_EQ(floors.GetCountOfFloors(), 1);
            // The list can be used as before.
            add(floors, storyCode, L"C");
            ASSERT_EQ(namesOf(floors), (Names{L"A", L"C"}));
        }
        EXPECT_GT(failures, 5);
    }
}

TEST(clsFloors, ListsStoreysInTheOrderOfTheirFirstAppearance) {
    clsFloors floors;
    add(floors, L"EG", L"A");
    add(floors, L"OG", L"B");
    add(floors, L"EG", L"C");
    EXPECT_EQ(floors.GetCountOfFloors(), 2);
    EXPECT_EQ(floors.GetCountOfRooms(), 3);
    EXPECT_EQ(namesOf(floors), (Names{L"A", L"C", L"B"}));
}

TEST(clsFloors, StoreyCodesIgnoreLetterCaseAndRoomsKeepTheirs) {
    clsFloors floors;
    add(floors, L"EG", L"A");
    add(floors, L"eg", L"B");
    add(floors, L"Eg", L"C");
    EXPECT_EQ(floors.GetCountOfFloors(), 1);
    clsRoom room;
    floors.GetRoomByIndex(2, room);
    EXPECT_EQ(room.StoryCode(), L"eg");
    std::shared_ptr<clsRoom> stored;
    floors.GetRoomByID(L"eG", 4, stored);
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->StoryCode(), L"Eg");
}

TEST(clsFloors, WhatLetterCaseIsTheSystemSays) {
    HandInLetterRules({[](const std::wstring& text) { return text.substr(0, 1); },
                       [](const std::wstring&) { return std::string(); }});
    EXPECT_TRUE(fallTogether(L"EG", L"E2"));
    EXPECT_FALSE(fallTogether(L"EG", L"eg"));
    HandInLetterRules({});
    EXPECT_TRUE(fallTogether(L"EG", L"eg"));
    EXPECT_FALSE(fallTogether(L"EG", L"E2"));
}

TEST(clsFloors, ADeletedRoomComesBackWhereItWas) {
    clsFloors floors;
    add(floors, L"EG", L"1", 3);
    add(floors, L"OG", L"7");
    const RoomList rooms = floors.LastRooms(L"eg", 2);
    ASSERT_EQ(rooms.size(), 2u);
    EXPECT_EQ(rooms[0]->Name(), L"2");
    EXPECT_EQ(rooms[1]->Name(), L"3");
    floors.DeleteRoom(L"EG", rooms[0]->ID());
    EXPECT_EQ(namesOf(floors), (Names{L"1", L"3", L"7"}));
    floors.RestoreRoom(rooms[0]);
    EXPECT_EQ(namesOf(floors), (Names{L"1", L"2", L"3", L"7"}));
    std::shared_ptr<clsRoom> found;
    floors.GetRoomByID(L"EG", rooms[0]->ID(), found);
    EXPECT_EQ(found, rooms[0]);
    EXPECT_TRUE(floors.LastRooms(L"UG", 0).empty());
    clsFloors others;
    EXPECT_EQ(errorOf([&] { others.RestoreRoom(rooms[0]); }), RuntimeError::InvalidProcedureCall);
}

TEST(clsFloors, ARoomWithoutStoreyIsUnassigned) {
    clsFloors floors;
    clsRoom room = roomOf(L"", L"A");
    floors.AddRooms(room, 1);
    EXPECT_EQ(room.StoryCode(), L"unbelegt");
    EXPECT_EQ(floors.GetCountOfFloors(), 1);
    clsRoom stored;
    floors.GetRoomByIndex(1, stored);
    EXPECT_EQ(stored.StoryCode(), L"unbelegt");
    std::shared_ptr<clsRoom> byID;
    floors.GetRoomByID(L"Unbelegt", 2, byID);
    EXPECT_TRUE(byID);
}

TEST(clsFloors, EveryStoreyCountsItsOwnIDs) {
    clsFloors floors;
    add(floors, L"EG", L"A", 2);
    add(floors, L"OG", L"B", 1);
    clsRoom room;
    floors.GetRoomByIndex(3, room);
    EXPECT_EQ(room.ID(), 2);
}

TEST(clsFloors, AQuantityBelowOneCreatesTheStoreyOnly) {
    clsFloors floors;
    add(floors, L"EG", L"A", 0);
    add(floors, L"OG", L"A", -3);
    EXPECT_EQ(floors.GetCountOfFloors(), 2);
    EXPECT_EQ(floors.GetCountOfRooms(), 0);
    add(floors, L"OG", L"B");
    EXPECT_EQ(floors.GetCountOfFloors(), 2);
    EXPECT_EQ(nameAt(floors, 1), L"B");
}

TEST(clsFloors, AnIndexBeyondTheTotalCopiesNothing) {
    clsFloors floors;
    EXPECT_EQ(nameAt(floors, 1), L"untouched");
    add(floors, L"EG", L"A");
    add(floors, L"OG", L"B");
    EXPECT_EQ(nameAt(floors, 3), L"untouched");
    EXPECT_EQ(nameAt(floors, 2147483647), L"untouched");
    EXPECT_EQ(nameAt(floors, 2), L"B");
}

TEST(clsFloors, AnIndexBelowOneRaisesAsSoonAsThereIsAStorey) {
    clsFloors floors;
    clsRoom room;
    EXPECT_EQ(errorOf([&] { floors.GetRoomByIndex(0, room); }), 0);
    EXPECT_EQ(errorOf([&] { floors.GetRoomByIndex(-1, room); }), 0);
    add(floors, L"EG", L"A", 0);
    EXPECT_EQ(errorOf([&] { floors.GetRoomByIndex(0, room); }), RuntimeError::SubscriptOutOfRange);
    add(floors, L"EG", L"A", 3);
    EXPECT_EQ(errorOf([&] { floors.GetRoomByIndex(0, room); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { floors.GetRoomByIndex(-7, room); }), RuntimeError::SubscriptOutOfRange);
}

TEST(clsFloors, GetRoomByIDLeavesTheReferenceForAnUnknownRoom) {
    clsFloors floors;
    add(floors, L"EG", L"A");
    const auto before = std::make_shared<clsRoom>();
    auto reference = before;
    floors.GetRoomByID(L"", 2, reference);
    EXPECT_EQ(reference, before);
    floors.GetRoomByID(L"OG", 2, reference);
    EXPECT_EQ(reference, before);
    floors.GetRoomByID(L"EG", 3, reference);
    EXPECT_EQ(reference, before);
    floors.GetRoomByID(L"EG", 2, reference);
    EXPECT_NE(reference, before);
}

TEST(clsFloors, AStoredRoomIsFoundInTheStoreyItWasAddedTo) {
    clsFloors floors;
    add(floors, L"EG", L"A");
    std::shared_ptr<clsRoom> stored;
    floors.GetRoomByID(L"EG", 2, stored);
    stored->StoryCode(L"OG"); // the storey keeps it
    std::shared_ptr<clsRoom> again;
    floors.GetRoomByID(L"OG", 2, again);
    EXPECT_FALSE(again);
    floors.GetRoomByID(L"EG", 2, again);
    EXPECT_EQ(again, stored);
}

TEST(clsFloors, AStoreyThatBecomesEmptyStays) {
    clsFloors floors;
    add(floors, L"EG", L"A");
    add(floors, L"OG", L"B");
    floors.DeleteRoom(L"EG", 2);
    EXPECT_EQ(floors.GetCountOfFloors(), 2);
    EXPECT_EQ(floors.GetCountOfRooms(), 1);
    EXPECT_EQ(nameAt(floors, 1), L"B");
    add(floors, L"EG", L"C");
    EXPECT_EQ(floors.GetCountOfFloors(), 2);
    EXPECT_EQ(namesOf(floors), (Names{L"C", L"B"}));
    clsRoom room;
    floors.GetRoomByIndex(1, room);
    EXPECT_EQ(room.ID(), 3);
}

TEST(clsFloors, DeleteRoomRaisesForAnUnknownRoomAndIgnoresAnEmptyCode) {
    clsFloors floors;
    add(floors, L"EG", L"A");
    EXPECT_EQ(errorOf([&] { floors.DeleteRoom(L"", 2); }), 0);
    EXPECT_EQ(errorOf([&] { floors.DeleteRoom(L"OG", 2); }), RuntimeError::InvalidProcedureCall);
    EXPECT_EQ(errorOf([&] { floors.DeleteRoom(L"EG", 3); }), RuntimeError::InvalidProcedureCall);
    EXPECT_EQ(floors.GetCountOfRooms(), 1);
}

TEST(clsFloors, AnOverflowInANewStoreyKeepsTheRoomsBeforeIt) {
    clsFloors floors;
    clsRoom room = roomOf(L"EG", L"R2147483646");
    EXPECT_EQ(errorOf([&] { floors.AddRooms(room, 5); }), 0);
    EXPECT_EQ(floors.GetCountOfFloors(), 1);
    EXPECT_EQ(namesOf(floors), (Names{L"R2147483646", L"R2147483647"}));
    add(floors, L"EG", L"B");
    EXPECT_EQ(floors.GetCountOfFloors(), 1);
    EXPECT_EQ(nameAt(floors, 3), L"B");
}

TEST(clsFloors, AnOverflowInAnExistingStoreyKeepsTheRoomsBeforeIt) {
    clsFloors floors;
    add(floors, L"EG", L"A");
    clsRoom room = roomOf(L"EG", L"R2147483647");
    EXPECT_EQ(errorOf([&] { floors.AddRooms(room, 5); }), 0);
    EXPECT_EQ(floors.GetCountOfFloors(), 1);
    EXPECT_EQ(namesOf(floors), (Names{L"A", L"R2147483647"}));
    EXPECT_EQ(room.Name(), L"R2147483647");
}

TEST(clsFloors, ANewStoreyThatGotNoRoomAtAllIsNotKept) {
    clsFloors floors;
    clsRoom room = roomOf(L"EG", L"A");
    room.Geometry = nullptr;
    EXPECT_EQ(errorOf([&] { floors.AddRooms(room, 1); }), 0);
    EXPECT_EQ(floors.GetCountOfFloors(), 0);
}

TEST(clsFloors, AddRoomsNeverFailsWhateverTheQuantitiesAddUpTo) {
    clsFloors floors;
    for (int i = 0; i < 3; ++i)
        add(floors, L"EG", L"A", -2147483647);
    add(floors, L"EG", L"A", 1);
    EXPECT_EQ(floors.GetCountOfRooms(), 1);
    EXPECT_EQ(errorOf([&] { floors.DeleteRoom(L"EG", 2); }), 0);
}

TEST(clsFloors, RandomAccessFindsTheSameRoomsAsAWalk) {
    clsFloors floors;
    std::vector<std::wstring> expected;
    for (int storey = 0; storey < 40; ++storey) {
        const std::int32_t quantity = storey % 5; // some storeys stay empty, the last ones too
        add(floors, L"S" + std::to_wstring(storey), std::to_wstring(storey * 1000), quantity);
        for (int i = 0; i < quantity; ++i)
            expected.push_back(std::to_wstring(storey * 1000 + i));
    }
    ASSERT_EQ(namesOf(floors), expected);
    std::mt19937 random(1);
    for (int i = 0; i < 2000; ++i) {
        const auto at = random() % expected.size();
        ASSERT_EQ(nameAt(floors, static_cast<std::int32_t>(at) + 1), expected[at]);
        ASSERT_EQ(nameAt(floors, static_cast<std::int32_t>(expected.size()) + 1), L"untouched");
    }
    for (std::size_t at = expected.size(); at > 0; --at)
        ASSERT_EQ(nameAt(floors, static_cast<std::int32_t>(at)), expected[at - 1]);
}

TEST(clsFloors, ChangesBetweenTwoReadsAreSeen) {
    clsFloors floors;
    add(floors, L"A", L"a", 1);
    add(floors, L"B", L"b", 1);
    add(floors, L"C", L"c", 1);
    EXPECT_EQ(nameAt(floors, 3), L"c");
    add(floors, L"A", L"a2", 1);
    EXPECT_EQ(nameAt(floors, 3), L"b");
    EXPECT_EQ(nameAt(floors, 4), L"c");
    floors.DeleteRoom(L"A", 2);
    EXPECT_EQ(nameAt(floors, 3), L"c");
    floors.DeleteRoom(L"A", 3);
    EXPECT_EQ(nameAt(floors, 1), L"b");
    EXPECT_EQ(nameAt(floors, 2), L"c");
    EXPECT_EQ(nameAt(floors, 3), L"untouched");
    floors.DeleteRoom(L"C", 2);
    add(floors, L"D", L"d", 1);
    EXPECT_EQ(namesOf(floors), (Names{L"b", L"d"}));
}

TEST(clsFloors, RandomChangesAndReadsAgreeWithAPlainList) {
    // The model of the model: storeys as plain lists of names with their IDs.
    std::vector<std::vector<std::pair<std::int32_t, std::wstring>>> storeys(12);
    std::vector<std::int32_t> nextID(storeys.size(), 1);
    clsFloors floors;
    for (std::size_t s = 0; s < storeys.size(); ++s)
        add(floors, L"S" + std::to_wstring(s), L"x", 0);
    std::mt19937 random(7);
    for (int step = 0; step < 3000; ++step) {
        const std::size_t s = random() % storeys.size();
        const std::wstring code = L"s" + std::to_wstring(s);
        if (random() % 3 != 0 || storeys[s].empty()) {
            const std::wstring name = L"n" + std::to_wstring(step) + L"x";
            add(floors, code, name);
            storeys[s].emplace_back(++nextID[s], name);
        } else {
            const auto at = static_cast<std::ptrdiff_t>(random() % storeys[s].size());
            floors.DeleteRoom(code, storeys[s][static_cast<std::size_t>(at)].first);
            storeys[s].erase(storeys[s].begin() + at);
        }
        std::vector<std::wstring> expected;
        for (const auto& storey : storeys)
            for (const auto& room : storey)
                expected.push_back(room.second);
        ASSERT_EQ(floors.GetCountOfRooms(), static_cast<std::int32_t>(expected.size()));
        for (int read = 0; read < 4 && !expected.empty(); ++read) {
            const auto at = random() % expected.size();
            ASSERT_EQ(nameAt(floors, static_cast<std::int32_t>(at) + 1), expected[at]);
        }
    }
    EXPECT_EQ(floors.GetCountOfFloors(), 12);
}

} // namespace kalvrooms
