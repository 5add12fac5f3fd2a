#pragma once
// A folder of its own for every test, which goes away with it; and whole files as bytes.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

#include "files/FilePath.h"

namespace kalvrooms {

// Empty where there is no such file.
inline std::string readBytes(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}
inline void writeBytes(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream stream(file, std::ios::binary);
    stream << bytes;
    stream.close();
    if (!stream)
        throw std::runtime_error("the test cannot write its file");
}

class TemporaryFolder {
  public:
    explicit TemporaryFolder(const std::wstring& name = L"quartino-")
        : path_(std::filesystem::temp_directory_path() /
                FilePath(name + std::to_wstring(std::random_device()()))) {
        std::filesystem::create_directories(path_);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    operator const std::filesystem::path&() const { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const {
        return path_ / name;
    }

  private:
    std::filesystem::path path_;
};

} // namespace kalvrooms
