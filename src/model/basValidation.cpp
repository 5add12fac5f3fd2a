#include "model/basValidation.h"

#include <cmath>
#include <optional>

#include "model/NumberText.h"
#include "model/RuntimeError.h"

namespace kalvrooms {

namespace {

constexpr std::int16_t backspaceKey = 8;

// Position of the first mark counted from 1; 0 when the text holds none.
std::size_t positionOf(std::wstring_view text, wchar_t mark) {
    const std::size_t at = text.find(mark);
    return at == std::wstring_view::npos ? 0 : at + 1;
}

std::wstring padDecimals(double number, std::size_t places) {
    const std::wstring mark = GetDecimalSeparator();
    std::wstring text = FromDouble(number);
    const std::size_t at = text.find(mark);
    if (at == std::wstring::npos)
        return text + mark + std::wstring(places, L'0');
    // Nothing behind the mark cannot come from a number, and three places stay as they are.
    const std::size_t following = text.size() - at - mark.size();
    if (following > 0 && following < places)
        text.append(places - following, L'0');
    return text;
}

// The locale under which the text is a number. Point and comma are decimal marks everywhere, so one
// that means nothing to the user's locale (a point in France, a comma in Switzerland) stands for
// its decimal mark.
std::optional<NumberLocale> localeOf(std::wstring_view text) {
    const NumberLocale user = UserLocale();
    if (IsNumeric(text, user))
        return user;
    for (const wchar_t* mark : {L".", L","}) {
        if (mark == user.DecimalMark || mark == user.GroupingMark)
            continue;
        NumberLocale other = user;
        other.DecimalMark = mark;
        if (IsNumeric(text, other))
            return other;
    }
    return std::nullopt;
}

std::wstring normalize(const std::wstring& text, std::wstring (*format)(double)) {
    try {
        return format(TextToNumber(text));
    } catch (const RuntimeError&) {
        return FromDouble(TextToNumber(text));
    }
}

} // namespace

std::wstring GetDecimalSeparator() {
    const std::wstring mark = UserLocale().DecimalMark;
    return mark.empty() ? L"." : mark.substr(0, 1);
}

bool IsNumberKey(std::int16_t keyCode) {
    return keyCode == L'.' || keyCode == L',' || IsDigitKey(keyCode);
}

bool IsDigitKey(std::int16_t keyCode) {
    return (keyCode >= L'0' && keyCode <= L'9') || keyCode == backspaceKey;
}

double TextToNumber(std::wstring_view text) {
    const std::optional<NumberLocale> found = localeOf(text);
    if (!found)
        return 0.0;
    const NumberLocale& locale = *found;
    const std::size_t point = positionOf(text, L'.');
    const std::size_t comma = positionOf(text, L',');
    // With both marks the locale has to say which of them is the decimal mark.
    const bool oneMark = (point == 0) != (comma == 0);
    const std::size_t decimals = oneMark ? text.size() - (point + comma) : 0;
    if (decimals == 0)
        return ToDouble(text, locale);

    std::wstring_view fractionText = text.substr(text.size() - decimals);
    if (fractionText.find_first_of(L".,") != std::wstring_view::npos)
        fractionText = L"0";
    double fraction = ToDouble(fractionText, locale);
    // One division per decimal: a single division by a power of ten rounds differently.
    for (std::size_t i = 0; i < decimals; ++i)
        fraction /= 10.0;
    // The sign sits on the whole part, so that of a zero whole part is lost.
    const double whole = ToDouble(text.substr(0, text.size() - decimals - 1), locale);
    return whole < 0.0 ? -(std::abs(whole) + fraction) : whole + fraction;
}

std::wstring FormatThreeDecimals(double number) {
    return padDecimals(number, 3);
}

std::wstring FormatTwoDecimals(double number) {
    return padDecimals(number, 2);
}

std::wstring NormalizeThreeDecimals(const std::wstring& text) {
    return normalize(text, FormatThreeDecimals);
}

std::wstring NormalizeTwoDecimals(const std::wstring& text) {
    return normalize(text, FormatTwoDecimals);
}

} // namespace kalvrooms
