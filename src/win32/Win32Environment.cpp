#include "win32/Win32Environment.h"

#include <windows.h>

namespace kalvrooms {

std::wstring FolderOfFile(const std::wstring& path) {
    const std::size_t separator = path.find_last_of(L'\\');
    if (separator == std::wstring::npos)
        return {};
    const bool root = separator > 0 && path[separator - 1] == L':';
    return path.substr(0, root ? separator + 1 : separator);
}

std::wstring Win32Environment::ExecutableFolder() const {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0)
            return {};
        if (length < path.size()) {
            path.resize(length);
            return FolderOfFile(path);
        }
        path.resize(path.size() * 2);
    }
}

} // namespace kalvrooms
