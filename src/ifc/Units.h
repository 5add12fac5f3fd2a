#pragma once
// The units of a model, as factors to metre, square metre and radian.

#include "ifc/StepFile.h"

namespace kalvrooms::ifc {

struct Units {
    double length = 1.0;
    double area = 1.0;
    double angle = 1.0;
};

// Those of the project. Without a unit of area, that of length squared.
Units ReadUnits(const StepFile& file);

// The factor of one unit, whatever it measures.
double UnitFactor(const Instance& unit);

} // namespace kalvrooms::ifc
