#pragma once
// Faces seen from above, joined.

#include <functional>
#include <vector>

#include "host/HostApplication.h"

namespace kalvrooms::ifc {

// Told what looking for crossings costs; raises an error where that is too much.
using Spending = std::function<void(std::size_t steps)>;

// The outlines around everything that the polygons cover and the lines enclose, counter-clockwise,
// largest first. Holes are left out, and so is what lies within another outline. Points that stand
// there twice and points in the middle of a straight line are gone. What is nearer than 0.2 mm is
// one.
std::vector<Outline> JoinOutlines(const std::vector<Outline>& polygons,
                                  const std::vector<Outline>& lines, const Spending& spend = {});

// Counter-clockwise is positive.
double SignedArea(const Outline& outline);

} // namespace kalvrooms::ifc
