#include "platform/GridCells.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <tuple>
#include <utility>

#include "model/NumberText.h"
#include "model/RuntimeError.h"

namespace kalvrooms::Gui {
namespace {

// Numbers stand before texts, and what is empty stands last.
enum class Kind { Number, Text, Empty };

// A cell's place in the order. The letters without their marks decide first, so that "Übung" stands
// near "Uhr" and not behind "Zeichnen"; the marks decide only between equal ones.
struct SortKey {
    Kind kind = Kind::Empty;
    double number = 0.0;
    std::wstring letters;
    std::wstring folded;
    std::size_t row = 0;
};

wchar_t small(wchar_t character) {
    const bool latin = character >= L'A' && character <= L'Z';
    // The capitals of Latin-1; the multiplication sign stands among them.
    const bool marked = character >= 0xC0 && character <= 0xDE && character != 0xD7;
    return latin || marked ? static_cast<wchar_t>(character + 0x20) : character;
}

// The small letters of Latin-1 from 0xDF on, as one or two plain ones.
constexpr const wchar_t* withoutMark[] = {
    L"ss", L"a", L"a",    L"a", L"a", L"a", L"a", L"ae", L"c", L"e",  L"e",
    L"e",  L"e", L"i",    L"i", L"i", L"i", L"d", L"n",  L"o", L"o",  L"o",
    L"o",  L"o", L"\xF7", L"o", L"u", L"u", L"u", L"u",  L"y", L"th", L"y"};
constexpr wchar_t firstMarked = 0xDF;

SortKey keyOf(const std::wstring& text, std::size_t row, const NumberLocale& locale) {
    SortKey key;
    key.row = row;
    if (text.empty())
        return key;
    if (IsNumeric(text, locale)) {
        key.kind = Kind::Number;
        key.number = ToDouble(text, locale);
        return key;
    }
    key.kind = Kind::Text;
    for (const wchar_t character : text) {
        const wchar_t letter = small(character);
        key.folded.push_back(letter);
        if (letter >= firstMarked &&
            letter < firstMarked + static_cast<wchar_t>(std::size(withoutMark)))
            key.letters += withoutMark[letter - firstMarked];
        else
            key.letters.push_back(letter);
    }
    return key;
}

bool standsBefore(const SortKey& a, const SortKey& b) {
    return std::tie(a.kind, a.number, a.letters, a.folded) <
           std::tie(b.kind, b.number, b.letters, b.folded);
}

[[noreturn]] void outside() {
    throw RuntimeError(RuntimeError::SubscriptOutOfRange);
}

} // namespace

void GridCells::Resize(int rows, int columns) {
    if (rows < 0 || columns < 0)
        outside();
    ++changes_;
    columns_ = columns;
    rows_.resize(static_cast<std::size_t>(rows));
    for (std::vector<Cell>& row : rows_)
        row.resize(static_cast<std::size_t>(columns));
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
    std::vector<SortKey> keys;
    keys.reserve(static_cast<std::size_t>(lastRow - firstRow) + 1);
    for (int row = firstRow; row <= lastRow; ++row)
        keys.push_back(keyOf(at(row, column).text, static_cast<std::size_t>(row), locale));
    std::stable_sort(keys.begin(), keys.end(), standsBefore);
    if (order == SortOrder::Descending)
        std::reverse(keys.begin(), keys.end());
    std::vector<std::vector<Cell>> sorted;
    sorted.reserve(keys.size());
    for (const SortKey& key : keys)
        sorted.push_back(std::move(rows_[key.row]));
    std::move(sorted.begin(), sorted.end(), rows_.begin() + static_cast<std::ptrdiff_t>(firstRow));
}

} // namespace kalvrooms::Gui
