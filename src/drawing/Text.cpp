#include "drawing/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace kalvrooms {

std::wstring NumberText(double value) {
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    return std::wstring(digits.data(), end);
}

std::string FixedText(double value, int decimals) {
    if (!std::isfinite(value))
        return "0";
    std::array<char, 512> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed, decimals)
                         .ptr;
    std::string text(digits.data(), end);
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

bool EqualsIgnoringCase(std::wstring_view left, std::wstring_view right) {
    const auto lower = [](wchar_t letter) {
        return letter >= L'A' && letter <= L'Z' ? static_cast<wchar_t>(letter + 32) : letter;
    };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [&](wchar_t a, wchar_t b) { return lower(a) == lower(b); });
}

} // namespace kalvrooms
