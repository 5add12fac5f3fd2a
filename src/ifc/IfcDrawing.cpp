#include "ifc/IfcDrawing.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <unordered_map>

#include "ifc/GlobalId.h"
#include "ifc/Names.h"
#include "ifc/RoomWriter.h"
#include "model/Utf8.h"
#include "model/clsFloors.h"

namespace kalvrooms::ifc {
namespace {

constexpr const wchar_t* areaName = L"Bodenfläche";
constexpr const wchar_t* enclosureName = L"Umschließungsart";
constexpr const wchar_t* occupancyName = L"Nutzen";
// The name that writing looks for; the catalogue gives it to whoever reads, so that it stays.
constexpr const wchar_t* areaTypeName = L"Flächenart_DIN277";

// What a point moves by on its way through a list.
constexpr double samePlace = 1e-4;

[[noreturn]] void refuse(const std::exception& error) {
    const auto* step = dynamic_cast<const StepError*>(&error);
    throw ModelError(error.what(), step ? static_cast<int>(step->Line()) : 0,
                     step ? step->Trouble() : error.what());
}

// A point file loses the sign in front of a whole part of 0.
bool isSame(double was, double is) {
    return std::abs(was - is) < samePlace ||
           (was < 0.0 && was > -1.0 && std::abs(was + is) < samePlace);
}

bool isSame(const Outline& was, const Outline& is) {
    return std::equal(
        was.begin(), was.end(), is.begin(), is.end(),
        [](const Point& a, const Point& b) { return isSame(a.x, b.x) && isSame(a.y, b.y); });
}

// Point files cannot hold the numbers that are written with an exponent: they are nothing here.
Outline shown(Outline outline) {
    for (Point& point : outline) {
        point.x = std::abs(point.x) < samePlace ? 0.0 : point.x;
        point.y = std::abs(point.y) < samePlace ? 0.0 : point.y;
    }
    return outline;
}

std::wstring textOf(const Element& element, const wchar_t* name) {
    for (const Attribute& attribute : element.attributes)
        if (attribute.name == name)
            return attribute.TextValue();
    return {};
}

// What of an element differs from what the model made of it.
RoomChange changeOf(const Element& was, const Element& is) {
    RoomChange change;
    const auto compare = [](std::optional<std::wstring>& text, const std::wstring& before,
                            const std::wstring& now) {
        if (!IsSameInList(before, now))
            text = now;
    };
    compare(change.name, was.name, is.name);
    compare(change.function, was.function, is.function);
    compare(change.storey, was.storey, is.storey);
    compare(change.enclosure, textOf(was, enclosureName), textOf(is, enclosureName));
    compare(change.occupancy, textOf(was, occupancyName), textOf(is, occupancyName));
    compare(change.areaType, textOf(was, areaTypeName), textOf(is, areaTypeName));
    // Fewer points, or none between them, enclose no room.
    if (!isSame(was.outline, is.outline) && Area(is.outline) > 0.0)
        change.outline = is.outline;
    return change;
}

// The identity of a room that the model does not have yet.
HostIdentity newIdentity(const Drawing& drawing) {
    while (true) {
        const std::string id = NewGlobalId();
        const std::int32_t component = ComponentIds({id}).front();
        const bool taken = std::any_of(
            drawing.elements.begin(), drawing.elements.end(),
            [&](const Element& element) { return element.identity.ComponentID == component; });
        if (!taken)
            return {component, 1, std::wstring(id.begin(), id.end())};
    }
}

bool isGlobalId(const std::wstring& text) {
    return text.size() == 22 && std::all_of(
                                    text.begin(), text.end(),
                                    [](wchar_t c) {
                                        return (c >= L'0' && c <= L'9') ||
                                               (c >= L'A' && c <= L'Z') ||
                                               (c >= L'a' && c <= L'z') || c == L'_' || c == L'$';
                                    });
}

} // namespace

ModelError::ModelError(const std::string& whole, int line, std::string trouble)
    : HostError(FromUtf8(whole)), line_(line), trouble_(std::move(trouble)) {}

bool IsModel(std::string_view begin) {
    if (begin.starts_with("\xEF\xBB\xBF"))
        begin.remove_prefix(3);
    begin.remove_prefix(std::min(begin.find_first_not_of(" \t\r\n"), begin.size()));
    return begin.starts_with("ISO-10303-21") || begin.starts_with("/*");
}

IfcDrawing::IfcDrawing(const std::filesystem::path& path) : path_(path) {
    try {
        file_ = StepFile::Load(path);
        building_ = std::make_unique<const Building>(*file_);
    } catch (const std::exception& error) {
        refuse(error);
    }
}

IfcDrawing::IfcDrawing(ModelBytes text) {
    try {
        file_ = std::make_unique<const StepFile>(std::move(text.bytes));
        building_ = std::make_unique<const Building>(*file_);
    } catch (const std::exception& error) {
        refuse(error);
    }
}

Element IfcDrawing::elementOf(const Room& room) const {
    Element element;
    element.identity = {room.componentId, 1, room.globalId};
    element.name = InOneLine(room.name);
    element.function = InOneLine(room.function);
    element.storey = InOneLine(room.storeyName);
    element.outline = shown(room.outline);
    element.attributes = {{areaName, room.squareMetres},
                          {enclosureName, InOneLine(room.properties.enclosure.text)},
                          {occupancyName, InOneLine(room.properties.occupancy.text)},
                          {areaTypeName, InOneLine(room.properties.areaType.text)}};
    return element;
}

Drawing IfcDrawing::Read() const {
    Drawing drawing;
    for (const InstanceId id : file_->OfType("IFCPROJECT")) {
        const Instance project = file_->Get(id);
        for (const std::size_t name : {2, 5})
            if (project[name].IsText() && !project[name].RawText().empty())
                drawing.project.name = InOneLine(project[name].Text());
    }
    drawing.project.folder = path_.parent_path().wstring();
    drawing.attributeNames[AreaTypeNumber] = areaTypeName;
    auto areas = std::make_shared<std::unordered_map<std::wstring, const Room*>>();
    for (const Room& room : building_->Rooms()) {
        drawing.elements.push_back(elementOf(room));
        areas->emplace(room.globalId, &room);
    }
    drawing.newIdentity = newIdentity;
    // The model's area stands as long as its outline does.
    drawing.floorArea = [areas](const Element& element) {
        const auto room = areas->find(element.identity.FileID);
        return room != areas->end() && isSame(room->second->outline, element.outline)
                   ? room->second->squareMetres
                   : Area(element.outline);
    };
    return drawing;
}

std::string IfcDrawing::Write(const Drawing& drawing) const {
    try {
        std::unordered_map<std::wstring, const Room*> rooms;
        const auto key = [](const HostIdentity& identity) {
            return std::to_wstring(identity.ComponentID) + L"-" + identity.FileID;
        };
        for (const Room& room : building_->Rooms())
            rooms.emplace(key({room.componentId, 1, room.globalId}), &room);
        RoomWriter writer(*building_);
        for (const Element& element : drawing.elements) {
            const auto room = rooms.find(key(element.identity));
            if (room != rooms.end()) {
                RoomChange change = changeOf(elementOf(*room->second), element);
                // A list has that word for a room that stands in no storey.
                if (room->second->storeyName.empty() && change.storey == clsFloors::UnassignedStory)
                    change.storey.reset();
                writer.Change(*room->second, change);
                continue;
            }
            const std::wstring& id = element.identity.FileID;
            writer.Add(isGlobalId(id) ? std::string(id.begin(), id.end()) : NewGlobalId(),
                       changeOf({}, element));
        }
        return writer.Text();
    } catch (const HostError&) {
        throw;
    } catch (const std::exception& error) {
        refuse(error);
    }
}

} // namespace kalvrooms::ifc
