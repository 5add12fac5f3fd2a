#pragma once
// A representation of a space, as parts made of faces and lines.

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
// is taken, half spaces, texts and single points are passed over. Raises a StepError.
std::vector<Part> ReadShape(Geometry& geometry, const Instance& representation,
                            const Transform& place);

} // namespace kalvrooms::ifc
