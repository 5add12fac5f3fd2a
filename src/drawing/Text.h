#pragma once
// Texts cross the practice host's border as UTF-8 (JSON, SVG); inside they are wide.

#include <string>
#include <string_view>

namespace kalvrooms::practice {

// Invalid bytes and half surrogate pairs become U+FFFD.
std::wstring FromUtf8(std::string_view bytes);
std::string ToUtf8(std::wstring_view text);
void AppendUtf8(std::string& bytes, char32_t code);

// Decimal point, no grouping, as few digits as tell the number from all others.
std::wstring NumberText(double value);
// Decimal point and a fixed count of decimals, zeros at the end cut off: for coordinates in SVG.
std::string FixedText(double value, int decimals);

// ASCII letters only, as member and option names are.
bool EqualsIgnoringCase(std::wstring_view left, std::wstring_view right);

} // namespace kalvrooms::practice
