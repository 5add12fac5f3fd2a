#pragma once
// Faces seen from above, joined.

#include <vector>

#include "host/HostApplication.h"

namespace kalvrooms::ifc {

// The outlines around everything that the polygons cover and the lines enclose, counter-clockwise,
// largest first. Holes are left out, and so is what lies within another outline. Points that stand
// there twice and points in the middle of a straight line are gone. What is nearer than 0.2 mm is
// one.
std::vector<Outline> JoinOutlines(const std::vector<Outline>& polygons,
                                  const std::vector<Outline>& lines);

// Counter-clockwise is positive.
double SignedArea(const Outline& outline);

} // namespace kalvrooms::ifc
