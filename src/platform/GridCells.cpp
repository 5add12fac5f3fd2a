#include "platform/GridCells.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <tuple>
#include <utility>

#include "model/LetterRules.h"
#include "model/NumberText.h"
#include "model/RuntimeError.h"

namespace kalvrooms::Gui {
namespace {

// Numbers stand before texts.
enum class Kind { Number, Text };

struct SortedRow {
    Kind kind;
    double number;
    std::string letters; // in the user's alphabetical order
    std::size_t row;
};

SortedRow sortedRow(const std::wstring& text, std::size_t row, const NumberLocale& locale) {
    if (IsNumeric(text, locale))
        return {Kind::Number, ToDouble(text, locale), {}, row};
    return {Kind::Text, 0.0, SortKey(text), row};
}

bool standsBefore(const SortedRow& a, const SortedRow& b) {
    return std::tie(a.kind, a.number, a.letters) < std::tie(b.kind, b.number, b.letters);
}

[[noreturn]] void outside() {
    throw RuntimeError(RuntimeError::SubscriptOutOfRange);
}

} // namespace

void GridCells::Resize(int rows, int columns) {
    if (rows < 0 || columns < 0)
        outside();
    // All that may fail for want of memory comes first, in a table of its own.
    const auto width = static_cast<std::size_t>(columns);
    std::vector<Row> resized(static_cast<std::size_t>(rows));
    const std::size_t kept = std::min(resized.size(), rows_.size());
    for (std::size_t row = 0; row < kept && columns != columns_; ++row)
        if (!rows_[row].cells.empty())
            resized[row].cells.resize(width);
    for (std::size_t row = 0; row < kept; ++row) {
        std::vector<Cell>& cells = rows_[row].cells;
        const auto end = static_cast<std::ptrdiff_t>(std::min(width, cells.size()));
        resized[row].number = rows_[row].number;
        if (columns == columns_)
            resized[row].cells.swap(cells);
        else
            std::move(cells.begin(), cells.begin() + end, resized[row].cells.begin());
    }
    ++changes_;
    columns_ = columns;
    rows_.swap(resized);
}

int GridCells::LastFilledRow() const {
    int row = Rows() - 1;
    const auto isFilled = [&] {
        for (int column = 0; column < columns_; ++column)
            if (!Text(row, column).empty())
                return true;
        return false;
    };
    while (row >= 0 && !isFilled())
        --row;
    return row;
}

void GridCells::Clear() {
    ++changes_;
    std::fill(rows_.begin(), rows_.end(), Row());
    source_ = nullptr;
}

void GridCells::Supply(int firstRow, std::int32_t rows, RowSource source) {
    if (firstRow < 0 || rows < 0 || firstRow > Rows() - rows)
        outside();
    ++changes_;
    source_ = std::move(source);
    for (std::int32_t number = 1; number <= rows; ++number)
        rows_[static_cast<std::size_t>(firstRow + number - 1)] = {{}, number};
}

const std::vector<GridCells::Cell>& GridCells::supplied(std::int32_t number) const {
    if (askedNumber_ != number || askedAt_ != changes_) {
        askedNumber_ = 0;
        asked_.assign(static_cast<std::size_t>(columns_), Cell());
        source_(number, asked_);
        askedNumber_ = number;
        askedAt_ = changes_;
    }
    return asked_;
}

void GridCells::checkPlace(int row, int column) const {
    if (row < 0 || row >= Rows() || column < 0 || column >= columns_)
        outside();
}

const GridCells::Cell& GridCells::at(int row, int column) const {
    checkPlace(row, column);
    static const Cell none;
    const Row& found = rows_[static_cast<std::size_t>(row)];
    if (found.number > 0)
        return supplied(found.number)[static_cast<std::size_t>(column)];
    return found.cells.empty() ? none : found.cells[static_cast<std::size_t>(column)];
}

GridCells::Cell& GridCells::at(int row, int column) {
    checkPlace(row, column);
    Row& found = rows_[static_cast<std::size_t>(row)];
    if (found.number > 0) {
        found.cells = supplied(found.number);
        found.number = 0;
    }
    found.cells.resize(static_cast<std::size_t>(columns_));
    ++changes_;
    return found.cells[static_cast<std::size_t>(column)];
}

const std::wstring& GridCells::Text(int row, int column) const {
    return at(row, column).text;
}

void GridCells::Text(int row, int column, std::wstring text) {
    at(row, column).text = std::move(text);
}

std::optional<Colour> GridCells::TextColour(int row, int column) const {
    return at(row, column).colour;
}

void GridCells::TextColour(int row, int column, std::optional<Colour> colour) {
    at(row, column).colour = colour;
}

Alignment GridCells::CellAlignment(int row, int column) const {
    return at(row, column).alignment;
}

void GridCells::CellAlignment(int row, int column, Alignment alignment) {
    at(row, column).alignment = alignment;
}

void GridCells::Sort(int firstRow, int lastRow, int column, SortOrder order) {
    if (firstRow > lastRow)
        return;
    // Both ends have to be there.
    checkPlace(firstRow, column);
    checkPlace(lastRow, column);
    // Asked once: the mark must not change between two comparisons.
    const NumberLocale locale = UserLocale();
    std::vector<SortedRow> keys;
    keys.reserve(static_cast<std::size_t>(lastRow - firstRow) + 1);
    for (int row = firstRow; row <= lastRow; ++row)
        keys.push_back(sortedRow(Text(row, column), static_cast<std::size_t>(row), locale));
    std::stable_sort(keys.begin(), keys.end(), standsBefore);
    if (order == SortOrder::Descending)
        std::reverse(keys.begin(), keys.end());
    ++changes_;
    std::vector<Row> sorted;
    sorted.reserve(keys.size());
    for (const SortedRow& key : keys)
        sorted.push_back(std::move(rows_[key.row]));
    std::move(sorted.begin(), sorted.end(), rows_.begin() + static_cast<std::ptrdiff_t>(firstRow));
}

} // namespace kalvrooms::Gui
