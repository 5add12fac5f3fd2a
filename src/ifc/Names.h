#pragma once
// Names of properties and quantities, as far as they are the same.

#include <string>
#include <string_view>

namespace kalvrooms::ifc {

// In small letters, without blanks, lines and dots; umlauts are written out.
std::wstring PlainName(std::wstring_view name);

} // namespace kalvrooms::ifc
