#pragma once
// The practice spreadsheet application without its automation: open workbooks and their files, and
// the questions that it puts to its user.

#include "practice/workbook/Sheet.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kalvrooms::practice::spreadsheet {

// A file as long as a workbook is open from it: nobody else can write it meanwhile.
class OpenFile {
  public:
    virtual ~OpenFile() = default;
    // Protected, or being written by somebody else.
    virtual bool ReadOnly() const = 0;
    virtual Workbook Read() = 0;
    virtual void Write(const Workbook& workbook) = 0;
};

// All of it raises a SheetError when the disk refuses.
class FileStore {
  public:
    virtual ~FileStore() = default;
    virtual std::wstring FullName(const std::wstring& name) const = 0;
    virtual bool Exists(const std::wstring& fullName) const = 0;
    virtual std::unique_ptr<OpenFile> Open(const std::wstring& fullName) = 0;
    virtual std::unique_ptr<OpenFile> Create(const std::wstring& fullName) = 0;
};

enum class Answer { Yes, No, Cancel };

struct OpenWorkbook {
    Workbook book;
    std::wstring name;
    std::wstring fullName;          // as `name` until there is a file
    std::unique_ptr<OpenFile> file; // null until it has been saved the first time
    bool saved = true;
    bool isOpen = true;
};
using WorkbookPointer = std::shared_ptr<OpenWorkbook>;

class Application {
  public:
    explicit Application(FileStore& files) : files_(files) {}

    // While it is true the application asks before it destroys something. A question lets the
    // operation end with DialogOpen; retried after the answer, it uses that answer.
    bool displayAlerts = true;
    // What workbooks that a program opens may do; 3 keeps their macros off.
    std::int32_t automationSecurity = MacrosRun;
    static constexpr std::int32_t MacrosRun = 1;
    // Workbooks that were opened while macros could run.
    int opensWithMacros = 0;
    // Versions before 12 know their own form of workbooks alone.
    int version = 12;

    const std::vector<WorkbookPointer>& workbooks() const { return workbooks_; }
    // A workbook that is open already is handed back.
    WorkbookPointer Open(const std::wstring& name);
    WorkbookPointer Add();
    void Save(OpenWorkbook& workbook);
    // The form is 56, or -4143 for the application's own.
    void SaveAs(OpenWorkbook& workbook, const std::wstring& name, int form);
    // False when the user does not want it.
    bool CloseAll();

    void OpenDialog(const std::wstring& question);
    // The dialog that is open; empty without one.
    const std::wstring& dialog() const { return dialog_; }
    void AnswerDialog(Answer answer);

  private:
    Answer ask(const std::wstring& question);
    static void store(OpenWorkbook& workbook);

    FileStore& files_;
    std::vector<WorkbookPointer> workbooks_;
    int added_ = 0;
    std::wstring dialog_;
    std::optional<std::pair<std::wstring, Answer>> answered_;
};

} // namespace kalvrooms::practice::spreadsheet
