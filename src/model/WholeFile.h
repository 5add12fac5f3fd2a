#pragma once
// Files that take the place of others only once they are complete: a failure half way leaves the
// old one as it was.

#include <filesystem>
#include <string_view>

namespace kalvrooms {

// Where the new file is written meanwhile.
std::filesystem::path UnfinishedName(const std::filesystem::path& file);

// A reader of the file sees the old bytes or the new ones, never a part, and a failure leaves
// nothing unfinished behind. Error: std::system_error.
void WriteWhole(const std::filesystem::path& file, std::string_view bytes);

} // namespace kalvrooms
