#pragma once
// The file that the host leaves beside a program before it starts it.

#include <string>

namespace kalvrooms::practice {

inline constexpr const wchar_t* HandOverFileName = L"kalvqtotemp";

struct HandOver {
    std::wstring helpFile;
    std::wstring settingsKey = L"Software\\Quartino";
    std::wstring language = L"xxx";
};

// Four lines, each ended with CR LF: the host's own, the help file, the settings key, the language.
// The program replaces the last eight characters of the help file by its own ending.
std::wstring HandOverText(const HandOver& handOver);

} // namespace kalvrooms::practice
