#pragma once
// Writes rooms into a model: what is to change in those it has, new ones, and the storeys that they
// need. What stays is not touched.

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "ifc/Building.h"
#include "ifc/InstanceWriter.h"

namespace kalvrooms::ifc {

// What is to be different; the rest stays. Outlines in metres in the model's own plane.
struct RoomChange {
    std::optional<std::wstring> name;
    std::optional<std::wstring> function;
    std::optional<std::wstring> storey;
    std::optional<std::wstring> enclosure;
    std::optional<std::wstring> occupancy;
    std::optional<std::wstring> areaType;
    std::optional<kalvrooms::Outline> outline;
};

class RoomWriter {
  public:
    explicit RoomWriter(const Building& building);

    void Change(const Room& room, const RoomChange& change);
    // A room that the model does not have yet.
    void Add(const std::string& globalId, const RoomChange& room);
    // The file with all of it. Nothing can be changed or added any more.
    std::string Text();

  private:
    // A storey, one of the model's or a new one.
    struct Floor {
        InstanceId instance = 0;
        std::string placement; // #12 or $
        Transform place;
        double elevation = 0.0;
        double height = 0.0;
    };

    const Floor& floorNamed(const std::wstring& name, const Room* room);
    Floor floorOf(const Storey& storey) const;
    Floor newFloor(const std::wstring& name);
    double heightOf(const Storey& storey) const;

    void move(const Room& room, const Floor& floor);
    void movePlacement(const Room& room, const Floor& floor);
    void replaceOutline(const Room& room, const kalvrooms::Outline& outline);
    void replaceAreas(const Room& room, double squareMetres);
    void changeTexts(const Room& room, const RoomChange& change);
    // Whether a member of a set can be changed without changing other rooms.
    bool isRoomsOwn(const Attached& set, InstanceId member) const;
    InstanceId ownPropertySet(const Room& room) const;
    void setText(const Instance& property, const std::wstring& text);

    void moveMembers();
    bool followMembers();
    std::vector<InstanceId> staying(const Instance& relation) const;
    InstanceId relationOf(InstanceId whole) const;

    const Building& building_;
    const StepFile& file_;
    Geometry geometry_;
    StepChanges changes_;
    InstanceWriter instances_;
    std::map<std::wstring, Floor> newFloors_;
    std::map<InstanceId, Floor> floors_;
    // By relation: the members that leave it.
    std::map<InstanceId, std::set<InstanceId>> leaving_;
    // By what they become parts of.
    std::map<InstanceId, std::vector<InstanceId>> joining_;
};

} // namespace kalvrooms::ifc
