#pragma once
// Names, as far as they are the same.

#include <string>
#include <string_view>

namespace kalvrooms::ifc {

// Of properties and quantities: in small letters, without blanks, lines and dots; umlauts are
// written out.
std::wstring PlainName(std::wstring_view name);

// A list has one line for a room.
std::wstring InOneLine(std::wstring text);
// Whether a text came back from a list as it was, as far as a list can hold it.
bool IsSameInList(const std::wstring& was, const std::wstring& is);

} // namespace kalvrooms::ifc
