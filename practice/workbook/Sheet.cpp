#include "practice/workbook/Sheet.h"

#include "drawing/Text.h"
#include "practice/workbook/Entry.h"
#include "practice/workbook/SheetError.h"

#include <algorithm>
#include <cmath>

namespace kalvrooms::practice::spreadsheet {

namespace {

// A whole sheet at once would be 16 million cells.
constexpr long long mostCells = 2'000'000;

void checkSize(const Area& area) {
    Checked(area);
    if (area.cells() > mostCells)
        throw SheetError(L"There is not enough memory for so many cells at once.");
}

std::wstring asText(const Value& value) {
    if (const auto* number = std::get_if<double>(&value))
        return NumberAsText(*number);
    if (const auto* truth = std::get_if<bool>(&value))
        return *truth ? L"TRUE" : L"FALSE";
    return {};
}

template <class Step>
void forEach(const Area& area, Step step) {
    for (int row = area.row; row < area.row + area.rows; ++row) {
        for (int column = area.column; column < area.column + area.columns; ++column)
            step(row, column);
    }
}

} // namespace

void Sheet::Put(const Area& area, const Value& value, int thisYear) {
    checkSize(area);
    forEach(area, [&](int row, int column) { PutOne(row, column, value, thisYear); });
}

void Sheet::Put(const Area& area, const Block& block, int thisYear) {
    checkSize(area);
    for (const Value& value : block.values) {
        const auto* text = std::get_if<std::wstring>(&value);
        if (text && text->size() > LongestTextInBlock)
            throw SheetError(L"A text is too long for a block of cells.");
    }
    forEach(area, [&](int row, int column) {
        const int blockRow = block.rows == 1 ? 0 : row - area.row;
        const int blockColumn = block.columns == 1 ? 0 : column - area.column;
        const bool reached = blockRow < block.rows && blockColumn < block.columns;
        PutOne(row, column, reached ? block.at(blockRow, blockColumn) : Value(ErrorValue()),
               thisYear);
    });
}

void Sheet::PutOne(int row, int column, const Value& value, int thisYear) {
    Cell cell = At(row, column);
    if (const auto* typed = std::get_if<std::wstring>(&value)) {
        cell = Typed(*typed, cell.format, thisYear);
    } else {
        if (const auto* number = std::get_if<double>(&value); number && !std::isfinite(*number))
            throw SheetError(L"This is no number.");
        const std::wstring text =
            KindOf(cell.format) == FormatKind::Text ? asText(value) : std::wstring();
        cell.formula.clear();
        cell.value = text.empty() ? value : Value(text);
    }
    Set(row, column, std::move(cell));
}

void Sheet::Format(const Area& area, const std::wstring& format) {
    checkSize(area);
    const std::wstring normal = KindOf(format) == FormatKind::General ? GeneralFormat : format;
    forEach(area, [&](int row, int column) {
        Cell cell = At(row, column);
        cell.format = normal;
        Set(row, column, std::move(cell));
    });
}

std::wstring Sheet::FormatOf(const Area& area) const {
    checkSize(area);
    const std::wstring first = At(area.row, area.column).format;
    bool same = true;
    forEach(area, [&](int row, int column) { same = same && At(row, column).format == first; });
    return same ? first : std::wstring();
}

const Cell& Sheet::At(int row, int column) const {
    static const Cell empty;
    const auto found = cells_.find({row, column});
    return found == cells_.end() ? empty : found->second;
}

void Sheet::Set(int row, int column, Cell cell) {
    Checked({row, column, 1, 1});
    if (cell == Cell())
        cells_.erase({row, column});
    else
        cells_[{row, column}] = std::move(cell);
}

Area Sheet::Used() const {
    if (cells_.empty())
        return {};
    const auto place = [](const Cells::value_type& entry) {
        return Area{entry.first.first, entry.first.second, 1, 1};
    };
    Area used = place(*cells_.begin());
    for (const auto& entry : cells_)
        used = Around(used, place(entry));
    return used;
}

Workbook Workbook::New() {
    Workbook workbook;
    for (const auto* name : {L"Sheet1", L"Sheet2", L"Sheet3"})
        workbook.sheets.push_back(std::make_shared<Sheet>(name));
    return workbook;
}

std::shared_ptr<Sheet> Workbook::AddSheet() {
    std::wstring name;
    for (std::size_t number = sheets.size() + 1; name.empty(); ++number) {
        name = L"Sheet" + std::to_wstring(number);
        for (const auto& sheet : sheets) {
            if (EqualsIgnoringCase(sheet->name(), name))
                name.clear();
        }
    }
    auto sheet = std::make_shared<Sheet>(name);
    sheets.insert(sheets.begin() + static_cast<std::ptrdiff_t>(active), sheet);
    return sheet;
}

} // namespace kalvrooms::practice::spreadsheet
