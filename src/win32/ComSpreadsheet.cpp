#include "win32/ComSpreadsheet.h"

#include <cstddef>
#include <cwchar>
#include <utility>

#include "model/RuntimeError.h"

namespace kalvrooms {
namespace {

constexpr const wchar_t* applicationClass = L"Excel.Application";
// English, United States: names, formats and numbers mean the same whatever the user's language.
constexpr LCID applicationLocale = 1033;

// Workbook forms of the application: the one of its versions 97 to 2003, and how those versions
// themselves call it.
constexpr std::int32_t workbookForm = 56;
constexpr std::int32_t ownWorkbookForm = -4143;
constexpr int firstVersionWithForms = 12;

std::wstring columnName(int column) {
    std::wstring name;
    for (; column > 0; column = (column - 1) / 26)
        name.insert(name.begin(), static_cast<wchar_t>(L'A' + (column - 1) % 26));
    return name;
}

std::wstring addressOf(const CellRange& range) {
    return columnName(range.Column) + std::to_wstring(range.Row) + L":" +
           columnName(range.Column + range.Columns - 1) +
           std::to_wstring(range.Row + range.Rows - 1);
}

std::wstring shownError(SCODE code) {
    switch (code & 0xFFFF) {
    case 2000:
        return L"#NULL!";
    case 2007:
        return L"#DIV/0!";
    case 2015:
        return L"#VALUE!";
    case 2023:
        return L"#REF!";
    case 2029:
        return L"#NAME?";
    case 2036:
        return L"#NUM!";
    default:
        return L"#N/A";
    }
}

CellValue toCell(const VARIANT& value) {
    switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
        return std::monostate();
    case VT_BSTR:
        return TextOf(value.bstrVal);
    case VT_R8:
        return value.dblVal;
    case VT_BOOL:
        return value.boolVal != VARIANT_FALSE;
    case VT_ERROR:
        return CellError{shownError(value.scode)};
    case VT_DATE:
        return CellDate{TextOf(Variant::CopyOf(value))};
    default:
        return NumberOf(Variant::CopyOf(value));
    }
}

Variant toVariant(const CellValue& value) {
    struct Convert {
        Variant operator()(std::monostate) const { return {}; }
        Variant operator()(const std::wstring& text) const { return text; }
        Variant operator()(double number) const { return number; }
        Variant operator()(bool truth) const { return truth; }
        Variant operator()(const CellError& error) const { return error.Shown; }
        Variant operator()(const CellDate& date) const { return date.Shown; }
    };
    return std::visit(Convert(), value);
}

std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}

class ComWorksheet : public Worksheet {
  public:
    ComWorksheet(ComObject application, ComObject sheet)
        : application_(std::move(application)), sheet_(std::move(sheet)) {}

    CellValue Value(int row, int column) override {
        return toCell(range({row, column, 1, 1}).Get(L"Value").raw());
    }
    void Value(int row, int column, const CellValue& value) override {
        range({row, column, 1, 1}).Put(L"Value", toVariant(value));
    }
    CellBlock Values(const CellRange& cells) override {
        CellBlock block(cells.Rows, cells.Columns);
        const Variant values = range(cells).Get(L"Value");
        if (cells.Rows == 1 && cells.Columns == 1) {
            block.At(0, 0) = toCell(values.raw());
            return block;
        }
        ArrayView elements(values, 2);
        if (elements.type() != VT_VARIANT || elements.rows() != at(cells.Rows) ||
            elements.columns() != at(cells.Columns))
            throw RuntimeError(RuntimeError::TypeMismatch);
        for (int row = 0; row < cells.Rows; ++row)
            for (int column = 0; column < cells.Columns; ++column)
                block.At(row, column) = toCell(elements.Value(at(row), at(column)));
        return block;
    }
    void Values(const CellRange& cells, const CellBlock& values) override {
        const Variant array = NewArray(VT_VARIANT, {{static_cast<ULONG>(cells.Rows), 1},
                                                    {static_cast<ULONG>(cells.Columns), 1}});
        {
            ArrayView elements(array, 2);
            for (int row = 0; row < cells.Rows; ++row)
                for (int column = 0; column < cells.Columns; ++column)
                    elements.Value(at(row), at(column)) =
                        toVariant(values.At(row, column)).detach();
        }
        range(cells).Put(L"Value", array);
    }
    void Fill(const CellRange& cells, const CellValue& value) override {
        range(cells).Put(L"Value", toVariant(value));
    }
    void NumberFormat(const CellRange& cells, const std::wstring& format) override {
        range(cells).Put(L"NumberFormat", format);
    }
    void SaveAs(const std::wstring& fileName) override {
        const std::wstring version = TextOf(application_.Get(L"Version"));
        const bool namesItsForms =
            std::wcstol(version.c_str(), nullptr, 10) >= firstVersionWithForms;
        sheet_.Call(L"SaveAs", {fileName, namesItsForms ? workbookForm : ownWorkbookForm});
    }

  private:
    ComObject range(const CellRange& cells) {
        return sheet_.ObjectOf(L"range", L"Range", {addressOf(cells)});
    }

    ComObject application_;
    ComObject sheet_;
};

class ComWorkbook : public SpreadsheetWorkbook {
  public:
    ComWorkbook(ComObject application, ComObject workbook)
        : application_(std::move(application)), workbook_(std::move(workbook)) {}

    std::unique_ptr<Worksheet> ActiveSheet() override {
        return std::make_unique<ComWorksheet>(application_,
                                              workbook_.ObjectOf(L"worksheet", L"ActiveSheet"));
    }
    std::unique_ptr<Worksheet> AddWorksheet() override {
        return std::make_unique<ComWorksheet>(
            application_,
            workbook_.ObjectOf(L"worksheets", L"Worksheets").CallObject(L"worksheet", L"Add"));
    }
    void Save() override { workbook_.Call(L"Save"); }

  private:
    ComObject application_;
    ComObject workbook_;
};

class ComSpreadsheetApplication : public SpreadsheetApplication {
  public:
    explicit ComSpreadsheetApplication(ComObject application)
        : application_(std::move(application)) {
        application_.locale(applicationLocale);
    }

    bool DisplayAlerts() override { return LongOf(application_.Get(L"DisplayAlerts")) != 0; }
    std::int32_t AutomationSecurity() override {
        return LongOf(application_.Get(L"AutomationSecurity"));
    }
    void AutomationSecurity(std::int32_t level) override {
        application_.Put(L"AutomationSecurity", level);
    }
    void DisplayAlerts(bool on) override { application_.Put(L"DisplayAlerts", on); }
    std::unique_ptr<SpreadsheetWorkbook> OpenWorkbook(const std::wstring& fileName) override {
        return std::make_unique<ComWorkbook>(
            application_, workbooks().CallObject(L"workbook", L"Open", {fileName}));
    }
    std::unique_ptr<SpreadsheetWorkbook> AddWorkbook() override {
        return std::make_unique<ComWorkbook>(application_,
                                             workbooks().CallObject(L"workbook", L"Add"));
    }
    void CloseWorkbooks() override { workbooks().Call(L"Close"); }
    void Quit() override { application_.Call(L"Quit"); }

  private:
    ComObject workbooks() { return application_.ObjectOf(L"workbooks", L"Workbooks"); }

    ComObject application_;
};

class ComSpreadsheetServer : public SpreadsheetServer {
  public:
    explicit ComSpreadsheetServer(std::shared_ptr<ComSession> session)
        : session_(std::move(session)) {}

    std::unique_ptr<SpreadsheetApplication> AttachRunning() override {
        return std::make_unique<ComSpreadsheetApplication>(
            ComObject::Attach(session_, L"spreadsheet application", applicationClass));
    }
    std::unique_ptr<SpreadsheetApplication> CreateInstance() override {
        return std::make_unique<ComSpreadsheetApplication>(ComObject::Create(
            session_, L"spreadsheet application", applicationClass, CLSCTX_LOCAL_SERVER));
    }

  private:
    std::shared_ptr<ComSession> session_;
};

} // namespace

std::unique_ptr<SpreadsheetServer> MakeComSpreadsheetServer(std::shared_ptr<ComSession> session) {
    return std::make_unique<ComSpreadsheetServer>(std::move(session));
}

std::unique_ptr<SpreadsheetServer> MakeComSpreadsheetServer() {
    return MakeComSpreadsheetServer(std::make_shared<ComSession>());
}

} // namespace kalvrooms
