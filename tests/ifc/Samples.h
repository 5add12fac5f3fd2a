#pragma once
// Rooms of every kind of shape and unit, with what is known of them: the tests hold them against
// our reader, the check against an independent one.

#include <string>
#include <vector>

#include "ifc/ModelText.h"

namespace kalvrooms::ifc {

struct Box {
    double left = 0.0;
    double bottom = 0.0;
    double right = 0.0;
    double top = 0.0;
};

struct Sample {
    std::string name;
    ModelText model;
    double area;
    Box box;
};

std::vector<Sample> Samples();

} // namespace kalvrooms::ifc
