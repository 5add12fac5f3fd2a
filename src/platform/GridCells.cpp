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
    std::vector<std::vector<Cell>> resized(static_cast<std::size_t>(rows));
    const std::size_t kept = columns == columns_ ? std::min(resized.size(), rows_.size()) : 0;
    for (std::size_t row = kept; row < resized.size(); ++row)
        resized[row].resize(width);
    for (std::size_t row = 0; row < std::min(resized.size(), rows_.size()); ++row) {
        if (row < kept)
            resized[row] = std::move(rows_[row]);
        else
            std::move(rows_[row].begin(),
                      rows_[row].begin() +
                          static_cast<std::ptrdiff_t>(std::min(width, rows_[row].size())),
                      resized[row].begin());
    }
    ++changes_;
    columns_ = columns;
    rows_.swap(resized);
}

int GridCells::LastFilledRow() const {
    const auto filled = [](const std::vector<Cell>& row) {
        return std::any_of(row.begin(), row.end(),
                           [](const Cell& cell) { return !cell.text.empty(); });
    };
    return Rows() - 1 -
           static_cast<int>(std::find_if(rows_.rbegin(), rows_.rend(), filled) - rows_.rbegin());
}

void GridCells::Clear() {
    ++changes_;
    for (std::vector<Cell>& row : rows_)
        std::fill(row.begin(), row.end(), Cell());
}

const GridCells::Cell& GridCells::at(int row, int column) const {
    if (row < 0 || row >= Rows() || column < 0 || column >= columns_)
        outside();
    return rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
}

GridCells::Cell& GridCells::at(int row, int column) {
    ++changes_;
    return const_cast<Cell&>(std::as_const(*this).at(row, column));
}

std::vector<GridCells::Cell>& GridCells::Row(int row) {
    if (row < 0 || row >= Rows())
        outside();
    ++changes_;
    return rows_[static_cast<std::size_t>(row)];
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
    at(firstRow, column);
    at(lastRow, column);
    // Asked once: the mark must not change between two comparisons.
    const NumberLocale locale = UserLocale();
    std::vector<SortedRow> keys;
    keys.reserve(static_cast<std::size_t>(lastRow - firstRow) + 1);
    for (int row = firstRow; row <= lastRow; ++row)
        keys.push_back(sortedRow(at(row, column).text, static_cast<std::size_t>(row), locale));
    std::stable_sort(keys.begin(), keys.end(), standsBefore);
    if (order == SortOrder::Descending)
        std::reverse(keys.begin(), keys.end());
    std::vector<std::vector<Cell>> sorted;
    sorted.reserve(keys.size());
    for (const SortedRow& key : keys)
        sorted.push_back(std::move(rows_[key.row]));
    std::move(sorted.begin(), sorted.end(), rows_.begin() + static_cast<std::ptrdiff_t>(firstRow));
}

} // namespace kalvrooms::Gui
