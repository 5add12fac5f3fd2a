#include "practice/server/Files.h"

#include <windows.h>

namespace kalvrooms::practice {

std::wstring ExecutablePath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

std::wstring AbsolutePath(const std::wstring& path) {
    const DWORD needed = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
    std::wstring absolute(needed, L'\0');
    const DWORD length = GetFullPathNameW(path.c_str(), needed, absolute.data(), nullptr);
    absolute.resize(length < needed ? length : 0);
    return absolute.empty() ? path : absolute;
}

std::wstring FolderOf(const std::wstring& path) {
    const std::size_t end = path.find_last_of(L"\\/");
    return end == std::wstring::npos ? std::wstring() : path.substr(0, end + 1);
}

std::string AnsiText(const std::wstring& text) {
    if (text.empty())
        return {};
    const auto convert = [&](char* bytes, int size) {
        return WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(),
                                   static_cast<int>(text.size()), bytes, size, "?", nullptr);
    };
    std::string bytes(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
    convert(bytes.data(), static_cast<int>(bytes.size()));
    return bytes;
}

} // namespace kalvrooms::practice
