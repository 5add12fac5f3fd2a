#include "desktop_support.h"

#include <cstdlib>

namespace kalvrooms::Gui {
namespace {

constexpr UINT tickMilliseconds = 10;
constexpr ULONGLONG patience = 60000;
Journey* travelling = nullptr;

void send(const INPUT& input) {
    INPUT copy = input;
    SendInput(1, &copy, sizeof copy);
}

void sendKey(WORD key, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    send(input);
}

// Carries its place, so that nothing that moves the pointer meanwhile gets between.
void sendMouse(DWORD flags, POINT point) {
    const auto scaled = [](LONG at, int size) {
        return static_cast<LONG>(static_cast<LONGLONG>(at) * 65536 / GetSystemMetrics(size)) + 1;
    };
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dx = scaled(point.x, SM_CXSCREEN);
    input.mi.dy = scaled(point.y, SM_CYSCREEN);
    input.mi.dwFlags = static_cast<DWORD>(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE) | flags;
    send(input);
}

} // namespace

// --- Journey --------------------------------------------------------------------------------

Journey::Journey() {
    travelling = this;
    waitingSince_ = GetTickCount64();
    timer_ = SetTimer(nullptr, 0, tickMilliseconds, tick);
}

Journey::~Journey() {
    KillTimer(nullptr, timer_);
    travelling = nullptr;
    EXPECT_TRUE(steps_.empty()) << "never reached: " << steps_.front().name;
}

Journey& Journey::When(std::string name, State state, Step step) {
    steps_.push_back({std::move(name), std::move(state), std::move(step)});
    return *this;
}

void CALLBACK Journey::tick(HWND, UINT, UINT_PTR, DWORD) {
    if (travelling)
        travelling->look();
}

void Journey::look() {
    if (looking_ || steps_.empty())
        return;
    looking_ = true;
    if (steps_.front().state()) {
        const Stage stage = steps_.front();
        steps_.pop_front();
        waitingSince_ = GetTickCount64();
        // A step may open a window whose own loop carries the journey on.
        looking_ = false;
        stage.step();
        return;
    }
    looking_ = false;
    if (GetTickCount64() - waitingSince_ > patience) {
        // A window that nobody answers would hold the whole test run.
        std::fprintf(stderr, "never reached: %s\n", steps_.front().name.c_str());
        std::fflush(stderr);
        std::_Exit(1);
    }
}

void Journey::Run(Win32Desktop& desktop) {
    EXPECT_TRUE(PumpUntil(desktop, [this] { return Done(); }));
}

bool PumpUntil(Win32Desktop& desktop, const std::function<bool()>& state) {
    const UINT_PTR timer = SetTimer(nullptr, 0, tickMilliseconds, nullptr);
    const ULONGLONG since = GetTickCount64();
    bool reached = state();
    while (!reached && GetTickCount64() - since < patience) {
        desktop.PumpMessage();
        reached = state();
    }
    KillTimer(nullptr, timer);
    return reached;
}

// --- Keys and mouse -------------------------------------------------------------------------

void PressKey(WORD key) {
    sendKey(key, 0);
}

void ReleaseKey(WORD key) {
    sendKey(key, KEYEVENTF_KEYUP);
}

void TypeKey(WORD key) {
    PressKey(key);
    ReleaseKey(key);
}

void Click(HWND window, POINT point, MouseButton button) {
    ClientToScreen(window, &point);
    const bool right = button == MouseButton::Right;
    sendMouse(right ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN, point);
    sendMouse(right ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP, point);
}

void ClickMiddle(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    Click(window, {client.right / 2, client.bottom / 2});
}

HWND Focused() {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(GetCurrentThreadId(), &info) ? info.hwndFocus : nullptr;
}

HWND SystemDialog() {
    HWND found = nullptr;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM data) -> BOOL {
            wchar_t name[32] = L"";
            GetClassNameW(window, name, static_cast<int>(std::size(name)));
            // Our own dialogs are of the same class; theirs have a default button.
            if (std::wstring(name) != L"#32770" || !IsWindowVisible(window) ||
                !(GetDlgItem(window, IDOK) || GetDlgItem(window, IDCANCEL) ||
                  GetDlgItem(window, IDYES)))
                return TRUE;
            *reinterpret_cast<HWND*>(data) = window;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
}

Win32Control& Named(Form& form, const std::wstring& name) {
    Win32Control* control = dynamic_cast<Win32Form&>(form).ControlNamed(name);
    if (!control)
        throw std::logic_error("no such control");
    return *control;
}

HWND WindowOf(Form& form) {
    return dynamic_cast<Win32Form&>(form).Window();
}

HWND WindowOf(Form& form, const std::wstring& name) {
    return Named(form, name).Window();
}

// --- Pictures -------------------------------------------------------------------------------

void TakePicture(Win32Desktop& desktop, HWND window, const std::string& name) {
    const char* folder = std::getenv("QUARTINO_PICTURES");
    if (!folder || !*folder)
        return;
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    GdiFlush();
    RECT frame{};
    GetWindowRect(window, &frame);
    const std::string file = std::string(folder) + "/" + name;
    const std::string window_area = std::to_string(frame.right - frame.left) + "x" +
                                    std::to_string(frame.bottom - frame.top) + "+" +
                                    std::to_string(frame.left) + "+" + std::to_string(frame.top);
    // The screen's own picture taker runs outside of the Windows world; it is done when the window
    // manager and the painting are, that is when two pictures in a row are the same.
    const std::string take = "import -window root -crop " + window_area + " +repage ";
    const std::string command =
        "/bin/sh -c \"rm -f F.png; T F.1.ppm; while :; do sleep 0.2; T F.2.ppm; "
        "if cmp -s F.1.ppm F.2.ppm; then convert F.2.ppm -strip F.3.png; mv F.3.png F.png; rm "
        "F.1.ppm F.2.ppm; exit; fi; "
        "mv F.2.ppm F.1.ppm; done\"";
    std::string shell = command;
    for (const auto& [sign, meaning] :
         {std::pair<std::string, std::string>{"T ", take}, {"F.", file + "."}}) {
        for (std::size_t at = shell.find(sign); at != std::string::npos;
             at = shell.find(sign, at + meaning.size()))
            shell.replace(at, sign.size(), meaning);
    }
    const std::wstring unixFile = L"\\\\?\\unix" + std::wstring(file.begin(), file.end()) + L".png";
    DeleteFileW(unixFile.c_str());
    std::wstring line(shell.begin(), shell.end());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    ASSERT_TRUE(CreateProcessW(L"\\\\?\\unix/bin/sh", line.data(), nullptr, nullptr, FALSE, 0,
                               nullptr, nullptr, &startup, &process));
    EXPECT_TRUE(PumpUntil(desktop, [&] {
        return GetFileAttributesW(unixFile.c_str()) != INVALID_FILE_ATTRIBUTES;
    })) << file;
}

// --- The program ------------------------------------------------------------------------------

bool InputIsDone() {
    return !(GetQueueStatus(QS_INPUT | QS_POSTMESSAGE) >> 16);
}

void ProgramOnDesktop::SetUp() {
    main_.Show();
    form_ = &Top();
    grid_ = &form_->Named<Grid>(L"grdRooms");
    list_ = WindowOf(*form_, L"grdRooms");
    ASSERT_TRUE(PumpUntil(desktop_, [this] { return Focused() == list_; }));
}

bool ProgramOnDesktop::DialogIsActive() {
    return &Top() != form_ && GetForegroundWindow() == Top().Window() && Focused();
}

void ProgramOnDesktop::CloseDialog() {
    if (&Top() != form_)
        Top().Unload();
}

} // namespace kalvrooms::Gui
