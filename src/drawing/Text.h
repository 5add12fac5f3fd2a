#pragma once
// Texts of drawings, the same in every locale.

#include "model/Utf8.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace kalvrooms {

// Decimal point, no grouping, as few digits as tell the number from all others.
std::wstring NumberText(double value);
// Decimal point and a fixed count of decimals, zeros at the end cut off: for coordinates in SVG.
std::string FixedText(double value, int decimals);

// A whole text as a finite number with a decimal point, or as a whole number; none otherwise.
template <class Number>
std::optional<Number> NumberFrom(std::wstring_view text) {
    const std::string digits = ToUtf8(text);
    const char* end = digits.data() + digits.size();
    Number number{};
    const auto read = std::from_chars(digits.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end || !std::isfinite(static_cast<double>(number)))
        return std::nullopt;
    return number;
}

// ASCII letters only, as member and option names are.
bool EqualsIgnoringCase(std::wstring_view left, std::wstring_view right);

} // namespace kalvrooms
