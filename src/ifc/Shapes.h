#pragma once
// A representation of a space, as parts made of faces and lines.

#include <string>
#include <vector>

#include "ifc/Geometry.h"

namespace kalvrooms::ifc {

// What one item of a representation is made of.
struct Part {
    std::vector<Polygon> faces;
    // Curves that enclose nothing by themselves.
    std::vector<Polygon> lines;
};

// The parts as `place` puts them. Mapped items are followed, of boolean results the first operand
// is taken (of a union both: the room is all of it), half spaces, texts and single points are
// passed over. Items that cannot be read stand in `troubles`; raises a StepError where the
// representation cannot.
std::vector<Part> ReadShape(Geometry& geometry, const Instance& representation,
                            const Transform& place, std::vector<std::string>& troubles);

} // namespace kalvrooms::ifc
