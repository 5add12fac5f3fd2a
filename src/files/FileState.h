#pragma once
// What a file holds, to see later whether somebody else has written it.

#include <cstdint>
#include <string>

namespace kalvrooms {

struct FileState {
    bool there = false;
    std::uintmax_t size = 0;
    // Of all bytes: times of change are too coarse on many systems, and change without need. 0 for
    // a file that cannot be read.
    std::uint64_t sum = 0;
    bool operator==(const FileState&) const = default;
};

// No errors: a name that no file can have is not there.
FileState StateOf(const std::wstring& fileName);

} // namespace kalvrooms
