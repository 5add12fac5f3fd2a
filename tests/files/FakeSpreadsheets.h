#pragma once
// A spreadsheet application in memory: it takes what is entered into cells the way spreadsheets
// do, counts calls, and can fail at the n-th of them or be gone from there on.

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "files/SpreadsheetApplication.h"
#include "model/NumberText.h"

namespace kalvrooms {

class FakeSheet {
  public:
    // What is in a cell, whatever its format.
    CellValue At(int row, int column) const;
    void Put(int row, int column, CellValue value);
    // As a user or a program enters it: the format decides what becomes of it.
    void Enter(int row, int column, const CellValue& value);
    void Format(const CellRange& range, const std::wstring& format);
    std::wstring FormatAt(int row, int column) const;

    int Rows = 65536;

  private:
    std::map<std::pair<int, int>, CellValue> cells_;
    std::vector<std::pair<CellRange, std::wstring>> formats_;
};

struct FakeWorkbook {
    std::vector<FakeSheet> Sheets = std::vector<FakeSheet>(1);
    std::size_t Active = 0;
    FakeSheet& ActiveSheet() { return Sheets.at(Active); }
};

class FakeSpreadsheets final : public SpreadsheetServer {
  public:
    // The numbers that the application itself gives its errors.
    static constexpr long ApplicationError = 1004;

    struct Instance {
        bool Alerts = true;
        bool Ended = false;
        std::map<std::wstring, std::shared_ptr<FakeWorkbook>> Open;
        int Unnamed = 0; // added and never saved
    };

    bool Installed = true;
    // An instance that the user had open already.
    std::shared_ptr<Instance> Running;
    std::map<std::wstring, FakeWorkbook> Files;
    std::vector<std::wstring> ReadOnlyFiles;

    // The n-th call raises this error; with Gone every later one too, its process having ended.
    int FailAt = 0;
    long FailWith = ApplicationError;
    bool Gone = false;
    // An interface that answers with nothing at the n-th call.
    int NothingAt = 0;
    // Interface objects that were held when an instance was last told to quit.
    int ObjectsAtQuit = 0;

    int Calls() const { return calls_; }
    // The names of the calls, in order.
    const std::vector<std::string>& Log() const { return log_; }
    const std::vector<std::shared_ptr<Instance>>& Created() const { return created_; }
    // Instances of ours that were created and never ended.
    int LeftBehind() const;
    // Interface objects that were handed out and not released yet.
    int OpenObjects() const { return openObjects_; }
    void ForgetCalls() {
        calls_ = 0;
        log_.clear();
    }

    FakeWorkbook& File(const std::wstring& name) { return Files.at(name); }

    std::unique_ptr<SpreadsheetApplication> AttachRunning() override;
    std::unique_ptr<SpreadsheetApplication> CreateInstance() override;

    // For the interface objects. True: answer with nothing.
    bool call(const std::string& name);
    void objects(int difference) { openObjects_ += difference; }

  private:
    int calls_ = 0;
    int openObjects_ = 0;
    std::vector<std::string> log_;
    std::vector<std::shared_ptr<Instance>> created_;
};

} // namespace kalvrooms
