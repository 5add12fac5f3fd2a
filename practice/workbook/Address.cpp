#include "practice/workbook/Address.h"

#include "practice/workbook/SheetError.h"

#include <algorithm>
#include <cwctype>

namespace kalvrooms::practice::spreadsheet {

namespace {

[[noreturn]] void fail() {
    throw SheetError(L"The range does not lie on the sheet.");
}

Area cellFrom(const std::wstring& text) {
    std::size_t at = 0;
    const auto skipDollar = [&] {
        if (at < text.size() && text[at] == L'$')
            ++at;
    };
    Area cell{0, 0, 1, 1};
    skipDollar();
    for (; at < text.size() && cell.column <= LastColumn; ++at) {
        const wchar_t letter = static_cast<wchar_t>(text[at] & ~0x20);
        if (text[at] >= 128 || letter < L'A' || letter > L'Z')
            break;
        cell.column = cell.column * 26 + (letter - L'A' + 1);
    }
    skipDollar();
    for (; at < text.size() && text[at] >= L'0' && text[at] <= L'9' && cell.row <= LastRow; ++at)
        cell.row = cell.row * 10 + (text[at] - L'0');
    if (at != text.size())
        fail();
    return Checked(cell);
}

std::wstring nameOf(int row, int column) {
    std::wstring letters;
    for (; column > 0; column = (column - 1) / 26)
        letters.insert(letters.begin(), static_cast<wchar_t>(L'A' + (column - 1) % 26));
    return L"$" + letters + L"$" + std::to_wstring(row);
}

} // namespace

Area Checked(const Area& area) {
    if (area.row < 1 || area.column < 1 || area.rows < 1 || area.columns < 1 ||
        area.row > LastRow || area.column > LastColumn || area.rows > LastRow + 1 - area.row ||
        area.columns > LastColumn + 1 - area.column)
        fail();
    return area;
}

Area AreaFrom(const std::wstring& address) {
    const std::size_t colon = address.find(L':');
    const Area first = cellFrom(address.substr(0, colon));
    return colon == std::wstring::npos ? first : Around(first, cellFrom(address.substr(colon + 1)));
}

Area Around(const Area& one, const Area& other) {
    Area area{std::min(one.row, other.row), std::min(one.column, other.column), 1, 1};
    area.rows = std::max(one.row + one.rows, other.row + other.rows) - area.row;
    area.columns = std::max(one.column + one.columns, other.column + other.columns) - area.column;
    return area;
}

std::wstring AddressOf(const Area& area) {
    const std::wstring first = nameOf(area.row, area.column);
    if (area.cells() == 1)
        return first;
    return first + L":" + nameOf(area.row + area.rows - 1, area.column + area.columns - 1);
}

} // namespace kalvrooms::practice::spreadsheet
