#include "ifc/RoomWriter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "ifc/GlobalId.h"
#include "ifc/JoinOutlines.h"
#include "ifc/Names.h"
#include "ifc/Placements.h"
#include "ifc/SpaceShape.h"
#include "ifc/StepText.h"
#include "model/LetterRules.h"

namespace kalvrooms::ifc {
namespace {

constexpr double usualHeight = 2.5;
constexpr double usualStorey = 3.0;

bool isSame(const Transform& a, const Transform& b) {
    const auto near = [](const Vector& u, const Vector& v) { return Length(u - v) < 1e-9; };
    return near(a.x, b.x) && near(a.y, b.y) && near(a.z, b.z) && near(a.origin, b.origin);
}

Transform raisedBy(double height) {
    Transform raised;
    raised.origin.z = height;
    return raised;
}

Outline seenFrom(const Transform& place, const Outline& outline) {
    const Transform back = place.Inverse();
    Outline seen;
    for (const Point& point : outline) {
        const Vector inside = back({point.x, point.y, place.origin.z});
        seen.push_back({inside.x, inside.y});
    }
    return seen;
}

bool isUpright(const Transform& place) {
    return place.z.z > 1.0 - 1e-9;
}

// Where a relation names its members and the whole.
struct Places {
    std::size_t members;
    std::size_t whole;
};
Places placesIn(const Instance& relation) {
    return relation.Is("IFCRELAGGREGATES") ? Places{5, 4} : Places{4, 5};
}

} // namespace

RoomWriter::RoomWriter(const Building& building)
    : building_(building), file_(building.File()), geometry_(file_, building.Units()),
      changes_(file_), instances_(building, changes_) {}

void RoomWriter::Change(const Room& room, const RoomChange& change) {
    if (change.name)
        changes_.Set(room.instance, 2, InstanceWriter::Text(*change.name));
    if (change.function)
        changes_.Set(room.instance, 7, InstanceWriter::Text(*change.function));
    changeTexts(room, change);
    if (change.outline)
        replaceOutline(room, *change.outline);
    if (change.storey)
        move(room, floorNamed(*change.storey, &room));
}

void RoomWriter::Add(const std::string& globalId, const RoomChange& room) {
    const Floor& floor = floorNamed(room.storey.value_or(L""), nullptr);
    const Outline outline = seenFrom(floor.place, room.outline.value_or(Outline()));
    const InstanceId placement = instances_.Placement(floor.placement, {});
    std::string shape = "$";
    if (!outline.empty())
        shape = Reference(
            instances_.ProductShape(instances_.Representations(outline, {}, floor.height)));
    const InstanceId space = instances_.Root(
        "IFCSPACE", globalId,
        InstanceWriter::Text(room.name.value_or(L"")) + ",$,$," + Reference(placement) + "," +
            shape + "," + InstanceWriter::Text(room.function.value_or(L"")) +
            ",.ELEMENT.,.INTERNAL.,$");
    if (!outline.empty())
        instances_.Quantities(space, std::abs(SignedArea(outline)), floor.height, false);
    Room added;
    added.instance = space;
    changeTexts(added, room);
    joining_[floor.instance].push_back(space);
}

// ------------------------------------------------------------------------------------- storeys

const RoomWriter::Floor& RoomWriter::floorNamed(const std::wstring& name, const Room* room) {
    const Storey* found = nullptr;
    const auto buildingOf = [&](InstanceId storey) {
        return building_.Relations().ParentOf(storey).whole;
    };
    int best = -1;
    for (const Storey& storey : building_.Storeys()) {
        // Neither letter case nor what a list cannot hold makes a storey of its own, but both tell
        // two that the model has. Two buildings may both have a ground floor.
        const int likeness = storey.name == name                                       ? 3
                             : FoldedCase(storey.name) == FoldedCase(name)             ? 2
                             : IsSameInList(FoldedCase(storey.name), FoldedCase(name)) ? 1
                                                                                       : 0;
        const int rank = 2 * likeness +
                         (room && buildingOf(storey.instance) == buildingOf(room->storey) ? 1 : 0);
        if (likeness > 0 && rank > best) {
            found = &storey;
            best = rank;
        }
    }
    if (found) {
        const auto [place, isNew] = floors_.try_emplace(found->instance);
        if (isNew)
            place->second = floorOf(*found);
        return place->second;
    }
    const auto [place, isNew] = newFloors_.try_emplace(FoldedCase(name));
    if (isNew)
        place->second = newFloor(name);
    return place->second;
}

RoomWriter::Floor RoomWriter::floorOf(const Storey& storey) const {
    const Instance instance = file_.Get(storey.instance);
    Floor floor;
    floor.instance = storey.instance;
    floor.placement = changes_.Argument(storey.instance, 5);
    floor.place = ReadPlacement(geometry_, instance[5]);
    floor.elevation = storey.elevation;
    floor.height = heightOf(storey);
    return floor;
}

// Up to the next storey of the building that is high enough to be one.
double RoomWriter::heightOf(const Storey& storey) const {
    const auto buildingOf = [&](const Storey& part) {
        return building_.Relations().ParentOf(part.instance).whole;
    };
    for (const Storey& other : building_.Storeys()) {
        const double height = other.elevation - storey.elevation;
        if (height >= 1.5 && height <= 20.0 && buildingOf(other) == buildingOf(storey))
            return height;
    }
    return usualHeight;
}

// A cellar goes below all others, everything else above them.
RoomWriter::Floor RoomWriter::newFloor(const std::wstring& name) {
    const bool cellar = name.starts_with(L"U") || name.starts_with(L"K") || name.starts_with(L"-");
    Floor floor;
    floor.height = usualHeight;
    for (const Storey& storey : building_.Storeys()) {
        const double next =
            cellar ? storey.elevation - usualStorey : storey.elevation + usualStorey;
        floor.elevation = &storey == &building_.Storeys().front() ? next
                          : cellar                                ? std::min(floor.elevation, next)
                                                                  : std::max(floor.elevation, next);
    }
    for (const auto& [other, made] : newFloors_) {
        if (made.instance != 0)
            floor.elevation = cellar ? std::min(floor.elevation, made.elevation - usualStorey)
                                     : std::max(floor.elevation, made.elevation + usualStorey);
    }

    InstanceId whole =
        building_.Storeys().empty()
            ? 0
            : building_.Relations().ParentOf(building_.Storeys().front().instance).whole;
    for (const char* keyword : {"IFCBUILDING", "IFCSITE", "IFCPROJECT"}) {
        const std::vector<InstanceId> ids = file_.OfType(keyword);
        if (whole == 0 && !ids.empty())
            whole = ids.front();
    }
    if (whole == 0)
        throw std::runtime_error("the model has nothing that a storey could be a part of");
    std::string relativeTo = "$";
    const Instance instance = file_.Get(whole);
    if (!instance.Is("IFCPROJECT")) {
        relativeTo = changes_.Argument(whole, 5);
        floor.place = ReadPlacement(geometry_, instance[5]);
    }
    floor.place = floor.place * raisedBy(floor.elevation);
    floor.placement = Reference(instances_.Placement(relativeTo, raisedBy(floor.elevation)));
    floor.instance = instances_.Root("IFCBUILDINGSTOREY", InstanceWriter::Text(name) + ",$,$," +
                                                              floor.placement + ",$,$,.ELEMENT.," +
                                                              instances_.Length(floor.elevation));
    joining_[whole].push_back(floor.instance);
    return floor;
}

void RoomWriter::move(const Room& room, const Floor& floor) {
    if (floor.instance == room.storey)
        return;
    const Parent parent = building_.Relations().ParentOf(room.instance);
    if (parent.relation != 0)
        leaving_[parent.relation].insert(room.instance);
    joining_[floor.instance].push_back(room.instance);
    movePlacement(room, floor);
}

// The room stays where it is seen from above, and as high above its storey as it was.
void RoomWriter::movePlacement(const Room& room, const Floor& floor) {
    const Instance space = file_.Get(room.instance);
    if (!space[5].IsReference())
        return;
    double before = floor.elevation;
    for (const Storey& storey : building_.Storeys())
        if (storey.instance == room.storey)
            before = storey.elevation;
    const Instance placement = space.Follow(5);
    const Transform place = raisedBy(floor.elevation - before) * ReadPlacement(geometry_, space[5]);
    const Transform relative = floor.place.Inverse() * place;
    const bool same = isSame(relative, ReadAxes(geometry_, placement[1]));
    const std::string axes =
        same ? std::string(placement[1].Raw()) : Reference(instances_.Axes(relative));
    if (file_.IsUsedOnce(placement.Id())) {
        changes_.Set(placement.Id(), 0, floor.placement);
        if (!same)
            changes_.Set(placement.Id(), 1, axes);
        return;
    }
    // Others stand on it and stay.
    changes_.Set(
        room.instance, 5,
        Reference(changes_.Add("IFCLOCALPLACEMENT(" + floor.placement + "," + axes + ")")));
}

// ------------------------------------------------------------------------------------- outlines

void RoomWriter::replaceOutline(const Room& room, const Outline& outline) {
    const Instance space = file_.Get(room.instance);
    const Transform place = ReadPlacement(geometry_, space[5]);
    double bottom = place.origin.z;
    double height = usualHeight;
    for (const Storey& storey : building_.Storeys())
        if (storey.instance == room.storey)
            height = heightOf(storey);
    const auto body = ReadSpaceBody(geometry_, space);
    if (body && body->top - body->bottom > 0.1) {
        bottom = body->bottom;
        height = body->top - body->bottom;
    }

    // In a room that leans, the outline stands in the plane of the model.
    const bool upright = isUpright(place);
    const Transform plane =
        upright ? raisedBy(bottom - place.origin.z) : place.Inverse() * raisedBy(bottom);
    const std::vector<InstanceId> representations =
        instances_.Representations(upright ? seenFrom(place, outline) : outline, plane, height);
    const Value shape = space[6];
    if (shape.IsReference() && file_.IsUsedOnce(shape.Reference()))
        changes_.Set(shape.Reference(), 2, InstanceWriter::List(representations));
    else
        changes_.Set(room.instance, 6, Reference(instances_.ProductShape(representations)));
    replaceAreas(room, std::abs(SignedArea(outline)));
}

void RoomWriter::replaceAreas(const Room& room, double squareMetres) {
    bool written = false;
    for (const SpaceArea& area : room.properties.areas) {
        const bool first = &area == &room.properties.areas.front();
        if ((!first && area.from == AreaFrom::Any) || !isRoomsOwn(area.set, area.instance))
            continue;
        const Instance instance = file_.Get(area.instance);
        const std::string number = InstanceWriter::Area(squareMetres, area.unit);
        if (instance.Is("IFCQUANTITYAREA"))
            changes_.Set(area.instance, 3, number);
        else
            changes_.Set(area.instance, 2, std::string(instance[2].Type()) + "(" + number + ")");
        written = written || first;
    }
    if (!written)
        instances_.Quantities(room.instance, squareMetres, 0.0, !room.properties.areas.empty());
}

// ------------------------------------------------------------------------------------- texts

bool RoomWriter::isRoomsOwn(const Attached& set, InstanceId member) const {
    return set.definition != 0 && !set.ofType && file_.IsUsedOnce(member) &&
           std::all_of(
               set.within.begin(), set.within.end(),
               [&](InstanceId complex) { return file_.IsUsedOnce(complex); }) &&
           file_.IsUsedOnce(set.definition) && file_.Get(set.relation)[4].Count() == 1;
}

InstanceId RoomWriter::ownPropertySet(const Room& room) const {
    for (const Attached& attached : building_.Relations().DefinitionsOf(room.instance)) {
        const Instance set = file_.Get(attached.definition);
        if (set.Is("IFCPROPERTYSET") && set[2].IsText() && set[2].RawText() == OwnPropertySet &&
            isRoomsOwn(attached, attached.definition))
            return attached.definition;
    }
    return 0;
}

void RoomWriter::changeTexts(const Room& room, const RoomChange& change) {
    const SpaceProperties& had = room.properties;
    const std::tuple<const wchar_t*, const SpaceText&, const std::optional<std::wstring>&> texts[] =
        {{L"Umschließungsart", had.enclosure, change.enclosure},
         {L"Nutzen", had.occupancy, change.occupancy},
         {L"Flächenart_DIN277", had.areaType, change.areaType}};
    std::vector<InstanceId> added;
    for (const auto& [name, text, wanted] : texts) {
        if (!wanted || *wanted == text.text)
            continue;
        if (text.property != 0 && isRoomsOwn(text.set, text.property))
            setText(file_.Get(text.property), *wanted);
        else
            added.push_back(instances_.Property(name, *wanted));
    }
    if (added.empty())
        return;
    const InstanceId own = ownPropertySet(room);
    if (own == 0) {
        instances_.Properties(room.instance, added);
        return;
    }
    for (const Value member : file_.Get(own)[4])
        added.push_back(member.Reference());
    changes_.Set(own, 4, InstanceWriter::List(added));
}

void RoomWriter::setText(const Instance& property, const std::wstring& text) {
    const bool single = property.Is("IFCPROPERTYSINGLEVALUE");
    std::string type = single ? std::string(property[2].Type()) : std::string();
    if (type != "IFCTEXT" && type != "IFCIDENTIFIER")
        type = "IFCLABEL";
    const std::string value = type + "(" + EncodeText(text) + ")";
    changes_.Set(property.Id(), 2, single ? value : "(" + value + ")");
    // The text need not be one of those that an enumeration knows.
    if (property.Is("IFCPROPERTYENUMERATEDVALUE"))
        changes_.Set(property.Id(), 3, "$");
}

// ------------------------------------------------------------------------------------- parts

// The relation by which something has rooms or storeys already; 0 where there is none.
InstanceId RoomWriter::relationOf(InstanceId whole) const {
    InstanceId found = 0;
    for (const InstanceId id : file_.OfType("IFCRELAGGREGATES")) {
        const Instance relation = file_.Get(id);
        if (relation[4].IsReference() && relation[4].Reference() == whole && found == 0)
            found = id;
    }
    return found;
}

std::vector<InstanceId> RoomWriter::staying(const Instance& relation) const {
    std::vector<InstanceId> members;
    for (const Value member : relation[placesIn(relation).members])
        if (!leaving_.at(relation.Id()).contains(member.Reference()))
            members.push_back(member.Reference());
    return members;
}

// A relation without members is none: it goes along with those that left it.
bool RoomWriter::followMembers() {
    for (const auto& left : leaving_) {
        const InstanceId id = left.first;
        const std::set<InstanceId>& leaving = left.second;
        const Instance relation = file_.Get(id);
        const Places places = placesIn(relation);
        const InstanceId whole = relation[places.whole].Reference();
        const bool joined = relationOf(whole) == id && joining_.contains(whole);
        if (leaving.empty() || joined || !staying(relation).empty())
            continue;
        const auto to = std::find_if(joining_.begin(), joining_.end(), [&](const auto& joining) {
            return std::find(joining.second.begin(), joining.second.end(), *leaving.begin()) !=
                   joining.second.end();
        });
        std::vector<InstanceId> members;
        std::erase_if(to->second, [&](InstanceId member) {
            if (leaving.contains(member))
                members.push_back(member);
            return leaving.contains(member);
        });
        changes_.Set(id, places.whole, Reference(to->first));
        changes_.Set(id, places.members, InstanceWriter::List(members));
        if (to->second.empty())
            joining_.erase(to);
        leaving_.erase(id);
        return true;
    }
    return false;
}

void RoomWriter::moveMembers() {
    while (followMembers()) {
    }
    for (const auto& [whole, ignored] : joining_)
        if (const InstanceId relation = relationOf(whole))
            leaving_.try_emplace(relation);
    for (const auto& [id, leaving] : leaving_) {
        const Instance relation = file_.Get(id);
        const Places places = placesIn(relation);
        const InstanceId whole = relation[places.whole].Reference();
        std::vector<InstanceId> members = staying(relation);
        const auto joining = relationOf(whole) == id ? joining_.find(whole) : joining_.end();
        if (joining != joining_.end()) {
            members.insert(members.end(), joining->second.begin(), joining->second.end());
            joining_.erase(joining);
        }
        changes_.Set(id, places.members, InstanceWriter::List(members));
    }
    for (const auto& [whole, ids] : joining_)
        instances_.Root("IFCRELAGGREGATES",
                        "$,$," + Reference(whole) + "," + InstanceWriter::List(ids));
    joining_.clear();
}

std::string RoomWriter::Text() {
    moveMembers();
    return changes_.Text();
}

} // namespace kalvrooms::ifc
