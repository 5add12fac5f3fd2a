#pragma once
// A sheet of cells, and a workbook of sheets.

#include "files/SpreadsheetApplication.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kalvrooms::practice::spreadsheet {

// The text of a date is the one that stands in files: "2024-12-31T00:00:00.000".
struct Cell {
    CellValue value;
    std::wstring format = GeneralNumberFormat;
    bool operator==(const Cell&) const = default;
};

// What becomes of a text that is typed into a cell of any format but the text format: the
// application guesses, as a user in the United States would mean it. A formula is not calculated;
// whatever it says, the cell shows "#NAME?".
CellValue Typed(const std::wstring& text);

// Raises a SheetError for cells that do not lie on the sheet.
class Sheet {
  public:
    explicit Sheet(std::wstring name) : name_(std::move(name)) {}

    const std::wstring& name() const { return name_; }
    // Sheets have 2^14, 2^16 or 2^20 rows, by the application's version.
    int rows = 65536;
    static constexpr int Columns = 256;

    void Check(const CellRange& range) const;
    // One value for every cell: texts as if they had been typed, all others as they are. Cells of
    // the text format turn everything into text. SheetError for a text that no cell takes.
    void Fill(const CellRange& range, const CellValue& value);
    // A value each. SheetError for another size, and for a text that is too long for this way.
    void Put(const CellRange& range, const CellBlock& values);
    CellBlock Values(const CellRange& range) const;
    void Format(const CellRange& range, const std::wstring& format);

    const Cell& At(int row, int column) const;
    // As it stands in a file, unjudged.
    void Set(int row, int column, Cell cell);

    using Cells = std::map<std::pair<int, int>, Cell>; // by row and column
    const Cells& cells() const { return cells_; }

    static constexpr std::size_t LongestText = 32767;
    // Texts in a block are cut off here by older versions of such applications; longer ones travel
    // in a call of their own.
    static constexpr std::size_t LongestTextInBlock = 911;

  private:
    void enter(int row, int column, const CellValue& value);

    std::wstring name_;
    Cells cells_;
};

class Workbook {
  public:
    // As a new one comes from the application.
    static Workbook New();
    // With sheets of its own.
    Workbook Copy() const;

    Sheet& ActiveSheet() const { return *sheets.at(active); }
    // In front of the active sheet; the new one becomes active.
    std::shared_ptr<Sheet> AddSheet();

    std::vector<std::shared_ptr<Sheet>> sheets;
    std::size_t active = 0;
};

} // namespace kalvrooms::practice::spreadsheet
