#include "practice/workbook/Cell.h"

#include "drawing/Text.h"

#include <array>
#include <charconv>
#include <utility>

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr std::array<std::pair<int, std::wstring_view>, 7> errors{{
    {2000, L"#NULL!"},
    {2007, L"#DIV/0!"},
    {2015, L"#VALUE!"},
    {2023, L"#REF!"},
    {2029, L"#NAME?"},
    {2036, L"#NUM!"},
    {2042, L"#N/A"},
}};

// The letters of a format that stand for something; quoted, escaped and bracketed ones do not,
// except for the brackets of elapsed time.
std::wstring meaningful(const std::wstring& format) {
    std::wstring letters;
    for (std::size_t i = 0; i < format.size(); ++i) {
        switch (format[i]) {
        case L'"': {
            const std::size_t end = format.find(L'"', i + 1);
            i = end == std::wstring::npos ? format.size() : end;
            break;
        }
        case L'\\':
        case L'_':
        case L'*':
            ++i;
            break;
        case L'[': {
            const std::size_t end = format.find(L']', i);
            const std::wstring inside = format.substr(i + 1, end - i - 1);
            for (const auto* elapsed : {L"h", L"hh", L"m", L"mm", L"s", L"ss"}) {
                if (EqualsIgnoringCase(inside, elapsed))
                    letters += inside;
            }
            if (inside.starts_with(L"$") && !inside.starts_with(L"$-"))
                letters += L'$';
            i = end == std::wstring::npos ? format.size() : end;
            break;
        }
        default:
            letters += format[i];
        }
    }
    return letters;
}

} // namespace

FormatKind KindOf(const std::wstring& format) {
    if (format.empty() || EqualsIgnoringCase(format, GeneralFormat))
        return FormatKind::General;
    if (format == TextFormat)
        return FormatKind::Text;
    const std::wstring letters = meaningful(format);
    if (letters.find_first_of(L"dDmMyYhHsS") != std::wstring::npos)
        return FormatKind::Date;
    if (letters.find_first_of(L"$\u20AC") != std::wstring::npos)
        return FormatKind::Currency;
    return FormatKind::Number;
}

std::wstring ErrorText(ErrorValue error) {
    for (const auto& [code, text] : errors) {
        if (code == error.code)
            return std::wstring(text);
    }
    return L"#N/A";
}

std::optional<ErrorValue> ErrorFrom(std::wstring_view text) {
    for (const auto& [code, shown] : errors) {
        if (EqualsIgnoringCase(text, shown))
            return ErrorValue{code};
    }
    return std::nullopt;
}

std::wstring NumberAsText(double number) {
    std::array<char, 40> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                   std::chars_format::general, 15);
    std::wstring text(digits.data(), end.ptr);
    const std::size_t exponent = text.find(L'e');
    if (exponent != std::wstring::npos)
        text[exponent] = L'E';
    return text;
}

} // namespace kalvrooms::practice::spreadsheet
