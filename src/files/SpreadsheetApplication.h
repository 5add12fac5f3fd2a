#pragma once
// What the program asks of the spreadsheet application. The list reader and writer are made
// against these interfaces; an adapter puts the application's automation server behind them.
//
// Every operation may raise a RuntimeError with the number and description that the application
// gave. Each call below is meant to be one call across processes, or a small constant number of
// them, however many cells it carries. Rows and columns count from 1, as the application counts.
// Where the application's operations take a locale they get 1033, so that formats and numbers mean
// the same whatever the user's language.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace kalvrooms {

// An error value such as a division by zero, in the form in which the sheet shows it ("#N/A").
struct CellError {
    std::wstring Shown;
    bool operator==(const CellError&) const = default;
};

// A date as its text under the user's locale. It is no number, even where its text reads like one:
// "12.05.2024" has nothing but grouping points for a German.
struct CellDate {
    std::wstring Shown;
    bool operator==(const CellDate&) const = default;
};

// What a cell's "Value" holds; the first kind is the empty cell. Amounts of money arrive as
// numbers.
using CellValue = std::variant<std::monostate, std::wstring, double, bool, CellError, CellDate>;

struct CellRange {
    int Row = 1;
    int Column = 1;
    int Rows = 1;
    int Columns = 1;
    bool operator==(const CellRange&) const = default;
};

// The values of a range; inside it rows and columns count from 0.
class CellBlock {
  public:
    CellBlock(int rows, int columns)
        : rows_(rows), columns_(columns),
          cells_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns)) {}

    int Rows() const { return rows_; }
    int Columns() const { return columns_; }
    CellValue& At(int row, int column) { return cells_.at(index(row, column)); }
    const CellValue& At(int row, int column) const { return cells_.at(index(row, column)); }

  private:
    std::size_t index(int row, int column) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
               static_cast<std::size_t>(column);
    }
    int rows_;
    int columns_;
    std::vector<CellValue> cells_;
};

// Number formats that the program sets. In cells of the text format every text stays what it is;
// in all others the application takes it as if the user had typed it, so that "007" becomes a
// number and "=1+1" a formula. Numbers need the general format: they would become texts in cells
// of the text format.
inline const std::wstring TextNumberFormat = L"@";
inline const std::wstring GeneralNumberFormat = L"General";

class Worksheet {
  public:
    virtual ~Worksheet() = default;
    virtual CellValue Value(int row, int column) = 0;
    virtual void Value(int row, int column, const CellValue& value) = 0;
    // A range at once. A range that reaches over the end of the sheet is an error.
    virtual CellBlock Values(const CellRange& range) = 0;
    virtual void Values(const CellRange& range, const CellBlock& values) = 0;
    // The same value in every cell of the range. Setting the empty text leaves empty cells here as
    // in all other ways of setting it.
    virtual void Fill(const CellRange& range, const CellValue& value) = 0;
    virtual void NumberFormat(const CellRange& range, const std::wstring& format) = 0;
    // Saves the sheet's workbook under a name, in the workbook form that belongs to "xls".
    virtual void SaveAs(const std::wstring& fileName) = 0;
};

class SpreadsheetWorkbook {
  public:
    virtual ~SpreadsheetWorkbook() = default;
    virtual std::unique_ptr<Worksheet> ActiveSheet() = 0;
    virtual std::unique_ptr<Worksheet> AddWorksheet() = 0;
    virtual void Save() = 0;
};

// Releasing the object does not end the application; Quit does.
class SpreadsheetApplication {
  public:
    virtual ~SpreadsheetApplication() = default;
    virtual bool DisplayAlerts() = 0;
    virtual void DisplayAlerts(bool on) = 0;
    // Whether workbooks that a program opens may run their macros; one of the application's own
    // numbers.
    virtual std::int32_t AutomationSecurity() = 0;
    virtual void AutomationSecurity(std::int32_t level) = 0;
    static constexpr std::int32_t MacrosOff = 3;
    // A workbook that is open already is handed back.
    virtual std::unique_ptr<SpreadsheetWorkbook> OpenWorkbook(const std::wstring& fileName) = 0;
    virtual std::unique_ptr<SpreadsheetWorkbook> AddWorkbook() = 0;
    // All of them, the user's own included; without alerts unsaved changes are dropped.
    virtual void CloseWorkbooks() = 0;
    virtual void Quit() = 0;
};

class SpreadsheetServer {
  public:
    virtual ~SpreadsheetServer() = default;
    // Null or an error when no instance is running.
    virtual std::unique_ptr<SpreadsheetApplication> AttachRunning() = 0;
    // A new instance. Null or an error (CannotCreateObject) when the application cannot be started.
    virtual std::unique_ptr<SpreadsheetApplication> CreateInstance() = 0;
};

} // namespace kalvrooms
