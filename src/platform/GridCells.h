#pragma once
// The contents of a grid, apart from any window: rows of cells with text, colour and alignment,
// row 0 being the fixed header. Drawing asks only for the cells that are visible, so a grid of
// 100,000 rows costs no more to show than one of 100.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kalvrooms::Gui {

using Colour = std::int32_t; // RGB, red in the low byte

enum class Alignment : std::uint8_t { Left, Centre };
enum class SortOrder { Ascending, Descending };

class GridCells {
  public:
    struct Cell {
        std::wstring text;
        std::optional<Colour> colour;
        Alignment alignment = Alignment::Left;
    };

    // Keeps what fits, fills the rest with empty cells. Without memory for it all stays as it was.
    void Resize(int rows, int columns);
    int Rows() const { return static_cast<int>(rows_.size()); }
    int Columns() const { return columns_; }
    // The last row with a text in it; -1 when there is none.
    int LastFilledRow() const;
    // Grows with every change: who shows the cells learns from it whether to paint them anew.
    std::uint64_t Changes() const { return changes_; }
    // Empties every cell, header included; the shape stays.
    void Clear();

    // Row and column from 0. The text holds until another row is looked at. Error:
    // SubscriptOutOfRange outside the shape.
    const std::wstring& Text(int row, int column) const;
    void Text(int row, int column, std::wstring text);
    std::optional<Colour> TextColour(int row, int column) const;
    void TextColour(int row, int column, std::optional<Colour> colour);
    Alignment CellAlignment(int row, int column) const;
    void CellAlignment(int row, int column, Alignment alignment);

    // Gives the cells of a row by its number, from 1; it gets empty ones.
    using RowSource = std::function<void(std::int32_t number, std::vector<Cell>& cells)>;
    // Rows from firstRow on that are not kept, but asked for whenever somebody looks at them, until
    // the cells are cleared. Setting a cell of such a row keeps that row from then on. Error:
    // SubscriptOutOfRange outside the shape.
    void Supply(int firstRow, std::int32_t rows, RowSource source);

    // Sorts the rows firstRow to lastRow (both included) by one column: two numbers (under the
    // user's locale) compare as numbers, numbers stand before texts, texts stand in the user's
    // alphabetical order, which begins with empty ones. Descending is the exact reverse.
    void Sort(int firstRow, int lastRow, int column, SortOrder order);

  private:
    // A row holds cells once one was set. Until then it is empty, or supplied by number.
    struct Row {
        std::vector<Cell> cells;
        std::int32_t number = 0;
    };
    void checkPlace(int row, int column) const;
    const Cell& at(int row, int column) const;
    Cell& at(int row, int column);
    const std::vector<Cell>& supplied(std::int32_t number) const;

    int columns_ = 0;
    std::uint64_t changes_ = 0;
    std::vector<Row> rows_;
    RowSource source_;
    // The row that was asked for last: its cells are looked at one after the other.
    mutable std::vector<Cell> asked_;
    mutable std::int32_t askedNumber_ = 0;
    mutable std::uint64_t askedAt_ = 0;
};

} // namespace kalvrooms::Gui
