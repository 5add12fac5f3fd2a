#pragma once
// Tables and outlines as variants that hold arrays.

#include "host/HostApplication.h"
#include "win32/Com.h"

#include <vector>

namespace kalvrooms::practice {

// (0 to n-1)
Variant RecordArray(std::vector<Variant> values);
// (1 to rows, 1 to columns), the rows one after the other in `values`; empty without any.
Variant TableArray(std::vector<Variant> values, std::size_t columns);

// (0 to 1, 0 to n) with the first point repeated at the end; empty for an outline without points.
Variant OutlineArray(const Outline& outline);
// The points as they came; an empty value is an outline without points. Raises a ComError for an
// array of another shape.
Outline OutlineFrom(const Variant& value);

} // namespace kalvrooms::practice
