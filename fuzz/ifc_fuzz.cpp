// Any bytes as a model: reading ends, and without a change the file is written as it was. The first
// byte says whether they are a whole file or the instances of one.

#include <cstdint>
#include <string>

#include "Input.h"
#include "ifc/Building.h"
#include "ifc/RoomWriter.h"

namespace {

std::string fileOf(const std::string& instances) {
    return "ISO-10303-21;\nHEADER;\nFILE_SCHEMA(('IFC4'));\nENDSEC;\nDATA;\n" + instances +
           "\nENDSEC;\nEND-ISO-10303-21;\n";
}

// All of a room changed at once.
kalvrooms::ifc::RoomChange change() {
    kalvrooms::ifc::RoomChange change;
    change.name = change.function = change.enclosure = L"neu";
    change.occupancy = change.areaType = L"";
    change.storey = L"DG";
    change.outline = kalvrooms::Outline{{0, 0}, {1, 0}, {1, 1}};
    return change;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace kalvrooms;
    using namespace kalvrooms::ifc;
    if (size == 0)
        return 0;
    const std::string text(reinterpret_cast<const char*>(bytes) + 1, size - 1);
    try {
        const StepFile file(bytes[0] % 2 == 0 ? fileOf(text) : text);
        const Building building(file);
        fuzz::Hold(RoomWriter(building).Text() == file.Text());
        RoomWriter writer(building);
        for (const Room& room : building.Rooms()) {
            fuzz::Hold(room.componentId >= 0 && (room.outline.empty() || room.outline.size() >= 3));
            writer.Change(room, change());
        }
        const StepFile again(writer.Text());
        fuzz::Hold(Building(again).Rooms().size() == building.Rooms().size());
    } catch (const std::runtime_error&) {
        // Refused, with line and instance.
    }
    return 0;
}
