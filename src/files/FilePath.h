#pragma once
// The path of a file name as the program keeps it. On systems whose file names are bytes those are
// UTF-8 whatever the locale; the library's own conversion of wide texts asks the locale and fails
// at the first umlaut where that is "C".

#include <filesystem>
#include <string>

namespace kalvrooms {

// Error: std::system_error for a text that is no Unicode.
inline std::filesystem::path FilePath(const std::wstring& name) {
    if constexpr (sizeof(wchar_t) == sizeof(char32_t))
        return std::filesystem::path(std::u32string(name.begin(), name.end()));
    else
        return std::filesystem::path(name);
}

// The other way: the name of a path as the program keeps it.
inline std::wstring FileName(const std::filesystem::path& path) {
    if constexpr (sizeof(wchar_t) == sizeof(char32_t)) {
        const std::u32string name = path.u32string();
        return std::wstring(name.begin(), name.end());
    } else {
        return path.wstring();
    }
}

// What the system puts between a folder and a name in it.
inline constexpr wchar_t PathSeparator = std::filesystem::path::preferred_separator;

} // namespace kalvrooms
