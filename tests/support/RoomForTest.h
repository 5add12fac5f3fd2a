#pragma once
// Rooms of tests, and what a list says.

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "model/NumberText.h"
#include "model/clsFloors.h"

namespace kalvrooms {

// A room of the test, ready for adding.
struct RoomForTest {
    std::wstring Name = L"Büro";
    std::wstring Function = L"Arbeiten";
    double Area = 20.0;
    std::wstring Story = L"EG";
    std::wstring Enclosure = L"a";
    std::wstring Occupancy = L"HNF 2";
    std::wstring AreaType = L"N";
    std::wstring Type = CalculationByRatio;
    std::wstring Value = L"1";
    std::wstring RoomID = {};

    void AddTo(clsFloors& floors) const {
        clsRoom room;
        room.Name(Name);
        room.FunctionName(Function);
        room.Geometry->Area(Area);
        room.StoryCode(Story);
        room.Enclosure(Enclosure);
        room.Occupancy(Occupancy);
        room.AreaType(AreaType);
        room.Geometry->SetTypeAndValue(Type, Value);
        room.SetRoomID(RoomID);
        floors.AddRooms(room, 1);
    }
};

inline clsRoom roomAt(const clsFloors& floors, std::int32_t index) {
    clsRoom room;
    room.ID(0);
    floors.GetRoomByIndex(index, room);
    EXPECT_NE(room.ID(), 0) << "no room " << index;
    return room;
}

// All that a list says, room by room, for comparing lists.
inline std::vector<std::wstring> contentsOf(const clsFloors& floors) {
    std::vector<std::wstring> contents;
    const std::int32_t count = floors.GetCountOfRooms();
    for (std::int32_t index = 1; index <= count; ++index) {
        const clsRoom room = roomAt(floors, index);
        contents.push_back(room.Name() + L"|" + room.FunctionName() + L"|" +
                           FromDoubleInvariant(room.Geometry->Area()) + L"|" + room.StoryCode() +
                           L"|" + room.Enclosure() + L"|" + room.Occupancy() + L"|" +
                           room.AreaType() + L"|" + room.Geometry->CalculationType() + L"|" +
                           room.Geometry->CalculationValue() + L"|" + room.GetRoomID() + L"|" +
                           FromLong(room.ID()));
    }
    return contents;
}

} // namespace kalvrooms
