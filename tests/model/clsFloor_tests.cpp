#include "model/clsFloor.h"

#include <vector>

#include "support/UserLocaleForTest.h"

namespace kalvrooms {

namespace {

clsRoom named(const std::wstring& name) {
    clsRoom room;
    room.Name(name);
    return room;
}

std::vector<std::wstring> namesOf(const clsFloor& floor) {
    std::vector<std::wstring> names;
    for (std::int32_t i = 1; i <= floor.GetCountOfRooms(); ++i) {
        clsRoom room;
        floor.GetRoomByIndex(i, room);
        names.push_back(room.Name());
    }
    return names;
}

std::vector<std::int32_t> idsOf(const clsFloor& floor) {
    std::vector<std::int32_t> ids;
    for (std::int32_t i = 1; i <= floor.GetCountOfRooms(); ++i) {
        clsRoom room;
        floor.GetRoomByIndex(i, room);
        ids.push_back(room.ID());
    }
    return ids;
}

using Names = std::vector<std::wstring>;
using IDs = std::vector<std::int32_t>;

} // namespace

TEST(clsFloor, StartsEmpty) {
    const clsFloor floor;
    EXPECT_EQ(floor.GetCountOfRooms(), 0);
}

TEST(clsFloor, AddsASeriesAndLeavesTheNextNameWithTheCaller) {
    clsFloor floor;
    clsRoom room = named(L"Büro 1");
    floor.AddRooms(room, 3);
    EXPECT_EQ(namesOf(floor), (Names{L"Büro 1", L"Büro2", L"Büro3"}));
    EXPECT_EQ(room.Name(), L"Büro4");
    EXPECT_EQ(room.ID(), 0);
}

TEST(clsFloor, NumbersCountOn) {
    clsFloor floor;
    clsRoom room = named(L"5");
    floor.AddRooms(room, 2);
    EXPECT_EQ(namesOf(floor), (Names{L"5", L"6"}));
    EXPECT_EQ(room.Name(), L"7");
}

TEST(clsFloor, TheFirstIDIsTwo) {
    clsFloor floor;
    clsRoom room;
    floor.AddRooms(room, 2);
    floor.AddRooms(room, 1);
    EXPECT_EQ(idsOf(floor), (IDs{2, 3, 4}));
}

TEST(clsFloor, AQuantityBelowOneAddsNothing) {
    clsFloor floor;
    clsRoom room = named(L"A");
    floor.AddRooms(room, 0);
    floor.AddRooms(room, -5);
    EXPECT_EQ(floor.GetCountOfRooms(), 0);
    EXPECT_EQ(room.Name(), L"A");
}

TEST(clsFloor, OnlyTheCopiesAfterTheFirstSeeTheNumberOfAnEmptyName) {
    clsFloor floor;
    clsRoom room = named(L"");
    floor.AddRooms(room, 2);
    EXPECT_EQ(namesOf(floor), (Names{L"", L"3"}));
    EXPECT_EQ(idsOf(floor), (IDs{2, 3}));
    EXPECT_EQ(room.Name(), L"4");
}

TEST(clsFloor, HoldsCopiesOfItsOwn) {
    clsFloor floor;
    clsRoom room = named(L"A");
    floor.AddRooms(room, 1);
    room.Name(L"changed");
    room.Geometry->Area(99.0);
    room.StoryCode(L"XX");
    clsRoom stored;
    floor.GetRoomByIndex(1, stored);
    EXPECT_EQ(stored.Name(), L"A");
    EXPECT_EQ(stored.Geometry->Area(), 16.0);
    EXPECT_EQ(stored.StoryCode(), L"EG");
}

TEST(clsFloor, CopiesEveryFieldButIsNew) {
    clsFloor floor;
    clsRoom room = named(L"A");
    room.ComponentID(12);
    room.FileID(L"K3");
    room.ProjectNumber(5);
    room.FileNumber(6);
    room.AreaType(L"NUF");
    room.Enclosure(L"a");
    room.FunctionName(L"Küche");
    room.Occupancy(L"NF");
    room.StoryCode(L"OG");
    room.ID(77);
    room.IsNew(true);
    room.Geometry->SetTypeAndValue(CalculationByDx, L" 2,5");
    room.Geometry->Area(12.5);
    floor.AddRooms(room, 1);

    clsRoom copy;
    copy.IsNew(true);
    const auto geometry = copy.Geometry;
    floor.GetRoomByIndex(1, copy);
    EXPECT_EQ(copy.ComponentID(), 12);
    EXPECT_EQ(copy.FileID(), L"K3");
    EXPECT_EQ(copy.ProjectNumber(), 5);
    EXPECT_EQ(copy.FileNumber(), 6);
    EXPECT_EQ(copy.AreaType(), L"NUF");
    EXPECT_EQ(copy.Enclosure(), L"a");
    EXPECT_EQ(copy.FunctionName(), L"Küche");
    EXPECT_EQ(copy.Occupancy(), L"NF");
    EXPECT_EQ(copy.StoryCode(), L"OG");
    EXPECT_EQ(copy.Name(), L"A");
    EXPECT_EQ(copy.ID(), 2);
    EXPECT_FALSE(copy.IsNew());
    EXPECT_EQ(copy.Geometry, geometry); // the target keeps its own object
    EXPECT_EQ(copy.Geometry->CalculationType(), CalculationByDx);
    EXPECT_EQ(copy.Geometry->CalculationValue(), L" 2,5");
    EXPECT_EQ(copy.Geometry->Area(), 12.5);
    EXPECT_TRUE(room.IsNew()); // the caller's room is not touched
    EXPECT_EQ(room.ID(), 77);
}

TEST(clsFloor, CopyingDoesNotReadTheSides) {
    clsFloor floor;
    clsRoom room;
    room.Geometry->SetTypeAndValue(CalculationByDx, L"abc");
    floor.AddRooms(room, 1);
    clsRoom copy;
    floor.GetRoomByIndex(1, copy);
    EXPECT_EQ(copy.Geometry->CalculationType(), CalculationByDx);
}

TEST(clsFloor, GetRoomByIndexHandsOutACopy) {
    clsFloor floor;
    clsRoom room = named(L"A");
    floor.AddRooms(room, 1);
    clsRoom copy;
    floor.GetRoomByIndex(1, copy);
    copy.Name(L"changed");
    copy.Geometry->Area(1.0);
    clsRoom again;
    floor.GetRoomByIndex(1, again);
    EXPECT_EQ(again.Name(), L"A");
    EXPECT_EQ(again.Geometry->Area(), 16.0);
}

TEST(clsFloor, GetRoomByIndexBeyondTheLastDoesNothing) {
    clsFloor floor;
    clsRoom room;
    floor.AddRooms(room, 2);
    clsRoom target = named(L"untouched");
    floor.GetRoomByIndex(3, target);
    floor.GetRoomByIndex(2147483647, target);
    EXPECT_EQ(target.Name(), L"untouched");
}

TEST(clsFloor, GetRoomByIndexBelowOneRaises) {
    clsFloor floor;
    clsRoom room;
    EXPECT_EQ(errorOf([&] { floor.GetRoomByIndex(0, room); }), RuntimeError::SubscriptOutOfRange);
    floor.AddRooms(room, 1);
    EXPECT_EQ(errorOf([&] { floor.GetRoomByIndex(0, room); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { floor.GetRoomByIndex(-1, room); }), RuntimeError::SubscriptOutOfRange);
}

TEST(clsFloor, GetRoomByIDHandsOutTheStoredRoom) {
    clsFloor floor;
    clsRoom room = named(L"A");
    floor.AddRooms(room, 2);
    std::shared_ptr<clsRoom> stored;
    floor.GetRoomByID(3, stored);
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->Name(), L"A1");
    stored->Name(L"changed");
    EXPECT_EQ(namesOf(floor), (Names{L"A", L"changed"}));
}

TEST(clsFloor, GetRoomByIDFindsTheRoomUnderItsKeyWhateverItsIDSaysNow) {
    clsFloor floor;
    clsRoom room = named(L"1");
    floor.AddRooms(room, 3);
    std::shared_ptr<clsRoom> stored;
    floor.GetRoomByID(2, stored);
    stored->ID(1000);
    std::shared_ptr<clsRoom> again;
    floor.GetRoomByID(2, again);
    EXPECT_EQ(again, stored);
    floor.GetRoomByID(4, again);
    EXPECT_EQ(again->Name(), L"3");
    EXPECT_EQ(errorOf([&] { floor.GetRoomByID(1000, again); }), RuntimeError::InvalidProcedureCall);
}

TEST(clsFloor, AnUnknownIDRaises) {
    clsFloor floor;
    clsRoom room;
    std::shared_ptr<clsRoom> stored;
    EXPECT_EQ(errorOf([&] { floor.GetRoomByID(2, stored); }), RuntimeError::InvalidProcedureCall);
    floor.AddRooms(room, 1);
    for (const std::int32_t id : {-1, 0, 1, 3}) {
        EXPECT_EQ(errorOf([&] { floor.GetRoomByID(id, stored); }),
                  RuntimeError::InvalidProcedureCall);
        EXPECT_EQ(errorOf([&] { floor.DeleteRoomByID(id); }), RuntimeError::InvalidProcedureCall);
    }
    EXPECT_FALSE(stored);
    EXPECT_EQ(floor.GetCountOfRooms(), 1);
}

TEST(clsFloor, DeletingFromTheMiddleKeepsTheOrder) {
    clsFloor floor;
    clsRoom room = named(L"1");
    floor.AddRooms(room, 5);
    floor.DeleteRoomByID(4);
    EXPECT_EQ(namesOf(floor), (Names{L"1", L"2", L"4", L"5"}));
    EXPECT_EQ(idsOf(floor), (IDs{2, 3, 5, 6}));
    for (const std::int32_t id : {2, 3, 5, 6}) {
        std::shared_ptr<clsRoom> stored;
        floor.GetRoomByID(id, stored);
        EXPECT_EQ(stored->ID(), id);
    }
    EXPECT_EQ(errorOf([&] { floor.DeleteRoomByID(4); }), RuntimeError::InvalidProcedureCall);
}

TEST(clsFloor, IDsAreNeverReused) {
    clsFloor floor;
    clsRoom room = named(L"1");
    floor.AddRooms(room, 2);
    floor.DeleteRoomByID(3);
    floor.DeleteRoomByID(2);
    floor.AddRooms(room, 1);
    EXPECT_EQ(idsOf(floor), (IDs{4}));
}

TEST(clsFloor, ADeletedRoomLivesAsLongAsItsHolder) {
    clsFloor floor;
    clsRoom room = named(L"A");
    floor.AddRooms(room, 1);
    std::shared_ptr<clsRoom> stored;
    floor.GetRoomByID(2, stored);
    floor.DeleteRoomByID(2);
    EXPECT_EQ(stored->Name(), L"A");
}

TEST(clsFloor, AnOverflowOfTheNumberingKeepsWhatCameBeforeIt) {
    clsFloor floor;
    clsRoom room = named(L"R2147483646");
    EXPECT_EQ(errorOf([&] { floor.AddRooms(room, 5); }), RuntimeError::Overflow);
    EXPECT_EQ(namesOf(floor), (Names{L"R2147483646", L"R2147483647"}));
}

TEST(clsFloor, ARoomWithoutGeometryCannotBeCopied) {
    clsFloor floor;
    clsRoom room;
    room.Geometry = nullptr;
    EXPECT_EQ(errorOf([&] { floor.AddRooms(room, 1); }), RuntimeError::ObjectVariableNotSet);
    EXPECT_EQ(floor.GetCountOfRooms(), 0);
    // Nor did it take an ID.
    clsRoom whole = named(L"A 1");
    floor.AddRooms(whole, 1);
    EXPECT_EQ(idsOf(floor), IDs{2});
}

TEST(clsFloor, AddingAStoredRoomToItsOwnStoreyCopiesIt) {
    clsFloor floor;
    clsRoom room = named(L"A 1");
    floor.AddRooms(room, 1);
    std::shared_ptr<clsRoom> stored;
    floor.GetRoomByID(2, stored);
    floor.AddRooms(*stored, 2);
    EXPECT_EQ(namesOf(floor), (Names{L"A3", L"A 1", L"A2"}));
    EXPECT_EQ(idsOf(floor), (IDs{2, 3, 4}));
}

} // namespace kalvrooms
