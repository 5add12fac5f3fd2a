#pragma once
// The rooms of a model and the storeys that they are in.

#include <cstdint>
#include <string>
#include <vector>

#include "host/HostApplication.h"
#include "ifc/Geometry.h"
#include "ifc/Relations.h"
#include "ifc/SpaceProperties.h"

namespace kalvrooms::ifc {

struct Storey {
    InstanceId instance = 0;
    std::wstring name;
    // Of its floor, in metres.
    double elevation = 0.0;
};

struct Room {
    InstanceId instance = 0;
    // Its letters; "#12" for a space that has none.
    std::wstring globalId;
    std::int32_t componentId = 0;
    std::wstring name;
    std::wstring function;
    // The instance of its storey; 0 for a room that stands in none.
    InstanceId storey = 0;
    std::wstring storeyName;
    // In metres, in the model's own plane, counter-clockwise; empty for a room without a shape.
    kalvrooms::Outline outline;
    double squareMetres = 0.0;
    AreaFrom areaFrom = AreaFrom::Nothing;
    SpaceProperties properties;
};

enum class Schema { Ifc2x3, Ifc4, Ifc4x3 };

class Building {
  public:
    // Raises a StepError for a file that is no IFC model or whose units cannot be known.
    explicit Building(const StepFile& file);

    const StepFile& File() const { return file_; }
    kalvrooms::ifc::Schema Schema() const { return schema_; }
    const kalvrooms::ifc::Units& Units() const { return units_; }
    const kalvrooms::ifc::Relations& Relations() const { return relations_; }

    // From the lowest to the highest.
    const std::vector<Storey>& Storeys() const { return storeys_; }
    // In the order of the storeys, within them as the file numbers them.
    const std::vector<Room>& Rooms() const { return rooms_; }
    // What was passed over, in words for a user who looks into the file.
    const std::vector<std::string>& Troubles() const { return troubles_; }

  private:
    void readStoreys();
    void readRooms(const std::vector<InstanceId>& spaces);
    Room readRoom(Geometry& geometry, InstanceId space);

    const StepFile& file_;
    kalvrooms::ifc::Schema schema_;
    kalvrooms::ifc::Units units_;
    kalvrooms::ifc::Relations relations_;
    std::vector<Storey> storeys_;
    std::vector<Room> rooms_;
    std::vector<std::string> troubles_;
};

} // namespace kalvrooms::ifc
