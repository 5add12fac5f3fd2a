#pragma once
// The drawing as a picture for a browser: a group per storey, and a legend.

#include "drawing/Drawing.h"

#include <string>

namespace kalvrooms {

std::string DrawingSvg(const Drawing& drawing);

} // namespace kalvrooms
