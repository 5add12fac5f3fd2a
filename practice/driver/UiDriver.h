#pragma once
// Drives the windows of another process the way a user does: finds them, reads what they show,
// presses keys and buttons. It waits for states; a time is only ever the limit of a wait.

#include <windows.h>

#include <exception>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
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
    MenuSaveAs = 0x2004,
    MenuImport,
    MenuExport,
    MenuAddRoom = 0x2009,
    MenuModifyRoom,
    MenuDeleteRoom,
    MenuPlace = 0x200F,
};

inline constexpr DWORD usualLimit = 60000; // milliseconds

// Called before a wait gives up, while the windows still stand; nothing unless somebody sets it.
extern std::function<void()> beforeWaitFails;

// Handles one message of this thread's queue; false when there is none.
bool serveMessage();
// Serves messages until the state holds; false when it does not within the limit.
bool comesAbout(const std::function<bool()>& holds, DWORD limit = usualLimit,
                const std::function<bool()>& serve = serveMessage);
// The same. Error: WaitFailed.
void waitFor(const std::string& state, const std::function<bool()>& holds,
             DWORD limit = usualLimit);

// --- processes

// The folder of this program, which holds the others of the build.
std::filesystem::path binFolder();

class Process {
  public:
    // Starts a program. Error: WaitFailed with the system's error.
    explicit Process(const std::wstring& commandLine, const std::wstring& folder = {});
    ~Process(); // ends the process if it still runs
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    DWORD id() const { return information_.dwProcessId; }
    HANDLE handle() const { return information_.hProcess; }
    bool running() const;
    DWORD waitForEnd(DWORD limit = usualLimit) const;

  private:
    PROCESS_INFORMATION information_{};
};

// Starts a program of the build and waits for its end; its exit code.
DWORD runToItsEnd(const std::wstring& program, const std::wstring& arguments);

// The process of that program that another one started; 0 while there is none.
DWORD childOf(DWORD parent, const wchar_t* program);

// --- windows

// Visible top-level windows of a process, in z-order.
std::vector<HWND> windowsOf(DWORD processId);
// The first of them that is meant, or null.
HWND findWindow(DWORD processId, const std::function<bool(HWND)>& meant);
HWND windowOfClass(DWORD processId, const wchar_t* className);
// Waits for such a window. Error: WaitFailed, also when the process ends first.
HWND waitForWindow(const std::string& what, const Process& process,
                   const std::function<bool(HWND)>& meant);
void waitUntilGone(HWND window);

std::wstring textOf(HWND window);
std::wstring classOf(HWND window);
// A control by its number, also on the pages of a tab strip. Error: WaitFailed.
HWND control(HWND dialog, int id);

// A message box shows one text and buttons; a file dialog has a field for the name.
bool isMessageBox(HWND window);
bool isFileDialog(HWND window);
std::wstring messageText(HWND messageBox);
HWND fileNameField(HWND fileDialog);

// --- commands, posted, so that they return while the other side handles them

void press(HWND dialog, int control);
void choose(HWND mainWindow, int command);
// Chooses a command and waits for its end; meanwhile somebody answers what comes up.
// Error: WaitFailed.
void runCommand(HWND mainWindow, int command, const std::function<void()>& answer,
                DWORD limit = usualLimit);
void setText(HWND control, const std::wstring& text);
void enterFileName(HWND fileDialog, const std::wstring& path);
// Drops a file on a window that takes files.
void dropFile(HWND window, const std::filesystem::path& file);

// --- a list view in another process

int rowCount(HWND listView);
std::wstring cellText(HWND listView, int row, int column);
RECT cellPlace(HWND listView, int row, int column); // client pixels
RECT headerPlace(HWND listView, int column);        // client pixels of the header
HWND headerOf(HWND listView);

// --- keyboard and mouse as the system delivers them

void pressKey(WORD virtualKey);
void releaseKey(WORD virtualKey);
void typeKey(WORD virtualKey, std::initializer_list<WORD> held = {});
void typeText(const std::wstring& text);
void clickAt(HWND window, int x, int y, bool right = false, int times = 1); // client pixels
// Off the windows: a menu that opens under the mouse would take what is there as chosen.
void parkMouse();

// --- pictures of the screen

class Picture {
  public:
    explicit Picture(const RECT& place);
    static Picture ofScreen();
    // What the screen shows of a window, once it is painted and does not change any more.
    static Picture ofWindow(HWND window);

    std::size_t colours() const;
    // How red the reddest dot is: red less green.
    int redness() const;
    void save(const std::filesystem::path& bitmap) const;
    bool operator==(const Picture& other) const { return pixels_ == other.pixels_; }

  private:
    int width_;
    int height_;
    std::string pixels_; // blue, green, red and nothing, from the bottom row up
};

RECT placeOf(HWND window); // on the screen

} // namespace kalvrooms::driver
