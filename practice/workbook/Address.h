#pragma once
// Blocks of cells and how they are written: "A1", "$A$1:K501".

#include <string>

namespace kalvrooms::practice::spreadsheet {

inline constexpr int LastRow = 65536;
inline constexpr int LastColumn = 256;

// Rows and columns count from 1.
struct Area {
    int row = 1;
    int column = 1;
    int rows = 1;
    int columns = 1;
    bool operator==(const Area&) const = default;

    long long cells() const { return static_cast<long long>(rows) * columns; }
};

// Raises a SheetError for an area that does not lie on a sheet.
Area Checked(const Area& area);
Area AreaFrom(const std::wstring& address);
// The smallest area around two.
Area Around(const Area& one, const Area& other);
std::wstring AddressOf(const Area& area);

} // namespace kalvrooms::practice::spreadsheet
