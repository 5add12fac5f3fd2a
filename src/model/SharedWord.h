#pragma once
// Words that many rooms have in common: one copy of each serves all of them, and is never given up.

#include <string>
#include <string_view>

namespace kalvrooms {

const std::wstring* SharedWord(std::wstring_view word);

} // namespace kalvrooms
