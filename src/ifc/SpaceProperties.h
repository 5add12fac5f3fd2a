#pragma once
// What property sets, quantities and classes say about a space.

#include <string>
#include <vector>

#include "ifc/Relations.h"
#include "ifc/Units.h"

namespace kalvrooms::ifc {

// The name of our own sets. What stands there goes before everything else.
inline constexpr const char* OwnPropertySet = "Quartino";

// Where an area is from, the best first.
enum class AreaFrom { Net, Gross, Any, Outline, Nothing };

struct SpaceArea {
    double squareMetres = 0.0;
    AreaFrom from = AreaFrom::Nothing;
    // The quantity or the property, and what it belongs to.
    InstanceId instance = 0;
    Attached set;
    // Square metres to one unit of the instance.
    double unit = 1.0;
    // Less is better: quantities go before properties, planned areas stand behind.
    int rank = 0;
};

struct SpaceText {
    std::wstring text;
    // 0 where it is no property's.
    InstanceId property = 0;
    Attached set;
    // In our own property set.
    bool own = false;
};

struct SpaceProperties {
    // The best first; areas of walls and ceilings are none of the space.
    std::vector<SpaceArea> areas;
    SpaceText enclosure;
    SpaceText occupancy;
    SpaceText areaType;
};

// Properties that cannot be read are passed over and named in `troubles`.
SpaceProperties ReadSpaceProperties(const StepFile& file, const Units& units,
                                    const Relations& relations, InstanceId space,
                                    std::vector<std::string>& troubles);

} // namespace kalvrooms::ifc
