#pragma once
// Drives the windows of another process the way a user does: finds them, reads what they show,
// presses buttons, types. It waits for states; a time is only ever the limit of a wait.

#include <windows.h>

#include <exception>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace kalvrooms::driver {

// Raised when a state did not come about within the limit.
struct WaitFailed : std::exception {
    explicit WaitFailed(std::string what) : text(std::move(what)) {}
    const char* what() const noexcept override { return text.c_str(); }
    std::string text;
};

// The main window's menu entries number themselves in the order in which it builds them.
enum MenuCommand : int {
    MenuNew = 0x2001,
    MenuOpen,
    MenuSave,
    MenuSaveAs,
    MenuImport,
    MenuExport,
    MenuEnd,
    MenuAddRoom = 0x2009,
    MenuModifyRoom,
    MenuDeleteRoom,
    MenuSortAscending,
    MenuSortDescending,
    MenuPlace = 0x200F,
};

inline constexpr DWORD usualLimit = 60000; // milliseconds

// Serves this thread's messages until the state holds. Error: WaitFailed.
void waitFor(const std::string& state, const std::function<bool()>& holds,
             DWORD limit = usualLimit);

// Starts a program; both handles are the caller's. Error: WaitFailed with the system's error.
PROCESS_INFORMATION startProgram(const std::wstring& commandLine, const std::wstring& folder = {});

class Process {
  public:
    // Starts a program. Error: WaitFailed when it cannot be started.
    explicit Process(const std::wstring& commandLine, const std::wstring& folder = {});
    ~Process(); // ends the process if it still runs
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    DWORD id() const { return information_.dwProcessId; }
    HANDLE handle() const { return information_.hProcess; }
    bool running() const;
    DWORD waitForEnd(DWORD limit = usualLimit);

  private:
    PROCESS_INFORMATION information_{};
};

// The process of that program that another one started; 0 while there is none.
DWORD childOf(DWORD parent, const wchar_t* program);

// Visible top-level windows of a process, in z-order.
std::vector<HWND> windowsOf(DWORD processId);
HWND windowOfClass(DWORD processId, const wchar_t* className);
std::wstring textOf(HWND window);
std::wstring classOf(HWND window);

// A message box shows one text and buttons; a file dialog has a field for the name.
bool isMessageBox(HWND window);
bool isFileDialog(HWND window);
std::wstring messageText(HWND messageBox);

// Posts, so that it returns while the other side handles it.
void press(HWND dialog, int control);
void choose(HWND mainWindow, int command);
void setText(HWND control, const std::wstring& text);
void enterFileName(HWND fileDialog, const std::wstring& path);

// Cells of a list view in another process.
int rowCount(HWND listView);
std::wstring cellText(HWND listView, int row, int column);

// Input of the keyboard and the mouse as the system delivers it.
void typeKey(WORD virtualKey, std::initializer_list<WORD> held = {});
void typeText(const std::wstring& text);
void clickAt(HWND window, int x, int y, bool right = false, int times = 1); // client pixels

} // namespace kalvrooms::driver
