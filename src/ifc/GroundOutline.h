#pragma once
// The ground outline of a room from the parts that it is made of.

#include <optional>
#include <vector>

#include "host/HostApplication.h"
#include "ifc/JoinOutlines.h"
#include "ifc/Shapes.h"

namespace kalvrooms::ifc {

struct Ground {
    // Counter-clockwise, without a repeated last point; the largest one of several.
    kalvrooms::Outline outline;
    std::size_t outlines = 1;
    // Where the parts begin and end in height.
    double bottom = 0.0;
    double top = 0.0;
};

// The flat faces at the lowest level of each part, joined. A part whose lowest faces are no ground
// (a ramp, or a pit in the floor) is taken as a whole from above. Nothing where nothing encloses an
// area.
std::optional<Ground> GroundOutline(const std::vector<Part>& parts, const Spending& spend);

} // namespace kalvrooms::ifc
