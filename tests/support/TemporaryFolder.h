#pragma once
// A folder of its own for every run of a test, so that two runs do not clear each other's files.

#include <filesystem>
#include <random>
#include <string>

namespace kalvrooms::testing {

inline std::filesystem::path temporaryFolder(const std::string& name) {
    static const unsigned run = std::random_device()();
    return std::filesystem::temp_directory_path() / (name + "-" + std::to_string(run));
}

} // namespace kalvrooms::testing
