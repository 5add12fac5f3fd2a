#pragma once
// Input validation shared by all dialogs with numeric fields: key filters, the tolerant reader
// that takes "." and "," as decimal mark under any locale, and the formatters that pad decimals.

#include <cstdint>
#include <string>
#include <string_view>

namespace kalvrooms {

// First character of the user's decimal mark; "." when the locale cannot be asked.
std::wstring GetDecimalSeparator();

// Key filters; the argument is the character code of the typed key.
bool IsNumberKey(std::int16_t keyCode); // digits, ".", "," and backspace
bool IsDigitKey(std::int16_t keyCode);  // digits and backspace

// 0 for a text that is no number. Errors: TypeMismatch for a text that begins with its only
// decimal mark (the empty whole part does not convert), Overflow.
double TextToNumber(std::wstring_view text);

// At least three (two) decimals with the user's decimal mark; more decimals are left alone.
std::wstring FormatThreeDecimals(double number);
std::wstring FormatTwoDecimals(double number);

// Format...(TextToNumber(text)); when that raises an error the unpadded number is tried, whose
// error goes to the caller.
std::wstring NormalizeThreeDecimals(const std::wstring& text);
std::wstring NormalizeTwoDecimals(const std::wstring& text);

} // namespace kalvrooms
