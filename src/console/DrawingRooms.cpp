#include "console/DrawingRooms.h"

#include <unordered_map>

#include "model/Utf8.h"

namespace kalvrooms {
namespace {

const Attribute* find(const Element& element, const std::wstring& name) {
    const Attribute* found = nullptr;
    for (const Attribute& attribute : element.attributes)
        if (attribute.name == name)
            found = &attribute; // the later one wins, as for the program
    return found;
}

const char* sourceName(ifc::AreaFrom source) {
    switch (source) {
    case ifc::AreaFrom::Net:
        return "net";
    case ifc::AreaFrom::Gross:
        return "gross";
    case ifc::AreaFrom::Any:
        return "area";
    case ifc::AreaFrom::Outline:
        return "outline";
    case ifc::AreaFrom::Nothing:
        break;
    }
    return "";
}

class Reader {
  public:
    explicit Reader(const Drawing& drawing) : drawing_(drawing) {}

    ConsoleRoom read(const Element& element) const {
        ConsoleRoom room;
        room.name = ToUtf8(element.name);
        room.function = ToUtf8(element.function);
        room.storey = ToUtf8(element.storey);
        room.componentId = element.identity.ComponentID;
        room.fileNumber = element.identity.FileNumber;
        room.fileId = ToUtf8(element.identity.FileID);
        room.outline = element.outline;
        room.enclosure = text(element, EnclosureNumber);
        room.occupancy = text(element, OccupancyNumber);
        room.areaType = text(element, AreaTypeNumber);
        const Attribute* area = find(element, name(FloorAreaNumber));
        room.area = area ? area->NumberValue() : Area(element.outline);
        room.areaFrom = area ? "attribute" : "outline";
        return room;
    }

  private:
    std::wstring name(std::int32_t number) const {
        const auto found = drawing_.attributeNames.find(number);
        if (found != drawing_.attributeNames.end())
            return found->second;
        return Drawing::DefaultAttributeNames().at(number);
    }
    std::string text(const Element& element, std::int32_t number) const {
        const Attribute* attribute = find(element, name(number));
        // Writing knows the area type under a name of its own.
        if (!attribute && number == AreaTypeNumber)
            attribute = find(element, L"Flächenart_DIN277");
        return attribute ? ToUtf8(attribute->TextValue()) : std::string();
    }

    const Drawing& drawing_;
};

} // namespace

ConsoleRooms RoomsOfDrawing(const OpenDrawing& drawing) {
    const Reader reader(drawing.drawing);
    ConsoleRooms rooms;
    for (const Element& element : drawing.drawing.elements)
        rooms.rooms.push_back(reader.read(element));
    if (!drawing.model)
        return rooms;
    // A model knows better where its areas come from.
    std::unordered_map<std::string, const char*> sources;
    for (const ifc::Room& room : drawing.model->Model().Rooms())
        sources[ToUtf8(room.globalId)] = sourceName(room.areaFrom);
    for (ConsoleRoom& room : rooms.rooms)
        if (const auto found = sources.find(room.fileId); found != sources.end())
            room.areaFrom = found->second;
    return rooms;
}

} // namespace kalvrooms
