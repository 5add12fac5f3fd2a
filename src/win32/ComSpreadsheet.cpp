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
        return value.bstrVal ? std::wstring(value.bstrVal, SysStringLen(value.bstrVal)) : L"";
    case VT_R8:
        return value.dblVal;
    case VT_BOOL:
        return value.boolVal != VARIANT_FALSE;
    case VT_ERROR:
        return CellError{shownError(value.scode)};
    default: {
        ComVariant other;
        VariantCopy(other.get(), const_cast<VARIANT*>(&value));
        if (value.vt == VT_DATE)
            return CellDate{other.toText()};
        return other.toDouble();
    }
    }
}

ComVariant toVariant(const CellValue& value) {
    struct Convert {
        ComVariant operator()(std::monostate) const { return ComVariant(); }
        ComVariant operator()(const std::wstring& text) const { return ComVariant(text); }
        ComVariant operator()(double number) const { return ComVariant(number); }
        ComVariant operator()(bool truth) const { return ComVariant(truth); }
        ComVariant operator()(const CellError& error) const { return ComVariant(error.Shown); }
        ComVariant operator()(const CellDate& date) const { return ComVariant(date.Shown); }
    };
    return std::visit(Convert(), value);
}

// Looks into a block of variants while it lives: element by element through the array's own
// functions every text would be copied twice.
class BlockAccess {
  public:
    // Error: TypeMismatch when the variant holds no block of that size.
    BlockAccess(const ComVariant& block, int rows, int columns) : rows_(rows) {
        const VARIANT& value = block.raw();
        if (value.vt != (VT_ARRAY | VT_VARIANT) || !value.parray ||
            SafeArrayGetDim(value.parray) != 2 || size(value.parray, 1) != rows ||
            size(value.parray, 2) != columns ||
            FAILED(SafeArrayAccessData(value.parray, reinterpret_cast<void**>(&elements_))))
            throw RuntimeError(RuntimeError::TypeMismatch);
        array_ = value.parray;
    }
    BlockAccess(const BlockAccess&) = delete;
    BlockAccess& operator=(const BlockAccess&) = delete;
    ~BlockAccess() { SafeArrayUnaccessData(array_); }

    // Counted from 0; the rows of a column lie side by side.
    VARIANT& at(int row, int column) {
        return elements_[static_cast<std::size_t>(column) * static_cast<std::size_t>(rows_) +
                         static_cast<std::size_t>(row)];
    }

  private:
    static LONG size(SAFEARRAY* array, UINT dimension) {
        LONG lower = 0;
        LONG upper = -1;
        SafeArrayGetLBound(array, dimension, &lower);
        SafeArrayGetUBound(array, dimension, &upper);
        return upper - lower + 1;
    }

    SAFEARRAY* array_ = nullptr;
    VARIANT* elements_ = nullptr;
    int rows_;
};

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
        const ComVariant values = range(cells).Get(L"Value");
        if (cells.Rows == 1 && cells.Columns == 1) {
            block.At(0, 0) = toCell(values.raw());
            return block;
        }
        BlockAccess elements(values, cells.Rows, cells.Columns);
        for (int row = 0; row < cells.Rows; ++row)
            for (int column = 0; column < cells.Columns; ++column)
                block.At(row, column) = toCell(elements.at(row, column));
        return block;
    }
    void Values(const CellRange& cells, const CellBlock& values) override {
        SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(cells.Rows), 1},
                                   {static_cast<ULONG>(cells.Columns), 1}};
        const ComVariant array(SafeArrayCreate(VT_VARIANT, 2, bounds), VT_VARIANT);
        {
            BlockAccess elements(array, cells.Rows, cells.Columns);
            for (int row = 0; row < cells.Rows; ++row)
                for (int column = 0; column < cells.Columns; ++column)
                    std::swap(elements.at(row, column), *toVariant(values.At(row, column)).get());
        }
        range(cells).Put(L"Value", array);
    }
    void Fill(const CellRange& cells, const CellValue& value) override {
        range(cells).Put(L"Value", toVariant(value));
    }
    void NumberFormat(const CellRange& cells, const std::wstring& format) override {
        range(cells).Put(L"NumberFormat", ComVariant(format));
    }
    void SaveAs(const std::wstring& fileName) override {
        const std::wstring version = application_.Get(L"Version").toText();
        const bool namesItsForms =
            std::wcstol(version.c_str(), nullptr, 10) >= firstVersionWithForms;
        const ComVariant name(fileName);
        const ComVariant form(namesItsForms ? workbookForm : ownWorkbookForm);
        sheet_.Call(L"SaveAs", {&name, &form});
    }

  private:
    ComObject range(const CellRange& cells) {
        const ComVariant address(addressOf(cells));
        return sheet_.ObjectOf(L"range", L"Range", {&address});
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

    void DisplayAlerts(bool on) override { application_.Put(L"DisplayAlerts", ComVariant(on)); }
    std::unique_ptr<SpreadsheetWorkbook> OpenWorkbook(const std::wstring& fileName) override {
        const ComVariant name(fileName);
        return std::make_unique<ComWorkbook>(application_,
                                             workbooks().CallObject(L"workbook", L"Open", {&name}));
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
