#pragma once
// The practice spreadsheet application in processes of its own: registered for the length of a
// test program, told what to do before it starts, and looked after from outside.

#include <windows.h>

#include <tlhelp32.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "practice/driver/UiDriver.h"
#include "practice/spreadsheet/SheetClass.h"

namespace kalvrooms::testing {

namespace sheets = practice::spreadsheet;

inline constexpr DWORD processLimit = 20000;
inline constexpr const wchar_t* spreadsheetProgram = L"PracticeSpreadsheet.exe";

// Of all instances that there are.
inline std::vector<DWORD> spreadsheetProcesses() {
    std::vector<DWORD> found;
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot, &entry); more;
         more = Process32NextW(snapshot, &entry))
        if (_wcsicmp(entry.szExeFile, spreadsheetProgram) == 0)
            found.push_back(entry.th32ProcessID);
    CloseHandle(snapshot);
    return found;
}

inline bool spreadsheetProcessesEnd(DWORD milliseconds = processLimit) {
    return driver::comesAbout([] { return spreadsheetProcesses().empty(); }, milliseconds);
}

// Of the instance with that process, once it is up.
inline HWND spreadsheetControl(DWORD process) {
    for (HWND window = nullptr;
         (window = FindWindowExW(nullptr, window, sheets::ControlWindowClass, nullptr));) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == process)
            return window;
    }
    return nullptr;
}

inline void endSpreadsheetProcesses() {
    for (const DWORD process : spreadsheetProcesses())
        if (const HWND window = spreadsheetControl(process))
            PostMessageW(window, sheets::LeaveMessage, 0, 0);
    if (spreadsheetProcessesEnd(5000))
        return;
    for (const DWORD process : spreadsheetProcesses()) {
        if (const HANDLE handle = OpenProcess(PROCESS_TERMINATE, FALSE, process)) {
            TerminateProcess(handle, 99);
            CloseHandle(handle);
        }
    }
}

inline void registerSpreadsheets(bool there) {
    if (driver::runToItsEnd(spreadsheetProgram, there ? L"--register" : L"--unregister") != 0)
        throw std::runtime_error("the practice spreadsheet application cannot be registered");
}

// Holds for every instance that starts from now on.
inline void tellSpreadsheets(const wchar_t* name, const std::wstring& text) {
    RegSetKeyValueW(HKEY_CURRENT_USER, sheets::SettingsKey, name, REG_SZ, text.c_str(),
                    static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

inline void forgetWhatSpreadsheetsWereTold() {
    RegDeleteTreeW(HKEY_CURRENT_USER, sheets::SettingsKey);
}

// An instance that the test starts. Its process is never let go of, so that no later one gets its
// number: a client whose call is cut off by the server's death keeps what it knows of the server's
// address, at least under Wine. The address is made of numbers of process and thread, and a later
// server with the same ones refuses whoever claims to know it already.
class StartedSpreadsheet {
  public:
    StartedSpreadsheet(const StartedSpreadsheet&) = delete;
    StartedSpreadsheet& operator=(const StartedSpreadsheet&) = delete;

    // It has read what it was told, has opened and offered everything, and serves its window.
    void waitUntilReady() const {
        WaitForInputIdle(started_.handle(), processLimit);
        driver::waitFor("the practice spreadsheet application", [this] { return control(); });
    }
    bool ended(DWORD milliseconds = processLimit) const {
        return WaitForSingleObject(started_.handle(), milliseconds) == WAIT_OBJECT_0;
    }

    void tell(UINT message, WPARAM what = 0) const { PostMessageW(control(), message, what, 0); }
    // Zero as well when there is no answer.
    DWORD_PTR ask(UINT message) const {
        DWORD_PTR answer = 0;
        SendMessageTimeoutW(control(), message, 0, 0, SMTO_NORMAL, 5000, &answer);
        return answer;
    }

  protected:
    explicit StartedSpreadsheet(const std::wstring& arguments)
        : started_(*new driver::Process(
              L"\"" + (driver::binFolder() / spreadsheetProgram).wstring() + L"\" " + arguments)) {}
    HWND control() const { return spreadsheetControl(started_.id()); }
    void terminate() const { TerminateProcess(started_.handle(), 99); }

  private:
    const driver::Process& started_;
};

// One that is started ahead of the client that will ask for one: the system hands out the one that
// is there, and the second that Wine takes to find a new one is saved.
class OfferedSpreadsheet : public StartedSpreadsheet {
  public:
    OfferedSpreadsheet() : StartedSpreadsheet(L"-Embedding") {}
};

inline void offerSpreadsheet() {
    OfferedSpreadsheet().waitUntilReady();
}

// One as its user starts it.
class RunningSpreadsheet : public StartedSpreadsheet {
  public:
    explicit RunningSpreadsheet(const std::wstring& arguments)
        : StartedSpreadsheet(L"--running " + arguments) {
        waitUntilReady();
    }
    ~RunningSpreadsheet() {
        if (!ended(0)) {
            tell(sheets::LeaveMessage);
            if (!ended(5000))
                terminate();
        }
    }

    bool hasDialog() const { return ask(sheets::AskDialogMessage) == 1; }
};

// The lines "object.member=count" that an instance leaves when it ends.
inline std::map<std::string, int> callsOf(const std::filesystem::path& report) {
    std::map<std::string, int> calls;
    std::ifstream file(report);
    for (std::string line; std::getline(file, line);) {
        const std::size_t mark = line.find('=');
        if (mark != std::string::npos)
            calls[line.substr(0, mark)] = std::stoi(line.substr(mark + 1));
    }
    return calls;
}

} // namespace kalvrooms::testing
