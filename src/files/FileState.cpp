#include "files/FileState.h"

#include <array>
#include <exception>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "files/FilePath.h"

namespace kalvrooms {

FileState StateOf(const std::wstring& fileName) {
    FileState state;
    try {
        const std::filesystem::path path = FilePath(fileName);
        std::error_code ignored;
        state.there = std::filesystem::is_regular_file(path, ignored);
        if (!state.there)
            return state;
        std::ifstream file(path, std::ios::binary);
        // The sum of Fowler, Noll and Vo (1a, 64 bits).
        constexpr std::uint64_t start = 0xCBF29CE484222325;
        constexpr std::uint64_t prime = 0x100000001B3;
        state.sum = file ? start : 0;
        std::array<char, 64U * 1024> bytes;
        while (file) {
            file.read(bytes.data(), bytes.size());
            const auto count = static_cast<std::size_t>(file.gcount());
            state.size += count;
            for (std::size_t i = 0; i < count; ++i)
                state.sum = (state.sum ^ static_cast<unsigned char>(bytes[i])) * prime;
        }
    } catch (const std::exception&) {
        // What cannot be looked at stays unknown.
    }
    return state;
}

} // namespace kalvrooms
