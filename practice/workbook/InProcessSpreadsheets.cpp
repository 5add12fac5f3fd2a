#include "practice/workbook/InProcessSpreadsheets.h"

#include "drawing/Text.h"
#include "model/RuntimeError.h"
#include "practice/workbook/SheetError.h"

#include <algorithm>
#include <utility>

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr int exchangeForm = 56;

// What a client learns whose calls were rejected until its patience was spent.
class Busy final : public RuntimeError {
  public:
    Busy() : RuntimeError(AutomationError) {}
    bool IsBusy() const noexcept override { return true; }
};

class MemoryFiles final : public FileStore {
  public:
    explicit MemoryFiles(InProcessSpreadsheets& disk) : disk_(disk) {}

    std::wstring FullName(const std::wstring& name) const override { return name; }
    bool Exists(const std::wstring& name) const override { return disk_.Files.contains(name); }
    std::unique_ptr<OpenFile> Open(const std::wstring& name) override {
        if (!Exists(name))
            throw SheetError(L"There is no such file.");
        return std::make_unique<File>(disk_, name);
    }
    std::unique_ptr<OpenFile> Create(const std::wstring& name) override {
        if (disk_.ReadOnlyFiles.contains(name))
            throw SheetError(L"The file is protected.");
        return std::make_unique<File>(disk_, name);
    }

  private:
    class File final : public OpenFile {
      public:
        File(InProcessSpreadsheets& disk, std::wstring name)
            : disk_(disk), name_(std::move(name)) {}
        bool ReadOnly() const override { return disk_.ReadOnlyFiles.contains(name_); }
        Workbook Read() override { return disk_.Files.at(name_).Copy(); }
        void Write(const Workbook& workbook) override { disk_.Files[name_] = workbook.Copy(); }

      private:
        InProcessSpreadsheets& disk_;
        std::wstring name_;
    };

    InProcessSpreadsheets& disk_;
};

} // namespace

// What all interface objects are: counted, and of one instance.
class InProcessSpreadsheets::Object {
  public:
    Object(InProcessSpreadsheets& server, InstancePointer instance)
        : server_(server), instance_(std::move(instance)) {
        ++server_.openObjects_;
    }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

  protected:
    ~Object() { --server_.openObjects_; }

    // The step gets an empty answer when the call's fault wants that.
    template <class Step>
    auto call(const char* name, Step step) -> decltype(step()) {
        if (!server_.enter(name, instance_.get()))
            return decltype(step())();
        try {
            return step();
        } catch (const SheetError& error) {
            throw RuntimeError(error.number(), error.description());
        } catch (const DialogOpen&) {
            throw Busy();
        }
    }

    InProcessSpreadsheets& server_;
    InstancePointer instance_;
};

class InProcessSpreadsheets::SheetObject final : public Worksheet, private Object {
  public:
    SheetObject(InProcessSpreadsheets& server, InstancePointer instance, WorkbookPointer workbook,
                std::shared_ptr<Sheet> sheet)
        : Object(server, std::move(instance)), workbook_(std::move(workbook)),
          sheet_(std::move(sheet)) {}

    CellValue Value(int row, int column) override {
        return call(
            "Value",
            [&] {
                return sheet_->Values({row, column, 1, 1}).At(0, 0);
            });
    }
    void Value(int row, int column, const CellValue& value) override {
        change(
            "Value=",
            [&] {
                sheet_->Fill({row, column, 1, 1}, value);
            });
    }
    CellBlock Values(const CellRange& range) override {
        CellBlock values(range.Rows, range.Columns);
        call("Values", [&] { values = sheet_->Values(range); });
        return values;
    }
    void Values(const CellRange& range, const CellBlock& values) override {
        change(
            "Values=", [&] { sheet_->Put(range, values); });
    }
    void Fill(const CellRange& range, const CellValue& value) override {
        change(
            "Fill", [&] { sheet_->Fill(range, value); });
    }
    void NumberFormat(const CellRange& range, const std::wstring& format) override {
        change(
            "NumberFormat", [&] { sheet_->Format(range, format); });
    }
    void SaveAs(const std::wstring& fileName) override {
        call(
            "SaveAs", [&] { instance_->application.SaveAs(*workbook_, fileName, exchangeForm); });
    }

  private:
    template <class Step>
    void change(const char* name, Step step) {
        call(
            name,
            [&] {
                step();
                workbook_->saved = false;
            });
    }

    WorkbookPointer workbook_;
    std::shared_ptr<Sheet> sheet_;
};

class InProcessSpreadsheets::WorkbookObject final : public SpreadsheetWorkbook, private Object {
  public:
    WorkbookObject(InProcessSpreadsheets& server, InstancePointer instance,
                   WorkbookPointer workbook)
        : Object(server, std::move(instance)), workbook_(std::move(workbook)) {}

    std::unique_ptr<Worksheet> ActiveSheet() override {
        return call(
            "ActiveSheet", [&] { return sheet(); });
    }
    std::unique_ptr<Worksheet> AddWorksheet() override {
        return call(
            "AddWorksheet",
            [&] {
                workbook_->book.AddSheet();
                return sheet();
            });
    }
    void Save() override {
        call(
            "Save", [&] { instance_->application.Save(*workbook_); });
    }

  private:
    std::unique_ptr<Worksheet> sheet() {
        const Workbook& book = workbook_->book;
        return std::make_unique<SheetObject>(server_, instance_, workbook_,
                                             book.sheets.at(book.active));
    }

    WorkbookPointer workbook_;
};

class InProcessSpreadsheets::ApplicationObject final : public SpreadsheetApplication,
                                                       private Object {
  public:
    using Object::Object;

    bool DisplayAlerts() override {
        return call(
            "DisplayAlerts?", [&] { return instance_->application.displayAlerts; });
    }
    std::int32_t AutomationSecurity() override {
        return call(
            "AutomationSecurity?", [&] { return instance_->application.automationSecurity; });
    }
    void AutomationSecurity(std::int32_t level) override {
        call(
            "AutomationSecurity", [&] { instance_->application.automationSecurity = level; });
    }
    void DisplayAlerts(bool on) override {
        call(
            "DisplayAlerts", [&] { instance_->application.displayAlerts = on; });
    }
    std::unique_ptr<SpreadsheetWorkbook> OpenWorkbook(const std::wstring& fileName) override {
        return call(
            "OpenWorkbook", [&] { return handed(instance_->application.Open(fileName)); });
    }
    std::unique_ptr<SpreadsheetWorkbook> AddWorkbook() override {
        return call(
            "AddWorkbook", [&] { return handed(instance_->application.Add()); });
    }
    void CloseWorkbooks() override {
        call(
            "CloseWorkbooks", [&] { instance_->application.CloseAll(); });
    }
    void Quit() override {
        call(
            "Quit",
            [&] {
                server_.objectsAtQuit_ = server_.openObjects_;
                instance_->ended = instance_->application.CloseAll();
            });
    }

  private:
    std::unique_ptr<SpreadsheetWorkbook> handed(WorkbookPointer workbook) {
        return std::make_unique<WorkbookObject>(server_, instance_, std::move(workbook));
    }
};

InProcessSpreadsheets::InProcessSpreadsheets() : store_(std::make_unique<MemoryFiles>(*this)) {}

InProcessSpreadsheets::~InProcessSpreadsheets() = default;

InProcessSpreadsheets::InstancePointer InProcessSpreadsheets::StartByUser() {
    Running = std::make_shared<Instance>(*store_);
    return Running;
}

void InProcessSpreadsheets::FailAt(int call, FaultMode mode) {
    Fault fault;
    fault.mode = mode;
    calls_.FailAt(call, fault);
}

void InProcessSpreadsheets::ForgetCalls() {
    calls_.ResetCount();
    calls_.ClearFaults();
    log_.clear();
}

int InProcessSpreadsheets::LeftBehind() const {
    return static_cast<int>(std::count_if(
        created_.begin(), created_.end(), [](const auto& instance) { return !instance->ended; }));
}

bool InProcessSpreadsheets::enter(const char* name, Instance* instance) {
    log_.emplace_back(name);
    const auto fault = calls_.Enter(L"", FromUtf8(name));
    if (fault && fault->mode == FaultMode::Exit && instance)
        instance->ended = true;
    if ((fault && fault->mode == FaultMode::Exit) || (instance && instance->ended))
        throw RuntimeError(RuntimeError::ServerUnavailable);
    if (fault && fault->mode == FaultMode::Reject)
        throw Busy();
    if (fault && fault->mode == FaultMode::Fail)
        throw RuntimeError(SheetError::ApplicationDefined);
    return !fault;
}

std::unique_ptr<SpreadsheetApplication> InProcessSpreadsheets::AttachRunning() {
    if (!enter("AttachRunning", nullptr))
        return nullptr;
    if (!Running || Running->ended)
        throw RuntimeError(RuntimeError::CannotCreateObject);
    return std::make_unique<ApplicationObject>(*this, Running);
}

std::unique_ptr<SpreadsheetApplication> InProcessSpreadsheets::CreateInstance() {
    if (!enter("CreateInstance", nullptr))
        return nullptr;
    if (!Installed)
        throw RuntimeError(RuntimeError::CannotCreateObject);
    created_.push_back(std::make_shared<Instance>(*store_));
    return std::make_unique<ApplicationObject>(*this, created_.back());
}

} // namespace kalvrooms::practice::spreadsheet
