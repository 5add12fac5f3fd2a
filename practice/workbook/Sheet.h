#pragma once
// A sheet of cells, and a workbook of sheets.

#include "practice/workbook/Address.h"
#include "practice/workbook/Cell.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kalvrooms::practice::spreadsheet {

// The values of an area, row by row.
struct Block {
    Block(int rows_, int columns_)
        : rows(rows_), columns(columns_),
          values(static_cast<std::size_t>(rows_) * static_cast<std::size_t>(columns_)) {}

    Value& at(int row, int column) {
        return values[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                      static_cast<std::size_t>(column)];
    }
    const Value& at(int row, int column) const { return const_cast<Block*>(this)->at(row, column); }

    int rows;
    int columns;
    std::vector<Value> values;
};

class Sheet {
  public:
    explicit Sheet(std::wstring name) : name_(std::move(name)) {}

    const std::wstring& name() const { return name_; }

    // One value for every cell of the area: texts as if they had been typed, all others as they
    // are. Cells of the text format turn everything into text.
    void Put(const Area& area, const Value& value, int thisYear);
    // A value each. Cells that the block does not reach get "#N/A"; a block of one row or one
    // column serves all. Raises a SheetError for a text that is too long for this way.
    void Put(const Area& area, const Block& block, int thisYear);
    void Format(const Area& area, const std::wstring& format);
    // The format that all cells of the area have; empty when they differ.
    std::wstring FormatOf(const Area& area) const;

    const Cell& At(int row, int column) const;
    // As it stands in a file, unjudged.
    void Set(int row, int column, Cell cell);
    Area Used() const;

    using Cells = std::map<std::pair<int, int>, Cell>; // by row and column
    const Cells& cells() const { return cells_; }

    // Texts in a block are cut off here by older versions of such applications; longer ones travel
    // in a call of their own.
    static constexpr std::size_t LongestTextInBlock = 911;

  private:
    void PutOne(int row, int column, const Value& value, int thisYear);

    std::wstring name_;
    Cells cells_;
};

class Workbook {
  public:
    // As a new one comes from the application.
    static Workbook New();

    std::vector<std::shared_ptr<Sheet>> sheets;
    std::size_t active = 0;

    // In front of the active sheet; the new one becomes active.
    std::shared_ptr<Sheet> AddSheet();
};

} // namespace kalvrooms::practice::spreadsheet
