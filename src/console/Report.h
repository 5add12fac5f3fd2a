#pragma once
// One printable page about a list and a drawing: sums, target beside actual, a plan of each storey.
// No scripts, no foreign addresses.

#include <string>
#include <vector>

#include "console/Compare.h"
#include "drawing/Drawing.h"

namespace kalvrooms {

struct ReportInput {
    const ConsoleRooms& list;
    const ConsoleRooms& built;
    const Drawing& drawing;
    Tolerance tolerance;
};

std::string ReportPage(const ReportInput& input, const Speech& say);

} // namespace kalvrooms
