// Any bytes as a room list: reading ends, and what was read is written so that it reads back the
// same.

#include <algorithm>
#include <set>
#include <sstream>
#include <string>

#include "Input.h"
#include "files/clsFileSytem.h"
#include "model/RuntimeError.h"
#include "support/FileLayer.h"

namespace {

// The list without its sides: of those, one is computed anew from the other, and its last digit may
// wander. Nor the blanks around its fields: a line break at the end of a text is written as one,
// and reading trims it; a storey that was nothing else is then the one of rooms without a storey.
std::string withoutSides(const std::string& list) {
    std::string rest;
    int field = 0;
    bool inside = false; // of a field's text
    for (const char c : list) {
        const bool end = c == '\n' || c == '\t';
        if (end) {
            rest.erase(rest.find_last_not_of(" \r") + 1);
            if (field == 3 && rest.ends_with('\t'))
                rest += "unbelegt";
            field = c == '\n' ? 0 : field + 1;
        }
        inside = !end && (inside || c != ' ');
        if ((end || inside) && field != 8 && field != 9)
            rest += c;
    }
    return rest;
}

std::multiset<std::string> sortedLines(const std::string& text) {
    std::istringstream stream(text);
    std::multiset<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.insert(line);
    return lines;
}

// A room whose sides cannot be computed, as one of -9 m², ends the writing of the list.
bool hasSides(const kalvrooms::clsFloors& floors) {
    kalvrooms::clsRoom room;
    try {
        for (std::int32_t i = 1; i <= floors.GetCountOfRooms(); ++i) {
            floors.GetRoomByIndex(i, room);
            room.Geometry->dx();
            room.Geometry->dy();
        }
    } catch (const kalvrooms::RuntimeError&) {
        return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace kalvrooms;
    static FileLayer layer;
    static const fuzz::File input("room-list");
    static const fuzz::File written("room-list-written");
    if (!fuzz::TakeLocale(bytes, size))
        return 0;
    input.Write(bytes, size);

    clsFloors read;
    clsFileSytem(layer.services).ReadListFromFile(input.Name(), read);
    // A list without rooms leaves the file as it is.
    if (read.GetCountOfRooms() == 0 || !hasSides(read))
        return 0;
    clsFileSytem(layer.services).WriteListToFile(written.Name(), read);
    const std::string once = withoutSides(written.Read());

    clsFloors again;
    clsFileSytem(layer.services).ReadListFromFile(written.Name(), again);
    fuzz::Hold(again.GetCountOfRooms() == read.GetCountOfRooms());
    clsFileSytem(layer.services).WriteListToFile(written.Name(), again);
    const std::string twice = withoutSides(written.Read());
    // Storeys that only a line break told apart have become one, and their rooms stand together.
    const bool joined = again.GetCountOfFloors() < read.GetCountOfFloors() &&
                        std::find(bytes, bytes + size, '\r') != bytes + size;
    fuzz::Hold(joined || again.GetCountOfFloors() == read.GetCountOfFloors());
    fuzz::Hold(joined ? sortedLines(twice) == sortedLines(once) : twice == once);
    return 0;
}
