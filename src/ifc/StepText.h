#pragma once
// How ISO 10303-21 writes texts and numbers.

#include <string>
#include <string_view>

namespace kalvrooms::ifc {

// The text between two quotes: \X2\, \X4\, \X\, \S\, \P, \\ and doubled quotes. Bytes beyond ASCII
// do not belong there; they are read as UTF-8 where they are that, otherwise as Latin 1. An escape
// that is none stays as it stands.
std::wstring DecodeText(std::string_view inner);

// With its quotes, all of it ASCII.
std::string EncodeText(std::wstring_view text);

// With a decimal point and as few digits as tell the number from all others.
std::string EncodeReal(double value);

} // namespace kalvrooms::ifc
