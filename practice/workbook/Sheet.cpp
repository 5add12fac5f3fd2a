#include "practice/workbook/Sheet.h"

#include "drawing/Text.h"
#include "model/NumberText.h"
#include "practice/workbook/SheetError.h"

namespace kalvrooms::practice::spreadsheet {

namespace {

// Dates are shown as dates in a cell that says nothing of its own.
const std::wstring dateFormat = L"yyyy\\-mm\\-dd";

// In a cell of the text format.
CellValue asText(const CellValue& value) {
    if (const auto* number = std::get_if<double>(&value))
        return FromDoubleInvariant(*number);
    if (const auto* truth = std::get_if<bool>(&value))
        return std::wstring(*truth ? L"TRUE" : L"FALSE");
    return value;
}

template <class Step>
void forEach(const CellRange& range, Step step) {
    for (int row = 0; row < range.Rows; ++row)
        for (int column = 0; column < range.Columns; ++column)
            step(row, column);
}

} // namespace

void Sheet::Check(const CellRange& range) const {
    if (range.Row < 1 || range.Column < 1 || range.Rows < 1 || range.Columns < 1 ||
        range.Row - 1 > rows - range.Rows || range.Column - 1 > Columns - range.Columns)
        throw SheetError(L"The range does not lie on the sheet.");
}

void Sheet::Fill(const CellRange& range, const CellValue& value) {
    Check(range);
    forEach(range,
            [&](int row, int column) { enter(range.Row + row, range.Column + column, value); });
}

void Sheet::Put(const CellRange& range, const CellBlock& values) {
    Check(range);
    if (values.Rows() != range.Rows || values.Columns() != range.Columns)
        throw SheetError(L"The block has another size than the range.");
    forEach(
        range,
        [&](int row, int column) {
            const auto* text = std::get_if<std::wstring>(&values.At(row, column));
            if (text && text->size() > LongestTextInBlock)
                throw SheetError(L"A text is too long for a block of cells.");
        });
    forEach(range, [&](int row, int column) {
        enter(range.Row + row, range.Column + column, values.At(row, column));
    });
}

void Sheet::enter(int row, int column, const CellValue& value) {
    Cell cell = At(row, column);
    const auto* text = std::get_if<std::wstring>(&value);
    if (text && text->size() > LongestText)
        throw SheetError(L"A cell takes 32,767 characters at most.");
    if (text && text->empty())
        cell.value = {};
    else if (cell.format == TextNumberFormat)
        cell.value = asText(value);
    else
        cell.value = text ? Typed(*text) : value;
    if (std::holds_alternative<CellDate>(cell.value) && cell.format == GeneralNumberFormat)
        cell.format = dateFormat;
    Set(row, column, std::move(cell));
}

CellBlock Sheet::Values(const CellRange& range) const {
    Check(range);
    CellBlock values(range.Rows, range.Columns);
    forEach(range, [&](int row, int column) {
        values.At(row, column) = At(range.Row + row, range.Column + column).value;
    });
    return values;
}

void Sheet::Format(const CellRange& range, const std::wstring& format) {
    Check(range);
    forEach(range, [&](int row, int column) {
        Cell cell = At(range.Row + row, range.Column + column);
        cell.format = format;
        Set(range.Row + row, range.Column + column, std::move(cell));
    });
}

const Cell& Sheet::At(int row, int column) const {
    static const Cell empty;
    const auto found = cells_.find({row, column});
    return found == cells_.end() ? empty : found->second;
}

void Sheet::Set(int row, int column, Cell cell) {
    Check({row, column, 1, 1});
    if (cell == Cell())
        cells_.erase({row, column});
    else
        cells_[{row, column}] = std::move(cell);
}

Workbook Workbook::New() {
    Workbook workbook;
    for (const auto* name : {L"Sheet1", L"Sheet2", L"Sheet3"})
        workbook.sheets.push_back(std::make_shared<Sheet>(name));
    return workbook;
}

Workbook Workbook::Copy() const {
    Workbook copy = *this;
    for (auto& sheet : copy.sheets)
        sheet = std::make_shared<Sheet>(*sheet);
    return copy;
}

std::shared_ptr<Sheet> Workbook::AddSheet() {
    auto sheet = std::make_shared<Sheet>(L"Sheet" + std::to_wstring(sheets.size() + 1));
    sheets.insert(sheets.begin() + static_cast<std::ptrdiff_t>(active), sheet);
    return sheet;
}

} // namespace kalvrooms::practice::spreadsheet
