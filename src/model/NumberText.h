#pragma once
// Numbers as texts: the runtime's numeric test and its conversions under the user's locale.
// Everything in the program that reads or shows a number goes through here.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace kalvrooms {

// The marks with which a user writes numbers. Empty marks are never matched, except that an empty
// decimal mark counts as ".".
struct NumberLocale {
    std::wstring DecimalMark = L".";
    std::wstring GroupingMark = L",";
    std::wstring CurrencySymbol = L"$";
    std::wstring CurrencyDecimalMark = L".";
    std::wstring CurrencyGroupingMark = L",";

    static NumberLocale German(); // decimal comma, grouping point, "€"
    static NumberLocale Point();  // decimal point, grouping comma, "$"
};

// The platform hands in how to ask for the user's locale; it is asked anew on every use, because
// the user may change it while the program runs. Without one, NumberLocale::Point() is used.
void HandInUserLocale(std::function<NumberLocale()> query);
NumberLocale UserLocale();

// Removes blanks (character 32 only, as the runtime does) from both ends.
std::wstring Trim(std::wstring_view text);
std::wstring_view TrimmedView(std::wstring_view text);

// True if the text converts to a number under the locale: surrounding white space, one sign (in
// front, behind, or as parentheses), grouping marks, decimal mark, exponent (E or D) and currency
// symbol are accepted, and the 32-bit patterns &H1F and &O17. An amount with the currency symbol in
// front, or with marks that only amounts have, takes no exponent. The text ends at a null
// character. A number beyond the range of a 64-bit float is not numeric.
bool IsNumeric(std::wstring_view text, const NumberLocale& locale = UserLocale());

// The number of a text. Errors: TypeMismatch when it is none, Overflow when it is too large.
double ToDouble(std::wstring_view text, const NumberLocale& locale = UserLocale());
// 0 for a text that is not numeric.
double NumberOrZero(std::wstring_view text, const NumberLocale& locale = UserLocale());

// As ToDouble, then rounded half to even. Errors: TypeMismatch, Overflow outside 32 bits.
std::int32_t ToLong(std::wstring_view text, const NumberLocale& locale = UserLocale());

// Rounds half to even. Error: Overflow when the result does not fit (NaN included).
std::int32_t RoundToLong(double value);
std::int16_t RoundToInteger(double value);

// The plain text form under the locale: at most 15 significant digits, no grouping, no leading
// blank, exponent form ("1E+15", "1E-05") for very large and very small numbers.
std::wstring FromDouble(double value, const NumberLocale& locale = UserLocale());
void AppendDouble(std::wstring& text, double value, const NumberLocale& locale);
// The same with "." whatever the locale.
std::wstring FromDoubleInvariant(double value);
std::wstring FromLong(std::int32_t value);

// 32-bit arithmetic of the runtime. Error: Overflow.
std::int32_t AddLong(std::int32_t a, std::int32_t b);

} // namespace kalvrooms
