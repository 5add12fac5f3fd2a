#pragma once
// B-splines and Bézier curves, with and without weights, sampled in equal steps of their parameter.

#include <optional>
#include <utility>

#include "ifc/Geometry.h"

namespace kalvrooms::ifc {

Polygon SplineCurve(Geometry& geometry, const Instance& curve);

// Where the parameter begins and ends; nothing for another kind of curve.
std::optional<std::pair<double, double>> SplineRange(const Instance& curve);

} // namespace kalvrooms::ifc
