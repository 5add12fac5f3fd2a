#include "FakeSpreadsheets.h"

#include <algorithm>

#include "model/RuntimeError.h"

namespace kalvrooms {

namespace {

// What a program may set in one array and what a cell holds at most.
constexpr std::size_t longestTextInArray = 911;
constexpr std::size_t longestText = 32767;

[[noreturn]] void refuse() {
    throw RuntimeError(FakeSpreadsheets::ApplicationError, L"Anwendungsfehler");
}

bool contains(const CellRange& range, int row, int column) {
    return row >= range.Row && row < range.Row + range.Rows && column >= range.Column &&
           column < range.Column + range.Columns;
}

bool looksLikeDate(const std::wstring& text) {
    const auto slash = text.find(L'/');
    return slash != std::wstring::npos && slash > 0 && slash + 1 < text.size() &&
           text.find_first_not_of(L"0123456789/") == std::wstring::npos;
}

// Entered into a cell of any format but the text format, in a program that talks English to it.
CellValue taken(const std::wstring& text) {
    if (text.empty()) {
        return {};
    }
    if (text.front() == L'\'') {
        return text.substr(1);
    }
    if (text.front() == L'=') {
        return CellError{L"#NAME?"};
    }
    if (text == L"TRUE" || text == L"FALSE") {
        return text == L"TRUE";
    }
    if (looksLikeDate(text)) {
        return std::wstring(L"01.02.2024");
    }
    if (IsNumeric(text, NumberLocale::Point())) {
        return ToDouble(text, NumberLocale::Point());
    }
    return text;
}

class SheetObject final : public Worksheet {
  public:
    SheetObject(FakeSpreadsheets& owner, std::shared_ptr<FakeSpreadsheets::Instance> instance,
                std::shared_ptr<FakeWorkbook> workbook)
        : owner_(owner), instance_(std::move(instance)), workbook_(std::move(workbook)),
          sheet_(workbook_->Active) {
        owner_.objects(+1);
    }
    ~SheetObject() override { owner_.objects(-1); }

    CellValue Value(int row, int column) override {
        begin("Value");
        check({row, column, 1, 1});
        return sheet().At(row, column);
    }
    void Value(int row, int column, const CellValue& value) override {
        begin("Value=");
        check({row, column, 1, 1});
        sheet().Enter(row, column, value);
    }
    CellBlock Values(const CellRange& range) override {
        begin("Values");
        check(range);
        CellBlock block(range.Rows, range.Columns);
        for (int row = 0; row < range.Rows; ++row) {
            for (int column = 0; column < range.Columns; ++column) {
                block.At(row, column) = sheet().At(range.Row + row, range.Column + column);
            }
        }
        return block;
    }
    void Values(const CellRange& range, const CellBlock& values) override {
        begin("Values=");
        check(range);
        if (range.Rows != values.Rows() || range.Columns != values.Columns()) {
            refuse();
        }
        for (int row = 0; row < range.Rows; ++row) {
            for (int column = 0; column < range.Columns; ++column) {
                const CellValue& value = values.At(row, column);
                const auto* text = std::get_if<std::wstring>(&value);
                if (text && text->size() > longestTextInArray) {
                    refuse();
                }
                sheet().Enter(range.Row + row, range.Column + column, value);
            }
        }
    }
    void Fill(const CellRange& range, const CellValue& value) override {
        begin("Fill");
        check(range);
        for (int row = 0; row < range.Rows; ++row) {
            for (int column = 0; column < range.Columns; ++column) {
                sheet().Enter(range.Row + row, range.Column + column, value);
            }
        }
    }
    void NumberFormat(const CellRange& range, const std::wstring& format) override {
        begin("NumberFormat");
        check(range);
        sheet().Format(range, format);
    }
    void SaveAs(const std::wstring& fileName) override {
        begin("SaveAs");
        if (std::count(owner_.ReadOnlyFiles.begin(), owner_.ReadOnlyFiles.end(), fileName) > 0) {
            refuse();
        }
        owner_.Files[fileName] = *workbook_;
    }

  private:
    void begin(const std::string& name) {
        owner_.call(name);
        if (instance_->Ended) {
            throw RuntimeError(RuntimeError::ServerUnavailable);
        }
    }
    FakeSheet& sheet() { return workbook_->Sheets.at(sheet_); }
    void check(const CellRange& range) {
        if (range.Row < 1 || range.Column < 1 || range.Rows < 1 || range.Columns < 1 ||
            range.Row - 1 > sheet().Rows - range.Rows || range.Column - 1 > 256 - range.Columns) {
            refuse();
        }
    }

    FakeSpreadsheets& owner_;
    std::shared_ptr<FakeSpreadsheets::Instance> instance_;
    std::shared_ptr<FakeWorkbook> workbook_;
    std::size_t sheet_;
};

class WorkbookObject final : public SpreadsheetWorkbook {
  public:
    WorkbookObject(FakeSpreadsheets& owner, std::shared_ptr<FakeSpreadsheets::Instance> instance,
                   std::shared_ptr<FakeWorkbook> workbook, std::wstring name)
        : owner_(owner), instance_(std::move(instance)), workbook_(std::move(workbook)),
          name_(std::move(name)) {
        owner_.objects(+1);
    }
    ~WorkbookObject() override { owner_.objects(-1); }

    std::unique_ptr<Worksheet> ActiveSheet() override {
        return owner_.call("ActiveSheet") ? nullptr : sheet();
    }
    std::unique_ptr<Worksheet> AddWorksheet() override {
        if (owner_.call("AddWorksheet")) {
            return nullptr;
        }
        workbook_->Sheets.insert(workbook_->Sheets.begin() +
                                     static_cast<std::ptrdiff_t>(workbook_->Active),
                                 FakeSheet());
        return sheet();
    }
    void Save() override {
        owner_.call("Save");
        if (std::count(owner_.ReadOnlyFiles.begin(), owner_.ReadOnlyFiles.end(), name_) > 0) {
            refuse();
        }
        owner_.Files[name_] = *workbook_;
    }

  private:
    std::unique_ptr<Worksheet> sheet() {
        return std::make_unique<SheetObject>(owner_, instance_, workbook_);
    }
    FakeSpreadsheets& owner_;
    std::shared_ptr<FakeSpreadsheets::Instance> instance_;
    std::shared_ptr<FakeWorkbook> workbook_;
    std::wstring name_;
};

class ApplicationObject final : public SpreadsheetApplication {
  public:
    ApplicationObject(FakeSpreadsheets& owner, std::shared_ptr<FakeSpreadsheets::Instance> instance)
        : owner_(owner), instance_(std::move(instance)) {
        owner_.objects(+1);
    }
    ~ApplicationObject() override { owner_.objects(-1); }

    void DisplayAlerts(bool on) override {
        owner_.call("DisplayAlerts");
        instance_->Alerts = on;
    }
    std::unique_ptr<SpreadsheetWorkbook> OpenWorkbook(const std::wstring& fileName) override {
        if (owner_.call("OpenWorkbook")) {
            return nullptr;
        }
        auto& open = instance_->Open[fileName];
        if (!open) {
            const auto file = owner_.Files.find(fileName);
            if (file == owner_.Files.end()) {
                instance_->Open.erase(fileName);
                refuse();
            }
            open = std::make_shared<FakeWorkbook>(file->second);
        }
        return std::make_unique<WorkbookObject>(owner_, instance_, open, fileName);
    }
    std::unique_ptr<SpreadsheetWorkbook> AddWorkbook() override {
        if (owner_.call("AddWorkbook")) {
            return nullptr;
        }
        ++instance_->Unnamed;
        auto workbook = std::make_shared<FakeWorkbook>();
        workbook->Sheets.resize(3);
        return std::make_unique<WorkbookObject>(owner_, instance_, workbook, L"Mappe1");
    }
    void CloseWorkbooks() override {
        owner_.call("CloseWorkbooks");
        instance_->Open.clear();
        instance_->Unnamed = 0;
    }
    void Quit() override {
        owner_.call("Quit");
        owner_.ObjectsAtQuit = owner_.OpenObjects();
        instance_->Ended = true;
    }

  private:
    FakeSpreadsheets& owner_;
    std::shared_ptr<FakeSpreadsheets::Instance> instance_;
};

} // namespace

// ------------------------------------------------------------------------- cells

CellValue FakeSheet::At(int row, int column) const {
    const auto found = cells_.find({row, column});
    return found == cells_.end() ? CellValue() : found->second;
}

void FakeSheet::Put(int row, int column, CellValue value) {
    if (std::holds_alternative<std::monostate>(value)) {
        cells_.erase({row, column});
    } else {
        cells_[{row, column}] = std::move(value);
    }
}

void FakeSheet::Enter(int row, int column, const CellValue& value) {
    const bool asText = FormatAt(row, column) == TextNumberFormat;
    if (const auto* text = std::get_if<std::wstring>(&value)) {
        if (text->size() > longestText) {
            refuse();
        }
        Put(row, column, asText && !text->empty() ? CellValue(*text) : taken(*text));
    } else if (const auto* number = std::get_if<double>(&value); number && asText) {
        Put(row, column, FromDoubleInvariant(*number));
    } else {
        Put(row, column, value);
    }
}

void FakeSheet::Format(const CellRange& range, const std::wstring& format) {
    formats_.emplace_back(range, format);
}

std::wstring FakeSheet::FormatAt(int row, int column) const {
    for (auto format = formats_.rbegin(); format != formats_.rend(); ++format) {
        if (contains(format->first, row, column)) {
            return format->second;
        }
    }
    return GeneralNumberFormat;
}

// ------------------------------------------------------------------------- server

bool FakeSpreadsheets::call(const std::string& name) {
    ++calls_;
    log_.push_back(name);
    if (FailAt != 0 && (calls_ == FailAt || (Gone && calls_ > FailAt))) {
        if (Gone) {
            for (const auto& instance : created_) {
                instance->Ended = true;
            }
            throw RuntimeError(RuntimeError::ServerUnavailable);
        }
        throw RuntimeError(FailWith);
    }
    return NothingAt == calls_;
}

int FakeSpreadsheets::LeftBehind() const {
    return static_cast<int>(std::count_if(created_.begin(), created_.end(),
                                          [](const auto& instance) { return !instance->Ended; }));
}

std::unique_ptr<SpreadsheetApplication> FakeSpreadsheets::AttachRunning() {
    if (call("AttachRunning")) {
        return nullptr;
    }
    if (!Running || Running->Ended) {
        throw RuntimeError(RuntimeError::CannotCreateObject);
    }
    return std::make_unique<ApplicationObject>(*this, Running);
}

std::unique_ptr<SpreadsheetApplication> FakeSpreadsheets::CreateInstance() {
    if (call("CreateInstance")) {
        return nullptr;
    }
    if (!Installed) {
        throw RuntimeError(RuntimeError::CannotCreateObject);
    }
    created_.push_back(std::make_shared<Instance>());
    return std::make_unique<ApplicationObject>(*this, created_.back());
}

} // namespace kalvrooms
