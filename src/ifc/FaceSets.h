#pragma once
// Shapes that are given by their faces: boundary representations, surface models and tessellations.
// A face is its outer bound.

#include <optional>
#include <vector>

#include "ifc/Geometry.h"

namespace kalvrooms::ifc {

// Nothing for a kind of shape that is not known here.
std::optional<std::vector<Polygon>> ReadFaces(Geometry& geometry, const Instance& shape);

} // namespace kalvrooms::ifc
