#pragma once
// Profiles of swept solids: their outer outlines in the plane of the profile, without a repeated
// last point. Voids are left out.

#include <vector>

#include "ifc/Geometry.h"

namespace kalvrooms::ifc {

// Several for a composite profile.
std::vector<Polygon> ReadProfile(Geometry& geometry, const Instance& profile);

} // namespace kalvrooms::ifc
