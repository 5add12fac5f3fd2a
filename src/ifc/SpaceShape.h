#pragma once
// The shape of a space: the representation that says most about its ground.

#include <optional>
#include <string>
#include <vector>

#include "ifc/GroundOutline.h"

namespace kalvrooms::ifc {

// Nothing for a space without a shape that can be used; `troubles` says why.
std::optional<Ground> ReadSpaceShape(Geometry& geometry, const Instance& space,
                                     std::vector<std::string>& troubles);

// The body alone, for its height: a footprint has none.
std::optional<Ground> ReadSpaceBody(Geometry& geometry, const Instance& space);

} // namespace kalvrooms::ifc
