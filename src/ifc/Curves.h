#pragma once
// Curves as chains of points, arcs within 5 mm. A closed curve ends with its first point.

#include "ifc/Geometry.h"

namespace kalvrooms::ifc {

// Of an instance that begins with a list of its points.
Polygon Polyline(Geometry& geometry, const Instance& instance);

// Raises a StepError for a kind of curve that is not known.
Polygon ReadCurve(Geometry& geometry, const Instance& curve);

// The piece of a curve between two points on it, as the edge of a face has it.
Polygon ReadCurveBetween(Geometry& geometry, const Instance& curve, const Vector& from,
                         const Vector& to, bool sameSense);

// An arc of an ellipse about the origin, with its first and its last point.
Polygon Arc(const Geometry& geometry, double radiusX, double radiusY, double from, double to);

} // namespace kalvrooms::ifc
