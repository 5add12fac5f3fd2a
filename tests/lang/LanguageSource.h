#pragma once
// The readable source of a language: lines of the form  number = "text".

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

namespace kalvrooms::testing {

// By number. Fails the test where a number stands twice.
std::map<std::int32_t, std::wstring> TranslationsOf(const std::filesystem::path& path);

} // namespace kalvrooms::testing
