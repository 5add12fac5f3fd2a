#include "win32/Win32LetterRules.h"

#include <windows.h>

namespace kalvrooms {
namespace {

// Maps a text, in as many units as the mapping needs; a text that cannot be mapped stays empty.
template <class Mapped>
Mapped map(const wchar_t* locale, DWORD how, const std::wstring& text) {
    Mapped mapped;
    if (text.empty())
        return mapped;
    const auto run = [&](void* target, int room) {
        return LCMapStringEx(locale, how, text.c_str(), static_cast<int>(text.size()),
                             static_cast<wchar_t*>(target), room, nullptr, nullptr, 0);
    };
    mapped.resize(static_cast<std::size_t>(run(nullptr, 0)));
    run(mapped.data(), static_cast<int>(mapped.size()));
    return mapped;
}

} // namespace

LetterRules Win32LetterRules() {
    return {[](const std::wstring& text) {
                // As the system compares names: not by the user's language, so that a list falls
                // into the same storeys wherever it is opened.
                return map<std::wstring>(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, text);
            },
            [](const std::wstring& text) {
                return map<std::string>(LOCALE_NAME_USER_DEFAULT, LCMAP_SORTKEY, text);
            }};
}

} // namespace kalvrooms
