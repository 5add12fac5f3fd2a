#pragma once
// What the fuzzers have in common: bytes as a file on a memory disk, and a locale that the first
// byte chooses.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "model/NumberText.h"

namespace kalvrooms::fuzz {

class File {
  public:
    explicit File(const char* name, const char* ending = "")
        : path_(std::filesystem::path("/dev/shm") /
                (std::string(name) + "-" + std::to_string(getpid()) + ending)) {}
    ~File() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    std::wstring Name() const { return path_.wstring(); }
    void Write(const std::uint8_t* bytes, std::size_t size) const {
        std::ofstream(path_, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(size));
    }
    std::string Read() const {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

  private:
    std::filesystem::path path_;
};

// Takes the first byte away. False: there was none.
inline bool TakeLocale(const std::uint8_t*& bytes, std::size_t& size) {
    if (size == 0)
        return false;
    HandInUserLocale(*bytes % 2 == 0 ? &NumberLocale::German : &NumberLocale::Point);
    ++bytes;
    --size;
    return true;
}

// The fuzzer keeps the input that came so far.
inline void Hold(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace kalvrooms::fuzz
