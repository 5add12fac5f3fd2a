#pragma once
// Swept solids and the primitives of CSG as faces.

#include <optional>
#include <vector>

#include "ifc/Geometry.h"

namespace kalvrooms::ifc {

// Nothing for a kind of solid that is not known here.
std::optional<std::vector<Polygon>> ReadSolid(Geometry& geometry, const Instance& solid);

} // namespace kalvrooms::ifc
