#include "practice/driver/UiDriver.h"

#include <commctrl.h>
#include <shellapi.h>
#include <shlobj.h>
#include <tlhelp32.h>

#include <cstddef>
#include <iterator>
#include <memory>

namespace kalvrooms::driver {
namespace {

constexpr int messageTextId = 0xFFFF;
constexpr int fileNameCombo = 0x47C;
constexpr int fileNameEdit = 0x480;
constexpr UINT replyLimit = 20000;

LRESULT send(HWND window, UINT message, WPARAM first, LPARAM second) {
    DWORD_PTR answer = 0;
    // Not "unless it hangs": a program that took five seconds to start has answered nothing yet.
    SendMessageTimeoutW(window, message, first, second, SMTO_NORMAL, replyLimit, &answer);
    return static_cast<LRESULT>(answer);
}

// Lets a window of another process read and answer into memory of its own.
template <class Data>
void sendWithData(HWND window, UINT message, WPARAM word, Data& data) {
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    const std::unique_ptr<void, decltype(&CloseHandle)> process(
        OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, processId),
        &CloseHandle);
    void* remote = process ? VirtualAllocEx(process.get(), nullptr, sizeof data,
                                            MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE)
                           : nullptr;
    if (!remote)
        return;
    if constexpr (requires { data.item; })
        data.item.pszText =
            reinterpret_cast<wchar_t*>(static_cast<char*>(remote) + offsetof(Data, text));
    WriteProcessMemory(process.get(), remote, &data, sizeof data, nullptr);
    send(window, message, word, reinterpret_cast<LPARAM>(remote));
    ReadProcessMemory(process.get(), remote, &data, sizeof data, nullptr);
    VirtualFreeEx(process.get(), remote, 0, MEM_RELEASE);
}

} // namespace

std::function<void()> beforeWaitFails;

bool serveMessage() {
    MSG message;
    if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        return false;
    TranslateMessage(&message);
    DispatchMessageW(&message);
    return true;
}

bool comesAbout(const std::function<bool()>& holds, DWORD limit,
                const std::function<bool()>& serve) {
    const ULONGLONG end = GetTickCount64() + limit;
    while (!holds()) {
        if (GetTickCount64() >= end)
            return false;
        if (!serve())
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
    return true;
}

void waitFor(const std::string& state, const std::function<bool()>& holds, DWORD limit) {
    if (comesAbout(holds, limit))
        return;
    if (beforeWaitFails)
        beforeWaitFails();
    throw WaitFailed("waited in vain for: " + state);
}

std::filesystem::path binFolder() {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path();
}

Process::Process(const std::wstring& commandLine, const std::wstring& folder) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    std::wstring command = commandLine;
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        folder.empty() ? nullptr : folder.c_str(), &startup, &information_))
        throw WaitFailed("a program could not be started: error " + std::to_string(GetLastError()));
}

Process::~Process() {
    if (running()) {
        TerminateProcess(information_.hProcess, 1);
        WaitForSingleObject(information_.hProcess, replyLimit);
    }
    CloseHandle(information_.hThread);
    CloseHandle(information_.hProcess);
}

bool Process::running() const {
    return WaitForSingleObject(information_.hProcess, 0) == WAIT_TIMEOUT;
}

DWORD Process::waitForEnd(DWORD limit) const {
    waitFor(
        "end of a process", [this] { return !running(); }, limit);
    DWORD code = 0;
    GetExitCodeProcess(information_.hProcess, &code);
    return code;
}

DWORD runToItsEnd(const std::wstring& program, const std::wstring& arguments) {
    return Process(L"\"" + (binFolder() / program).wstring() + L"\" " + arguments).waitForEnd();
}

DWORD childOf(DWORD parent, const wchar_t* program) {
    const std::unique_ptr<void, decltype(&CloseHandle)> processes(
        CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0), &CloseHandle);
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(processes.get(), &entry); more;
         more = Process32NextW(processes.get(), &entry))
        if (entry.th32ParentProcessID == parent && _wcsicmp(entry.szExeFile, program) == 0)
            return entry.th32ProcessID;
    return 0;
}

std::vector<HWND> windowsOf(DWORD processId) {
    struct Search {
        DWORD process;
        std::vector<HWND> found;
    } search{processId, {}};
    EnumWindows(
        [](HWND window, LPARAM parameter) -> BOOL {
            auto& s = *reinterpret_cast<Search*>(parameter);
            DWORD process = 0;
            GetWindowThreadProcessId(window, &process);
            if (process == s.process && IsWindowVisible(window))
                s.found.push_back(window);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::wstring classOf(HWND window) {
    wchar_t name[128] = L"";
    GetClassNameW(window, name, 128);
    return name;
}

HWND findWindow(DWORD processId, const std::function<bool(HWND)>& meant) {
    for (const HWND window : windowsOf(processId))
        if (meant(window))
            return window;
    return nullptr;
}

HWND windowOfClass(DWORD processId, const wchar_t* className) {
    return findWindow(
        processId, [&](HWND window) { return classOf(window) == className; });
}

HWND waitForWindow(const std::string& what, const Process& process,
                   const std::function<bool(HWND)>& meant) {
    HWND found = nullptr;
    waitFor(what, [&] {
        found = findWindow(process.id(), meant);
        if (!found && !process.running())
            throw WaitFailed("the program ended instead of showing " + what);
        return found != nullptr;
    });
    return found;
}

void waitUntilGone(HWND window) {
    waitFor(
        "a window to go", [&] { return !IsWindow(window) || !IsWindowVisible(window); });
}

HWND control(HWND dialog, int id) {
    struct Search {
        int id;
        HWND found;
    } search{id, nullptr};
    EnumChildWindows(
        dialog,
        [](HWND child, LPARAM parameter) -> BOOL {
            auto& s = *reinterpret_cast<Search*>(parameter);
            if (GetDlgCtrlID(child) == s.id)
                s.found = child;
            return s.found == nullptr;
        },
        reinterpret_cast<LPARAM>(&search));
    if (!search.found)
        throw WaitFailed("no control " + std::to_string(id));
    return search.found;
}

std::wstring textOf(HWND window) {
    const auto length = static_cast<std::size_t>(send(window, WM_GETTEXTLENGTH, 0, 0));
    std::wstring text(length + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        send(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

HWND fileNameField(HWND fileDialog) {
    const HWND combo = GetDlgItem(fileDialog, fileNameCombo);
    return combo ? combo : GetDlgItem(fileDialog, fileNameEdit);
}

bool isFileDialog(HWND window) {
    return classOf(window) == L"#32770" && fileNameField(window) != nullptr;
}

bool isMessageBox(HWND window) {
    return classOf(window) == L"#32770" && !isFileDialog(window) &&
           GetDlgItem(window, messageTextId);
}

std::wstring messageText(HWND messageBox) {
    return textOf(GetDlgItem(messageBox, messageTextId));
}

void press(HWND dialog, int control) {
    PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(MAKEWPARAM(control, BN_CLICKED)),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, control)));
}

void choose(HWND mainWindow, int command) {
    PostMessageW(mainWindow, WM_COMMAND, static_cast<WPARAM>(command), 0);
}

void runCommand(HWND mainWindow, int command, const std::function<void()>& answer, DWORD limit) {
    const auto done = [mainWindow] { return GetPropW(mainWindow, L"QuartinoCommandsDone"); };
    const auto before = done();
    choose(mainWindow, command);
    waitFor(
        "the end of a command",
        [&] {
            answer();
            return done() != before;
        },
        limit);
}

void setText(HWND control, const std::wstring& text) {
    send(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void enterFileName(HWND fileDialog, const std::wstring& path) {
    setText(fileNameField(fileDialog), path);
    press(fileDialog, IDOK);
}

void dropFile(HWND window, const std::filesystem::path& file) {
    struct Dropped {
        DROPFILES files{};
        wchar_t names[MAX_PATH + 1] = L""; // each ended with a zero, and all of them with one more
    } dropped;
    dropped.files.pFiles = offsetof(Dropped, names);
    dropped.files.fWide = TRUE;
    file.wstring().copy(dropped.names, MAX_PATH - 1);
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    const HANDLE process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_WRITE, FALSE, processId);
    // The window's process keeps it until it ends: it may look at it at any time.
    void* remote =
        VirtualAllocEx(process, nullptr, sizeof dropped, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    WriteProcessMemory(process, remote, &dropped, sizeof dropped, nullptr);
    CloseHandle(process);
    PostMessageW(window, WM_DROPFILES, reinterpret_cast<WPARAM>(remote), 0);
}

int rowCount(HWND listView) {
    return static_cast<int>(send(listView, LVM_GETITEMCOUNT, 0, 0));
}

std::wstring cellText(HWND listView, int row, int column) {
    struct {
        LVITEMW item;
        wchar_t text[1024];
    } cell{};
    cell.item.iSubItem = column;
    cell.item.cchTextMax = static_cast<int>(std::size(cell.text));
    sendWithData(listView, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), cell);
    cell.text[std::size(cell.text) - 1] = L'\0';
    return cell.text;
}

RECT cellPlace(HWND listView, int row, int column) {
    RECT place{LVIR_BOUNDS, 0, 0, 0};
    sendWithData(listView, LVM_GETITEMRECT, static_cast<WPARAM>(row), place);
    for (int i = 0; i < column; ++i)
        place.left +=
            static_cast<LONG>(send(listView, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(i), 0));
    return place;
}

HWND headerOf(HWND listView) {
    return reinterpret_cast<HWND>(send(listView, LVM_GETHEADER, 0, 0));
}

RECT headerPlace(HWND listView, int column) {
    RECT place{};
    sendWithData(headerOf(listView), HDM_GETITEMRECT, static_cast<WPARAM>(column), place);
    return place;
}

namespace {

INPUT keyInput(WORD virtualKey, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = virtualKey;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    return input;
}

void deliver(std::vector<INPUT> inputs) {
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

} // namespace

void pressKey(WORD virtualKey) {
    deliver({keyInput(virtualKey, 0)});
}

void releaseKey(WORD virtualKey) {
    deliver({keyInput(virtualKey, KEYEVENTF_KEYUP)});
}

void typeKey(WORD virtualKey, std::initializer_list<WORD> held) {
    std::vector<INPUT> inputs;
    for (const WORD key : held)
        inputs.push_back(keyInput(key, 0));
    inputs.push_back(keyInput(virtualKey, 0));
    inputs.push_back(keyInput(virtualKey, KEYEVENTF_KEYUP));
    for (const WORD key : held)
        inputs.push_back(keyInput(key, KEYEVENTF_KEYUP));
    deliver(std::move(inputs));
}

void typeText(const std::wstring& text) {
    std::vector<INPUT> inputs;
    for (const wchar_t c : text) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wScan = c;
        input.ki.dwFlags = KEYEVENTF_UNICODE;
        inputs.push_back(input);
        input.ki.dwFlags |= KEYEVENTF_KEYUP;
        inputs.push_back(input);
    }
    deliver(std::move(inputs));
}

// Each step carries its place, so that nothing that moves the pointer meanwhile gets between.
void clickAt(HWND window, int x, int y, bool right, int times) {
    POINT point{x, y};
    ClientToScreen(window, &point);
    const auto scaled = [](LONG at, int size) {
        return static_cast<LONG>(static_cast<LONGLONG>(at) * 65536 / GetSystemMetrics(size)) + 1;
    };
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dx = scaled(point.x, SM_CXSCREEN);
    input.mi.dy = scaled(point.y, SM_CYSCREEN);
    std::vector<INPUT> inputs;
    for (int i = 0; i < times; ++i) {
        for (const int button : {right ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN,
                                 right ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP}) {
            input.mi.dwFlags = static_cast<DWORD>(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | button);
            inputs.push_back(input);
        }
    }
    deliver(std::move(inputs));
}

void parkMouse() {
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 2, GetSystemMetrics(SM_CYSCREEN) - 2);
}

} // namespace kalvrooms::driver
