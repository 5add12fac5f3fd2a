#pragma once
// The practice spreadsheet application without automation, inside the caller's process: files and
// instances lie open, every call is listed, and any of them can fail.

#include "files/SpreadsheetApplication.h"
#include "practice/server/CallLog.h"
#include "practice/workbook/Application.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace kalvrooms::practice::spreadsheet {

class InProcessSpreadsheets final : public SpreadsheetServer {
  public:
    struct Instance {
        explicit Instance(FileStore& files) : application(files) {}
        Application application;
        bool ended = false;
    };
    using InstancePointer = std::shared_ptr<Instance>;

    InProcessSpreadsheets();
    ~InProcessSpreadsheets() override;

    // False: there is no such application on this machine.
    bool Installed = true;
    std::map<std::wstring, Workbook> Files;
    std::set<std::wstring> ReadOnlyFiles;
    // The instance that the user already has open, if any.
    InstancePointer Running;
    InstancePointer StartByUser();

    // The same faults as in the practice servers: "fail" raises the application's own error,
    // "empty" answers with nothing, "reject" is busy for longer than the client waits, "exit" ends
    // the instance that is called.
    void FailAt(int call, FaultMode mode = FaultMode::Fail);
    int Calls() const { return calls_.Count(); }
    // The names of the calls, in order.
    const std::vector<std::string>& Log() const { return log_; }
    // Faults that have not struck go as well.
    void ForgetCalls();

    const std::vector<InstancePointer>& Created() const { return created_; }
    // Instances that were created and never ended.
    int LeftBehind() const;
    // Interface objects that were handed out and not released yet, now and when an instance was
    // last told to quit.
    int OpenObjects() const { return openObjects_; }
    int ObjectsAtQuit() const { return objectsAtQuit_; }

    std::unique_ptr<SpreadsheetApplication> AttachRunning() override;
    std::unique_ptr<SpreadsheetApplication> CreateInstance() override;

  private:
    class Object;
    class SheetObject;
    class WorkbookObject;
    class ApplicationObject;

    // False: the call answers with nothing.
    bool enter(const char* name, Instance* instance);

    std::unique_ptr<FileStore> store_;
    std::vector<InstancePointer> created_;
    CallLog calls_;
    std::vector<std::string> log_;
    int openObjects_ = 0;
    int objectsAtQuit_ = 0;
};

} // namespace kalvrooms::practice::spreadsheet
