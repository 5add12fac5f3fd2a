#pragma once
// The 22 letters that name an instance beyond its file, and the number that we make of them.

#include <cstdint>
#include <string>
#include <vector>

namespace kalvrooms::ifc {

// A new one, at random.
std::string NewGlobalId();

// A number of 31 bits for each, never negative, the same for the same set of identifiers: where two
// collide, the later one (by its letters) takes the next number that is free.
std::vector<std::int32_t> ComponentIds(const std::vector<std::string>& globalIds);

} // namespace kalvrooms::ifc
