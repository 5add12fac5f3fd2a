#pragma once
// Where things stand: axes, placements that stand on placements, and the operators of mapped items.

#include "ifc/Geometry.h"

namespace kalvrooms::ifc {

// IfcAxis2Placement2D and 3D; without a value nothing is moved.
Transform ReadAxes(const Geometry& geometry, const Value& placement);

// A chain of IfcLocalPlacement as seen from the model. A placement that stands on itself is
// refused.
Transform ReadPlacement(const Geometry& geometry, const Value& placement);

// IfcCartesianTransformationOperator2D and 3D, also with a scale of its own for each axis.
Transform ReadOperator(const Geometry& geometry, const Instance& transformation);

} // namespace kalvrooms::ifc
