#include "ifc/Building.h"

#include <algorithm>
#include <unordered_map>

#include "ifc/GlobalId.h"
#include "ifc/JoinOutlines.h"
#include "ifc/Placements.h"
#include "ifc/SpaceShape.h"

namespace kalvrooms::ifc {
namespace {

Schema schemaOf(const StepFile& file) {
    std::string name(file.Schema());
    for (char& c : name)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    if (!name.starts_with("IFC"))
        throw StepError("the file is no IFC model", 1);
    if (name.starts_with("IFC2"))
        return Schema::Ifc2x3;
    return name.starts_with("IFC4X3") ? Schema::Ifc4x3 : Schema::Ifc4;
}

std::wstring textOf(const Value& value) {
    return value.IsText() ? value.Text() : std::wstring();
}

} // namespace

Building::Building(const StepFile& file)
    : file_(file), schema_(schemaOf(file)), units_(ReadUnits(file)),
      relations_(file, file.OfType("IFCSPACE")), troubles_(relations_.Troubles()) {
    readStoreys();
    readRooms(file.OfType("IFCSPACE"));
}

void Building::readStoreys() {
    const Geometry geometry(file_, units_);
    for (const InstanceId id : file_.OfType("IFCBUILDINGSTOREY")) {
        try {
            const Instance instance = file_.Get(id);
            Storey storey{id, textOf(instance[2]), 0.0};
            if (storey.name.empty())
                storey.name = textOf(instance[7]);
            storey.elevation = instance[9].IsNull() ? ReadPlacement(geometry, instance[5]).origin.z
                                                    : geometry.Length(instance[9]);
            storeys_.push_back(std::move(storey));
        } catch (const StepError& error) {
            troubles_.push_back(error.what());
        }
    }
    std::stable_sort(storeys_.begin(), storeys_.end(),
                     [](const Storey& a, const Storey& b) { return a.elevation < b.elevation; });
}

void Building::readRooms(const std::vector<InstanceId>& spaces) {
    Geometry geometry(file_, units_);
    std::vector<std::string> globalIds;
    for (const InstanceId space : spaces) {
        try {
            rooms_.push_back(readRoom(geometry, space));
        } catch (const StepError& error) {
            troubles_.push_back(error.what());
        }
    }
    for (const Room& room : rooms_)
        globalIds.emplace_back(room.globalId.begin(), room.globalId.end());
    const std::vector<std::int32_t> ids = ComponentIds(globalIds);
    for (std::size_t i = 0; i < rooms_.size(); ++i)
        rooms_[i].componentId = ids[i];

    std::unordered_map<InstanceId, std::size_t> order;
    for (const Storey& storey : storeys_)
        order.emplace(storey.instance, order.size());
    const auto placeOf = [&](const Room& room) {
        const auto found = order.find(room.storey);
        return found == order.end() ? order.size() : found->second;
    };
    std::stable_sort(rooms_.begin(), rooms_.end(),
                     [&](const Room& a, const Room& b) { return placeOf(a) < placeOf(b); });
    for (Room& room : rooms_)
        if (placeOf(room) < storeys_.size())
            room.storeyName = storeys_[placeOf(room)].name;
}

Room Building::readRoom(Geometry& geometry, InstanceId space) {
    const Instance instance = file_.Get(space);
    const std::string place = "space #" + std::to_string(space) + ": ";
    Room room;
    room.instance = space;
    if (instance[0].IsText() && !instance[0].RawText().empty())
        room.globalId = instance[0].Text();
    else
        room.globalId = L"#" + std::to_wstring(space);
    room.name = textOf(instance[2]);
    room.function = textOf(instance[7]);
    room.storey = relations_.StoreyOf(space);
    if (room.storey == 0)
        troubles_.push_back(place + "it stands in no storey");

    room.properties = ReadSpaceProperties(file_, units_, relations_, space, troubles_);
    if (auto ground = ReadSpaceShape(geometry, instance, troubles_)) {
        room.outline = std::move(ground->outline);
        if (ground->outlines > 1)
            troubles_.push_back(place + "its ground has " + std::to_string(ground->outlines) +
                                " parts; the largest one is taken");
    } else {
        troubles_.push_back(place + "it has no shape that can be used");
    }
    if (!room.properties.areas.empty()) {
        room.squareMetres = room.properties.areas.front().squareMetres;
        room.areaFrom = room.properties.areas.front().from;
    } else if (!room.outline.empty()) {
        room.squareMetres = SignedArea(room.outline);
        room.areaFrom = AreaFrom::Outline;
    }
    return room;
}

} // namespace kalvrooms::ifc
