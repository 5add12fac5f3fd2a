#pragma once
// What a cell holds, and the number formats that change what becomes of it.

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace kalvrooms::practice::spreadsheet {

struct ErrorValue {
    int code = 2042; // the number under which automation knows "#N/A"
    bool operator==(const ErrorValue&) const = default;
};

// Dates are numbers whose cells have a date's format. The first kind is the empty cell.
using Value = std::variant<std::monostate, std::wstring, double, bool, ErrorValue>;

inline const std::wstring GeneralFormat = L"General";
inline const std::wstring TextFormat = L"@";

struct Cell {
    Value value;
    std::wstring formula; // with its "=", empty when the value was typed
    std::wstring format = GeneralFormat;
    bool operator==(const Cell&) const = default;
};

enum class FormatKind { General, Text, Date, Currency, Number };
FormatKind KindOf(const std::wstring& format);

std::wstring ErrorText(ErrorValue error);
std::optional<ErrorValue> ErrorFrom(std::wstring_view text);

// All 15 digits that a cell keeps, with a point: "0.5", "1E+15".
std::wstring NumberAsText(double number);

} // namespace kalvrooms::practice::spreadsheet
