#include "practice/driver/UiDriver.h"

#include <commctrl.h>
#include <tlhelp32.h>

#include <memory>

namespace kalvrooms::driver {
namespace {

constexpr int messageTextId = 0xFFFF;
constexpr int fileNameCombo = 0x47C;
constexpr int fileNameEdit = 0x480;
constexpr UINT replyLimit = 20000;

LRESULT send(HWND window, UINT message, WPARAM first, LPARAM second) {
    DWORD_PTR answer = 0;
    SendMessageTimeoutW(window, message, first, second, SMTO_ABORTIFHUNG, replyLimit, &answer);
    return static_cast<LRESULT>(answer);
}

} // namespace

void waitFor(const std::string& state, const std::function<bool()>& holds, DWORD limit) {
    const ULONGLONG end = GetTickCount64() + limit;
    for (;;) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        if (holds())
            return;
        if (GetTickCount64() >= end)
            throw WaitFailed("waited in vain for: " + state);
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
}

PROCESS_INFORMATION startProgram(const std::wstring& commandLine, const std::wstring& folder) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    // Where addresses are drawn by lot, one in some thousand new processes under Wine has its heap
    // where Wine's shared data must lie, and ends before its first instruction.
    constexpr int tries = 5;
    for (int i = 1;; ++i) {
        std::wstring command = commandLine;
        PROCESS_INFORMATION started{};
        if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                           folder.empty() ? nullptr : folder.c_str(), &startup, &started))
            return started;
        const DWORD error = GetLastError();
        if (error != ERROR_INTERNAL_ERROR || i == tries)
            throw WaitFailed("a program could not be started: error " + std::to_string(error));
    }
}

Process::Process(const std::wstring& commandLine, const std::wstring& folder)
    : information_(startProgram(commandLine, folder)) {}

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

DWORD Process::waitForEnd(DWORD limit) {
    waitFor(
        "end of a process", [this] { return !running(); }, limit);
    DWORD code = 0;
    GetExitCodeProcess(information_.hProcess, &code);
    return code;
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

HWND windowOfClass(DWORD processId, const wchar_t* className) {
    for (const HWND window : windowsOf(processId))
        if (classOf(window) == className)
            return window;
    return nullptr;
}

std::wstring textOf(HWND window) {
    const auto length = static_cast<std::size_t>(send(window, WM_GETTEXTLENGTH, 0, 0));
    std::wstring text(length + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        send(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

bool isFileDialog(HWND window) {
    return classOf(window) == L"#32770" &&
           (GetDlgItem(window, fileNameCombo) || GetDlgItem(window, fileNameEdit));
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

void setText(HWND control, const std::wstring& text) {
    send(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void enterFileName(HWND fileDialog, const std::wstring& path) {
    const HWND combo = GetDlgItem(fileDialog, fileNameCombo);
    setText(combo ? combo : GetDlgItem(fileDialog, fileNameEdit), path);
    press(fileDialog, IDOK);
}

int rowCount(HWND listView) {
    return static_cast<int>(send(listView, LVM_GETITEMCOUNT, 0, 0));
}

std::wstring cellText(HWND listView, int row, int column) {
    constexpr std::size_t length = 1024;
    DWORD processId = 0;
    GetWindowThreadProcessId(listView, &processId);
    const std::unique_ptr<void, decltype(&CloseHandle)> process(
        OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, processId),
        &CloseHandle);
    if (!process)
        return {};
    // The list view answers into memory of its own process.
    struct Remote {
        LVITEMW item;
        wchar_t text[length];
    };
    auto* remote = static_cast<Remote*>(VirtualAllocEx(process.get(), nullptr, sizeof(Remote),
                                                       MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
    if (!remote)
        return {};
    auto local = std::make_unique<Remote>();
    local->item.iSubItem = column;
    local->item.cchTextMax = length;
    local->item.pszText =
        reinterpret_cast<wchar_t*>(reinterpret_cast<char*>(remote) + offsetof(Remote, text));
    WriteProcessMemory(process.get(), remote, local.get(), sizeof(Remote), nullptr);
    send(listView, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(remote));
    ReadProcessMemory(process.get(), remote, local.get(), sizeof(Remote), nullptr);
    VirtualFreeEx(process.get(), remote, 0, MEM_RELEASE);
    local->text[length - 1] = L'\0';
    return local->text;
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

void deliver(std::vector<INPUT>& inputs) {
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

} // namespace

void typeKey(WORD virtualKey, std::initializer_list<WORD> held) {
    std::vector<INPUT> inputs;
    for (const WORD key : held)
        inputs.push_back(keyInput(key, 0));
    inputs.push_back(keyInput(virtualKey, 0));
    inputs.push_back(keyInput(virtualKey, KEYEVENTF_KEYUP));
    for (const WORD key : held)
        inputs.push_back(keyInput(key, KEYEVENTF_KEYUP));
    deliver(inputs);
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
    deliver(inputs);
}

void clickAt(HWND window, int x, int y, bool right, int times) {
    POINT point{x, y};
    ClientToScreen(window, &point);
    SetCursorPos(point.x, point.y);
    std::vector<INPUT> inputs;
    for (int i = 0; i < times; ++i) {
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = right ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN;
        inputs.push_back(input);
        input.mi.dwFlags = right ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP;
        inputs.push_back(input);
    }
    deliver(inputs);
}

} // namespace kalvrooms::driver
