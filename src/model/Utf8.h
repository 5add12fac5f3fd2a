#pragma once
// Texts as UTF-8 and back.

#include <string>
#include <string_view>

namespace kalvrooms {

// Invalid bytes and half surrogate pairs become U+FFFD.
std::wstring FromUtf8(std::string_view bytes);
std::string ToUtf8(std::wstring_view text);

} // namespace kalvrooms
